add_tests_of(teletext
    hamming_test.cpp
    teletext_pes_test.cpp
    teletext_unit_page_test.cpp
    teletext_unit_test.cpp)
