// A box narrower than three texels: the centre and one fetch each side at blurSpread texels,
// where linear filtering interpolates between neighbours, so fractional widths blur smoothly.
precision highp float;

varying highp vec2 centerTextureCoordinate;
varying highp vec2 texelOffset;
uniform sampler2D inputImageTexture;

void main()
{
    vec4 sum = texture2D(inputImageTexture, centerTextureCoordinate) * 0.2;
    sum += texture2D(inputImageTexture, centerTextureCoordinate + texelOffset) * 0.4;
    sum += texture2D(inputImageTexture, centerTextureCoordinate - texelOffset) * 0.4;
    gl_FragColor = sum;
}
