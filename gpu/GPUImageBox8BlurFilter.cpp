#include "gpu/GPUImageBox8BlurFilter.h"

GPUImageBox8BlurFilter::GPUImageBox8BlurFilter()
{
    // Large blurs are rebuilt for every tile; compiling once per process is what keeps them cheap.
    useProgramCache = true;
}
