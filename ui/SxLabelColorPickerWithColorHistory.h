#pragma once
// A colour row for a panel: the chip with its label, a grid of remembered colours, buttons that
// add the chip's colour to the grid and erase the selected one, and palettes that save the grid
// under a name, load a saved one from a list, or reset it. Palettes live in one folder that the
// owner names.

#include "ui/ColorHistoryComponent.h"
#include "ui/SxColorPaletteList.h"

class SxLabelColorPickerWithColorHistory : public SxComponent, public SxUpdateComponent
{
public:
    SxLabelColorPickerWithColorHistory(const juce::String& name, juce::Colour* field, SxControlChangedCallback* callback,
                                       const juce::File& paletteFolder);
    ~SxLabelColorPickerWithColorHistory() override;

    void update() override;

    /** Saves the grid as name.qpl (and its picture) in the palette folder. */
    juce::Result savePalette(const juce::String& name);
    /** Loads a palette file into the grid; a damaged one leaves the grid and says why. */
    juce::Result loadPalette(const juce::File& file);
    /** Empties the grid and forgets the palette's name. */
    void resetPalette();

    /** Asks for a name ("Save Color Palette") and saves. */
    void showSaveDialog();
    /** Slides the list of saved palettes in over this row's top-level parent. */
    void showPaletteList();

    ColorHistoryComponent& getHistory() { return history; }
    SxColorButton& getChip() { return chip; }
    juce::String getPaletteName() const { return paletteName; }
    juce::File paletteFile(const juce::String& name) const;

    static constexpr int rowHeight = 200;

private:
    void showPaletteName();

    juce::File folder;
    juce::String paletteName;
    SxComponent container { "colorButtonContainerComp" };
    juce::Label label { "SxLabelColorPickerWithColorHistoryLabel", "Color" };
    juce::Label paletteLabel { "SxLabelColorPickerWithColorHistoryPaletteLabel", "Color Palettes" };
    SxColorButton chip;
    juce::Label nameLine { "paletteNameLabel" };
    ColorHistoryComponent history;
    juce::TextButton addColorButton { "+" }, removeColorButton { "-" }, loadButton { "Load" }, saveButton { "Save" },
        resetToolButton { "Reset" };
    std::unique_ptr<SxColorPaletteList> paletteList;
    std::unique_ptr<juce::AlertWindow> saveDialog;
};
