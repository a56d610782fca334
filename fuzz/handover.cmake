# libFuzzer target for the hand-over picture file and the scripted-run settings. Starting corpus:
# make_handover_corpus <folder> writes one valid file of each image mode, with and without mask.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(fuzz_handover_reader
    ${CMAKE_CURRENT_LIST_DIR}/fuzz_handover_reader.cpp
    ${CMAKE_SOURCE_DIR}/document/HandOverFiles.cpp
    ${CMAKE_SOURCE_DIR}/document/SxPropertySet.cpp)
  target_compile_options(fuzz_handover_reader PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_handover_reader PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_handover_reader PRIVATE tornvale_engine)
endif()
add_executable(make_handover_corpus ${CMAKE_CURRENT_LIST_DIR}/make_handover_corpus.cpp)
target_link_libraries(make_handover_corpus PRIVATE tornvale_engine)
