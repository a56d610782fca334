# Property sets (the saved form of everything) and the geometry records stored in them.
target_sources(tornvale_engine PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/SxPropertySet.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SxGeometryRecords.cpp)
