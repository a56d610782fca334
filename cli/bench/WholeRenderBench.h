#pragma once
// The whole-render half of tornvale-bench: the effect's stages and whole renders at preview and
// full size, with wall time and the process's peak memory, and a seam check of the full render.

class SxImageRgbaBytes;

namespace WholeRenderBench
{
/** photo is the source at any size; it is fitted to 1500 × 1000 and enlarged to 6000 × 4000. */
int run(const SxImageRgbaBytes& photo);

/** Renders photo (resized to width × height) as tornvale-render does, with default settings and
    the given stroke style, into a PNG: the before-and-after pictures of a change to
    the effect's code. Prints the render's wall time; with repeats above one, also the fastest of
    the renders after the first (programs compiled then). */
int renderToFile(const SxImageRgbaBytes& photo, int width, int height, int strokeStyle, const char* outputPath, int repeats = 1);

/** Prints the largest, 99.9th and 99th percentile per-channel difference of two PNGs of one size;
    returns 1 when they cannot be compared. */
int compareFiles(const char* first, const char* second);
} // namespace WholeRenderBench
