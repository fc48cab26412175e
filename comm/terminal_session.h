// A terminal document's serial port: opened from the document's name, fed with the characters
// the user types, and drained into the text when the port's notice comes.
#pragma once
#include <cstdint>

struct EditDocument;
struct EditorView;
struct SerialPort;

// The message the port posts to the terminal's window (WM_APP + 1000).
constexpr unsigned kTerminalNotice = 0x8000 + 1000;

struct TerminalSession {
  SerialPort* port;  // null when the port could not be created
  void* window;
};

// Opens (or, on a reload, opens again) the port that the document's name specifies, with
// `window` as the owner of its notices. False when the port could not be opened; the document
// then stays a terminal without a working port.
bool OpenTerminal(EditDocument* document, void* window);
// Closes the port and forgets the session.
void CloseTerminal(EditDocument* document);
// A typed character goes to the port as a one-character text (nothing for a zero character).
void TerminalTyped(EditDocument* document, char16_t unit);
// The port's notice: code 1 opens the port again, code 2 types what arrived at the caret. The
// number of bytes taken (a notice whose bytes an earlier one took finds none).
int TerminalNoticed(EditorView* view, uintptr_t wParam);
