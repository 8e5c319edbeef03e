add_tests_of(overview_driver
    command_line_test.cpp
    interrupt_test.cpp
    limits_reached_test.cpp
    limit_value_test.cpp
    output_file_test.cpp
    overview_of_test.cpp
    transcript_in_overview_test.cpp)
target_link_libraries(overview_driver_tests PRIVATE overview_driver)
target_compile_definitions(overview_driver_tests PRIVATE "OVERVIEW_VERSION=\"${PROJECT_VERSION}\"")

add_test(NAME overview_driver.program
         COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/overview_driver/check_program.sh" $<TARGET_FILE:mpeg_ts_overview>
                 "${CMAKE_SOURCE_DIR}/samples")
