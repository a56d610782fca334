#pragma once
// The whole-render half of tornvale-bench: the effect's stages and whole renders at preview and
// full size, with wall time and the process's peak memory, and a seam check of the full render.

class SxImageRgbaBytes;

namespace WholeRenderBench
{
/** photo is the source at any size; it is fitted to 1500 × 1000 and enlarged to 6000 × 4000. */
int run(const SxImageRgbaBytes& photo);
} // namespace WholeRenderBench
