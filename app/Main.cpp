#include "app/Tornvale.h"

START_JUCE_APPLICATION(Tornvale)
