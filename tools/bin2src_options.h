// Binary to source keeps its options in the settings file between uses.
#pragma once
#include "tools/bin2src.h"

// Loads every option, the defaults for missing keys, and the default format when none is kept.
void LoadBin2SrcOptions(Bin2SrcOptions* options);
bool SaveBin2SrcOptions(const Bin2SrcOptions& options);
