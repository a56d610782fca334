#pragma once
// The slider family: every continuous parameter of the effect and of the tools is set by one of
// these. A slider is bound by pointer to the field it edits, writes that field itself on a change
// and then tells its owner; an update() re-reads the field without telling anyone, which is how an
// applied preset or an undo moves the sliders without feeding back into a render.

#include "ui/SxComponent.h"

#include <cstdint>

/** A flat, quiet slider: thin track, the part up to the value in the accent colour, a round thumb.
    One instance serves every slider of the program. */
class SxSliderLookAndFeel : public juce::LookAndFeel_V4
{
public:
    SxSliderLookAndFeel();

    /** Made on first use and never deleted: sliders hold a plain pointer to their look and feel,
        and any owner we could give it might die before the last slider does. */
    static SxSliderLookAndFeel& shared();

    int getSliderThumbRadius(juce::Slider&) override { return 7; }
    void drawLinearSlider(juce::Graphics&, int x, int y, int width, int height, float sliderPos, float minSliderPos,
                          float maxSliderPos, juce::Slider::SliderStyle, juce::Slider&) override;
};

/** A juce::Slider bound to a float or a byte field, showing its value as a whole number (a
    percentage when the range is 0 to 1). */
class SxSliderBase : public juce::Slider
{
public:
    /** With textBoxEditable false the slider's own text box, if shown, only displays the value. */
    explicit SxSliderBase(const juce::String& name = {}, bool textBoxEditable = false);
    ~SxSliderBase() override;

    float* floatValue = nullptr;
    std::uint8_t* byteValue = nullptr;

    /** Stores the slider's value in whichever field is bound. */
    virtual void writeBoundField();
    /** Sets the slider from the bound field without a change notification. */
    void readBoundField();

    /** "73%" on a 0..1 slider reads 0.73; "+5" reads 0.05; text without digits reads 0. */
    double getValueFromText(const juce::String& text) override;
    /** A 0..1 slider at 0.731 with the suffix "%" shows "73%"; wider ranges show the value itself. */
    juce::String getTextFromValue(double value) override;

    virtual void setLookAndFeelToShared();

    /** Sliders whose range is narrower than this are shown in percent: the normal 0..1 slider,
        and -1..1. A 0..100 or 10..250 slider is shown as it stands. */
    static constexpr double percentRangeLimit = 3.0;
    bool showsPercent() const { return getMaximum() - getMinimum() < percentRangeLimit; }
};

/** A slider as a panel control: SxSliderBase child, a bound field, a callback. It starts at 0..1,
    step 0.01, showing 0.5; the owner sets another range if it needs one and then calls update()
    to show the field. */
class SxSlider : public SxComponent, public SxUpdateComponent, public juce::Slider::Listener
{
public:
    SxSlider(const juce::String& componentName, float* field, SxControlChangedCallback* callback);
    SxSlider(const juce::String& componentName, std::uint8_t* field, SxControlChangedCallback* callback);
    ~SxSlider() override;

    SxSliderBase* getSlider() { return &slider; }
    const SxSliderBase* getSlider() const { return &slider; }

    /** Re-reads the bound field; no callback. */
    void update() override { slider.readBoundField(); }

    /** A double click on the slider jumps to this value (and reports it like any change). */
    void setDoubleClickReturnValue(double value) { slider.setDoubleClickReturnValue(true, value); }
    virtual void setTooltip(const juce::String& text) { slider.setTooltip(text); }

    void sliderValueChanged(juce::Slider*) override;

    /** Called after the field was written and before the callback; composites refresh what they
        show of the value here. */
    virtual void valueShown() {}

protected:
    SxSliderBase slider;
    SxControlChangedCallback* callback = nullptr;

private:
    void init();
};

/** A slider with its name above it (or to its left) and the value as a percent at the right of
    the name: the row of the effect panels. The slider's text suffix is "%"; an owner that gives it
    a wide range (a size in pixels) clears the suffix with the range. */
class SxLabelSlider : public SxSlider, private juce::Value::Listener
{
public:
    SxLabelSlider(const juce::String& componentName, const juce::String& labelText, float* field,
                  SxControlChangedCallback* callback);
    SxLabelSlider(const juce::String& componentName, const juce::String& labelText, std::uint8_t* field,
                  SxControlChangedCallback* callback);
    ~SxLabelSlider() override;

    enum class Form
    {
        standard, // 44 high, name above the slider
        compact,  // 34 high, name above the slider
        labelLeft // 34 high, name left of the slider, no value text
    };
    /** Chooses the form; it rewrites the control's own bounds string, so it comes before the
        panel stacks its rows. */
    void setForm(Form form);
    Form getForm() const { return form; }

    /** Renames the control, as the effect does when a style changes what a slider means. */
    void setLabelText(const juce::String& text);
    juce::String getLabelText() const { return label.getText(); }
    juce::Label& getLabel() { return label; }
    /** The value as shown at the right of the name, e.g. "50%". A double click on it opens an
        editor; what is typed there goes through SxSliderBase::getValueFromText. */
    juce::String getValueText() const { return valueLabel.getText(); }
    juce::Label& getValueLabel() { return valueLabel; }

    void setTooltip(const juce::String& text) override;
    void update() override;
    void valueShown() override;

private:
    // Owners may also set the slider directly without notification; the value text follows
    // (asynchronously) through the slider's value object.
    void valueChanged(juce::Value&) override { valueShown(); }

    void init(const juce::String& labelText);
    void applyForm();

    juce::Label label { "SxLabelSliderLabel" };
    juce::Label valueLabel { "SxLabelSliderValue" };
    Form form = Form::standard;
};
