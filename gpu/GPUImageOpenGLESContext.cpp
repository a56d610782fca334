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

bool GPUImageOpenGLESContext::supportsHalfFloatTargets()
{
    if (!halfFloatTargetsAllowed)
        return false;
    if (halfFloatTargets >= 0)
        return halfFloatTargets == 1;
    ScopedGLContext scoped;
    if (!scoped.isValid())
        return false;
    halfFloatTargets = 0;
    const auto* text = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    const auto extensions = juce::StringArray::fromTokens(text != nullptr ? text : "", " ", "");
    if (std::getenv("TORNVALE_NO_HALF_FLOAT") != nullptr || !extensions.contains("GL_OES_texture_half_float")
        || !extensions.contains("GL_OES_texture_half_float_linear"))
        return false;

    // The colour-buffer extension is not always listed where drawing works; a framebuffer says.
    for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i)
    {
    }
    GLuint texture = 0, framebuffer = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 4, 0, GL_RGBA, GL_HALF_FLOAT_OES, nullptr);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture, 0);
    const bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE && glGetError() == GL_NO_ERROR;
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteTextures(1, &texture);
    halfFloatTargets = complete ? 1 : 0;
    return complete;
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
