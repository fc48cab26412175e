// The eight colours of the classes (0x00BBGGRR), read once at start-up from section "Color" and
// written back by the options sheet's colour page.
#pragma once

#include "editor/colour_runs.h"

// The settings key of a class ("BkGround", "NormalText", ...), or null.
const char* ColourKey(int colourClass);
// The class's colour when the settings do not name one.
unsigned DefaultColour(int colourClass);

void LoadColours();
void SaveColours();
unsigned ClassColour(int colourClass);
void SetClassColour(int colourClass, unsigned colour);
