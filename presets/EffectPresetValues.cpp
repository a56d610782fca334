#include "presets/EffectPresetValues.h"

EffectPresetValues EffectPresetValues::readFrom(const SxPropertySet& set)
{
    EffectPresetValues v;
    v.EffectParameters::readFrom(set);
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
    saveTo(set);
}

bool EffectPresetValues::operator==(const EffectPresetValues& o) const
{
    return layerName == o.layerName && layerOpacity == o.layerOpacity && visible == o.visible && compositeMode == o.compositeMode
        && EffectParameters::operator==(o);
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
