#include "app/DraftPreview.h"

#include "document/StaticImageLayer.h"
#include "effect/TornvaleEffect.h"

#include <cmath>

juce::Point<int> DraftPreview::draftSizeFor(int width, int height) const
{
    if (width <= 0 || height <= 0 || maxPixels <= 0 || (juce::int64) width * height < 2 * (juce::int64) maxPixels)
        return {};
    const double factor = std::sqrt((double) maxPixels / ((double) width * height));
    return { juce::jmax(1, (int) std::lround(width * factor)), juce::jmax(1, (int) std::lround(height * factor)) };
}

bool DraftPreview::prepare(const LayerManager& stack)
{
    const auto* base = stack.getNumLayers() == 2 ? dynamic_cast<const StaticImageLayer*>(stack.getLayer(0)) : nullptr;
    const auto* effect = dynamic_cast<const TornvaleEffect*>(stack.getEffectLayer());
    if (base == nullptr || effect == nullptr || base->getImage() == nullptr || !effect->getVisible())
        return false;
    const auto draftSize = draftSizeFor(base->getImage()->width, base->getImage()->height);
    if (draftSize.isOrigin())
        return false;

    // The brush paints on the message thread, so its mask is copied here, not on the thread.
    const auto* painted = TornvaleEffect::getBrushMask();
    const auto* photo = base->getImage();
    if (painted != nullptr && (painted->width != photo->width || painted->height != photo->height))
        return false;
    mask = {};
    if (painted != nullptr)
    {
        mask = SxRef<SxImageAlphaByte>::adopt(painted->clone());
        mask->resample(draftSize.x, draftSize.y);
    }
    picture = photo;
    size = draftSize;
    // Every saved property (the settings, the layer's opacity and blend): the draft is the
    // same layer on a smaller picture.
    effectSettings = SxPropertySet();
    effect->saveToDictionary(effectSettings, {});
    pictureHadAlpha = effect->originalImageHadAlpha;
    return true;
}

SxRef<SxImageRgbaBytes> DraftPreview::render()
{
    if (picture == nullptr)
        return {};
    // The picture stays put while a render runs: whatever replaces it waits for the render first.
    auto reduced = SxRef<SxImageRgbaBytes>::adopt(picture->clone());
    reduced->resize(size.x, size.y, 3);

    LayerManager stack;
    stack.addLayer(new StaticImageLayer(reduced.get()));
    auto* effect = new TornvaleEffect(TornvaleEffect::DefaultsOnly {});
    effect->restoreFromDictionary(effectSettings, {});
    effect->originalImageHadAlpha = pictureHadAlpha;
    effect->setOwnMask(mask.get());
    stack.addLayer(effect);
    stack.setHighQuality(false);
    stack.markAllDirty();

    auto result = SxRef<SxImageRgbaBytes>::adopt(stack.render(nullptr, false, true));
    if (result.get() != nullptr)
        result->resize(picture->width, picture->height, 1);
    return result;
}
