#include "gpu/GPUImageUnsharpMaskUnclampedFilter.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/ShaderStore.h"

bool GPUImageUnsharpMaskUnclampedFilter::init(float radius, float amount)
{
    const bool ok = GPUImageUnsharpMaskFilter::init(radius, amount);
    // The framebuffer is made at the first frame, so the type set now is the one it gets.
    if (unsharpFilter != nullptr)
        unsharpFilter->outputTextureType = GL_HALF_FLOAT_OES;
    return ok;
}

juce::String GPUImageUnsharpMaskUnclampedFilter::mixerFragmentText() const
{
    return juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("unsharp_mask_unclamped.frag");
}
