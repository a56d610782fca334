#include "app/EffectControlPanel.h"

#include "app/BrushControlPanel.h"
#include "app/GenericAppComponent.h"
#include "effect/TornvaleEffect.h"
#include "ui/SxIconButton.h"
#include "ui/SxSlider.h"

namespace
{
constexpr int sliderRowHeight = 44;
constexpr int segmentRowHeight = 53;
constexpr int brushPanelHeight = 164;
} // namespace

EffectControlPanel::EffectControlPanel(GenericAppComponent& owner) : SxComponent("effectControlComponent"), component(owner)
{
    title.setComponentID("effectTabSegmentTitleBar");
    title.setJustificationType(juce::Justification::centred);
    title.setFont(juce::Font(14.0f, juce::Font::bold));
    title.setColour(juce::Label::textColourId, juce::Colour(0xfffafafa));
    addAndMakeVisible(title);
    SxComponent::place(title, "0,0,parent.width,30");

    randomizeEffectButton = std::make_unique<SxIconButton>("randomizeEffectButton", SxIcons::Kind::randomize);
    randomizeEffectButton->setTooltip("Random adjust settings");
    randomizeEffectButton->addListener(this);
    addAndMakeVisible(*randomizeEffectButton);
    // The design's "-7, top + 44" square sits half outside the title bar; it is kept inside here.
    SxComponent::place(*randomizeEffectButton, "parent.width - 40, 1, left + 28, top + 28");

    column = std::make_unique<SxLayoutComponent>("effectControlColumn");
    addAndMakeVisible(*column);
    column->setBoundsString("0, 34, left + parent.width, top + parent.height - 34 - " + juce::String(brushPanelHeight));
    column->createColumn(4, 6);
    setEffect(nullptr);
}

EffectControlPanel::~EffectControlPanel()
{
    brushPanel.reset();
    column.reset();
    controls.clear();
}

void EffectControlPanel::setEffect(Layer* layer)
{
    effect = dynamic_cast<TornvaleEffect*>(layer);
    for (auto* row : std::vector<juce::Component*>(column->getController() != nullptr ? column->getController()->getRows()
                                                                                        : std::vector<juce::Component*> {}))
        column->removeRow(row);
    controls.clear();
    lightenSlider = brightenLightSlider = nullptr;
    randomizeEffectButton->setEnabled(effect != nullptr);
    // The brushes come and go with the effect's controls; their settings stay.
    brushPanel.reset();
    if (effect != nullptr)
    {
        buildControls();
        brushPanel = std::make_unique<BrushControlPanel>(component);
        addAndMakeVisible(*brushPanel);
        brushPanel->setBoundsString("0, parent.height - " + juce::String(brushPanelHeight) + ", left + parent.width, top + "
                                    + juce::String(brushPanelHeight));
    }
    column->relayout();
    updateControls();
}

void EffectControlPanel::buildControls()
{
    auto slider = [this](const char* name, const char* label, float* field, const char* tooltip) {
        auto s = std::make_unique<SxLabelSlider>(name, label, field, this);
        s->setTooltip(tooltip);
        s->setSize(240, sliderRowHeight);
        auto* raw = s.get();
        controls.push_back(std::move(s));
        return raw;
    };
    auto segment = [this](const char* name, const char* label, int* field, juce::StringArray texts, juce::StringArray tooltips) {
        auto s = std::make_unique<SxLabelSegmentController>(name, label, field, texts, tooltips, this);
        s->setSize(240, segmentRowHeight);
        auto* raw = s.get();
        controls.push_back(std::move(s));
        return raw;
    };

    auto& e = *effect;
    auto* detail = slider("preSharpenSlider", "Detail", &e.preSharpen, "Increases the amount of intersecting lines");
    auto* colorize = slider("colorizeSlider", "Colorize Detail", &e.colorizeEdges, "Adds color to the lines");
    column->addRow(makePair(*detail, *colorize, sliderRowHeight));

    column->addRow(segment("detailSizeSegment", "Detail Style", &e.preSharpenSize, { "Sharp", "Soft", "Glow" },
                           { "Decreases the amount of glow color and light in the scene while retaining sharp areas.",
                             "Creates a dreamy glow to color and light", "Exaggerates dreaminess to glow color and light" }));

    column->addRow(slider("strokeLengthSlider", "Taper Length", &e.strokeLength,
                          "Creates an abstract style with longer intersecting lines."));

    column->addRow(segment("strokeStyleSegment", "Taper Style", &e.strokeStyle, { "Light", "Dark" },
                           { "Creates white highlights and outlines", "Creates black outlines" }));

    lightenSlider = slider("lightenSlider", "Lighten", &e.sharpen, "Illuminates the whole scene");
    brightenLightSlider = slider("brightenLightSlider", "Brighten", &e.brightenLight, "Illuminates or darkens the outlines");
    column->addRow(makePair(*lightenSlider, *brightenLightSlider, sliderRowHeight));

    column->addRow(slider("postSharpenSlider", "Edge Sharpen", &e.postSharpen, "Defines and emphasizes the lines"));

    auto* saturation = slider("saturationSlider", "Color Boost", &e.saturation, "Enhances the overall color");
    auto* contrast = slider("contrastSlider", "Contrast", &e.contrast, "Darkens the shaded areas and brightens the light ones.");
    column->addRow(makePair(*saturation, *contrast, sliderRowHeight));

    column->addRow(slider("smoothingSlider", "Smoothing", &e.smoothing, "Softens and curves the lines"));
}

juce::Component* EffectControlPanel::makePair(juce::Component& left, juce::Component& right, int height)
{
    auto pair = std::make_unique<SxComponent>(left.getName() + "Row");
    pair->setSize(240, height);
    pair->addAndMakeVisible(left);
    pair->addAndMakeVisible(right);
    SxComponent::place(left, "0, 0, left + parent.width / 2, top + " + juce::String(height));
    SxComponent::place(right, "parent.width / 2, 0, left + parent.width / 2, top + " + juce::String(height));
    auto* raw = pair.get();
    controls.push_back(std::move(pair));
    return raw;
}

void EffectControlPanel::updateControls()
{
    for (auto& control : controls)
        if (auto* updatable = dynamic_cast<SxUpdateComponent*>(control.get()))
            updatable->update();
    if (effect != nullptr && lightenSlider != nullptr && brightenLightSlider != nullptr)
    {
        // Dark strokes turn the two light controls into darkening ones.
        const bool dark = effect->strokeStyle == 1;
        lightenSlider->setLabelText(dark ? "Blacken" : "Lighten");
        brightenLightSlider->setLabelText(dark ? "Darken" : "Brighten");
    }
}

void EffectControlPanel::controlChanged(juce::Component*)
{
    if (effect == nullptr)
        return;
    effect->notifyChanged();
    effect->invalidate(nullptr);
}

void EffectControlPanel::segmentChanged(SegmentController*, int)
{
    // The taper style renames two sliders, so every segment change shows the controls again.
    updateControls();
    controlChanged(nullptr);
}

void EffectControlPanel::buttonClicked(juce::Button* button)
{
    if (button == randomizeEffectButton.get())
        component.randomizeEffect();
}

bool EffectControlPanel::handleKey(const juce::KeyPress& key)
{
    return brushPanel != nullptr && brushPanel->handleKey(key);
}

juce::Component* EffectControlPanel::findControl(const juce::String& name) const
{
    for (auto& control : controls)
        if (control->getName() == name)
            return control.get();
    return nullptr;
}

void EffectControlPanel::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff26282c));
    g.setColour(juce::Colour(0xff2e3035));
    g.fillRect(0, 0, getWidth(), 30);
    g.setColour(juce::Colour(0xff17181a));
    g.drawVerticalLine(0, 0.0f, (float) getHeight());
}
