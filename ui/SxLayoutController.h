#pragma once
// Stacks the controls of an effect panel in a column: each row keeps its own left and width
// expressions and gets its top from the stack, with per-row gaps. Rows whose alpha is 0 take no
// space, so a panel hides a control by fading it out and re-stacking.

#include "ui/EaseComponentAnimator.h"
#include "ui/SxComponent.h"

#include <unordered_map>
#include <vector>

class SxLayoutController : public juce::Component, private juce::MultiTimer
{
public:
    SxLayoutController() = default;

    void addRow(juce::Component* row);
    /** A row that keeps its own bounds string (only its top is rewritten). */
    void addFixedRow(juce::Component* row);
    void removeRow(juce::Component* row);
    /** A row spanning the controller's width, with the height it has now. */
    void addFullWidthRow(juce::Component* row);
    /** Rows of two or three controls side by side, sharing the width equally. */
    void addTwoColumns(juce::Component* left, juce::Component* right, int height);
    void addThreeColumns(juce::Component* left, juce::Component* middle, juce::Component* right, int height);
    void insertBefore(juce::Component* row, juce::Component* before);
    void insertAfter(juce::Component* row, juce::Component* after);
    void setTopGap(juce::Component* row, int gap) { topGap[row] = gap; }
    void setBottomGap(juce::Component* row, int gap) { bottomGap[row] = gap; }
    void setKeepWidth(juce::Component* row, int keep) { keepWidth[row] = keep; }
    void setAutoRow(juce::Component* row, int autoRow) { this->autoRow[row] = autoRow; }

    void relayout(int flags = 0);
    void layoutRows();

    int getTotalHeight() const { return totalHeight; }
    const std::vector<juce::Component*>& getRows() const { return rows; }

    int startY = 0;
    int rowGap = 0;
    int controllerWidth = 0;

private:
    void timerCallback(int) override {}
    static int valueIn(const std::unordered_map<juce::Component*, int>& map, juce::Component* key);
    juce::Component* makeColumns(std::initializer_list<juce::Component*> parts, int height);

    std::vector<juce::Component*> rows;
    std::vector<std::unique_ptr<juce::Component>> columnHolders;
    int totalHeight = 0;
    std::unordered_map<juce::Component*, int> topGap, bottomGap, keepWidth, autoRow;
};

/** A scrollable column of controls: the panel-facing side of SxLayoutController. */
class SxLayoutComponent : public SxComponent, public SxUpdateComponent
{
public:
    explicit SxLayoutComponent(const juce::String& name = {});
    ~SxLayoutComponent() override;

    void createColumn(int startY, int rowGap);
    void addRow(juce::Component* row);
    void removeRow(juce::Component* row);
    void addWideRow(juce::Component* row, bool keepOwnBounds);
    void insertRowAfter(juce::Component* row, juce::Component* after);
    void insertRowBefore(juce::Component* row, juce::Component* before);
    void setRowGapAbove(juce::Component* row, int gap);
    void setRowGapBelow(juce::Component* row, int gap);
    void relayout();
    /** Lays the rows out again and fits the column to them: at once when ms is 0 or the column
        grows (a new row must not appear clipped), else eased over ms + 400 ms, so a closing
        group of rows slides up instead of jumping. */
    void relayoutAndResize(int ms);
    void updateLayout();
    void scrollToY(int y);
    EaseComponentAnimator& getAnimator() { return animator; }
    SxComponent* getInsideComponent() const { return insideComponent.get(); }
    int getColumnHeight() const { return controller != nullptr ? controller->getTotalHeight() : 0; }

    /** Re-reads every control's value (after a preset or undo changed the fields). */
    void update() override;
    void resized() override { updateLayout(); }

    SxLayoutController* getController() const { return controller; }
    juce::Viewport* getScroller() const { return scroller.get(); }

    bool scrollable = true;
    bool noInset = false;

private:
    std::unique_ptr<juce::Viewport> scroller;
    std::unique_ptr<SxComponent> insideComponent;
    SxLayoutController* controller = nullptr; // owned by insideComponent
    std::unique_ptr<SxLayoutController> ownedController;
    std::vector<juce::Component*> children;
    EaseComponentAnimator animator;
};
