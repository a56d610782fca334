// sRGB (D65) to CIE Lab, stored in 8 bits (encoding in lab_functions.glsl, which comes first).
varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

void main()
{
    vec4 colour = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    gl_FragColor = swizzleOut(vec4(labFromRgb(colour.rgb), colour.a));
}
