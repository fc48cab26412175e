// Find and replace on the active editor's document: line by line, upward or downward, with the one
// search record that every editor window shares (search_request.h), so that F3 repeats the last
// search in whichever window is active.
#pragma once

struct EditorView;
struct SearchRequest;

// The proposed find text: the selection's first 259 units (on its first line), else the word at
// the caret, else the previous text, which stays.
void ProposeFindText(const EditorView* view, SearchRequest* request);

// Searches from the caret (from line 0 when started from the dialog with origin 1). A match is
// selected with the caret at its end behind a group boundary on the undo list; F3 also puts the
// text into the find history. No match: message 86, caret and selection stay. False then, and
// for an empty find text.
bool FindNext(EditorView* view, SearchRequest* request, bool fromF3);

// Replaces in the request's scope and from its origin: the first match only, or every match with
// replaceAll, the search going on behind the inserted text. Each replacement is recorded on the
// undo list; consecutive ones of the same text share one record, so one Ctrl+Z takes a whole run
// back. Returns the number of replacements; message 87 for a selection scope without a
// selection, message 86 when nothing was replaced.
int ReplaceAll(EditorView* view, SearchRequest* request);

// Command 108 (and 109 with findNext): F3 with a find text searches again at once; otherwise the
// proposal goes into the find dialog and OK searches.
void FindDialog(EditorView* view, bool findNext);
// Command 110: the replace dialog; OK replaces once, its replace-all button replaces all.
void ReplaceDialog(EditorView* view);
