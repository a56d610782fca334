// sRGB (D65) to CIE Lab, stored in 8 bits. L* 0..100 maps to 0..1; a* and b* are scaled by 1/216
// around byte 128, so that neutral colours store an exact zero and the whole sRGB gamut
// (a* from -86 to 98, b* from -108 to 94) fits without clipping. One byte is then 0.85 units of
// a* or b* and 0.39 of L*, below what a round trip back to 8-bit RGB can show.
precision highp float;

varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

vec3 toLinear(vec3 c)
{
    vec3 low = c / 12.92;
    vec3 high = pow((c + 0.055) / 1.055, vec3(2.4));
    return mix(high, low, vec3(lessThanEqual(c, vec3(0.04045))));
}

vec3 labF(vec3 t)
{
    // Cube root above (6/29)^3, the linear toe below it.
    vec3 root = pow(max(t, vec3(1.0e-6)), vec3(1.0 / 3.0));
    vec3 toe = t * 7.787037 + 4.0 / 29.0;
    return mix(root, toe, vec3(lessThanEqual(t, vec3(0.008856452))));
}

void main()
{
    vec4 colour = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    vec3 rgb = toLinear(clamp(colour.rgb, 0.0, 1.0));
    vec3 xyz = vec3(dot(rgb, vec3(0.4124564, 0.3575761, 0.1804375)),
                    dot(rgb, vec3(0.2126729, 0.7151522, 0.0721750)),
                    dot(rgb, vec3(0.0193339, 0.1191920, 0.9503041)));
    vec3 f = labF(xyz / vec3(0.95047, 1.0, 1.08883));
    float L = 116.0 * f.y - 16.0;
    float a = 500.0 * (f.x - f.y);
    float b = 200.0 * (f.y - f.z);
    vec3 lab = vec3(L / 100.0, 128.0 / 255.0 + a / 216.0, 128.0 / 255.0 + b / 216.0);
    gl_FragColor = swizzleOut(vec4(clamp(lab, 0.0, 1.0), colour.a));
}
