#pragma once
// The program's one off-screen OpenGL ES 2 context: a 1 × 1 pbuffer that every filter draws
// through into its own framebuffers. Threads take it by a counted acquisition and hand it back;
// only the outermost release unbinds it, so nested users on one thread cost nothing.
//
// The display is the default EGL display when it initialises (an X server under Xvfb or a desktop),
// else Mesa's surfaceless platform, else the first EGL device, so that the engine runs on headless
// servers, on llvmpipe and on a GPU driver alike.

#include "gpu/GLHeaders.h"

#include <juce_core/juce_core.h>

#include <atomic>
#include <cstdint>

/** Set once at start-up; only the ES path exists, so it stays false. */
extern bool useDesktopGL;

/** GL_MAX_TEXTURE_SIZE as read at application start; 0 until then. */
extern std::atomic<int> maxTextureSize;

class GPUImageOpenGLESContext
{
public:
    static GPUImageOpenGLESContext& sharedImageProcessingContext();
    virtual ~GPUImageOpenGLESContext();

    /** Makes the context current on this thread, creating it on first use. Every acquisition is
        paired with a release. Returns false when no context could be made. */
    bool acquireContext();
    void releaseContext();

    /** Ends whatever nesting is left on this thread and unbinds the context, as a whole render does
        when it finishes, so that another thread may take it. */
    void resetContext();

    bool isAvailable() const { return context != EGL_NO_CONTEXT; }
    int32_t getUseCount() const { return useCount; }

    /** Reads strings and limits with the context acquired around the query. */
    juce::String getRendererString();
    juce::String getVersionString();
    int queryMaxTextureSize();

    /** The largest square a tile may have: min(2000, 0.95 × GL_MAX_TEXTURE_SIZE), lowered further
        by the TORNVALE_MAX_TILE environment variable when that holds a smaller positive number. */
    int maximumTileSize();

    /** Which EGL platform gave the display: "default", "surfaceless" or "device". */
    juce::String getPlatformName() const { return platformName; }

private:
    GPUImageOpenGLESContext() = default;
    bool create();
    bool initialiseDisplay();

    EGLContext context = EGL_NO_CONTEXT;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface surface = EGL_NO_SURFACE;
    void* helperComponent = nullptr; // only a desktop path would need a window; none exists
    void* desktopContext = nullptr;
    int32_t useCount = 0;

    bool creationFailed = false;
    juce::String platformName;
};

/** Acquires the shared context for a scope. */
class ScopedGLContext
{
public:
    ScopedGLContext() : ok(GPUImageOpenGLESContext::sharedImageProcessingContext().acquireContext()) {}
    ~ScopedGLContext() { GPUImageOpenGLESContext::sharedImageProcessingContext().releaseContext(); }
    ScopedGLContext(const ScopedGLContext&) = delete;
    ScopedGLContext& operator=(const ScopedGLContext&) = delete;
    bool isValid() const { return ok; }

private:
    bool ok;
};
