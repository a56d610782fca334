#pragma once
// The one place that includes the OpenGL ES 2 and EGL headers, so the rest of the engine agrees
// on the entry points (there is no desktop GL path).

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GLES2/gl2.h>
