#include "document/Layer.h"

#include "document/LayerBlends.h"
#include "document/LayerManager.h"
#include "document/SxPropertySet.h"
#include "imaging/FileBytes.h"

#include <algorithm>
#include <cxxabi.h>
#include <cstdlib>
#include <cstring>
#include <typeinfo>

Layer::Layer() = default;

Layer::~Layer()
{
    releaseImage(outputImage);
    releaseImage(secondaryImage);
    releaseImage(workImage);
    for (auto& owned : tools)
        owned.destroy(owned.tool);
    for (auto* sub : subLayers)
        delete sub;
}

void Layer::clearTools()
{
    // The application must let go of a tool before it dies, or it would keep a dangling pointer.
    if (layerCallback != nullptr && selectedTool != nullptr)
        layerCallback->setActiveTool(nullptr);
    selectedTool = nullptr;
    auto doomed = std::move(tools);
    tools.clear();
    for (auto& owned : doomed)
        owned.destroy(owned.tool);
}

void Layer::addOwnedTool(SxTool* tool, void (*destroy)(SxTool*), bool select)
{
    if (tool == nullptr)
        return;
    tools.push_back({ tool, destroy });
    if (select && selectedTool == nullptr)
        selectedTool = tools.front().tool;
}

void Layer::removeTool(SxTool* tool)
{
    tools.erase(std::remove_if(tools.begin(), tools.end(), [tool](const OwnedTool& t) { return t.tool == tool; }), tools.end());
    if (selectedTool == tool)
        selectedTool = tools.empty() ? nullptr : tools.front().tool;
}

void Layer::setSelectedTool(SxTool* tool)
{
    selectedTool = tool;
    if (layerCallback != nullptr)
        layerCallback->setActiveTool(tool);
}

std::vector<SxTool*> Layer::getToolList() const
{
    std::vector<SxTool*> list;
    for (const auto& owned : tools)
        list.push_back(owned.tool);
    return list;
}

void Layer::notifyChanged()
{
    if (layerCallback != nullptr)
        layerCallback->layerChanged();
}

void Layer::saveToDictionary(SxPropertySet& set, const LayerSaveOptions&) const
{
    set.setString("layerName", layerName);
    set.setFloat("layerOpacity", layerOpacity);
    set.setBool("visible", isVisible);
    set.setInt("compositeMode", compositeMode);
}

void Layer::restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions&)
{
    releaseImage(workImage);
    layerName = set.getValue("layerName", {});
    layerOpacity = (float) set.getDoubleValue("layerOpacity", 1.0);
    // Older files hold "visible" as text, newer ones as a bool; both read as a number, and a
    // missing key means visible.
    isVisible = set.getIntValue("visible", 1) != 0;
    compositeMode = set.getIntValue("compositeMode", 0);
    setNeedsRender(true);
}

void Layer::copyFrom(const Layer& other)
{
    SxPropertySet set;
    LayerSaveOptions options;
    options.forCopy = true;
    other.saveToDictionary(set, options);

    set.setInt("SubLayerCount", (int) other.subLayers.size());
    for (size_t j = 0; j < other.subLayers.size(); ++j)
    {
        const juce::String suffix = "Sub" + juce::String((int) j);
        SxPropertySet subSet;
        other.subLayers[j]->saveToDictionary(subSet, options);
        set.setString("SubLayerClassName" + suffix, other.subLayers[j]->getStoredClassName());
        auto xml = subSet.toXml();
        set.setString("SubLayerEffectDictionary" + suffix, xml != nullptr ? xml->toString() : juce::String());
    }

    isSelected = false;
    setNeedsRender(true);
    layerCallback = other.layerCallback;
    layerManager = other.layerManager;
    renderAfterLower = other.renderAfterLower;

    restoreFromDictionary(set, options);

    for (auto* sub : subLayers)
        delete sub;
    subLayers.clear();
    const int count = set.getIntValue("SubLayerCount", 0);
    for (int j = 0; j < count && j < (int) other.subLayers.size(); ++j)
    {
        const juce::String suffix = "Sub" + juce::String(j);
        Layer* sub = LayerManager::createLayerByClassName(set.getValue("SubLayerClassName" + suffix, {}));
        if (sub == nullptr)
            continue;
        SxPropertySet subSet;
        if (auto xml = parseDictionaryXml(set.getValue("SubLayerEffectDictionary" + suffix, {})))
            subSet.fromXml(*xml);
        sub->layerCallback = layerCallback;
        sub->restoreFromDictionary(subSet, options);
        addSubLayer(sub);
    }
}

void Layer::resetImage(SxImageRgbaBytes*)
{
    releaseImage(workImage);
}

void Layer::clearCachedImages()
{
    releaseImage(workImage);
    releaseOutput();
}

void Layer::onImageSizeChanged(const LayerRect& region, SxImageRgbaBytes* image)
{
    for (auto* sub : subLayers)
        sub->onImageSizeChanged(region, image);
}

void Layer::resizeBrushMask(SxImageRgbaBytes* image)
{
    for (auto* sub : subLayers)
        sub->resizeBrushMask(image);
}

void Layer::invalidate(const LayerRect* region)
{
    if (layerManager == nullptr)
    {
        setNeedsRender(true);
        return;
    }
    if (region == nullptr)
        layerManager->invalidateFrom(this, true);
    else
        layerManager->notifyRender(region);
}

void Layer::setNeedsRender(bool value)
{
    needsRender = value;
    for (auto* sub : subLayers)
        sub->setNeedsRender(value);
}

void Layer::renderLayer(LayerRenderParameters&) {}

void Layer::compositeOnto(const LayerRenderParameters& parameters, const SxImageRgbaBytes& source, SxImageRgbaBytes& destination)
{
    if (parameters.image == nullptr)
        return;
    const SxImageRgbaBytes& input = *parameters.image;
    const auto area = parameters.dirtyRect.pixelsIn(input).getIntersection(destination.bounds());
    if (area.isEmpty())
        return;
    if (&input != &destination)
        destination.copyRect(input, area, area);

    // Opacity scales the layer's alpha in a per-pixel copy, so the layer's own picture keeps its
    // alpha for the next render.
    const auto blendArea = area.getIntersection(source.bounds());
    const int opacity = juce::roundToInt(juce::jlimit(0.0f, 1.0f, layerOpacity) * 255.0f);
    for (int y = blendArea.getY(); y < blendArea.getBottom(); ++y)
    {
        const uint8_t* s = source.pixelAt(blendArea.getX(), y);
        uint8_t* d = destination.pixelAt(blendArea.getX(), y);
        for (int x = 0; x < blendArea.getWidth(); ++x, s += 4, d += 4)
        {
            const uint8_t scaled[4] = { (uint8_t) ((s[0] * opacity + 127) / 255), s[1], s[2], s[3] };
            LayerBlends::blendPixel(compositeMode, scaled, d);
        }
    }
}

SxImageRgbaBytes* Layer::getRenderedImage(LayerRenderParameters& parameters)
{
    const bool sizeMatches = outputImage != nullptr && parameters.image != nullptr
                             && outputImage->width == parameters.image->width && outputImage->height == parameters.image->height;
    if (! needsRender && sizeMatches)
        return outputImage;
    // Cleared before the work: a change that arrives while a render thread runs marks the layer
    // again, and the next render picks it up instead of returning this older result.
    needsRender = false;
    renderLayer(parameters);
    return outputImage;
}

void Layer::allocateLike(SxImageRgbaBytes*& target, const LayerRenderParameters& parameters)
{
    if (parameters.image == nullptr)
        return;
    const int w = parameters.image->width, h = parameters.image->height;
    if (target != nullptr && target->width == w && target->height == h)
    {
        target->clear();
        return;
    }
    releaseImage(target);
    target = new SxImageRgbaBytes(w, h);
}

void Layer::releaseImage(SxImageRgbaBytes*& image)
{
    if (image != nullptr)
        image->release();
    image = nullptr;
}

void Layer::allocateOutput(const LayerRenderParameters& parameters) { allocateLike(outputImage, parameters); }
void Layer::releaseOutput() { releaseImage(outputImage); }
void Layer::releaseSecondary() { releaseImage(secondaryImage); }
void Layer::allocateWork(const LayerRenderParameters& parameters) { allocateLike(workImage, parameters); }

void Layer::requestRegionRender(const LayerRect& region)
{
    if (layerManager != nullptr)
        layerManager->notifyRender(&region);
}

void Layer::requestRender(bool showBusy)
{
    if (layerManager == nullptr || layerManager->getCallback() == nullptr)
        return;
    layerManager->getCallback()->requestRender(showBusy, nullptr);
}

void Layer::addSubLayer(Layer* layer)
{
    insertSubLayer(layer, (int) subLayers.size());
}

void Layer::insertSubLayer(Layer* layer, int index)
{
    if (layer == nullptr || std::find(subLayers.begin(), subLayers.end(), layer) != subLayers.end())
        return;
    layer->parentLayer = this;
    layer->layerManager = layerManager;
    layer->isSelected = false;
    layer->needsRender = true;
    index = juce::jlimit(0, (int) subLayers.size(), index);
    subLayers.insert(subLayers.begin() + index, layer);
}

void Layer::removeSubLayer(Layer* layer)
{
    auto it = std::find(subLayers.begin(), subLayers.end(), layer);
    if (it == subLayers.end())
        return;
    subLayers.erase(it);
    delete layer;
}

juce::String Layer::cleanClassName(const juce::String& typeName)
{
    juce::String name = typeName;
    int status = 0;
    if (char* demangled = abi::__cxa_demangle(typeName.toRawUTF8(), nullptr, nullptr, &status))
    {
        if (status == 0)
            name = demangled;
        std::free(demangled);
    }
    if (name.startsWithIgnoreCase("class "))
        name = name.substring(6);
    return name.trim();
}

std::unique_ptr<juce::XmlElement> Layer::parseDictionaryXml(const juce::String& text)
{
    const char* bytes = text.toRawUTF8();
    if (text.isEmpty() || ! FileBytes::isStrictUtf8(bytes, std::strlen(bytes)))
        return nullptr;
    return SxPropertySet::parseXmlText(text);
}

juce::String Layer::getStoredClassName() const
{
    return cleanClassName(typeid(*this).name());
}
