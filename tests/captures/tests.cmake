add_tests_of(captures
    captures_test.cpp)
