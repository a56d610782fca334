// Structure tensor of one pixel, summed over the three colour channels so that an edge between
// two colours of equal brightness still has a direction.
//
// The gradient is the 3 x 3 Sobel stencil at four fetches: each fetch sits on a corner between
// four texels, so linear filtering averages a 2 x 2 block, and the differences of the four corner
// averages weight the centre row and column twice, as Sobel does. The neighbour coordinates only
// give the texel steps; the corners lie half way to them.
//
// Output bytes (memory order): Jxx, Jyy, Jxy, 255. The entries pass through 8 bits twice more
// (the tensor blur, then the angle), so they are stored as square roots: a gradient of one step in
// 255 still survives, where a linear byte would round it to zero. Jxy is signed and centred on byte
// 128 exactly, so a flat image stores an exact zero.
precision highp float;

varying highp vec2 textureCoordinate0;
varying highp vec2 textureCoordinate1;
varying highp vec2 textureCoordinate2;
varying highp vec2 textureCoordinate3;

uniform sampler2D inputImageTexture;

void main()
{
    vec2 centre = 0.5 * (textureCoordinate0 + textureCoordinate1);
    vec2 halfX = 0.25 * (textureCoordinate1 - textureCoordinate0);
    vec2 halfY = 0.25 * (textureCoordinate2 - textureCoordinate3);

    // Channel order does not matter for a sum over channels, but the alpha byte (.r) must stay out.
    vec3 a = texture2D(inputImageTexture, centre - halfX - halfY).gba;
    vec3 b = texture2D(inputImageTexture, centre + halfX - halfY).gba;
    vec3 c = texture2D(inputImageTexture, centre - halfX + halfY).gba;
    vec3 d = texture2D(inputImageTexture, centre + halfX + halfY).gba;

    // Sobel / 8: a unit step edge gives 0.5 per texel.
    vec3 gx = 0.5 * ((b + d) - (a + c));
    vec3 gy = 0.5 * ((c + d) - (a + b));

    // Mean over channels, times 4 so that the largest possible entry is 1.
    float jxx = dot(gx, gx) * (4.0 / 3.0);
    float jyy = dot(gy, gy) * (4.0 / 3.0);
    float jxy = dot(gx, gy) * (4.0 / 3.0);

    float sxy = sign(jxy) * sqrt(abs(jxy));
    gl_FragColor = vec4(sqrt(jxx), sqrt(jyy), (128.0 + 127.0 * sxy) / 255.0, 1.0);
}
