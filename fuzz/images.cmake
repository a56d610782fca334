# libFuzzer target for the JPEG, PNG and TIFF decoders, compiled into the target with the Exif
# reader so that they carry the fuzzer's coverage and AddressSanitizer.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(fuzz_image_reader
    ${CMAKE_CURRENT_LIST_DIR}/fuzz_image_reader.cpp
    ${CMAKE_SOURCE_DIR}/imaging/ImageFileReader.cpp
    ${CMAKE_SOURCE_DIR}/imaging/ImageFileType.cpp
    ${CMAKE_SOURCE_DIR}/imaging/ImageLimits.cpp
    ${CMAKE_SOURCE_DIR}/imaging/FileBytes.cpp
    ${CMAKE_SOURCE_DIR}/imaging/ExifReader.cpp
    ${CMAKE_SOURCE_DIR}/imaging/ColorProfile.cpp
    ${CMAKE_SOURCE_DIR}/imaging/SxImageRgbaBytes.cpp
    ${CMAKE_SOURCE_DIR}/imaging/ImageScaling.cpp)
  target_include_directories(fuzz_image_reader PRIVATE ${CMAKE_SOURCE_DIR})
  target_compile_options(fuzz_image_reader PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_image_reader PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_image_reader PRIVATE tornvale_juce JPEG::JPEG TIFF::TIFF PkgConfig::LCMS2 lodepng)
else()
  message(WARNING "fuzz_image_reader needs clang; skipped")
endif()
