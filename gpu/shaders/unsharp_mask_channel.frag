// Unsharp mask with an intensity per channel; on Lab images these act on L, a and b.
varying highp vec2 textureCoordinate;
varying highp vec2 textureCoordinate2;

uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform highp float intensityRed;
uniform highp float intensityGreen;
uniform highp float intensityBlue;

void main()
{
    highp vec4 sharpImageColor = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    highp vec3 blurredImageColor = swizzleIn(texture2D(inputImageTexture2, textureCoordinate2)).rgb;
    highp vec3 diff = sharpImageColor.rgb - blurredImageColor;
    highp vec3 sharpened = sharpImageColor.rgb + diff * vec3(intensityRed, intensityGreen, intensityBlue);
    gl_FragColor = swizzleOut(clamp(vec4(sharpened, sharpImageColor.a), 0.0, 1.0));
}
