add_tests_of(overview_input packet_scanner_test.cpp packet_test.cpp)
    target_link_libraries(overview_input_tests PRIVATE overview_input)
