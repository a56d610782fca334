#pragma once
// What the main component's tests share: a temporary home folder, because the program reads and
// writes the user's configuration folder and tests must never touch the real one, and a fixture
// holding a component built as the application builds it.

#include "app/RenderThread.h"
#include "app/TornvaleAppComponent.h"
#include "effect/TornvaleEffect.h"
#include "ui/SxAlertComponent.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

struct ScopedTempHome
{
    ScopedTempHome()
    {
        if (const char* h = std::getenv("HOME"))
            previous = h;
        folder = juce::File::createTempFile("home");
        folder.createDirectory();
        ::setenv("HOME", folder.getFullPathName().toRawUTF8(), 1);
        ::unsetenv("XDG_CONFIG_HOME");
    }
    ~ScopedTempHome()
    {
        ::setenv("HOME", previous.toRawUTF8(), 1);
        folder.deleteRecursively();
    }
    ScopedTempHome(const ScopedTempHome&) = delete;
    ScopedTempHome& operator=(const ScopedTempHome&) = delete;

    juce::File folder;
    juce::String previous;
};

/** Builds a main component at the window's smallest size, as the application does at start. */
inline std::unique_ptr<TornvaleAppComponent> makeAppComponent()
{
    auto component = std::make_unique<TornvaleAppComponent>();
    component->setSize(1024, 601);
    component->initializeApplication();
    component->buildInterface();
    component->finishInterface();
    return component;
}

class AppComponentTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(home.isDirectory());
        component = makeAppComponent();
    }
    void TearDown() override { component.reset(); }

    /** Runs the message loop until no render runs (the completion message has been handled). */
    bool waitForRenders(int timeoutMs = 120000)
    {
        const auto end = juce::Time::getMillisecondCounter() + (juce::uint32) timeoutMs;
        while (currentRenderThread != nullptr && juce::Time::getMillisecondCounter() < end)
            juce::MessageManager::getInstance()->runDispatchLoopUntil(20);
        return currentRenderThread == nullptr;
    }
    /** Runs the message loop for ms, then until no render runs. */
    void settle(int ms = 50)
    {
        juce::MessageManager::getInstance()->runDispatchLoopUntil(ms);
        waitForRenders();
    }

    TornvaleEffect& effect() { return *dynamic_cast<TornvaleEffect*>(component->getEffectLayer()); }
    SxPropertySet effectSettings()
    {
        SxPropertySet set;
        effect().saveToDictionary(set, {});
        return set;
    }

    static juce::File sample(const char* name) { return juce::File(TORNVALE_SOURCE_DIR "/samples").getChildFile(name); }
    static bool samePixels(const SxImageRgbaBytes* a, const SxImageRgbaBytes* b)
    {
        return a != nullptr && b != nullptr && a->width == b->width && a->height == b->height
               && std::memcmp(a->pixels, b->pixels, a->byteCount()) == 0;
    }

    juce::ScopedJuceInitialiser_GUI gui;
    ScopedTempHome tempHome;
    const juce::File& home = tempHome.folder;
    std::unique_ptr<TornvaleAppComponent> component;
};

/** A component whose file dialogs are answered by the test, with the helpers that the tests of
    commands and of the document session share. */
class AnsweredAppTest : public AppComponentTest
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
