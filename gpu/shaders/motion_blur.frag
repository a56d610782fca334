// A straight line blur along (cosa, sina), symmetric around the pixel. Both passes of the filter
// run this program, each over half of HARD_CODED_LENGTH pixels: two boxes in series make a tent
// that spans the whole length, so strokes fade out at their ends instead of stopping hard, for
// the cost of one box of the full length.
//
// Taps are at most one pixel apart (the span is cut into whole steps), so no texel is skipped.
precision highp float;

varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;
uniform highp float texelWidthOffset;
uniform highp float texelHeightOffset;
uniform highp float cosa;
uniform highp float sina;

const float span = 0.5 * HARD_CODED_LENGTH;
const int segments = int(ceil(max(span, 1.0)));

void main()
{
    vec2 direction = vec2(cosa * texelWidthOffset, sina * texelHeightOffset) * (span / float(segments));
    vec2 start = textureCoordinate - direction * (0.5 * float(segments));
    vec4 sum = vec4(0.0);
    for (int i = 0; i <= segments; ++i)
        sum += texture2D(inputImageTexture, start + direction * float(i));
    gl_FragColor = sum / float(segments + 1);
}
