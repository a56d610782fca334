tornvale_add_test(NAME effect_tests SOURCES ${CMAKE_CURRENT_LIST_DIR}/TornvaleEffectTest.cpp)
