# The hand-over reader and its tests join the sanitizer run of the other readers: a size taken
# from a damaged file that became an allocation would fail there.
target_sources(document_readers_asan_tests PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/HandOverFilesTest.cpp
  ${CMAKE_SOURCE_DIR}/document/HandOverFiles.cpp)
