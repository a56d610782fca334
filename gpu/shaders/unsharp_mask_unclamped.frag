// Unsharp mask whose result is kept beyond 0..1, for a half-float target: a blur that follows
// averages the overshoots as they are, so clamping after it gives what clamping a sharpen of the
// blurred picture gives. Alpha is not sharpened.
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
    gl_FragColor = swizzleOut(vec4(sharpened, sharpImageColor.a));
}
