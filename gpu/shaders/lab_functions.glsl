// sRGB (D65) and CIE Lab as stored in 8 bits, for programs that convert on the way: L* 0..100
// maps to 0..1; a* and b* are scaled by 1/216 around byte 128, so that neutral colours store an
// exact zero and the whole sRGB gamut (a* from -86 to 98, b* from -108 to 94) fits without
// clipping. One byte is then 0.85 units of a* or b* and 0.39 of L*, below what a round trip back
// to 8-bit RGB can show.
precision highp float;

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

vec3 labFInverse(vec3 f)
{
    vec3 cube = f * f * f;
    vec3 toe = (f - 4.0 / 29.0) / 7.787037;
    return mix(cube, toe, vec3(lessThanEqual(f, vec3(6.0 / 29.0))));
}

vec3 toSRGB(vec3 c)
{
    vec3 low = c * 12.92;
    vec3 high = 1.055 * pow(max(c, vec3(0.0)), vec3(1.0 / 2.4)) - 0.055;
    return mix(high, low, vec3(lessThanEqual(c, vec3(0.0031308))));
}

// What storing in a byte and reading back gives: programs that do in one draw what used to be two
// round where the byte was, so the result stays the same to the level.
vec3 asStoredByte(vec3 v)
{
    return floor(clamp(v, 0.0, 1.0) * 255.0 + 0.5) / 255.0;
}

// Colour (0..1, any values) to stored Lab.
vec3 labFromRgb(vec3 colour)
{
    vec3 rgb = toLinear(clamp(colour, 0.0, 1.0));
    vec3 xyz = vec3(dot(rgb, vec3(0.4124564, 0.3575761, 0.1804375)),
                    dot(rgb, vec3(0.2126729, 0.7151522, 0.0721750)),
                    dot(rgb, vec3(0.0193339, 0.1191920, 0.9503041)));
    vec3 f = labF(xyz / vec3(0.95047, 1.0, 1.08883));
    float L = 116.0 * f.y - 16.0;
    float a = 500.0 * (f.x - f.y);
    float b = 200.0 * (f.y - f.z);
    return clamp(vec3(L / 100.0, 128.0 / 255.0 + a / 216.0, 128.0 / 255.0 + b / 216.0), 0.0, 1.0);
}

// Stored Lab back to colour, clamped to 0..1.
vec3 rgbFromLab(vec3 lab)
{
    float L = lab.r * 100.0;
    float a = (lab.g - 128.0 / 255.0) * 216.0;
    float b = (lab.b - 128.0 / 255.0) * 216.0;
    float fy = (L + 16.0) / 116.0;
    vec3 xyz = labFInverse(vec3(fy + a / 500.0, fy, fy - b / 200.0)) * vec3(0.95047, 1.0, 1.08883);
    vec3 rgb = vec3(dot(xyz, vec3(3.2404542, -1.5371385, -0.4985314)),
                    dot(xyz, vec3(-0.9692660, 1.8760108, 0.0415560)),
                    dot(xyz, vec3(0.0556434, -0.2040259, 1.0572252)));
    return clamp(toSRGB(rgb), 0.0, 1.0);
}
