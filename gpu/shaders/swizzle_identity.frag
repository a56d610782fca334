// Mends the channel order into colour order and back: proves the two swizzles are inverse.
varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

void main()
{
    mediump vec4 colour = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    gl_FragColor = swizzleOut(colour);
}
