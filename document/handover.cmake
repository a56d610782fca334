# The files through which a host photo editor hands a picture over and takes the result back.
target_sources(tornvale_engine PRIVATE ${CMAKE_CURRENT_LIST_DIR}/HandOverFiles.cpp)
