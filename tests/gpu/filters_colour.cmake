tornvale_add_test(NAME gpu_colour_tests SOURCES
  GPUImageGaussianBlurTest.cpp
  GPUImageColorConversionTest.cpp
  GPUImageLabSharpenLightenTest.cpp)
