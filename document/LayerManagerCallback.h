#pragma once
// The application side as the layer manager sees it: render requests, the scale of renders and
// the news that the stack or its selection changed.

struct LayerRect;

class LayerManagerCallback
{
public:
    virtual ~LayerManagerCallback() = default;
    /** A null region means the whole picture. */
    virtual void requestRender(bool showBusy, const LayerRect* region) = 0;
    virtual void layerNeedsRender(bool showBusy, const LayerRect* region) = 0;
    /** Lengths of the effect are multiplied by this, so previews look like full-size renders. */
    virtual float getRenderScale() = 0;
    virtual void layersChanged() = 0;
};
