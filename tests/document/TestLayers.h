#pragma once
// A small layer class for the document tests: it lays a flat colour over the picture below and
// counts its renders and the outputs that exist while it renders. The effect layer stands in its
// place in the program.

#include "document/LayerManager.h"
#include "document/SxPropertySet.h"

#include <algorithm>
#include <functional>

class TintLayer : public Layer
{
public:
    TintLayer() { renderAfterLower = true; }

    /** Runs in the middle of a render, as a change from the interface can while a thread renders. */
    std::function<void()> duringRender;

    Layer* createInstance() const override { return new TintLayer(); }
    juce::String getClassName() const override { return "TintLayer"; }

    void saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const override
    {
        Layer::saveToDictionary(set, options);
        set.setInt("tintRed", red);
        set.setInt("tintAlpha", alpha);
    }

    void restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions& options) override
    {
        Layer::restoreFromDictionary(set, options);
        red = set.getIntValue("tintRed", 0);
        alpha = set.getIntValue("tintAlpha", 255);
    }

    void renderLayer(LayerRenderParameters& parameters) override
    {
        Layer::renderLayer(parameters);
        ++renders;
        if (duringRender)
            duringRender();
        if (parameters.image == nullptr)
            return;
        // The output is kept between renders, so a render of a region refreshes only that region.
        if (outputImage == nullptr || outputImage->width != parameters.image->width || outputImage->height != parameters.image->height)
            allocateOutput(parameters);
        SxImageRgbaBytes own(parameters.image->width, parameters.image->height);
        for (size_t i = 0; i < own.byteCount(); i += 4)
        {
            own.pixels[i] = (uint8_t) alpha;
            own.pixels[i + 1] = (uint8_t) red;
        }
        compositeOnto(parameters, own, *outputImage);

        if (layerManager != nullptr)
        {
            int outputs = 0;
            for (auto* layer : layerManager->getLayers())
                outputs += layer->getOutputImage() != nullptr ? 1 : 0;
            peakOutputs = std::max(peakOutputs, outputs);
        }
    }

    int red = 0;
    int alpha = 255;
    int renders = 0;
    static inline int peakOutputs = 0;
};

/** A second class, to tell classes apart in the factory. */
class InvertLayer : public TintLayer
{
public:
    Layer* createInstance() const override { return new InvertLayer(); }
    juce::String getClassName() const override { return "InvertLayer"; }
};

/** Registers the test classes with the factory for the length of a test. */
struct TestPrototypes
{
    TestPrototypes()
    {
        LayerManager::addEffectPrototype(&tint);
        LayerManager::addEffectPrototype(&invert);
    }
    ~TestPrototypes()
    {
        LayerManager::removePrototype(&tint);
        LayerManager::removePrototype(&invert);
    }
    TintLayer tint;
    InvertLayer invert;
};

struct RecordingManagerCallback : public LayerManagerCallback
{
    void requestRender(bool, const LayerRect*) override { ++renderRequests; }
    void layerNeedsRender(bool, const LayerRect*) override {}
    float getRenderScale() override { return 1.0f; }
    void layersChanged() override { ++changes; }
    int renderRequests = 0;
    int changes = 0;
};
