#include "ui/SxSlider.h"

#include "ui/SxLookAndFeel.h"

//==============================================================================
SxSliderLookAndFeel::SxSliderLookAndFeel() : juce::LookAndFeel_V4(SxMainLookAndFeel::colourScheme())
{
    setColour(juce::Slider::backgroundColourId, SxColours::outline);
    setColour(juce::Slider::trackColourId, SxColours::accent);
    setColour(juce::Slider::thumbColourId, juce::Colour(0xffe8e9eb));
    setColour(juce::Slider::textBoxTextColourId, SxColours::text);
    setColour(juce::Slider::textBoxOutlineColourId, juce::Colours::transparentBlack);
    setColour(juce::Slider::textBoxBackgroundColourId, juce::Colours::transparentBlack);
}

SxSliderLookAndFeel& SxSliderLookAndFeel::shared()
{
    static auto* instance = new SxSliderLookAndFeel();
    return *instance;
}

void SxSliderLookAndFeel::drawLinearSlider(juce::Graphics& g, int x, int y, int width, int height, float sliderPos,
                                           float minSliderPos, float maxSliderPos, juce::Slider::SliderStyle style,
                                           juce::Slider& slider)
{
    if (style != juce::Slider::LinearHorizontal && style != juce::Slider::LinearVertical)
    {
        juce::LookAndFeel_V4::drawLinearSlider(g, x, y, width, height, sliderPos, minSliderPos, maxSliderPos, style, slider);
        return;
    }
    const bool horizontal = style == juce::Slider::LinearHorizontal;
    const float alpha = slider.isEnabled() ? 1.0f : 0.4f;
    const float track = 3.0f;
    const auto area = juce::Rectangle<int>(x, y, width, height).toFloat();

    juce::Point<float> start, end, thumb;
    if (horizontal)
    {
        const float cy = area.getCentreY();
        start = { area.getX(), cy };
        end = { area.getRight(), cy };
        thumb = { sliderPos, cy };
    }
    else
    {
        const float cx = area.getCentreX();
        start = { cx, area.getBottom() };
        end = { cx, area.getY() };
        thumb = { cx, sliderPos };
    }

    juce::Path background;
    background.startNewSubPath(start);
    background.lineTo(end);
    g.setColour(slider.findColour(juce::Slider::backgroundColourId).withMultipliedAlpha(alpha));
    g.strokePath(background, { track, juce::PathStrokeType::curved, juce::PathStrokeType::rounded });

    juce::Path filled;
    filled.startNewSubPath(start);
    filled.lineTo(thumb);
    g.setColour(slider.findColour(juce::Slider::trackColourId).withMultipliedAlpha(alpha));
    g.strokePath(filled, { track, juce::PathStrokeType::curved, juce::PathStrokeType::rounded });

    // The thumb grows a little under the mouse and while dragged, instead of changing colour, so
    // the accent stays reserved for the value itself.
    const float radius = (float) getSliderThumbRadius(slider) - ((slider.isMouseOverOrDragging() && slider.isEnabled()) ? 0.0f : 1.0f);
    const auto disc = juce::Rectangle<float>(radius * 2.0f, radius * 2.0f).withCentre(thumb);
    g.setColour(juce::Colours::black.withAlpha(0.25f * alpha));
    g.fillEllipse(disc.translated(0.0f, 1.0f));
    g.setColour(slider.findColour(juce::Slider::thumbColourId).withMultipliedAlpha(alpha));
    g.fillEllipse(disc);
}

//==============================================================================
SxSliderBase::SxSliderBase(const juce::String& name, bool textBoxEditable) : juce::Slider(name)
{
    setSliderStyle(juce::Slider::LinearHorizontal);
    setTextBoxStyle(juce::Slider::NoTextBox, !textBoxEditable, 40, 18);
    setTextBoxIsEditable(textBoxEditable);
    setLookAndFeelToShared();
}

SxSliderBase::~SxSliderBase()
{
    setLookAndFeel(nullptr);
}

void SxSliderBase::writeBoundField()
{
    if (floatValue != nullptr)
        *floatValue = (float) getValue();
    if (byteValue != nullptr)
        *byteValue = (std::uint8_t) (int) getValue();
}

void SxSliderBase::readBoundField()
{
    if (floatValue != nullptr)
        setValue(*floatValue, juce::dontSendNotification);
    else if (byteValue != nullptr)
        setValue(*byteValue, juce::dontSendNotification);
}

double SxSliderBase::getValueFromText(const juce::String& text)
{
    auto t = text.trim();
    const auto suffix = getTextValueSuffix();
    if (suffix.isNotEmpty() && t.endsWith(suffix))
        t = t.dropLastCharacters(suffix.length()); // length() counts code points, as the suffix may be "°"
    // A leading "+" is how people type a positive number; it and any space around it go, in any mix.
    for (;;)
    {
        const auto stripped = t.trimStart().trimCharactersAtStart("+");
        if (stripped == t)
            break;
        t = stripped;
    }
    t = t.retainCharacters("0123456789.,-");
    const double value = t.getDoubleValue();
    return showsPercent() ? value / 100.0 : value;
}

juce::String SxSliderBase::getTextFromValue(double value)
{
    if (showsPercent())
        value *= 100.0;
    // Adding and subtracting 1.5 * 2^52 leaves the nearest integer with ties to even (the
    // rounding mode of the floating point unit), so 12.5 shows as 12 and 13.5 as 14. The volatile
    // keeps a fast-math build from folding the pair away.
    volatile double shifted = value + 6755399441055744.0;
    const double rounded = shifted - 6755399441055744.0;
    return juce::String((juce::int64) rounded) + getTextValueSuffix();
}

void SxSliderBase::setLookAndFeelToShared()
{
    setLookAndFeel(&SxSliderLookAndFeel::shared());
    repaint();
}

//==============================================================================
SxSlider::SxSlider(const juce::String& componentName, float* field, SxControlChangedCallback* callbackToUse)
    : SxComponent(componentName), slider(componentName), callback(callbackToUse)
{
    slider.floatValue = field;
    init();
}

SxSlider::SxSlider(const juce::String& componentName, std::uint8_t* field, SxControlChangedCallback* callbackToUse)
    : SxComponent(componentName), slider(componentName), callback(callbackToUse)
{
    slider.byteValue = field;
    init();
}

void SxSlider::init()
{
    slider.setRange(0.0, 1.0, 0.01);
    slider.setValue(0.5, juce::dontSendNotification);
    slider.addListener(this);
    addAndMakeVisible(slider);
    SxComponent::place(slider, "0, 0, left + parent.width - 5, top + 20");
}

SxSlider::~SxSlider()
{
    slider.removeListener(this);
}

void SxSlider::sliderValueChanged(juce::Slider*)
{
    slider.writeBoundField();
    valueShown();
    if (callback != nullptr)
        callback->controlChanged(this);
}

//==============================================================================
SxLabelSlider::SxLabelSlider(const juce::String& componentName, const juce::String& labelText, float* field,
                             SxControlChangedCallback* callbackToUse)
    : SxSlider(componentName, field, callbackToUse)
{
    init(labelText);
}

SxLabelSlider::SxLabelSlider(const juce::String& componentName, const juce::String& labelText, std::uint8_t* field,
                             SxControlChangedCallback* callbackToUse)
    : SxSlider(componentName, field, callbackToUse)
{
    init(labelText);
}

void SxLabelSlider::init(const juce::String& labelText)
{
    slider.setTextValueSuffix("%");
    for (auto* l : { &label, &valueLabel })
    {
        l->setFont(juce::Font(12.0f));
        l->setColour(juce::Label::textColourId, juce::Colour(0xFFFAFAFA));
        l->setBorderSize({ 0, 0, 0, 0 });
        addAndMakeVisible(*l);
    }
    label.setText(labelText, juce::dontSendNotification);
    label.setJustificationType(juce::Justification::centredLeft);
    valueLabel.setColour(juce::Label::textColourId, SxColours::dimText);
    valueLabel.setJustificationType(juce::Justification::centredRight);
    // Typing a value is the way to an exact number; a double click opens the editor.
    valueLabel.setEditable(false, true, false);
    valueLabel.onTextChange = [this] {
        slider.setValue(slider.getValueFromText(valueLabel.getText()), juce::sendNotificationSync);
        valueShown();
    };
    // A starting size only: the bounds string that applyForm places gives the height a panel's
    // column stacks by, and the column gives the width.
    setSize(200, 44);
    applyForm();
    valueShown();
    slider.getValueObject().addListener(this);
}

SxLabelSlider::~SxLabelSlider()
{
    slider.getValueObject().removeListener(this);
}

void SxLabelSlider::setForm(Form newForm)
{
    form = newForm;
    applyForm();
}

void SxLabelSlider::applyForm()
{
    const bool tall = form == Form::standard;
    setSize(getWidth(), tall ? 44 : 34);
    setBoundsString(tall ? "0, 0, left + parent.width, top + 44" : "0, 0, left + parent.width, top + 34");
    valueLabel.setVisible(form != Form::labelLeft);
    if (form == Form::labelLeft)
    {
        const int labelWidth = label.getFont().getStringWidth(label.getText()) + 10;
        SxComponent::place(label, "5, 2, left + " + juce::String(labelWidth - 5) + ", top + 34");
        SxComponent::place(slider, juce::String(labelWidth) + ", 2, left + parent.width - left, top + 34");
    }
    else
    {
        SxComponent::place(label, "8, 0, left + parent.width - 58, top + 16"); // in line with the segment rows' names
        SxComponent::place(valueLabel, "parent.width - 50, 0, left + 45, top + 16");
        SxComponent::place(slider, "5, 10, left + parent.width - 5, top + 34");
    }
}

void SxLabelSlider::setLabelText(const juce::String& text)
{
    label.setText(text, juce::dontSendNotification);
    if (form == Form::labelLeft)
        applyForm(); // the slider starts where the name ends
}

void SxLabelSlider::setTooltip(const juce::String& text)
{
    // The name and the value explain the control as well as the track does.
    SxSlider::setTooltip(text);
    label.setTooltip(text);
    valueLabel.setTooltip(text);
}

void SxLabelSlider::update()
{
    SxSlider::update();
    valueShown();
}

void SxLabelSlider::valueShown()
{
    valueLabel.setText(slider.getTextFromValue(slider.getValue()), juce::dontSendNotification);
}
