#pragma once
// One brush dab, built once for a diameter, softness and opacity and then stamped many times
// into the effect mask. Each byte is the dab's coverage with the opacity already in it. A brush
// never changes: a new size or opacity makes a new brush.

#include "imaging/SxImageAlphaByte.h"

#include <cstdint>

/** Where a dab lands, in mask pixels (fractions allowed). The last three floats are carried
    along for the tools and read by nothing here. */
struct SxBrushPoint
{
    float x = 0.0f;
    float y = 0.0f;
    float strength = 1.0f;
    float carried[3] = { 0.0f, 0.0f, 0.0f };
};

class SxBrush
{
public:
    /** tip, when given, shapes the dab (the brush keeps a reference); the brush tools use none. */
    SxBrush(float diameter, float softness, float opacity, SxImageAlphaByte* tip = nullptr);
    virtual ~SxBrush();

    /** Rebuilds the dab at scale 1: a smoothstep from the hard core to the rim. */
    virtual void regenerate();
    /** The dab at scale; the brush keeps ownership. Scale 1 is the dab itself. */
    virtual SxImageAlphaByte* imageAtScale(float scale, float reserved = 1.0f);
    /** The byte of the last scaled dab at row trunc(y), column trunc(x); no bounds check. */
    virtual void sampleScaled(std::uint8_t& out, float x, float y);

    float getDiameter() const { return mDiameter; }
    float getSoftness() const { return mSoftness; }
    float getOpacity() const { return mOpacity; }

    /** The dab's width at scale 1 (its height without a tip). */
    int dabWidth() { return imageAtScale(1.0f)->width; }

    /** What one dab of the restoring brush subtracts per unit of coverage: the opacity is in
        the dab and in the strength alike, so it acts with its square (the feel of the brush). */
    static float paintOnStrength(float opacity, float pressure) { return opacity * 0.35f * pressure; }
    /** The removing brush's opacity as a byte. A value of at most 1 is taken for a fraction of
        255, which makes very small opacities strong: 0.003 gives 195, while 0.004 gives 1. */
    static std::uint8_t paintOffOpacityByte(float opacity, float pressure);

    SxBrush(const SxBrush&) = delete;
    SxBrush& operator=(const SxBrush&) = delete;

private:
    SxImageAlphaByte* mImage = nullptr;
    SxImageAlphaByte* mScaledImage = nullptr;
    SxImageAlphaByte* mTipImage = nullptr;
    float mDiameter;
    float mSoftness;
    float mOpacity;
};
