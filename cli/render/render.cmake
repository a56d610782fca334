# tornvale-render: the job is a library so that its rules are tested without running the binary.
add_library(tornvale_render_job STATIC
  ${CMAKE_CURRENT_LIST_DIR}/RenderOptions.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RenderJob.cpp
  ${CMAKE_CURRENT_LIST_DIR}/RenderOutput.cpp)
target_link_libraries(tornvale_render_job PUBLIC tornvale_engine)
add_executable(tornvale-render ${CMAKE_CURRENT_LIST_DIR}/RenderMain.cpp)
target_link_libraries(tornvale-render PRIVATE tornvale_render_job)
