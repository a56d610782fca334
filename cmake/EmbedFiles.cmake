# Embeds text files into the binary at build time: each file becomes a string in a generated
# source, looked up by its file name. Editing a file rebuilds only the generated source.
#
#   tornvale_embed_files(TARGET target NAME symbolPrefix FILES a.frag b.vert ...)
#
# generates <symbolPrefix>_find(const char* name, size_t* size) returning the bytes or nullptr.
function(tornvale_embed_files)
  cmake_parse_arguments(EMBED "" "TARGET;NAME" "FILES" ${ARGN})
  set(out ${CMAKE_CURRENT_BINARY_DIR}/${EMBED_NAME}_embedded.cpp)
  set(abs_files)
  foreach(f ${EMBED_FILES})
    get_filename_component(a ${f} ABSOLUTE)
    list(APPEND abs_files ${a})
  endforeach()
  add_custom_command(
    OUTPUT ${out}
    COMMAND ${CMAKE_COMMAND} -DOUT=${out} -DNAME=${EMBED_NAME} "-DFILES=${abs_files}"
            -P ${CMAKE_SOURCE_DIR}/cmake/EmbedFilesScript.cmake
    DEPENDS ${abs_files} ${CMAKE_SOURCE_DIR}/cmake/EmbedFilesScript.cmake
    VERBATIM)
  # The generated source is compiled in this directory (where its rule lives) and linked in.
  add_library(${EMBED_NAME}_embedded OBJECT ${out})
  target_sources(${EMBED_TARGET} PRIVATE $<TARGET_OBJECTS:${EMBED_NAME}_embedded>)
endfunction()
