tornvale_add_test(NAME gpu_tensor_tests SOURCES
  DirectionFieldTest.cpp
  GPUImageMotionBlurTest.cpp)
