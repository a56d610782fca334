target_sources(tornvale_engine PRIVATE ${CMAKE_CURRENT_LIST_DIR}/TornvaleEffect.cpp)
