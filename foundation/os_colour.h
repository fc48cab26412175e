// Platform service: the system colours the program's defaults refer to, as 0x00BBGGRR.
#pragma once

unsigned OsWindowColour();      // COLOR_WINDOW
unsigned OsWindowTextColour();  // COLOR_WINDOWTEXT
