#pragma once
// One entry of the layer stack: renders an output from the picture of the layer below, caches
// it until something changes, owns the tools that work on it, and saves and restores its settings
// as a property set. Sub-layers are layers too. Building panels and controls is left to the
// interface; the engine's layers have no windows.

#include "document/LayerCallback.h"
#include "document/LayerRenderParameters.h"
#include "imaging/SxImageAlphaByte.h"
#include "imaging/SxImageRgbaBytes.h"

#include <juce_core/juce_core.h>

#include <functional>
#include <atomic>
#include <vector>

class LayerManager;
class SxPropertySet;
class SxTool;

/** How a layer or a stack is saved. keepImages keeps pictures as shared objects in child sets
    (undo records); otherwise everything becomes text (files). forCopy marks a save that only
    feeds copyFrom. */
struct LayerSaveOptions
{
    bool keepImages = false;
    bool forCopy = false;
};

class Layer
{
public:
    Layer();
    virtual ~Layer();

    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    virtual void controlChanged() {}
    /** Deletes every tool; the application is told first if its active tool is one of them. */
    virtual void clearTools();
    /** A new object of the same class with default settings: the factory's hook. */
    virtual Layer* createInstance() const = 0;
    /** Becomes a copy of other, sub-layers included, by way of other's dictionary. */
    virtual void copyFrom(const Layer& other);
    virtual bool isNormallyComposited() const { return false; }
    virtual void wasDeselected() {}
    virtual void onControlsShown() {}
    virtual bool hasOwnHistory() const { return ownsHistory; }
    virtual bool wantsMouseEvents() const { return usesPointer; }
    virtual void resetControls() {}
    virtual void resetSettings() {}
    virtual void randomize() {}
    virtual void randomizeSettings() { randomize(); }
    virtual juce::String getClassName() const { return "Layer"; }
    virtual juce::String getDefaultName() const { return getClassName(); }
    virtual juce::String getName() const { return layerName.isEmpty() ? getClassName() : layerName; }

    /** Takes ownership of a tool. T must be the tool's complete class, which lets the layer
        delete it without knowing tool classes. */
    template <typename T>
    void addTool(T* tool, bool select)
    {
        addOwnedTool(tool, [](SxTool* t) { delete static_cast<T*>(t); }, select);
    }
    /** Drops every reference to tool without deleting it; the caller owns it again. */
    virtual void removeTool(SxTool* tool);
    virtual SxTool* getSelectedTool() const { return selectedTool; }
    virtual bool hasTools() const { return ! tools.empty(); }
    virtual void setSelectedTool(SxTool* tool);
    virtual void onToolChanged() {}
    std::vector<SxTool*> getToolList() const;

    // Panels and controls belong to the interface, which overrides these.
    virtual void buildBrushPanel() {}
    virtual void buildControlPanel() { buildControls(); }
    virtual void buildControls() {}
    virtual void updateControls() {}
    virtual juce::String getWebLink() const { return {}; }
    virtual bool hasPresets() const { return false; }
    virtual void writeDefaultPresets() {}

    virtual bool isImageSizeAware() const { return true; }
    virtual void onCropped() {}
    virtual bool isBrushLayer() const { return false; }
    virtual void notifyChanged();

    virtual void saveToDictionary(SxPropertySet& set, const LayerSaveOptions& options) const;
    virtual void restoreFromDictionary(const SxPropertySet& set, const LayerSaveOptions& options);
    virtual void resetToDefaults() { setNeedsRender(true); }
    virtual void resetImage(SxImageRgbaBytes* image);
    virtual void clearCachedImages();
    virtual LayerRect adjustRegion(const LayerRect& region) { return region; }
    virtual void onImageSizeChanged(const LayerRect& region, SxImageRgbaBytes* image);
    virtual void resizeBrushMask(SxImageRgbaBytes* image);

    /** Without a region the stack is marked stale from here up and a render is asked for;
        with one, only that region is asked for. */
    virtual void invalidate(const LayerRect* region);
    virtual bool isLocked() const { return false; }
    virtual bool getSelected() const { return isSelected; }
    virtual void setSelected(bool selected) { isSelected = selected; }
    virtual bool getVisible() const { return isVisible; }
    virtual void setVisible(bool visible) { isVisible = visible; }
    virtual bool getNeedsRender() const { return needsRender; }
    /** Marks this layer and all its sub-layers. */
    virtual void setNeedsRender(bool value);

    /** The layer's own work; the base class has none. */
    virtual void renderLayer(LayerRenderParameters& parameters);
    /** Lays source onto destination, which first receives a copy of the input within the dirty
        rectangle, using this layer's opacity and blend mode. */
    virtual void compositeOnto(const LayerRenderParameters& parameters, const SxImageRgbaBytes& source, SxImageRgbaBytes& destination);
    /** The cached output, rendered first when stale or when the input changed size. The result
        stays owned by the layer. */
    virtual SxImageRgbaBytes* getRenderedImage(LayerRenderParameters& parameters);
    virtual void allocateOutput(const LayerRenderParameters& parameters);
    virtual void releaseOutput();
    virtual bool hasVisibleOverlay() const { return false; }
    virtual bool needsSecondPass() const { return false; }
    virtual SxImageRgbaBytes* renderSecondPass(LayerRenderParameters&) { return nullptr; }
    virtual void releaseSecondary();
    virtual bool handleKey(int /*keyCode*/) { return false; }
    virtual LayerRect* getRenderRegion() { return &renderRegion; }
    virtual void requestRegionRender(const LayerRect& region);
    virtual void requestRender(bool showBusy);
    virtual void allocateWork(const LayerRenderParameters& parameters);

    void addSubLayer(Layer* layer);
    void insertSubLayer(Layer* layer, int index);
    /** Removes and deletes a sub-layer. */
    void removeSubLayer(Layer* layer);
    const std::vector<Layer*>& getSubLayers() const { return subLayers; }
    Layer* getParentLayer() const { return parentLayer; }

    /** The name under which the class is stored in files: the run-time type name, cleaned of
        any "class " prefix, so that it does not depend on how a subclass spells getClassName. */
    juce::String getStoredClassName() const;
    static juce::String cleanClassName(const juce::String& typeName);

    /** Parses a dictionary stored as XML text; null for text that is not valid UTF-8 (JUCE's
        parser walks past the end of such text) or not XML. */
    static std::unique_ptr<juce::XmlElement> parseDictionaryXml(const juce::String& text);

    void setLayerCallback(LayerCallback* callback) { layerCallback = callback; }
    LayerCallback* getLayerCallback() const { return layerCallback; }
    void setLayerManager(LayerManager* manager) { layerManager = manager; }
    LayerManager* getLayerManager() const { return layerManager; }
    SxImageRgbaBytes* getOutputImage() const { return outputImage; }
    SxImageRgbaBytes* getSecondaryImage() const { return secondaryImage; }
    SxImageRgbaBytes* getWorkImage() const { return workImage; }

    int compositeMode = 0;
    float layerOpacity = 1.0f;
    juce::String layerName;
    bool renderAfterLower = false;

protected:
    /** A zeroed image the size of the input, reusing the present one when it fits. */
    static void allocateLike(SxImageRgbaBytes*& target, const LayerRenderParameters& parameters);
    static void releaseImage(SxImageRgbaBytes*& image);

    bool ownsHistory = false;
    bool usesPointer = false;
    SxTool* selectedTool = nullptr;
    SxImageRgbaBytes* outputImage = nullptr;
    SxImageRgbaBytes* secondaryImage = nullptr;
    SxImageRgbaBytes* workImage = nullptr;
    LayerCallback* layerCallback = nullptr;
    LayerManager* layerManager = nullptr;
    LayerRect renderRegion;
    bool isSelected = false;
    bool isVisible = true;
    /** Written on the message thread, read and cleared by a render thread. */
    std::atomic<bool> needsRender { true };
    std::vector<Layer*> subLayers;
    Layer* parentLayer = nullptr;

private:
    struct OwnedTool
    {
        SxTool* tool;
        void (*destroy)(SxTool*);
    };
    void addOwnedTool(SxTool* tool, void (*destroy)(SxTool*), bool select);
    std::vector<OwnedTool> tools;
};
