// The box of box_blur.frag for images with transparency: each tap's colour counts by its alpha, so
// that the colour of transparent pixels (meaningless under straight alpha) does not bleed in, and
// the centre keeps its own alpha. Here each texel is fetched on its own: a linear fetch between an
// opaque and a transparent texel would blend the hidden colour in before alpha could weigh it.
precision highp float;

varying highp vec2 centerTextureCoordinate;
varying highp vec2 texelOffset;
uniform sampler2D inputImageTexture;

void main()
{
    vec4 centerTexel = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate));
    vec3 sum = centerTexel.rgb * centerTexel.a;
    float tot = centerTexel.a;
    for (int i = 1; i <= BOX_TAPS; ++i)
    {
        vec2 offset = texelOffset * float(i);
        vec4 a = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate + offset));
        vec4 b = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate - offset));
        sum += a.rgb * a.a + b.rgb * b.a;
        tot += a.a + b.a;
    }
    vec3 colour = tot > 0.0 ? sum / tot : centerTexel.rgb;
    gl_FragColor = swizzleOut(vec4(colour, centerTexel.a));
}
