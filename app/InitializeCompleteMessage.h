#pragma once
// Posted as the last step of start-up, so that what follows the first layout runs from the event
// loop with the window on screen and the command line's picture already taken.

#include <juce_events/juce_events.h>

class InitializeCompleteMessage : public juce::Message
{
public:
    void messageCallback() override;
};
