add_tests_of(descriptors
    iso_13818_1_test.cpp)
