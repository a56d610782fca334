#include "gpu/GLProgram.h"
#include "gpu/GPUImageOpenGLESContext.h"
#include "gpu/ShaderStore.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
GPUImageOpenGLESContext& context()
{
    return GPUImageOpenGLESContext::sharedImageProcessingContext();
}
} // namespace

TEST(GLContext, ComesUpHeadlessAndReportsLimits)
{
    ASSERT_TRUE(context().acquireContext()) << "no EGL context on this machine";
    context().releaseContext();
    EXPECT_TRUE(context().getVersionString().startsWith("OpenGL ES"));
    EXPECT_GE(context().queryMaxTextureSize(), 2048);
    EXPECT_FALSE(context().getRendererString().isEmpty());
    std::printf("renderer: %s via %s display\n", context().getRendererString().toRawUTF8(), context().getPlatformName().toRawUTF8());
}

TEST(GLContext, NestedAcquisitionsUnbindOnlyAtTheOutermostRelease)
{
    ASSERT_TRUE(context().acquireContext());
    ASSERT_TRUE(context().acquireContext());
    context().releaseContext();
    EXPECT_NE(eglGetCurrentContext(), EGL_NO_CONTEXT);
    EXPECT_EQ(context().getUseCount(), 1);
    context().releaseContext();
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
    EXPECT_EQ(context().getUseCount(), 0);
}

TEST(GLContext, AnotherThreadCanTakeTheContextOnceItIsReleased)
{
    bool otherThreadGotIt = false;
    std::thread worker([&] {
        ScopedGLContext scoped;
        otherThreadGotIt = scoped.isValid() && eglGetCurrentContext() != EGL_NO_CONTEXT;
    });
    worker.join();
    EXPECT_TRUE(otherThreadGotIt);

    // A render that ends with nesting left over hands the context back all the same.
    context().acquireContext();
    context().acquireContext();
    context().resetContext();
    EXPECT_EQ(eglGetCurrentContext(), EGL_NO_CONTEXT);
}

TEST(GLContext, TileLimitFollowsTheEnvironment)
{
    const int natural = context().maximumTileSize();
    EXPECT_LE(natural, 2000);
    EXPECT_LE(natural, (int) (0.95 * context().queryMaxTextureSize()));
    setenv("TORNVALE_MAX_TILE", "300", 1);
    EXPECT_EQ(context().maximumTileSize(), 300);
    setenv("TORNVALE_MAX_TILE", "999999", 1); // can only lower the limit
    EXPECT_EQ(context().maximumTileSize(), natural);
    unsetenv("TORNVALE_MAX_TILE");
}

TEST(GLProgram, LinksBindsAttributesAndReportsFailures)
{
    ScopedGLContext scoped;
    GLProgram good(ShaderStore::text("passthrough.vert"), ShaderStore::text("passthrough.frag"));
    good.addAttribute("position");
    good.addAttribute("inputTextureCoordinate");
    good.addAttribute("position"); // a second add keeps the first index
    ASSERT_TRUE(good.link());
    EXPECT_TRUE(good.initialized);
    EXPECT_EQ(good.vertShader, 0u);
    EXPECT_EQ(good.attributeIndex("inputTextureCoordinate"), 1u);
    EXPECT_EQ(good.attributeIndex("nothing"), ~(GLuint) 0);
    EXPECT_GE(good.uniformIndex("inputImageTexture"), 0);

    GLProgram bad(ShaderStore::text("passthrough.vert"), "void main() { this is not glsl }");
    EXPECT_FALSE(bad.link());
    EXPECT_FALSE(bad.initialized);
    EXPECT_FALSE(bad.fragmentShaderLog().isEmpty());
}
