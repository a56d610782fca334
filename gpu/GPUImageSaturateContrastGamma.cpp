#include "gpu/GPUImageSaturateContrastGamma.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

GPUImageSaturateContrastGamma::GPUImageSaturateContrastGamma()
{
    useProgramCache = true;
    setSaturate(saturateAmount);
    setContrast(contrastAmount);
    setGamma(gammaAmount);
}

bool GPUImageSaturateContrastGamma::init()
{
    const auto body = ShaderStore::text("saturate_contrast_gamma.frag").replace("CONVERSION_MATRIX", conversionWeightsName);
    if (!initWithFragmentShader(ShaderStore::composeColourProgram(body)))
        return false;
    ScopedGLContext scoped;
    saturateAmountUniform = filterProgram->uniformIndex("saturateAmount");
    contrastAmountUniform = filterProgram->uniformIndex("contrastAmount");
    gammaAmountUniform = filterProgram->uniformIndex("gammaAmount");
    conversionMatrixUniform = filterProgram->uniformIndex(conversionWeightsName);
    return true;
}

void GPUImageSaturateContrastGamma::setConversionWeights(const float weights[4])
{
    std::copy(weights, weights + 4, conversionWeights);
    // The core queues only scalars and points; the vector is applied with the others at each draw.
}

void GPUImageSaturateContrastGamma::setSaturate(float value)
{
    saturateAmount = value;
    setFloat(value, "saturateAmount");
}

void GPUImageSaturateContrastGamma::setContrast(float value)
{
    contrastAmount = value;
    setFloat(value, "contrastAmount");
}

void GPUImageSaturateContrastGamma::setGamma(float value)
{
    gammaAmount = value;
    setFloat(value, "gammaAmount");
}

void GPUImageSaturateContrastGamma::setUniforms()
{
    GPUImageTextureSamplingFilter::setUniforms();
    if (filterProgram != nullptr && conversionMatrixUniform >= 0)
        glUniform4fv(conversionMatrixUniform, 1, conversionWeights);
}
