#pragma once
// The program's command table: every menu item and shortcut has one row here, and the main
// component answers the command manager from it. The ids are fixed numbers because the menus and
// the key mappings are built from them.

#include <juce_gui_basics/juce_gui_basics.h>

#include <initializer_list>
#include <vector>

namespace AppCommands
{
enum Id : juce::CommandID
{
    savePreset = 0x2000,
    savePhoto = 0x2001,
    undo = 0x2002,
    redo = 0x2003,
    cut = 0x2004,
    copy = 0x2005,
    paste = 0x2006,
    pasteAndMatchStyle = 0x2007,
    deleteSelection = 0x2008,
    selectAll = 0x2009,
    preferences = 0x2010,
    getPhoto = 0x2011,
    print = 0x2012,
    copyRenderCommand = 0x2013,
    zoomIn = 0x3001,
    zoomOut = 0x3002,
    fitInWindow = 0x3003,
    actualSize = 0x3004,
    hidePanels = 0x3005,
    makerInfo = 0x4001,
    makerProducts = 0x4002,
    productTips = 0x4004,
    checkForUpdates = 0x4005,
    revealPresetFolder = 0x4006,
    productTipsSecond = 0x4007,
    about = 0x4008,
    defineDefaults = 0x4101,
    resetDefaults = 0x4102,
    openProject = 0x5000,
    saveProject = 0x5001,
    newProject = 0x5002,
    penGesture = 0x11101
};

struct Row
{
    juce::CommandID id;
    const char* name;
    const char* description;
    /** The default key: a key code and modifier flags; 0 for none. */
    int keyCode;
    int modifiers;
};

/** Every row, in the order of the table. */
const std::vector<Row>& table();
/** The row of id, or null. */
const Row* find(juce::CommandID id);

/** The ids the main component offers, in the order it lists them. */
juce::Array<juce::CommandID> allCommands();

/** Commands that act on the open picture and are off while none is open. */
bool needsDocument(juce::CommandID id);
/** Commands whose work this program does not have (clipboard, printing, the maker's web pages,
    preferences, the new-project wizard, tool selections and pen gestures): listed, never on. */
bool isUnavailable(juce::CommandID id);

/** "About " + the program's name. */
juce::String aboutName(const juce::String& productName);
/** The save row's description when a host editor started the program; empty when none did. */
juce::String applyDescription(int hostKind);

/** Fills info from the table, with the enable and tick states the caller knows. */
void describe(juce::CommandID id, juce::ApplicationCommandInfo& info, bool hasDocument, int hostKind, bool inHost,
              const juce::String& productName);

enum class Menu
{
    file,
    edit,
    window,
    help
};
juce::StringArray menuNames();
/** The items of one menu: command ids, 0 for a separator. Quit and Deselect All are JUCE's
    standard ids; a menu leaves out an id that no target registered. */
juce::Array<juce::CommandID> menuItems(Menu menu, bool hasNewProject, bool usesLayerStack, bool hasPresetFolder,
                                       bool hasTips, bool hasSecondTips);
} // namespace AppCommands
