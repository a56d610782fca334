// Which presets a folder shows and in what order: file order with favourites first, the stored
// favourites string, the thumbnail's sources, and damaged files that get no place.

#include "presets/BuiltInPresets.h"
#include "presets/PresetFile.h"
#include "presets/PresetListing.h"

#include <gtest/gtest.h>

namespace
{
struct PresetFolder : ::testing::Test
{
    void SetUp() override { ASSERT_TRUE(folder.createDirectory()); }
    void TearDown() override { folder.deleteRecursively(); }

    juce::File write(const juce::String& name, const juce::MemoryBlock& bytes)
    {
        const auto file = folder.getChildFile(name);
        EXPECT_TRUE(file.replaceWithData(bytes.getData(), bytes.getSize()));
        return file;
    }
    juce::File builtIn(const juce::String& name, int index = 0) { return write(name, BuiltInPresets::getPresetFile(index)); }
    static juce::String names(const juce::Array<juce::File>& files)
    {
        juce::StringArray out;
        for (const auto& f : files)
            out.add(f.getFileName());
        return out.joinIntoString(" ");
    }

    juce::File folder = juce::File::createTempFile("presets");
};
} // namespace

TEST_F(PresetFolder, OrderIsFileOrderWithFavouritesFirstAndDamagedFilesLeftOut)
{
    for (const auto* name : { "c.pre", "a.pre", "d.pre", "b.pre" })
        builtIn(name);
    write("e.prel", BuiltInPresets::getPresetFile(0));
    write("f.jpg", BuiltInPresets::getThumbnail(0));
    // Damaged: empty, a header cut short, a count with no pairs behind it, text that is no preset.
    ASSERT_TRUE(folder.getChildFile("g.pre").create());
    write("h.pre", juce::MemoryBlock("VER3\0\0", 6));
    write("i.pre", juce::MemoryBlock("VER2\x05\0\0\0", 8));
    write("j.pre", juce::MemoryBlock("\x01\x02\xff\xfe", 4));

    const auto files = PresetListing::presetFiles(folder);
    EXPECT_EQ(names(files), "a.pre b.pre c.pre d.pre g.pre h.pre i.pre j.pre");
    EXPECT_EQ(names(PresetListing::imageFiles(folder)), "f.jpg");

    // Favourites keep file order among themselves, not the order they were marked in; a stored
    // name with no file (deleted, or the full name with extension) changes nothing.
    const std::vector<juce::String> favourites { "d", "b", "gone", "c.pre" };
    EXPECT_EQ(names(PresetListing::displayOrder(files, favourites)), "b.pre d.pre a.pre c.pre");
    EXPECT_EQ(names(PresetListing::displayOrder(files, {})), "a.pre b.pre c.pre d.pre");
    EXPECT_TRUE(PresetListing::presetFiles(folder.getChildFile("missing")).isEmpty());
}

TEST(PresetFavourites, StoredStringRoundTripsAndSplitsAtEverySemicolon)
{
    const std::vector<juce::String> names { "05 Colorize Medium", "My Look", juce::String::fromUTF8("Ünder") };
    EXPECT_EQ(PresetListing::favouritesString(names), juce::String::fromUTF8("05 Colorize Medium;My Look;Ünder;"));
    EXPECT_EQ(PresetListing::parseFavourites(PresetListing::favouritesString(names)), names);
    EXPECT_TRUE(PresetListing::parseFavourites({}).empty());
    // A name holding ";" comes back as two names: the stored form cannot say otherwise.
    EXPECT_EQ(PresetListing::parseFavourites(PresetListing::favouritesString({ "a;b" })), (std::vector<juce::String> { "a", "b" }));
}

TEST_F(PresetFolder, ThumbnailComesFromTheCompanionThenTheEmbeddedPreview)
{
    // A built-in with its picture beside it.
    const auto withPicture = builtIn("01.pre");
    write("01.jpg", BuiltInPresets::getThumbnail(0));
    EXPECT_EQ(PresetListing::thumbnailFor(withPicture).getWidth(), 200);

    // A saved preset carries its own 400 x 400 preview; a picture beside it that does not
    // decode is passed over for it.
    SxImageRgbaBytes composite(60, 40);
    juce::MemoryOutputStream saved;
    SxPropertySet settings;
    settings.setString("contrast", "0.4");
    ASSERT_TRUE(PresetFile::write(saved, settings, &composite));
    const auto own = write("02.pre", saved.getMemoryBlock());
    EXPECT_EQ(PresetListing::thumbnailFor(own).getWidth(), PresetFile::previewSide);
    write("02.jpg", juce::MemoryBlock("\xff\xd8\xff\xe0garbage", 11));
    EXPECT_EQ(PresetListing::thumbnailFor(own).getWidth(), PresetFile::previewSide);

    // No picture anywhere, or a damaged embedded one: no thumbnail, and no crash.
    EXPECT_FALSE(PresetListing::thumbnailFor(builtIn("03.pre")).isValid());
    const auto corrupt = juce::File(TORNVALE_SOURCE_DIR "/tests/presets/regressions/corrupt-preview-jpeg.pre");
    EXPECT_FALSE(PresetListing::thumbnailFor(corrupt).isValid());
    EXPECT_FALSE(PresetListing::thumbnailFor(folder.getChildFile("missing.pre")).isValid());
}
