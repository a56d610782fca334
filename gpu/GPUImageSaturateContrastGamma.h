#pragma once
// The effect's final colour stage: saturation around luminance, contrast around the middle grey,
// and gamma, each with a neutral value (1, 0, 0) that leaves the image unchanged. Alpha is kept.

#include "gpu/GPUImageTextureSamplingFilter.h"

class GPUImageSaturateContrastGamma : public GPUImageTextureSamplingFilter
{
public:
    GPUImageSaturateContrastGamma();

    /** Compiles the program; the context must be current. */
    virtual bool init();

    /** Luminance weights in the stored channel order alpha, red, green, blue. */
    virtual void setConversionWeights(const float weights[4]);
    /** 0 gives grey, 1 the colour, above 1 more colour. */
    virtual void setSaturate(float value);
    /** 0 leaves the image; 1 is a full S-curve around the middle. */
    virtual void setContrast(float value);
    /** 0 leaves the image; positive lifts the mid-tones, negative lowers them. */
    virtual void setGamma(float value);

    void setUniforms() override;

    /** The name the program's weight uniform is given in place of its placeholder. */
    static constexpr const char* conversionWeightsName = "conversionWeights";

    GLint saturateAmountUniform = -1, contrastAmountUniform = -1, gammaAmountUniform = -1, conversionMatrixUniform = -1;
    float saturateAmount = 1.0f, contrastAmount = 0.0f, gammaAmount = 0.0f;
    float conversionWeights[4] = { 0.0f, 0.2125f, 0.7154f, 0.0721f };
};
