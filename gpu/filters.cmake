# Filter families: direction field and strokes; blur, sharpen, colour and compositing.
include(${CMAKE_CURRENT_SOURCE_DIR}/filters_tensors.cmake OPTIONAL)
include(${CMAKE_CURRENT_SOURCE_DIR}/filters_colour.cmake OPTIONAL)
