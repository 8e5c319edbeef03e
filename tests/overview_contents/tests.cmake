add_tests_of(overview_contents
    cues_test.cpp
    program_clock_test.cpp
    segmentation_test.cpp
    splice_info_test.cpp
    teletext_characters_test.cpp
    teletext_hamming_test.cpp
    teletext_loss_test.cpp
    teletext_pages_test.cpp
    teletext_units_test.cpp)
target_link_libraries(overview_contents_tests PRIVATE overview_finds)
