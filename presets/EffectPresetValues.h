#pragma once
// The values of the effect layer that a preset carries: the layer's own keys and the effect's
// parameters. A preset is a whole state: a key the file lacks sets its control to 0, not to what
// it was before.

#include "document/SxPropertySet.h"
#include "effect/EffectParameters.h"

struct EffectPresetValues : EffectParameters
{
    // Written by the layer base, in this order, ahead of the effect's own keys.
    juce::String layerName;
    float layerOpacity = 1.0f;
    bool visible = true;
    int compositeMode = 0;

    /** Reads every value, taking the default for each missing key. */
    static EffectPresetValues readFrom(const SxPropertySet& set);
    /** Stores every value in the order a saved preset lists them. */
    void writeTo(SxPropertySet& set) const;

    bool operator==(const EffectPresetValues& other) const;
    bool operator!=(const EffectPresetValues& other) const { return ! (*this == other); }
};

namespace EffectPresets
{
/** Applies a preset to a layer's keys. A preset without pairs is nothing to apply: the keys stay
    as they were and the answer is false. */
bool apply(const SxPropertySet& preset, SxPropertySet& layerKeys);
} // namespace EffectPresets
