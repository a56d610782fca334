// Per-channel maximum of the base and the overlay scaled by strength. Where the overlay is not
// opaque the result leans towards the overlay itself, so a transparent overlay shows through.
varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;
uniform sampler2D srcImageTexture;
uniform highp float texelWidth;
uniform highp float texelHeight;
uniform highp float srcWidth;
uniform highp float srcHeight;
uniform highp float strength;

void main()
{
    highp vec4 base = swizzleIn(texture2D(inputImageTexture, textureCoordinate));
    highp vec4 overlay = swizzleIn(texture2D(srcImageTexture, textureCoordinate));
    highp vec4 tgtPixel;
    tgtPixel.rgb = max(base.rgb, overlay.rgb * strength);
    tgtPixel.a = overlay.a;
    gl_FragColor = swizzleOut(mix(tgtPixel, overlay, 1.0 - overlay.a));
}
