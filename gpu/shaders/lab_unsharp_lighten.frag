// The last draw of a stroke copy: unsharp mask per Lab channel, back to RGB, and the per-channel
// maximum with the copies drawn before (lab_functions.glsl comes first). The blurred Lab image may
// be smaller than the picture; it is read at the same 0..1 place, so linear filtering enlarges it.
// The copies are opaque, so the maximum of colours and an alpha of 1 is what a lighten with full
// strength of one copy over the other gives.
varying highp vec2 textureCoordinate;
varying highp vec2 textureCoordinate2;

uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform sampler2D accumulatorTexture;
uniform highp float hasAccumulation;
uniform highp float intensityRed;
uniform highp float intensityGreen;
uniform highp float intensityBlue;
// Where the blurred image, smaller by a whole factor, is read for a place of the picture.
uniform highp vec2 blurCoordinateScale;
// 1 where the stack keeps its maximum inverted (the dark style's copies are drawn from the
// inverted picture and their merge is inverted back), else 0.
uniform highp float invertedStack;

void main()
{
    highp vec4 lab = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    highp vec3 blurredLab = swizzleIn(texture2D(inputImageTexture2, textureCoordinate2 * blurCoordinateScale)).rgb;
    // Rounded as the byte of a separate sharpen was: in the darks one step of L is a level of RGB.
    highp vec3 sharpened = asStoredByte(lab.rgb + (lab.rgb - blurredLab) * vec3(intensityRed, intensityGreen, intensityBlue));
    highp vec4 colour = vec4(rgbFromLab(sharpened), clamp(lab.a, 0.0, 1.0));
    highp vec3 before = swizzleIn(texture2D(accumulatorTexture, textureCoordinate)).rgb;
    before = mix(before, 1.0 - before, invertedStack);
    colour.rgb = max(colour.rgb, before * hasAccumulation);
    colour.rgb = mix(colour.rgb, 1.0 - colour.rgb, invertedStack);
    gl_FragColor = swizzleOut(colour);
}
