add_tests_of(overview_output
    figures_test.cpp
    json_line_test.cpp
    json_test.cpp
    json_values_test.cpp
    page_data_test.cpp
    sample_overview.cpp
    terminal_text_test.cpp
    text_checks_test.cpp
    text_test.cpp)
target_link_libraries(overview_output_tests PRIVATE overview_output made_recordings)

# Megabytes of JSON go through templates: a binary of its own, optimised.
add_executable(overview_page_tests overview_output/page_test.cpp)
target_compile_options(overview_page_tests PRIVATE -O1)
target_link_libraries(overview_page_tests PRIVATE made_recordings GTest::gtest_main)
discover_tests(overview_page_tests overview_output)

# Every JSON output holds against its schema, which knows nothing that the outputs do not have.
add_executable(write_sample_json overview_output/write_sample_json.cpp overview_output/sample_overview.cpp)
target_link_libraries(write_sample_json PRIVATE overview_output)
add_test(NAME overview_output.schema
         COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/overview_output/check_schema.sh"
                 "${CMAKE_SOURCE_DIR}/docs/overview.schema.json" $<TARGET_FILE:write_sample_json>)
add_test(NAME overview_output.streams
         COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/overview_output/check_streams.sh"
                 "${CMAKE_SOURCE_DIR}/docs/overview.schema.json" $<TARGET_FILE:mpeg_ts_overview>
                 "" "${CMAKE_BINARY_DIR}/generated/streams" "${CMAKE_SOURCE_DIR}/samples")
add_test(NAME overview_output.samples_without_times
         COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/overview_output/check_streams.sh"
                 "${CMAKE_SOURCE_DIR}/docs/overview.schema.json" $<TARGET_FILE:mpeg_ts_overview>
                 "--clock=none --not-atsc" "${CMAKE_SOURCE_DIR}/samples")
add_test(NAME overview_output.samples_at_a_given_rate
         COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/overview_output/check_streams.sh"
                 "${CMAKE_SOURCE_DIR}/docs/overview.schema.json" $<TARGET_FILE:mpeg_ts_overview>
                 "--bitrate=2000000 --whole-multiplex --limit eit_schedule=1s --atsc" "${CMAKE_SOURCE_DIR}/samples")
add_test(NAME overview_output.explained
         COMMAND python3 "${CMAKE_CURRENT_SOURCE_DIR}/overview_output/check_explained.py"
                 "${CMAKE_SOURCE_DIR}/docs/overview.schema.json" "${CMAKE_SOURCE_DIR}/docs/overview.md")
set_tests_properties(overview_output.schema overview_output.streams overview_output.samples_without_times
                     overview_output.samples_at_a_given_rate PROPERTIES SKIP_RETURN_CODE 77)
set_tests_properties(overview_output.streams PROPERTIES FIXTURES_REQUIRED golden_streams)
