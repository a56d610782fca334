#pragma once
// The brush half of tornvale-bench: how long a dab takes from the mouse to the view's pixels
// (the stamp, the recompose of its rectangle from the effect's kept images, the conversion of
// that rectangle for drawing), and whether a two-second scribble at 60 mouse events a second
// keeps up with the pointer. The window system's own repaint is not part of it: headless there
// is no window to paint.

class SxImageRgbaBytes;

namespace BrushBench
{
/** photo at any size; it is scaled to fill 1500 × 1500, the largest preview the window paints on. */
int run(const SxImageRgbaBytes& photo);
} // namespace BrushBench
