// Box of BOX_TAPS linear fetches plus the centre along one axis. Every fetch sits between two
// texel centres (1.5, 3.5, ... steps out), so linear filtering averages two texels for the price
// of one; the centre at half weight makes every texel count the same. BOX_TAPS is defined by the
// filter in front of this text.
precision highp float;

varying highp vec2 centerTextureCoordinate;
varying highp vec2 texelOffset;
uniform sampler2D inputImageTexture;

void main()
{
    vec4 sum = texture2D(inputImageTexture, centerTextureCoordinate) * 0.5;
    for (int i = 0; i < BOX_TAPS / 2; ++i)
    {
        vec2 offset = texelOffset * (2.0 * float(i) + 1.5);
        sum += texture2D(inputImageTexture, centerTextureCoordinate + offset);
        sum += texture2D(inputImageTexture, centerTextureCoordinate - offset);
    }
    gl_FragColor = sum / (float(BOX_TAPS) + 0.5);
}
