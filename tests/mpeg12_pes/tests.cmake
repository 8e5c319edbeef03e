add_tests_of(mpeg12_pes
    pes_scanner_mpeg_1_test.cpp
    pes_scanner_search_test.cpp
    pes_scanner_test.cpp)
