// The main component's commands and its file paths: the command table as the menus and keys see
// it, saving the photo at full size with the extension rules, project files round trip with the
// unsaved-changes question, default settings, presets, and saves that fail.

#include "app/AppCommands.h"
#include "app/AppFileChooser.h"
#include "app/EffectControlPanel.h"
#include "document/ProjectFile.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageFileWriter.h"
#include "imaging/ImageLimits.h"
#include "presets/BuiltInPresets.h"
#include "presets/PresetFile.h"
#include "tools/SxPanTool.h"
#include "ui/SxAlertComponent.h"
#include "ui/SxSlider.h"
#include "wizards/PreferencesPanel.h"

#include "app/AppTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sys/resource.h>

namespace
{
class Commands : public AppComponentTest
{
protected:
    void SetUp() override
    {
        // The chooser reads its answer from this file, so it must be known before the component.
        answerFile = home.getChildFile("chooser-answer.txt");
        ::setenv("TORNVALE_CHOOSER_FILE", answerFile.getFullPathName().toRawUTF8(), 1);
        AppComponentTest::SetUp();
    }
    void TearDown() override
    {
        AppComponentTest::TearDown();
        ::unsetenv("TORNVALE_CHOOSER_FILE");
    }

    /** The next file dialog is answered with file. */
    void answerNextChooser(const juce::File& file) { ASSERT_TRUE(answerFile.replaceWithText(file.getFullPathName())); }

    /** A user's change: a new value, recorded in the history as the panel records it. */
    void change(float strokeLength)
    {
        effect().strokeLength = strokeLength;
        component->layerChanged();
    }
    SxAlertComponent* question()
    {
        auto* alert = SxAlertComponent::findIn(*component);
        return alert != nullptr && alert->getName() == "saveProjectAlert" ? alert : nullptr;
    }
    bool isDisabled(juce::CommandID id)
    {
        juce::ApplicationCommandInfo info(id);
        component->getCommandInfo(id, info);
        return (info.flags & juce::ApplicationCommandInfo::isDisabled) != 0;
    }

    juce::File answerFile;
};

/** Files written while this lives may grow to at most limit bytes; larger writes fail. */
struct FileSizeLimit
{
    explicit FileSizeLimit(rlim_t limit)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &saved);
        rlimit lower = saved;
        lower.rlim_cur = limit;
        setrlimit(RLIMIT_FSIZE, &lower);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &saved); }
    rlimit saved {};
};
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

TEST_F(Commands, SavePhotoWritesTheFullSizeRenderWithResolution)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    auto shownPreview = SxRef<SxImageRgbaBytes>::adopt(component->getDocument()->getImage()->clone());
    component->getSession().resolutionX = 300.0f;
    component->getSession().resolutionY = 150.0f;

    // Through the command and its dialog: a name without an extension becomes a PNG.
    answerNextChooser(home.getChildFile("art"));
    ASSERT_TRUE(component->getCommandManager().invokeDirectly(AppCommands::savePhoto, false));
    settle(300);
    const auto png = home.getChildFile("art.png");
    ASSERT_TRUE(png.existsAsFile());
    EXPECT_FALSE(home.getChildFile("art").exists());
    auto read = ImageFileReader::read(png);
    ASSERT_TRUE(read.ok()) << read.error;
    EXPECT_EQ(read.image->width, 600);
    EXPECT_EQ(read.image->height, 400);
    EXPECT_NEAR(read.resolutionX, 300.0, 0.5);
    EXPECT_NEAR(read.resolutionY, 150.0, 0.5);
    // The picture is this source's size rendered as the preview shows it (the preview is the
    // full picture here), and not the photo.
    auto* original = component->getSession().getOriginalImage();
    EXPECT_NE(std::memcmp(read.image->pixels, original->pixels, original->byteCount()), 0);
    ASSERT_EQ(read.image->byteCount(), shownPreview->byteCount());
    long long difference = 0;
    for (size_t i = 0; i < shownPreview->byteCount(); ++i)
        difference += std::abs((int) read.image->pixels[i] - (int) shownPreview->pixels[i]);
    EXPECT_LT((double) difference / (double) shownPreview->byteCount(), 6.0);

    // The stack is back at preview size afterwards and renders as before.
    settle(200);
    auto* again = component->getDocument()->getImage();
    EXPECT_EQ(again->width, shownPreview->width);

    // TIFF keeps four samples a pixel and the resolution.
    ASSERT_TRUE(component->getSession().saveImageTo(home.getChildFile("art.TIF")));
    auto tiff = ImageFileReader::read(home.getChildFile("art.TIF"));
    ASSERT_TRUE(tiff.ok()) << tiff.error;
    EXPECT_EQ(tiff.image->width, 600);
    EXPECT_NEAR(tiff.resolutionX, 300.0, 0.5);
    EXPECT_EQ(component->getUserSettings()->getIntValue("currentSaveCount_v2"), 2);
}

TEST_F(Commands, ProjectRoundTripRestoresEveryControlAndAsksNothing)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    auto& e = effect();
    e.strokeLength = 0.83f;
    e.preSharpen = 0.61f;
    e.contrast = 0.12f;
    e.strokeStyle = 1;
    component->layerChanged();
    component->updateControls();
    EXPECT_FALSE(component->getSession().isFreshProject());
    auto saved = effectSettings();

    const auto project = home.getChildFile("work").getChildFile("coffee");
    answerNextChooser(project);
    component->getSession().saveProject(false);
    settle(400);
    const auto file = project.withFileExtension("qhp");
    ASSERT_TRUE(file.existsAsFile());
    EXPECT_TRUE(component->getSession().isFreshProject());
    EXPECT_EQ(component->getSession().getProjectFile(), file);

    // Saved, so another picture opens without a question; after changes to that one, opening
    // the project asks, and "Don't Save" goes on with the open.
    ASSERT_TRUE(component->getSession().openImage(sample("chelsea.png")));
    EXPECT_EQ(question(), nullptr);
    settle();
    change(0.2f);
    EXPECT_FALSE(component->getSession().openProject(file));
    ASSERT_NE(question(), nullptr);
    question()->answer(1);
    settle(100);
    EXPECT_EQ(question(), nullptr);
    ASSERT_EQ(component->getSession().getProjectFile(), file);

    // Every saved value is back, in the effect and on the panel's controls.
    const auto restored = effectSettings();
    const auto& keys = saved.getAllProperties().getAllKeys();
    for (const auto& key : keys)
        EXPECT_EQ(restored.getValue(key, "missing"), saved.getValue(key, "")) << key;
    auto* panel = dynamic_cast<EffectControlPanel*>(component->findChildWithID("effectControlComponent"));
    ASSERT_NE(panel, nullptr);
    auto* stroke = dynamic_cast<SxLabelSlider*>(panel->findControl("strokeLengthSlider"));
    auto* detail = dynamic_cast<SxLabelSlider*>(panel->findControl("preSharpenSlider"));
    ASSERT_TRUE(stroke != nullptr && detail != nullptr);
    EXPECT_NEAR(stroke->getSlider()->getValue(), 0.83, 1e-5);
    EXPECT_NEAR(detail->getSlider()->getValue(), 0.61, 1e-5);
    // The picture is the project's own.
    auto coffee = ImageFileReader::read(sample("coffee.png"));
    ASSERT_EQ(component->getSession().getOriginalImage()->byteCount(), coffee.image->byteCount());
    EXPECT_EQ(std::memcmp(component->getSession().getOriginalImage()->pixels, coffee.image->pixels, coffee.image->byteCount()), 0);

    // Freshly opened, so opening again asks nothing; the first history record is not a change.
    EXPECT_TRUE(component->getSession().isFreshProject());
    EXPECT_TRUE(component->getSession().openProject(file));
    EXPECT_EQ(question(), nullptr);
    // One change makes the document unsaved, and the next open asks.
    change(0.5f);
    EXPECT_FALSE(component->getSession().isFreshProject());
    EXPECT_FALSE(component->getSession().openImage(sample("chelsea.png")));
    ASSERT_NE(question(), nullptr);
    EXPECT_EQ(question()->getTitle(), juce::String("Save Project?"));
    EXPECT_EQ(question()->getMessage(), juce::String("You have unsaved changes. Would you like to save?"));
    // Cancel keeps the document as it is.
    question()->answer(2);
    settle(100);
    EXPECT_EQ(component->getSession().getOriginalImage()->width, 600);
    EXPECT_NEAR(effect().strokeLength, 0.5f, 1e-6);
    settle(100);
}

TEST_F(Commands, SaveAnswerSavesTheProjectAndThenOpens)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    change(0.71f);
    EXPECT_FALSE(component->getSession().openImage(sample("chelsea.png")));
    ASSERT_NE(question(), nullptr);
    const auto project = home.getChildFile("saved.qhp");
    answerNextChooser(project);
    question()->answer(0);
    settle(600);
    ASSERT_TRUE(project.existsAsFile());
    EXPECT_EQ(component->getSession().getOriginalImage()->width, 451); // chelsea is open now
    EXPECT_TRUE(component->getUserSettings()->getValue("NeedsToLoadImagePath").isEmpty());
    auto read = ProjectFile::readFile(project);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->image->width, 600);
}

TEST_F(Commands, DefaultSettingsApplyToNextPicturesUntilReset)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    effect().strokeLength = 0.91f;
    effect().saturation = 0.07f;
    auto defaults = effectSettings();
    ASSERT_TRUE(component->getCommandManager().invokeDirectly(AppCommands::defineDefaults, false));
    const auto stored = component->getUserSettings()->getValue("startupLayerSettings");
    ASSERT_TRUE(stored.contains("strokeLength"));
    // Kept in the settings file, as the settings' XML.
    auto reread = juce::parseXML(component->getUserSettings()->getFile());
    ASSERT_NE(reread, nullptr);
    EXPECT_TRUE(reread->toString().contains("startupLayerSettings"));

    ASSERT_TRUE(component->getSession().openImage(sample("chelsea.png")));
    settle();
    const auto applied = effectSettings();
    for (const auto& key : defaults.getAllProperties().getAllKeys())
        EXPECT_EQ(applied.getValue(key, "missing"), defaults.getValue(key, "")) << key;

    ASSERT_TRUE(component->getCommandManager().invokeDirectly(AppCommands::resetDefaults, false));
    EXPECT_FALSE(component->getUserSettings()->containsKey("startupLayerSettings"));
    // New pictures start with random settings again: three opens cannot all repeat the defaults.
    int same = 0;
    for (int i = 0; i < 3; ++i)
    {
        ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
        settle();
        same += effectSettings().getAllProperties() == defaults.getAllProperties() ? 1 : 0;
    }
    EXPECT_LT(same, 3);
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

TEST_F(Commands, FailedSavesKeepTheOldFilesAndTheDocument)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    settle();
    const auto project = home.getChildFile("keep.qhp");
    const auto photo = home.getChildFile("keep.png");
    ASSERT_TRUE(component->getSession().saveProjectTo(project));
    ASSERT_TRUE(component->getSession().saveImageTo(photo));
    juce::MemoryBlock oldProject, oldPhoto;
    ASSERT_TRUE(project.loadFileAsData(oldProject));
    ASSERT_TRUE(photo.loadFileAsData(oldPhoto));
    change(0.95f);
    change(0.05f);

    {
        // Too little room for either file: both writes fail half-way.
        FileSizeLimit limit(4096);
        EXPECT_FALSE(component->getSession().saveProjectTo(project));
        EXPECT_FALSE(component->getSession().saveImageTo(photo));
    }
    juce::MemoryBlock nowProject, nowPhoto;
    ASSERT_TRUE(project.loadFileAsData(nowProject));
    ASSERT_TRUE(photo.loadFileAsData(nowPhoto));
    EXPECT_EQ(nowProject, oldProject);
    EXPECT_EQ(nowPhoto, oldPhoto);
    // The document is still open and still unsaved; no stray files are left beside the old ones.
    EXPECT_TRUE(component->hasDocument());
    EXPECT_FALSE(component->getSession().isFreshProject());
    EXPECT_EQ(home.getNumberOfChildFiles(juce::File::findFiles, "*.qhp*;*keep*"), 2);

    // A project that cannot be read leaves the picture open.
    const auto bad = home.getChildFile("bad.qhp");
    ASSERT_TRUE(bad.replaceWithText("VER3 not a project"));
    EXPECT_FALSE(component->getSession().loadProject(bad));
    EXPECT_EQ(component->getSession().getOriginalImage()->width, 600);
    EXPECT_NEAR(effect().strokeLength, 0.05f, 1e-6);
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
