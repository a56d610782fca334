#pragma once
// The message thread's pulse, for the component map: a 10 ms timer notes how late each beat
// comes, and the map shows the longest wait of the last 20 seconds. A window test that drags a
// slider for ten seconds reads from it how long the window went without answering.

#include <juce_events/juce_events.h>

#include <algorithm>
#include <deque>

class Heartbeat final : private juce::Timer
{
public:
    Heartbeat() { startTimer(beatMs); }
    ~Heartbeat() override { stopTimer(); }
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    /** " stall=MS": the longest time between two beats in the last 20 seconds, less the beat. */
    juce::String describe() const
    {
        const double now = juce::Time::getMillisecondCounterHiRes();
        double longest = now - last; // a beat that is late right now counts too
        for (const auto& beat : beats)
            if (beat.at >= now - windowMs)
                longest = std::max(longest, beat.gap);
        return " stall=" + juce::String(juce::roundToInt(std::max(0.0, longest - beatMs)));
    }

private:
    static constexpr int beatMs = 10;
    static constexpr double windowMs = 20000.0;

    void timerCallback() override
    {
        const double now = juce::Time::getMillisecondCounterHiRes();
        beats.push_back({ now, now - last });
        last = now;
        while (!beats.empty() && beats.front().at < now - windowMs)
            beats.pop_front();
    }

    struct Beat
    {
        double at, gap;
    };
    std::deque<Beat> beats;
    double last = juce::Time::getMillisecondCounterHiRes();
};
