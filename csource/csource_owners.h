// Owner numbers of the C source analysis blocks.
#pragma once

enum : int {
  kOwnerSymbolTable = 6100,
  kOwnerSymbolRecord = 6101,
  kOwnerSourceText = 6102,     // a whole source file as read
  kOwnerPreprocessOut = 6103,  // one file's preprocessed text
  kOwnerExpandWork = 6104,     // replacement and argument texts
  kOwnerConditionText = 6105,
  kOwnerSeenList = 6106,
  kOwnerMakefileText = 6107,
  kOwnerResultText = 6108,  // the parser window's text, the message sink
  kOwnerDeclText = 6109,
  kOwnerCompilerOptions = 6110,
  kOwnerCachePath = 6111,
};
