// Geometry records: the derived corners and matrices agree with the placement, and a placement
// stored at one picture size comes back in proportion at another.

#include "document/SxGeometryRecords.h"

#include <gtest/gtest.h>

namespace
{
// Float maths on coordinates of a few thousand pixels: a thousandth of a pixel is far below
// anything a user sees and far above single-precision rounding at that size.
constexpr float tolerance = 1.0e-3f;

void expectNear(juce::Point<float> a, juce::Point<float> b)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

SxPlacement placement(float cx, float cy, float sx, float sy, float angle, float w, float h)
{
    SxPlacement p;
    p.center = { cx, cy };
    p.scale = { sx, sy };
    p.orientation = angle;
    p.imageSize = { w, h };
    p.update();
    return p;
}
} // namespace

TEST(SxTransform, CornersFollowCentreScaleAndTurn)
{
    auto p = placement(100, 50, 2, 1, 0, 40, 20);
    expectNear(p.corners[0], { 60, 40 });
    expectNear(p.corners[2], { 140, 60 });
    EXPECT_NEAR(p.edgeLengths[0], 80, tolerance);
    EXPECT_NEAR(p.edgeLengths[1], 20, tolerance);

    // A quarter turn clockwise in screen coordinates (y down) takes the top edge downwards.
    p.orientation = juce::MathConstants<float>::halfPi;
    p.update();
    expectNear(p.edgeDirections[0], { 0, 1 });
    expectNear(p.corners[0], { 110, 10 });
    EXPECT_TRUE(p.contains({ 100, 85 }));
    EXPECT_FALSE(p.contains({ 130, 50 }));
}

TEST(SxTransform, InverseUndoesForward)
{
    auto p = placement(321.5f, -12, 0.37f, 1.9f, 2.2f, 640, 480);
    for (auto q : { juce::Point<float>(0, 0), juce::Point<float>(640, 480), juce::Point<float>(17, 400) })
        expectNear(p.inverse.apply(p.forward.apply(q)), q);
    // Each corner is the picture's own corner carried by forward.
    expectNear(p.inverse.apply(p.corners[2]), { 640, 480 });
}

TEST(SxTransform, SolveMapsRectangleOntoRectangle)
{
    SxTransform t;
    t.solve({ 0, 0, 200, 100 }, { 10, 20, 400, 50 }, SxTransform::stretch);
    expectNear(t.forward.apply({ 0, 0 }), { 10, 20 });
    expectNear(t.forward.apply({ 200, 100 }), { 410, 70 });
    t.solve({ 0, 0, 200, 100 }, { 10, 20, 400, 50 }, SxTransform::fit);
    // One factor (the smaller, 0.5), centred in the target.
    expectNear(t.forward.apply({ 100, 50 }), { 210, 45 });
    expectNear(t.forward.apply({ 200, 100 }) - t.forward.apply({ 0, 0 }), { 100, 50 });
    expectNear(t.inverse.apply(t.forward.apply({ 33, 44 })), { 33, 44 });
}

TEST(SxPlacement, StoredRecordComesBackInProportionAtAnotherSize)
{
    for (int mode : { 0, 1 })
    {
        SCOPED_TRACE(mode);
        auto original = placement(300, 200, 0.5f, 0.5f, 0.3f, 800, 600);
        original.isSelected = true;
        SxPropertySet set;
        original.writeToDictionary(set, "placement", { 1500, 1000 }, mode);

        // The record is an XML text under its name, with the documented keys.
        auto xml = juce::parseXML(set.getValue("placement"));
        ASSERT_NE(xml, nullptr);
        SxPropertySet record;
        record.fromXml(*xml);
        for (const char* key : { "origImageSize.x", "origImageSize.y", "transform.center.x", "transform.center.y",
                                 "transform.scale.x", "transform.scale.y", "transform.orientation", "isSelected" })
            EXPECT_TRUE(record.containsKey(key)) << key;
        EXPECT_EQ(record.getValue("isSelected"), "1");

        // At half the picture size the centre and the scale halve, the turn stays.
        for (float factor : { 1.0f, 0.5f })
        {
            SxPlacement back;
            back.imageSize = { 800, 600 };
            ASSERT_TRUE(back.readFromDictionary(set, "placement", juce::Point<float>(1500, 1000) * factor));
            expectNear(back.center, original.center * factor);
            expectNear(back.scale, original.scale * factor);
            EXPECT_NEAR(back.orientation, 0.3f, tolerance);
            expectNear(back.corners[0], original.corners[0] * factor);
            EXPECT_TRUE(back.isSelected);
        }
    }
}

TEST(SxPlacement, MissingOrBrokenRecordLeavesThePlacement)
{
    auto p = placement(5, 6, 1, 1, 0, 10, 10);
    SxPropertySet set;
    EXPECT_FALSE(p.readFromDictionary(set, "absent", { 100, 100 }));
    set.setString("broken", "<not closed");
    EXPECT_FALSE(p.readFromDictionary(set, "broken", { 100, 100 }));
    expectNear(p.center, { 5, 6 });
}

TEST(SxSegment, KeysRoundTrip)
{
    SxSegment s { { 1.5f, -2 }, { 300, 4000.25f } };
    SxPropertySet set;
    s.writeToDictionary(set);
    EXPECT_EQ(set.getAllProperties().getAllKeys(), juce::StringArray({ "mPt1.x", "mPt1.y", "mPt2.x", "mPt2.y" }));
    SxSegment back;
    back.readFromDictionary(set);
    EXPECT_EQ(back.mPt1, s.mPt1);
    EXPECT_EQ(back.mPt2, s.mPt2);
}
