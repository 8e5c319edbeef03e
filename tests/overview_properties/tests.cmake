# One test for all: many recordings, each a case of its own to GoogleTest.
add_executable(overview_properties_tests
    overview_properties/overview_properties_test.cpp
    overview_properties/random_recording.cpp)
target_link_libraries(overview_properties_tests PRIVATE overview_driver test_support GTest::gtest_main)
add_test(NAME overview_properties COMMAND overview_properties_tests --gtest_brief=1)
