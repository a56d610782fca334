#include "app/TornvaleAppComponent.h"

#include "effect/TornvaleEffect.h"

juce::Rectangle<int> TornvaleAppComponent::getFullRenderSize()
{
    // "RenderSize" below 2 picks the smaller full render for machines short of GPU memory.
    const int renderSize = getUserSettings() != nullptr ? getUserSettings()->getIntValue("RenderSize", 2) : 2;
    return renderSize < 2 ? juce::Rectangle<int>(0, 0, 1600, 1600) : juce::Rectangle<int>(0, 0, 2447, 2447);
}

TornvaleAppComponent::TornvaleAppComponent() = default;

TornvaleAppComponent::~TornvaleAppComponent()
{
    // The layers go first: the group's prototype must outlive every effect made from it.
    waitForRender();
    layerManager.reset();
}

void TornvaleAppComponent::createEffects()
{
    registerTornvaleEffect();
    prototype = std::make_unique<TornvaleEffect>(TornvaleEffect::DefaultsOnly {});
    EffectGroup group;
    group.name = "Tornvale";
    group.effects.push_back(prototype.get());
    effectGroups.clear();
    effectGroups.push_back(std::move(group));
    currentEffectGroup = 0;
}

void TornvaleAppComponent::prepareEffectLayer(Layer* layer)
{
    // The effect keeps a picture's transparency only when the picture had some.
    if (auto* effect = dynamic_cast<TornvaleEffect*>(layer))
        effect->originalImageHadAlpha = getSession().pictureHadAlpha();
}
