add_tests_of(state
    pid_set_test.cpp)
