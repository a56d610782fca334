// Telling which program started this one, from the process table, and which hosts count.

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

TEST(ParentProcess, HostsAreMatchedInOrderIgnoringCaseAndOthersAreStandAlone)
{
    using namespace ParentProcess;
    const std::pair<const char*, int> rows[] = {
        { "/opt/editors/LightRoom/bin/lightroom", hostEditorLr },
        { "C:\\Program Files\\Editor\\PhotoShop.exe", hostEditorPs },
        { "/usr/local/bin/PAINTSHOP-pro", hostEditorPsp },
        { "/opt/affinity/bin/editor", hostEditorPhotos },
        { "/usr/bin/Photo", hostEditorPhotos },
        { "/plugins/photoshop-bridge/lightroom", hostEditorLr }, // the first rule wins when a path names two hosts
        { "", standAlone },
        { "/usr/bin/bash", standAlone },
        // "Photo" must be the whole base name, in its own case: folders and longer names do not count.
        { "/home/photo/bin/zsh", standAlone },
        { "/usr/bin/PhotoViewer", standAlone },
        { "/usr/bin/photo", standAlone },
        { "/home/u/.config/GIMP/2.10/plug-ins/tornvale-plugin-gimp/tornvale-plugin-gimp", hostOwnPlugin },
        { "/usr/bin/tornvale-render", standAlone },
    };
    for (const auto& [path, kind] : rows)
        EXPECT_EQ(hostKindForName(path), kind) << path;
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
