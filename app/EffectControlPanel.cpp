#include "app/EffectControlPanel.h"

#include "app/BrushControlPanel.h"
#include "effect/EffectParameters.h"
#include "effect/TornvaleEffect.h"
#include "ui/SxIconButton.h"
#include "ui/SxSlider.h"

namespace
{
constexpr int sliderRowHeight = 44;
constexpr int segmentRowHeight = 53;
constexpr int brushPanelHeight = 164;
} // namespace

EffectControlPanel::EffectControlPanel(SxToolOwner& owner, std::function<void()> randomizeSettings)
    : SxComponent("effectControlComponent"), toolOwner(owner), randomize(std::move(randomizeSettings))
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
    // A 44-pixel square at y -7 would sit half outside the title bar; it is kept inside it here.
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
    randomizeEffectButton->setEnabled(effect != nullptr);
    // The brushes come and go with the effect's controls; their settings stay.
    brushPanel.reset();
    if (effect != nullptr)
    {
        buildControls();
        brushPanel = std::make_unique<BrushControlPanel>(toolOwner);
        addAndMakeVisible(*brushPanel);
        brushPanel->setBoundsString("0, parent.height - " + juce::String(brushPanelHeight) + ", left + parent.width, top + "
                                    + juce::String(brushPanelHeight));
    }
    column->relayout();
    updateControls();
}

void EffectControlPanel::buildControls()
{
    // Names, labels, tooltips and choices come from the parameter table; only the arrangement
    // into rows lives here.
    auto control = [this](const char* key) -> juce::Component* {
        const auto* row = EffectParameterTable::find(key);
        jassert(row != nullptr);
        std::unique_ptr<juce::Component> made;
        if (row->isInteger())
        {
            juce::StringArray texts, tooltips;
            for (auto* text : row->choices)
                texts.add(text);
            for (auto* tooltip : row->choiceTooltips)
                tooltips.add(tooltip);
            made = std::make_unique<SxLabelSegmentController>(row->widgetName, row->label, &(effect->*(row->intField)), texts,
                                                              tooltips, this);
            made->setSize(240, segmentRowHeight);
        }
        else
        {
            auto slider = std::make_unique<SxLabelSlider>(row->widgetName, row->label, &(effect->*(row->floatField)), this);
            if (row->tooltip != nullptr)
                slider->setTooltip(row->tooltip);
            slider->setSize(240, sliderRowHeight);
            made = std::move(slider);
        }
        auto* raw = made.get();
        controls.push_back(std::move(made));
        return raw;
    };

    column->addRow(makePair(*control("preSharpen"), *control("colorizeEdges"), sliderRowHeight));
    column->addRow(control("preSharpenSize"));
    column->addRow(control("strokeLength"));
    column->addRow(control("strokeStyle"));
    column->addRow(makePair(*control("sharpen"), *control("brightenLight"), sliderRowHeight));
    column->addRow(control("postSharpen"));
    column->addRow(makePair(*control("saturation"), *control("contrast"), sliderRowHeight));
    column->addRow(control("smoothing"));
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
    if (effect == nullptr)
        return;
    // Dark strokes turn the light controls into darkening ones.
    const bool dark = effect->strokeStyle == 1;
    for (const auto& row : EffectParameterTable::all())
        if (row.darkStyleLabel != nullptr)
            if (auto* slider = dynamic_cast<SxLabelSlider*>(findControl(row.widgetName)))
                slider->setLabelText(dark ? row.darkStyleLabel : row.label);
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
        randomize();
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
