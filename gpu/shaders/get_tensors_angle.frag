// Direction field from the blurred structure tensor: the eigenvector of the smaller eigenvalue
// (the direction along which the picture changes least), as long as the structure is strong.
//
// Double angles avoid an arctangent and are exact for every tensor: the difference of the two
// eigenvalues with its orientation is the vector (Jxx - Jyy, 2 Jxy), and the wanted direction is
// the half angle of its opposite. The half angle is taken with a non-negative x, so the field
// only changes sign where it is vertical; the walk that reads it keeps its own heading.
//
// Strength: the square root of the eigenvalue difference (the input holds four times the tensor),
// so faint but coherent texture already steers; at one the walk takes steps of a whole texel,
// and no more, so that it never skips over a thin line.
//
// Output bytes (memory order): u, v biased by 0.5 at a quarter scale, then 128, 255.
precision highp float;

varying highp vec2 textureCoordinate;
uniform sampler2D inputImageTexture;

void main()
{
    vec4 t = texture2D(inputImageTexture, textureCoordinate);
    float sxy = (t.b * 255.0 - 128.0) / 127.0;
    float jxx = t.r * t.r;
    float jyy = t.g * t.g;
    float jxy = sxy * abs(sxy);

    vec2 doubled = -vec2(jxx - jyy, 2.0 * jxy);
    float difference = length(doubled);
    float strength = min(1.0, 8.0 * sqrt(difference));

    vec2 direction = vec2(0.0);
    if (difference > 1.0e-6)
    {
        vec2 unit = doubled / difference;
        direction = vec2(sqrt(max(0.0, 0.5 + 0.5 * unit.x)), sign(unit.y) * sqrt(max(0.0, 0.5 - 0.5 * unit.x)));
    }
    vec2 field = direction * strength;
    gl_FragColor = vec4(0.5 + 0.25 * field.x, 0.5 + 0.25 * field.y, 128.0 / 255.0, 1.0);
}
