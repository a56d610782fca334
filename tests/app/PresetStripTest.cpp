// The preset strip inside the main component: the built-ins installed and listed at start, a
// click applied once through the history (two quick clicks apply only the last, a click during a
// render waits for it), saving with the replace question, and the preview renderer with its
// switch on, stopped before the document changes.

#include "app/PresetActions.h"
#include "presets/BuiltInPresets.h"
#include "presets/EffectPresetValues.h"
#include "presets/PresetFile.h"
#include "presets/PresetImageListButton.h"
#include "presets/PresetManager.h"
#include "presets/RenderPresetImagePreviewsThread.h"
#include "ui/SxAlertComponent.h"

#include "app/AppTestSupport.h"

#include <gtest/gtest.h>

namespace
{
class PresetStrip : public AppComponentTest
{
protected:
    void openPhoto()
    {
        ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
        settle();
    }
    PresetActions& actions() { return *component->getPresetActions(); }
    PresetImageList& list() { return component->getPresetManager()->getList(); }
    juce::File preset(const char* name) { return BuiltInPresets::getPresetFolder().getChildFile(juce::String(name) + ".pre"); }
    EffectPresetValues shown() { return EffectPresetValues::readFrom(effectSettings()); }
    static EffectPresetValues valuesOf(const juce::File& file) { return EffectPresetValues::readFrom(PresetFile::readFile(file).settings); }
    /** Runs the message loop past the click's delay, then until the render has ended. */
    void letClicksApply() { settle(PresetActions::applyDelayMs + 150); }
};
} // namespace

TEST_F(PresetStrip, StartInstallsTheBuiltInsAndListsThemWithPictures)
{
    EXPECT_EQ(BuiltInPresets::getPresetFolder().findChildFiles(juce::File::findFiles, false, "*.pre").size(), 27);
    ASSERT_EQ(list().getButtons().size(), 27u);
    for (auto* button : list().getButtons())
    {
        EXPECT_TRUE(button->getPicture().isValid()) << button->presetPath;
        EXPECT_EQ(button->label->getText(), juce::File(button->presetPath).getFileNameWithoutExtension());
    }
}

TEST_F(PresetStrip, TwoQuickClicksApplyOnlyTheLastAsOneStep)
{
    openPhoto();
    const auto before = shown();
    actions().presetClicked(preset("05 Colorize Medium").getFullPathName());
    actions().presetClicked(preset("19 Dark Detail").getFullPathName());
    letClicksApply();
    EXPECT_EQ(shown(), valuesOf(preset("19 Dark Detail")));
    EXPECT_EQ(effect().strokeStyle, 1); // "Dark"

    component->undoStep();
    EXPECT_EQ(shown(), before) << "one step back is the state before both clicks";

    // A click while a preview renders waits for the render and then applies, as one step.
    component->layerNeedsRender(false, nullptr);
    ASSERT_NE(currentRenderThread, nullptr);
    actions().presetClicked(preset("13 Long Lines").getFullPathName());
    EXPECT_EQ(shown(), before);
    letClicksApply();
    settle(200);
    EXPECT_EQ(shown(), valuesOf(preset("13 Long Lines")));
    component->undoStep();
    EXPECT_EQ(shown(), before);
}

TEST_F(PresetStrip, SavingAnExistingNameAsksAndReplacesIt)
{
    openPhoto();
    ASSERT_TRUE(actions().saveNamed("Mine"));
    const auto file = BuiltInPresets::getPresetFolder().getChildFile("Mine.pre");
    juce::MemoryBlock first;
    ASSERT_TRUE(file.loadFileAsData(first));
    // The strip shows it after its short delay, with the preview the file carries.
    juce::MessageManager::getInstance()->runDispatchLoopUntil(600);
    auto buttons = list().getButtons();
    auto mine = std::find_if(buttons.begin(), buttons.end(), [&](auto* b) { return b->presetPath == file.getFullPathName(); });
    ASSERT_NE(mine, buttons.end());
    EXPECT_EQ((*mine)->getPicture().getWidth(), PresetFile::previewSide);

    effect().contrast = 0.91f;
    EXPECT_FALSE(actions().saveNamed("Mine"));
    auto* question = SxAlertComponent::findIn(*component);
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->getTitle(), "Replace Preset?");
    juce::MemoryBlock unchanged;
    ASSERT_TRUE(file.loadFileAsData(unchanged));
    EXPECT_EQ(unchanged, first) << "nothing is written before the answer";
    question->answer(0);
    EXPECT_FLOAT_EQ(valuesOf(file).contrast, 0.91f);
    EXPECT_EQ(BuiltInPresets::getPresetFolder().findChildFiles(juce::File::findFiles, false, "Mine*").size(), 1);

    // A multi-layer preset of the name asks as well.
    ASSERT_TRUE(BuiltInPresets::getPresetFolder().getChildFile("Layers.prel").replaceWithText("x"));
    EXPECT_FALSE(actions().saveNamed("Layers"));
    ASSERT_NE(SxAlertComponent::findIn(*component), nullptr);
    SxAlertComponent::findIn(*component)->answer(1);
    EXPECT_FALSE(BuiltInPresets::getPresetFolder().getChildFile("Layers.pre").exists());
}

TEST_F(PresetStrip, PreviewThreadRendersThumbnailsAndStopsBeforeTheDocumentChanges)
{
    openPhoto();
    actions().rendersPreviews = true;
    actions().refreshPreviews();
    const auto end = juce::Time::getMillisecondCounter() + 120000;
    while ((actions().getPreviewThread() == nullptr || actions().getPreviewThread()->getRenderedCount() < 2)
           && juce::Time::getMillisecondCounter() < end)
        juce::MessageManager::getInstance()->runDispatchLoopUntil(20);
    auto* thread = actions().getPreviewThread();
    ASSERT_NE(thread, nullptr);
    ASSERT_GE(thread->getRenderedCount(), 2);
    EXPECT_LE(juce::jmax(thread->getPicture()->width, thread->getPicture()->height), RenderPresetImagePreviewsThread::pictureSide);

    // The pictures reach the strip through the message loop and stand in the first thumbnails.
    juce::MessageManager::getInstance()->runDispatchLoopUntil(50);
    ASSERT_GE(list().getRenderedPaths().size(), 2);
    const auto* first = list().getButtons().front();
    EXPECT_TRUE(list().getRenderedPaths().contains(first->presetPath));
    EXPECT_EQ(first->getPicture().getWidth(), thread->getPicture()->width);

    // A new picture stops it before anything of the old document goes.
    ASSERT_TRUE(component->getSession().openImage(sample("chelsea.png")));
    EXPECT_EQ(actions().getPreviewThread(), nullptr);
    settle();
}
