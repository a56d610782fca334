#include "presets/EffectPresetValues.h"

EffectPresetValues EffectPresetValues::readFrom(const SxPropertySet& set)
{
    EffectPresetValues v;
    v.preSharpen = set.getFloatValue("preSharpen", 0.0f);
    v.preSharpenSize = set.getIntValue("preSharpenSize", 0);
    v.colorizeEdges = set.getFloatValue("colorizeEdges", 0.0f);
    v.strokeLength = set.getFloatValue("strokeLength", 0.0f);
    v.sharpen = set.getFloatValue("sharpen", 0.0f);
    v.brightenLight = set.getFloatValue("brightenLight", 0.0f);
    v.postSharpen = set.getFloatValue("postSharpen", 0.0f);
    v.saturation = set.getFloatValue("saturation", 0.0f);
    v.contrast = set.getFloatValue("contrast", 0.0f);
    v.smoothing = set.getFloatValue("smoothing", 0.0f);
    v.strokeStyle = set.getIntValue("strokeStyle", 0);

    v.layerName = set.getValue("layerName");
    v.layerOpacity = set.getFloatValue("layerOpacity", 1.0f);
    // Older files kept "visible" as free text; only its integer reading decides, absent means shown.
    v.visible = set.getIntValue("visible", 1) != 0;
    v.compositeMode = set.getIntValue("compositeMode", 0);
    return v;
}

void EffectPresetValues::writeTo(SxPropertySet& set) const
{
    set.setString("layerName", layerName);
    set.setFloat("layerOpacity", layerOpacity);
    set.setBool("visible", visible);
    set.setInt("compositeMode", compositeMode);
    set.setFloat("preSharpen", preSharpen);
    set.setInt("preSharpenSize", preSharpenSize);
    set.setFloat("colorizeEdges", colorizeEdges);
    set.setFloat("strokeLength", strokeLength);
    set.setFloat("sharpen", sharpen);
    set.setFloat("brightenLight", brightenLight);
    set.setFloat("postSharpen", postSharpen);
    set.setFloat("saturation", saturation);
    set.setFloat("contrast", contrast);
    set.setFloat("smoothing", smoothing);
    set.setInt("strokeStyle", strokeStyle);
}

bool EffectPresetValues::operator==(const EffectPresetValues& o) const
{
    return layerName == o.layerName && layerOpacity == o.layerOpacity && visible == o.visible
        && compositeMode == o.compositeMode && preSharpen == o.preSharpen && preSharpenSize == o.preSharpenSize
        && colorizeEdges == o.colorizeEdges && strokeLength == o.strokeLength && sharpen == o.sharpen
        && brightenLight == o.brightenLight && postSharpen == o.postSharpen && saturation == o.saturation
        && contrast == o.contrast && smoothing == o.smoothing && strokeStyle == o.strokeStyle;
}

namespace EffectPresets
{
bool apply(const SxPropertySet& preset, SxPropertySet& layerKeys)
{
    if (preset.size() == 0)
        return false;
    EffectPresetValues::readFrom(preset).writeTo(layerKeys);
    return true;
}
} // namespace EffectPresets
