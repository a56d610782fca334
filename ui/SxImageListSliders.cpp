#include "ui/SxImageListSliders.h"

#include "ui/SxLookAndFeel.h"

SxImageList::SxImageList(const juce::String& name, std::vector<juce::Image> imagesToShow, int* field)
    : SxComponent(name), images(std::move(imagesToShow)), indexField(field)
{
    update();
}

SxImageList::SxImageList(const juce::String& name, std::vector<juce::Image> imagesToShow, juce::BigInteger* field)
    : SxComponent(name), images(std::move(imagesToShow)), setField(field)
{
    update();
}

void SxImageList::update()
{
    if (isMultiSelection())
        shownSet = *setField;
    else
        shownIndex = clamped(indexField != nullptr ? *indexField : 0);
    repaint();
}

void SxImageList::choose(int index)
{
    if (isMultiSelection())
    {
        if (index < 0 || index >= getNumImages())
            return;
        shownSet.setBit(index, !shownSet[index]);
        *setField = shownSet;
    }
    else
    {
        shownIndex = clamped(index);
        if (shownIndex < 0)
            return;
        if (indexField != nullptr)
            *indexField = shownIndex;
    }
    repaint();
    if (onChange)
        onChange();
}

bool SxImageList::isChosen(int index) const
{
    return isMultiSelection() ? shownSet[index] : index == shownIndex;
}

juce::Rectangle<int> SxImageList::getCellBounds(int index) const
{
    return { index * (cellSize + cellGap), 0, cellSize, cellSize };
}

int SxImageList::getCellAt(juce::Point<int> position) const
{
    for (int i = 0; i < getNumImages(); ++i)
        if (getCellBounds(i).contains(position))
            return i;
    return -1;
}

void SxImageList::mouseDown(const juce::MouseEvent& e)
{
    const int cell = getCellAt(e.getPosition());
    if (cell >= 0)
        choose(cell);
}

void SxImageList::paint(juce::Graphics& g)
{
    for (int i = 0; i < getNumImages(); ++i)
    {
        const auto cell = getCellBounds(i);
        const auto& image = images[(size_t) i];
        if (image.isValid())
            g.drawImageWithin(image, cell.getX() + 2, cell.getY() + 2, cell.getWidth() - 4, cell.getHeight() - 4,
                              juce::RectanglePlacement::centred | juce::RectanglePlacement::onlyReduceInSize);
        // The frame marks the choice in the accent colour; unchosen cells keep a hairline so an
        // empty or dark picture still shows where it can be clicked.
        const bool chosen = isChosen(i);
        g.setColour(chosen ? SxColours::accent : SxColours::outline);
        g.drawRoundedRectangle(cell.toFloat().reduced(chosen ? 1.0f : 0.5f), 3.0f, chosen ? 2.0f : 1.0f);
    }
}

//==============================================================================
void stackImageLists(SxComponent& owner, const std::vector<SxImageList*>& lists, int top, SxControlChangedCallback* callback)
{
    const int step = SxImageList::cellSize + SxImageList::cellGap;
    for (size_t i = 0; i < lists.size(); ++i)
    {
        auto* list = lists[i];
        owner.addAndMakeVisible(*list);
        SxComponent::place(*list, "5, " + juce::String(top + (int) i * step) + ", left + parent.width - 10, top + "
                                      + juce::String(SxImageList::cellSize));
        list->onChange = [&owner, callback] {
            if (callback != nullptr)
                callback->controlChanged(&owner);
        };
    }
    const int height = top + (int) lists.size() * step;
    owner.setSize(owner.getWidth(), height);
    owner.setBoundsString("0, 0, left + parent.width, top + " + juce::String(height));
}

namespace
{
template <typename Field>
std::vector<std::unique_ptr<SxImageList>> oneList(std::vector<juce::Image> images, Field* field)
{
    std::vector<std::unique_ptr<SxImageList>> lists;
    lists.push_back(std::make_unique<SxImageList>("imageList", std::move(images), field));
    return lists;
}
} // namespace

SxLabelImageListSlider::SxLabelImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                                               std::vector<juce::Image> images, int* imageField, SxControlChangedCallback* callbackToUse)
    : SxLabelImageListSlider(name, labelText, field, oneList(std::move(images), imageField), callbackToUse)
{
}

SxLabelImageListSlider::SxLabelImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                                               std::vector<std::unique_ptr<SxImageList>> listsToShow,
                                               SxControlChangedCallback* callbackToUse)
    : SxLabelSlider(name, labelText, field, callbackToUse), lists(std::move(listsToShow))
{
    std::vector<SxImageList*> shown;
    for (auto& list : lists)
        shown.push_back(list.get());
    stackImageLists(*this, shown, SxImageList::topBelowSliderRow, callbackToUse);
}

void SxLabelImageListSlider::update()
{
    SxLabelSlider::update();
    for (auto& list : lists)
        list->update();
}

namespace
{
std::vector<std::unique_ptr<SxImageList>> twoLists(std::vector<juce::Image> first, int* firstField, std::vector<juce::Image> second,
                                                   int* secondField)
{
    auto lists = oneList(std::move(first), firstField);
    lists.push_back(std::make_unique<SxImageList>("secondImageList", std::move(second), secondField));
    return lists;
}

std::vector<juce::Image> withChipCell(std::vector<juce::Image> images)
{
    images.emplace_back(); // a null image: an empty cell under the chip
    return images;
}
} // namespace

SxLabelDualImageListSlider::SxLabelDualImageListSlider(const juce::String& name, const juce::String& labelText, float* field,
                                                       std::vector<juce::Image> firstImages, int* firstField,
                                                       std::vector<juce::Image> secondImages, int* secondField,
                                                       SxControlChangedCallback* callbackToUse)
    : SxLabelImageListSlider(name, labelText, field,
                             twoLists(std::move(firstImages), firstField, std::move(secondImages), secondField), callbackToUse)
{
}

SxLabelMultiSelectionImageListSlider::SxLabelMultiSelectionImageListSlider(const juce::String& name, const juce::String& labelText,
                                                                           float* field, std::vector<juce::Image> images,
                                                                           juce::BigInteger* imageField,
                                                                           SxControlChangedCallback* callbackToUse)
    : SxLabelImageListSlider(name, labelText, field, oneList(std::move(images), imageField), callbackToUse)
{
}

SxLabelImageListSliderWithColorPickerInImageList::SxLabelImageListSliderWithColorPickerInImageList(
    const juce::String& name, const juce::String& labelText, float* field, std::vector<juce::Image> images, int* imageField,
    juce::Colour* colourField, SxControlChangedCallback* callbackToUse)
    : SxLabelImageListSlider(name, labelText, field, withChipCell(std::move(images)), imageField, callbackToUse),
      chip("colorChip", colourField, callbackToUse, false)
{
    auto& list = getImageList();
    const int chipCell = list.getNumImages() - 1;
    list.addAndMakeVisible(chip);
    chip.setBounds(list.getCellBounds(chipCell).reduced(3));
    // The chip takes the click from the list, so it chooses its own cell before the picker opens.
    chip.onClick = [&list, chipCell] { list.choose(chipCell); };
}

void SxLabelImageListSliderWithColorPickerInImageList::update()
{
    SxLabelImageListSlider::update();
    chip.update();
}

//==============================================================================
SxLabelImageListTwoSliders::SxLabelImageListTwoSliders(const juce::String& name, const juce::String& first, const juce::String& second,
                                                       float* firstField, float* secondField, std::vector<juce::Image> images,
                                                       int* imageField, SxControlChangedCallback* callbackToUse)
    : SxLabelTwoSliders(name, first, second, firstField, secondField, callbackToUse),
      list("imageList", std::move(images), imageField)
{
    stackImageLists(*this, { &list }, SxImageList::topBelowSliderRow, nullptr);
    list.onChange = [this] { tellOwner(); };
}

void SxLabelImageListTwoSliders::update()
{
    SxLabelTwoSliders::update();
    list.update();
}
