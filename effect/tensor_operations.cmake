# The direction field and the stroke pass of the effect.
target_sources(tornvale_engine PRIVATE TensorOperations.cpp)
