// fractional_box_blur.frag weighted by alpha, keeping the centre's alpha (see box_blur_alpha.frag).
// The side taps fall between texels; rather than let linear filtering blend a transparent texel's
// hidden colour in, the two texels around each side tap are fetched at their centres and weighted
// by the fraction linear filtering would have given them.
precision highp float;

varying highp vec2 centerTextureCoordinate;
varying highp vec2 texelOffset;
uniform sampler2D inputImageTexture;
uniform highp float blurSpread;

void main()
{
    vec4 centerTexel = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate));
    vec2 step = texelOffset / max(blurSpread, 1.0e-6);
    float near = floor(blurSpread);
    float far = near + 1.0;
    float farWeight = blurSpread - near;
    vec3 sum = centerTexel.rgb * (centerTexel.a * 0.2);
    float tot = centerTexel.a * 0.2;
    for (int side = 0; side < 2; ++side)
    {
        vec2 direction = side == 0 ? step : -step;
        vec4 a = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate + direction * near));
        vec4 b = swizzleIn(texture2D(inputImageTexture, centerTextureCoordinate + direction * far));
        float wa = 0.4 * (1.0 - farWeight) * a.a;
        float wb = 0.4 * farWeight * b.a;
        sum += a.rgb * wa + b.rgb * wb;
        tot += wa + wb;
    }
    vec3 colour = tot > 0.0 ? sum / tot : centerTexel.rgb;
    gl_FragColor = swizzleOut(vec4(colour, centerTexel.a));
}
