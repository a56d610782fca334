#include "gpu/GPUImageColorConversion.h"
#include "gpu/ShaderStore.h"

bool GPUImageColorConversion::init()
{
    // Conversions run in every tile of every operation; each class compiles once.
    useProgramCache = true;
    return initWithFragmentShader(juce::String(ShaderStore::swizzlePrefix) + "\n" + fragmentBody());
}

juce::String GPUImageColorConversion::fragmentBody() const
{
    return ShaderStore::text("color_conversion.frag");
}
