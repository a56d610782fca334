#include "ui/SxLayoutController.h"

#include <gtest/gtest.h>

TEST(BoundsStrings, SiblingsParentAndOwnEdgesResolveAndFollowResizes)
{
    juce::ScopedJuceInitialiser_GUI gui;
    juce::Component parent;
    parent.setSize(1000, 600);
    SxComponent topBar("topBar"), side("side"), view("view");
    topBar.setComponentID("topBar");
    side.setComponentID("side");
    for (auto* c : { &topBar, &side, &view })
        parent.addAndMakeVisible(c);

    topBar.setBoundsString("0, 0, left+parent.width, top+33");
    side.setBoundsString("parent.width - 256, topBar.height, left + 256, parent.height");
    view.setBoundsString("30, topBar.bottom + 1, left + side.left - 60, top + parent.height - 150");
    EXPECT_EQ(topBar.getBounds(), juce::Rectangle<int>(0, 0, 1000, 33));
    EXPECT_EQ(side.getBounds(), juce::Rectangle<int>(744, 33, 256, 567));
    EXPECT_EQ(view.getBounds(), juce::Rectangle<int>(30, 34, 684, 450));
    EXPECT_EQ(side.getBoundsString(), "parent.width - 256, topBar.height, left + 256, parent.height");

    // A window resize re-runs every expression without layout code.
    parent.setSize(1400, 800);
    EXPECT_EQ(side.getBounds(), juce::Rectangle<int>(1144, 33, 256, 767));
    EXPECT_EQ(view.getWidth(), 1144 - 60);

    // Centring by the own width.
    SxComponent dialog;
    parent.addAndMakeVisible(dialog);
    dialog.setBoundsString("(parent.width / 2) - (width / 2), -236, left+450, top+235");
    EXPECT_EQ(dialog.getBounds(), juce::Rectangle<int>(475, -236, 450, 235));

    // A missing sibling leaves the component at the origin without an error, also one that had
    // a working string before (whose rule must not move it back), and also after a resize.
    SxComponent lost;
    parent.addAndMakeVisible(lost);
    lost.setTopLeftPosition(50, 50);
    for (auto* c : { &lost, &dialog })
    {
        c->setBoundsString("nobody.right + 10, 5, left + 20, top + 20");
        EXPECT_EQ(c->getPosition(), juce::Point<int>(0, 0));
    }
    parent.setSize(1200, 700);
    EXPECT_EQ(dialog.getPosition(), juce::Point<int>(0, 0));
}

TEST(LayoutColumn, StacksRowsWithGapsKeepsCustomLeftAndSkipsHiddenRows)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxLayoutComponent column;
    column.setSize(256, 400);
    column.createColumn(10, 4);
    juce::Component a, b, hidden1, hidden2;
    SxComponent custom;
    a.setSize(10, 30);
    b.setSize(10, 0); // no height of its own: rows default to 45
    column.addRow(&a);
    column.addRow(&custom);
    column.addRow(&b);
    column.addRow(&hidden1);
    column.addRow(&hidden2);
    custom.setBoundsString("12, 0, left + 44, top + 20");
    column.setRowGapAbove(&b, 6);
    hidden1.setSize(10, 30);
    hidden2.setSize(10, 30);
    hidden1.setAlpha(0.0f);
    hidden2.setAlpha(0.0f);
    column.relayout();

    EXPECT_EQ(a.getY(), 10);
    EXPECT_EQ(custom.getY(), 10 + 30 + 4);
    EXPECT_EQ(custom.getX(), 12); // its own left and width survive the re-stack
    EXPECT_EQ(custom.getWidth(), 44);
    EXPECT_EQ(b.getY(), 44 + 20 + 4 + 6);
    EXPECT_EQ(b.getHeight(), 45);
    // The two faded rows at the end leave no trailing gap.
    EXPECT_EQ(column.getColumnHeight(), 74 + 45 + 4);

    // Re-stacking again is stable.
    column.relayout();
    EXPECT_EQ(custom.getX(), 12);
    EXPECT_EQ(b.getY(), 74);
}

TEST(LayoutColumn, ResizingGrowsAtOnceAndShrinksEased)
{
    juce::ScopedJuceInitialiser_GUI gui;
    SxLayoutComponent column;
    column.setSize(256, 400);
    column.createColumn(0, 0);
    juce::Component a, b;
    a.setSize(10, 30);
    b.setSize(10, 40);
    column.addRow(&a);
    column.relayoutAndResize(300);
    auto* inside = column.getInsideComponent();
    EXPECT_EQ(inside->getHeight(), 30 + 5); // a growing column never waits

    column.addRow(&b);
    column.relayoutAndResize(300);
    EXPECT_EQ(inside->getHeight(), 70 + 5);

    // Shrinking eases over 300 + 400 ms: still tall at once, in between half-way, at the end fitted.
    double now = 0.0;
    column.getAnimator().clock = [&now] { return now; };
    column.removeRow(&b);
    column.relayoutAndResize(300);
    EXPECT_EQ(inside->getHeight(), 75);
    now = 350.0;
    column.getAnimator().update(now);
    EXPECT_GT(inside->getHeight(), 35);
    EXPECT_LT(inside->getHeight(), 75);
    now = 800.0;
    column.getAnimator().update(now);
    EXPECT_EQ(inside->getHeight(), 35);
    EXPECT_EQ(column.getController()->getHeight(), 30);

    // Zero time resizes at once.
    column.addRow(&b);
    column.relayoutAndResize(0);
    column.removeRow(&b);
    column.relayoutAndResize(0);
    EXPECT_EQ(inside->getHeight(), 35);
}
