// Averages the picture along a walk that follows the direction field, so strokes bend with the
// structure of the photo. The field texture may be smaller than the picture; linear filtering
// interpolates the field between its texels.
//
// The walk is at most HARD_CODED_LENGTH steps (a literal, since loops need constant bounds) and
// as many as the local strength allows, so flat areas are left alone. Each step is the field
// vector in pixels of the picture times DOC_SCALE, so a stroke covers the same part of the picture
// in a preview as at full size. The field's sign is arbitrary (eigenvectors have none); a step
// that would turn back is flipped, so the walk keeps going where the stored sign changes.
//
// The walk is kept in pixels on a grid of 1/256 (see onSubtexelGrid in the filter's header):
// it starts at the pixel's centre, every step is rounded to the grid, and the place in the field
// is worked out from the place in the whole picture. A tile then walks exactly where the whole
// picture does and linear filtering weighs every fetch alike.
//
// Field decoding: u from the first byte, v from the second, (byte - 0.5) * 4 texels.
precision highp float;

uniform sampler2D inputImageTexture;
uniform sampler2D tensorImageTexture;
uniform highp float texelWidth;
uniform highp float texelHeight;
// This texture's first pixel in the whole picture, field pixels per picture pixel, the field
// texture's first texel in the whole field, and one field texel in 0..1 coordinates.
uniform highp vec2 tileOrigin;
uniform highp vec2 fieldRatio;
uniform highp vec2 fieldOrigin;
uniform highp vec2 fieldTexel;

highp vec2 onGrid(highp vec2 pixels)
{
    return floor(pixels * 256.0 + 0.5) / 256.0;
}

highp vec2 fieldAt(highp vec2 pixel)
{
    highp vec2 place = onGrid((pixel + tileOrigin) * fieldRatio) - fieldOrigin;
    highp vec4 t = swizzleIn(texture2D(tensorImageTexture, place * fieldTexel));
    return vec2(t.a - 0.5, t.r - 0.5) * 4.0;
}

void main()
{
    highp vec2 position = gl_FragCoord.xy;
    highp vec2 field = fieldAt(position);
    highp float strength = sqrt(0.000001 + dot(field, field));
    highp float walkLength = max(1.0, strength * float(HARD_CODED_LENGTH));

    highp vec2 heading = field;
    highp vec2 texel = vec2(texelWidth, texelHeight);
    mediump vec4 sum = vec4(0.0);
    highp float count = 0.0;
    for (int l = 0; l < HARD_CODED_LENGTH; ++l)
    {
        if (float(l) >= walkLength)
            break;
        highp vec2 advance = fieldAt(position);
        if (dot(advance, heading) < 0.0)
            advance = -advance;
        heading = advance;
        sum += texture2D(inputImageTexture, position * texel);
        count += 1.0;
        position += onGrid(advance * DOC_SCALE);
    }
    mediump vec4 colour = swizzleIn(sum / count);
    gl_FragColor = swizzleOut(vec4(colour.rgb, 1.0));
}
