#include "document/LayerManager.h"

#include "document/StaticImageLayer.h"

LayerManager::~LayerManager()
{
    delete pendingRegion;
    for (auto* layer : layers)
        delete layer;
}

void LayerManager::resetControls()
{
    for (auto* layer : layers)
        layer->resetControls();
}

void LayerManager::randomize()
{
    for (auto* layer : layers)
        layer->randomize();
}

void LayerManager::randomizeSettings()
{
    for (auto* layer : layers)
        layer->randomizeSettings();
}

void LayerManager::addLayer(Layer* layer)
{
    if (layer == nullptr || findLayer(layer) >= 0)
        return;
    layer->setLayerManager(this);
    layers.push_back(layer);
}

int LayerManager::findLayer(const Layer* layer) const
{
    auto it = std::find(layers.begin(), layers.end(), layer);
    return it == layers.end() ? -1 : (int) (it - layers.begin());
}

namespace
{
/** Keys and children of a set: an upper bound for any count the set claims. */
int countEntries(const SxPropertySet& set)
{
    return set.size() + set.getNumChildren();
}

template <typename Fn>
void forEachLayerAndSubLayer(const std::vector<Layer*>& list, Fn&& fn)
{
    for (auto* layer : list)
    {
        fn(layer);
        forEachLayerAndSubLayer(layer->getSubLayers(), fn);
    }
}
} // namespace

void LayerManager::setSelectedLayer(Layer* layer, bool additive)
{
    forEachLayerAndSubLayer(layers, [&](Layer* each) {
        if (each == layer)
            each->setSelected(true);
        else if (! additive)
            each->setSelected(false);
    });
    if (callback != nullptr)
        callback->layersChanged();
}

Layer* LayerManager::getOwnerOfSelection() const
{
    Layer* found = nullptr;
    forEachLayerAndSubLayer(layers, [&](Layer* each) {
        if (found == nullptr && each->getSelected())
            found = each;
    });
    return found;
}

int LayerManager::getSelectedIndex() const
{
    for (size_t i = 0; i < layers.size(); ++i)
        if (layers[i]->getSelected())
            return (int) i;
    return 0;
}

std::vector<Layer*> LayerManager::getSelectedLayers() const
{
    std::vector<Layer*> selected;
    for (auto* layer : layers)
        if (layer->getSelected())
            selected.push_back(layer);
    return selected;
}

Layer* LayerManager::getFirstLockedLayer() const
{
    for (size_t i = 1; i < layers.size(); ++i)
        if (layers[i]->isLocked())
            return layers[i];
    return nullptr;
}

void LayerManager::moveLockedToTop()
{
    if (Layer* locked = getFirstLockedLayer())
    {
        layers.erase(layers.begin() + findLayer(locked));
        layers.push_back(locked);
    }
}

bool LayerManager::hasVisibleLayerAbove(const Layer* layer) const
{
    const int index = findLayer(layer);
    if (index < 0)
        return false;
    for (size_t i = (size_t) index + 1; i < layers.size(); ++i)
        if (layers[i]->getVisible())
            return true;
    return false;
}

void LayerManager::markAllDirty()
{
    for (auto* layer : layers)
        layer->setNeedsRender(true);
}

bool LayerManager::needsRender() const
{
    // Only layers that a render visits count: a hidden layer stays marked until it shows again,
    // and must not keep asking for renders that never reach it.
    for (size_t i = 0; i < layers.size(); ++i)
        if ((i == 0 || layers[i]->getVisible() || layers[i]->hasVisibleOverlay()) && layers[i]->getNeedsRender())
            return true;
    return false;
}

void LayerManager::invalidateFrom(Layer* layer, bool andRender)
{
    int index = findLayer(layer);
    if (index < 0 && layer != nullptr)
    {
        // A sub-layer: its own output is stale, and so is whatever its top-level owner made.
        layer->setNeedsRender(true);
        Layer* owner = layer;
        while (owner->getParentLayer() != nullptr)
            owner = owner->getParentLayer();
        index = findLayer(owner);
        layer = owner;
    }
    if (index >= 0)
    {
        for (int i = (int) layers.size() - 1; i > index; --i)
            if (layers[(size_t) i]->renderAfterLower)
                layers[(size_t) i]->setNeedsRender(true);
        layer->setNeedsRender(true);
    }
    if (andRender)
        notifyRender();
}

void LayerManager::invalidateAbove(Layer* layer, bool andRender)
{
    const int index = findLayer(layer);
    if (index < 0)
        return;
    for (int i = (int) layers.size() - 1; i > index; --i)
        if (layers[(size_t) i]->renderAfterLower)
            layers[(size_t) i]->setNeedsRender(true);
    if (andRender)
        notifyRender();
}

void LayerManager::notifyRender(const LayerRect* region)
{
    if (callback != nullptr)
        callback->requestRender(true, region);
}

void LayerManager::setNextRenderRegion(const LayerRenderRegion& region)
{
    delete pendingRegion;
    pendingRegion = new LayerRenderRegion(region);
}

SxImageRgbaBytes* LayerManager::recompose(const LayerRect& region)
{
    if (layers.empty() || highQuality)
        return nullptr;
    for (size_t i = 0; i < layers.size(); ++i)
        if (layers[i]->getNeedsRender() || (i > 0 && layers[i]->getOutputImage() == nullptr))
            return nullptr;
    return render(&region, false, false);
}

SxImageRgbaBytes* LayerManager::basePicture() const
{
    if (layers.empty())
        return nullptr;
    if (auto* base = dynamic_cast<StaticImageLayer*>(layers.front()))
        return base->getImage();
    return layers.front()->getOutputImage();
}

float LayerManager::renderScaleFor(int width, int height)
{
    return (float) std::max(width, height) * 0.0009765625f;
}

float LayerManager::getRenderScale() const
{
    const SxImageRgbaBytes* picture = basePicture();
    return picture != nullptr && picture->width > 0 ? renderScaleFor(picture->width, picture->height) : 1.0f;
}

SxImageRgbaBytes* LayerManager::render(const LayerRect* region, bool fastPath, bool copyResult)
{
    if (layers.empty())
        return nullptr;

    LayerRenderParameters parameters;
    parameters.scale = callback != nullptr ? callback->getRenderScale() : getRenderScale();
    parameters.highQuality = highQuality;
    parameters.fastPath = fastPath;
    parameters.fullSizeTensors = false;
    if (pendingRegion != nullptr)
    {
        parameters.dirtyRect = pendingRegion->rect;
        delete pendingRegion;
        pendingRegion = nullptr;
    }
    if (region != nullptr)
        parameters.dirtyRect = *region;

    if (SxImageRgbaBytes* picture = basePicture())
    {
        const LayerRect whole = LayerRect::wholeOf(*picture);
        parameters.dirtyRect = parameters.dirtyRect.meansWholePicture() ? whole : parameters.dirtyRect.clampedTo(whole);
    }

    bool anySecondPass = false;
    for (size_t i = 1; i < layers.size(); ++i)
        anySecondPass = anySecondPass || layers[i]->needsSecondPass();

    // A full-size render may hold only two layer outputs at once: once a layer has made its own
    // output, the output below it is no longer needed and is dropped. It is re-rendered the next
    // time it is asked for, which a full-size render does once.
    auto mayDropBelow = [&](size_t i) {
        if (! highQuality || layers.size() < 3 || i < 2)
            return false;
        const Layer* layer = layers[i];
        const Layer* below = layers[i - 1];
        if (! layer->getVisible() && ! layer->hasVisibleOverlay())
            return false;
        return below->getOutputImage() != nullptr && ! below->needsSecondPass();
    };

    SxImageRgbaBytes* result = nullptr;
    for (size_t i = 0; i < layers.size(); ++i)
    {
        Layer* layer = layers[i];
        *layer->getRenderRegion() = parameters.dirtyRect;
        if (i > 0 && ! layer->getVisible() && ! layer->hasVisibleOverlay())
            continue;

        parameters.image = result;
        if (SxImageRgbaBytes* output = layer->getRenderedImage(parameters))
            result = output;

        if (mayDropBelow(i) && result != layers[i - 1]->getOutputImage())
            layers[i - 1]->releaseOutput();
    }

    if (anySecondPass)
    {
        parameters.image = result;
        for (size_t i = 1; i < layers.size(); ++i)
        {
            Layer* layer = layers[i];
            if (! layer->getVisible() && ! layer->hasVisibleOverlay())
                continue;
            if (layer->needsSecondPass())
                if (SxImageRgbaBytes* second = layer->renderSecondPass(parameters))
                    result = parameters.image = second;
            if (mayDropBelow(i) && result != layers[i - 1]->getSecondaryImage())
                layers[i - 1]->releaseSecondary();
        }
    }

    // A copy is made even when the result is the source picture itself, so that the caller can
    // keep it while the stack changes.
    if (copyResult && result != nullptr)
        return new SxImageRgbaBytes(*result);
    return result;
}

void LayerManager::removeLayer(Layer* layer)
{
    const int index = findLayer(layer);
    if (index < 0)
        return;
    layers.erase(layers.begin() + index);
    delete layer;
    for (size_t i = (size_t) index; i < layers.size(); ++i)
        if (layers[i]->renderAfterLower)
            layers[i]->setNeedsRender(true);
}

void LayerManager::removeLayersAboveBase()
{
    while (layers.size() > 1)
    {
        delete layers.back();
        layers.pop_back();
    }
}

void LayerManager::insertLayerAbove(Layer* layer, Layer* other)
{
    const int index = findLayer(other);
    if (index < 0)
        addLayer(layer);
    else
        insertLayerAt(layer, index);
}

void LayerManager::insertLayerAt(Layer* layer, int index)
{
    if (layer == nullptr || findLayer(layer) >= 0)
        return;
    layer->setLayerManager(this);
    const int position = juce::jlimit(0, (int) layers.size(), index + 1);
    layers.insert(layers.begin() + position, layer);
}

void LayerManager::storeLayer(SxPropertySet& set, const Layer& layer, const juce::String& classKey,
                              const juce::String& dictionaryKey, const LayerSaveOptions& options)
{
    set.setString(classKey, layer.getStoredClassName());
    SxPropertySet dictionary;
    layer.saveToDictionary(dictionary, options);
    if (options.keepImages)
    {
        // Undo records keep pictures as shared objects; turning them into text would copy them.
        set.addChild(dictionary, dictionaryKey);
        return;
    }
    auto xml = dictionary.toXml();
    set.setString(dictionaryKey, xml != nullptr ? xml->toString() : juce::String());
}

void LayerManager::saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const
{
    set.setInt("LayerCount", std::max(0, (int) layers.size() - 1));
    set.setInt("SelectedLayer", getSelectedIndex());
    for (size_t i = 1; i < layers.size(); ++i)
    {
        const juce::String index((int) i);
        storeLayer(set, *layers[i], "ClassName" + index, "EffectDictionary" + index, options);
        const auto& subs = layers[i]->getSubLayers();
        set.setInt("SubLayerCount" + index, (int) subs.size());
        for (size_t j = 0; j < subs.size(); ++j)
        {
            const juce::String suffix = index + "Sub" + juce::String((int) j);
            storeLayer(set, *subs[j], "SubLayerClassName" + suffix, "SubLayerEffectDictionary" + suffix, options);
        }
    }
}

void LayerManager::restoreLayerFrom(Layer& layer, const SxPropertySet& set, const juce::String& key, const LayerSaveOptions& options)
{
    SxPropertySet dictionary;
    if (set.hasChild(key))
        dictionary = set.getChild(key);
    else if (auto xml = Layer::parseDictionaryXml(set.getValue(key, {})))
        dictionary.fromXml(*xml);
    layer.restoreFromDictionary(dictionary, options);
}

Layer* LayerManager::recreateLayer(const SxPropertySet& set, int index, LayerCallback* layerCallback, const LayerSaveOptions& options)
{
    const juce::String i(index);
    Layer* layer = createLayerByClassName(set.getValue("ClassName" + i, {}));
    if (layer == nullptr)
        return nullptr;
    layer->setLayerCallback(layerCallback);
    layer->setLayerManager(this);
    restoreLayerFrom(*layer, set, "EffectDictionary" + i, options);

    // A sub-layer costs at least its class key, so no honest file counts more of them than it
    // has keys; a corrupt count must not spin through billions of lookups.
    const int keyCount = countEntries(set);
    const int subCount = juce::jlimit(0, keyCount, set.getIntValue("SubLayerCount" + i, 0));
    for (int j = 0; j < subCount; ++j)
    {
        const juce::String suffix = i + "Sub" + juce::String(j);
        Layer* sub = createLayerByClassName(set.getValue("SubLayerClassName" + suffix, {}));
        if (sub == nullptr)
            continue;
        sub->setLayerCallback(layerCallback);
        restoreLayerFrom(*sub, set, "SubLayerEffectDictionary" + suffix, options);
        layer->addSubLayer(sub);
    }
    return layer;
}

void LayerManager::restoreFromDictionary(const SxPropertySet& set, LayerCallback* layerCallback, const LayerSaveOptions& options, bool render)
{
    const int selected = set.getIntValue("SelectedLayer", 0);
    const int keyCount = countEntries(set);
    const int count = juce::jlimit(0, keyCount, set.getIntValue("LayerCount", 0));

    // An undo of a slider move restores the one layer it touched instead of rebuilding the stack.
    if (options.keepImages && count == (int) layers.size() - 1 && selected == getSelectedIndex())
    {
        const int active = set.getIntValue("ActiveUndoLayer", -1);
        bool sameClasses = active >= 1 && active <= count;
        for (int i = 1; sameClasses && i <= count; ++i)
            sameClasses = set.getValue("ClassName" + juce::String(i), {}) == layers[(size_t) i]->getStoredClassName();
        if (sameClasses)
        {
            restoreLayerFrom(*layers[(size_t) active], set, "EffectDictionary" + juce::String(active), options);
            if (callback != nullptr)
                callback->layersChanged();
            return;
        }
    }

    removeLayersAboveBase();
    for (int i = 1; i <= count; ++i)
        if (Layer* layer = recreateLayer(set, i, layerCallback, options))
            addLayer(layer);

    if (getOwnerOfSelection() == nullptr && layers.size() > 1)
    {
        const int index = selected < 1 ? (int) layers.size() - 1 : std::min(selected, (int) layers.size() - 1);
        setSelectedLayer(layers[(size_t) index], false);
    }

    if (render)
    {
        markAllDirty();
        notifyRender();
    }
}

std::vector<Layer*>& LayerManager::effectPrototypes()
{
    static std::vector<Layer*> table;
    return table;
}

std::vector<Layer*>& LayerManager::addonPrototypes()
{
    static std::vector<Layer*> table;
    return table;
}

void LayerManager::addEffectPrototype(Layer* prototype)
{
    if (prototype != nullptr)
        effectPrototypes().push_back(prototype);
}

void LayerManager::addAddonPrototype(Layer* prototype)
{
    if (prototype != nullptr)
        addonPrototypes().push_back(prototype);
}

void LayerManager::removePrototype(Layer* prototype)
{
    for (auto* table : { &effectPrototypes(), &addonPrototypes() })
        table->erase(std::remove(table->begin(), table->end(), prototype), table->end());
}

Layer* LayerManager::createLayerByClassName(const juce::String& name)
{
    if (name.isEmpty())
        return nullptr;
    for (auto* table : { &effectPrototypes(), &addonPrototypes() })
        for (auto* prototype : *table)
            if (prototype->getStoredClassName() == name)
                return prototype->createInstance();
    return nullptr;
}
