#pragma once
// Moves, turns and sizes placed items (SxPlacement) directly on the document: the centre or the
// inside moves an item, a corner turns and scales it about its centre, an edge handle drags one
// side. Hit radii are in view pixels, so the handles stay as easy to catch at every zoom. The
// host owns the items and hears each finished change through SxPlacementToolCallback.

#include "document/SxGeometryRecords.h"
#include "tools/SxTool.h"

#include <vector>

class SxPlacementTool;

/** What the host answers and hears. Only getPlacements must be given. */
class SxPlacementToolCallback
{
public:
    virtual ~SxPlacementToolCallback() = default;
    /** A finished change of item (or of the group box); before is its record at the press. */
    virtual void placementChanged(SxPlacementTool*, SxPlacement* /*item*/, const SxPlacement& /*before*/, bool /*finished*/) {}
    /** The items, bottom first. */
    virtual std::vector<SxPlacement*> getPlacements(SxPlacementTool*) = 0;
    /** Delete or Backspace: remove the selected items. */
    virtual void removeSelectedPlacements(SxPlacementTool*) {}
    /** Whether the document may repaint around an item after each drag step. */
    virtual bool mayRepaintAfterDrag(SxPlacementTool*) { return true; }
    /** One of the extra handles (100, 101, 102) of item is being dragged to point (image pixels). */
    virtual void extraHandleMoved(SxPlacementTool*, SxPlacement*, int /*mode*/, juce::Point<float> /*point*/) {}
    /** Where an extra handle of item stands, in image pixels. */
    virtual juce::Point<float> extraHandlePosition(SxPlacementTool*, SxPlacement* item, int /*mode*/) { return item->center; }
    virtual void extraHandle100Released(SxPlacementTool*, SxPlacement*) {}
    virtual void extraHandle101Released(SxPlacementTool*, SxPlacement*) {}
    virtual void extraHandle102Released(SxPlacementTool*, SxPlacement*) {}
    /** The smallest placed size of an item, in image pixels. */
    virtual juce::Point<float> smallestSize(SxPlacementTool*) { return { 50.0f, 50.0f }; }
};

/** Told of every step of a drag, before the item's derived points are refreshed. */
class SxPlacementToolListener
{
public:
    virtual ~SxPlacementToolListener() = default;
    /** True ends the telling: later listeners do not hear this step. */
    virtual bool placementMoving(SxPlacementTool*, SxPlacement* item, const SxPlacement& before) = 0;
};

class SxPlacementTool : public SxTool, private juce::Timer
{
public:
    enum Mode
    {
        cornerTopLeft = 0,
        cornerTopRight = 1,
        cornerBottomRight = 2,
        cornerBottomLeft = 3,
        moving = 5,
        none = 10,
        edgeTop = 20,
        edgeRight = 21,
        edgeBottom = 22,
        edgeLeft = 23,
        inert = 24,
        marquee = 50,
        extraHandle0 = 100,
        extraHandle1 = 101,
        extraHandle2 = 102
    };

    /** View pixels within which a press takes the centre, a corner or an edge. */
    static constexpr float handleRadius = 15.0f;
    /** The first extra handle, which may sit near the centre, is taken first within this. */
    static constexpr float nearHandleRadius = 7.5f;

    explicit SxPlacementTool(const juce::String& name = "placementTool");
    ~SxPlacementTool() override;

    void setCallback(SxPlacementToolCallback* c) { callback = c; }
    void addListener(SxPlacementToolListener* l) { listeners.add(l); }
    void removeListener(SxPlacementToolListener* l) { listeners.remove(l); }

    // Options; the defaults suit a single placed picture that the host selects itself.
    bool extraHandles[3] = { false, false, false };
    bool marqueeSelection = false;
    bool multiSelection = true;
    bool groupEdgeHandles = false;
    bool itemEdgeHandles = true;
    bool groupBox = true;
    /** A press on nothing selects the item last selected (or the first). */
    bool clickGrabs = false;
    bool suspended = false;

    int getMode() const { return mode; }
    SxPlacement* getPressedItem() const { return pressedItem; }
    SxPlacement* getItemUnderPointer() const { return itemUnderPointer; }
    const SxPlacement& getGroup() const { return group; }
    juce::Rectangle<float> getMarquee() const { return marqueeBox; }

    void documentMouseDown(const juce::MouseEvent& e) override;
    void documentMouseDrag(const juce::MouseEvent& e) override;
    void documentMouseUp(const juce::MouseEvent& e) override;
    void documentMouseMove(const juce::MouseEvent& e) override;
    /** Keys the host hands on from the document: Delete and Backspace remove, Ctrl+A selects
        all, arrows nudge by one image pixel. True when taken. */
    bool handleKey(const juce::KeyPress& key);
    /** An arrow came up: a second later the nudges are reported as one finished change. */
    void arrowKeyReleased() { if (nudged != nullptr) startTimer(nudgeReportMs); }
    static constexpr int nudgeReportMs = 1000;
    void paintOverImage(juce::Graphics& g, juce::Rectangle<float> imageArea) override;

private:
    std::vector<SxPlacement*> items();
    std::vector<SxPlacement*> selectedItems();
    /** The mode a press at view point p takes on item, or none. */
    int hitTestItem(SxPlacement& item, juce::Point<float> p, bool edges);
    juce::Point<float> toView(juce::Point<float> imagePoint) const;
    juce::Point<float> toImage(juce::Point<float> viewPoint) const;
    float zoom() const;
    void pressOn(SxPlacement* item, int newMode, juce::Point<float> imagePoint);
    void updateGroup();
    /** Tells the listeners, refreshes the item and repaints around its old and new box. */
    void changed(SxPlacement& item, const SxPlacement& before);
    void repaintImageRect(juce::Rectangle<float> imageRect);
    void timerCallback() override;
    void paintItem(juce::Graphics& g, const SxPlacement& item, bool handles, float opacity, bool edges);

    SxPlacementToolCallback* callback = nullptr;
    juce::ListenerList<SxPlacementToolListener> listeners;

    SxPlacement group, groupAtPress, groupBeforeStep;
    SxPlacement itemAtPress, itemBeforeStep;
    SxPlacement* pressedItem = nullptr;
    SxPlacement* itemUnderPointer = nullptr;
    int lastSelectedIndex = 0;

    int mode = none;
    juce::Point<float> downView, downImage, lastImage;
    float lastAngle = 0.0f, lastDistance = 0.0f, rotationAtPress = 0.0f, angleAtPress = 0.0f;
    juce::Rectangle<float> marqueeBox;
    SxPlacement* nudged = nullptr;
    SxPlacement nudgeRecord;
};
