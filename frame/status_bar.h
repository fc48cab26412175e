// The status bar's texts: the caret position, the modified mark and one message.
#pragma once

// Part 0 "\tCol %d, Ln %d" (column and line from 0, shown from 1), part 1 "\tModified" or empty.
void SetStatusCursor(int column, int line, bool modified);
// Parts 0 and 1 emptied: no document is left to show a place for.
void ClearStatusCursor();
// Part 2; null means empty. Nothing is sent when the text is the one already shown.
void SetStatusMessage(const char* text);
// Part 3, the document's encoding and line ends; null means empty (no document).
void SetStatusFormat(const char* text);
