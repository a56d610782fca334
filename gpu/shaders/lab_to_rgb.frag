// Lab as stored by rgb_to_lab.frag back to sRGB (D65).
precision highp float;

varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

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

void main()
{
    vec4 lab = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    float L = lab.r * 100.0;
    float a = (lab.g - 128.0 / 255.0) * 216.0;
    float b = (lab.b - 128.0 / 255.0) * 216.0;
    float fy = (L + 16.0) / 116.0;
    vec3 xyz = labFInverse(vec3(fy + a / 500.0, fy, fy - b / 200.0)) * vec3(0.95047, 1.0, 1.08883);
    vec3 rgb = vec3(dot(xyz, vec3(3.2404542, -1.5371385, -0.4985314)),
                    dot(xyz, vec3(-0.9692660, 1.8760108, 0.0415560)),
                    dot(xyz, vec3(0.0556434, -0.2040259, 1.0572252)));
    gl_FragColor = swizzleOut(vec4(clamp(toSRGB(rgb), 0.0, 1.0), lab.a));
}
