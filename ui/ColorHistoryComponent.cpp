#include "ui/ColorHistoryComponent.h"

ColorHistoryComponent::ColorHistoryComponent() : SxComponent("ColorHistoryComponent") {}

ColorHistoryComponent::~ColorHistoryComponent() = default;

void ColorHistoryComponent::rebuild(const std::vector<juce::Colour>& colours)
{
    buttons.clear();
    pixelRow.clear();
    const size_t count = juce::jmin(colours.size(), (size_t) capacity);
    const size_t first = colours.size() - count; // the newest colours stay
    for (size_t i = first; i < colours.size(); ++i)
    {
        const int index = (int) buttons.size();
        auto button = std::make_unique<SxColorButton>("colorButton" + juce::String(index), nullptr, nullptr, true);
        button->setOpensPicker(false);
        button->setColour(colours[i], juce::dontSendNotification);
        button->onClick = [this, index] {
            select(index);
            if (onColourPicked)
                onColourPicked(buttons[(size_t) index]->getColour());
        };
        addAndMakeVisible(*button);
        buttons.push_back(std::move(button));
        const auto& c = colours[i];
        pixelRow.insert(pixelRow.end(), { c.getRed(), c.getGreen(), c.getBlue(), c.getAlpha() });
    }
    if (selected >= getNumColours())
        selected = -1;
    select(selected);
    resized();
}

void ColorHistoryComponent::setColours(const std::vector<juce::Colour>& colours)
{
    selected = -1;
    rebuild(colours);
}

std::vector<juce::Colour> ColorHistoryComponent::getColours() const
{
    std::vector<juce::Colour> colours;
    for (const auto& b : buttons)
        colours.push_back(b->getColour());
    return colours;
}

void ColorHistoryComponent::addColour(juce::Colour colour)
{
    auto colours = getColours();
    colours.push_back(colour);
    rebuild(colours);
    select(getNumColours() - 1);
}

bool ColorHistoryComponent::removeSelected()
{
    if (selected < 0 || selected >= getNumColours())
        return false;
    auto colours = getColours();
    colours.erase(colours.begin() + selected);
    selected = -1;
    rebuild(colours);
    return true;
}

void ColorHistoryComponent::select(int index)
{
    selected = index >= 0 && index < getNumColours() ? index : -1;
    for (int i = 0; i < getNumColours(); ++i)
        buttons[(size_t) i]->setSelected(i == selected);
}

void ColorHistoryComponent::resized()
{
    const int columns = juce::jmax(1, (getWidth() + cellGap) / (cellSize + cellGap));
    for (int i = 0; i < getNumColours(); ++i)
        SxComponent::place(*buttons[(size_t) i], juce::String((i % columns) * (cellSize + cellGap)) + ", "
                                                     + juce::String((i / columns) * (cellSize + cellGap)) + ", left + 20, top + 20");
}
