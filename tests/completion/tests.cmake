add_tests_of(completion
    completion_test.cpp
    interactive_shell.cpp)
target_link_libraries(completion_tests PRIVATE util)
target_compile_definitions(completion_tests PRIVATE "COMPLETIONS_PATH=\"${CMAKE_SOURCE_DIR}/packaging/completion\"")
