#pragma once
// The program's icons, drawn as paths so they stay sharp at any size and take any colour. Every
// icon is a fillable outline in the unit square (strokes are already turned into outlines), so a
// button only scales and fills it.

#include <juce_graphics/juce_graphics.h>

namespace SxIcons
{
enum class Kind
{
    openPhoto,
    save,
    crop,
    undo,
    redo,
    zoomIn,
    zoomOut,
    pan,
    original,
    news,
    info,
    products,
    randomize,
    arrowLeft,
    arrowRight,
    render
};

constexpr int numKinds = (int) Kind::render + 1;

/** The icon as a filled path within (0, 0) to (1, 1). */
juce::Path get(Kind kind);

/** Maps the unit square onto the largest square centred in area. The unit square is fitted, not
    the icon's own bounds, so the icons of a tool bar share one scale and one line weight. */
juce::AffineTransform fitting(juce::Rectangle<float> area);

/** The icon scaled to fit the area, keeping its proportions, centred. */
juce::Path getFitted(Kind kind, juce::Rectangle<float> area);
} // namespace SxIcons
