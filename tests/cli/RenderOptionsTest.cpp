#include "cli/render/RenderJob.h"
#include "cli/render/RenderOptions.h"

#include <gtest/gtest.h>

namespace
{
std::optional<RenderOptions> parse(const juce::String& line, juce::String& error)
{
    // Split as a shell would: spaces separate, quotes group and are dropped.
    auto arguments = juce::StringArray::fromTokens(line, " ", "\"");
    for (auto& argument : arguments)
        argument = argument.unquoted();
    arguments.removeEmptyStrings();
    return RenderCommandLine::parse(arguments, error);
}
} // namespace

TEST(RenderCommandLine, ParsesEveryOption)
{
    juce::String error;
    const auto o = parse("-o out --format TIFF --preset \"01 Tornvale\" --set strokeLength=0.8 --set strokeStyle=1 "
                         "--seed 12 --size preview --overwrite a.jpg b.png", error);
    ASSERT_TRUE(o) << error;
    EXPECT_EQ(o->output, "out");
    EXPECT_EQ(o->format, "tif");
    EXPECT_EQ(o->preset, "01 Tornvale");
    ASSERT_EQ(o->settings.size(), 2u);
    EXPECT_EQ(o->settings[1].first, "strokeStyle");
    EXPECT_EQ(*o->randomSettings, 12);
    EXPECT_TRUE(o->previewSize);
    EXPECT_TRUE(o->overwrite);
    EXPECT_EQ(o->inputs, juce::StringArray({ "a.jpg", "b.png" }));
}

TEST(RenderCommandLine, UsageErrorsSayWhatIsWrong)
{
    juce::String error;
    for (const char* line : { "", "--format gif a.jpg", "--set colour=1 a.jpg", "--set strokeLength=lots a.jpg",
                              "--seed -3 a.jpg", "--size huge a.jpg", "--bogus a.jpg", "a.jpg -o", "a.jpg --mask" })
    {
        error.clear();
        EXPECT_FALSE(parse(line, error)) << line;
        EXPECT_TRUE(error.isNotEmpty()) << line;
    }
    EXPECT_TRUE(parse("--help", error));
    EXPECT_TRUE(parse("--list-presets", error));
}

TEST(RenderOutputs, NamesAreNumberedAndExtensionsFollowTheFormat)
{
    const auto folder = juce::File::createTempFile("render-names");
    folder.createDirectory();
    const auto taken = folder.getChildFile("photo_tornvale.jpg");
    taken.replaceWithText("x");
    folder.getChildFile("photo_tornvale (1).jpg").replaceWithText("x");
    EXPECT_EQ(RenderJob::freeName(taken, false).getFileName(), "photo_tornvale (2).jpg");
    EXPECT_EQ(RenderJob::freeName(taken, true), taken);

    RenderOptions options;
    RenderJob job(options);
    const auto input = folder.getChildFile("photo.JPG");
    EXPECT_EQ(job.outputFor(input, 1).getFileName(), "photo_tornvale.JPG");
    options.format = "png";
    EXPECT_EQ(job.outputFor(input, 1).getFileName(), "photo_tornvale.png");
    options.output = folder.getChildFile("result").getFullPathName();
    EXPECT_EQ(job.outputFor(input, 1).getFileName(), "result.png"); // no extension: the format's
    options.output = folder.getFullPathName();
    EXPECT_EQ(job.outputFor(input, 3).getParentDirectory(), folder); // several inputs: a folder
    folder.deleteRecursively();
}
