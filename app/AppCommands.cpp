#include "app/AppCommands.h"

#include "app/ParentProcess.h"

namespace AppCommands
{
namespace
{
constexpr int ctrl = juce::ModifierKeys::commandModifier;
constexpr int shift = juce::ModifierKeys::shiftModifier;
// The edit rows share one description; the table keeps them as the menus have always shown them.
constexpr const char* applyBack = "This will Apply your last change back";
} // namespace

const std::vector<Row>& table()
{
    static const std::vector<Row> rows {
        { savePreset, "Save Preset", "Saves your current effect into a preset", 'S', ctrl | shift },
        { savePhoto, "Save Photo...", "Saves your current photo", 'S', ctrl },
        { undo, "Undo", "This will revert your last change", 'Z', ctrl },
        { redo, "Redo", applyBack, 'Z', ctrl | shift },
        { cut, "Cut", applyBack, 'X', ctrl },
        { copy, "Copy", applyBack, 'C', ctrl },
        { paste, "Paste", applyBack, 'V', ctrl },
        { pasteAndMatchStyle, "Past and Match Style", applyBack, 'V', ctrl | shift | juce::ModifierKeys::altModifier },
        { deleteSelection, "Delete", applyBack, 0, 0 },
        { selectAll, "Select All", "Selects All", 'A', ctrl },
        { preferences, "Preferences", "Preferences", 0, 0 },
        { getPhoto, "Get Photo...", "Saves your current effect into a preset", 'O', ctrl },
        { print, "Print", "Print", 'P', ctrl },
        { copyRenderCommand, "Copy Render Command", "Copies the tornvale-render command line that renders this look at full size", 0, 0 },
        { zoomIn, "Zoom In", applyBack, '=', ctrl },
        { zoomOut, "Zoom Out", applyBack, '-', ctrl },
        { fitInWindow, "Fit In Window", applyBack, '0', ctrl },
        { actualSize, "Actual Size", applyBack, '1', ctrl },
        { hidePanels, "Hide Panels", applyBack, juce::KeyPress::tabKey, 0 },
        { makerInfo, "Ombrik Info", "", 0, 0 },
        { makerProducts, "Ombrik Products", "", 0, 0 },
        { productTips, "Product Tips", "Product Tips", 0, 0 },
        { checkForUpdates, "Check for Updates", "", 0, 0 },
        { revealPresetFolder, "Reveal Preset Folder", "", 0, 0 },
        { productTipsSecond, "Product Tips", "", 0, 0 },
        { about, "About ", "", 0, 0 },
        { defineDefaults, "Define Current Settings as Defaults", "", 0, 0 },
        { resetDefaults, "Reset Default Settings", "", 0, 0 },
        { openProject, "Open Project", "Opens a Project File", 0, 0 },
        { saveProject, "Save Project", "Saves your current effect into a project", 0, 0 },
        { newProject, "New Project", "Start a new workspace", 'N', ctrl },
        { penGesture, "Pen Gesture", "", 0, 0 },
    };
    return rows;
}

const Row* find(juce::CommandID id)
{
    for (const auto& row : table())
        if (row.id == id)
            return &row;
    return nullptr;
}

juce::Array<juce::CommandID> allCommands()
{
    // Save Project and New Project follow Open Project, and Print the edit family, so that every
    // row of the table is registered and its shortcut mapped.
    return { getPhoto,
             openProject,
             saveProject,
             newProject,
             savePreset,
             savePhoto,
             preferences,
             undo,
             redo,
             cut,
             copy,
             paste,
             pasteAndMatchStyle,
             deleteSelection,
             selectAll,
             print,
             copyRenderCommand,
             zoomIn,
             zoomOut,
             fitInWindow,
             actualSize,
             hidePanels,
             about,
             makerInfo,
             makerProducts,
             productTips,
             checkForUpdates,
             revealPresetFolder,
             productTipsSecond,
             defineDefaults,
             resetDefaults,
             penGesture };
}

bool needsDocument(juce::CommandID id)
{
    switch (id)
    {
        case savePreset:
        case savePhoto:
        case undo:
        case redo:
        case zoomIn:
        case zoomOut:
        case fitInWindow:
        case actualSize:
        case saveProject:
        case defineDefaults:
        case copyRenderCommand:
            return true;
        default:
            return false;
    }
}

bool isUnavailable(juce::CommandID id)
{
    switch (id)
    {
        case cut:
        case copy:
        case paste:
        case pasteAndMatchStyle:
        case deleteSelection:
        case selectAll:
        case print:
        case makerInfo:
        case makerProducts:
        case productTips:
        case checkForUpdates:
        case productTipsSecond:
        case newProject:
            return true;
        default:
            return false;
    }
}

juce::String aboutName(const juce::String& productName)
{
    return "About " + productName;
}

juce::String applyDescription(int hostKind)
{
    switch (hostKind)
    {
        case ParentProcess::hostEditorLr:
            return "Save your changes and go back to Lightroom.";
        case 3:
            return "Save your changes and go back to Aperture.";
        case ParentProcess::hostEditorPhotos:
            return "Save your changes and go back to Photos.";
        default:
            return "Save your changes and go back to Host.";
    }
}

void describe(juce::CommandID id, juce::ApplicationCommandInfo& info, bool hasDocument, int hostKind, bool inHost,
              const juce::String& productName)
{
    const auto* row = find(id);
    if (row == nullptr)
        return;
    juce::String name = row->name, description = row->description;
    if (id == about)
        name = aboutName(productName);
    if (id == savePhoto && inHost)
    {
        name = "Apply to Photo...";
        description = applyDescription(hostKind);
    }
    info.setInfo(name, description, "General", 0);
    info.setActive(!isUnavailable(id) && (hasDocument || !needsDocument(id)));
    if (row->keyCode != 0)
        info.addDefaultKeypress(row->keyCode, juce::ModifierKeys(row->modifiers));
}

juce::StringArray menuNames()
{
    return { "File", "Edit", "Window", "Help" };
}

juce::Array<juce::CommandID> menuItems(Menu menu, bool hasNewProject, bool usesLayerStack, bool hasPresetFolder,
                                       bool hasTips, bool hasSecondTips)
{
    juce::Array<juce::CommandID> items;
    auto add = [&items](std::initializer_list<juce::CommandID> ids) {
        for (auto id : ids)
            items.add(id);
    };
    switch (menu)
    {
        case Menu::file:
            add({ getPhoto, savePhoto, 0, openProject, saveProject });
            if (hasNewProject)
                items.add(newProject);
            add({ 0, savePreset, 0, preferences, 0, juce::StandardApplicationCommandIDs::quit });
            break;
        case Menu::edit:
            add({ undo, redo, 0, cut, copy, paste });
            if (usesLayerStack)
                items.add(selectAll);
            items.add(juce::StandardApplicationCommandIDs::deselectAll);
            add({ 0, copyRenderCommand });
            break;
        case Menu::window:
            add({ zoomIn, zoomOut, fitInWindow, actualSize, 0, hidePanels });
            break;
        case Menu::help:
            add({ about, 0 });
            if (hasPresetFolder)
                items.add(revealPresetFolder);
            add({ 0, defineDefaults, resetDefaults, 0, makerInfo });
            if (hasTips)
                items.add(productTips);
            if (hasSecondTips)
                items.add(productTipsSecond);
            add({ makerProducts, checkForUpdates });
            break;
    }
    return items;
}
} // namespace AppCommands
