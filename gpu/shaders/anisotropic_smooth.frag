// Averages the picture along a walk that follows the direction field, so strokes bend with the
// structure of the photo. The field texture may be smaller than the picture; both are addressed in
// the same 0..1 coordinates and linear filtering interpolates the field between its texels.
//
// The walk is at most HARD_CODED_LENGTH steps (a literal, since loops need constant bounds) and
// as many as the local strength allows, so flat areas are left alone. Each step is the field
// vector in texels of the picture times DOC_SCALE, so a stroke covers the same part of the picture
// in a preview as at full size. The field's sign is arbitrary (eigenvectors have none); a step
// that would turn back is flipped, so the walk keeps going where the stored sign changes.
//
// Field decoding: u from the first byte, v from the second, (byte - 0.5) * 4 texels.
precision highp float;

varying highp vec2 textureCoordinate;

uniform sampler2D inputImageTexture;
uniform sampler2D tensorImageTexture;
uniform highp float texelWidth;
uniform highp float texelHeight;
// The field may be a tile cut at another size: field coordinate = picture coordinate × scale + offset.
uniform highp vec2 tensorScale;
uniform highp vec2 tensorOffset;

highp vec2 fieldAt(highp vec2 position)
{
    highp vec4 t = swizzleIn(texture2D(tensorImageTexture, position * tensorScale + tensorOffset));
    return vec2(t.a - 0.5, t.r - 0.5) * 4.0;
}

void main()
{
    highp vec2 field = fieldAt(textureCoordinate);
    highp float strength = sqrt(0.000001 + dot(field, field));
    highp float walkLength = max(1.0, strength * float(HARD_CODED_LENGTH));

    highp vec2 position = textureCoordinate;
    highp vec2 heading = field;
    highp vec2 texel = vec2(texelWidth, texelHeight) * DOC_SCALE;
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
        sum += texture2D(inputImageTexture, position);
        count += 1.0;
        position += advance * texel;
    }
    mediump vec4 colour = swizzleIn(sum / count);
    gl_FragColor = swizzleOut(vec4(colour.rgb, 1.0));
}
