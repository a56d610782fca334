#pragma once
// The product: its name, version and main component.

#include "app/GenericApplication.h"

class Tornvale : public GenericApplication
{
public:
    const juce::String getApplicationName() override { return "Tornvale Art"; }
    const juce::String getApplicationVersion() override { return "1.1.17"; }
    GenericAppComponent* createMainComponent() override;
};
