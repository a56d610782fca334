#include "gpu/GPUImageGetTensors.h"
#include "gpu/ShaderStore.h"

bool GPUImageGetTensors::init()
{
    return initWithShaders(ShaderStore::text("get_tensors.vert"), ShaderStore::text("get_tensors.frag"));
}
