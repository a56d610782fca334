// The main component's commands: the command table as the menus and keys see it, the file names
// the dialogs' answers become, the preferences, presets, and the pen gesture setting.

#include "app/AppCommands.h"
#include "app/AppFileChooser.h"
#include "imaging/ImageFileWriter.h"
#include "imaging/ImageLimits.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetFile.h"
#include "tools/SxPanTool.h"
#include "wizards/PreferencesPanel.h"

#include "app/AppTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
using Commands = AnsweredAppTest;
} // namespace

TEST_F(Commands, EveryRowListedOnceAndEachKeyReachesItsCommand)
{
    juce::Array<juce::CommandID> ids;
    component->getAllCommands(ids);
    EXPECT_EQ(ids.size(), (int) AppCommands::table().size());
    for (const auto& row : AppCommands::table())
        EXPECT_EQ(std::count(ids.begin(), ids.end(), row.id), 1) << row.name;

    // The key reaches exactly this command through the manager's mappings.
    const int ctrl = juce::ModifierKeys::commandModifier, shift = juce::ModifierKeys::shiftModifier;
    const std::pair<juce::CommandID, juce::KeyPress> keys[] = {
        { 0x2000, { 's', ctrl | shift, 0 } }, { 0x2001, { 's', ctrl, 0 } }, { 0x2002, { 'z', ctrl, 0 } },
        { 0x2003, { 'z', ctrl | shift, 0 } }, { 0x2004, { 'x', ctrl, 0 } }, { 0x2005, { 'c', ctrl, 0 } },
        { 0x2006, { 'v', ctrl, 0 } },         { 0x2009, { 'a', ctrl, 0 } }, { 0x2011, { 'o', ctrl, 0 } },
        { 0x2012, { 'p', ctrl, 0 } },         { 0x3001, { '=', ctrl, 0 } }, { 0x3002, { '-', ctrl, 0 } },
        { 0x3003, { '0', ctrl, 0 } },         { 0x3004, { '1', ctrl, 0 } }, { 0x3005, juce::KeyPress(juce::KeyPress::tabKey) },
        { 0x5002, { 'n', ctrl, 0 } },
    };
    auto* mappings = component->getCommandManager().getKeyMappings();
    for (const auto& [id, key] : keys)
        EXPECT_EQ(mappings->findCommandForKeyPress(key), id) << key.getTextDescription();

    // A host editor renames the save row, keeping its key.
    component->hostKind = 4;
    juce::ApplicationCommandInfo info(AppCommands::savePhoto);
    component->getCommandInfo(AppCommands::savePhoto, info);
    EXPECT_EQ(info.shortName, juce::String("Apply to Photo..."));
    EXPECT_EQ(mappings->findCommandForKeyPress({ 's', ctrl, 0 }), AppCommands::savePhoto);
    component->hostKind = 0;
}

TEST_F(Commands, DisabledWithoutAPictureAndMenusInOrder)
{
    juce::Array<juce::CommandID> ids;
    component->getAllCommands(ids);
    const juce::Array<juce::CommandID> needPicture { 0x2000, 0x2001, 0x2002, 0x2003, 0x3001, 0x3002, 0x3003, 0x3004, 0x5001, 0x4101, 0x2013 };
    const juce::Array<juce::CommandID> enabledWithout { 0x2011, 0x5000, 0x3005, 0x4006, 0x4008, 0x4102, 0x2010 };
    for (auto id : needPicture)
        EXPECT_TRUE(isDisabled(id)) << id;
    for (auto id : enabledWithout)
        EXPECT_FALSE(isDisabled(id)) << id;
    // Keys of disabled commands do nothing: Ctrl+S with no picture opens no dialog, and the key
    // is left for others.
    const juce::KeyPress ctrlS('s', juce::ModifierKeys::commandModifier, 0);
    const juce::KeyPress ctrlShiftS('s', juce::ModifierKeys::commandModifier | juce::ModifierKeys::shiftModifier, 0);
    answerNextChooser(home.getChildFile("never.png"));
    EXPECT_FALSE(component->keyPressed(ctrlS));
    settle();
    EXPECT_TRUE(answerFile.existsAsFile()) << "a disabled Save Photo... consumed the dialog's answer";

    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    for (auto id : ids)
        EXPECT_EQ(isDisabled(id), AppCommands::isUnavailable(id)) << id;

    // With a picture, Ctrl+Shift+S asks for a preset name and Ctrl+S for the photo's file.
    EXPECT_TRUE(component->keyPressed(ctrlShiftS));
    auto* namePanel = component->findChildWithID("presetNamePanel");
    if (namePanel == nullptr)
        for (auto* child : component->getChildren())
            if (child->getName() == "presetNamePanel")
                namePanel = child;
    ASSERT_NE(namePanel, nullptr);
    EXPECT_TRUE(answerFile.existsAsFile());
    namePanel->keyPressed(juce::KeyPress(juce::KeyPress::escapeKey));
    settle();
    EXPECT_TRUE(component->keyPressed(ctrlS));
    settle(300);
    EXPECT_TRUE(home.getChildFile("never.png").existsAsFile()) << "Ctrl+S did not save to the dialog's answer";

    // Hide Panels is ticked while the side panel is hidden.
    component->getCommandManager().invokeDirectly(AppCommands::hidePanels, false);
    juce::ApplicationCommandInfo info(AppCommands::hidePanels);
    component->getCommandInfo(AppCommands::hidePanels, info);
    EXPECT_FALSE(component->isEffectPanelOpen());
    EXPECT_TRUE(info.flags & juce::ApplicationCommandInfo::isTicked);

    EXPECT_EQ(component->getMenuBarNames(), juce::StringArray({ "File", "Edit", "Window", "Help" }));
    // The menus: commands with separators between the groups, as the table orders them (Quit
    // belongs to the application, which a test has not).
    auto itemsOf = [this](int index) {
        juce::StringArray items;
        const auto menu = component->getMenuForIndex(index, {});
        for (juce::PopupMenu::MenuItemIterator it(menu); it.next();)
            items.add(it.getItem().isSeparator ? "-" : juce::String::toHexString(it.getItem().itemID));
        return items.joinIntoString(" ");
    };
    EXPECT_EQ(itemsOf(0), juce::String("2011 2001 - 5000 5001 - 2000 - 2010 -"));
    EXPECT_EQ(itemsOf(1), juce::String("2002 2003 - 2004 2005 2006 - 2013"));
    EXPECT_EQ(itemsOf(2), juce::String("3001 3002 3003 3004 - 3005"));
    EXPECT_EQ(itemsOf(3), juce::String("4008 - 4006 - 4101 4102 - 4001 4002 4005"));
}

TEST(PhotoDestination, KnownExtensionsStayOthersGetPng)
{
    const juce::File folder("/tmp/photos");
    for (const char* kept : { "a.png", "a.PNG", "a.jpg", "a.JPEG", "a.tif", "a.tiff", "my.photo.Tif" })
        EXPECT_EQ(AppFileChooser::photoDestination(folder.getChildFile(kept)), folder.getChildFile(kept)) << kept;
    EXPECT_EQ(AppFileChooser::photoDestination(folder.getChildFile("a")), folder.getChildFile("a.png"));
    EXPECT_EQ(AppFileChooser::photoDestination(folder.getChildFile("a.gif")), folder.getChildFile("a.gif.png"));
    EXPECT_EQ(AppFileChooser::photoDestination(folder.getChildFile("v1.2")), folder.getChildFile("v1.2.png"));
    EXPECT_EQ(AppFileChooser::projectDestination(folder.getChildFile("p"), "qhp"), folder.getChildFile("p.qhp"));
    EXPECT_EQ(AppFileChooser::projectDestination(folder.getChildFile("p.qhp"), "qhp"), folder.getChildFile("p.qhp"));
    EXPECT_EQ(AppFileChooser::presetFileFor(folder, "  Ink / Wash  "), folder.getChildFile("Ink  Wash.pre"));
    EXPECT_EQ(AppFileChooser::presetFileFor(folder, " /:* "), juce::File());
}

TEST_F(Commands, PreferencesSetThePictureLimitAndRebuildThePresets)
{
    // A 1.2 megapixel photo: refused under a limit of 1, opened once the limit is 2.
    const auto big = home.getChildFile("big.png");
    SxImageRgbaBytes pixels(1200, 1000);
    ASSERT_TRUE(ImageFileWriter::write(pixels, big, ImageFileType::png, {}).wasOk());
    auto setLimit = [this](const juce::String& text) {
        ASSERT_TRUE(component->getCommandManager().invokeDirectly(AppCommands::preferences, false));
        auto* panel = PreferencesPanel::findIn(*component);
        ASSERT_NE(panel, nullptr);
        // The editor tells its listeners of a change asynchronously.
        panel->getMegapixelEditor().setText(text, true);
        settle();
        EXPECT_FALSE(panel->getOkButton().isEnabled()) << "accepted " << text;
        panel->getMegapixelEditor().setText("0", true);
        settle();
        EXPECT_FALSE(panel->getOkButton().isEnabled());
        panel->getMegapixelEditor().setText(text.retainCharacters("0123456789"), true);
        settle();
        ASSERT_TRUE(panel->getOkButton().isEnabled());
        panel->apply();
        settle();
        EXPECT_EQ(PreferencesPanel::findIn(*component), nullptr);
    };
    setLimit("1..");
    EXPECT_EQ(ImageLimits::maximumMegapixels(), 1.0);
    EXPECT_FALSE(component->getSession().openImage(big));
    settle();
    setLimit("2..");
    EXPECT_EQ(component->getUserSettings()->getDoubleValue("maxMegapixels"), 2.0);
    EXPECT_TRUE(component->getSession().openImage(big));
    settle();

    // A deleted built-in comes back.
    const auto presets = BuiltInPresets::getPresetFolder().findChildFiles(juce::File::findFiles, false, "*.pre");
    ASSERT_FALSE(presets.isEmpty());
    ASSERT_TRUE(presets[0].deleteFile());
    ASSERT_TRUE(component->getCommandManager().invokeDirectly(AppCommands::preferences, false));
    auto* panel = PreferencesPanel::findIn(*component);
    ASSERT_NE(panel, nullptr);
    panel->getRebuildButton().triggerClick();
    settle();
    EXPECT_TRUE(presets[0].existsAsFile());
    panel->cancel();
    settle();
    ImageLimits::setMaximumMegapixels(ImageLimits::defaultMegapixels);
}

TEST_F(Commands, PresetSavedUnderTheTypedName)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    effect().contrast = 0.44f;
    ASSERT_TRUE(component->savePresetNamed("Night Ink"));
    const auto file = BuiltInPresets::getPresetFolder().getChildFile("Night Ink.pre");
    ASSERT_TRUE(file.existsAsFile());
    const auto contents = PresetFile::readFile(file);
    EXPECT_EQ(contents.form, PresetFile::Form::version3);
    EXPECT_EQ(contents.settings.getValue("contrast", ""), effectSettings().getValue("contrast", "x"));
    EXPECT_GT(contents.jpegLength, 0);
}

TEST_F(Commands, PenGestureTicksFromItsSettingAndReachesTheToolMadeCurrent)
{
    const auto ticked = [this] {
        juce::ApplicationCommandInfo info(AppCommands::penGesture);
        component->getCommandInfo(AppCommands::penGesture, info);
        return (info.flags & juce::ApplicationCommandInfo::isTicked) != 0;
    };
    EXPECT_FALSE(ticked());
    EXPECT_FALSE(isDisabled(AppCommands::penGesture));
    component->getCommandManager().invokeDirectly(AppCommands::penGesture, false);
    EXPECT_TRUE(ticked());
    EXPECT_TRUE(component->getUserSettings()->getBoolValue("penGesture", false));

    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    SxPanTool tool;
    tool.setOwner(component.get());
    component->setCurrentTool(&tool);
    EXPECT_TRUE(tool.isPenGestureOn());
    component->getCommandManager().invokeDirectly(AppCommands::penGesture, false);
    EXPECT_FALSE(tool.isPenGestureOn());
    EXPECT_FALSE(ticked());
    component->setCurrentTool(nullptr);
}
