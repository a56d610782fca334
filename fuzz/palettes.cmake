# libFuzzer target for the colour palette reader; run it with -malloc_limit_mb=256.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(fuzz_color_palette
    ${CMAKE_CURRENT_LIST_DIR}/fuzz_color_palette.cpp
    ${CMAKE_SOURCE_DIR}/ui/ColorPaletteFile.cpp
    ${CMAKE_SOURCE_DIR}/document/SxPropertySet.cpp)
  target_compile_options(fuzz_color_palette PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_color_palette PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_color_palette PRIVATE tornvale_engine)
endif()
