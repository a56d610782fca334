#include "GLTestFilters.h"
#include "gpu/FilterChain.h"
#include "gpu/GLProgram.h"
#include "gpu/GPUImageFilterGroup.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/GPUImageRawDataInput.h"
#include "gpu/ProgramCache.h"
#include "gpu/TiledRunner.h"
#include "support/TestImages.h"

#include <gtest/gtest.h>

namespace
{
struct CountingTarget : GPUImageFilter
{
    explicit CountingTarget(int& deletions) : deleted(deletions) {}
    ~CountingTarget() override { ++deleted; }
    int& deleted;
};
} // namespace

TEST(FilterCore, OneTexelThroughTheSwizzlingIdentityKeepsAllFourBytes)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* swizzle = chain.make<GPUImageFilter>();
    swizzle->initWithFragmentShader(juce::String(ShaderStore::swizzlePrefix) + "\n" + ShaderStore::text("swizzle_identity.frag"));

    for (const uint8_t value : { 0x00, 0x01, 0x7f, 0x80, 0xfe, 0xff })
    {
        SxImageRgbaBytes pixel(1, 1);
        const uint8_t bytes[4] = { value, (uint8_t) (value ^ 0x55), (uint8_t) (255 - value), (uint8_t) (value / 3) };
        std::memcpy(pixel.pixels, bytes, 4);
        TiledRunner::run(pixel, *swizzle, *swizzle, 0);
        EXPECT_EQ(0, std::memcmp(pixel.pixels, bytes, 4)) << (int) value;
    }
}

TEST(FilterCore, RemoveTargetDeletesWhileRemoveAllTargetsOnlyForgets)
{
    ScopedGLContext scoped;
    int deletions = 0;
    GPUImageFilter source;
    auto* a = new CountingTarget(deletions);
    auto* b = new CountingTarget(deletions);
    source.addTarget(a);
    source.addTarget(b);
    source.addTarget(a); // already there: nothing changes
    EXPECT_EQ(source.targets.size(), 2u);

    source.removeTarget(a);
    EXPECT_EQ(deletions, 1);
    EXPECT_EQ(source.targets.size(), 1u);

    source.removeAllTargets();
    EXPECT_EQ(deletions, 1);
    EXPECT_TRUE(source.targets.empty());
    delete b;
}

TEST(FilterCore, UniformSetTwiceUnderOneNameIsQueuedOnce)
{
    GPUImageFilter filter;
    filter.setFloat(1.0f, "amount");
    filter.setFloat(2.0f, "other");
    filter.setFloat(3.0f, "amount");
    ASSERT_EQ(filter.pendingFloatUniforms.size(), 2u);
    EXPECT_EQ(filter.pendingFloatUniforms.names.back(), "amount");
    EXPECT_EQ(filter.pendingFloatUniforms.values.back(), 3.0f);
}

TEST(FilterCore, CachedProgramsAreSharedAndReplacedWhenTheirTextChanges)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* first = chain.add(TestFilters::identity());
    auto* second = chain.add(TestFilters::identity());
    EXPECT_EQ(first->filterProgram, second->filterProgram);

    auto* blur1 = chain.make<TestFilters::BoxBlurFilter>(1);
    GLProgram* radius1 = blur1->filterProgram;
    EXPECT_EQ(ProgramCache::getInstance().find(blur1->getClassName()), radius1);

    auto* blur2 = chain.make<TestFilters::BoxBlurFilter>(2);
    EXPECT_NE(blur2->filterProgram, radius1);
    EXPECT_EQ(ProgramCache::getInstance().find(blur2->getClassName()), blur2->filterProgram);
    auto* blur1Again = chain.make<TestFilters::BoxBlurFilter>(1);
    EXPECT_EQ(ProgramCache::getInstance().find(blur1Again->getClassName()), blur1Again->filterProgram);
    EXPECT_TRUE(ProgramCache::getInstance().sourceOf(blur1Again->getClassName()).contains("y <= 1;"));
}

TEST(FilterCore, TwoPassFilterHandsItsSecondTextureToTargets)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* twoPass = chain.make<TestFilters::DoubleInvertFilter>();
    auto* after = chain.add(TestFilters::identity());
    twoPass->addTarget(after);
    EXPECT_EQ(after->filterSourceTexture, twoPass->secondFilterOutputTexture);
    EXPECT_NE(twoPass->secondFilterOutputTexture, twoPass->outputTexture);

    SxImageRgbaBytes image(37, 23);
    TestImages::fillRandom(image);
    SxImageRgbaBytes original(image);
    TiledRunner::run(image, *twoPass, *after, 0);
    EXPECT_EQ(TestImages::maxDifference(image, original), 0); // invert twice = identity
}

TEST(FilterCore, GroupWithTwoInputFilterAveragesAnImageWithItsInverse)
{
    ScopedGLContext scoped;
    FilterChain chain;
    auto* group = chain.make<GPUImageFilterGroup>();
    auto* invert = group->addFilter(new TestFilters::InvertFilter());
    auto* average = group->addFilter(new TestFilters::AverageFilter());
    // The average draws once, when its second input (the inverse) is ready.
    invert->addTarget(average, 1);
    group->initialFilters = { average, invert };
    group->inputFilterToIgnoreForUpdates = average;
    group->terminalFilter = average;

    SxImageRgbaBytes image(64, 48);
    TestImages::fillRandom(image);
    TiledRunner::run(image, *group, *group, 0);
    for (size_t i = 0; i < image.byteCount(); ++i)
        ASSERT_NEAR(image.pixels[i], 127.5, 1.0) << i;
}

TEST(FilterCore, AFilterWithoutInputDrawsNothing)
{
    ScopedGLContext scoped;
    auto filter = std::unique_ptr<GPUImageFilter>(TestFilters::identity());
    filter->newFrameReady();
    EXPECT_EQ(filter->filterFramebuffer, 0u);
    filter->destroy();
}
