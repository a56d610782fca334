#pragma once
// The effect's eleven parameters, declared once: their values (EffectParameters) and one table
// row per parameter (key, default, range, random range, label, tooltip, save order). The effect,
// presets, the Adjust panel and the command-line tools all read the table, so a parameter is
// added or retuned in one place.

#include <juce_core/juce_core.h>

#include <array>
#include <vector>

class SxPropertySet;

struct EffectParameters
{
    /** Every field at the table's default. */
    EffectParameters();

    // The fields, by their saved keys' names, in the order random settings are drawn.
    float preSharpen;
    int preSharpenSize;
    float colorizeEdges;
    float strokeLength;
    float sharpen;
    float brightenLight;
    float smoothing;
    float postSharpen;
    float saturation;
    float contrast;
    int strokeStyle; // 0 light strokes on dark, 1 dark strokes on light

    /** Stores every parameter in save order. */
    void saveTo(SxPropertySet& set) const;
    /** Reads every parameter. A saved set is a whole state: a key it lacks reads 0, not the
        present value; values are kept in range so a damaged file cannot drive the chain
        outside what it was tuned for. */
    void readFrom(const SxPropertySet& set);
    /** Sets one parameter from text (a command line's KEY=VALUE), leaving the others; false for
        an unknown key or a value that is not a number. */
    bool setFromText(const juce::String& key, const juce::String& text);
    /** One draw per field, in field order, so that a given generator state gives one look; the
        stroke style is kept. */
    void randomizeValues(juce::Random& random);

    bool operator==(const EffectParameters& other) const;
    bool operator!=(const EffectParameters& other) const { return !(*this == other); }
};

struct EffectParameter
{
    const char* key;
    /** One of the two is set: the field is a float slider or an integer choice. */
    float EffectParameters::*floatField;
    int EffectParameters::*intField;
    float defaultValue;
    float minimum, maximum;
    /** Random settings give randomBase + randomSpan × r for r in [0, 1) (truncated for an
        integer); not randomised at all when randomised is false. */
    bool randomised;
    float randomBase, randomSpan;
    /** Position among the saved keys. */
    int saveOrder;
    /** The Adjust panel's control: its component name, label, tooltip; the label in dark style
        where the meaning turns around (else null). */
    const char* widgetName;
    const char* label;
    const char* darkStyleLabel;
    const char* tooltip;
    /** An integer choice's labels and their tooltips. */
    std::vector<const char*> choices;
    std::vector<const char*> choiceTooltips;

    bool isInteger() const { return intField != nullptr; }
    float get(const EffectParameters& values) const;
    /** Clamps to the range; an integer takes the truncated value. */
    void set(EffectParameters& values, float value) const;
    /** The value as a saved set and a command line write it. */
    juce::String toText(const EffectParameters& values) const;
};

namespace EffectParameterTable
{
constexpr int count = 11;
/** In field order. */
const std::array<EffectParameter, count>& all();
/** In the order saved settings list them. */
const std::array<const EffectParameter*, count>& inSaveOrder();
/** The row of a key, or null. */
const EffectParameter* find(const juce::String& key);
} // namespace EffectParameterTable
