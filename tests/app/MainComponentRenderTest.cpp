// The main component's live preview: one render at a time, the newest state always ending on the
// screen, manual rendering, the original button, the history of changes and the side panel's
// bindings. Pictures are the small sample photo, so each render takes about a second here.

#include "app/EffectControlPanel.h"
#include "ui/SxSegmentController.h"
#include "ui/SxSlider.h"

#include "app/AppTestSupport.h"

namespace
{
class LivePreview : public AppComponentTest
{
protected:
    /** A copy of the picture the view shows, so later renders cannot change it under the test. */
    SxRef<SxImageRgbaBytes> shown() { return SxRef<SxImageRgbaBytes>::adopt(component->getDocument()->getImage()->clone()); }
};
} // namespace

TEST_F(LivePreview, OpenRendersOnceAndChangesDuringARenderEndOnScreen)
{
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    ASSERT_NE(currentRenderThread, nullptr) << "opening a picture starts a preview render";
    auto* running = currentRenderThread;

    // Changes while the render runs start nothing: the lock holds, and the effect keeps them for
    // the next render, which starts on a thread when this one ends. Of three states set meanwhile
    // only the last renders.
    for (const float length : { 0.7f, 0.8f, 0.9f })
    {
        effect().strokeLength = length;
        effect().invalidate(nullptr);
        EXPECT_EQ(currentRenderThread, running);
    }
    EXPECT_TRUE(component->isRendering());

    ASSERT_TRUE(waitForRenders());
    EXPECT_FALSE(component->isRendering());
    EXPECT_FALSE(component->getLayerManager()->needsRender());
    EXPECT_GE(component->getRenderCount(), 1);
    EXPECT_LE(component->getRenderCount(), 2);
    auto onScreen = shown();
    EXPECT_FALSE(samePixels(onScreen.get(), component->getPreviewImage())) << "the view shows line art, not the photo";

    // The screen holds the render of the last state: rendering that state afresh gives it again.
    // The Render button renders on a thread too, and returns at once.
    component->getLayerManager()->markAllDirty();
    component->renderImmediate();
    EXPECT_NE(currentRenderThread, nullptr);
    ASSERT_TRUE(waitForRenders());
    EXPECT_TRUE(samePixels(onScreen.get(), component->getDocument()->getImage()));
}

TEST_F(LivePreview, ManualModeWaitsForTheRenderButtonAndOriginalShowsThePhoto)
{
    component->setManualRedraw(true);
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    EXPECT_EQ(currentRenderThread, nullptr);
    EXPECT_EQ(component->getDocument()->getImage(), component->getPreviewImage());

    effect().smoothing = 0.8f;
    effect().invalidate(nullptr);
    EXPECT_EQ(currentRenderThread, nullptr);
    EXPECT_EQ(component->getRenderCount(), 0);

    component->renderImmediate();
    ASSERT_TRUE(waitForRenders());
    EXPECT_EQ(component->getRenderCount(), 1);
    auto* art = component->getDocument()->getImage();
    EXPECT_NE(art, component->getPreviewImage());

    component->showOriginal(true);
    EXPECT_TRUE(component->isShowingOriginal());
    EXPECT_EQ(component->getDocument()->getImage(), component->getPreviewImage());
    component->showOriginal(false);
    EXPECT_EQ(component->getDocument()->getImage(), art);

    // The setting outlives the program.
    EXPECT_TRUE(component->getUserSettings()->getBoolValue("manualRedraw"));
}

TEST_F(LivePreview, HistoryKeepsFiveStatesAndFreshnessFollowsTheSecondRecord)
{
    component->setManualRedraw(true);
    ASSERT_TRUE(component->getSession().openImage(sample("chelsea.png")));
    auto& settings = *component->getUserSettings();
    // The open records the start state without making the document dirty.
    EXPECT_EQ(settings.getIntValue("freshProjectUndoCount"), 1);
    EXPECT_TRUE(settings.getBoolValue("freshProject"));
    EXPECT_FALSE(component->canUndo());

    for (int i = 1; i <= 6; ++i)
    {
        effect().contrast = (float) i / 10.0f;
        component->layerChanged();
    }
    EXPECT_FALSE(settings.getBoolValue("freshProject"));

    // Six changes after the start: only the last five states can be reached.
    int steps = 0;
    while (component->canUndo())
    {
        component->undoStep();
        ++steps;
    }
    EXPECT_EQ(steps, 4);
    EXPECT_FLOAT_EQ(effect().contrast, 0.2f);

    component->redoStep();
    EXPECT_FLOAT_EQ(effect().contrast, 0.3f);
    // A change after an undo drops the redo tail.
    effect().contrast = 0.05f;
    component->layerChanged();
    EXPECT_FALSE(component->canRedo());
    component->undoStep();
    EXPECT_FLOAT_EQ(effect().contrast, 0.3f);
}

TEST_F(LivePreview, PanelControlsWriteTheEffectAndTaperStyleRelabels)
{
    component->setManualRedraw(true);
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    auto* panel = dynamic_cast<EffectControlPanel*>(component->findChildWithID("effectControlComponent"));
    ASSERT_NE(panel, nullptr);
    ASSERT_EQ(panel->getEffect(), &effect());

    auto* detail = dynamic_cast<SxLabelSlider*>(panel->findControl("preSharpenSlider"));
    auto* lighten = dynamic_cast<SxLabelSlider*>(panel->findControl("lightenSlider"));
    auto* brighten = dynamic_cast<SxLabelSlider*>(panel->findControl("brightenLightSlider"));
    auto* style = dynamic_cast<SxLabelSegmentController*>(panel->findControl("strokeStyleSegment"));
    ASSERT_TRUE(detail && lighten && brighten && style);

    // "Lighten" sets the field sharpen; a user's move writes it and records one history step.
    const int undoBefore = component->getUserSettings()->getIntValue("freshProjectUndoCount");
    lighten->getSlider()->setValue(0.7, juce::sendNotificationSync);
    EXPECT_NEAR(effect().sharpen, 0.7f, 1e-6);
    EXPECT_EQ(component->getUserSettings()->getIntValue("freshProjectUndoCount"), undoBefore + 1);
    // Outside the random range the photo opened with, so the move is always a change.
    detail->getSlider()->setValue(0.5, juce::sendNotificationSync);
    EXPECT_NEAR(effect().preSharpen, 0.5f, 1e-6);

    EXPECT_EQ(lighten->getLabelText(), "Lighten");
    EXPECT_EQ(brighten->getLabelText(), "Brighten");
    style->getSegmentController().getButton(1)->triggerClick();
    juce::MessageManager::getInstance()->runDispatchLoopUntil(50);
    EXPECT_EQ(effect().strokeStyle, 1);
    EXPECT_EQ(lighten->getLabelText(), "Blacken");
    EXPECT_EQ(brighten->getLabelText(), "Darken");

    // An undo moves the controls back without recording itself.
    const int count = component->getUserSettings()->getIntValue("freshProjectUndoCount");
    component->undoStep();
    EXPECT_EQ(effect().strokeStyle, 0);
    EXPECT_EQ(lighten->getLabelText(), "Lighten");
    EXPECT_EQ(component->getUserSettings()->getIntValue("freshProjectUndoCount"), count);
    EXPECT_NEAR(detail->getSlider()->getValue(), effect().preSharpen, 1e-6);
}

TEST_F(LivePreview, RandomizeChangesSettingsAndRecordsOneStep)
{
    component->setManualRedraw(true);
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    auto before = effectSettings();
    const int count = component->getUserSettings()->getIntValue("freshProjectUndoCount");
    component->randomizeAll();
    EXPECT_NE(before.getAllProperties().getDescription(), effectSettings().getAllProperties().getDescription());
    EXPECT_EQ(component->getUserSettings()->getIntValue("freshProjectUndoCount"), count + 1);
    EXPECT_TRUE(component->canUndo());
}

TEST_F(LivePreview, DropAcceptsImagesAndProjectsOnly)
{
    EXPECT_TRUE(component->isInterestedInFileDrag({ "/x/a.jpg" }));
    EXPECT_TRUE(component->isInterestedInFileDrag({ "/x/readme.txt", "/x/B.TIF" }));
    EXPECT_TRUE(component->isInterestedInFileDrag({ "/x/work.qhp" }));
    EXPECT_FALSE(component->isInterestedInFileDrag({ "/x/readme.txt" }));
    component->hostKind = 2; // inside a host editor the picture comes from the host
    EXPECT_FALSE(component->isInterestedInFileDrag({ "/x/a.jpg" }));
    component->hostKind = 0;

    component->setManualRedraw(true);
    component->filesDropped({ sample("chelsea.png").getFullPathName() }, 10, 10);
    ASSERT_NE(component->getSession().getOriginalImage(), nullptr);
    EXPECT_EQ(component->getSession().getImagePath(), sample("chelsea.png").getFullPathName());
}

TEST_F(LivePreview, StoppedRendersLeaveNoStaleCompletion)
{
    // A second open stops the first render; the first render's completion, still queued, must
    // neither end the second render early nor touch the deleted thread.
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    ASSERT_NE(currentRenderThread, nullptr);
    ASSERT_TRUE(component->getSession().openImage(sample("chelsea.png")));
    ASSERT_NE(currentRenderThread, nullptr);
    ASSERT_TRUE(waitForRenders());
    EXPECT_EQ(component->getRenderCount(), 1);
    EXPECT_EQ(component->getDocument()->getImage()->width, 451);

    // A component that goes while its render runs leaves a message behind that must do nothing.
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    component.reset();
    EXPECT_EQ(currentRenderThread, nullptr);
    juce::MessageManager::getInstance()->runDispatchLoopUntil(300);
}

TEST_F(LivePreview, QuickChangesShowADraftFirstAndEndOnTheFullPreview)
{
    // Drafts for this small photo: a quarter of its pixels.
    component->getPreviewRenderer().getDraft().maxPixels = 600 * 400 / 4;
    ASSERT_TRUE(component->getSession().openImage(sample("coffee.png")));
    effect().setDefaults();
    effect().invalidate(nullptr);
    ASSERT_TRUE(waitForRenders());
    const int renders = component->getRenderCount();
    EXPECT_EQ(component->getDraftCount(), 0) << "a single change renders in full at once";
    const auto before = shown();

    // A hand on a control: changes a few tens of milliseconds apart. The first starts a full
    // render; the end of it draws the newest state as a draft, then in full.
    for (const int style : { 0, 1 })
    {
        effect().strokeLength = 0.8f;
        effect().strokeStyle = style; // the second turns the strokes dark
        effect().invalidate(nullptr);
        juce::MessageManager::getInstance()->runDispatchLoopUntil(40);
    }
    const auto end = juce::Time::getMillisecondCounter() + 120000u;
    while (component->getDraftCount() == 0 && currentRenderThread != nullptr && juce::Time::getMillisecondCounter() < end)
        juce::MessageManager::getInstance()->runDispatchLoopUntil(5);
    ASSERT_EQ(component->getDraftCount(), 1);
    const auto draft = shown();
    ASSERT_TRUE(waitForRenders());
    EXPECT_EQ(component->getDraftCount(), 1);
    EXPECT_EQ(component->getRenderCount(), renders + 2);
    const auto full = shown();

    // The draft is the new look, only softer: seen at the draft's own size it is far nearer the
    // full preview of its state than the picture before the change is.
    ASSERT_EQ(draft->width, full->width);
    ASSERT_EQ(draft->height, full->height);
    auto meanDifference = [](const SxImageRgbaBytes& a, const SxImageRgbaBytes& b) {
        SxImageRgbaBytes x(a), y(b);
        x.resize(a.width / 2, a.height / 2, 3);
        y.resize(b.width / 2, b.height / 2, 3);
        double sum = 0;
        for (size_t i = 0; i < x.byteCount(); ++i)
            sum += std::abs((int) x.pixels[i] - (int) y.pixels[i]);
        return sum / (double) x.byteCount();
    };
    const double draftToFull = meanDifference(*draft, *full), beforeToFull = meanDifference(*before, *full);
    std::printf("mean difference to the full preview: draft %.2f, picture before the change %.2f\n", draftToFull, beforeToFull);
    EXPECT_GT(draftToFull, 0.0);
    EXPECT_LT(draftToFull, beforeToFull / 2);

    // What stays on the screen is the full render of the last state.
    component->getLayerManager()->markAllDirty();
    component->renderImmediate();
    ASSERT_TRUE(waitForRenders());
    EXPECT_TRUE(samePixels(full.get(), component->getDocument()->getImage()));
    EXPECT_EQ(component->getDraftCount(), 1);
}
