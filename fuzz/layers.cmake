# libFuzzer target for the project reader, and the writer of its starting corpus.
# The reader and everything it runs are compiled into the target itself rather than taken from
# tornvale_engine, so that all of it carries the fuzzer's coverage and AddressSanitizer; only
# JUCE comes prebuilt.
set(_project_reader_sources
  ${CMAKE_SOURCE_DIR}/document/ProjectFile.cpp
  ${CMAKE_SOURCE_DIR}/document/LayerManager.cpp
  ${CMAKE_SOURCE_DIR}/document/Layer.cpp
  ${CMAKE_SOURCE_DIR}/document/StaticImageLayer.cpp
  ${CMAKE_SOURCE_DIR}/document/LayerBlends.cpp
  ${CMAKE_SOURCE_DIR}/document/SxPropertySet.cpp
  ${CMAKE_SOURCE_DIR}/imaging/SxImageRgbaBytes.cpp
  ${CMAKE_SOURCE_DIR}/imaging/SxImageAlphaByte.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageScaling.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageStream.cpp
  ${CMAKE_SOURCE_DIR}/imaging/SafeFileWrite.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageLimits.cpp
  ${CMAKE_SOURCE_DIR}/imaging/FileBytes.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageRGBAPixelData.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageFileReader.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageFileType.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ExifReader.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ColorProfile.cpp)
set(_project_reader_libraries tornvale_juce JPEG::JPEG TIFF::TIFF PkgConfig::LCMS2 lodepng)

if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  add_executable(fuzz_project_reader ${CMAKE_CURRENT_LIST_DIR}/fuzz_project_reader.cpp ${_project_reader_sources})
  target_include_directories(fuzz_project_reader PRIVATE ${CMAKE_SOURCE_DIR})
  target_compile_options(fuzz_project_reader PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
  target_link_options(fuzz_project_reader PRIVATE -fsanitize=fuzzer,address)
  target_link_libraries(fuzz_project_reader PRIVATE ${_project_reader_libraries})
else()
  message(WARNING "fuzz_project_reader needs clang; skipped")
endif()

# Writes the fuzzer's starting corpus of valid projects: make_project_corpus <folder>.
add_executable(make_project_corpus ${CMAKE_CURRENT_LIST_DIR}/make_project_corpus.cpp ${_project_reader_sources})
target_include_directories(make_project_corpus PRIVATE ${CMAKE_SOURCE_DIR})
target_link_libraries(make_project_corpus PRIVATE ${_project_reader_libraries})
