#include "gpu/GPUImageUnsharpMaskUnclampedFilter.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/ShaderStore.h"

#include <algorithm>

bool GPUImageUnsharpMaskUnclampedFilter::init(float radius, float amount)
{
    const bool ok = GPUImageUnsharpMaskFilter::init(radius, amount);
    if (unsharpFilter != nullptr)
    {
        // The result lies within −amount .. 1 + amount whatever the picture.
        const float low = -std::max(0.0f, amount);
        unsharpFilter->setFloat(low, "encodedLow");
        unsharpFilter->setFloat(1.0f / (1.0f - 2.0f * low), "encodedScale");
    }
    return ok;
}

juce::String GPUImageUnsharpMaskUnclampedFilter::mixerFragmentText() const
{
    return juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("ordered_dither.glsl") + "\n"
           + ShaderStore::text("unsharp_mask_unclamped.frag");
}
