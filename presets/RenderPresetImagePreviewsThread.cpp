#include "presets/RenderPresetImagePreviewsThread.h"

#include "document/LayerCallback.h"
#include "document/LayerManager.h"
#include "document/LayerManagerCallback.h"
#include "document/StaticImageLayer.h"
#include "imaging/ImageRGBAPixelData.h"
#include "presets/PresetFile.h"
#include "presets/PresetManager.h"

namespace
{
/** The private stack's answers: lengths scale with the small picture, and nothing is recorded
    or rendered on request. */
class PresetRenderingLayerCallback : public LayerCallback, public LayerManagerCallback
{
public:
    explicit PresetRenderingLayerCallback(float renderScale) : scale(renderScale) {}
    void layerChanged() override {}
    void setActiveTool(SxTool*) override {}
    void requestRender(bool, const LayerRect*) override {}
    void layerNeedsRender(bool, const LayerRect*) override {}
    float getRenderScale() override { return scale; }
    void layersChanged() override {}

private:
    const float scale;
};

SxRef<SxImageRgbaBytes> fitted(const SxImageRgbaBytes& source, int side)
{
    const int box = side - 1;
    const double f = std::min(1.0, std::min((double) box / source.width, (double) box / source.height));
    const int w = juce::jmax(1, (int) (source.width * f)), h = juce::jmax(1, (int) (source.height * f));
    auto small = SxRef<SxImageRgbaBytes>::adopt(new SxImageRgbaBytes(w, h));
    small->scaleInto(source, small->bounds(), source.bounds(), 1);
    return small;
}
} // namespace

RenderPresetImagePreviewsThread::RenderPresetImagePreviewsThread(PresetManager& owner, const Layer& effectPrototype,
                                                                 const SxImageRgbaBytes& source, const juce::Array<juce::File>& files,
                                                                 const juce::StringArray& alreadyRendered)
    : juce::Thread({}), manager(&owner), prototype(effectPrototype), picture(fitted(source, pictureSide)), presets(files),
      skip(alreadyRendered)
{
}

RenderPresetImagePreviewsThread::~RenderPresetImagePreviewsThread()
{
    stopThread(-1);
}

void RenderPresetImagePreviewsThread::run()
{
    // Lengths in the effect are per 1024 pixels of the picture's longer side, as in every render.
    PresetRenderingLayerCallback callback((float) juce::jmax(picture->width, picture->height) * 0.0009765625f);
    LayerManager stack(&callback);
    stack.addLayer(new StaticImageLayer(picture.get()));
    stack.setHighQuality(true);

    for (const auto& file : presets)
    {
        if (threadShouldExit())
            break;
        if (file.hasFileExtension("prel") || file.getFileNameWithoutExtension() == "Layer_Presets"
            || skip.contains(file.getFullPathName()))
            continue;
        // A preset that cannot be read renders as the bare effect: its thumbnail still shows
        // what a click on it would do, which is nothing beyond the defaults.
        auto* effect = prototype.createInstance();
        effect->setLayerCallback(&callback);
        stack.addLayer(effect);
        const auto contents = PresetFile::readFile(file);
        if (contents.settings.size() > 0)
            effect->restoreFromDictionary(contents.settings, {});
        stack.markAllDirty();
        auto result = SxRef<SxImageRgbaBytes>::adopt(stack.render(nullptr, false, true));
        stack.removeLayersAboveBase();
        if (threadShouldExit())
            break;
        if (result.get() == nullptr)
            continue;
        const auto image = SxImageConversion::toJuceImage(*result);
        const auto path = file.getFullPathName();
        ++rendered;
        juce::MessageManager::callAsync([target = manager, path, image] {
            if (auto* m = target.getComponent())
            {
                m->renderedPreview(path, image);
                m->repaint();
            }
        });
    }
}
