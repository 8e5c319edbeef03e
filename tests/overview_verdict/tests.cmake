add_tests_of(overview_verdict
    broadcasts.cpp
    faults_of_first_priority.cpp
    faults_of_second_priority.cpp
    faults_of_third_priority.cpp
    healthy_broadcasts_test.cpp
    other_faults.cpp
    planted_faults_test.cpp
    timed_multiplex.cpp
    unmeasured_test.cpp)
target_link_libraries(overview_verdict_tests PRIVATE overview_driver)

find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
    add_test(NAME overview_verdict.healthy
             COMMAND ${Python3_EXECUTABLE} "${CMAKE_CURRENT_SOURCE_DIR}/overview_verdict/healthy.py"
                     $<TARGET_FILE:mpeg_ts_overview> "${CMAKE_SOURCE_DIR}/samples"
                     "${CMAKE_BINARY_DIR}/generated/healthy")
    set_tests_properties(overview_verdict.healthy PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 900 COST 500)
endif()
