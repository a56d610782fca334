// The main component at start: its settings under the home folder, the layout, and the product's
// answers.

#include "presets/PresetManager.h"

#include "app/AppTestSupport.h"

namespace
{
using MainComponent = AppComponentTest;
} // namespace

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
