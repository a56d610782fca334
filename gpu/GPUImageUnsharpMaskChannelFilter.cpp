#include "gpu/GPUImageUnsharpMaskChannelFilter.h"
#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageTwoInputFilter.h"
#include "gpu/ShaderStore.h"

bool GPUImageUnsharpMaskChannelFilter::init(float radius, float red, float green, float blue)
{
    blurRadius = radius;
    blurFilter = addFilter(new GPUImageGaussianBlur());
    bool ok = blurFilter->init(radius, 2);

    unsharpFilter = addFilter(new GPUImageTwoInputFilter());
    unsharpFilter->useProgramCache = true;
    unsharpFilter->className = "GPUImageUnsharpMaskChannelFilter.mix";
    ok = unsharpFilter->initWithFragmentShader(juce::String(ShaderStore::swizzlePrefix) + "\n"
                                               + ShaderStore::text("unsharp_mask_channel.frag"))
         && ok;
    setIntensities(red, green, blue);

    // Wired as GPUImageUnsharpMaskFilter: the mixer draws once, when the blur is done.
    blurFilter->addTarget(unsharpFilter, 1);
    initialFilters = { blurFilter, unsharpFilter };
    terminalFilter = unsharpFilter;
    inputFilterToIgnoreForUpdates = unsharpFilter;
    return ok;
}

void GPUImageUnsharpMaskChannelFilter::setIntensities(float red, float green, float blue)
{
    intensityRed = red;
    intensityGreen = green;
    intensityBlue = blue;
    if (unsharpFilter != nullptr)
    {
        unsharpFilter->setFloat(red, "intensityRed");
        unsharpFilter->setFloat(green, "intensityGreen");
        unsharpFilter->setFloat(blue, "intensityBlue");
    }
}
