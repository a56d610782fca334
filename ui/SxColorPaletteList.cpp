#include "ui/SxColorPaletteList.h"

#include "imaging/FolderListing.h"
#include "ui/ColorPaletteFile.h"
#include "ui/Easing.h"

namespace
{
/** One palette: its swatch, read from the picture beside it, and its name. */
class PaletteEntry : public juce::Button
{
public:
    PaletteEntry(const juce::File& file) : juce::Button(file.getFileNameWithoutExtension())
    {
        swatch = juce::ImageFileFormat::loadFrom(ColorPaletteFile::pictureFor(file));
        textLabel.setText(file.getFileNameWithoutExtension(), juce::dontSendNotification);
        textLabel.setInterceptsMouseClicks(false, false);
        textLabel.setColour(juce::Label::textColourId, juce::Colours::white);
        addAndMakeVisible(textLabel);
    }
    void resized() override { textLabel.setBounds(getHeight() + 6, 0, getWidth() - getHeight() - 6, getHeight()); }
    void paintButton(juce::Graphics& g, bool highlighted, bool) override
    {
        if (highlighted)
            g.fillAll(juce::Colours::white.withAlpha(0.08f));
        const auto square = getLocalBounds().removeFromLeft(getHeight()).reduced(4).toFloat();
        if (swatch.isValid())
            g.drawImage(swatch, square);
        else
            g.fillCheckerBoard(square, 6.0f, 6.0f, juce::Colours::grey, juce::Colours::darkgrey);
    }

private:
    juce::Image swatch;
    juce::Label textLabel { "textLabel" };
};
} // namespace

SxColorPaletteList::SxColorPaletteList(const juce::File& paletteFolder) : SxComponent("SxColorPaletteList"), folder(paletteFolder)
{
    scroller.setViewedComponent(&insideComponent, false);
    scroller.setScrollBarsShown(true, false);
    addAndMakeVisible(scroller);
    closeButton.setName("closeButton");
    closeButton.onClick = [this] {
        setVisible(false);
        if (onClose)
            onClose();
    };
    addAndMakeVisible(closeButton);
    refresh();
}

SxColorPaletteList::~SxColorPaletteList()
{
    animator.cancelAllAnimations(false);
}

void SxColorPaletteList::refresh()
{
    files = FolderListing::files(folder, "*.qpl").files;
    entries.clear();
    for (int i = 0; i < files.size(); ++i)
    {
        auto* entry = entries.add(new PaletteEntry(files[i]));
        entry->onClick = [this, i] { pick(i); };
        insideComponent.addAndMakeVisible(entry);
    }
    resized();
}

void SxColorPaletteList::pick(int index)
{
    if (index < 0 || index >= files.size())
        return;
    const auto file = files[index];
    setVisible(false);
    if (onPicked)
        onPicked(file);
    if (onClose)
        onClose();
}

void SxColorPaletteList::slideIn(juce::Component& parent)
{
    parent.addAndMakeVisible(this);
    // Plain bounds, not a bounds string: the string would pull the panel back while it moves.
    setBounds(parent.getLocalBounds().withX(parent.getWidth()));
    animator.animateComponent(this, parent.getLocalBounds(), 1.0f, slideMs, false, 0.0, 0.0, Easing::sineInOut);
}

void SxColorPaletteList::resized()
{
    SxComponent::place(scroller, "3, 27, left+parent.width - 6, top + parent.height - 27 - 5 - 30");
    SxComponent::place(closeButton, "(parent.width / 2) - (100 / 2), parent.height - 30, left + 100, top + 23");
    const int width = juce::jmax(0, scroller.getWidth() - scroller.getScrollBarThickness());
    insideComponent.setSize(width, entries.size() * entryHeight);
    for (int i = 0; i < entries.size(); ++i)
        entries[i]->setBounds(0, i * entryHeight, width, entryHeight);
}

void SxColorPaletteList::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff2b2d31));
    g.setColour(juce::Colours::white);
    g.setFont(juce::Font(14.0f, juce::Font::bold));
    g.drawText("Color Palette Presets", getLocalBounds().removeFromTop(27), juce::Justification::centred);
}
