#pragma once
// The slider rows with a row of thumbnails under them, for choices that are easier to see than to
// name (a texture, a pattern). The thumbnails are bound like the sliders: the list writes the
// chosen index (or, in the multi-selection form, the set of chosen indices) into its field and the
// row then tells its owner; update() shows the fields again without telling anyone.

#include "ui/SxColorButton.h"
#include "ui/SxSliderComposites.h"

#include <functional>
#include <memory>
#include <vector>

/** A row of square thumbnails; a click chooses one (or, in the multi-selection form, turns one on
    or off). A null image is an empty cell that a composite may cover with a control of its own. */
class SxImageList : public SxComponent, public SxUpdateComponent
{
public:
    static constexpr int cellSize = 32;
    static constexpr int cellGap = 4;
    /** Where lists start in a composite whose top is a standard 44-pixel slider row. */
    static constexpr int topBelowSliderRow = 46;

    /** One chosen thumbnail; the field holds its index. */
    SxImageList(const juce::String& name, std::vector<juce::Image> images, int* field);
    /** Any number chosen; bit i of the field says whether thumbnail i is. */
    SxImageList(const juce::String& name, std::vector<juce::Image> images, juce::BigInteger* field);

    int getNumImages() const { return (int) images.size(); }
    bool isMultiSelection() const { return setField != nullptr; }

    /** As a click on the thumbnail: chooses it (an index outside the row chooses the nearest end)
        or, in the multi-selection form, toggles it (an index outside the row does nothing). Writes
        the field, then calls onChange. */
    void choose(int index);
    bool isChosen(int index) const;
    /** The chosen thumbnail of the single form, or -1 for an empty row. */
    int getChosenIndex() const { return shownIndex; }

    /** Shows the field; an index outside the row shows the nearest end, and the field keeps what
        it holds until the user chooses. */
    void update() override;

    juce::Rectangle<int> getCellBounds(int index) const;
    /** The cell under a point of this component, or -1. */
    int getCellAt(juce::Point<int> position) const;

    std::function<void()> onChange;

    void paint(juce::Graphics&) override;
    void mouseDown(const juce::MouseEvent&) override;

private:
    int clamped(int index) const { return images.empty() ? -1 : juce::jlimit(0, getNumImages() - 1, index); }

    std::vector<juce::Image> images;
    int* indexField = nullptr;
    juce::BigInteger* setField = nullptr;
    int shownIndex = -1;
    juce::BigInteger shownSet;
};

/** Puts image lists under the top rows of a composite, one below the other, and makes each report
    a choice as a change of the composite. Grows the composite's bounds string to hold them. */
void stackImageLists(SxComponent& owner, const std::vector<SxImageList*>& lists, int top, SxControlChangedCallback* callback);

/** A labelled slider with one row of thumbnails. */
class SxLabelImageListSlider : public SxLabelSlider
{
public:
    SxLabelImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                           std::vector<juce::Image> images, int* imageField, SxControlChangedCallback* callback);

    int getNumImageLists() const { return (int) lists.size(); }
    SxImageList& getImageList(int index = 0) { return *lists[(size_t) index]; }
    void update() override;

protected:
    SxLabelImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                           std::vector<std::unique_ptr<SxImageList>> lists, SxControlChangedCallback* callback);

private:
    std::vector<std::unique_ptr<SxImageList>> lists;
};

/** Two rows of thumbnails, each choosing into its own field. */
class SxLabelDualImageListSlider : public SxLabelImageListSlider
{
public:
    SxLabelDualImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                               std::vector<juce::Image> firstImages, int* firstField, std::vector<juce::Image> secondImages,
                               int* secondField, SxControlChangedCallback* callback);
};

/** One row of thumbnails of which any number may be on. */
class SxLabelMultiSelectionImageListSlider : public SxLabelImageListSlider
{
public:
    SxLabelMultiSelectionImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                                         std::vector<juce::Image> images, juce::BigInteger* imageField,
                                         SxControlChangedCallback* callback);
};

/** A row of thumbnails ending in a colour chip: choosing the chip's cell (index getNumImages() - 1,
    one past the pictures) means "this colour" instead of a picture, and a click on it also opens
    the picker. */
class SxLabelImageListSliderWithColorPickerInImageList : public SxLabelImageListSlider
{
public:
    SxLabelImageListSliderWithColorPickerInImageList(const juce::String& name, const juce::String& labelText, float* field,
                                                     std::vector<juce::Image> images, int* imageField,
                                                     juce::Colour* colourField, SxControlChangedCallback* callback);
    SxColorButton& getChip() { return chip; }
    void update() override;

private:
    SxColorButton chip;
};

/** Two sliders in a row with a row of thumbnails under them. */
class SxLabelImageListTwoSliders : public SxLabelTwoSliders
{
public:
    SxLabelImageListTwoSliders(const juce::String& name, const juce::String& first, const juce::String& second,
                               float* firstField, float* secondField, std::vector<juce::Image> images, int* imageField,
                               SxControlChangedCallback* callback);
    SxImageList& getImageList() { return list; }
    void update() override;

private:
    SxImageList list;
};
