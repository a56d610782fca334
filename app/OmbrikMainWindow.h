#pragma once
// The one main window. It holds the main component and keeps the window's place and size in the
// settings, but only once the stored state has been restored: the window's first layout fires
// moved and resized with default bounds, which must not overwrite what the last run left.

#include "app/SxMainWindowLookAndFeel.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

class GenericAppComponent;

/** False until the main window has restored its stored state; guards every write of it. */
extern bool windowStateReady;

namespace MainWindowSize
{
/** The first content size for a display of the given width: 30% of it, at least 1024 and at
    most 1920 wide, and 65% of the unclamped width high, at least 601. */
juce::Point<int> initialContentSize(int displayWidth);
} // namespace MainWindowSize

class OmbrikMainWindow : public juce::DocumentWindow
{
public:
    OmbrikMainWindow();
    ~OmbrikMainWindow() override;

    void moved() override;
    void resized() override;
    void closeButtonPressed() override;

    GenericAppComponent* component = nullptr;

private:
    void saveWindowState();

    std::unique_ptr<GenericAppComponent> ownedComponent;
    std::unique_ptr<SxMainWindowLookAndFeel> lookAndFeel;
};
