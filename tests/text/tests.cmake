add_tests_of(text
    utf8_test.cpp
    utf8_valid_test.cpp)
