// The settings that choose encodings and tab widths when a file is opened in another format.
#pragma once

// The encoding assumed when no test recognises a file (`UnrecognzFileForm`, 1 ... 4, default
// EUCKR); a value out of range gives the default.
int ReadUnrecognisedEncoding();

// The choices of the open-other-format dialog: encoding (0 = detect ... 4) and tab width.
struct ImportChoice {
  int encoding;  // `ImportHanCode`, default 0
  int tabSize;   // `ImportTabSize`, default 8
};
ImportChoice ReadImportChoice();
void WriteImportChoice(const ImportChoice& choice);
