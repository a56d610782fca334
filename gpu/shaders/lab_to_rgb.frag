// Lab as stored by rgb_to_lab.frag back to sRGB (D65); lab_functions.glsl comes first.
varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

void main()
{
    vec4 lab = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    gl_FragColor = swizzleOut(vec4(rgbFromLab(lab.rgb), lab.a));
}
