add_tests_of(report
    report_format_test.cpp)
