# One test for all: hundreds of streams, each a case of its own to GoogleTest.
add_executable(properties_tests
    properties/random_stream.cpp
    properties/report_properties_test.cpp)
target_link_libraries(properties_tests PRIVATE test_support stream_recipes GTest::gtest_main)
add_test(NAME properties.reports COMMAND properties_tests --gtest_brief=1)
set_tests_properties(properties.reports PROPERTIES ENVIRONMENT "TZ=UTC")
