// What the controls look like: the slider's drawing follows its value, and (on request) a picture
// of a panel of controls for people to look at.

#include "ui/SxAlertComponent.h"
#include "ui/SxIconButton.h"
#include "ui/SxLayoutController.h"
#include "ui/SxLookAndFeel.h"
#include "ui/SxRoundRectangleButton.h"
#include "ui/SxSegmentController.h"
#include "ui/SxSlider.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{

bool closeTo(juce::Colour a, juce::Colour b, int tolerance)
{
    return std::abs(a.getRed() - b.getRed()) <= tolerance && std::abs(a.getGreen() - b.getGreen()) <= tolerance
           && std::abs(a.getBlue() - b.getBlue()) <= tolerance;
}

struct TrackReading
{
    double thumbCentre = -1.0;
    int accentLeft = 0, accentRight = 0; // accent pixels left and right of the thumb
};

// Reads the drawn track of a slider along the row through its centre.
TrackReading readTrack(SxSliderBase& slider)
{
    const auto image = slider.createComponentSnapshot(slider.getLocalBounds());
    const int y = slider.getHeight() / 2;
    const auto thumbColour = slider.findColour(juce::Slider::thumbColourId);
    const auto accent = slider.findColour(juce::Slider::trackColourId);
    TrackReading r;
    int first = -1, last = -1;
    for (int x = 0; x < image.getWidth(); ++x)
        if (closeTo(image.getPixelAt(x, y), thumbColour, 8) && image.getPixelAt(x, y).getAlpha() > 200)
        {
            first = first < 0 ? x : first;
            last = x;
        }
    if (first < 0)
        return r;
    r.thumbCentre = (first + last + 1) / 2.0;
    for (int x = 0; x < image.getWidth(); ++x)
        if (closeTo(image.getPixelAt(x, y), accent, 24) && image.getPixelAt(x, y).getAlpha() > 200)
            (x < r.thumbCentre ? r.accentLeft : r.accentRight)++;
    return r;
}

class Panel : public juce::Component
{
public:
    void paint(juce::Graphics& g) override { g.fillAll(SxColours::panel); }
};

// For people to look at: with TORNVALE_UI_SNAPSHOT=/path/to/file.png set, writes the component
// at twice its size there, under the given extension.
void writeSnapshot(juce::Component& component, const char* extension)
{
    juce::File file(juce::String::fromUTF8(std::getenv("TORNVALE_UI_SNAPSHOT")));
    file = file.withFileExtension(extension);
    file.deleteFile();
    juce::FileOutputStream out(file);
    ASSERT_TRUE(out.openedOk()) << file.getFullPathName();
    juce::PNGImageFormat().writeImageToStream(component.createComponentSnapshot(component.getLocalBounds(), true, 2.0f), out);
}
} // namespace

TEST(SliderLook, TheThumbFollowsTheValueAndTheAccentFillsUpToIt)
{
    juce::ScopedJuceInitialiser_GUI gui;
    float field = 0.0f;
    Panel panel;
    panel.setSize(256, 100);
    SxLabelSlider control("detail", "Detail", &field, nullptr);
    panel.addAndMakeVisible(control);
    auto& slider = *control.getSlider();
    ASSERT_EQ(slider.getWidth(), 251);

    std::vector<TrackReading> readings;
    for (double v : { 0.0, 0.25, 0.5, 0.75, 1.0 })
    {
        slider.setValue(v, juce::dontSendNotification);
        readings.push_back(readTrack(slider));
        ASSERT_GE(readings.back().thumbCentre, 0.0) << "no thumb at " << v;
    }
    // Evenly spaced values give evenly spaced thumbs, spanning nearly the whole slider.
    const double quarter = readings[1].thumbCentre - readings[0].thumbCentre;
    for (size_t i = 1; i < readings.size(); ++i)
        EXPECT_NEAR(readings[i].thumbCentre - readings[i - 1].thumbCentre, quarter, 1.5);
    EXPECT_GT(readings[4].thumbCentre - readings[0].thumbCentre, 251 - 2 * 10);
    // The accent marks the part up to the value and nothing beyond it.
    for (const auto& r : readings)
        EXPECT_EQ(r.accentRight, 0);
    EXPECT_LT(readings[0].accentLeft, 3);
    EXPECT_GT(readings[2].accentLeft, readings[1].accentLeft + 40);
    EXPECT_GT(readings[4].accentLeft, 200);
}

TEST(SliderLook, APanelOfControlsRendersInTheMainLook)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxMainLookAndFeel look;
    juce::LookAndFeel::setDefaultLookAndFeel(&look);
    {
        float detail = 0.62f, taper = 0.35f, lighten = 0.8f;
        int style = 1;
        Panel panel;
        panel.setSize(256, 330);
        SxLayoutComponent column;
        panel.addAndMakeVisible(column);
        column.setBounds(0, 0, 256, 300);
        column.createColumn(6, 2);
        SxLabelSlider a("preSharpenSlider", "Detail", &detail, nullptr);
        SxLabelSlider b("strokeLengthSlider", "Taper Length", &taper, nullptr);
        SxLabelSlider c("lightenSlider", "Lighten", &lighten, nullptr);
        SxLabelSegmentController segment("detailSizeSegment", "Detail Style", &style, { "Sharp", "Soft", "Glow" }, {}, nullptr);
        for (juce::Component* row : std::initializer_list<juce::Component*> { &a, &b, &segment, &c })
            column.addRow(row);
        column.relayout();
        column.update();
        c.setLabelText("Blacken");

        SxRoundRectangleButton fill("fillButton1", "Fill"), render("renderButton", "Render");
        render.setProminent(true);
        SxIconButton undo("undoButton", SxIcons::Kind::undo), dice("randomButton", SxIcons::Kind::randomize),
            pan("panButton", SxIcons::Kind::pan);
        pan.setToggleState(true, juce::dontSendNotification);
        fill.setBounds(10, 250, 55, 20);
        render.setBounds(72, 250, 70, 20);
        undo.setBounds(150, 244, 30, 30);
        dice.setBounds(182, 244, 30, 30);
        pan.setBounds(214, 244, 30, 30);
        for (juce::Component* child : std::initializer_list<juce::Component*> { &fill, &render, &undo, &dice, &pan })
            panel.addAndMakeVisible(child);

        const auto image = panel.createComponentSnapshot(panel.getLocalBounds(), true, 2.0f);

        // The chosen segment ("Soft", the middle third of the row) wears the accent.
        auto* soft = segment.getSegmentController().getButton(1);
        auto* sharp = segment.getSegmentController().getButton(0);
        const auto inSoft = panel.getLocalPoint(soft, juce::Point<int>(6, soft->getHeight() / 2)) * 2;
        const auto inSharp = panel.getLocalPoint(sharp, juce::Point<int>(6, sharp->getHeight() / 2)) * 2;
        EXPECT_TRUE(closeTo(image.getPixelAt(inSoft.x, inSoft.y), SxColours::accent, 10));
        EXPECT_FALSE(closeTo(image.getPixelAt(inSharp.x, inSharp.y), SxColours::accent, 40));

        // The panel, the panel under an alert, and every icon as a tool-bar row of buttons.
        if (std::getenv("TORNVALE_UI_SNAPSHOT") != nullptr)
        {
            writeSnapshot(panel, "png");
            SxAlertComponent::show(panel, "ExceededLayers", "Too Many Layers",
                                   "Cannot add this as it will exceed the maximum number of layers.");
            writeSnapshot(panel, "alert.png");
            SxAlertComponent::findIn(panel)->close();
            juce::MessageManager::getInstance()->runDispatchLoopUntil(20);

            Panel strip;
            strip.setSize(SxIcons::numKinds * 34, 34);
            juce::OwnedArray<SxIconButton> buttons;
            for (int k = 0; k < SxIcons::numKinds; ++k)
            {
                auto* b = buttons.add(new SxIconButton("icon" + juce::String(k), (SxIcons::Kind) k));
                b->setBounds(k * 34, 0, 34, 34);
                strip.addAndMakeVisible(b);
            }
            writeSnapshot(strip, "icons.png");
        }
    }
    juce::LookAndFeel::setDefaultLookAndFeel(nullptr);
}
