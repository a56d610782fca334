// One axis of a box blur: the pass's step (one texel along x or along y, the other zero) scaled by
// the spread. The fragment program walks the taps from the centre in multiples of this step.
attribute vec4 position;
attribute vec4 inputTextureCoordinate;

uniform highp float texelWidthOffset;
uniform highp float texelHeightOffset;
uniform highp float blurSpread;

varying highp vec2 centerTextureCoordinate;
varying highp vec2 texelOffset;

void main()
{
    gl_Position = position;
    centerTextureCoordinate = inputTextureCoordinate.xy;
    texelOffset = vec2(texelWidthOffset, texelHeightOffset) * blurSpread;
}
