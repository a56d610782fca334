# Blur, sharpen, colour and compositing filters.
target_sources(tornvale_engine PRIVATE
  GPUImageBoxBlur.cpp
  GPUImageBox4BlurFilter.cpp
  GPUImageBox8BlurFilter.cpp
  GPUImageBox12BlurFilter.cpp
  GPUImageFractionalBoxBlurFilter.cpp
  GPUImageGaussianBlur.cpp
  GPUImageUnsharpMaskFilter.cpp
  GPUImageUnsharpMaskChannelFilter.cpp
  GPUImageColorConversion.cpp
  GPUImageRGBToLabColorConversion.cpp
  GPUImageLabToRGBColorConversion.cpp
  GPUImageSaturateContrastGamma.cpp
  GPUImageLightenMode.cpp
  GPUImageLabSharpenLightenFilter.cpp
  GPUImageUnsharpMaskUnclampedFilter.cpp)
