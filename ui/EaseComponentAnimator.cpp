#include "ui/EaseComponentAnimator.h"

void EaseComponentAnimator::animateComponent(juce::Component* component, juce::Rectangle<int> finalBounds, float finalAlpha,
                                             int milliseconds, bool, double, double, int easing)
{
    if (component == nullptr)
        return;
    // A new animation of the same component starts from wherever the old one had got to.
    tasks.erase(std::remove_if(tasks.begin(), tasks.end(), [component](const Task& t) { return t.component == component; }),
                tasks.end());

    Task task;
    task.component = component;
    task.startBounds = component->getBounds();
    task.endBounds = finalBounds;
    task.startAlpha = component->getAlpha();
    task.endAlpha = finalAlpha;
    task.startTime = clock();
    task.duration = juce::jmax(0, milliseconds);
    task.easing = easing;
    if (task.duration == 0)
    {
        finish(task);
        return;
    }
    tasks.push_back(task);
    if (!isTimerRunning())
        startTimerHz(60);
}

void EaseComponentAnimator::fadeIn(juce::Component* component, int milliseconds)
{
    if (component == nullptr)
        return;
    if (!component->isVisible())
    {
        component->setAlpha(0.0f);
        component->setVisible(true);
    }
    animateComponent(component, component->getBounds(), 1.0f, milliseconds, false, 1.0, 1.0, Easing::sineOut);
}

void EaseComponentAnimator::fadeOut(juce::Component* component, int milliseconds)
{
    if (component == nullptr)
        return;
    animateComponent(component, component->getBounds(), 0.0f, milliseconds, false, 1.0, 1.0, Easing::sineOut);
    for (auto& task : tasks)
        if (task.component == component)
            task.hideAtEnd = true;
    if (milliseconds <= 0)
        component->setVisible(false);
}

bool EaseComponentAnimator::isAnimating(juce::Component* component) const
{
    for (const auto& task : tasks)
        if (task.component == component)
            return true;
    return false;
}

void EaseComponentAnimator::cancelAllAnimations(bool moveToFinalPositions)
{
    if (moveToFinalPositions)
        for (auto& task : tasks)
            finish(task);
    tasks.clear();
    stopTimer();
}

void EaseComponentAnimator::finish(Task& task)
{
    if (auto* c = task.component.getComponent())
    {
        c->setBounds(task.endBounds);
        c->setAlpha(task.endAlpha);
        if (task.hideAtEnd)
            c->setVisible(false);
    }
}

void EaseComponentAnimator::update(double now)
{
    for (auto it = tasks.begin(); it != tasks.end();)
    {
        auto* c = it->component.getComponent();
        const float elapsed = (float) (now - it->startTime);
        if (c == nullptr || elapsed >= (float) it->duration)
        {
            finish(*it);
            it = tasks.erase(it);
            continue;
        }
        const float p = Easing::ease(it->easing, juce::jmax(0.0f, elapsed), 0.0f, 1.0f, (float) it->duration);
        const auto& a = it->startBounds;
        const auto& b = it->endBounds;
        auto mix = [p](int from, int to) { return juce::roundToInt(from + (to - from) * p); };
        c->setBounds(mix(a.getX(), b.getX()), mix(a.getY(), b.getY()), mix(a.getWidth(), b.getWidth()), mix(a.getHeight(), b.getHeight()));
        c->setAlpha(juce::jlimit(0.0f, 1.0f, it->startAlpha + (it->endAlpha - it->startAlpha) * p));
        ++it;
    }
    if (tasks.empty())
        stopTimer();
}
