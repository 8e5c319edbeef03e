add_tests_of(overview_timeline
    median_test.cpp
    pcr_clock_breaks_test.cpp
    pcr_clock_test.cpp
    rate_steadiness_test.cpp
    scaled_test.cpp
    timeline_test.cpp)
target_link_libraries(overview_timeline_tests PRIVATE overview_timeline)
