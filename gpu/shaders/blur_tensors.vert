// Seven taps along one axis, spread apart by blurSpread texels.
attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform highp float texelWidthOffset;
uniform highp float texelHeightOffset;
uniform highp float blurSpread;

varying highp vec2 TextCoordOut0;
varying highp vec2 TextCoordOut1;
varying highp vec2 TextCoordOut2;
varying highp vec2 TextCoordOut3;
varying highp vec2 TextCoordOut4;
varying highp vec2 TextCoordOut5;
varying highp vec2 TextCoordOut6;

void main()
{
    gl_Position = position;
    highp vec2 c = inputTextureCoordinate.xy;
    highp vec2 offset = vec2(texelWidthOffset, texelHeightOffset) * blurSpread;
    TextCoordOut0 = c - 3.0 * offset;
    TextCoordOut1 = c - 2.0 * offset;
    TextCoordOut2 = c - offset;
    TextCoordOut3 = c;
    TextCoordOut4 = c + offset;
    TextCoordOut5 = c + 2.0 * offset;
    TextCoordOut6 = c + 3.0 * offset;
}
