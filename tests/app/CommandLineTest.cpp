#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace
{
class CommandLineFiles : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder = juce::File::createTempFile("commandline");
        ASSERT_TRUE(folder.createDirectory());
        input = folder.getChildFile("in put.png");
        ASSERT_TRUE(input.replaceWithText("x"));
        project = folder.getChildFile("old.QRP");
        ASSERT_TRUE(project.replaceWithText("x"));
    }
    void TearDown() override { folder.deleteRecursively(); }

    juce::String path(const juce::File& f) const { return f.getFullPathName(); }

    juce::File folder, input, project;
};
} // namespace

TEST(CommandLine, StripQuotesRemovesWrappingAndEscapes)
{
    EXPECT_EQ(CommandLine::stripQuotes("\"/a b/c.png\""), "/a b/c.png");
    EXPECT_EQ(CommandLine::stripQuotes("\"\"\\\\C:\\a.jpg\""), "C:\\a.jpg"); // quotes, then backslashes
    EXPECT_EQ(CommandLine::stripQuotes("/plain.png"), "/plain.png");
    EXPECT_EQ(CommandLine::stripQuotes("/tail.png\""), "/tail.png");
    EXPECT_EQ(CommandLine::stripQuotes("\""), "");
}

TEST_F(CommandLineFiles, RenderRequestSplitsAtTheFirstComma)
{
    const auto output = folder.getChildFile("out, final.png");

    // As JUCE joins argv: an argument with a space arrives quoted as a whole.
    auto job = CommandLine::parseRender("-r \"" + path(input) + "," + path(output) + "\"");
    EXPECT_TRUE(job.render);
    EXPECT_EQ(job.input, path(input));
    EXPECT_EQ(job.output, path(output)); // later commas belong to the output

    // Each path quoted on its own, glued to the switch.
    job = CommandLine::parseRender("-r\"" + path(input) + "\",\"" + path(output) + "\"");
    EXPECT_TRUE(job.render);
    EXPECT_EQ(job.input, path(input));
    EXPECT_EQ(job.output, path(output));
}

TEST_F(CommandLineFiles, RenderWithoutCommaTakesAllAsInput)
{
    const auto job = CommandLine::parseRender("-r " + path(input));
    EXPECT_TRUE(job.render);
    EXPECT_EQ(job.input, path(input));
    EXPECT_TRUE(job.output.isEmpty());
}

TEST_F(CommandLineFiles, RenderOfMissingOrRelativeInputStartsNormally)
{
    EXPECT_FALSE(CommandLine::parseRender("-r " + path(folder.getChildFile("gone.png")) + ",/tmp/o.png").render);
    // A relative input is refused even when it exists from the current folder.
    const auto previous = juce::File::getCurrentWorkingDirectory();
    folder.setAsCurrentWorkingDirectory();
    EXPECT_TRUE(juce::File::getCurrentWorkingDirectory().getChildFile("in put.png").existsAsFile());
    EXPECT_FALSE(CommandLine::parseRender("-r \"in put.png,o.png\"").render);
    previous.setAsCurrentWorkingDirectory();
    EXPECT_FALSE(CommandLine::parseRender("-r").render);
}

TEST_F(CommandLineFiles, PlainPathIsResolvedEvenWhenTheWindowCannotOpenIt)
{
    EXPECT_EQ(CommandLine::fileToOpen(path(input).quoted(), juce::File("/")), input);
    EXPECT_EQ(CommandLine::fileToOpen("in put.png", folder), input);
    EXPECT_EQ(CommandLine::fileToOpen("missing.png", folder), folder.getChildFile("missing.png"));
    EXPECT_EQ(CommandLine::fileToOpen("", folder), juce::File());
}

TEST_F(CommandLineFiles, SwitchIsAWholeArgumentNeverTextInsideAName)
{
    // Names with "-r" in them are names.
    for (const char* name : { "x-ray.png", "t-rex.png", "/a/my-render.png", "\"/a b/x-ray.png\"" })
        EXPECT_FALSE(CommandLine::isRenderRequest(juce::String(name))) << name;

    const auto trex = folder.getChildFile("t-rex.png");
    ASSERT_TRUE(trex.replaceWithText("x"));
    const auto output = folder.getChildFile("my-render.png");
    const auto job = CommandLine::parseRender("-r " + path(trex) + "," + path(output));
    EXPECT_TRUE(job.render);
    EXPECT_EQ(job.input, path(trex));
    EXPECT_EQ(job.output, path(output));

    // argv as the shell hands it over, a space inside one argument.
    const auto fromArgv = CommandLine::parseRender(juce::StringArray { "-r", path(input) + "," + path(output) });
    EXPECT_EQ(fromArgv.input, path(input));
    EXPECT_EQ(fromArgv.output, path(output));
}

TEST_F(CommandLineFiles, SecondLaunchRoutesProjectsAndImages)
{
    using CommandLine::Route;
    auto request = CommandLine::routeSecondInstance(path(project), "qhp", folder);
    EXPECT_EQ(request.route, Route::project);
    EXPECT_EQ(request.file, project);

    // A project goes to the project loader even when missing: it reports that itself.
    request = CommandLine::routeSecondInstance("\"" + path(folder.getChildFile("new.qhp")) + "\"", "qhp", folder);
    EXPECT_EQ(request.route, Route::project);
    EXPECT_EQ(request.file, folder.getChildFile("new.qhp"));

    request = CommandLine::routeSecondInstance(path(input).quoted(), "qhp", folder);
    EXPECT_EQ(request.route, Route::image);
    EXPECT_EQ(request.file, input);

    EXPECT_EQ(CommandLine::routeSecondInstance(path(folder.getChildFile("gone.png")), "qhp", folder).route, Route::nothing);
    EXPECT_EQ(CommandLine::routeSecondInstance(path(folder), "qhp", folder).route, Route::nothing);
    EXPECT_EQ(CommandLine::routeSecondInstance("", "qhp", folder).route, Route::nothing);
}

TEST_F(CommandLineFiles, ForwardedRelativePathSurvivesAnotherWorkingFolder)
{
    // The second launch runs in the picture's folder; the first resolves against its own.
    const auto text = CommandLine::forwardableText("in put.png", folder);
    const auto request = CommandLine::routeSecondInstance(text, "qhp", juce::File("/"));
    EXPECT_EQ(request.route, CommandLine::Route::image);
    EXPECT_EQ(request.file, input);

    EXPECT_EQ(CommandLine::forwardableText("-r a,b", folder), "-r a,b");
    EXPECT_EQ(CommandLine::forwardableText("missing.png", folder), "missing.png");
}
