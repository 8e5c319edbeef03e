add_tests_of(overview_tables
    flat_map_test.cpp
    log_violation_test.cpp
    pid_array_test.cpp
    pid_directory_test.cpp
    program_map_random_test.cpp
    program_map_test.cpp
    repetition_watch_test.cpp
    section_router_test.cpp
    standard_test.cpp
    stream_type_test.cpp
    table_reading_test.cpp
    table_rows_test.cpp)
target_link_libraries(overview_tables_tests PRIVATE overview_tables)
