#include "ui/SxBrushSizeSliders.h"
#include "ui/SxButtonSliders.h"
#include "ui/SxColorSliders.h"
#include "ui/SxImageListSliders.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace
{
struct CountingCallback : SxControlChangedCallback
{
    std::vector<juce::Component*> controls;
    void controlChanged(juce::Component* control) override { controls.push_back(control); }
};

std::vector<juce::Image> thumbnails(int count)
{
    return std::vector<juce::Image>((size_t) count, juce::Image(juce::Image::RGB, 8, 8, true));
}
} // namespace

TEST(SliderFamily, EveryMemberWritesItsFieldOnAMoveAndReadsItSilentlyOnUpdate)
{
    juce::ScopedJuceInitialiser_GUI gui;
    float field = 0.0f;
    juce::Colour first, second;
    int index = 0, selection = 0;
    bool toggle = false;
    juce::BigInteger chosen;
    CountingCallback callback;
    const std::vector<std::function<std::unique_ptr<SxSlider>()>> makers = {
        [&] { return std::make_unique<SxHueSelectionSlider>("hue", "Hue", &field, &callback); },
        [&] { return std::make_unique<SxTwoColorChipSelectionSlider>("two", &field, &first, &second, &callback); },
        [&] { return std::make_unique<SxColorChipDualSelectionSlider>("dual", &field, &first, &second, &selection, &callback); },
        [&] { return std::make_unique<SxColorChipImageListSlider>("chipList", &field, &first, thumbnails(3), &index, &callback); },
        [&] { return std::make_unique<SxLabelSliderColorPickerRoundSlider>("knob", "Angle", &field, &first, &callback); },
        [&] { return std::make_unique<SxLabelSliderDualColorPickerRoundSlider>("knob2", "Angle", &field, &first, &second, &callback); },
        [&] { return std::make_unique<SxLabelSliderButton>("button", "Amount", &field, "On", &toggle, &callback); },
        [&] { return std::make_unique<SxBlackAndWhiteButtonSlider>("bw", "Amount", &field, &toggle, &callback); },
        [&] { return std::make_unique<SxBrushSizeSlider>("size", &field, &callback, 1.0f, 500.0f); },
        [&] { return std::make_unique<SxProBrushSizeSlider>("proSize", "Size", &field, &callback, 1.0f, 500.0f); },
        [&] { return std::make_unique<SxBrushSizeComponent>("sizeBox", &field, &callback, 1.0f, 500.0f); },
        [&] { return std::make_unique<SxLabelImageListSlider>("list", "Texture", &field, thumbnails(3), &index, &callback); },
        [&] { return std::make_unique<SxLabelDualImageListSlider>("lists", "Texture", &field, thumbnails(2), &index, thumbnails(4), &selection, &callback); },
        [&] { return std::make_unique<SxLabelMultiSelectionImageListSlider>("multi", "Texture", &field, thumbnails(3), &chosen, &callback); },
        [&] { return std::make_unique<SxLabelImageListSliderWithColorPickerInImageList>("listChip", "Texture", &field, thumbnails(3), &index, &first, &callback); },
    };
    for (const auto& make : makers)
    {
        auto control = make();
        auto& slider = *control->getSlider();
        callback.controls.clear();
        // A quarter and three quarters of the range, on the slider's steps.
        const auto at = [&slider](double share) {
            return slider.getMinimum() + slider.getInterval() * std::round(share * (slider.getMaximum() - slider.getMinimum()) / slider.getInterval());
        };

        field = (float) at(0.25);
        control->update();
        EXPECT_NEAR(slider.getValue(), at(0.25), 1e-4) << control->getName();
        EXPECT_TRUE(callback.controls.empty()) << control->getName();

        slider.setValue(at(0.75), juce::sendNotificationSync);
        EXPECT_NEAR(field, at(0.75), 1e-4) << control->getName();
        EXPECT_EQ(callback.controls, std::vector<juce::Component*> { control.get() }) << control->getName();
    }
}

TEST(SliderFamily, ChipsButtonsAndPreviewSitWhereTheirBoundsStringsPutThem)
{
    juce::ScopedJuceInitialiser_GUI gui;
    float field = 0.5f;
    juce::Colour first, second;
    bool toggle = false;
    juce::Component panel;
    panel.setSize(300, 200);
    SxColorChipSelectionSlider one("one", &field, &first, nullptr);
    SxTwoColorChipSelectionSlider two("two", &field, &first, &second, nullptr);
    SxLabelSliderColorPickerRoundSlider knob("knob", "Angle", &field, &first, nullptr);
    SxLabelSliderButton button("button", "Amount", &field, "On", &toggle, nullptr);
    SxBrushSizeComponent sizeBox("sizeBox", &field, nullptr, 1.0f, 100.0f);
    for (juce::Component* c : std::initializer_list<juce::Component*> { &one, &two, &knob, &button, &sizeBox })
        panel.addAndMakeVisible(c);

    // In a 300-wide row: the chip box spans 300 - 1 - 44 = 255 to 299; the slider runs from 5 to
    // 5 + 300 - 5 - 50 = 250, leaving a 5-pixel gap before it.
    EXPECT_EQ(one.getChip().getBounds(), juce::Rectangle<int>(255, 16, 44, 23));
    EXPECT_EQ(one.getSlider()->getBounds(), juce::Rectangle<int>(5, 10, 245, 34));
    EXPECT_EQ(one.getLabelText(), "Color");
    // Two chips halve the box less a 2-pixel gap: (44 - 2) / 2 = 21 wide, the second at 255 + 23.
    EXPECT_EQ(two.getChip(0).getBounds(), juce::Rectangle<int>(255, 16, 21, 23));
    EXPECT_EQ(two.getChip(1).getBounds(), juce::Rectangle<int>(278, 16, 21, 23));
    EXPECT_EQ(two.getSlider()->getBounds(), one.getSlider()->getBounds());
    // The knob takes the last 36 pixels; the chip ends 4 pixels before it: 300 - 36 - 4 - 44 = 216.
    EXPECT_EQ(knob.getSlider()->getBounds(), juce::Rectangle<int>(264, 0, 34, 34));
    EXPECT_EQ(knob.getChip().getBounds(), juce::Rectangle<int>(216, 6, 44, 23));
    EXPECT_EQ(button.getButton().getBounds(), juce::Rectangle<int>(255, 15, 44, 20));
    EXPECT_EQ(sizeBox.getPreview().getBounds(), juce::Rectangle<int>(0, 0, 150, 150));
    EXPECT_EQ(sizeBox.getHeight(), 174);
    // Sizes up to the box's 146 usable pixels show as they are; larger ranges scale to fit.
    EXPECT_FLOAT_EQ(SxBrushSizeComponent::previewDiameter(40.0, 100.0), 40.0f);
    EXPECT_FLOAT_EQ(SxBrushSizeComponent::previewDiameter(250.0, 500.0), 73.0f);
}

TEST(RGBSlider, ChannelsWriteTheColourAndKeepItsAlpha)
{
    juce::ScopedJuceInitialiser_GUI gui;
    const auto rgba = [](int r, int g, int b, int a) { return juce::Colour((juce::uint8) r, (juce::uint8) g, (juce::uint8) b, (juce::uint8) a); };
    juce::Colour colour = rgba(10, 20, 30, 128);
    CountingCallback callback;
    SxRGBSlider rgb("rgb", &colour, &callback);
    auto& sliders = rgb.getSliders();
    EXPECT_EQ(sliders.getSlider(0).getValue(), 10.0);
    EXPECT_EQ(sliders.getSlider(2).getValue(), 30.0);

    sliders.getSlider(1).setValue(200.0, juce::sendNotificationSync);
    EXPECT_EQ(colour, rgba(10, 200, 30, 128));
    EXPECT_EQ(callback.controls, std::vector<juce::Component*> { &rgb });

    colour = rgba(255, 165, 0, 255);
    rgb.update();
    EXPECT_EQ(sliders.getSlider(0).getValue(), 255.0);
    EXPECT_EQ(sliders.getSlider(1).getValue(), 165.0);
    EXPECT_EQ(sliders.getSlider(2).getValue(), 0.0);
    EXPECT_EQ(callback.controls.size(), 1u);
}

TEST(ImageListSlider, ChoicesStayInsideTheRowAndReportAsTheRow)
{
    juce::ScopedJuceInitialiser_GUI gui;
    float amount = 0.5f;
    int index = 7, selection = 5;
    juce::BigInteger chosen;
    juce::Colour colour;
    CountingCallback callback;
    SxLabelImageListSlider row("row", "Texture", &amount, thumbnails(3), &index, &callback);
    auto& list = row.getImageList();
    // A stored index past the row shows the last thumbnail; the field waits for a choice.
    EXPECT_EQ(list.getChosenIndex(), 2);
    EXPECT_EQ(index, 7);
    EXPECT_TRUE(callback.controls.empty());
    list.choose(-4);
    EXPECT_EQ(index, 0);
    list.choose(list.getCellAt({ SxImageList::cellSize + SxImageList::cellGap + 5, 5 }));
    EXPECT_EQ(index, 1);
    EXPECT_EQ(callback.controls, (std::vector<juce::Component*> { &row, &row }));

    // Multi-selection toggles; an index outside the row changes nothing and reports nothing.
    SxLabelMultiSelectionImageListSlider multi("multi", "Texture", &amount, thumbnails(3), &chosen, &callback);
    for (int i : { 0, 2, 0, 9 })
        multi.getImageList().choose(i);
    EXPECT_EQ(chosen.toInteger(), 0b100);
    EXPECT_EQ(callback.controls.size(), 2u + 3u);

    // The chip's cell is one past the pictures.
    SxLabelImageListSliderWithColorPickerInImageList withChip("withChip", "Texture", &amount, thumbnails(3), &index, &colour, &callback);
    EXPECT_EQ(withChip.getImageList().getNumImages(), 4);
    EXPECT_EQ(withChip.getChip().getParentComponent(), &withChip.getImageList());

    // The pair of chips: a stored selection past 1 shows the second; choosing writes it.
    SxColorChipDualSelectionSlider dual("dual", &amount, &colour, &colour, &selection, &callback);
    EXPECT_EQ(dual.getSelection(), 1);
    EXPECT_TRUE(dual.getChip(1).isSelected());
    dual.select(0);
    EXPECT_EQ(selection, 0);
    EXPECT_EQ(callback.controls.back(), &dual);
}
