#include "app/OmbrikMainWindow.h"

#include "app/GenericAppComponent.h"
#include "app/GenericApplication.h"

bool windowStateReady = false;

namespace MainWindowSize
{
juce::Point<int> initialContentSize(int displayWidth)
{
    int w = (int) (displayWidth * 0.3);
    // The height follows the width before it is clamped, so a small display keeps a wide window
    // that is not taller than its 65% share.
    int h = (int) (w * 0.65);
    w = juce::jmax(1024, juce::jmin(1920, w));
    h = juce::jmax(601, h);
    return { w, h };
}
} // namespace MainWindowSize

OmbrikMainWindow::OmbrikMainWindow()
    : juce::DocumentWindow("OmbrikMainWindow", SxMainWindowLookAndFeel::backgroundColour(), 7, true)
{
    setResizable(true, false);
    setResizeLimits(1024, 660, 15000, 15000);
    setTitleBarHeight(22);
    resized();
    setName(getName());

    auto* app = GenericApplication::getGenericInstance();
    ownedComponent.reset(app->createMainComponent());
    component = ownedComponent.get();
    app->mainComponent = component;

    component->initializeApplication();
    component->buildInterface();
    component->finishInterface();

    const auto* display = juce::Desktop::getInstance().getDisplays().getPrimaryDisplay();
    const int displayWidth = display != nullptr ? display->userArea.getWidth() : 1920;
    const auto size = MainWindowSize::initialContentSize(displayWidth);
    component->setSize(size.x, size.y);

    // The menu bar first, so that the window's size takes in its height.
    setMenuBar(component);
    setContentNonOwned(component, true);
    addKeyListener(component);
    setSize(getWidth(), getHeight());

    lookAndFeel = std::make_unique<SxMainWindowLookAndFeel>();
    setLookAndFeel(lookAndFeel.get());

    if (auto* settings = component->getUserSettings())
    {
        const auto state = settings->getValue("windowSavedState");
        if (state.isNotEmpty())
            restoreWindowStateFromString(state);
        else
            centreWithSize(getWidth(), getHeight());
        settings->setValue("freshProject", true);
        windowStateReady = true;
    }

    setVisible(true);
}

OmbrikMainWindow::~OmbrikMainWindow()
{
    windowStateReady = false;
    if (component != nullptr)
        removeKeyListener(component);
    setMenuBar(nullptr);
    clearContentComponent();
    ownedComponent.reset();
    setLookAndFeel(nullptr);
}

void OmbrikMainWindow::saveWindowState()
{
    if (component == nullptr || !windowStateReady || getPeer() == nullptr)
        return;
    if (auto* settings = component->getUserSettings())
    {
        settings->setValue("windowSavedState", getWindowStateAsString());
        settings->saveIfNeeded();
    }
}

void OmbrikMainWindow::moved()
{
    saveWindowState();
    juce::DocumentWindow::moved();
}

void OmbrikMainWindow::resized()
{
    saveWindowState();
    juce::DocumentWindow::resized();
}

void OmbrikMainWindow::closeButtonPressed()
{
    // Closing the window and a quit from the system are one path, so both ask mayQuit.
    juce::JUCEApplication::getInstance()->systemRequestedQuit();
}
