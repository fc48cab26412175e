// Owner numbers of the frame's blocks (the frame owns 1000-1017 and 1101-1105).
#pragma once

constexpr int kOwnerSettingsCopy = 1006;  // the settings path in the internal form
constexpr int kOwnerBitmapFont = 1007;    // the bitmap font file, read whole
constexpr int kOwnerSessionScratch = 1008;
constexpr int kOwnerEditorChild = 1009;  // the frame's record of one document window
constexpr int kOwnerFontList = 1010;     // the options sheet's font page
constexpr int kOwnerHelpText = 1011;     // a language's help file, read whole
