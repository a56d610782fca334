// The main component at start: its settings under the home folder, the layout, opening pictures
// and the preview size rules.

#include "imaging/ImageStream.h"

#include "presets/PresetManager.h"

#include "app/AppTestSupport.h"

namespace
{
using MainComponent = AppComponentTest;
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

TEST_F(MainComponent, StartWritesVersionIntoSettingsUnderHome)
{
    auto& c = *component;
    auto* settings = c.getUserSettings();
    ASSERT_NE(settings, nullptr);
    EXPECT_TRUE(settings->getFile().isAChildOf(home));
    EXPECT_EQ(settings->getIntValue("lastVersionNumber"), 65809);
    EXPECT_TRUE(settings->saveIfNeeded());
    auto xml = juce::parseXML(settings->getFile());
    ASSERT_NE(xml, nullptr);
    EXPECT_NE(xml->toString().indexOf("lastVersionNumber"), -1);

    // The document sits where its bounds expression puts it, ends where the preset strip
    // begins, keeps the band under it when the strip is away, and follows the parent's size.
    const int strip = PresetManager::stripHeight;
    EXPECT_EQ(c.getDocument()->getBounds(), juce::Rectangle<int>(30, 34, 1024 - 300, 601 - strip - 34));
    c.setSize(1400, 900);
    EXPECT_EQ(c.getDocument()->getBounds(), juce::Rectangle<int>(30, 34, 1100, 900 - strip - 34));
    c.getPresetManager()->setOpen(false, false);
    EXPECT_EQ(c.getDocument()->getBounds(), juce::Rectangle<int>(30, 34, 1100, 900 - 150));
}

TEST_F(MainComponent, OpenedPictureIsHeldParkedAndShownFitted)
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

TEST_F(MainComponent, UnreadableFileKeepsTheCurrentPicture)
{
    auto& c = *component;
    ASSERT_TRUE(c.getSession().openImage(sample("chelsea.png")));
    auto* before = c.getSession().getOriginalImage();

    const auto bogus = home.getChildFile("broken.png");
    ASSERT_TRUE(bogus.replaceWithText("\x89PNG but not really"));
    EXPECT_FALSE(c.getSession().openImage(bogus));
    EXPECT_EQ(c.getSession().getOriginalImage(), before);
    EXPECT_EQ(c.getDocument()->getImage(), c.getPreviewImage());
    EXPECT_EQ(c.getUserSettings()->getValue("ImagePath"), sample("chelsea.png").getFullPathName());
}

TEST_F(MainComponent, RenderSizeSettingAndHostGroups)
{
    auto& c = *component;
    EXPECT_EQ(c.getFullRenderSize(), juce::Rectangle<int>(0, 0, 2447, 2447));
    c.getUserSettings()->setValue("RenderSize", 1);
    EXPECT_EQ(c.getFullRenderSize(), juce::Rectangle<int>(0, 0, 1600, 1600));

    c.hostKind = 9;
    EXPECT_TRUE(c.isHostKind(1));
    EXPECT_TRUE(c.isHostKind(9));
    c.hostKind = 5;
    EXPECT_FALSE(c.isHostKind(1));
    EXPECT_TRUE(c.isHostKind(7));
}
