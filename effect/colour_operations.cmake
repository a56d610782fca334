# Sharpening, lighten merge and the final colour stage of the effect.
target_sources(tornvale_engine PRIVATE ColourOperations.cpp)
