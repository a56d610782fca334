#include "gpu/GPUImageUnsharpMaskToLabFilter.h"
#include "gpu/ShaderStore.h"

juce::String GPUImageUnsharpMaskToLabFilter::mixerFragmentText() const
{
    return juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("lab_functions.glsl") + "\n"
           + ShaderStore::text("unsharp_mask_to_lab.frag");
}
