#include "editor/colour_settings.h"

#include "foundation/os_colour.h"
#include "foundation/settings.h"

namespace {

const char kSection[] = "Color";
const char* const kKeys[kColourClassCount] = {"BkGround",     "NormalText", "KeyWord",
                                              "UserKeyword",  "Remark",     "Const",
                                              "WrongKeyword", "PreProc"};
// Fixed defaults; classes 0 and 3 follow the system's window colours instead.
const unsigned kFixedDefaults[kColourClassCount] = {0,        0x004600, 0x800080, 0,
                                                    0x808080, 0xFF0000, 0x000080, 0x007F00};

unsigned g_colours[kColourClassCount];
bool g_loaded = false;

bool ValidClass(int colourClass) {
  return colourClass >= 0 && colourClass < kColourClassCount;
}

}  // namespace

const char* ColourKey(int colourClass) {
  return ValidClass(colourClass) ? kKeys[colourClass] : nullptr;
}

unsigned DefaultColour(int colourClass) {
  if (colourClass == kClassBackground) return OsWindowColour();
  if (colourClass == kClassUserWord) return OsWindowTextColour();
  return ValidClass(colourClass) ? kFixedDefaults[colourClass] : 0;
}

void LoadColours() {
  for (int i = 0; i < kColourClassCount; ++i)
    g_colours[i] =
        static_cast<unsigned>(ReadInt(kSection, kKeys[i], static_cast<int>(DefaultColour(i))));
  g_loaded = true;
}

void SaveColours() {
  for (int i = 0; i < kColourClassCount; ++i)
    WriteNums(kSection, kKeys[i], static_cast<int>(ClassColour(i)));
}

unsigned ClassColour(int colourClass) {
  if (!g_loaded) LoadColours();
  return ValidClass(colourClass) ? g_colours[colourClass] : 0;
}

void SetClassColour(int colourClass, unsigned colour) {
  if (!g_loaded) LoadColours();
  if (ValidClass(colourClass)) g_colours[colourClass] = colour;
}
