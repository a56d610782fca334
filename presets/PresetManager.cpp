#include "presets/PresetManager.h"

#include "presets/PresetStripIcons.h"
#include "ui/SxIcons.h"

namespace
{
const juce::Colour background(0xff26282c), bar(0xff2e3035), iconColour(0xffd8d8d8);
} // namespace

PresetManager::PresetManager(PresetManagerCallback& owner, const juce::String& effectName, const juce::File& folder,
                             juce::PropertiesFile* settingsFile)
    : SxComponent("presetControlComponent"), callback(owner), presetFolder(folder), settings(settingsFile)
{
    setComponentID("presetControlComponent");
    presetImageList = std::make_unique<PresetImageList>(effectName, folder, settings, this);
    presetImageList->hasDocument = [this] { return callback.hasSourceImage(); };
    presetImageList->onScrolled = [this] { updateArrows(); };
    buildPanel();
}

PresetManager::~PresetManager()
{
    stopTimer(hiddenTimer);
    stopTimer(shownTimer);
    animator.cancelAllAnimations(false);
    if (upArrowButton != nullptr && upArrowButton->getParentComponent() != nullptr)
        upArrowButton->getParentComponent()->removeChildComponent(upArrowButton.get());
    presetImageList.reset();
}

std::unique_ptr<juce::ShapeButton> PresetManager::makeButton(const char* name, const juce::Path& shape, const char* tooltip)
{
    auto button = std::make_unique<juce::ShapeButton>(name, iconColour, juce::Colours::white, iconColour.darker(0.3f));
    button->setComponentID(name);
    button->setShape(shape, false, true, false);
    button->setTooltip(tooltip);
    button->addListener(this);
    return button;
}

void PresetManager::buildPanel()
{
    titleLabel = std::make_unique<juce::Label>("presetsTitle", "PRESETS");
    titleLabel->setJustificationType(juce::Justification::centred);
    titleLabel->setFont(juce::Font(14.0f, juce::Font::bold));
    titleLabel->setColour(juce::Label::textColourId, juce::Colour(0xfffafafa));
    addAndMakeVisible(*titleLabel);
    SxComponent::place(*titleLabel, "parent.width / 2 - 40, 0, left + 80, 30");

    presetArrowDownButton = makeButton("presetArrowDownButton", PresetStripIcons::arrow(false), "Click to hide the Style Browser.");
    addAndMakeVisible(*presetArrowDownButton);
    SxComponent::place(*presetArrowDownButton, "0, 0, left + 41, top + 30");
    upArrowButton = makeButton("upArrowButton", PresetStripIcons::arrow(true), "Click to show the Style Browser.");

    // 44-pixel round buttons would reach above the bar; here they stay inside it.
    addPresetButton = makeButton("addPresetButton", PresetStripIcons::plus(),
                                 "Save Preset. This saves the current settings to a file located in the 'Style Browser' and "
                                 "allows you to apply the settings to future projects.");
    removePresetButton = makeButton("removePresetButton", PresetStripIcons::minus(),
                                    "Blue delete icons will appear on the preset thumbnails in the 'Style Browser'- use them to "
                                    "delete. If you delete a default preset (one that came with the app), go to the File menu in "
                                    "Preferences and choose 'Rebuild Default Presets'.");
    randomizeEffectButton = makeButton("randomizeEffectButton", SxIcons::get(SxIcons::Kind::randomize),
                                       "Randomizes the settings. This feature keeps the chosen 'Style' and varies the adjust "
                                       "settings.");
    for (auto* b : { addPresetButton.get(), removePresetButton.get(), randomizeEffectButton.get() })
        addAndMakeVisible(*b);
    SxComponent::place(*addPresetButton, "parent.width - 96, 4, left + 22, top + 22");
    SxComponent::place(*removePresetButton, "parent.width - 56, 4, left + 22, top + 22");
    SxComponent::place(*randomizeEffectButton, "parent.width - 136, 2, left + 26, top + 26");

    mainInsideComponent = std::make_unique<SxComponent>("mainInsideComponent");
    mainInsideComponent->setComponentID("mainInsideComponent");
    addAndMakeVisible(*mainInsideComponent);
    mainInsideComponent->setBoundsString("0, 30, left + parent.width, top + parent.height - 30");

    scrollerParent = std::make_unique<SxComponent>("scrollerParent");
    scrollerParent->setComponentID("scrollerParent");
    mainInsideComponent->addAndMakeVisible(*scrollerParent);
    scrollerParent->setBoundsString("30, 0, left + parent.width - 60, top + 128");

    leftArrowButton = makeButton("leftArrowButton", SxIcons::get(SxIcons::Kind::arrowLeft), "");
    rightArrowButton = makeButton("rightArrowButton", SxIcons::get(SxIcons::Kind::arrowRight), "");
    mainInsideComponent->addChildComponent(*leftArrowButton);
    mainInsideComponent->addChildComponent(*rightArrowButton);
    leftArrowButton->setBorderSize(juce::BorderSize<int>(40, 6, 40, 6));
    rightArrowButton->setBorderSize(juce::BorderSize<int>(40, 6, 40, 6));
    SxComponent::place(*leftArrowButton, "scrollerParent.left - 30, 0, left + 30, top + 128");
    SxComponent::place(*rightArrowButton, "scrollerParent.right, 0, left + 30, top + 128");

    scrollerParent->addAndMakeVisible(*presetImageList);
    SxComponent::place(*presetImageList, "0, 0, left + parent.width, top + 128");
}

juce::String PresetManager::boundsFor(bool shown) const
{
    const juce::String height(stripHeight);
    return (shown ? "0, parent.height - " + height : juce::String("0, parent.height")) + ", " + rightEdge + ", top + " + height;
}

void PresetManager::setOpen(bool shouldBeOpen, bool animate)
{
    auto* parent = getParentComponent();
    if (parent == nullptr || animator.isAnimating())
        return;
    open = shouldBeOpen;
    if (!animate || parent->getHeight() <= 0)
    {
        setBoundsString(boundsFor(open));
        timerCallback(open ? shownTimer : hiddenTimer);
        return;
    }
    toFront(false);
    // Slide there, then hand the place back to the bounds string so a resize keeps it.
    setPositioner(nullptr);
    const auto target = getBounds().withY(open ? getY() - getHeight() - 1 : getY() + 1 + getHeight());
    animator.animateComponent(this, target, 1.0f, slideMs, false, open ? 0.0 : 0.5, open ? 0.0 : 0.5, Easing::sineInOut);
    if (open)
    {
        upArrowButton->setAlpha(0.0f);
        upArrowButton->setVisible(false);
    }
    startTimer(open ? shownTimer : hiddenTimer, slideMs);
}

void PresetManager::timerCallback(int timerID)
{
    stopTimer(timerID);
    if (timerID != hiddenTimer && timerID != shownTimer)
        return;
    const bool shown = timerID == shownTimer;
    setBoundsString(boundsFor(shown));
    if (settings != nullptr)
    {
        // Stored either way: a missing key means open, as on a first start.
        settings->setValue("PresetManagerOpened", shown);
        settings->saveIfNeeded();
    }
    if (shown)
    {
        upArrowButton->setVisible(false);
        return;
    }
    if (auto* parent = getParentComponent())
    {
        parent->addChildComponent(*upArrowButton);
        SxComponent::place(*upArrowButton, "0, parent.height - 33, left + 41, top + 30");
        upArrowButton->setAlpha(0.0f);
        upArrowButton->setVisible(true);
        upArrowButton->toFront(false);
        juce::Desktop::getInstance().getAnimator().fadeIn(upArrowButton.get(), 300);
    }
}

void PresetManager::renderedPreview(const juce::String& path, const juce::Image& image)
{
    presetImageList->setRenderedPreview(path, image);
}

void PresetManager::updateArrows()
{
    auto* scroller = presetImageList->getScroller();
    if (scroller == nullptr)
        return;
    const auto view = scroller->getViewArea();
    rightArrowButton->setVisible(view.getRight() < presetImageList->getContentWidth());
    leftArrowButton->setVisible(view.getX() > 0);
}

void PresetManager::presetClicked(const juce::String& path)
{
    if (callback.hasSourceImage())
        callback.presetClicked(path);
}

void PresetManager::presetDeleted(const juce::String& path)
{
    callback.presetDeleted(path);
}

void PresetManager::buttonClicked(juce::Button* button)
{
    const auto name = button->getName();
    if (name == "presetArrowDownButton")
        setOpen(false, true);
    else if (name == "upArrowButton")
        setOpen(true, true);
    else if (name == "addPresetButton")
        callback.savePresetRequested();
    else if (name == "removePresetButton")
    {
        presetImageList->deleteOnlyRequest = !presetImageList->isDeleteMode();
        presetImageList->toggleDeleteMode();
    }
    else if (name == "randomizeEffectButton")
        callback.randomizeEffect();
    else if (name == "leftArrowButton")
        presetImageList->scrollTo(0);
    else if (name == "rightArrowButton")
        presetImageList->scrollTo(presetImageList->getContentWidth());
}

void PresetManager::paint(juce::Graphics& g)
{
    g.fillAll(background);
    g.setColour(bar);
    g.fillRect(0, 0, getWidth(), 30);
    g.setColour(juce::Colour(0xff17181a));
    g.drawHorizontalLine(0, 0.0f, (float) getWidth());
}

juce::String PresetManager::describe() const
{
    return "presetManager open=" + juce::String(open ? 1 : 0) + " sliding=" + juce::String(animator.isAnimating() ? 1 : 0) + "\n"
           + presetImageList->describe();
}
