// Adds the difference between the image and its blur back to the image, scaled by intensity.
varying highp vec2 textureCoordinate;
varying highp vec2 textureCoordinate2;

uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform highp float intensity;

void main()
{
    highp vec4 sharpImageColor = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    highp vec3 blurredImageColor = swizzleIn(texture2D(inputImageTexture2, textureCoordinate2)).rgb;
    highp vec3 diff = sharpImageColor.rgb - blurredImageColor;
    gl_FragColor = swizzleOut(clamp(vec4(sharpImageColor.rgb + diff * intensity, sharpImageColor.a), 0.0, 1.0));
}
