#include "imaging/ImageRGBAPixelData.h"
#include "imaging/SxImageCache.h"
#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"
#include "imaging/SxImageRgbaFloat.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
struct CountedImage : SxImageRgbaBytes
{
    CountedImage(int w, int h, bool& deletedFlag) : SxImageRgbaBytes(w, h), deleted(deletedFlag) {}
    ~CountedImage() override { deleted = true; }
    bool& deleted;
};

void setPixel(SxImageRgbaBytes& image, int x, int y, uint8_t a, uint8_t r, uint8_t g, uint8_t b)
{
    uint8_t* p = image.pixelAt(x, y);
    p[0] = a; p[1] = r; p[2] = g; p[3] = b;
}
} // namespace

TEST(SxImageLifetime, ReleaseOfLastReferenceDeletes)
{
    bool deleted = false;
    auto* image = new CountedImage(2, 2, deleted);
    image->retain();
    image->release();
    EXPECT_FALSE(deleted);
    image->release();
    EXPECT_TRUE(deleted);

    deleted = false;
    {
        auto ref = SxRef<SxImageRgbaBytes>::adopt(new CountedImage(1, 1, deleted));
        auto copy = ref;
        EXPECT_EQ(ref->getReferenceCount(), 2);
    }
    EXPECT_TRUE(deleted);
}

TEST(SxImageRgbaBytes, NewImagesAreTransparentBlackAndClonesAreDeep)
{
    SxImageRgbaBytes image(7, 3);
    for (size_t i = 0; i < image.byteCount(); ++i)
        ASSERT_EQ(image.pixels[i], 0);

    TestImages::fillRandom(image);
    auto clone = SxRef<SxImageRgbaBytes>::adopt(image.clone());
    EXPECT_EQ(TestImages::maxDifference(image, *clone), 0);
    clone->pixels[0] ^= 0xff;
    EXPECT_NE(image.pixels[0], clone->pixels[0]);
}

TEST(SxImageRgbaBytes, CopyRectClipsAgainstBothImages)
{
    SxImageRgbaBytes source(10, 10), dest(6, 6);
    TestImages::fillRandom(source);

    // Partly outside both images: only the overlap moves, nothing else is touched.
    dest.copyRect(source, { 7, -2, 5, 5 }, { -1, 4, 5, 5 });
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x)
        {
            const int sx = x + 8, sy = y - 6;
            const bool copied = x <= 3 && y >= 4 && sx < 10 && sy >= 0;
            for (int c = 0; c < 4; ++c)
                ASSERT_EQ(dest.pixelAt(x, y)[c], copied ? source.pixelAt(sx, sy)[c] : 0) << x << "," << y;
        }
}

TEST(SxImageRgbaBytes, ResizeWithQuality50GivesTheSizeAndZeroPixels)
{
    SxImageRgbaBytes image(40, 30);
    TestImages::fillRandom(image);
    uint8_t* before = image.pixels;
    image.resize(17, 9, 50);
    EXPECT_EQ(image.width, 17);
    EXPECT_EQ(image.height, 9);
    EXPECT_NE(image.pixels, before);
    for (size_t i = 0; i < image.byteCount(); ++i)
        ASSERT_EQ(image.pixels[i], 0);
}

TEST(SxImageRgbaBytes, ScaleIntoWithEqualSizesIsAnExactCopy)
{
    SxImageRgbaBytes source(50, 40), dest(30, 30);
    TestImages::fillRandom(source);
    for (int quality : { 0, 1, 3 })
    {
        dest.clear();
        dest.scaleInto(source, { 5, 5, 20, 10 }, { 12, 20, 20, 10 }, quality);
        for (int y = 0; y < 10; ++y)
            ASSERT_EQ(0, std::memcmp(dest.pixelAt(5, 5 + y), source.pixelAt(12, 20 + y), 80)) << quality;
    }
}

TEST(SxImageRgbaBytes, CompositeOverFollowsStraightAlphaOver)
{
    SxImageRgbaBytes dest(3, 1), source(3, 1);
    setPixel(dest, 0, 0, 200, 10, 20, 30);
    setPixel(dest, 1, 0, 200, 10, 20, 30);
    setPixel(dest, 2, 0, 90, 250, 0, 128);
    setPixel(source, 0, 0, 0, 255, 255, 255);   // alpha 0 leaves the destination
    setPixel(source, 1, 0, 255, 1, 2, 3);       // alpha 255 replaces it
    setPixel(source, 2, 0, 100, 40, 200, 60);   // in between: the over operator

    dest.compositeOver(source, dest.bounds());
    EXPECT_EQ(std::vector<uint8_t>(dest.pixelAt(0, 0), dest.pixelAt(0, 0) + 4), (std::vector<uint8_t> { 200, 10, 20, 30 }));
    EXPECT_EQ(std::vector<uint8_t>(dest.pixelAt(1, 0), dest.pixelAt(1, 0) + 4), (std::vector<uint8_t> { 255, 1, 2, 3 }));

    // Independent float form of "over": a = sa + da(1 - sa), c = (cs sa + cd da (1 - sa)) / a.
    const double sa = 100 / 255.0, da = 90 / 255.0;
    const double a = sa + da * (1 - sa);
    const double expected[3] = { (40 * sa + 250 * da * (1 - sa)) / a, (200 * sa + 0 * da * (1 - sa)) / a,
                                 (60 * sa + 128 * da * (1 - sa)) / a };
    EXPECT_NEAR(dest.pixelAt(2, 0)[0], a * 255, 1.0);
    for (int c = 0; c < 3; ++c)
        EXPECT_NEAR(dest.pixelAt(2, 0)[c + 1], expected[c], 1.0);
}

TEST(SxImageConversion, JuceImageRoundTripKeepsOpaquePixelsExactly)
{
    SxImageRgbaBytes image(16, 9);
    TestImages::fillRandom(image);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            image.pixelAt(x, y)[0] = (x % 3 == 0) ? 255 : image.pixelAt(x, y)[0];

    const auto juceImage = SxImageConversion::toJuceImage(image);
    // JUCE draws what we hold: red stays red.
    EXPECT_EQ(juceImage.getPixelAt(3, 2).getRed(), image.pixelAt(3, 2)[1]);
    auto back = SxRef<SxImageRgbaBytes>::adopt(SxImageConversion::fromJuceImage(juceImage));
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
        {
            const uint8_t* a = image.pixelAt(x, y);
            const uint8_t* b = back->pixelAt(x, y);
            ASSERT_EQ(a[0], b[0]);
            // Premultiplying truncates to 8 bits and unpremultiplying scales the loss by 255 / alpha.
            const int tolerance = a[0] == 255 ? 0 : (a[0] == 0 ? 255 : 2 * 255 / a[0] + 1);
            for (int c = 1; c < 4; ++c)
                ASSERT_LE(std::abs(a[c] - b[c]), tolerance) << x << "," << y;
        }
}

TEST(SxImageAlphaByte, FillInvertAndResample)
{
    SxImageAlphaByte mask(8, 4);
    mask.fill(60);
    mask.invert();
    EXPECT_EQ(mask.pixels[5], 195);

    // Left half 0, right half 255: halving keeps the edge exactly between them.
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 8; ++x)
            *mask.pixelAt(x, y) = x < 4 ? 0 : 255;
    uint8_t* before = mask.pixels;
    mask.resample(4, 2);
    EXPECT_NE(mask.pixels, before);
    EXPECT_EQ(*mask.pixelAt(1, 1), 0);
    EXPECT_EQ(*mask.pixelAt(2, 0), 255);
}

TEST(SxImageRgbaFloat, BytesSurviveTheFloatForm)
{
    SxImageRgbaBytes image(5, 5);
    TestImages::fillRandom(image);
    auto floats = SxRef<SxImageRgbaFloat>::adopt(SxImageRgbaFloat::fromBytes(image));
    auto back = SxRef<SxImageRgbaBytes>::adopt(floats->toBytes());
    EXPECT_EQ(TestImages::maxDifference(image, *back), 0);
}

TEST(SxImageCache, KeepsOneImageANameAndReleasesWhatItDrops)
{
    bool firstDeleted = false, secondDeleted = false;
    {
        SxColorImageCache cache;
        cache.add("brush", new CountedImage(4, 4, firstDeleted));
        EXPECT_NE(cache.find("brush"), nullptr);
        EXPECT_EQ(cache.find("other"), nullptr);
        cache.add("brush", new CountedImage(8, 8, secondDeleted)); // replaces and releases the old one
        EXPECT_TRUE(firstDeleted);
        EXPECT_EQ(cache.find("brush")->width, 8);
        EXPECT_EQ(cache.size(), 1u);
    }
    EXPECT_TRUE(secondDeleted);
}

TEST(SxImageRgbaBytes, CompositeWithMaskBlendsByTheMaskAndOnlyInTheRectangle)
{
    SxImageRgbaBytes dest(4, 1), source(4, 1);
    SxImageAlphaByte mask(4, 1);
    for (int x = 0; x < 4; ++x)
    {
        setPixel(dest, x, 0, 255, 200, 100, 0);
        setPixel(source, x, 0, 255, 0, 50, 250);
    }
    const uint8_t levels[4] = { 0, 255, 128, 255 };
    std::memcpy(mask.pixels, levels, 4);

    dest.compositeWithMask(source, mask, { 0, 0, 3, 1 }); // the last pixel lies outside
    EXPECT_EQ(std::vector<uint8_t>(dest.pixelAt(0, 0), dest.pixelAt(0, 0) + 4), (std::vector<uint8_t> { 255, 200, 100, 0 }));
    EXPECT_EQ(std::vector<uint8_t>(dest.pixelAt(1, 0), dest.pixelAt(1, 0) + 4), (std::vector<uint8_t> { 255, 0, 50, 250 }));
    // Half the mask on opaque pixels: a plain mix by 128 / 255.
    const double w = 128.0 / 255.0;
    EXPECT_NEAR(dest.pixelAt(2, 0)[1], 200 * (1 - w), 1.0);
    EXPECT_NEAR(dest.pixelAt(2, 0)[3], 250 * w, 1.0);
    EXPECT_EQ(dest.pixelAt(3, 0)[1], 200);

    // A full mask over an opaque source gives exactly the source, whatever was below.
    SxImageRgbaBytes below(8, 8), photo(8, 8);
    TestImages::fillRandom(below);
    TestImages::fillRandom(photo, 99);
    for (size_t i = 0; i < photo.byteCount(); i += 4)
        photo.pixels[i] = 255;
    SxImageAlphaByte full(8, 8);
    full.fill(255);
    below.compositeWithMask(photo, full);
    EXPECT_EQ(TestImages::maxDifference(below, photo), 0);
}
