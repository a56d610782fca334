target_sources(tornvale_engine PRIVATE ${CMAKE_CURRENT_LIST_DIR}/TornvaleEffect.cpp ${CMAKE_CURRENT_LIST_DIR}/EffectParameters.cpp)
