#include "gpu/FilterChain.h"
#include "gpu/GPUImageOpenGLESContext.h"

FilterChain::~FilterChain()
{
    release();
}

void FilterChain::wire(std::initializer_list<GPUImageOutput*> sequence)
{
    GPUImageOutput* previous = nullptr;
    for (auto* node : sequence)
    {
        if (previous != nullptr)
            previous->addTarget(node);
        previous = node;
    }
}

void FilterChain::release()
{
    if (nodes.empty())
        return;
    ScopedGLContext scoped;
    // Forget every link first: destroy() must not reach a node that is already gone.
    for (auto* node : nodes)
        node->removeAllTargets();
    for (auto it = nodes.rbegin(); it != nodes.rend(); ++it)
    {
        (*it)->destroy();
        delete *it;
    }
    nodes.clear();
}
