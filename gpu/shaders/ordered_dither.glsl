// An ordered dither of up to half a byte level either way, from a 4 × 4 threshold matrix at the
// pixel: values stored in bytes then average, over a few pixels, to what they stood for, so a
// coarse encoding leaves noise instead of steps. The pattern repeats every 4 pixels and tiles
// start at multiples of 4, so a tile's pattern lies where the whole picture's does.
highp float ditherOffset(highp vec2 fragCoord)
{
    highp vec2 p = mod(floor(fragCoord), 4.0);
    highp vec2 low = mod(p, 2.0);
    highp vec2 high = floor(p * 0.5);
    // The 2 × 2 matrix (0 2 / 3 1) from the bits of x and y, twice: 16 thresholds, each once.
    highp float fine = 2.0 * (low.x + low.y - 2.0 * low.x * low.y) + low.y;
    highp float coarse = 2.0 * (high.x + high.y - 2.0 * high.x * high.y) + high.y;
    return ((4.0 * fine + coarse + 0.5) / 16.0 - 0.5) / 255.0;
}
