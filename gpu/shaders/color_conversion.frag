// Identity colour conversion: the base that the Lab conversions replace.
varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

void main()
{
    highp vec4 textureColor = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    gl_FragColor = swizzleOut(textureColor);
}
