// Jobs behind the activity panel: the caller blocks until the job ends while the message loop
// keeps running, the panel is modal over the document meanwhile, and messages set on the job's
// thread reach the panel.

#include "app/ThreadedActivityWindow.h"

#include "app/AppTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>

namespace
{
class SlowJob : public ThreadedActivityWindow
{
public:
    using ThreadedActivityWindow::ThreadedActivityWindow;
    void run() override
    {
        juce::Thread::sleep(150);
        setMessage("Saving...");
        // Waits until the message thread has shown the new text: proof that it kept running.
        for (int i = 0; i < 200 && getActivityContainer()->getMessage() != "Saving..."; ++i)
            juce::Thread::sleep(10);
        sawMessageOnPanel = getActivityContainer()->getMessage() == "Saving...";
        finished = true;
    }
    std::atomic<bool> finished { false }, sawMessageOnPanel { false };
};
} // namespace

TEST(ThreadedActivityWindow, BlocksTheCallerButNotTheMessageLoop)
{
    juce::ScopedJuceInitialiser_GUI gui;
    ScopedTempHome home;
    {
        auto owner = makeAppComponent();
        auto& component = *owner;

        int ticks = 0;
        juce::Component* panel = nullptr;
        bool modalDuringJob = false, messageFirst = false;
        SlowJob job(component.getDocument(), "Rendering...");
        panel = job.getActivityContainer();
        ASSERT_EQ(panel->getParentComponent(), component.getDocument());
        // Centred in the document at 273 × 27.
        EXPECT_EQ(panel->getWidth(), 273);
        EXPECT_EQ(panel->getHeight(), 27);
        EXPECT_NEAR(panel->getBounds().getCentreX(), component.getDocument()->getWidth() / 2, 1);
        EXPECT_NEAR(panel->getBounds().getCentreY(), component.getDocument()->getHeight() / 2, 1);

        juce::Timer::callAfterDelay(50, [&] {
            ++ticks;
            modalDuringJob = panel->isCurrentlyModal(false);
            messageFirst = job.getActivityContainer()->getMessage() == "Rendering...";
        });
        job.runThread();
        EXPECT_TRUE(job.finished);
        EXPECT_TRUE(job.sawMessageOnPanel);
        EXPECT_EQ(ticks, 1);
        EXPECT_TRUE(modalDuringJob);
        EXPECT_TRUE(messageFirst);
        EXPECT_FALSE(panel->isCurrentlyModal(false));
        EXPECT_FALSE(panel->isVisible());
        EXPECT_FALSE(job.isThreadRunning());
    }
}
