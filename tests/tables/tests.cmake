add_tests_of(tables
    dvb_time_test.cpp)
