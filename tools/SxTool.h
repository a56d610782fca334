#pragma once
// The base of every tool: at once a toggle button in a panel and the receiver of the document's
// mouse events while that button is on. It carries the panel of the tool's own controls, the link
// to the document, and the two-finger gesture (pinch to zoom, move to pan) that every tool has
// for free. The button shows three images like a juce::ImageButton; a tool without images draws
// a vector icon (setIconPath) in the same three states instead, so that the program needs no
// image files for its tool buttons.

#include "document/LayerRenderParameters.h"
#include "ui/SxComponent.h"

#include <juce_gui_basics/juce_gui_basics.h>

class SxToolDocument;
class SxTool;

/** Told when a tool is switched on or off. */
class SxToolCallback
{
public:
    virtual ~SxToolCallback() = default;
    virtual void stateChanged(SxTool* /*tool*/, bool /*on*/) {}
};

/** The one who decides which tool is current: the main component. A tool's button asks it to
    make the tool current or to clear it, and the tool's gesture asks it whether touch gestures
    are in force. */
class SxToolOwner
{
public:
    virtual ~SxToolOwner() = default;
    virtual void setCurrentTool(SxTool*) = 0;
    virtual bool gesturesInForce() { return false; }
    /** A tool changed what the picture shows inside rect (image pixels; the empty or all-zero
        rectangle means all of it): show it again without a render of the effect. */
    virtual void repaintImageRect(const LayerRect& /*rect*/) {}
};

class SxTool : public juce::ImageButton, public juce::Button::Listener
{
public:
    /** Where the panel that shows toolUIComponent places it. */
    static constexpr const char* toolUIBounds = "0, 0, left + parent.width, top + parent.height";

    SxTool(const juce::String& name, const juce::Image& normal = {}, const juce::Image& over = {},
           const juce::Image& down = {});
    ~SxTool() override;

    //==============================================================================
    void setOwner(SxToolOwner* newOwner) { owner = newOwner; }
    SxToolOwner* getOwner() const { return owner; }
    void setFirstCallback(SxToolCallback* c) { firstCallback = c; }
    void setSecondCallback(SxToolCallback* c) { secondCallback = c; }

    /** The document the tool works in; the document sets itself before every event it hands on. */
    void setDocument(SxToolDocument* document) { mDocument = document; }
    SxToolDocument* getDocument() const { return mDocument; }

    /** The controls that belong to the tool, shown by the panel while the tool is current. */
    SxComponent* getToolUIComponent() { return &toolUIComponent; }

    /** A vector icon for a tool without images, drawn into the button with a margin. */
    void setIconPath(const juce::Path& path) { iconPath = path; repaint(); }

    bool isToolOn() const { return mToolIsOn; }

    /** The "Pen Gesture" setting: with it on, the two-finger gesture works whatever the owner
        says of touch gestures, for a pen tablet or touch screen that the owner does not detect. */
    virtual void togglePenGesture() { penGesture = !penGesture; }
    void setPenGesture(bool on) { penGesture = on; }
    bool isPenGestureOn() const { return penGesture; }

    //==============================================================================
    /** Rebuilds what the tool shows as the document's cursor: called when it is switched on,
        when the zoom changes and when its brush changes. */
    virtual void updateCursor() {}

    /** Stores the state, tells both callbacks, shows the button lit (the down image in every
        state) or plain, and when switched off lets go of the document. */
    virtual void setToolOn(bool on);

    /** A key that no command took, offered to the current tool first; true when taken. (Not
        the button's own keyPressed, which would click it.) */
    virtual bool handleToolKey(const juce::KeyPress&) { return false; }

    /** Tells every SxUpdateComponent in the tool's panel to re-read its value. */
    virtual void updatePanel();
    /** Repaints the whole document. */
    virtual void repaintDocument();

    /** Drawn by the document under the image. */
    virtual void paintBeforeImage(juce::Graphics&) {}
    /** Drawn by the document over the image; imageArea is where the image lies in the view. */
    virtual void paintOverImage(juce::Graphics&, juce::Rectangle<float> /*imageArea*/) {}

    /** The document's mouse events. The base's press, drag and release run the two-finger
        gesture; a tool that overrides them calls the base to keep it. */
    virtual void documentMouseUp(const juce::MouseEvent& e);
    virtual void documentMouseMove(const juce::MouseEvent&) {}
    virtual void documentMouseDown(const juce::MouseEvent& e);
    virtual void documentMouseDrag(const juce::MouseEvent& e);
    virtual void documentMouseEnter(const juce::MouseEvent&) {}
    virtual void documentMouseExit(const juce::MouseEvent&) {}

    /** A click on the lit button clears the current tool; on a plain one it makes this current. */
    void buttonClicked(juce::Button*) override;
    void paintButton(juce::Graphics& g, bool highlighted, bool down) override;

    /** The last midpoint of a two-finger gesture, (0, 0) while there is none. */
    juce::Point<float> getPinchCentre() const { return mPinchCentre; }

protected:
    bool gesturesInForce() const { return penGesture || (owner != nullptr && owner->gesturesInForce()); }
    /** The gesture's three steps, shared by every tool. */
    void gestureStart(const juce::MouseEvent& e);
    void gestureStep(const juce::MouseEvent& e);
    void gestureEnd(const juce::MouseEvent& e);

    SxToolCallback* firstCallback = nullptr;
    SxToolDocument* mDocument = nullptr;
    SxToolCallback* secondCallback = nullptr;
    SxToolOwner* owner = nullptr;
    SxComponent toolUIComponent { "toolUIComponent" };
    juce::Image normalImage, overImage, downImage;
    juce::Path iconPath;
    juce::Point<float> mPinchCentre;
    float mPinchDistance = 0.0f;
    bool mToolIsOn = false;
    bool penGesture = false;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR(SxTool)
};
