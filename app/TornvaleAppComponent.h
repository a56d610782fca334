#pragma once
// The product's main component: one picture with one effect above it, no layer panel, run as a
// plug-in by host editors as well as on its own.

#include "app/GenericAppComponent.h"

#include <memory>

class TornvaleEffect;

class TornvaleAppComponent : public GenericAppComponent
{
public:
    TornvaleAppComponent();
    ~TornvaleAppComponent() override;

    bool usesLayerStack() override { return false; }
    int getMaximumLayers() override { return 10; }
    bool hasPluginHost() override { return true; }
    juce::Rectangle<int> getPreviewRenderSize() override { return { 0, 0, 1500, 1500 }; }
    juce::Rectangle<int> getFullRenderSize() override;
    juce::String getProjectExtension() override { return "qhp"; }
    juce::String getApplicationDataName() override { return "Tornvale Art"; }
    juce::String getCompanyName() override { return "Ombrik"; }

    /** The line-art effect, registered for files and as the one effect of the one group. */
    void createEffects() override;

protected:
    void prepareEffectLayer(Layer* layer) override;

private:
    std::unique_ptr<TornvaleEffect> prototype;
};
