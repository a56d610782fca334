#pragma once
// The application side as a layer sees it: whether editing and undo are allowed, and where a
// finished change is reported so that it becomes an undo step.

class SxTool;

class LayerCallback
{
public:
    virtual ~LayerCallback() = default;
    virtual bool isEditingAllowed() { return true; }
    virtual bool isUndoAllowed() { return true; }
    virtual void toolFinished() {}
    /** A change is complete: the application records an undo step here. */
    virtual void layerChanged() = 0;
    virtual void setActiveTool(SxTool* tool) = 0;
};
