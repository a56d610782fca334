# Tests of layers, the layer manager, blends, project files and undo.
tornvale_add_test(NAME document_layers_tests
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/LayerBlendsTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/LayerManagerTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/SxUndoTest.cpp
    ${CMAKE_CURRENT_LIST_DIR}/ProjectFileTest.cpp)

# The project reader and what it calls, compiled here a second time with AddressSanitizer and
# UBSan, so that the ordinary test run exercises the bad-input cases under the sanitizers. Only
# this target is instrumented; the engine stays as it is.
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
add_executable(document_project_asan_tests
  ${CMAKE_CURRENT_LIST_DIR}/ProjectFileTest.cpp
  ${_project_reader_sources})
target_link_libraries(document_project_asan_tests PRIVATE ${_project_reader_libraries} GTest::gtest GTest::gtest_main)
target_compile_definitions(document_project_asan_tests PRIVATE TORNVALE_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
target_include_directories(document_project_asan_tests PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tests)
target_compile_options(document_project_asan_tests PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer)
target_link_options(document_project_asan_tests PRIVATE -fsanitize=address,undefined)
set_target_properties(document_project_asan_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
gtest_discover_tests(document_project_asan_tests DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                     PROPERTIES TIMEOUT 600 ENVIRONMENT "ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1")
