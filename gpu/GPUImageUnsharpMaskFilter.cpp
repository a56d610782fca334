#include "gpu/GPUImageUnsharpMaskFilter.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/ShaderStore.h"

bool GPUImageUnsharpMaskFilter::init(float radius, float amount)
{
    blurRadius = radius;
    blurFilter = addFilter(new GPUImageGaussianBlur());
    bool ok = blurFilter->init(radius, 2);

    unsharpFilter = addFilter(new GPUImageTwoInputFilter());
    unsharpFilter->useProgramCache = true;
    // A plain two-input filter: the cache must key its program by what it draws, not by its class.
    unsharpFilter->className = mixerProgramKey();
    ok = unsharpFilter->initWithFragmentShader(mixerFragmentText()) && ok;
    setIntensity(amount);

    // The input reaches both members; the mixer is left out of the group's updates and draws when
    // the blur hands it its second input, so it draws once, after the blur.
    blurFilter->addTarget(unsharpFilter, 1);
    initialFilters = { blurFilter, unsharpFilter };
    terminalFilter = unsharpFilter;
    inputFilterToIgnoreForUpdates = unsharpFilter;
    return ok;
}

juce::String GPUImageUnsharpMaskFilter::mixerFragmentText() const
{
    return juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("unsharp_mask.frag");
}

void GPUImageUnsharpMaskFilter::setIntensity(float value)
{
    intensity = value;
    if (unsharpFilter != nullptr)
        unsharpFilter->setFloat(value, "intensity");
}
