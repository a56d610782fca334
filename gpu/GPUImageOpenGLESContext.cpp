#include "gpu/GPUImageOpenGLESContext.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

bool useDesktopGL = false;
std::atomic<int> maxTextureSize { 0 };

namespace
{
template <typename Fn>
Fn eglProc(const char* name)
{
    return reinterpret_cast<Fn>(eglGetProcAddress(name));
}

bool initialise(EGLDisplay display)
{
    if (display == EGL_NO_DISPLAY)
        return false;
    EGLint major = 0, minor = 0;
    return eglInitialize(display, &major, &minor) == EGL_TRUE;
}
} // namespace

GPUImageOpenGLESContext& GPUImageOpenGLESContext::sharedImageProcessingContext()
{
    // Never destroyed: filters may still release GL objects while static destructors run.
    static auto* instance = new GPUImageOpenGLESContext();
    return *instance;
}

GPUImageOpenGLESContext::~GPUImageOpenGLESContext()
{
    if (display != EGL_NO_DISPLAY)
    {
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (context != EGL_NO_CONTEXT)
            eglDestroyContext(display, context);
        if (surface != EGL_NO_SURFACE)
            eglDestroySurface(display, surface);
        eglTerminate(display);
    }
}

bool GPUImageOpenGLESContext::initialiseDisplay()
{
    // An X display that cannot be reached makes Mesa's default display fail to initialise;
    // the surfaceless platform then gives llvmpipe or the GPU without any window system.
    if (std::getenv("TORNVALE_EGL_SURFACELESS") == nullptr)
    {
        display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        if (initialise(display))
        {
            platformName = "default";
            return true;
        }
    }

    auto getPlatformDisplay = eglProc<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
    if (getPlatformDisplay != nullptr)
    {
        display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (initialise(display))
        {
            platformName = "surfaceless";
            return true;
        }

        // Vendor drivers without Mesa's platform still expose their devices.
        auto queryDevices = eglProc<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
        EGLDeviceEXT devices[8];
        EGLint count = 0;
        if (queryDevices != nullptr && queryDevices(8, devices, &count) == EGL_TRUE)
        {
            for (EGLint i = 0; i < count; ++i)
            {
                display = getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
                if (initialise(display))
                {
                    platformName = "device";
                    return true;
                }
            }
        }
    }
    display = EGL_NO_DISPLAY;
    return false;
}

bool GPUImageOpenGLESContext::create()
{
    if (!initialiseDisplay())
        return false;

    eglQueryString(display, EGL_EXTENSIONS);
    eglBindAPI(EGL_OPENGL_ES_API);

    const EGLint configAttributes[] = { EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,
                                        EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT,
                                        EGL_RED_SIZE, 8, EGL_GREEN_SIZE, 8, EGL_BLUE_SIZE, 8, EGL_ALPHA_SIZE, 8,
                                        EGL_NONE };
    EGLConfig config = nullptr;
    EGLint configCount = 0;
    if (eglChooseConfig(display, configAttributes, &config, 1, &configCount) != EGL_TRUE || configCount < 1)
    {
        // Surfaceless displays may offer no pbuffer configuration: draw without a surface then,
        // which every filter does anyway since each renders into its own framebuffer.
        const EGLint anyConfig[] = { EGL_RENDERABLE_TYPE, EGL_OPENGL_ES2_BIT, EGL_NONE };
        if (eglChooseConfig(display, anyConfig, &config, 1, &configCount) != EGL_TRUE || configCount < 1)
            return false;
    }
    else
    {
        const EGLint surfaceAttributes[] = { EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE };
        surface = eglCreatePbufferSurface(display, config, surfaceAttributes);
    }

    const EGLint contextAttributes[] = { EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE };
    context = eglCreateContext(display, config, EGL_NO_CONTEXT, contextAttributes);
    if (context == EGL_NO_CONTEXT)
        return false;

    eglMakeCurrent(display, surface, surface, context);
    if (eglGetError() != EGL_SUCCESS)
    {
        eglDestroyContext(display, context);
        context = EGL_NO_CONTEXT;
        return false;
    }
    eglSwapInterval(display, 0);
    return true;
}

bool GPUImageOpenGLESContext::acquireContext()
{
    ++useCount;
    if (context == EGL_NO_CONTEXT)
    {
        if (creationFailed)
            return false;
        if (!create())
        {
            creationFailed = true;
            return false;
        }
    }
    if (eglGetCurrentContext() != context)
        eglMakeCurrent(display, surface, surface, context);
    return true;
}

void GPUImageOpenGLESContext::releaseContext()
{
    if (--useCount < 1)
    {
        useCount = 0;
        if (display != EGL_NO_DISPLAY)
            eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
}

void GPUImageOpenGLESContext::resetContext()
{
    useCount = 0;
    if (display != EGL_NO_DISPLAY)
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

juce::String GPUImageOpenGLESContext::getRendererString()
{
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return "no GL context";
    return juce::String(reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
}

juce::String GPUImageOpenGLESContext::getVersionString()
{
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return {};
    return juce::String(reinterpret_cast<const char*>(glGetString(GL_VERSION)));
}

int GPUImageOpenGLESContext::queryMaxTextureSize()
{
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return 0;
    GLint size = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    return size;
}

int GPUImageOpenGLESContext::maximumTileSize()
{
    int tile = std::min(2000, (int) (0.95 * queryMaxTextureSize()));
    if (const char* limit = std::getenv("TORNVALE_MAX_TILE"))
    {
        const int requested = std::atoi(limit);
        if (requested > 0)
            tile = std::min(tile, requested);
    }
    return std::max(1, tile);
}
