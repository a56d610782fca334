#pragma once
// The one effect of the program: a layer that turns the photo below it into line art. From the
// photo's local structure it derives a direction field, smears twelve copies of the photo along
// it, blurs each copy along its own straight angle, sharpens and re-lights it, and keeps the
// per-channel maximum of the twelve, so that only bright ridges remain and cross as lines.
//
// The brush mask is process-wide, as there is one document: 0 shows the effect, 255 the
// colour-adjusted photo.

#include "document/Layer.h"
#include "effect/EffectParameters.h"
#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxSmartPtr.h"

#include <juce_core/juce_core.h>

class TornvaleEffect : public Layer, public EffectParameters
{
public:
    /** Starts at the table defaults and then rolls random settings, as a new effect does. */
    TornvaleEffect();
    /** Starts at the table defaults only (for renders from the command line and for tests). */
    struct DefaultsOnly {};
    explicit TornvaleEffect(DefaultsOnly);
    ~TornvaleEffect() override;

    Layer* createInstance() const override { return new TornvaleEffect(); }
    juce::String getClassName() const override { return "Tornvale"; }
    void wasDeselected() override {}
    bool hasPresets() const override { return true; }

    /** The table defaults. */
    void setDefaults();
    void randomize() override;
    /** Random settings from the given generator, so that a batch can be repeated. */
    void randomize(juce::Random& random);

    void saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const override;
    void restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions& options) override;

    void resetImage(SxImageRgbaBytes* image) override;
    void clearCachedImages() override;
    void onImageSizeChanged(const LayerRect& region, SxImageRgbaBytes* image) override;
    void resizeBrushMask(SxImageRgbaBytes* image) override;

    void renderLayer(LayerRenderParameters& parameters) override;
    SxImageRgbaBytes* getRenderedImage(LayerRenderParameters& parameters) override;

    /** A new, empty (all effect) mask of the image's size; drops the cached results. */
    static void createEffectMask(const SxImageRgbaBytes& image);
    /** Resamples the existing mask to the image's size, keeping what was painted: enlarged
        smoothly for a full-size render, and back at the size it was painted at exactly as it
        was painted (not resampled twice). */
    static void resizeEffectMask(const SxImageRgbaBytes& image);
    /** A mask painted elsewhere (any size), enlarged or reduced to the image like the brush mask. */
    static void loadEffectMask(const SxImageAlphaByte& painted, const SxImageRgbaBytes& image);
    static SxImageAlphaByte* getBrushMask() { return brushMask; }
    static void deleteBrushMask();
    /** A mask of this effect alone, used instead of the brush mask (null goes back to it): a
        draft render of a reduced copy of the picture carries the brush mask reduced alike,
        while the brush goes on painting the full one. */
    void setOwnMask(SxImageAlphaByte* mask);

    SxImageRgbaBytes* getEffectResult() const { return effectResult; }
    SxImageRgbaBytes* getAdjustedOriginal() const { return adjustedOriginal; }

    /** The parameters as they stand now: a render takes this copy when it starts, so that a slider
        moved meanwhile cannot change one render halfway. */
    EffectParameters currentParameters() const { return *this; }

    /** When the source has an alpha channel, the result takes it over unchanged. */
    bool originalImageHadAlpha = false;

    /** The angle of stroke pass i (1 to 12): a half turn in steps of π / 12, from −π/2 + π/8. */
    static float strokeAngle(int pass);

    /** What the chain's filters get from the parameters at a render scale: every length in
        pixels grows with the scale, so that a preview and a full-size render look alike. */
    struct ChainSettings
    {
        float tensorBlur;
        float preSharpenRadius, preSharpenLightness, preSharpenColour;
        float smoothLength, blurLength, sharpenRadius, sharpenAmount, lightRadius, lightAmount;
        float finishSaturation, finishUnsharpRadius;
    };
    static ChainSettings chainSettings(const EffectParameters& parameters, float scale);

private:
    void deleteCachedImages();
    const SxImageAlphaByte* maskForRender() const { return ownMask.get() != nullptr ? ownMask.get() : brushMask; }

    SxRef<SxImageAlphaByte> ownMask;

    SxImageRgbaBytes* effectResult = nullptr;
    SxImageRgbaBytes* adjustedOriginal = nullptr;
    static SxImageAlphaByte* brushMask;
    /** The mask as painted, kept while brushMask is enlarged for a full-size render. */
    static SxImageAlphaByte* paintedMask;
};

/** Puts the effect's prototype into the layer factory, once. */
void registerTornvaleEffect();
