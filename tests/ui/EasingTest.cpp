#include "ui/EaseComponentAnimator.h"
#include "ui/Easing.h"

#include <gtest/gtest.h>

TEST(Easing, EveryCurveStartsAtTheStartAndEndsAtTheEnd)
{
    for (int kind = 0; kind < Easing::numKinds; ++kind)
    {
        EXPECT_NEAR(Easing::ease(kind, 0.0f, 10.0f, 5.0f, 300.0f), 10.0f, 1e-3f) << kind;
        // Quadratic in-and-out is the one exception: it comes back to the middle (see below).
        const float end = kind == Easing::quadraticInOut ? 12.5f : 15.0f;
        EXPECT_NEAR(Easing::ease(kind, 300.0f, 10.0f, 5.0f, 300.0f), end, 1e-3f) << kind;
    }
}

TEST(Easing, InCurvesStartSlowOutCurvesStartFastAndSymmetricOnesPassTheMiddle)
{
    // A tenth of the way in, an "in" curve has covered less than a tenth and an "out" curve more.
    for (int kind : { Easing::sineIn, Easing::quadraticIn, Easing::circularIn })
        EXPECT_LT(Easing::ease(kind, 10.0f, 0.0f, 1.0f, 100.0f), 0.1f) << kind;
    for (int kind : { Easing::sineOut, Easing::quadraticOut, Easing::circularOut })
        EXPECT_GT(Easing::ease(kind, 10.0f, 0.0f, 1.0f, 100.0f), 0.1f) << kind;
    // Back curves overshoot: "in" dips below the start, "out" passes the end.
    EXPECT_LT(Easing::ease(Easing::backIn, 20.0f, 0.0f, 1.0f, 100.0f), 0.0f);
    EXPECT_GT(Easing::ease(Easing::backOut, 80.0f, 0.0f, 1.0f, 100.0f), 1.0f);
    // Symmetric curves pass the middle at half time.
    for (int kind : { Easing::sineInOut, Easing::backInOut, Easing::bounceInOut })
        EXPECT_NEAR(Easing::ease(kind, 50.0f, 0.0f, 1.0f, 100.0f), 0.5f, 1e-3f) << kind;
}

TEST(Easing, TabledQuirksStayAsTheyAre)
{
    // Quadratic in-and-out: the second half starts at the middle, rises above it, and returns to it.
    EXPECT_NEAR(Easing::quadraticInOutF(50.0f, 0.0f, 1.0f, 100.0f), 0.5f, 1e-4f);
    EXPECT_GT(Easing::quadraticInOutF(75.0f, 0.0f, 1.0f, 100.0f), 0.5f);
    EXPECT_NEAR(Easing::quadraticInOutF(100.0f, 0.0f, 1.0f, 100.0f), 0.5f, 1e-4f);

    // Circular in-and-out jumps at the midpoint yet still ends at b + c.
    const float before = Easing::circularInOutF(49.9f, 0.0f, 1.0f, 100.0f);
    const float after = Easing::circularInOutF(50.1f, 0.0f, 1.0f, 100.0f);
    EXPECT_GT(after - before, 0.3f);
    EXPECT_NEAR(Easing::circularInOutF(100.0f, 0.0f, 1.0f, 100.0f), 1.0f, 1e-4f);
}

TEST(Easing, BounceOutHitsTheEndAtItsBreakpoints)
{
    // Each bounce segment touches the end value where the next begins.
    for (float u : { 0.36363637f, 0.72727275f, 0.90909094f })
        EXPECT_NEAR(Easing::bounceOutF(u * 100.0f, 0.0f, 1.0f, 100.0f), 1.0f, 0.02f) << u;
}

TEST(EaseComponentAnimator, MovesAlongTheCurveAndLandsOnTheTarget)
{
    juce::ScopedJuceInitialiser_GUI gui;
    juce::Component panel;
    panel.setBounds(0, 0, 100, 50);
    double now = 1000.0;
    EaseComponentAnimator animator;
    animator.clock = [&now] { return now; };
    animator.animateComponent(&panel, { 200, 0, 100, 50 }, 0.5f, 400, false, 0.5, 0.5, Easing::sineIn);
    EXPECT_TRUE(animator.isAnimating(&panel));

    animator.update(1200.0);
    const float expected = Easing::sineInF(200.0f, 0.0f, 200.0f, 400.0f);
    EXPECT_NEAR(panel.getX(), expected, 1.0f);
    EXPECT_NEAR(panel.getAlpha(), 1.0f - 0.5f * expected / 200.0f, 0.01f);

    animator.update(1400.0);
    EXPECT_EQ(panel.getX(), 200);
    EXPECT_NEAR(panel.getAlpha(), 0.5f, 1.0f / 255.0f); // alpha is kept in 8 bits
    EXPECT_FALSE(animator.isAnimating(&panel));

    animator.fadeOut(&panel, 100);
    animator.update(now + 200.0);
    EXPECT_FALSE(panel.isVisible());
}
