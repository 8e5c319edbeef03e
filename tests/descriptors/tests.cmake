add_tests_of(descriptors
    iso_13818_1_avc_test.cpp
    iso_13818_1_model_test.cpp
    iso_13818_1_test.cpp)
