#include "ui/SxSegmentController.h"

#include "ui/SxLookAndFeel.h"

namespace
{
// One segment: the row paints the shared track, a segment only its own text and, when chosen,
// the accent pill; so the look does not depend on the look and feel in force.
class SegmentButton : public juce::Button
{
public:
    explicit SegmentButton(const juce::String& text) : juce::Button(text) { setButtonText(text); }

    void paintButton(juce::Graphics& g, bool highlighted, bool down) override
    {
        auto area = getLocalBounds().toFloat().reduced(2.0f);
        const float alpha = isEnabled() ? 1.0f : 0.45f;
        if (getToggleState())
        {
            g.setColour(SxColours::accent.withMultipliedAlpha(alpha));
            g.fillRoundedRectangle(area, 3.0f);
        }
        else if (highlighted || down)
        {
            g.setColour(SxColours::controlHover.withMultipliedAlpha(alpha));
            g.fillRoundedRectangle(area, 3.0f);
        }
        g.setColour((getToggleState() ? SxColours::text : SxColours::dimText.brighter(highlighted ? 0.4f : 0.0f)).withMultipliedAlpha(alpha));
        g.setFont(juce::Font(12.0f));
        g.drawFittedText(getButtonText(), getLocalBounds().reduced(3, 0), juce::Justification::centred, 1, 0.8f);
    }
};
} // namespace

SegmentController::SegmentController(const juce::String& componentName, int* fieldToUse, const juce::StringArray& buttonTexts,
                                     const juce::StringArray& buttonTooltips, SegmentControllerCallback* callbackToUse)
    : SxComponent(componentName), field(fieldToUse), callback(callbackToUse)
{
    for (int i = 0; i < buttonTexts.size(); ++i)
    {
        auto* button = buttons.add(new SegmentButton(buttonTexts[i]));
        button->setComponentID(componentName + juce::String(i));
        button->setClickingTogglesState(true);
        button->setRadioGroupId(radioGroup);
        button->setWantsKeyboardFocus(false);
        if (i < buttonTooltips.size())
            button->setTooltip(buttonTooltips[i]);
        button->onClick = [this, i] { segmentClicked(i); };
        addAndMakeVisible(button);
    }
    update();
}

SegmentController::~SegmentController() = default;

void SegmentController::update()
{
    const int index = field != nullptr ? *field : -1;
    for (int i = 0; i < buttons.size(); ++i)
        buttons[i]->setToggleState(i == index, juce::dontSendNotification);
}

int SegmentController::getSelectedIndex() const
{
    for (int i = 0; i < buttons.size(); ++i)
        if (buttons[i]->getToggleState())
            return i;
    return -1;
}

void SegmentController::segmentClicked(int index)
{
    // The radio group also reports the button it switched off; only the one now on counts. A click
    // on the segment that is already chosen changes nothing, so it starts no render either.
    if (!buttons[index]->getToggleState())
        return;
    if (field != nullptr)
    {
        if (*field == index)
            return;
        *field = index;
    }
    if (callback != nullptr)
        callback->segmentChanged(this, index);
}

void SegmentController::resized()
{
    const int n = buttons.size();
    if (n == 0)
        return;
    // Share the width exactly: the last segment takes the pixels that division leaves.
    for (int i = 0; i < n; ++i)
    {
        const int x0 = getWidth() * i / n;
        const int x1 = getWidth() * (i + 1) / n;
        buttons[i]->setBounds(x0, 0, x1 - x0, getHeight());
    }
}

void SegmentController::paint(juce::Graphics& g)
{
    SxPaint::outlinedPanel(g, getLocalBounds(), SxColours::control, 4.0f);
    const auto area = getLocalBounds().toFloat().reduced(0.5f);
    // Hairlines between neighbours that are both off; beside the chosen one the pill separates.
    const int chosen = getSelectedIndex();
    g.setColour(SxColours::outline.withAlpha(0.6f));
    for (int i = 1; i < buttons.size(); ++i)
        if (i != chosen && i - 1 != chosen)
            g.fillRect((float) buttons[i]->getX(), area.getY() + 6.0f, 1.0f, area.getHeight() - 12.0f);
}

//==============================================================================
SxLabelSegmentController::SxLabelSegmentController(const juce::String& componentName, const juce::String& labelText,
                                                   int* field, const juce::StringArray& buttonTexts,
                                                   const juce::StringArray& buttonTooltips,
                                                   SegmentControllerCallback* callback)
    : SxComponent(componentName), segments(componentName + "Row", field, buttonTexts, buttonTooltips, callback)
{
    label.setText(labelText, juce::dontSendNotification);
    label.setFont(juce::Font(12.0f));
    label.setColour(juce::Label::textColourId, juce::Colour(0xFFFAFAFA));
    label.setBorderSize({ 0, 0, 0, 0 });
    label.setJustificationType(juce::Justification::centredLeft);
    addAndMakeVisible(label);
    addAndMakeVisible(segments);
    setSize(200, rowHeight);
    setBoundsString("0, 0, left + parent.width, top + " + juce::String(rowHeight));
    SxComponent::place(label, "8, 2, left + parent.width - 16, top + 16");
    SxComponent::place(segments, "8, 20, left + parent.width - 8, top + 27");
}
