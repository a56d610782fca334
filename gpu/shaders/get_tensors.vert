// The four direct neighbours of the pixel: left, right, below, above.
attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform highp float texelWidth;
uniform highp float texelHeight;

varying highp vec2 textureCoordinate0;
varying highp vec2 textureCoordinate1;
varying highp vec2 textureCoordinate2;
varying highp vec2 textureCoordinate3;

void main()
{
    gl_Position = position;
    highp vec2 c = inputTextureCoordinate.xy;
    textureCoordinate0 = c - vec2(texelWidth, 0.0);
    textureCoordinate1 = c + vec2(texelWidth, 0.0);
    textureCoordinate2 = c + vec2(0.0, texelHeight);
    textureCoordinate3 = c - vec2(0.0, texelHeight);
}
