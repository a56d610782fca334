// Shrinks by a whole factor k: four linear fetches k/4 source texels either side of the output
// pixel's centre each average a 2 × 2 block, together the k × k block under the pixel (k = 2 or
// 4), so nothing between the taps is skipped.
varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;
uniform highp vec2 sourceTexelQuarterBlock;
// k × (small size) / (source size): puts small texel n over source texels nk .. nk + k − 1 even
// where the source is not a whole number of blocks (the last block then reaches past the edge).
uniform highp vec2 blockScale;

void main()
{
    highp vec2 d = sourceTexelQuarterBlock;
    highp vec2 centre = textureCoordinate * blockScale;
    gl_FragColor = (texture2D(inputImageTexture, centre + vec2(-d.x, -d.y))
                    + texture2D(inputImageTexture, centre + vec2(d.x, -d.y))
                    + texture2D(inputImageTexture, centre + vec2(-d.x, d.y))
                    + texture2D(inputImageTexture, centre + vec2(d.x, d.y))) * 0.25;
}
