#pragma once
// The ordered layer stack of one document: index 0 is the source picture, higher indexes lie
// above it. Renders the stack into one picture with per-layer caching, keeps the selection,
// tells the application about changes, and saves or restores the stack as a property set.
// Layers come back from files by class name through a process-wide table of prototypes.

#include "document/Layer.h"
#include "document/LayerManagerCallback.h"
#include "document/LayerRenderParameters.h"
#include "document/SxPropertySet.h"

#include <vector>

class LayerManager : public SxPropertySet
{
public:
    LayerManager() = default;
    explicit LayerManager(LayerManagerCallback* managerCallback) : callback(managerCallback) {}
    ~LayerManager() override;

    LayerManager(const LayerManager&) = delete;
    LayerManager& operator=(const LayerManager&) = delete;

    virtual void resetControls();
    virtual void randomize();
    virtual void randomizeSettings();
    virtual void setHighQuality(bool value) { highQuality = value; }
    /** Takes ownership; a layer already in the stack is not added twice. */
    virtual void addLayer(Layer* layer);
    virtual std::vector<Layer*> getLayers() const { return layers; }
    /** The position of layer in the stack, or -1. */
    virtual int findLayer(const Layer* layer) const;
    /** Selects layer; without additive, every other layer and sub-layer is deselected. */
    virtual void setSelectedLayer(Layer* layer, bool additive);
    virtual void selectOne(Layer* layer, bool additive) { setSelectedLayer(layer, additive); }
    virtual Layer* getOwnerOfSelection() const;
    virtual int getSelectedIndex() const;
    virtual std::vector<Layer*> getSelectedLayers() const;
    virtual Layer* getFirstLockedLayer() const;
    virtual void moveLockedToTop();
    virtual bool hasVisibleLayerAbove(const Layer* layer) const;
    virtual void markAllDirty();
    /** True while a layer waits for a render: a change made since its last one. */
    bool needsRender() const;
    /** Marks layer and every layer above that renders again after a lower one. */
    virtual void invalidateFrom(Layer* layer, bool andRender);
    virtual void invalidateAbove(Layer* layer, bool andRender);
    virtual void notifyRender(const LayerRect* region = nullptr);
    virtual void setNextRenderRegion(const LayerRenderRegion& region);

    /** Renders the stack. Null for an empty stack. Without copyResult the picture belongs to the
        stack (the source picture or a layer's output); with it the caller owns one reference to
        a new copy. */
    virtual SxImageRgbaBytes* render(const LayerRect* region, bool fastPath, bool copyResult);
    /** Refreshes region of the last preview from what the layers keep, with no filter run: a
        brush dab only recomposes its rectangle. Null, doing nothing, while a layer waits for a
        render (that render will show the region anyway) or the stack is set for full size. */
    SxImageRgbaBytes* recompose(const LayerRect& region);

    /** The scale of every render of this stack: lengths of the effect grow with the picture in
        layer 0, one unit per 1024 pixels of its longer side, so that a preview and a full-size
        render of one photo look alike. 1 without a picture. */
    float getRenderScale() const;
    /** The rule itself, for a picture of that size. */
    static float renderScaleFor(int width, int height);

    Layer* getEffectLayer() const { return layers.size() > 1 ? layers[1] : nullptr; }
    int getNumLayers() const { return (int) layers.size(); }
    Layer* getLayer(int index) const { return index >= 0 && index < (int) layers.size() ? layers[(size_t) index] : nullptr; }
    /** Removes and deletes layer; layers above that depend on it are marked stale. */
    void removeLayer(Layer* layer);
    /** Deletes every layer above the source picture. */
    void removeLayersAboveBase();
    void insertLayerAbove(Layer* layer, Layer* other);
    void insertLayerAt(Layer* layer, int index);

    void saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const;
    void restoreFromDictionary(const SxPropertySet& set, LayerCallback* layerCallback, const LayerSaveOptions& options, bool render);

    LayerManagerCallback* getCallback() const { return callback; }
    void setCallback(LayerManagerCallback* managerCallback) { callback = managerCallback; }
    bool isHighQuality() const { return highQuality; }

    /** A new layer of the stored class name, or null for a class no prototype has. */
    static Layer* createLayerByClassName(const juce::String& name);
    /** The prototype tables are process-wide and not owned: the application fills them at start
        with objects that live as long as it does. */
    static void addEffectPrototype(Layer* prototype);
    static void addAddonPrototype(Layer* prototype);
    static void removePrototype(Layer* prototype);

private:
    SxImageRgbaBytes* basePicture() const;
    static std::vector<Layer*>& effectPrototypes();
    static std::vector<Layer*>& addonPrototypes();
    static void restoreLayerFrom(Layer& layer, const SxPropertySet& set, const juce::String& key, const LayerSaveOptions& options);
    Layer* recreateLayer(const SxPropertySet& set, int index, LayerCallback* layerCallback, const LayerSaveOptions& options);
    static void storeLayer(SxPropertySet& set, const Layer& layer, const juce::String& classKey, const juce::String& dictionaryKey,
                           const LayerSaveOptions& options);

    LayerRenderRegion* pendingRegion = nullptr;
    bool highQuality = false;
    std::vector<Layer*> layers;
    LayerManagerCallback* callback = nullptr;
};
