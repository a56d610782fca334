#include "ToolTestSupport.h"

#include "tools/SxPanTool.h"
#include "tools/SxToolSwitcher.h"

using tooltest::DocumentTest;

namespace
{
struct StateLog : SxToolCallback
{
    void stateChanged(SxTool* tool, bool on) override { log.add(tool->getName() + (on ? " on" : " off")); }
    juce::StringArray log;
};

class ToolSwitching : public DocumentTest
{
protected:
    void SetUp() override
    {
        show(800, 600, 400, 300);
        for (auto* t : { static_cast<SxTool*>(&pan), &other })
        {
            switcher.adopt(*t);
            t->setFirstCallback(&states);
        }
    }

    void clickButton(juce::Button& button)
    {
        // A click reaches the tool as the button's own listener call, through the message loop.
        button.triggerClick();
        juce::MessageManager::getInstance()->runDispatchLoopUntil(50);
    }

    bool cursorIs(juce::MouseCursor::StandardCursorType type) { return document.getMouseCursor() == juce::MouseCursor(type); }

    SxPanTool pan;
    SxTool other { "other" };
    StateLog states;
    SxToolSwitcher switcher { &document };
};
} // namespace

TEST_F(ToolSwitching, ClickingTheLitToolLeavesNoneAndTheDefaultCursor)
{
    clickButton(pan);
    EXPECT_EQ(switcher.getCurrentTool(), &pan);
    EXPECT_EQ(document.getTool(), &pan);
    EXPECT_TRUE(pan.isToolOn());
    EXPECT_TRUE(pan.getToggleState());
    EXPECT_TRUE(cursorIs(juce::MouseCursor::DraggingHandCursor));

    clickButton(pan);
    EXPECT_EQ(switcher.getCurrentTool(), nullptr);
    EXPECT_EQ(document.getTool(), nullptr);
    EXPECT_FALSE(pan.isToolOn());
    EXPECT_TRUE(cursorIs(juce::MouseCursor::NormalCursor));
    EXPECT_EQ(states.log.joinIntoString(", "), "panTool on, panTool off");

    // Switched off from elsewhere, the tool lets go of the document as well.
    switcher.setCurrentTool(&pan);
    pan.setToolOn(false);
    EXPECT_EQ(document.getTool(), nullptr);
    EXPECT_TRUE(cursorIs(juce::MouseCursor::NormalCursor));
}

TEST_F(ToolSwitching, SwitchingTurnsTheOldToolOffBeforeTheNewOneOn)
{
    switcher.setCurrentTool(&pan);
    switcher.setCurrentTool(&other);
    EXPECT_FALSE(pan.isToolOn());
    EXPECT_TRUE(other.isToolOn());
    EXPECT_EQ(document.getTool(), &other);
    EXPECT_EQ(other.getDocument(), &document);
    // Making the current tool current again changes nothing and tells nobody.
    switcher.setCurrentTool(&other);
    EXPECT_EQ(states.log.joinIntoString(", "), "panTool on, panTool off, other on");
}

TEST_F(ToolSwitching, AVetoKeepsTheOldTool)
{
    switcher.setCurrentTool(&pan);
    bool allow = false;
    std::pair<SxTool*, SxTool*> asked;
    switcher.setVeto([&](SxTool* current, SxTool* next) {
        asked = { current, next };
        return allow;
    });
    switcher.setCurrentTool(&other);
    EXPECT_EQ(asked, std::make_pair(static_cast<SxTool*>(&pan), &other));
    EXPECT_EQ(switcher.getCurrentTool(), &pan);
    EXPECT_TRUE(pan.isToolOn());
    EXPECT_FALSE(other.isToolOn());
    EXPECT_EQ(document.getTool(), &pan);
    switcher.setCurrentTool(nullptr); // refused too
    EXPECT_EQ(document.getTool(), &pan);

    allow = true;
    switcher.setCurrentTool(nullptr);
    EXPECT_EQ(document.getTool(), nullptr);
    EXPECT_FALSE(pan.isToolOn());
}
