# Tests of property sets, the geometry records stored in them and preset files.
tornvale_add_test(NAME document_propertysets_tests
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/SxPropertySetTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SxPropertySetBadInputTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SxGeometryRecordsTest.cpp)

# The readers of property sets and presets compiled a second time, into the test itself, with
# AddressSanitizer and UBSan, so that the ordinary test run checks the bad-input cases under the
# sanitizers. Only this target is instrumented. ASan refuses any single allocation above 64 MB
# here: a reader that believed a corrupt count or size would fail these tests.
add_executable(document_readers_asan_tests
  ${CMAKE_CURRENT_LIST_DIR}/SxPropertySetBadInputTest.cpp
  ${CMAKE_SOURCE_DIR}/tests/presets/PresetFileBadInputTest.cpp
  ${CMAKE_SOURCE_DIR}/document/SxPropertySet.cpp
  ${CMAKE_SOURCE_DIR}/presets/PresetFile.cpp
  ${CMAKE_SOURCE_DIR}/presets/EffectPresetValues.cpp
  ${CMAKE_SOURCE_DIR}/effect/EffectParameters.cpp
  ${CMAKE_SOURCE_DIR}/imaging/SxImageRgbaBytes.cpp
  ${CMAKE_SOURCE_DIR}/imaging/SxImageAlphaByte.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageScaling.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageRGBAPixelData.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageFileReader.cpp
  ${CMAKE_SOURCE_DIR}/imaging/SafeFileWrite.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageLimits.cpp
  ${CMAKE_SOURCE_DIR}/imaging/FileBytes.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ImageFileType.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ExifReader.cpp
  ${CMAKE_SOURCE_DIR}/imaging/ColorProfile.cpp)
target_link_libraries(document_readers_asan_tests PRIVATE
  tornvale_juce GTest::gtest GTest::gtest_main JPEG::JPEG TIFF::TIFF PkgConfig::LCMS2 lodepng)
target_include_directories(document_readers_asan_tests PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tests)
target_compile_definitions(document_readers_asan_tests PRIVATE TORNVALE_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
target_compile_options(document_readers_asan_tests PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
target_link_options(document_readers_asan_tests PRIVATE -fsanitize=address,undefined)
set_target_properties(document_readers_asan_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
gtest_discover_tests(document_readers_asan_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_PREFIX "asan."
                     PROPERTIES TIMEOUT 600
                     ENVIRONMENT "ASAN_OPTIONS=detect_leaks=1:max_allocation_size_mb=64")
