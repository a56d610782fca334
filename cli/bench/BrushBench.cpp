#include "cli/bench/BrushBench.h"

#include "app/GenericAppDocument.h"
#include "brush/SxBrush.h"
#include "document/LayerManager.h"
#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"
#include "tools/SxBrushTool.h"
#include "tools/SxToolSwitcher.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

namespace
{
double nowMs()
{
    return juce::Time::getMillisecondCounterHiRes();
}

// What the main component does with a tool's rectangle: recompose it and hand it to the view.
class Owner : public SxToolSwitcher, public SxBrushToolCallback
{
public:
    Owner(GenericAppDocument& d, LayerManager& s) : SxToolSwitcher(&d), document(d), stack(s) {}
    void repaintImageRect(const LayerRect& rect) override
    {
        if (auto* shown = stack.recompose(rect))
            document.imageChanged(rect.pixelsIn(*shown));
    }
    SxImageAlphaByte* getBrushMask() override { return TornvaleEffect::getBrushMask(); }
    float dabSpacing(float width) override { return width / 5.0f; }

    GenericAppDocument& document;
    LayerManager& stack;
};

juce::MouseEvent event(juce::Component& c, juce::Point<float> at, juce::Point<float> down)
{
    const auto t = juce::Time::getCurrentTime();
    return juce::MouseEvent(juce::Desktop::getInstance().getMainMouseSource(), at, juce::ModifierKeys(juce::ModifierKeys::leftButtonModifier),
                            1.0f, 0.0f, 0.0f, 0.0f, 0.0f, &c, &c, t, down, t, 1, at != down);
}

void report(const char* what, std::vector<double> ms)
{
    std::sort(ms.begin(), ms.end());
    double sum = 0;
    for (double v : ms)
        sum += v;
    std::printf("%-44s %5zu  median %6.2f ms  95%% %6.2f ms  max %6.2f ms  total %7.1f ms\n", what, ms.size(), ms[ms.size() / 2],
                ms[(size_t) ((double) ms.size() * 0.95)], ms.back(), sum);
}
} // namespace

namespace BrushBench
{
int run(const SxImageRgbaBytes& source)
{
    // The largest preview the window works on, whatever the photo's size.
    const double fit = std::min(1500.0 / source.width, 1500.0 / source.height);
    SxImageRgbaBytes photo(source);
    photo.resize(std::max(1, (int) std::lround(source.width * fit)), std::max(1, (int) std::lround(source.height * fit)), 3);

    registerTornvaleEffect();
    LayerManager stack;
    stack.addLayer(new StaticImageLayer(&photo));
    auto* effect = new TornvaleEffect(TornvaleEffect::DefaultsOnly {});
    stack.addLayer(effect);
    effect->resetImage(&photo);
    stack.setHighQuality(false);
    auto* shown = stack.render(nullptr, false, false);
    if (shown == nullptr)
        return 1;
    std::printf("brush on a %d x %d preview (the effect rendered once before)\n", photo.width, photo.height);

    GenericAppDocument document(nullptr);
    document.setSize(1200, 800);
    document.setImage(shown);
    document.setZoom(1.0f, false);
    Owner owner(document, stack);
    // The removing brush at its default opacity, current in the view.
    auto brushOfSize = [&owner](float size) {
        auto tool = std::make_unique<SxBrushTool>("brushOffTool", 0);
        tool->setCallback(&owner);
        owner.adopt(*tool);
        tool->setBrushSize(size);
        tool->setOpacity(0.5f);
        owner.setCurrentTool(tool.get());
        return tool;
    };

    // Single dabs of the largest brush, each to the view's pixels, over the whole picture.
    {
        const auto tool = brushOfSize(250.0f);
        std::vector<double> times;
        juce::Random random(7);
        for (int i = 0; i < 200; ++i)
        {
            const juce::Point<float> at { (float) random.nextInt(1200), (float) random.nextInt(800) };
            const double t0 = nowMs();
            document.mouseDown(event(document, at, at));
            times.push_back(nowMs() - t0);
            document.mouseUp(event(document, at, at)); // a click's second dab, not timed
        }
        report("one 250-pixel dab to the view's pixels", times);
        owner.setCurrentTool(nullptr);
    }

    // Two seconds of scribbling at 60 events a second with the default brush (120, spacing 24),
    // at a moderate and at a fast hand: every event must be done within its 16.7 ms.
    for (const float speed : { 1200.0f, 3600.0f })
    {
        TornvaleEffect::getBrushMask()->fill(0);
        const auto tool = brushOfSize(120.0f);
        std::vector<double> times;
        const juce::Point<float> centre { 600.0f, 400.0f };
        auto pointAt = [&](int i) {
            // A loop that sweeps back and forth over most of the view.
            const float t = (float) i / 60.0f * speed / 900.0f;
            return centre + juce::Point<float>(std::sin(t) * 450.0f, std::sin(t * 1.7f) * 300.0f);
        };
        const auto down = pointAt(0);
        document.mouseDown(event(document, down, down));
        for (int i = 1; i <= 120; ++i)
        {
            const double t0 = nowMs();
            document.mouseDrag(event(document, pointAt(i), down));
            times.push_back(nowMs() - t0);
        }
        document.mouseUp(event(document, pointAt(120), down));
        const juce::String what = "scribble event, " + juce::String((int) speed) + " px/s";
        report(what.toRawUTF8(), times);
        const double worst = *std::max_element(times.begin(), times.end());
        std::printf("  %s: the slowest event took %.1f ms of its 16.7 ms\n", worst < 16.7 ? "keeps up" : "FALLS BEHIND", worst);
        owner.setCurrentTool(nullptr);
    }
    TornvaleEffect::deleteBrushMask();
    return 0;
}
} // namespace BrushBench
