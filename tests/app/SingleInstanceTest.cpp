#include "app/SingleInstance.h"

#include <gtest/gtest.h>

#include <mutex>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
class SingleInstanceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder = juce::File::createTempFile("instance");
        ASSERT_TRUE(folder.createDirectory());
    }
    void TearDown() override { folder.deleteRecursively(); }

    // Collects forwarded texts from the listening thread.
    SingleInstance::Receiver collector()
    {
        return [this](const juce::String& text) {
            const std::lock_guard<std::mutex> lock(mutex);
            received.add(text);
            arrived.signal();
        };
    }

    juce::StringArray receivedTexts()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return received;
    }

    juce::File folder;
    std::mutex mutex;
    juce::StringArray received;
    juce::WaitableEvent arrived { true };
};
} // namespace

TEST_F(SingleInstanceTest, OnlyOneHolderUntilItEnds)
{
    auto first = std::make_unique<SingleInstance>(folder);
    SingleInstance second(folder);
    EXPECT_TRUE(first->becomeFirst());
    EXPECT_FALSE(second.becomeFirst());
    first.reset(); // as when the first process ends, normally or not
    EXPECT_TRUE(second.becomeFirst());
}

TEST_F(SingleInstanceTest, ForwardedTextArrivesUnchanged)
{
    SingleInstance first(folder);
    ASSERT_TRUE(first.becomeFirst());
    ASSERT_TRUE(first.startListening(collector()));

    const juce::String text = juce::CharPointer_UTF8("\"/home/a user/Bilder/h\xc3\xa4user.png\" -x");
    EXPECT_TRUE(SingleInstance::send(folder, text, 2000));
    EXPECT_TRUE(SingleInstance::send(folder, "", 2000));
    ASSERT_TRUE(arrived.wait(2000));
    for (int i = 0; i < 50 && receivedTexts().size() < 2; ++i)
        juce::Thread::sleep(20);
    juce::StringArray expected;
    expected.add(text);
    expected.add({});
    EXPECT_EQ(receivedTexts(), expected);
}

TEST_F(SingleInstanceTest, StaleFilesOfACrashedRunDoNotBlock)
{
    // A crash leaves the lock file and a socket file that nobody listens on.
    ASSERT_TRUE(folder.getChildFile("instance.lock").replaceWithText(""));
    const int dead = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    const auto socketPath = folder.getChildFile("instance.sock").getFullPathName();
    std::strncpy(address.sun_path, socketPath.toRawUTF8(), sizeof(address.sun_path) - 1);
    ASSERT_EQ(::bind(dead, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ::close(dead);
    ASSERT_TRUE(folder.getChildFile("instance.sock").exists());

    SingleInstance next(folder);
    ASSERT_TRUE(next.becomeFirst());
    ASSERT_TRUE(next.startListening(collector()));
    EXPECT_TRUE(SingleInstance::send(folder, "after the crash", 2000));
    ASSERT_TRUE(arrived.wait(2000));
    EXPECT_EQ(receivedTexts(), juce::StringArray("after the crash"));
}

TEST_F(SingleInstanceTest, SendingWithNobodyListeningGivesUpInTime)
{
    const auto start = juce::Time::getMillisecondCounter();
    EXPECT_FALSE(SingleInstance::send(folder, "anyone?", 300));
    EXPECT_LT(juce::Time::getMillisecondCounter() - start, 2000u);
}

TEST_F(SingleInstanceTest, GarbageFromAClientIsDroppedAndListeningGoesOn)
{
    SingleInstance first(folder);
    ASSERT_TRUE(first.becomeFirst());
    ASSERT_TRUE(first.startListening(collector()));

    // A header announcing 4 GiB, and a client that hangs up half way through its text.
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, folder.getChildFile("instance.sock").getFullPathName().toRawUTF8(),
                 sizeof(address.sun_path) - 1);
    for (const auto& bytes : { std::string("\xff\xff\xff\xff", 4), std::string("\x10\x00\x00\x00half", 8) })
    {
        const int handle = ::socket(AF_UNIX, SOCK_STREAM, 0);
        ASSERT_EQ(::connect(handle, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
        ASSERT_EQ(::write(handle, bytes.data(), bytes.size()), (ssize_t) bytes.size());
        ::close(handle);
    }

    EXPECT_FALSE(SingleInstance::send(folder, juce::String::repeatedString("x", SingleInstance::maximumTextBytes + 1), 500));
    EXPECT_TRUE(SingleInstance::send(folder, "still here", 2000));
    ASSERT_TRUE(arrived.wait(2000));
    EXPECT_EQ(receivedTexts(), juce::StringArray("still here"));
}
