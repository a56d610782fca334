#pragma once
// The CPU blend modes with which a layer is laid onto the picture below it. Each mode is a
// per-channel function B(s, d) on bytes; all but "Normal", "Lighten" and the gap at
// "Vivid Light" are applied in one alpha frame, so that a blend over a transparent area shows
// the layer's own colour rather than a blend with nothing.

#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

#include <cstdint>

namespace LayerBlends
{
/** Indexes into the blend table. The interface offers item ids index + 1. */
enum Mode
{
    normal = 0,
    darken = 1,
    multiply = 2,
    colorBurn = 3,
    lighten = 4,
    screen = 5,
    colorDodge = 6,
    overlay = 7,
    softLight = 8,
    hardLight = 9,
    vividLight = 10, // offered by the interface but leaves the picture below unchanged
    linearLight = 11,
    modeCount = 12
};

/** The name the interface shows for a mode; empty outside 0 to 11. */
juce::String getName(int mode);

/** B(s, d) of one colour channel: s the layer's byte, d the byte below. For the gap and for
    out-of-range modes the result is d. */
int blendChannel(int mode, int s, int d);

/** Lays one pixel (alpha, red, green, blue bytes) of the layer onto one pixel below, in place. */
void blendPixel(int mode, const uint8_t* source, uint8_t* destination);

/** Blends source onto destination within rect (clipped to both images). Unknown modes and the
    gap leave destination unchanged. */
void blend(int mode, const SxImageRgbaBytes& source, SxImageRgbaBytes& destination, juce::Rectangle<int> rect);
} // namespace LayerBlends
