// Final colour stage: saturation around the pixel's luminance, an S-shaped contrast around the
// middle, and a gamma. Each amount has a neutral value that leaves the image as it is: saturation
// 1, contrast 0, gamma 0. The luminance weights come in the stored channel order (alpha, red,
// green, blue), so they apply to the texel before it is swizzled; alpha is untouched.
precision highp float;

varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;
uniform highp float saturateAmount;
uniform highp float contrastAmount;
uniform highp float gammaAmount;
uniform highp vec4 CONVERSION_MATRIX;

void main()
{
    vec4 texel = texture2D(inputImageTexture, textureCoordinate);
    vec4 colour = swizzleIn(texel);
    float luminance = dot(texel, CONVERSION_MATRIX);
    vec3 rgb = clamp(mix(vec3(luminance), colour.rgb, saturateAmount), 0.0, 1.0);

    // smoothstep keeps 0, 0.5 and 1 in place and steepens the middle by half; contrast blends
    // towards it (and beyond it above 1) without clipping.
    rgb = clamp(mix(rgb, smoothstep(0.0, 1.0, rgb), contrastAmount), 0.0, 1.0);

    // A positive gamma amount lifts the mid-tones, a negative one lowers them.
    if (gammaAmount != 0.0)
        rgb = pow(rgb, vec3(exp(-gammaAmount)));

    gl_FragColor = swizzleOut(vec4(rgb, colour.a));
}
