#include "gpu/GPUImageLabToRGBColorConversion.h"
#include "gpu/ShaderStore.h"

juce::String GPUImageLabToRGBColorConversion::fragmentBody() const
{
    return ShaderStore::text("lab_functions.glsl") + "\n" + ShaderStore::text("lab_to_rgb.frag");
}
