// The alert panel over its parent: placement, closing by button and key, one alert a parent,
// questions and their answers.

#include "ui/SxAlertComponent.h"

#include <gtest/gtest.h>

namespace
{
class Alert : public ::testing::Test
{
protected:
    void SetUp() override { parent.setSize(1000, 700); }
    juce::ScopedJuceInitialiser_GUI gui;
    juce::Component parent;
};

void dispatch()
{
    juce::MessageManager::getInstance()->runDispatchLoopUntil(30);
}

int countAlertLayers(juce::Component& parent)
{
    int n = 0;
    for (auto* child : parent.getChildren())
        if (child->getName() == "SxAlertOverlay")
            ++n;
    return n;
}
} // namespace

TEST_F(Alert, ShowsCentredOverItsParentAndGoesAwayOnOKEscapeOrReturn)
{
    auto* first = SxAlertComponent::show(parent, "ExceededLayers", "Too Many Layers",
                                         "Cannot add this as it will exceed the maximum number of layers.");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(SxAlertComponent::findIn(parent), first);
    ASSERT_EQ(countAlertLayers(parent), 1);
    // The dimming layer covers the parent, also after a resize; the panel stays centred on it.
    for (const int width : { 1000, 800 })
    {
        parent.setSize(width, width - 300);
        EXPECT_EQ(first->getParentComponent()->getBounds(), parent.getLocalBounds());
        EXPECT_EQ(first->getBounds().getCentre(), parent.getLocalBounds().getCentre());
    }

    // The OK button, Escape and Return each close it once, and it deletes itself afterwards. The
    // keys take it off the parent at once, so the program is usable again before the deletion.
    for (const int keyCode : { 0, juce::KeyPress::escapeKey, juce::KeyPress::returnKey })
    {
        auto* alert = keyCode == 0 ? first : SxAlertComponent::show(parent, "saveError", "Could Not Save", "Read-only.");
        int closes = 0;
        alert->onClose = [&closes] { ++closes; };
        juce::Component::SafePointer<SxAlertComponent> watch(alert);
        if (keyCode == 0)
            alert->getOKButton().triggerClick();
        else
        {
            EXPECT_TRUE(alert->keyPressed(juce::KeyPress(keyCode)));
            EXPECT_EQ(countAlertLayers(parent), 0);
            EXPECT_EQ(closes, 1);
        }
        dispatch();
        EXPECT_EQ(SxAlertComponent::findIn(parent), nullptr);
        EXPECT_EQ(countAlertLayers(parent), 0);
        EXPECT_EQ(watch.getComponent(), nullptr);
        EXPECT_EQ(closes, 1);
    }

    // Other keys are swallowed and leave the alert in place.
    auto* alert = SxAlertComponent::show(parent, "a", "A", "Message");
    EXPECT_TRUE(alert->keyPressed(juce::KeyPress('x')));
    EXPECT_EQ(SxAlertComponent::findIn(parent), alert);
    alert->close();
    alert->close(); // a second close changes nothing
    dispatch();
    EXPECT_EQ(SxAlertComponent::findIn(parent), nullptr);
}

TEST_F(Alert, ASecondAlertReplacesTheFirst)
{
    juce::Component otherParent;
    otherParent.setSize(300, 300);
    int firstCloses = 0;
    auto* first = SxAlertComponent::show(parent, "first", "First", "One");
    first->onClose = [&firstCloses] { ++firstCloses; };
    juce::Component::SafePointer<SxAlertComponent> watchFirst(first);
    auto* elsewhere = SxAlertComponent::show(otherParent, "other", "Other", "Beside");

    auto* second = SxAlertComponent::show(parent, "second", "Second", "Two");
    juce::Component::SafePointer<SxAlertComponent> watchSecond(second);
    EXPECT_EQ(SxAlertComponent::findIn(parent), second);
    EXPECT_EQ(countAlertLayers(parent), 1);
    EXPECT_EQ(SxAlertComponent::findIn(otherParent), elsewhere); // one per parent, not one in all
    dispatch();
    EXPECT_EQ(watchFirst.getComponent(), nullptr);
    EXPECT_EQ(firstCloses, 0); // replaced, not dismissed
    EXPECT_NE(watchSecond.getComponent(), nullptr);
    second->close();
    elsewhere->close();
    dispatch();
}

TEST_F(Alert, LongerMessagesWrapIntoATallerPanel)
{
    SxAlertComponent shortAlert("s", "Title", "Short.");
    juce::String longText;
    for (int i = 0; i < 30; ++i)
        longText << "This sentence makes the message longer. ";
    SxAlertComponent longAlert("l", "Title", longText);
    const int shortHeight = shortAlert.getPreferredHeight(400);
    const int longHeight = longAlert.getPreferredHeight(400);
    EXPECT_GT(longHeight, shortHeight + 100);
    // Narrower panels need more lines.
    EXPECT_GT(longAlert.getPreferredHeight(250), longHeight);
    EXPECT_EQ(shortAlert.getHeight(), shortHeight); // made at its preferred size
}

TEST_F(Alert, AParentDeletedUnderAnOpenAlertTakesItAlong)
{
    juce::Component::SafePointer<SxAlertComponent> watch;
    {
        juce::Component doomed;
        doomed.setSize(500, 500);
        watch = SxAlertComponent::show(doomed, "a", "A", "Message");
    }
    dispatch();
    EXPECT_EQ(watch.getComponent(), nullptr);
}

TEST_F(Alert, AQuestionTellsWhichAnswerClosedIt)
{
    const juce::StringArray answers { "Save", "Don't Save", "Cancel" };

    // Each button answers with its own index, Return with the first and Escape with the last;
    // each is told once, the answer after the close, when the question is off the screen.
    for (int way = 0; way < 5; ++way)
    {
        std::vector<int> got;
        int closes = 0;
        auto* alert = SxAlertComponent::ask(parent, "saveQuestion", "Save Project?", "Unsaved", answers);
        ASSERT_EQ(alert->getNumAnswers(), 3);
        EXPECT_EQ(alert->getAnswerButton(3), nullptr);
        alert->onAnswer = [&got](int index) { got.push_back(index); };
        alert->onClose = [&closes, &got] { closes += got.empty() ? 1 : 100; };
        if (way < 3)
            alert->getAnswerButton(way)->triggerClick();
        else
            alert->keyPressed(juce::KeyPress(way == 3 ? juce::KeyPress::returnKey : juce::KeyPress::escapeKey));
        dispatch();
        EXPECT_EQ(got, std::vector<int>({ way < 3 ? way : way == 3 ? 0 : 2 })) << way;
        EXPECT_EQ(closes, 1);
        EXPECT_EQ(SxAlertComponent::findIn(parent), nullptr);
    }

    // The buttons stand in one row inside the panel, the first answer rightmost, none overlapping.
    auto* alert = SxAlertComponent::ask(parent, "saveQuestion", "Save Project?", "Unsaved", answers);
    auto b0 = alert->getAnswerButton(0)->getBounds(), b1 = alert->getAnswerButton(1)->getBounds(),
         b2 = alert->getAnswerButton(2)->getBounds();
    EXPECT_EQ(b0.getY(), b2.getY());
    EXPECT_GT(b0.getX(), b1.getRight());
    EXPECT_GT(b1.getX(), b2.getRight());
    EXPECT_GE(b2.getX(), 0);
    alert->close();
    dispatch();
}
