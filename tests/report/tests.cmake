add_tests_of(report
    fixed_point_test.cpp
    hex_dump_test.cpp
    invariant_test.cpp
    names_test.cpp
    report_format_test.cpp
    report_test.cpp)
