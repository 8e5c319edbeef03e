add_tests_of(descriptors
    dvb_network_delivery_test.cpp
    dvb_network_service_test.cpp
    dvb_network_test.cpp
    iso_13818_1_avc_test.cpp
    iso_13818_1_model_test.cpp
    iso_13818_1_test.cpp)
