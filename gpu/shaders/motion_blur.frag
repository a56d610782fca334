// A straight line blur along (cosa, sina), symmetric around the pixel. Each tent of the filter is
// two boxes in series, each over half of HARD_CODED_LENGTH pixels: the two boxes make a tent that
// spans the whole length, so strokes fade out at their ends instead of stopping hard, for the cost
// of one box of the full length.
//
// A box is TAP_GAPS + 1 taps at most one pixel apart (the span is cut into whole steps), so no
// texel is skipped. Long boxes are drawn in two levels: LEVEL_TAPS taps LEVEL_SPACING steps apart,
// first the short run of neighbouring taps, then a run of those runs, which together visit every
// tap of the box once; a box of 40 taps then costs 5 + 8 fetches instead of 40. Short boxes are
// one level of all their taps.
precision highp float;

varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;
uniform highp float texelWidthOffset;
uniform highp float texelHeightOffset;
uniform highp float cosa;
uniform highp float sina;

const float span = 0.5 * HARD_CODED_LENGTH;
const int gaps = TAP_GAPS;
const int levelTaps = LEVEL_TAPS;
const float levelSpacing = LEVEL_SPACING;

void main()
{
    vec2 direction = vec2(cosa * texelWidthOffset, sina * texelHeightOffset) * (span / float(gaps) * levelSpacing);
    vec2 start = textureCoordinate - direction * (0.5 * float(levelTaps - 1));
    vec4 sum = vec4(0.0);
    for (int i = 0; i < levelTaps; ++i)
        sum += texture2D(inputImageTexture, start + direction * float(i));
#ifdef TO_LAB
    // The last draw of a line blur of a picture sharpened before it: clamped and rounded as the
    // sharpen's byte was, then stored as Lab (lab_functions.glsl and the swizzles come first).
    vec4 colour = swizzleIn(sum / float(levelTaps));
    gl_FragColor = swizzleOut(vec4(labFromRgb(asStoredByte(colour.rgb)), clamp(colour.a, 0.0, 1.0)));
#else
    gl_FragColor = sum / float(levelTaps);
#endif
}
