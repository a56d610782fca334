# libFuzzer targets for the property set forms and the preset reader. The readers are compiled into
# each target so that they carry the fuzzer's coverage and AddressSanitizer; the rest comes from the
# engine.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  foreach(target fuzz_propertyset_binary fuzz_propertyset_xml fuzz_preset_reader)
    add_executable(${target}
      ${CMAKE_CURRENT_LIST_DIR}/${target}.cpp
      ${CMAKE_SOURCE_DIR}/document/SxPropertySet.cpp
      ${CMAKE_SOURCE_DIR}/presets/PresetFile.cpp
      ${CMAKE_SOURCE_DIR}/presets/EffectPresetValues.cpp)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer,address -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer,address)
    target_link_libraries(${target} PRIVATE tornvale_engine)
  endforeach()
else()
  message(WARNING "the property set and preset fuzzers need clang; skipped")
endif()

# Writes the fuzzers' starting corpus of valid files: make_propertyset_corpus <folder>.
add_executable(make_propertyset_corpus ${CMAKE_CURRENT_LIST_DIR}/make_propertyset_corpus.cpp)
target_link_libraries(make_propertyset_corpus PRIVATE tornvale_engine)
