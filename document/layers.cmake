# Layers, the layer manager and its blends, project files and the undo history.
target_sources(tornvale_engine PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/LayerBlends.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Layer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StaticImageLayer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/LayerManager.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ProjectFile.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SxUndo.cpp)
