#include "app/ParentProcess.h"

#include <gtest/gtest.h>

#include <unistd.h>

TEST(ParentProcess, BaseNameCutsFolderAndLastExtension)
{
    EXPECT_EQ(ParentProcess::baseName("/usr/bin/Photo"), "Photo");
    EXPECT_EQ(ParentProcess::baseName("C:\\Program Files\\Photo.exe"), "Photo");
    EXPECT_EQ(ParentProcess::baseName("/opt/editor.app/run"), "run"); // a dot in a folder is not an extension
    EXPECT_EQ(ParentProcess::baseName("archive.tar.gz"), "archive.tar");
    EXPECT_EQ(ParentProcess::baseName(""), "");
}

TEST(ParentProcess, HostsAreMatchedInOrderIgnoringCase)
{
    using namespace ParentProcess;
    EXPECT_EQ(hostKindForName("/opt/editors/LightRoom/bin/lightroom"), hostEditorLr);
    EXPECT_EQ(hostKindForName("C:\\Program Files\\Editor\\PhotoShop.exe"), hostEditorPs);
    EXPECT_EQ(hostKindForName("/usr/local/bin/PAINTSHOP-pro"), hostEditorPsp);
    EXPECT_EQ(hostKindForName("/opt/affinity/bin/editor"), hostEditorPhotos);
    EXPECT_EQ(hostKindForName("/usr/bin/Photo"), hostEditorPhotos);
    // The first rule wins when a path names two hosts.
    EXPECT_EQ(hostKindForName("/plugins/photoshop-bridge/lightroom"), hostEditorLr);
}

TEST(ParentProcess, OrdinaryParentsAreStandAlone)
{
    using namespace ParentProcess;
    EXPECT_EQ(hostKindForName(""), standAlone);
    EXPECT_EQ(hostKindForName("/usr/bin/bash"), standAlone);
    // "Photo" must be the whole base name: folders and longer names do not count.
    EXPECT_EQ(hostKindForName("/home/photo/bin/zsh"), standAlone);
    EXPECT_EQ(hostKindForName("/usr/bin/PhotoViewer"), standAlone);
    EXPECT_EQ(hostKindForName("/usr/bin/photo"), standAlone);
}

TEST(ParentProcess, ReadsExecutablesFromTheProcessTable)
{
    // This test binary is a process whose executable we know independently.
    const auto self = ParentProcess::executableOfProcess((int) ::getpid());
    EXPECT_TRUE(self.endsWith("/app_tests")) << self;
    EXPECT_TRUE(juce::File(self).existsAsFile());

    EXPECT_TRUE(ParentProcess::parentExecutable().isNotEmpty());
    EXPECT_TRUE(ParentProcess::executableOfProcess(0).isEmpty());
    EXPECT_TRUE(ParentProcess::executableOfProcess(-5).isEmpty());
    EXPECT_TRUE(ParentProcess::executableOfProcess(0x3ffffff0).isEmpty()); // above any pid_max
}
