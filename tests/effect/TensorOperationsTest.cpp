// The direction field and stroke pass operations: sizes, and that tiles do not show.

#include "effect/ColourOperations.h"
#include "effect/TensorOperations.h"
#include "gpu/GPUImageGetTensorsAngle.h"
#include "gpu/GPUTestImages.h"

#include <cmath>
#include <utility>

namespace
{

SxImageRgbaBytes photoAt(int width, int height)
{
    return GPUTestImages::photoAt("chelsea.png", width, height, 4);
}
} // namespace

TEST(TensorField, IsComputedAtTheFittedSize)
{
    EXPECT_EQ(EffectOperations::tensorFieldSize(100, 50), juce::Point<int>(1000, 500));
    EXPECT_EQ(EffectOperations::tensorFieldSize(3000, 2000), juce::Point<int>(1000, 667));
    EXPECT_EQ(EffectOperations::tensorFieldSize(451, 1000), juce::Point<int>(451, 1000));
    EXPECT_EQ(EffectOperations::tensorFieldSize(7, 7), juce::Point<int>(1000, 1000));

    ScopedGLContext scoped;
    SxImageRgbaBytes small(100, 50);
    TestImages::fillRandom(small);
    EffectOperations::computeTensorField(small, 0.0f, 3.0f, false);
    EXPECT_EQ(small.width, 1000);
    EXPECT_EQ(small.height, 500);

    SxImageRgbaBytes kept(120, 80);
    TestImages::fillRandom(kept);
    EffectOperations::computeTensorField(kept, 0.0f, 3.0f, true);
    EXPECT_EQ(kept.width, 120);
    EXPECT_EQ(kept.height, 80);
}

TEST(TensorField, TiledEqualsUntiled)
{
    ScopedGLContext scoped;
    const auto photo = photoAt(300, 200);
    // Both sides of the blur rule: one pair of passes, and repeated pairs.
    for (float tensorBlur : { 7.5f, 25.0f })
    {
        const TestImages::WholeAndTiled run(photo, 256, [&](SxImageRgbaBytes& image) {
            EffectOperations::computeTensorField(image, 1.0f, tensorBlur, false);
        });
        const auto& whole = run.whole;
        ASSERT_EQ(whole.width, 1000);
        EXPECT_EQ(TestImages::maxDifference(whole, run.tiled), 0) << tensorBlur;

        // A photo has structure: the field is not flat.
        float strongest = 0.0f;
        for (int y = 0; y < whole.height; y += 7)
            for (int x = 0; x < whole.width; x += 7)
            {
                const auto uv = GPUImageGetTensorsAngle::decode(whole.pixelAt(x, y));
                strongest = std::max(strongest, std::hypot(uv.x, uv.y));
            }
        EXPECT_GT(strongest, 0.5f) << tensorBlur;
    }
}

TEST(StrokePass, TiledEqualsUntiledAtFullAndHalfFieldSize)
{
    ScopedGLContext scoped;
    const auto photo = photoAt(400, 300);

    for (int divisor : { 1, 2 })
    {
        SxImageRgbaBytes tensors(photo);
        tensors.resize(photo.width / divisor, photo.height / divisor, 4);
        EffectOperations::computeTensorField(tensors, 1.0f, 7.5f, true);

        // The effect's numbers at a scale of 0.5, sharpening included. Every tap of the chain is
        // placed on the 1/256 grid that linear filtering weighs by, and tiles start on whole
        // blocks of the shrunk light blur, so a tile computes exactly what the whole picture does.
        const TestImages::WholeAndTiled run(SxImageRgbaBytes(photo.width, photo.height), 256, [&](SxImageRgbaBytes& result) {
            EffectOperations::renderStrokePass(result, photo, tensors, 3.25f, 6.56f, 0.4f, 0.75f, 0.8f, 11.0f, 0.6f, 0.5f);
        });
        EXPECT_EQ(TestImages::maxDifference(run.whole, run.tiled), 0) << divisor;
        // The pass changed the photo.
        EXPECT_GT(TestImages::maxDifference(run.whole, photo), 30) << divisor;
    }
}

TEST(StrokeStack, EqualsPassesMergedByLightenAndTilesDoNotShow)
{
    ScopedGLContext scoped;
    const auto photo = photoAt(400, 300);
    SxImageRgbaBytes tensors(photo);
    EffectOperations::computeTensorField(tensors, 1.0f, 7.5f, false);

    // The effect's numbers at the scale of a preview, sharpening included; the second case has a
    // line long enough for two levels and a light blur wide enough for a quarter size.
    for (const auto [lineLength, lightRadius] : { std::pair { 19.0f, 11.0f }, std::pair { 40.0f, 44.0f } })
    {
        const std::vector<float> angles { -1.2f, 0.3f, 1.4f };
        SxImageRgbaBytes merged(photo.width, photo.height);
        for (size_t i = 0; i < angles.size(); ++i)
        {
            SxImageRgbaBytes pass(photo.width, photo.height);
            EffectOperations::renderStrokePass(pass, photo, tensors, 3.25f, lineLength, angles[i], 2.2f, 1.33f, lightRadius, 0.19f, 1.46f);
            if (i == 0)
                merged.copyFrom(pass);
            else
                EffectOperations::lightenCombine(merged, pass, 1.0f);
        }
        const TestImages::WholeAndTiled run(SxImageRgbaBytes(photo.width, photo.height), 256, [&](SxImageRgbaBytes& result) {
            EffectOperations::renderStrokeStack(result, photo, tensors, 3.25f, lineLength, angles, 2.2f, 1.33f, lightRadius, 0.19f, 1.46f);
        });
        const auto& stack = run.whole;
        // The passes store the line blur and its blur in bytes before the sharpening scales their
        // rounding by 1 + amount; the stack sharpens first and stores the result in steps of
        // 1 + 2 amount levels with a dither, which the line blur averages (measured: 99th
        // percentile 4 to 5, largest 8 to 9, mean 0.9 to 1.0).
        const auto fromPasses = GPUTestImages::sortedDifferences(merged, stack);
        EXPECT_LE(fromPasses[fromPasses.size() * 99 / 100], 6) << lightRadius;
        EXPECT_LE(fromPasses.back(), 12) << lightRadius;
        EXPECT_LE(GPUTestImages::meanDifference(merged, stack), 1.5) << lightRadius;
        // Tiles: every fetch has the weights it has in the whole picture.
        EXPECT_EQ(TestImages::maxDifference(stack, run.tiled), 0) << lightRadius;
        EXPECT_GT(TestImages::maxDifference(stack, photo), 30) << lightRadius;
    }
}

TEST(StrokeStack, FinishInTheChainEqualsTheStepsRunAfterwards)
{
    ScopedGLContext scoped;
    const auto photo = photoAt(400, 300);
    SxImageRgbaBytes tensors(photo);
    EffectOperations::computeTensorField(tensors, 1.0f, 7.5f, false);
    const std::vector<float> angles { -1.2f, 0.3f, 1.4f };
    auto invert = [](SxImageRgbaBytes& image) {
        for (int i = 0; i < image.width * image.height; ++i)
            for (int c = 1; c < 4; ++c)
                image.pixels[i * 4 + c] = (uint8_t) (255 - image.pixels[i * 4 + c]);
    };

    for (const bool dark : { false, true })
        for (const float postSharpen : { 0.0f, 0.6f })
        {
            EffectOperations::StrokeFinish finish;
            finish.invert = dark;
            finish.saturation = 1.65f;
            finish.contrast = 0.25f;
            finish.unsharpRadius = 1.5f;
            finish.unsharpAmount = postSharpen;
            SxImageRgbaBytes source(photo);
            if (dark)
                invert(source);

            SxImageRgbaBytes inChain(photo.width, photo.height), afterwards(photo.width, photo.height);
            EffectOperations::renderStrokeStack(inChain, source, tensors, 3.25f, 19.0f, angles, 2.2f, 1.33f, 11.0f, 0.19f, 1.46f, &finish);
            EffectOperations::renderStrokeStack(afterwards, source, tensors, 3.25f, 19.0f, angles, 2.2f, 1.33f, 11.0f, 0.19f, 1.46f);
            if (dark)
                invert(afterwards);
            EffectOperations::applySaturateContrastGamma(afterwards, finish.saturation, finish.contrast, 0.0f, finish.luminanceWeights.data());
            if (postSharpen != 0.0f)
                EffectOperations::applyUnsharp(afterwards, finish.unsharpRadius, postSharpen);

            // Both round to bytes between the steps; only the inverted maximum may round a tie
            // the other way.
            EXPECT_LE(TestImages::maxDifference(inChain, afterwards), 1) << dark << " " << postSharpen;
            EXPECT_GT(TestImages::maxDifference(inChain, photo), 30) << dark << " " << postSharpen;
        }
}
