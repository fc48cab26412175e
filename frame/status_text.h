// The texts of the status bar's first three parts.
#pragma once

// Part 0: "\tCol %d, Ln %d" with the 0-based column and line shown from 1.
int FormatCursorStatus(int column, int line, char* text, int size);
// Part 1: "\tModified" or an empty text.
const char* ModifiedStatus(bool modified);
// Part 3: the encoding a save writes and the line ends, as "\tEUC-KR  CRLF" or "\tUTF-8 BOM  LF";
// a document whose encoding is still to be detected shows its line ends only.
// Overwrite typing is named behind them (string 180).
int FormatFileFormatStatus(int encoding, bool byteOrderMark, bool lfOnly, char* text, int size,
                           bool overwrite = false);

// Part 2 remembers the last message (at most 40 characters) so that an unchanged text is not
// sent again; a null text means empty.
constexpr int kStatusMemorySize = 40;
struct StatusMemory {
  char last[kStatusMemorySize + 1];
};
// True when `text` differs from the remembered one; it is then remembered (cut to 40 characters).
bool StatusMessageChanged(StatusMemory* memory, const char* text);
