#include "app/BrushControlPanel.h"

#include "brush/SxBrushSettings.h"
#include "effect/TornvaleEffect.h"
#include "ui/SxBrushSizeLabelSlider.h"
#include "ui/SxRoundRectangleButton.h"
#include "ui/SxSlider.h"

namespace
{
juce::Label* makeLabel(SxComponent& parent, const juce::String& name, const juce::String& text, const juce::String& bounds)
{
    auto* label = new juce::Label(name, text);
    label->setComponentID(name); // siblings are placed by it
    label->setFont(juce::Font(12.0f));
    label->setColour(juce::Label::textColourId, juce::Colour(0xfffafafa));
    parent.addAndMakeVisible(label);
    SxComponent::place(*label, bounds);
    return label;
}
} // namespace

BrushControlPanel::BrushControlPanel(SxToolOwner& toolOwner) : SxComponent("brushControlPanel"), owner(toolOwner)
{
    title.setComponentID("brushPanelTitle");
    title.setJustificationType(juce::Justification::centred);
    title.setFont(juce::Font(14.0f, juce::Font::bold));
    title.setColour(juce::Label::textColourId, juce::Colour(0xfffafafa));
    addAndMakeVisible(title);
    SxComponent::place(title, "0, 0, parent.width, 30");

    brushOnTool = std::make_unique<SxBrushTool>("brushOnTool", 1);
    brushOnTool->setTooltip("Restores the effect by brushing (B)");
    brushOffTool = std::make_unique<SxBrushTool>("brushOffTool", 0);
    brushOffTool->setTooltip("Removes the effect by brushing (E)");
    const char* toolBounds[] = { "8, 36, left + 50, top + 27", "56, 36, left + 50, top + 27" };
    int i = 0;
    for (auto* tool : { brushOnTool.get(), brushOffTool.get() })
    {
        tool->setOwner(&owner);
        tool->setCallback(this);
        tool->setFirstCallback(this);
        // The mask is seen through the picture itself, never as a red overlay.
        tool->setHideMaskOverlay(true);
        addAndMakeVisible(*tool);
        SxComponent::place(*tool, toolBounds[i++]);
    }

    addAndMakeVisible(tabArea);
    SxComponent::place(tabArea, "0, 68, left + parent.width, top + parent.height - 68");
    buildTab(*brushOnTool, 1, &SxBrushSettings::brushOpacityOn);
    buildTab(*brushOffTool, 2, &SxBrushSettings::brushOpacityOff);
    applySettings();

    SxBrushTool* selected = SxBrushSettings::brushOnToolSelected ? brushOnTool.get()
                            : SxBrushSettings::brushOffToolSelected ? brushOffTool.get()
                                                                    : nullptr;
    showTabOf(selected != nullptr ? selected : brushOffTool.get());
    if (selected != nullptr)
        owner.setCurrentTool(selected);
}

BrushControlPanel::~BrushControlPanel()
{
    SxBrushSettings::brushOnToolSelected = brushOnTool->isToolOn();
    SxBrushSettings::brushOffToolSelected = brushOffTool->isToolOn();
    if (brushOnTool->isToolOn() || brushOffTool->isToolOn())
        owner.setCurrentTool(nullptr);
    for (auto* tool : { brushOnTool.get(), brushOffTool.get() })
    {
        tool->setFirstCallback(nullptr);
        tool->setCallback(nullptr);
    }
}

void BrushControlPanel::buildTab(SxBrushTool& tool, int number, float* opacity)
{
    // The tab is the tool's own panel: it shows while that tool is the one chosen.
    auto& tab = *tool.getToolUIComponent();
    const juce::String n(number);

    auto* size = new SxBrushSizeLabelSlider("manualBrushSizeSlider", "Brush Size:", &SxBrushSettings::brushSize, this,
                                            SxBrushSettings::minimumSize, SxBrushSettings::maximumSize);
    size->setTooltip("Changes the diameter of the brush. You can tap the '[' key to reduce the current size and ']' to "
                     "increase the brush size.");
    tab.addAndMakeVisible(size);
    SxComponent::place(*size, "4, 0, left + parent.width - 8, top + 44");

    makeLabel(tab, "brushOpacityLabel" + n, "Opacity:", "8, 44, left + 60, top + 23");
    auto* opacitySlider = new SxSlider(number == 1 ? "manualBrushOpacitySliderPaintOn" : "manualBrushOpacitySliderPaintOff",
                                       opacity, this);
    opacitySlider->setComponentID(opacitySlider->getName());
    opacitySlider->setTooltip("Changes the opacity of the brush. Make this value small to make small adjustments to your image.");
    tab.addAndMakeVisible(opacitySlider);
    SxComponent::place(*opacitySlider, "brushOpacityLabel" + n + ".right + 0, 46, left + parent.width - 76, top + 21");

    makeLabel(tab, "strokesLabel" + n, "Mask:", "8, 70, left + 42, top + 23");
    const struct
    {
        const char* name;
        const char* text;
        const char* tooltip;
    } buttons[] = {
        { "fillButton", "Fill", "Use this to quickly restore the effect on the image." },
        { "clearButton", "Clear", "Clears entire effect off the image." },
        { "invertButton", "Invert",
          "Flips the current brushed areas on the image. What was on will be cleared and what was cleared will be shown." },
    };
    juce::String left = "strokesLabel" + n + ".right + 1";
    for (const auto& b : buttons)
    {
        auto* button = new SxRoundRectangleButton(b.name + n, b.text);
        button->setComponentID(button->getName());
        button->setTooltip(b.tooltip);
        button->addListener(this);
        tab.addAndMakeVisible(button);
        SxComponent::place(*button, left + ", 72, left + 55, top + 20");
        left = juce::String(b.name) + n + ".right + 7";
    }

    if (number == 1)
    {
        manualBrushSizeSliderOn = size;
        manualBrushOpacitySliderPaintOn = opacitySlider;
    }
    else
    {
        manualBrushSizeSliderOff = size;
        manualBrushOpacitySliderPaintOff = opacitySlider;
    }
}

void BrushControlPanel::applySettings()
{
    brushOnTool->setBrushSize(SxBrushSettings::brushSize);
    brushOffTool->setBrushSize(SxBrushSettings::brushSize);
    brushOnTool->setOpacity(SxBrushSettings::brushOpacityOn);
    brushOffTool->setOpacity(SxBrushSettings::brushOpacityOff);
    for (SxSlider* slider : { (SxSlider*) manualBrushSizeSliderOn, (SxSlider*) manualBrushSizeSliderOff,
                              manualBrushOpacitySliderPaintOn, manualBrushOpacitySliderPaintOff })
        if (slider != nullptr)
            slider->update();
}

void BrushControlPanel::showTabOf(SxBrushTool* tool)
{
    for (auto* t : { brushOnTool.get(), brushOffTool.get() })
    {
        auto* tab = t->getToolUIComponent();
        if (t == tool && tab->getParentComponent() != &tabArea)
        {
            tabArea.addAndMakeVisible(tab);
            SxComponent::place(*tab, SxTool::toolUIBounds);
        }
        else if (t != tool && tab->getParentComponent() == &tabArea)
            tabArea.removeChildComponent(tab);
    }
}

//==============================================================================
SxImageAlphaByte* BrushControlPanel::getBrushMask()
{
    return TornvaleEffect::getBrushMask();
}

void BrushControlPanel::stateChanged(SxTool* tool, bool on)
{
    if (on)
        showTabOf(dynamic_cast<SxBrushTool*>(tool));
}

void BrushControlPanel::controlChanged(juce::Component*)
{
    // Both tabs edit one size; each opacity slider its own tool's.
    applySettings();
}

bool BrushControlPanel::handleKey(const juce::KeyPress& key)
{
    const auto mods = key.getModifiers();
    if (mods.isCommandDown() || mods.isAltDown())
        return false;
    // X11 reports letters' key codes in lower case.
    const int code = (int) juce::CharacterFunctions::toUpperCase((juce::juce_wchar) key.getKeyCode());
    const auto character = key.getTextCharacter();
    if (code == 'B' && !brushOnTool->isToolOn())
    {
        owner.setCurrentTool(brushOnTool.get());
        return true;
    }
    if (code == 'E' && !brushOffTool->isToolOn())
    {
        owner.setCurrentTool(brushOffTool.get());
        return true;
    }
    const bool smaller = code == '[' || character == '[';
    const bool larger = code == ']' || character == ']';
    if (!smaller && !larger)
        return false;
    auto& size = SxBrushSettings::brushSize;
    if (size == (smaller ? SxBrushSettings::minimumSize : SxBrushSettings::maximumSize))
        return false;
    size = juce::jlimit(SxBrushSettings::minimumSize, SxBrushSettings::maximumSize,
                        size + (smaller ? -1.0f : 1.0f) * SxBrushSettings::sizeStep());
    applySettings();
    repaint();
    return true;
}

void BrushControlPanel::fillMask()
{
    if (auto* mask = getBrushMask())
        mask->fill(0);
    owner.repaintImageRect(LayerRect::empty());
}

void BrushControlPanel::clearMask()
{
    if (auto* mask = getBrushMask())
        mask->fill(255);
    owner.repaintImageRect(LayerRect::empty());
}

void BrushControlPanel::invertMask()
{
    if (auto* mask = getBrushMask())
        mask->invert();
    owner.repaintImageRect(LayerRect::empty());
}

void BrushControlPanel::buttonClicked(juce::Button* button)
{
    const auto name = button->getName();
    if (name.startsWith("fillButton"))
        fillMask();
    else if (name.startsWith("clearButton"))
        clearMask();
    else if (name.startsWith("invertButton"))
        invertMask();
}

void BrushControlPanel::paint(juce::Graphics& g)
{
    g.fillAll(juce::Colour(0xff26282c));
    g.setColour(juce::Colour(0xff2e3035));
    g.fillRect(0, 0, getWidth(), 30);
}
