#include "gpu/GPUImageUnsharpMaskUnclampedFilter.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/ShaderStore.h"

#include <algorithm>

bool GPUImageUnsharpMaskUnclampedFilter::init(float radius, float amount)
{
    const bool ok = GPUImageUnsharpMaskFilter::init(radius, amount);
    if (unsharpFilter != nullptr)
    {
        const auto encoding = encodingFor(amount);
        unsharpFilter->setFloat(encoding.low, "encodedLow");
        unsharpFilter->setFloat(encoding.scale, "encodedScale");
    }
    return ok;
}

GPUImageUnsharpMaskUnclampedFilter::Encoding GPUImageUnsharpMaskUnclampedFilter::encodingFor(float amount)
{
    const float low = -std::max(0.0f, amount);
    return { low, 1.0f / (1.0f - 2.0f * low) };
}

juce::String GPUImageUnsharpMaskUnclampedFilter::mixerFragmentText() const
{
    return juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("ordered_dither.glsl") + "\n"
           + ShaderStore::text("unsharp_mask_unclamped.frag");
}
