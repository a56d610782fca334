# Direction field, flow smoothing and the straight line blur of the strokes.
target_sources(tornvale_engine PRIVATE
  GPUImageGetTensors.cpp
  GPUImageBlurTensors.cpp
  GPUImageGetTensorsAngle.cpp
  GPUImageAnisotropicSmooth.cpp
  GPUImageMotionBlur.cpp
  GPUImageMotionBlurToLab.cpp)
