#include "effect/EffectParameters.h"
#include "document/SxPropertySet.h"

#include <algorithm>

namespace EffectParameterTable
{
namespace
{
using P = EffectParameters;

EffectParameter slider(const char* key, float P::*field, float defaultValue, float randomBase, float randomSpan, int saveOrder,
                       const char* widgetName, const char* label, const char* tooltip, const char* darkStyleLabel = nullptr)
{
    return { key, field, nullptr, defaultValue, 0.0f, 1.0f, true, randomBase, randomSpan, saveOrder, widgetName, label, darkStyleLabel,
             tooltip, {}, {} };
}

EffectParameter choice(const char* key, int P::*field, bool randomised, int saveOrder, const char* widgetName, const char* label,
                       std::vector<const char*> choices, std::vector<const char*> tooltips)
{
    const float last = (float) choices.size() - 1.0f;
    return { key, nullptr, field, 0.0f, 0.0f, last, randomised, 0.0f, randomised ? last + 1.0f : 0.0f, saveOrder, widgetName, label,
             nullptr, nullptr, std::move(choices), std::move(tooltips) };
}
} // namespace

const std::array<EffectParameter, count>& all()
{
    // The random ranges keep a fresh look away from the extremes that read as broken (no lines,
    // or the photo washed out); the defaults are the look of a new effect before its first roll.
    static const std::array<EffectParameter, count> table {
        slider("preSharpen", &P::preSharpen, 0.25f, 0.1f, 0.25f, 0, "preSharpenSlider", "Detail",
               "Increases the amount of intersecting lines"),
        choice("preSharpenSize", &P::preSharpenSize, true, 1, "detailSizeSegment", "Detail Style", { "Sharp", "Soft", "Glow" },
               { "Decreases the amount of glow color and light in the scene while retaining sharp areas.",
                 "Creates a dreamy glow to color and light", "Exaggerates dreaminess to glow color and light" }),
        slider("colorizeEdges", &P::colorizeEdges, 0.25f, 0.0f, 0.2f, 2, "colorizeSlider", "Colorize Detail", "Adds color to the lines"),
        slider("strokeLength", &P::strokeLength, 0.5f, 0.1f, 0.25f, 3, "strokeLengthSlider", "Taper Length",
               "Creates an abstract style with longer intersecting lines."),
        slider("sharpen", &P::sharpen, 0.25f, 0.1f, 0.35f, 4, "lightenSlider", "Lighten", "Illuminates the whole scene", "Blacken"),
        slider("brightenLight", &P::brightenLight, 0.125f, 0.1f, 0.45f, 5, "brightenLightSlider", "Brighten",
               "Illuminates or darkens the outlines", "Darken"),
        slider("smoothing", &P::smoothing, 0.25f, 0.1f, 0.35f, 9, "smoothingSlider", "Smoothing", "Softens and curves the lines"),
        slider("postSharpen", &P::postSharpen, 0.25f, 0.3f, 0.35f, 6, "postSharpenSlider", "Edge Sharpen", "Defines and emphasizes the lines"),
        slider("saturation", &P::saturation, 0.25f, 0.2f, 0.35f, 7, "saturationSlider", "Color Boost", "Enhances the overall color"),
        slider("contrast", &P::contrast, 0.25f, 0.1f, 0.35f, 8, "contrastSlider", "Contrast",
               "Darkens the shaded areas and brightens the light ones."),
        choice("strokeStyle", &P::strokeStyle, false, 10, "strokeStyleSegment", "Taper Style", { "Light", "Dark" },
               { "Creates white highlights and outlines", "Creates black outlines" }),
    };
    return table;
}

const std::array<const EffectParameter*, count>& inSaveOrder()
{
    static const auto ordered = [] {
        std::array<const EffectParameter*, count> rows {};
        for (const auto& row : all())
            rows[(size_t) row.saveOrder] = &row;
        return rows;
    }();
    return ordered;
}

const EffectParameter* find(const juce::String& key)
{
    for (const auto& row : all())
        if (key == row.key)
            return &row;
    return nullptr;
}
} // namespace EffectParameterTable

//==============================================================================
float EffectParameter::get(const EffectParameters& values) const
{
    return isInteger() ? (float) (values.*intField) : values.*floatField;
}

void EffectParameter::set(EffectParameters& values, float value) const
{
    const float clamped = juce::jlimit(minimum, maximum, std::isfinite(value) ? value : 0.0f);
    if (isInteger())
        values.*intField = (int) clamped;
    else
        values.*floatField = clamped;
}

juce::String EffectParameter::toText(const EffectParameters& values) const
{
    if (isInteger())
        return juce::String(values.*intField);
    // Nine significant digits bring a float back to the same value.
    return juce::String::formatted("%.9g", (double) (values.*floatField));
}

//==============================================================================
EffectParameters::EffectParameters()
{
    for (const auto& row : EffectParameterTable::all())
        row.set(*this, row.defaultValue);
}

void EffectParameters::saveTo(SxPropertySet& set) const
{
    for (const auto* row : EffectParameterTable::inSaveOrder())
        if (row->isInteger())
            set.setInt(row->key, this->*(row->intField));
        else
            set.setFloat(row->key, this->*(row->floatField));
}

void EffectParameters::readFrom(const SxPropertySet& set)
{
    for (const auto* row : EffectParameterTable::inSaveOrder())
        row->set(*this, row->isInteger() ? (float) set.getIntValue(row->key, 0) : set.getFloatValue(row->key, 0.0f));
}

bool EffectParameters::setFromText(const juce::String& key, const juce::String& text)
{
    const auto* row = EffectParameterTable::find(key);
    const auto trimmed = text.trim();
    if (row == nullptr || trimmed.isEmpty() || !trimmed.containsOnly("0123456789.-+eE") || !trimmed.containsAnyOf("0123456789"))
        return false;
    row->set(*this, trimmed.getFloatValue());
    return true;
}

void EffectParameters::randomizeValues(juce::Random& random)
{
    for (const auto& row : EffectParameterTable::all())
    {
        if (!row.randomised)
            continue;
        // The upper 32 bits of the generator's step as a fraction, kept below 1: the arithmetic the
        // random ranges were tuned with.
        const float r = juce::jmin(0.9999999f, (float) (uint32_t) random.nextInt() * 2.3283064e-10f);
        row.set(*this, row.randomBase + row.randomSpan * r);
    }
}

bool EffectParameters::operator==(const EffectParameters& other) const
{
    for (const auto& row : EffectParameterTable::all())
        if (row.get(*this) != row.get(other))
            return false;
    return true;
}
