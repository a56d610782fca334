// Unsharp mask whose result is kept beyond 0..1, for the line blurs that follow: they average the
// overshoots as they are, so clamping after them gives what clamping a sharpen of the blurred
// picture gives. The result (−amount .. 1 + amount) is stored in bytes as
// (value − encodedLow) × encodedScale with an ordered dither (ordered_dither.glsl comes first).
// Alpha is not sharpened.
varying highp vec2 textureCoordinate;
varying highp vec2 textureCoordinate2;

uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform highp float intensity;
uniform highp float encodedLow;
uniform highp float encodedScale;

void main()
{
    highp vec4 sharpImageColor = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    highp vec3 blurredImageColor = swizzleIn(texture2D(inputImageTexture2, textureCoordinate2)).rgb;
    highp vec3 sharpened = sharpImageColor.rgb + (sharpImageColor.rgb - blurredImageColor) * intensity;
    highp vec3 encoded = (sharpened - encodedLow) * encodedScale + ditherOffset(gl_FragCoord.xy);
    gl_FragColor = swizzleOut(vec4(encoded, sharpImageColor.a));
}
