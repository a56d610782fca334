#pragma once
// The base of per-pixel colour conversions: a filter with the identity colour program, whose
// subclasses replace the fragment text in init().

#include "gpu/GPUImageFilter.h"

class GPUImageColorConversion : public GPUImageFilter
{
public:
    /** Compiles the program; the GL context must be current. Returns false on failure. */
    virtual bool init();

protected:
    /** The colour program body (after the swizzle prefix) that init() compiles. */
    virtual juce::String fragmentBody() const;
};
