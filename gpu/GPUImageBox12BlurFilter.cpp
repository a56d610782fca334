#include "gpu/GPUImageBox12BlurFilter.h"

GPUImageBox12BlurFilter::GPUImageBox12BlurFilter()
{
    // Large blurs are rebuilt for every tile; compiling once per process is what keeps them cheap.
    useProgramCache = true;
}
