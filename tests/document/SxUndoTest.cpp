// The undo history: five records, oldest dropped, redo tail cut by a new change.

#include "document/SxUndo.h"

#include <gtest/gtest.h>

namespace
{
SxPropertySet state(int n)
{
    SxPropertySet set;
    set.setInt("state", n);
    return set;
}

int stateOf(const SxPropertySet& set) { return set.getIntValue("state", -1); }
} // namespace

TEST(SxUndo, AfterSixChangesOnlyTheLastFiveAreReachable)
{
    SxUndo undo;
    for (int n = 1; n <= 6; ++n)
        undo.push(state(n));

    std::vector<int> reached { 6 };
    SxPropertySet out;
    while (undo.undo(out))
        reached.push_back(stateOf(out));
    EXPECT_EQ(reached, (std::vector<int> { 6, 5, 4, 3, 2 }));

    // Stuck at the oldest, an undo changes nothing and a redo walks forward again.
    out = state(99);
    EXPECT_FALSE(undo.undo(out));
    EXPECT_EQ(stateOf(out), 99);
    std::vector<int> forward;
    while (undo.redo(out))
        forward.push_back(stateOf(out));
    EXPECT_EQ(forward, (std::vector<int> { 3, 4, 5, 6 }));

    // A reset leaves nothing to undo or redo, and the first record after it is the start state,
    // with nothing before it.
    undo.reset();
    EXPECT_FALSE(undo.undo(out));
    EXPECT_FALSE(undo.redo(out));
    EXPECT_EQ(undo.getCurrentIndex(), -1) << "an undo on an empty history must not move it";
    undo.push(state(1));
    EXPECT_FALSE(undo.undo(out));
}

TEST(SxUndo, ChangeAfterUndoDropsTheRedoTail)
{
    SxUndo undo;
    for (int n = 1; n <= 4; ++n)
        undo.push(state(n));
    SxPropertySet out;
    ASSERT_TRUE(undo.undo(out));
    ASSERT_TRUE(undo.undo(out));
    EXPECT_EQ(stateOf(out), 2);
    EXPECT_TRUE(undo.canRedo());

    undo.push(state(10));
    EXPECT_FALSE(undo.canRedo());
    EXPECT_FALSE(undo.redo(out));
    ASSERT_TRUE(undo.undo(out));
    EXPECT_EQ(stateOf(out), 2);
    ASSERT_TRUE(undo.undo(out));
    EXPECT_EQ(stateOf(out), 1);
}

TEST(SxUndo, RecordsShareImagesInsteadOfCopyingThem)
{
    SxUndo undo;
    auto* picture = new SxImageRgbaBytes(64, 64);
    SxPropertySet set;
    set.addImage(picture, "picture");
    const int before = picture->getReferenceCount();
    undo.push(set);
    EXPECT_EQ(picture->getReferenceCount(), before + 1);
    undo.reset();
    EXPECT_EQ(picture->getReferenceCount(), before);
    picture->release();
}
