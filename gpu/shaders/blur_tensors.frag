// One axis of the tensor blur. The entries are stored as square roots (see get_tensors.frag), so
// each tap is squared back before it is weighted: averaging the roots would bias the sum towards
// weak structure. The weights are a Gaussian of sigma 2 taps, normalised; at the ends they are
// still a third of the centre's, which keeps the seven taps from reading as a box.
precision highp float;

varying highp vec2 TextCoordOut0;
varying highp vec2 TextCoordOut1;
varying highp vec2 TextCoordOut2;
varying highp vec2 TextCoordOut3;
varying highp vec2 TextCoordOut4;
varying highp vec2 TextCoordOut5;
varying highp vec2 TextCoordOut6;

uniform sampler2D inputImageTexture;

vec3 decode(vec4 t)
{
    float sxy = (t.b * 255.0 - 128.0) / 127.0;
    return vec3(t.r * t.r, t.g * t.g, sxy * abs(sxy));
}

void main()
{
    vec3 sum = decode(texture2D(inputImageTexture, TextCoordOut3)) * 0.2161;
    sum += (decode(texture2D(inputImageTexture, TextCoordOut2)) + decode(texture2D(inputImageTexture, TextCoordOut4))) * 0.1907;
    sum += (decode(texture2D(inputImageTexture, TextCoordOut1)) + decode(texture2D(inputImageTexture, TextCoordOut5))) * 0.1311;
    sum += (decode(texture2D(inputImageTexture, TextCoordOut0)) + decode(texture2D(inputImageTexture, TextCoordOut6))) * 0.0702;

    float sxy = sign(sum.z) * sqrt(abs(sum.z));
    gl_FragColor = vec4(sqrt(max(sum.x, 0.0)), sqrt(max(sum.y, 0.0)), (128.0 + 127.0 * sxy) / 255.0, 1.0);
}
