add_tests_of(overview_checks
    other_checks_test.cpp
    psi_checks_test.cpp
    si_checks_test.cpp)
target_link_libraries(overview_checks_tests PRIVATE overview_checks)
