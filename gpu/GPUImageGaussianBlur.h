#pragma once
// A wide, cheap approximation of a Gaussian blur: a group that picks, by radius, one or two filters
// of the separable box family, so that the number of taps stays constant however large the blur.

#include "gpu/GPUImageFilterGroup.h"

class GPUImageGaussianBlur : public GPUImageFilterGroup
{
public:
    /** Builds the members for a blur of `argument` (r = argument / 2) and compiles their programs;
        the GL context must be current. `passes` repeats each member's pair of passes. Returns false
        when a program fails to compile. */
    virtual bool init(float argument, int passes);

    /** Which box filters init() chooses for an argument, in series; also used to explain a choice. */
    enum class Choice { fractionalBox, generatedBox, twoBox8, box8ThenBox12 };
    static Choice choiceFor(float argument);
    /** How many pixels from the centre the chosen filters read, all passes together: the padding
        a tiled run needs for tiles to join without seams. */
    static int reachFor(float argument, int passes);
    /** The spread of the blur init() builds, as its variance along one axis in texels², all
        passes together: what a blur of another shape must match to blur as much. */
    static double varianceFor(float argument, int passes);

    /** Half the argument given to init(). */
    float radius = 0.0f;
    /** Average colours weighted by alpha, keeping each pixel's own alpha (set before init()). */
    bool preserveAlpha = false;
};
