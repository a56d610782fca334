include(${CMAKE_CURRENT_SOURCE_DIR}/filters_tensors.cmake OPTIONAL)
include(${CMAKE_CURRENT_SOURCE_DIR}/filters_colour.cmake OPTIONAL)
