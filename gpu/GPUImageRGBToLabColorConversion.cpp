#include "gpu/GPUImageRGBToLabColorConversion.h"
#include "gpu/ShaderStore.h"

juce::String GPUImageRGBToLabColorConversion::fragmentBody() const
{
    return ShaderStore::text("lab_functions.glsl") + "\n" + ShaderStore::text("rgb_to_lab.frag");
}
