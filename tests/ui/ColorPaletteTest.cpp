// Palette files and the colour grid: round trips through the file and through the row's own
// save and load, the defaults of a sparse file, and damaged files refused whole.

#include "ui/ColorPaletteFile.h"
#include "ui/SxLabelColorPickerWithColorHistory.h"

#include <gtest/gtest.h>

namespace
{
ColorPaletteFile::ReadResult readText(const juce::String& text)
{
    juce::MemoryInputStream in(text.toRawUTF8(), text.getNumBytesAsUTF8(), false);
    return ColorPaletteFile::read(in);
}

std::vector<juce::Colour> someColours(int count, juce::Random& random)
{
    std::vector<juce::Colour> colours;
    for (int i = 0; i < count; ++i)
        colours.push_back(juce::Colour((juce::uint32) random.nextInt()));
    return colours;
}

class Palettes : public ::testing::Test
{
protected:
    juce::ScopedJuceInitialiser_GUI gui;
    juce::TemporaryFile folder;
    juce::Random random { 17 };
};

TEST_F(Palettes, SavedAndLoadedKeepTheirColoursAndReplaceBothFiles)
{
    ASSERT_TRUE(folder.getFile().createDirectory());
    const auto file = folder.getFile().getChildFile("warm.qpl");
    const auto colours = someColours(30, random);
    ASSERT_TRUE(ColorPaletteFile::write(file, colours).wasOk());
    EXPECT_EQ(ColorPaletteFile::readFile(file).colours, colours);
    const auto picture = juce::ImageFileFormat::loadFrom(ColorPaletteFile::pictureFor(file));
    ASSERT_TRUE(picture.isValid());
    EXPECT_EQ(picture.getBounds(), juce::Rectangle<int>(0, 0, 200, 200));

    // The same name again: both files are the new palette's, and no temporary file stays.
    const std::vector<juce::Colour> blue { juce::Colour(0xff0000ff) };
    ASSERT_TRUE(ColorPaletteFile::write(file, blue).wasOk());
    EXPECT_EQ(ColorPaletteFile::readFile(file).colours, blue);
    const auto pixel = juce::ImageFileFormat::loadFrom(ColorPaletteFile::pictureFor(file)).getPixelAt(100, 100);
    EXPECT_GT(pixel.getBlue(), 240);
    EXPECT_LT(pixel.getRed(), 16);
    EXPECT_EQ(folder.getFile().getNumberOfChildFiles(juce::File::findFiles), 2);

    // A missing file is no palette and no error.
    const auto missing = ColorPaletteFile::readFile(folder.getFile().getChildFile("none.qpl"));
    EXPECT_TRUE(missing.ok());
    EXPECT_TRUE(missing.colours.empty());
}

TEST_F(Palettes, MissingKeysReadAsWhite)
{
    const auto empty = readText("<ColorPalette/>");
    ASSERT_TRUE(empty.ok());
    EXPECT_EQ(empty.colours, std::vector<juce::Colour>(27, juce::Colours::white));

    const auto sparse = readText("<ColorPalette totalColors=\"2\" ColorRed0=\"10\" ColorAlpha1=\"0\"/>");
    ASSERT_TRUE(sparse.ok());
    EXPECT_EQ(sparse.colours, (std::vector<juce::Colour> { juce::Colour(0xff0affffu), juce::Colour(0x00ffffffu) }));
}

TEST_F(Palettes, DamagedFilesAreRefusedWhole)
{
    for (const char* text : { "", "not xml", "<Other totalColors=\"1\"/>", "<ColorPalette totalColors=\"-1\"/>",
                              "<ColorPalette totalColors=\"999999999\"/>", "<ColorPalette totalColors=\"3x\"/>",
                              "<ColorPalette totalColors=\"1\" ColorGreen0=\"256\"/>",
                              "<ColorPalette totalColors=\"1\" ColorBlue0=\"-3\"/>", "<ColorPalette totalColors=\"1\"",
                              "<ColorPalette totalColors=\"3\" " })
    {
        SCOPED_TRACE(text);
        const auto result = readText(text);
        EXPECT_FALSE(result.ok());
        EXPECT_TRUE(result.colours.empty());
    }
    // Every cut of a good file, and random bytes, are refused.
    ASSERT_TRUE(folder.getFile().createDirectory());
    const auto file = folder.getFile().getChildFile("p.qpl");
    ASSERT_TRUE(ColorPaletteFile::write(file, someColours(5, random)).wasOk());
    const auto good = file.loadFileAsString();
    for (int cut = 0; cut < good.trimEnd().length(); ++cut)
        EXPECT_FALSE(readText(good.substring(0, cut)).ok()) << cut;
    for (int i = 0; i < 200; ++i)
    {
        juce::MemoryBlock bytes((size_t) random.nextInt(300));
        random.fillBitsRandomly(bytes.getData(), bytes.getSize());
        juce::MemoryInputStream in(bytes, false);
        EXPECT_FALSE(ColorPaletteFile::read(in).ok());
    }
}

TEST_F(Palettes, GridKeepsItsPixelRowAndRoundTripsThroughTheRow)
{
    SxLabelColorPickerWithColorHistory row("colorRow", nullptr, nullptr, folder.getFile());
    row.setSize(200, 200);
    auto& grid = row.getHistory();
    const auto colours = someColours(ColorHistoryComponent::capacity + 3, random);
    for (const auto& c : colours)
        grid.addColour(c);
    grid.select(4);
    ASSERT_TRUE(grid.removeSelected());
    // The oldest three went when the grid was full; the fifth left went on request.
    auto expected = std::vector<juce::Colour>(colours.begin() + 3, colours.end());
    expected.erase(expected.begin() + 4);
    EXPECT_EQ(grid.getColours(), expected);
    ASSERT_EQ(grid.getPixelRow().size(), expected.size() * 4);
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(juce::Colour(grid.getPixelRow()[i * 4], grid.getPixelRow()[i * 4 + 1], grid.getPixelRow()[i * 4 + 2],
                               grid.getPixelRow()[i * 4 + 3]),
                  expected[i]);

    ASSERT_TRUE(row.savePalette("Autumn").wasOk());
    row.resetPalette();
    EXPECT_EQ(grid.getNumColours(), 0);
    ASSERT_TRUE(row.loadPalette(row.paletteFile("Autumn")).wasOk());
    EXPECT_EQ(grid.getColours(), expected);
    EXPECT_EQ(row.getPaletteName(), "Autumn");

    // A damaged palette leaves the grid as it was.
    const auto damaged = folder.getFile().getChildFile("bad.qpl");
    ASSERT_TRUE(damaged.replaceWithText("<ColorPalette totalColors=\"2\" ColorRed1=\"700\"/>"));
    EXPECT_TRUE(row.loadPalette(damaged).failed());
    EXPECT_EQ(grid.getColours(), expected);
    EXPECT_EQ(row.getPaletteName(), "Autumn");
}
} // namespace
