#pragma once
// The brush settings that outlive the brush panel and its tools: one size for both brushes, an
// opacity for each, and which of the two was selected when the panel last closed. They belong to
// the running program and are never saved.

struct SxBrushSettings
{
    static float brushSize;       // diameter of both brushes, in mask pixels
    static float brushOpacityOn;  // the brush that restores the effect
    static float brushOpacityOff; // the brush that removes it
    static bool brushOnToolSelected;
    static bool brushOffToolSelected;

    static constexpr float minimumSize = 10.0f;
    static constexpr float maximumSize = 250.0f;
    /** What one press of [ or ] changes the size by: a twentieth of the largest size. */
    static float sizeStep() { return (float) (int) (maximumSize * 0.05f); }
};
