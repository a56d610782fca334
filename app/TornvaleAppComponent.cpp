#include "app/TornvaleAppComponent.h"

juce::Rectangle<int> TornvaleAppComponent::getFullRenderSize()
{
    // "RenderSize" below 2 picks the smaller full render for machines short of GPU memory.
    const int renderSize = getUserSettings() != nullptr ? getUserSettings()->getIntValue("RenderSize", 2) : 2;
    return renderSize < 2 ? juce::Rectangle<int>(0, 0, 1600, 1600) : juce::Rectangle<int>(0, 0, 2447, 2447);
}
