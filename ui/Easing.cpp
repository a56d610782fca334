#include "ui/Easing.h"

#include <cmath>

namespace Easing
{
namespace
{
constexpr float halfPi = 1.5707964f, pi = 3.1415927f, twoPi = 6.2831855f;
}

float sineInF(float t, float b, float c, float d) { return c - c * std::cos((t / d) * halfPi) + b; }
float sineOutF(float t, float b, float c, float d) { return c * std::sin((t / d) * halfPi) + b; }
float sineInOutF(float t, float b, float c, float d) { return b - (std::cos(t * pi / d) - 1.0f) * c * 0.5f; }

float quadraticInF(float t, float b, float c, float d)
{
    const float u = t / d;
    return c * u * u + b;
}

float quadraticOutF(float t, float b, float c, float d)
{
    const float u = t / d;
    return b - c * u * (u - 2.0f);
}

float quadraticInOutF(float t, float b, float c, float d)
{
    const float w = t / (d / 2.0f);
    if (w < 1.0f)
        return c / 2.0f * w * w + b;
    return b - ((w - 2.0f) * (w - 1.0f) - 1.0f) * c / 2.0f;
}

float circularInF(float t, float b, float c, float d)
{
    const float u = t / d;
    return b - c * (std::sqrt(1.0f - u * u) - 1.0f);
}

float circularOutF(float t, float b, float c, float d)
{
    const float v = t / d - 1.0f;
    return c * std::sqrt(1.0f - v * v) + b;
}

float circularInOutF(float t, float b, float c, float d)
{
    const float w = t / (d / 2.0f);
    if (w < 1.0f)
        return b - (std::sqrt(1.0f - w * w) - 1.0f) * c / 2.0f;
    return (std::sqrt(1.0f - (w - 2.0f) * w) + 1.0f) * c / 2.0f + b;
}

float backInF(float t, float b, float c, float d)
{
    const float u = t / d;
    return c * u * u * (2.70158f * u - 1.70158f) + b;
}

float backOutF(float t, float b, float c, float d)
{
    const float v = t / d - 1.0f;
    return c * (v * v * (2.70158f * v + 1.70158f) + 1.0f) + b;
}

float backInOutF(float t, float b, float c, float d)
{
    const float w = t / (d / 2.0f);
    if (w < 1.0f)
        return (3.5949094f * w - 2.5949094f) * w * w * c / 2.0f + b;
    const float v = w - 2.0f;
    return ((3.5949094f * v + 2.5949094f) * v * v + 2.0f) * c / 2.0f + b;
}

float elasticInF(float t, float b, float c, float d)
{
    if (t == 0.0f)
        return b;
    if (t == d)
        return b + c;
    const float p = 0.3f * d;
    const float v = t / d - 1.0f;
    return b - std::sin((v * d - p * 0.25f) * twoPi / p) * std::pow(2.0f, 10.0f * v) * c;
}

float elasticOutF(float t, float b, float c, float d)
{
    if (t == 0.0f)
        return b;
    if (t == d)
        return b + c;
    const float p = 0.3f * d;
    const float u = t / d;
    return c * std::pow(2.0f, -10.0f * u) * std::sin((u * d - p * 0.25f) * twoPi / p) + c + b;
}

float elasticInOutF(float t, float b, float c, float d)
{
    if (t == 0.0f)
        return b;
    const float u = t / (d / 2.0f);
    if (u == 2.0f)
        return b + c;
    const float p = 0.45f * d;
    const float v = u - 1.0f;
    const float s = std::sin((v * d - p * 0.25f) * twoPi / p);
    if (u < 1.0f)
        return b - s * std::pow(2.0f, 10.0f * v) * c * 0.5f;
    return b + c + s * std::pow(2.0f, -10.0f * v) * c * 0.5f;
}

float bounceOutF(float t, float b, float c, float d)
{
    const float u = t / d;
    if (u < 0.36363637f)
        return c * 7.5625f * u * u + b;
    if (u < 0.72727275f)
    {
        const float v = u - 0.54545456f;
        return c * (7.5625f * v * v + 0.75f) + b;
    }
    if (u < 0.90909094f)
    {
        const float v = u - 0.8181818f;
        return c * (7.5625f * v * v + 0.9375f) + b;
    }
    const float v = u - 0.95454544f;
    return c * (7.5625f * v * v + 0.984375f) + b;
}

float bounceInF(float t, float b, float c, float d) { return c - bounceOutF(d - t, 0.0f, c, d) + b; }

float bounceInOutF(float t, float b, float c, float d)
{
    if (t < d / 2.0f)
        return bounceInF(t * 2.0f, 0.0f, c, d) * 0.5f + b;
    return bounceOutF(t * 2.0f - d, 0.0f, c, d) * 0.5f + c * 0.5f + b;
}

float ease(int kind, float t, float b, float c, float d)
{
    using Curve = float (*)(float, float, float, float);
    static constexpr Curve curves[numKinds] = { sineInF, sineOutF, sineInOutF, quadraticInF, quadraticOutF, quadraticInOutF,
                                                circularInF, circularOutF, circularInOutF, backInF, backOutF, backInOutF,
                                                elasticInF, elasticOutF, elasticInOutF, bounceInF, bounceOutF, bounceInOutF };
    if (d <= 0.0f)
        return b + c;
    return (kind >= 0 && kind < numKinds ? curves[kind] : sineOutF)(t, b, c, d);
}
} // namespace Easing
