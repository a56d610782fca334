#include "brush/SxBrushSettings.h"

float SxBrushSettings::brushSize = 120.0f;
float SxBrushSettings::brushOpacityOn = 0.75f;
float SxBrushSettings::brushOpacityOff = 0.5f;
bool SxBrushSettings::brushOnToolSelected = false;
bool SxBrushSettings::brushOffToolSelected = true;
