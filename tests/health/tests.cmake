add_tests_of(health
    clocks_test.cpp
    continuity_test.cpp
    pcr_analysis_run_test.cpp
    pcr_analysis_test.cpp
    tracking_storage_test.cpp
    tracking_test.cpp
    truncate_test.cpp)
