add_tests_of(text
    utf8_test.cpp)
