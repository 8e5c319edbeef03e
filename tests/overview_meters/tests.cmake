add_tests_of(overview_meters
    absence_test.cpp
    bucket_series_test.cpp
    continuity_test.cpp
    line_fit_test.cpp
    pcr_straightness_test.cpp
    pcr_test.cpp
    pids_test.cpp
    rates_test.cpp
    residual_record_test.cpp
    time_stamp_header_test.cpp
    time_stamps_margin_test.cpp
    time_stamps_test.cpp
    transport_faults_test.cpp)
target_link_libraries(overview_meters_tests PRIVATE overview_meters)
