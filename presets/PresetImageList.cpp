#include "presets/PresetImageList.h"

#include "presets/PresetImageListButton.h"
#include "presets/PresetListing.h"
#include "presets/PresetStripIcons.h"

namespace
{
constexpr int gap = 5;
constexpr int fadeMs = 300;
constexpr int dragThreshold = 8;

/** The outline that marks the preset applied last. */
class SelectionBorder : public juce::Component
{
public:
    SelectionBorder() : juce::Component("borderImageComp") { setInterceptsMouseClicks(false, false); }
    void paint(juce::Graphics& g) override
    {
        g.setColour(juce::Colour(0xfffafafa));
        g.drawRect(getLocalBounds(), 2);
    }
};

bool takesClicks(const juce::Component& c)
{
    bool self = false, children = false;
    c.getInterceptsMouseClicks(self, children);
    return self;
}

juce::String mapName(const juce::String& text)
{
    return text.replaceCharacter(' ', '_');
}

juce::String boundsText(const juce::Component& c)
{
    const auto r = c.getScreenBounds();
    return juce::String(r.getX()) + " " + juce::String(r.getY()) + " " + juce::String(r.getWidth()) + " " + juce::String(r.getHeight());
}
} // namespace

class PresetImageList::Scroller : public juce::Viewport
{
public:
    explicit Scroller(PresetImageList& owner) : juce::Viewport("ImageListScroller"), list(owner)
    {
        setComponentID("scrollerComponent");
    }
    void visibleAreaChanged(const juce::Rectangle<int>&) override
    {
        if (list.onScrolled)
            list.onScrolled();
    }

private:
    PresetImageList& list;
};

PresetImageList::PresetImageList(const juce::String& name, const juce::File& presetFolder, juce::PropertiesFile* settingsFile,
                                 PresetImageListCallback* listCallback)
    : juce::Component("presetImageList"), effectName(name), folder(presetFolder), settings(settingsFile), callback(listCallback)
{
    if (settings != nullptr)
        favourites = PresetListing::parseFavourites(settings->getValue("presetFavString"));
    deleteImage = PresetStripIcons::deleteBadge(29);
    starOn = PresetStripIcons::star(23, true);
    starOff = PresetStripIcons::star(23, false);
    // Presses anywhere in the row arm the long press; the list itself lets them through.
    setInterceptsMouseClicks(false, true);
    addMouseListener(this, true);
}

PresetImageList::~PresetImageList()
{
    stopTimer(longPressTimer);
    stopTimer(rebuildTimer);
    stopTimer(rebuildNowTimer);
    PresetImageListButton::closeHover();
    animator.cancelAllAnimations(false);
    removeMouseListener(this);
    scrollerComponent.reset();
    parts.clear();
}

juce::File PresetImageList::getPresetFolder(const juce::String& name) const
{
    return name.isEmpty() ? folder : folder.getChildFile(name);
}

juce::Array<juce::File> PresetImageList::getPresetFiles() const
{
    return PresetListing::presetFiles(folder);
}

juce::Array<juce::File> PresetImageList::getImageFiles() const
{
    return PresetListing::imageFiles(folder);
}

void PresetImageList::setRenderedPreview(const juce::String& path, const juce::Image& image)
{
    auto found = std::find_if(renderedPreviews.begin(), renderedPreviews.end(), [&](auto& p) { return p->presetPath == path; });
    if (found != renderedPreviews.end())
        (*found)->image = image;
    else
    {
        auto entry = std::make_unique<PresetRenderedCacheImage>();
        entry->image = image;
        entry->presetPath = path;
        renderedPreviews.push_back(std::move(entry));
    }
    for (auto* button : buttons)
        if (button->presetPath == path)
            button->setPicture(image, true);
}

void PresetImageList::removeRenderedPreview(const juce::String& path)
{
    renderedPreviews.erase(std::remove_if(renderedPreviews.begin(), renderedPreviews.end(), [&](auto& p) { return p->presetPath == path; }),
                           renderedPreviews.end());
}

void PresetImageList::clearRenderedPreviews()
{
    renderedPreviews.clear();
    if (selectionBorder != nullptr)
        animator.fadeOut(selectionBorder.get(), fadeMs);
}

juce::StringArray PresetImageList::getRenderedPaths() const
{
    juce::StringArray paths;
    for (auto& p : renderedPreviews)
        paths.add(p->presetPath);
    return paths;
}

void PresetImageList::rebuild()
{
    stopTimer(rebuildTimer);
    PresetImageListButton::closeHover();
    animator.cancelAllAnimations(false);
    deleteIcons.clear();
    favouriteIcons.clear();
    buttons.clear();
    scrollerComponent.reset();
    insideComponent.reset();
    selectionBorder.reset();
    parts.clear();
    selectedIndex = -1;

    presetFiles = PresetListing::displayOrder(getPresetFiles(), favourites);
    imageFiles = getImageFiles();

    scrollerComponent = std::make_unique<Scroller>(*this);
    addAndMakeVisible(*scrollerComponent);
    scrollerComponent->setBounds(getLocalBounds());
    builtForHeight = getHeight();
    pendingRebuild = false;
    if (presetFiles.isEmpty())
    {
        deleteMode = keepDeleteMode = false;
        return;
    }

    const int height = getHeight() > 0 ? getHeight() : 128;
    thumbSize = (float) juce::jmax(16, height - labelHeight - 13);
    frameImage = PresetStripIcons::frame((int) thumbSize + 6);
    const int n = presetFiles.size();
    const int thumb = (int) thumbSize;
    insideComponent = std::make_unique<juce::Component>("insideComponent");
    insideComponent->setSize(n * thumb + n * gap + gap, height);

    int x = gap, y = gap;
    for (int i = 0; i < n; ++i)
    {
        addButton(i, x, y);
        x += thumb + gap;
        if (insideComponent->getWidth() < x + thumb)
        {
            x = gap;
            y += thumb + gap;
        }
    }
    deleteMode = keepDeleteMode;

    scrollerComponent->setScrollBarsShown(false, true);
    scrollerComponent->setScrollBarThickness(10);
    scrollerComponent->setScrollOnDragMode(juce::Viewport::ScrollOnDragMode::all);
    scrollerComponent->setViewedComponent(insideComponent.get(), false);
    placeScroller();
}

void PresetImageList::addButton(int index, int x, int y)
{
    const auto file = presetFiles[index];
    const int thumb = (int) thumbSize;
    auto& inside = *insideComponent;

    auto shadow = std::make_unique<juce::ImageComponent>("presetShadow");
    shadow->setImage(frameImage, juce::RectanglePlacement::stretchToFit);
    shadow->setBounds(x - 3, y - 3, thumb + 6, thumb + 6);
    shadow->setInterceptsMouseClicks(false, false);
    inside.addAndMakeVisible(*shadow);

    auto button = std::make_unique<PresetImageListButton>(*this, index, file.getFullPathName());
    button->setBounds(x, y, thumb, thumb);
    button->addListener(this);
    const auto cached = std::find_if(renderedPreviews.begin(), renderedPreviews.end(),
                                     [&](auto& p) { return p->presetPath == file.getFullPathName(); });
    if (cached != renderedPreviews.end())
        button->setPicture((*cached)->image, true);
    else if (const auto picture = PresetListing::thumbnailFor(file); picture.isValid())
        button->setPicture(picture, false);
    inside.addAndMakeVisible(*button);

    auto label = std::make_unique<juce::Label>("presetLabel", file.getFileNameWithoutExtension());
    label->setColour(juce::Label::textColourId, juce::Colour(0xfffafafa));
    label->setJustificationType(juce::Justification::centred);
    label->setMinimumHorizontalScale(1.0f);
    // Small enough that a two-word name breaks between its words, not inside one.
    label->setFont(juce::Font(12.5f));
    label->setBorderSize({ 1, 0, 1, 0 });
    label->setSize(85, labelHeight);
    label->setTopLeftPosition(x + thumb / 2 - 85 / 2, y + thumb + labelHeight / 2 - labelHeight / 2);
    label->setInterceptsMouseClicks(false, false);
    inside.addAndMakeVisible(*label);
    button->label = label.get();

    if (index == 0)
    {
        selectionBorder = std::make_unique<SelectionBorder>();
        selectionBorder->setBounds(x, y, thumb, thumb);
        selectionBorder->setAlpha(0.0f);
        inside.addChildComponent(*selectionBorder);
    }
    if (file.getFullPathName() == selectedPath && selectionBorder != nullptr)
    {
        // The preset applied last keeps its mark across a rebuild.
        selectedIndex = index;
        selectionBorder->setBounds(x, y, thumb, thumb);
        selectionBorder->setAlpha(1.0f);
        selectionBorder->setVisible(true);
    }

    auto remove = std::make_unique<juce::ImageButton>(juce::String(index));
    remove->setImages(false, false, true, deleteImage, 1.0f, {}, deleteImage, 1.0f, {}, deleteImage, 0.8f, {});
    remove->setBounds(x + juce::roundToInt(0.05f * thumb), y + 2, 29, 29);
    remove->setTooltip("Permanently deletes this preset");
    remove->setAlpha(keepDeleteMode ? 1.0f : 0.0f);
    remove->setVisible(keepDeleteMode);
    remove->setInterceptsMouseClicks(keepDeleteMode, false);
    remove->addListener(this);
    inside.addChildComponent(*remove);
    deleteIcons.add(remove.get());

    const bool marked = PresetListing::isFavourite(favourites, file);
    auto star = std::make_unique<juce::ImageButton>(juce::String(index));
    const auto& picture = marked ? starOn : starOff;
    star->setImages(false, false, true, picture, 1.0f, {}, picture, 1.0f, {}, picture, 0.8f, {});
    star->setBounds(x + juce::roundToInt(0.65f * thumb), y + 5, 23, 23);
    star->setTooltip("Moves this preset to the beginning");
    star->setAlpha(marked || keepDeleteMode ? 1.0f : 0.0f);
    star->setVisible(marked || keepDeleteMode);
    star->setInterceptsMouseClicks(keepDeleteMode, false);
    star->addListener(this);
    inside.addChildComponent(*star);
    favouriteIcons.add(star.get());

    buttons.push_back(button.get());
    parts.push_back(std::move(shadow));
    parts.push_back(std::move(button));
    parts.push_back(std::move(label));
    parts.push_back(std::move(remove));
    parts.push_back(std::move(star));
}

void PresetImageList::placeScroller()
{
    if (scrollerComponent == nullptr)
        return;
    // A short row stands centred; a long one fills the strip and scrolls.
    const int contentWidth = insideComponent != nullptr ? insideComponent->getWidth() : 0;
    if (contentWidth > 0 && contentWidth < getWidth() - 60)
        scrollerComponent->setBounds((getWidth() - contentWidth) / 2, 0, contentWidth, getHeight());
    else
        scrollerComponent->setBounds(getLocalBounds());
}

void PresetImageList::resized()
{
    if (builtForHeight != getHeight())
        rebuild();
    else
        placeScroller();
}

void PresetImageList::scrollTo(int x)
{
    if (scrollerComponent != nullptr)
        scrollerComponent->setViewPosition(juce::jmax(0, x), 0);
}

int PresetImageList::getContentWidth() const
{
    return insideComponent != nullptr ? insideComponent->getWidth() : 0;
}

void PresetImageList::toggleDeleteMode()
{
    if (deleteIcons.isEmpty())
        return;
    setDeleteMode(!deleteMode);
}

void PresetImageList::setDeleteMode(bool on)
{
    deleteMode = on;
    gestureConsumed = true;
    if (on)
    {
        PresetImageListButton::closeHover();
        auto raise = [this](juce::ImageButton* icon) {
            if (!icon->isVisible() || icon->getAlpha() < 1.0f)
            {
                icon->setAlpha(0.0f);
                icon->setVisible(true);
                animator.fadeIn(icon, fadeMs);
            }
            icon->setInterceptsMouseClicks(true, false);
        };
        for (auto* icon : deleteIcons)
            raise(icon);
        if (!deleteOnlyRequest)
            for (auto* icon : favouriteIcons)
                raise(icon);
    }
    else
    {
        keepDeleteMode = false;
        for (auto* icon : deleteIcons)
        {
            icon->setInterceptsMouseClicks(false, false);
            animator.fadeOut(icon, fadeMs);
        }
        for (int i = 0; i < favouriteIcons.size(); ++i)
        {
            favouriteIcons[i]->setInterceptsMouseClicks(false, false);
            if (!PresetListing::isFavourite(favourites, presetFiles[i]))
                animator.fadeOut(favouriteIcons[i], fadeMs);
        }
        deleteOnlyRequest = false;
        startTimer(rebuildTimer, 350);
    }
    if (onDeleteModeChanged)
        onDeleteModeChanged(on);
}

void PresetImageList::writeFavourites()
{
    if (settings == nullptr)
        return;
    settings->setValue("presetFavString", PresetListing::favouritesString(favourites));
    settings->saveIfNeeded();
}

void PresetImageList::buttonClicked(juce::Button* button)
{
    const int index = button->getName().getIntValue();
    if (!juce::isPositiveAndBelow(index, (int) buttons.size()))
        return;
    const juce::File file(buttons[(size_t) index]->presetPath);

    if (deleteIcons.contains(static_cast<juce::ImageButton*>(button)))
    {
        gestureConsumed = true;
        if (!hasDocument() || !file.deleteFile())
            return;
        // The favourites hold base names, so this rarely matches; a dead name does no harm.
        favourites.erase(std::remove(favourites.begin(), favourites.end(), file.getFileName()), favourites.end());
        removeRenderedPreview(file.getFullPathName());
        if (callback != nullptr)
            callback->presetDeleted(file.getFullPathName());
        file.withFileExtension("jpg").deleteFile();
        keepDeleteMode = true;
        longPressArmed = false;
        // The badge that was clicked goes with the rebuild: not from inside its own click.
        startTimer(rebuildNowTimer, 1);
        return;
    }
    if (favouriteIcons.contains(static_cast<juce::ImageButton*>(button)))
    {
        gestureConsumed = true;
        if (!hasDocument() || !deleteMode)
            return;
        const auto name = file.getFileNameWithoutExtension();
        auto found = std::find(favourites.begin(), favourites.end(), name);
        const bool marked = found == favourites.end();
        if (marked)
            favourites.push_back(name);
        else
            favourites.erase(found);
        const auto& picture = marked ? starOn : starOff;
        favouriteIcons[index]->setImages(false, false, true, picture, 1.0f, {}, picture, 1.0f, {}, picture, 0.8f, {});
        pendingRebuild = true;
        writeFavourites();
        return;
    }

    // A thumbnail. A release that ends a long press or a drag is not a click.
    if (gestureConsumed)
        return;
    if (deleteMode)
        toggleDeleteMode();
    if (selectionBorder != nullptr)
    {
        selectionBorder->setBounds(button->getBounds());
        selectionBorder->toFront(false);
        animator.fadeIn(selectionBorder.get(), fadeMs);
    }
    selectedIndex = index;
    selectedPath = file.getFullPathName();
    if (callback != nullptr)
        callback->presetClicked(file.getFullPathName());
}

void PresetImageList::mouseDown(const juce::MouseEvent&)
{
    gestureConsumed = false;
    longPressArmed = true;
    startTimer(longPressTimer, longPressMs);
}

void PresetImageList::mouseDrag(const juce::MouseEvent& e)
{
    if (longPressArmed && e.getDistanceFromDragStart() > dragThreshold)
    {
        gestureConsumed = true;
        longPressArmed = false;
        stopTimer(longPressTimer);
    }
}

void PresetImageList::mouseUp(const juce::MouseEvent&)
{
    stopTimer(longPressTimer);
    longPressArmed = false;
    if (gestureConsumed)
    {
        gestureConsumed = false;
        return;
    }
    if (deleteMode && (scrollerComponent == nullptr || !scrollerComponent->isCurrentlyScrollingOnDrag()))
        toggleDeleteMode();
}

void PresetImageList::timerCallback(int timerID)
{
    stopTimer(timerID);
    switch (timerID)
    {
        case longPressTimer:
            if (hasDocument() && longPressArmed)
            {
                longPressArmed = false;
                toggleDeleteMode();
                gestureConsumed = true;
            }
            break;
        case rebuildTimer:
            if (pendingRebuild)
                rebuild();
            break;
        case rebuildNowTimer:
            rebuild();
            if (buttons.empty())
            {
                keepDeleteMode = false;
                deleteMode = false;
                if (onDeleteModeChanged)
                    onDeleteModeChanged(false);
            }
            break;
        default:
            break;
    }
}

juce::String PresetImageList::describe() const
{
    juce::String text;
    const auto hover = PresetImageListButton::openHoverName();
    text << "presetStrip count=" << (int) buttons.size() << " deleteMode=" << (deleteMode ? 1 : 0)
         << " selected=" << (selectedIndex >= 0 ? mapName(juce::File(selectedPath).getFileNameWithoutExtension()) : juce::String("none"))
         << " hover=" << (hover.isEmpty() ? juce::String("none") : mapName(hover))
         << " rendered=" << (int) renderedPreviews.size() << '\n';
    if (scrollerComponent == nullptr || insideComponent == nullptr)
        return text;
    const auto view = scrollerComponent->getViewArea();
    for (size_t i = 0; i < buttons.size(); ++i)
    {
        auto* b = buttons[i];
        // Only what a user can reach without scrolling.
        if (!view.contains(b->getBounds()) || !b->isShowing())
            continue;
        const auto name = mapName(juce::File(b->presetPath).getFileNameWithoutExtension());
        text << "presetThumb " << name << ' ' << boundsText(*b) << ' ' << (b->getPicture().isValid() ? 1 : 0) << '\n';
        if (deleteIcons[(int) i]->isVisible() && takesClicks(*deleteIcons[(int) i]))
            text << "presetDelete " << name << ' ' << boundsText(*deleteIcons[(int) i]) << '\n';
        auto* star = favouriteIcons[(int) i];
        if (star->isVisible() && takesClicks(*star))
            text << "presetFavourite " << name << ' ' << boundsText(*star) << '\n';
    }
    if (auto* box = PresetImageListButton::openHoverBox())
        text << "presetHoverBox " << boundsText(*box) << '\n';
    return text;
}

juce::Viewport* PresetImageList::getScroller() const
{
    return scrollerComponent.get();
}
