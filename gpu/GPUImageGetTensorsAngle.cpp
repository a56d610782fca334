#include "gpu/GPUImageGetTensorsAngle.h"
#include "gpu/ShaderStore.h"

bool GPUImageGetTensorsAngle::init()
{
    return initWithFragmentShader(ShaderStore::text("get_tensors_angle.frag"));
}
