// The main component's commands: random settings, the keys and the menus, all of which hand on to
// the rooms that do the work.
#include "app/GenericAppComponent.h"

#include "app/AppCommands.h"
#include "app/DocumentKeyRoute.h"
#include "app/MainTopBar.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetManager.h"


//==============================================================================
void GenericAppComponent::setActiveTool(SxTool* tool)
{
    setCurrentTool(tool);
}

void GenericAppComponent::randomizeAll()
{
    auto* effect = getEffectLayer();
    if (effect == nullptr || getPreviewImage() == nullptr)
        return;
    juce::Random random;
    const int count = effectGroups.empty() ? 0 : (int) effectGroups[(size_t) currentEffectGroup].effects.size();
    if (count > 0)
        random.nextInt(count); // the one style of this program is always the pick
    layerManager->randomize();
    updateControls();
    layerChanged();
    effect->invalidate(nullptr);
}

void GenericAppComponent::randomizeEffect()
{
    auto* effect = getEffectLayer();
    if (effect == nullptr || getPreviewImage() == nullptr)
        return;
    effect->randomizeSettings();
    updateControls();
    layerChanged();
    effect->invalidate(nullptr);
}

//==============================================================================
// Keys.

bool GenericAppComponent::keyPressed(const juce::KeyPress& key, juce::Component*)
{
    return keyPressed(key);
}

bool GenericAppComponent::keyPressed(const juce::KeyPress& key)
{
    // An open crop frame takes its Esc before any shortcut.
    if (cropController != nullptr && cropController->keyPressed(key))
        return true;
    // Shortcuts first, through the command manager's key mappings; a disabled command takes
    // its key without acting.
    if (commandManager.getKeyMappings()->keyPressed(key, this))
        return true;
    // The Render button's key, which no menu lists.
    const auto mods = key.getModifiers();
    if (mods.isCommandDown() && !mods.isShiftDown())
    {
        // With Ctrl held the text character is a control code, and X11 reports letters' key
        // codes in lower case: compare letters by their upper-case code.
        const int code = (int) juce::CharacterFunctions::toUpperCase((juce::juce_wchar) key.getKeyCode());
        if (code == 'R')
        {
            renderImmediate();
            return true;
        }
    }
    return keyRoute != nullptr && keyRoute->keyPressed(key);
}

bool GenericAppComponent::keyStateChanged(bool)
{
    if (keyRoute != nullptr)
        keyRoute->keyStateChanged();
    return false;
}

bool GenericAppComponent::keyStateChanged(bool isKeyDown, juce::Component*)
{
    return keyStateChanged(isKeyDown);
}

//==============================================================================
// Commands and menus.

juce::ApplicationCommandTarget* GenericAppComponent::getNextCommandTarget()
{
    return juce::JUCEApplication::getInstance();
}

void GenericAppComponent::getAllCommands(juce::Array<juce::CommandID>& commands)
{
    commands.addArray(AppCommands::allCommands());
}

void GenericAppComponent::getCommandInfo(juce::CommandID commandID, juce::ApplicationCommandInfo& result)
{
    const auto productName = juce::JUCEApplication::getInstance() != nullptr ? juce::JUCEApplication::getInstance()->getApplicationName()
                                                                             : getApplicationDataName();
    AppCommands::describe(commandID, result, hasDocument(), hostKind, isHostKind(1), productName);
    // Nothing starts while a job runs behind the activity panel.
    if (isJobRunning())
        result.setActive(false);
    if (commandID == AppCommands::hidePanels)
        result.setTicked(!effectPanelOpen && (presetManager == nullptr || !presetManager->isOpen()));
    if (commandID == AppCommands::penGesture)
        result.setTicked(isPenGestureOn());
}

bool GenericAppComponent::perform(const InvocationInfo& info)
{
    if (AppCommands::find(info.commandID) == nullptr)
        return false;
    juce::ApplicationCommandInfo state(info.commandID);
    getCommandInfo(info.commandID, state);
    if ((state.flags & juce::ApplicationCommandInfo::isDisabled) != 0)
        return true; // taken, but off: a menu item or key of a disabled command does nothing

    switch (info.commandID)
    {
        case AppCommands::resetDefaults: session->resetStartupSettings(); break;
        case AppCommands::defineDefaults: session->saveStartupSettings(); break;
        case AppCommands::openProject: session->openProjectDialog(); break;
        case AppCommands::saveProject: session->saveProject(true); break;
        case AppCommands::savePreset: savePresetDialog(); break;
        case AppCommands::preferences: showPreferences(); break;
        case AppCommands::savePhoto: saveImage(); break;
        case AppCommands::copyRenderCommand: session->copyRenderCommand(); break;
        case AppCommands::undo: undoStep(); break;
        case AppCommands::redo: redoStep(); break;
        case AppCommands::getPhoto: openImageDialog(); break;
        case AppCommands::zoomIn: document->zoomIn(); break;
        case AppCommands::zoomOut: document->zoomOut(); break;
        case AppCommands::fitInWindow: document->fitToWindow(true); break;
        case AppCommands::actualSize: document->actualSize(); break;
        case AppCommands::hidePanels:
        {
            // One key for both panels: any panel up means hide them all.
            const bool show = !effectPanelOpen && (presetManager == nullptr || !presetManager->isOpen());
            setEffectPanelOpen(show, true);
            if (presetManager != nullptr)
                presetManager->setOpen(show, true);
            break;
        }
        case AppCommands::penGesture: togglePenGesture(); break;
        case AppCommands::about: showAboutAlert(); break;
        case AppCommands::revealPresetFolder:
        {
            const auto folder = BuiltInPresets::getPresetFolder();
            folder.createDirectory();
            folder.revealToUser();
            break;
        }
        default: break;
    }
    return true;
}

juce::StringArray GenericAppComponent::getMenuBarNames()
{
    return AppCommands::menuNames();
}

juce::PopupMenu GenericAppComponent::getMenuForIndex(int topLevelMenuIndex, const juce::String&)
{
    juce::PopupMenu menu;
    if (topLevelMenuIndex < 0 || topLevelMenuIndex > 3)
        return menu;
    const auto items = AppCommands::menuItems((AppCommands::Menu) topLevelMenuIndex, hasNewProject(), usesLayerStack(),
                                              hasPresetFolder(), hasProductTips(), false);
    for (auto id : items)
    {
        if (id == 0)
            menu.addSeparator();
        else
            menu.addCommandItem(&commandManager, id); // ids no target has are left out
    }
    return menu;
}

void GenericAppComponent::commandStatusChanged()
{
    // The manager tells the menu bar asynchronously; the key mappings ask for the state afresh
    // at each key.
    if (juce::MessageManager::getInstanceWithoutCreating() != nullptr
        && juce::MessageManager::getInstance()->isThisTheMessageThread())
        commandManager.commandStatusChanged();
}

