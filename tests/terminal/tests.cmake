add_tests_of(terminal
    program.cpp
    terminal_test.cpp)
target_link_libraries(terminal_tests PRIVATE stream_recipes util)
target_compile_definitions(terminal_tests PRIVATE
    "PROGRAM_PATH=\"$<TARGET_FILE:mpeg_ts_analysis>\"" "SAMPLES_PATH=\"${CMAKE_SOURCE_DIR}/samples\"")
add_dependencies(terminal_tests mpeg_ts_analysis)
