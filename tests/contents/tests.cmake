add_tests_of(contents
    atsc_text_test.cpp
    character_table_test.cpp
    dvb_text_test.cpp
    scsu_test.cpp
    utf8_text_test.cpp)
target_link_libraries(contents_tests PRIVATE overview_contents)
