#include "ToolTestSupport.h"

#include "app/BrushControlPanel.h"
#include "app/DocumentKeyRoute.h"
#include "brush/SxBrushSettings.h"
#include "tools/SxBrushTool.h"
#include "tools/SxPanTool.h"
#include "tools/SxToolSwitcher.h"

#include <cmath>

using tooltest::DocumentTest;

namespace
{
// The tool's host and owner at once: it counts the dabs (each asks for the mask once) and the
// rectangles reported for repainting.
class Host : public SxBrushToolCallback, public SxToolSwitcher
{
public:
    using SxToolSwitcher::SxToolSwitcher;
    SxImageAlphaByte* getBrushMask() override
    {
        ++dabs;
        return &mask;
    }
    float dabSpacing(float width) override { return width / 5.0f; }
    void repaintImageRect(const LayerRect& rect) override { reported.add(rect); }

    SxImageAlphaByte mask { 800, 600 };
    int dabs = 0;
    LayerRect reported;
};

// An 800 by 600 picture at zoom 1, so a view pixel is a mask pixel.
class BrushTool : public DocumentTest
{
protected:
    void SetUp() override
    {
        show(800, 600, 800, 600);
        document.setZoom(1.0f, false);
        tool.setCallback(&host);
        host.adopt(tool);
        host.setCurrentTool(&tool);
    }

    juce::Point<float> view(float x, float y) const { return document.imageToView({ x, y }); }

    Host host { &document };
    SxBrushTool tool { "brushOnTool", 1 };
};
} // namespace

TEST_F(BrushTool, AClickLaysTwoDabs)
{
    // The restoring brush at full opacity takes 255 × 0.35 = 89.25 at the core each time:
    // 255 → 165 → 75.
    tool.setBrushSize(120.0f);
    tool.setOpacity(1.0f);
    host.mask.fill(255);
    click(view(300, 200));
    EXPECT_EQ(host.dabs, 2);
    EXPECT_EQ(*host.mask.pixelAt(300, 200), 75);
    EXPECT_EQ(*host.mask.pixelAt(300, 300), 255);
    // The box of a dab reaches half the dab and a pixel beyond it.
    EXPECT_FLOAT_EQ(host.reported.x1, 300 - 61);
    EXPECT_FLOAT_EQ(host.reported.x2, 300 + 61);
}

TEST_F(BrushTool, ADragLaysDabsAtTheSpacingAndDropsTheRemainder)
{
    tool.setBrushSize(120.0f); // spacing 24
    const auto down = view(100, 300);
    press(down);
    ASSERT_EQ(host.dabs, 1);
    drag(view(120, 300), down); // 20 < 24: nothing yet, and the anchor stays
    EXPECT_EQ(host.dabs, 1);
    drag(view(200, 300), down); // 100 from the anchor: trunc(100 / 24) = 4
    EXPECT_EQ(host.dabs, 5);
    drag(view(200, 350), down); // the anchor jumped to 200: 50 / 24 → 2
    EXPECT_EQ(host.dabs, 7);
    release(view(200, 350), down);
    EXPECT_EQ(host.dabs, 7); // a drag ends without a dab of its own
    EXPECT_FLOAT_EQ(host.reported.y2, 350 + 61);
}

TEST_F(BrushTool, TheRingFollowsSizeAndZoom)
{
    // Twice the brush without the softness share (15% for the soft brush) at the zoom:
    // trunc(0.85 × 120) = 102 → 204 at zoom 1, 102 at zoom 0.5.
    tool.setBrushSize(120.0f);
    EXPECT_EQ(tool.getCursorImage().getWidth(), 204);
    document.setZoom(0.5f, false);
    tool.updateCursor();
    EXPECT_EQ(tool.getCursorImage().getWidth(), 102);
}

TEST(BrushControlPanel, KeysStepTheSizeAndChooseTheTool)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxToolSwitcher switcher;
    SxBrushSettings::brushSize = 15.0f;
    SxBrushSettings::brushOnToolSelected = false;
    SxBrushSettings::brushOffToolSelected = true;
    {
        BrushControlPanel panel(switcher);
        EXPECT_EQ(switcher.getCurrentTool(), panel.getOffTool());
        const juce::KeyPress smaller('[', 0, '['), larger(']', 0, ']');
        EXPECT_TRUE(panel.handleKey(smaller)); // 15 − 12 → 10, the smallest
        EXPECT_EQ(SxBrushSettings::brushSize, 10.0f);
        EXPECT_FALSE(panel.handleKey(smaller));
        EXPECT_EQ(panel.getOnTool()->getBrushSize(), 10.0f);
        SxBrushSettings::brushSize = 245.0f;
        EXPECT_TRUE(panel.handleKey(larger));
        EXPECT_EQ(SxBrushSettings::brushSize, 250.0f);
        EXPECT_FALSE(panel.handleKey(larger));

        EXPECT_TRUE(panel.handleKey(juce::KeyPress('b', 0, 'b')));
        EXPECT_EQ(switcher.getCurrentTool(), panel.getOnTool());
        EXPECT_FALSE(panel.handleKey(juce::KeyPress('b', 0, 'b'))); // already on: not taken
    }
    // The panel remembers the choice for the next one and leaves no tool of its own current.
    EXPECT_EQ(switcher.getCurrentTool(), nullptr);
    EXPECT_TRUE(SxBrushSettings::brushOnToolSelected);
    BrushControlPanel again(switcher);
    EXPECT_EQ(switcher.getCurrentTool(), again.getOnTool());
    SxBrushSettings::brushSize = 120.0f;
    SxBrushSettings::brushOffToolSelected = true;
    SxBrushSettings::brushOnToolSelected = false;
}

TEST(DocumentKeyRoute, TheLayerFirstThenTheSpaceBarLendsThePanTool)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxToolSwitcher switcher;
    SxPanTool pan;
    SxBrushTool brush("brushOffTool", 0);
    switcher.setCurrentTool(&brush);
    int layerKeys = 0;
    DocumentKeyRoute route(switcher, [&switcher] { return switcher.getCurrentTool(); }, &pan, [&layerKeys](const juce::KeyPress& key) {
        ++layerKeys;
        return key.getKeyCode() == 'B';
    });
    EXPECT_TRUE(route.keyPressed(juce::KeyPress('B')));
    EXPECT_FALSE(route.keyPressed(juce::KeyPress('x')));
    EXPECT_EQ(layerKeys, 2);

    const juce::KeyPress space(juce::KeyPress::spaceKey);
    EXPECT_TRUE(route.keyPressed(space));
    EXPECT_TRUE(route.keyPressed(space)); // the key repeats while held
    EXPECT_EQ(switcher.getCurrentTool(), &pan);
    route.keyStateChanged(); // no key is down here: the space bar counts as released
    EXPECT_EQ(switcher.getCurrentTool(), &brush);
    EXPECT_FALSE(route.isPanBorrowed());
    switcher.setCurrentTool(nullptr);
}
