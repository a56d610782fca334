// The document session: opening pictures and projects, the preview size, saving photos and
// projects at full size, the unsaved-changes question, default settings, and saves and opens that
// fail without losing anything.

#include "app/AppCommands.h"
#include "app/EffectControlPanel.h"
#include "document/ProjectFile.h"
#include "imaging/ImageFileReader.h"
#include "imaging/ImageStream.h"
#include "ui/SxSlider.h"

#include "app/AppTestSupport.h"

#include <csignal>
#include <sys/resource.h>

namespace
{
using Session = AnsweredAppTest;

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

TEST(PreviewRectangle, FitsIntoTheLimitWithoutEnlarging)
{
    const juce::Rectangle<int> limit(0, 0, 1500, 1500);
    EXPECT_EQ(DocumentSession::previewRectangleFor({ 0, 0, 3000, 2000 }, limit), juce::Rectangle<int>(0, 0, 1500, 1000));
    EXPECT_EQ(DocumentSession::previewRectangleFor({ 0, 0, 2000, 3001 }, limit), juce::Rectangle<int>(0, 0, 1000, 1500));
    EXPECT_EQ(DocumentSession::previewRectangleFor({ 0, 0, 1500, 1500 }, limit), juce::Rectangle<int>(0, 0, 1500, 1500));
    EXPECT_EQ(DocumentSession::previewRectangleFor({ 0, 0, 600, 400 }, limit), juce::Rectangle<int>(0, 0, 600, 400));
    // A sliver keeps at least one pixel.
    EXPECT_EQ(DocumentSession::previewRectangleFor({ 0, 0, 30000, 2 }, limit), juce::Rectangle<int>(0, 0, 1500, 1));
    EXPECT_TRUE(DocumentSession::previewRectangleFor({}, limit).isEmpty());
}

TEST_F(Session, OpenedPictureIsHeldParkedAndShownFitted)
{
    auto& c = *component;
    ASSERT_TRUE(c.getSession().openImage(sample("coffee.png")));

    auto* original = c.getSession().getOriginalImage();
    ASSERT_NE(original, nullptr);
    EXPECT_EQ(original->width, 600);
    EXPECT_EQ(original->height, 400);
    EXPECT_EQ(c.getUserSettings()->getValue("ImagePath"), sample("coffee.png").getFullPathName());
    EXPECT_TRUE(c.getUserSettings()->getBoolValue("feshProject"));

    // The parked copy reads back byte for byte.
    SxRef<SxImageRgbaBytes> parked = SxRef<SxImageRgbaBytes>::adopt(ImageStream::readFile(c.originalBeforeEditFile()));
    ASSERT_TRUE(parked);
    ASSERT_EQ(parked->byteCount(), original->byteCount());
    EXPECT_EQ(std::memcmp(parked->pixels, original->pixels, original->byteCount()), 0);

    // Below the preview size the preview is the picture itself.
    auto* preview = c.getPreviewImage();
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(std::memcmp(preview->pixels, original->pixels, original->byteCount()), 0);

    // Fitted: 95% of the tighter side (the height above the preset strip), centred both ways.
    auto* document = c.getDocument();
    EXPECT_EQ(document->getImage(), preview);
    EXPECT_NEAR(document->getZoom(), document->getHeight() * 0.95f / 400, 1e-5);
    EXPECT_LT(document->getHeight() * 600, document->getWidth() * 400) << "the height is the tighter side";
    const auto shown = document->imageBounds();
    EXPECT_NEAR(shown.getCentreX(), document->getWidth() / 2.0f, 0.01);
    EXPECT_NEAR(shown.getCentreY(), document->getHeight() / 2.0f, 0.01);

    EXPECT_TRUE(c.mayQuit());
    EXPECT_FALSE(c.originalBeforeEditFile().exists());
}

TEST_F(Session, SavePhotoWritesTheFullSizeRenderWithResolution)
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

TEST_F(Session, ProjectRoundTripRestoresEveryControlAndAsksNothing)
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

TEST_F(Session, SaveAnswerSavesTheProjectAndThenOpens)
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

TEST_F(Session, DefaultSettingsApplyToNextPicturesUntilReset)
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

TEST_F(Session, FailedSavesKeepTheOldFilesAndTheDocument)
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

    // A project or a photo that cannot be read leaves the picture open, shown and named.
    auto* before = component->getSession().getOriginalImage();
    auto* shown = component->getDocument()->getImage();
    const auto bad = home.getChildFile("bad.qhp");
    ASSERT_TRUE(bad.replaceWithText("VER3 not a project"));
    EXPECT_FALSE(component->getSession().loadProject(bad));
    const auto bogus = home.getChildFile("broken.png");
    ASSERT_TRUE(bogus.replaceWithText("\x89PNG but not really"));
    EXPECT_FALSE(component->getSession().loadImageFile(bogus));
    EXPECT_EQ(component->getSession().getOriginalImage(), before);
    EXPECT_EQ(component->getDocument()->getImage(), shown);
    EXPECT_EQ(component->getUserSettings()->getValue("ImagePath"), sample("coffee.png").getFullPathName());
    EXPECT_NEAR(effect().strokeLength, 0.05f, 1e-6);
}

