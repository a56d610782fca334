#pragma once
// The grid of remembered colours: one small chip per colour, in rows, and a row of pixels (four
// bytes a colour, red, green, blue, alpha) that mirrors them for whoever draws with the palette.
// A click on a chip selects it and tells onColourPicked.

#include "ui/SxColorButton.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class ColorHistoryComponent : public SxComponent
{
public:
    /** Side of a chip and the gap between chips, in pixels. */
    static constexpr int cellSize = 20;
    static constexpr int cellGap = 2;
    /** The grid holds no more; adding to a full grid drops the oldest colour. */
    static constexpr int capacity = 45;

    ColorHistoryComponent();
    ~ColorHistoryComponent() override;

    void setColours(const std::vector<juce::Colour>& colours);
    std::vector<juce::Colour> getColours() const;
    int getNumColours() const { return (int) buttons.size(); }

    /** Adds a colour at the end and selects it. */
    void addColour(juce::Colour colour);
    /** Removes the selected colour; false when none is selected. */
    bool removeSelected();
    int getSelectedIndex() const { return selected; }
    void select(int index);

    /** The colours as pixels, four bytes each. */
    const std::vector<std::uint8_t>& getPixelRow() const { return pixelRow; }

    SxColorButton* getButton(int index) const { return index >= 0 && index < getNumColours() ? buttons[(size_t) index].get() : nullptr; }

    std::function<void(juce::Colour)> onColourPicked;

    void resized() override;

private:
    void rebuild(const std::vector<juce::Colour>& colours);

    std::vector<std::unique_ptr<SxColorButton>> buttons;
    std::vector<std::uint8_t> pixelRow;
    int selected = -1;
};
