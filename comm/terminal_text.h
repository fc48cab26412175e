// The terminal's texts and rules: the port specification that names a terminal document, and the
// line-end rule for received bytes.
#pragma once
#include <cstdint>

struct EditorView;

// The settings a terminal document's name holds, in the order of "COM%d,%d,%d,%d,%d,%d".
struct PortSpecification {
  int port;
  uint32_t baud;
  int parity;    // 0-4: None, Odd, Even, Mark, Space
  int dataBits;  // 5-8
  int stopBits;  // 0-2: 1, 1.5, 2
  int flow;      // 0-2: None, Xon/Xoff, Hardware
};

// A name is a port specification when it begins with "COM" in any case, a number of 1 or more
// follows, and then a comma.
bool IsPortSpecification(const char* name);
// The six values of a port specification; fields that are missing keep the dialog's defaults
// (115200 baud, no parity, 8 data bits, 1 stop bit, no flow control) and numbers too large for
// their field saturate. False when the name is not a port specification.
bool ParsePortSpecification(const char* name, PortSpecification* settings);
// "COM%d,%d,%d,%d,%d,%d"; the length written.
int FormatPortSpecification(const PortSpecification* settings, char* text, int size);

// The line-end rule for a received byte, given the byte before it (process-wide in the program;
// -1 = none): a CR right after a CR is dropped; an LF becomes a CR unless a CR came just before,
// when it is dropped, and after an LF the previous byte counts as none. Returns the byte to type
// (a CR breaks the line) or -1 to drop it.
int TerminalLineEnd(int byte, int* previous);

// Types received bytes into the view's document at the caret, with the line-end rule; the caret
// goes behind them. A line that reaches the longest a line can be goes on in a new line, so
// nothing the device sent is lost. Bytes are characters of the same value; a NUL is typed too.
// No undo record is made: received text is not the user's edit.
void TypeReceivedBytes(EditorView* view, const unsigned char* bytes, int count, int* previous);
