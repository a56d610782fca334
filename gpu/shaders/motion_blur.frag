// A straight line blur at the filter's angle, symmetric around the pixel. Each tent of the filter is
// two boxes in series, each over half of the line's length: the two boxes make a tent that spans
// the whole length, so strokes fade out at their ends instead of stopping hard, for the cost of
// one box of the full length.
//
// A box is gaps + 1 taps at most one pixel apart (the span is cut into whole steps), so no texel
// is skipped. Long boxes are drawn in two levels: the short run of neighbouring taps first, then
// a run of those runs, which together visit every tap of the box once; a box of 40 taps then
// costs 5 + 8 fetches instead of 40. Short boxes are one level of all their taps.
//
// The taps are placed in pixels from the fragment's centre, with offsets on the 1/256 grid that
// the filter works out (firstTap, tapStep): every tap lands on the same place of the picture in a
// tile as in the whole, and linear filtering weighs it alike.
precision highp float;

uniform sampler2D inputImageTexture;
uniform highp float texelWidthOffset;
uniform highp float texelHeightOffset;
uniform highp vec2 firstTap;
uniform highp vec2 tapStep;
// For a picture stored encoded (see unsharp_mask_unclamped.frag): value = stored / encodedScale +
// encodedLow. Averages of stored values are stored values of the average, so only the last draw
// decodes; the draws before it dither their bytes as the encoding did.
uniform highp float encodedLow;
uniform highp float encodedScale;

const int levelTaps = LEVEL_TAPS;

void main()
{
    highp vec2 texel = vec2(texelWidthOffset, texelHeightOffset);
    highp vec2 position = gl_FragCoord.xy + firstTap;
    vec4 sum = vec4(0.0);
    for (int i = 0; i < levelTaps; ++i)
    {
        sum += texture2D(inputImageTexture, position * texel);
        position += tapStep;
    }
#if defined(TO_LAB)
    // The last draw of a line blur of a picture sharpened before it: decoded, clamped and stored
    // as Lab (lab_functions.glsl and the swizzles come first).
    vec4 colour = swizzleIn(sum / float(levelTaps));
    colour.rgb = colour.rgb / encodedScale + encodedLow;
    gl_FragColor = swizzleOut(vec4(labFromRgb(colour.rgb), clamp(colour.a, 0.0, 1.0)));
#elif defined(ENCODED)
    vec4 average = sum / float(levelTaps);
    gl_FragColor = average + vec4(ditherOffset(gl_FragCoord.xy));
#else
    gl_FragColor = sum / float(levelTaps);
#endif
}
