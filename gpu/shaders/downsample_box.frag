// Shrinks by a whole factor k: four linear fetches k/4 source texels either side of the output
// pixel's centre each average a 2 × 2 block, together the k × k block under the pixel (k = 2 or
// 4), so nothing between the taps is skipped.
varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;
uniform highp vec2 sourceTexelQuarterBlock;

void main()
{
    highp vec2 d = sourceTexelQuarterBlock;
    gl_FragColor = (texture2D(inputImageTexture, textureCoordinate + vec2(-d.x, -d.y))
                    + texture2D(inputImageTexture, textureCoordinate + vec2(d.x, -d.y))
                    + texture2D(inputImageTexture, textureCoordinate + vec2(-d.x, d.y))
                    + texture2D(inputImageTexture, textureCoordinate + vec2(d.x, d.y))) * 0.25;
}
