#pragma once
// Which tool is current, and the one way of changing it: the main component holds one and
// forwards its SxToolOwner calls here, so that the document's tool, the tool's lit state and the
// component's notion of the current tool always change together.

#include "tools/SxTool.h"

#include <functional>

class SxToolDocument;

class SxToolSwitcher : public SxToolOwner
{
public:
    /** Asked before every change with the current and the new tool (either may be null); false
        keeps the current tool. The main component lets its top layer decide. */
    using Veto = std::function<bool(SxTool* current, SxTool* next)>;

    explicit SxToolSwitcher(SxToolDocument* document = nullptr) : document(document) {}

    void setDocument(SxToolDocument* newDocument) { document = newDocument; }
    void setVeto(Veto newVeto) { veto = std::move(newVeto); }
    void setGestureTest(std::function<bool()> test) { gestureTest = std::move(test); }

    /** Makes tool the one that takes the document's mouse, or with null leaves none; nothing
        happens when it already is current or the veto refuses. */
    void setCurrentTool(SxTool* tool) override;
    SxTool* getCurrentTool() const { return currentTool; }
    bool gesturesInForce() override { return gestureTest ? gestureTest() : false; }

    /** Makes this the owner of tool, so that its button switches through here. */
    void adopt(SxTool& tool) { tool.setOwner(this); }

private:
    SxToolDocument* document;
    SxTool* currentTool = nullptr;
    Veto veto;
    std::function<bool()> gestureTest;
};
