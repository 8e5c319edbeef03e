add_tests_of(overview_transcript
    fault_groups_test.cpp
    section_memory_test.cpp
    transcript_limits_test.cpp
    transcript_test.cpp)
target_link_libraries(overview_transcript_tests PRIVATE overview_transcript)
