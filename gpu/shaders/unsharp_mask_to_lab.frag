// Unsharp mask on RGB whose result goes straight on to Lab (lab_functions.glsl comes first): one
// draw instead of a sharpen and a conversion. The sharpened colour is rounded as its byte was.
varying highp vec2 textureCoordinate;
varying highp vec2 textureCoordinate2;

uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform highp float intensity;

void main()
{
    highp vec4 sharpImageColor = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    highp vec3 blurredImageColor = swizzleIn(texture2D(inputImageTexture2, textureCoordinate2)).rgb;
    highp vec3 sharpened = sharpImageColor.rgb + (sharpImageColor.rgb - blurredImageColor) * intensity;
    gl_FragColor = swizzleOut(vec4(labFromRgb(asStoredByte(sharpened)), clamp(sharpImageColor.a, 0.0, 1.0)));
}
