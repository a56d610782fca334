#include "gpu/GPUImageGaussianBlur.h"
#include "gpu/GPUImageBox12BlurFilter.h"
#include "gpu/GPUImageBox8BlurFilter.h"
#include "gpu/GPUImageBoxBlur.h"
#include "gpu/GPUImageFractionalBoxBlurFilter.h"

#include <algorithm>
#include <cmath>

GPUImageGaussianBlur::Choice GPUImageGaussianBlur::choiceFor(float argument)
{
    const float r = argument * 0.5f;
    if (r <= 1.5f)
        return Choice::fractionalBox;
    if (r <= GPUImageBoxBlur::maximumRadius)
        return Choice::generatedBox;
    if (2.0f * r <= 175.0f)
        return Choice::twoBox8;
    return Choice::box8ThenBox12;
}

int GPUImageGaussianBlur::reachFor(float argument, int passes)
{
    // A linear fetch at distance d reads the texels on both sides of it: floor(d) + 1 away.
    auto fetchReach = [](double distance) { return (int) std::floor(distance) + 1; };
    const double r = argument * 0.5;
    passes = std::max(1, passes);
    switch (choiceFor(argument))
    {
        case Choice::fractionalBox: return fetchReach(r) * passes;
        case Choice::generatedBox: return 2 * (int) std::ceil(r * 0.5) * passes;
        case Choice::twoBox8: return (fetchReach(7.5 * r / 10.0) + 8) * passes;
        case Choice::box8ThenBox12: return fetchReach(7.5 * r / 10.0 * 0.7) * 4 + 12 * 3;
    }
    return 0;
}

namespace
{
// Second moment of one linear fetch at p texels from the centre: it reads the texels on both
// sides of p, each by its nearness.
double fetchMoment(double p)
{
    const double f = p - std::floor(p);
    return p * p + f * (1.0 - f);
}

// One pass of the box family's program (box_blur.frag): the centre at half weight and pairs of
// fetches 1.5, 3.5, ... steps out, the last pair weighted by lastWeight.
double boxVariance(int pairs, double lastWeight, double spread)
{
    double moment = 0.0, weight = 0.5;
    for (int i = 0; i < pairs; ++i)
    {
        const double w = i == pairs - 1 ? lastWeight : 1.0;
        moment += 2.0 * w * fetchMoment((2.0 * i + 1.5) * spread);
        weight += 2.0 * w;
    }
    return moment / weight;
}
} // namespace

double GPUImageGaussianBlur::varianceFor(float argument, int passes)
{
    const double r = argument * 0.5;
    passes = std::max(1, passes);
    switch (choiceFor(argument))
    {
        case Choice::fractionalBox: return passes * 0.8 * fetchMoment(r);
        case Choice::generatedBox:
        {
            // GPUImageBoxBlur: ceil(r / 2) pairs, the last one weighted by the fraction it covers.
            const int pairs = (int) std::ceil(r * 0.5);
            return passes * boxVariance(pairs, 1.0 - (pairs - r * 0.5), 1.0);
        }
        case Choice::twoBox8: return passes * (boxVariance(4, 1.0, r / 10.0) + boxVariance(4, 1.0, 1.0));
        case Choice::box8ThenBox12: return 4 * boxVariance(4, 1.0, r / 10.0 * 0.7) + 3 * boxVariance(6, 1.0, 1.0);
    }
    return 0.0;
}

bool GPUImageGaussianBlur::init(float argument, int passes)
{
    radius = argument * 0.5f;
    std::vector<GPUImageOutput*> series;
    bool ok = true;

    switch (choiceFor(argument))
    {
        case Choice::fractionalBox:
        {
            auto* box = addFilter(new GPUImageFractionalBoxBlurFilter());
            box->setBlurSize(radius);
            box->setPasses(passes);
            ok = box->initFilter(preserveAlpha);
            series = { box };
            break;
        }
        case Choice::generatedBox:
        {
            auto* box = addFilter(new GPUImageBoxBlur(radius));
            box->setBlurSpread(1.0f);
            box->setPasses(passes);
            ok = box->initFilter(preserveAlpha);
            series = { box };
            break;
        }
        case Choice::twoBox8:
        {
            // The second box at unit spread fills the gaps between the first one's widely spaced taps.
            auto* wide = addFilter(new GPUImageBox8BlurFilter());
            wide->setBlurSpread(radius / 10.0f);
            wide->setPasses(passes);
            auto* fill = addFilter(new GPUImageBox8BlurFilter());
            fill->setPasses(passes);
            ok = wide->initFilter(preserveAlpha) && fill->initFilter(preserveAlpha);
            series = { wide, fill };
            break;
        }
        case Choice::box8ThenBox12:
        {
            // Very wide blurs: more passes of a narrower spread, which rounds the box into a bell.
            auto* wide = addFilter(new GPUImageBox8BlurFilter());
            wide->setBlurSpread(radius / 10.0f * 0.7f);
            wide->setPasses(4);
            auto* fill = addFilter(new GPUImageBox12BlurFilter());
            fill->setPasses(3);
            ok = wide->initFilter(preserveAlpha) && fill->initFilter(preserveAlpha);
            series = { wide, fill };
            break;
        }
    }

    for (size_t i = 1; i < series.size(); ++i)
        series[i - 1]->addTarget(series[i]);
    initialFilters = { series.front() };
    terminalFilter = series.back();
    return ok;
}
