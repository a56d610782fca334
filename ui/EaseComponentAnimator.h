#pragma once
// Moves and fades components along the eased curves of Easing, the way the panels slide in and
// out. It takes the arguments of juce::ComponentAnimator::animateComponent plus the easing kind.
// The component itself is moved (no proxy image), so what is on screen is always the live panel.

#include "ui/Easing.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <vector>

class EaseComponentAnimator : private juce::Timer
{
public:
    EaseComponentAnimator() = default;
    ~EaseComponentAnimator() override = default;

    /** startSpeed and endSpeed are accepted for the toolkit's signature; the easing kind decides
        the shape. useProxyComponent is ignored for the reason given above. */
    void animateComponent(juce::Component* component, juce::Rectangle<int> finalBounds, float finalAlpha, int milliseconds,
                          bool useProxyComponent, double startSpeed, double endSpeed, int easing);

    void fadeIn(juce::Component* component, int milliseconds);
    /** Fades to transparent and hides the component at the end. */
    void fadeOut(juce::Component* component, int milliseconds);
    bool isAnimating(juce::Component* component) const;
    bool isAnimating() const { return !tasks.empty(); }
    /** Stops every animation; with moveToFinalPositions the components jump to their targets. */
    void cancelAllAnimations(bool moveToFinalPositions);

    /** Advances every animation to the given time on the high-resolution millisecond clock.
        The timer calls it; tests call it with times of their own. */
    void update(double nowMilliseconds);

    /** The clock that update() is normally driven with; tests may replace it. */
    std::function<double()> clock = [] { return juce::Time::getMillisecondCounterHiRes(); };

private:
    struct Task
    {
        juce::Component::SafePointer<juce::Component> component;
        juce::Rectangle<int> startBounds, endBounds;
        float startAlpha = 1.0f, endAlpha = 1.0f;
        double startTime = 0.0;
        int duration = 0;
        int easing = Easing::sineOut;
        bool hideAtEnd = false;
    };

    void timerCallback() override { update(clock()); }
    static void finish(Task& task);

    std::vector<Task> tasks;
};
