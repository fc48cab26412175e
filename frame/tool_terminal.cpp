// The terminal's window side: the port dialog of command 39, the opener that gives a terminal
// document its port, and the port's notices and typed characters in the document's window.

#include "comm/terminal_session.h"
#include "comm/terminal_text.h"
#include "editor/document.h"
#include "editor/line_record.h"
#include "foundation/formatter.h"
#include "foundation/os_serial.h"
#include "foundation/settings.h"
#include "frame/dialog_support.h"
#include "frame/editor_child.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"

namespace {

constexpr char kSection[] = "Config";
constexpr const char* kBauds[] = {"4800",  "9600",  "14400",  "19200",  "38400",
                                  "56000", "57600", "115200", "128000", "256000"};
constexpr const char* kParities[] = {"None", "Odd", "Even", "Mark", "Space"};
constexpr const char* kDataBits[] = {"5", "6", "7", "8"};
constexpr const char* kStopBits[] = {"1", "1.5", "2"};
constexpr const char* kFlows[] = {"None", "Xon/Xoff", "Hardware"};

struct PortDialog {
  char* specification;
  int size;
};

template <size_t N>
void FillList(HWND dialog, int id, const char* const (&texts)[N]) {
  for (const char* text : texts)
    SendDlgItemMessageA(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
}

void SelectIndex(HWND dialog, int id, int index, int count) {
  SendDlgItemMessageW(dialog, id, CB_SETCURSEL, index >= 0 && index < count ? index : 0, 0);
}

void ShowNumber(HWND dialog, int id, int value) {
  char text[16];
  FormatStr(text, sizeof text, "%d", value);
  SetControlText(dialog, id, text, false);
}

// Every port that can be opened now, tried by opening and closing it at once.
void FillPorts(HWND dialog) {
  int saved = ReadInt(kSection, "ComPort", 1);
  int selected = 0;
  int count = 0;
  for (int number = 1; number <= 255; ++number) {
    OsSerial port = OsOpenSerial(number);
    if (port == kNoSerial) continue;
    OsCloseSerial(port);
    char name[16];
    FormatStr(name, sizeof name, "COM%d", number);
    SendDlgItemMessageA(dialog, IDC_PORT_NUMBER, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
    if (number == saved) selected = count;
    ++count;
  }
  SendDlgItemMessageW(dialog, IDC_PORT_NUMBER, CB_SETCURSEL, selected, 0);
}

void InitPortDialog(HWND dialog) {
  FillPorts(dialog);
  FillList(dialog, IDC_PORT_BAUD, kBauds);
  ShowNumber(dialog, IDC_PORT_BAUD, ReadInt(kSection, "Baudrate", 115200));
  FillList(dialog, IDC_PORT_PARITY, kParities);
  SelectIndex(dialog, IDC_PORT_PARITY, ReadInt(kSection, "Parity", 0), 5);
  FillList(dialog, IDC_PORT_DATA_BITS, kDataBits);
  ShowNumber(dialog, IDC_PORT_DATA_BITS, ReadInt(kSection, "DataBit", 8));
  FillList(dialog, IDC_PORT_STOP_BITS, kStopBits);
  SelectIndex(dialog, IDC_PORT_STOP_BITS, ReadInt(kSection, "StopBit", 0), 3);
  FillList(dialog, IDC_PORT_FLOW, kFlows);
  SelectIndex(dialog, IDC_PORT_FLOW, ReadInt(kSection, "FlowCtrl", 0), 3);
}

int ListIndex(HWND dialog, int id) {
  LRESULT index = SendDlgItemMessageW(dialog, id, CB_GETCURSEL, 0, 0);
  return index == CB_ERR ? 0 : static_cast<int>(index);
}

// The leading digits of a text as an unsigned number (0 without any), saturating.
unsigned LeadingNumber(const char* text) {
  unsigned long long value = 0;
  for (; *text >= '0' && *text <= '9'; ++text)
    if (value <= 0xFFFFFFFFull) value = value * 10 + static_cast<unsigned>(*text - '0');
  return value > 0xFFFFFFFFull ? 0xFFFFFFFFu : static_cast<unsigned>(value);
}

unsigned UnsignedText(HWND dialog, int id) {
  char text[32];
  GetControlText(dialog, id, text, sizeof text, false);
  return LeadingNumber(text);
}

void AcceptPortDialog(HWND dialog, PortDialog* data) {
  char port[32];
  GetControlText(dialog, IDC_PORT_NUMBER, port, sizeof port, false);
  PortSpecification settings = {};
  settings.port = (port[0] | 0x20) == 'c' ? static_cast<int>(LeadingNumber(port + 3)) : 0;
  settings.baud = UnsignedText(dialog, IDC_PORT_BAUD);
  settings.parity = ListIndex(dialog, IDC_PORT_PARITY);
  settings.dataBits = static_cast<int>(UnsignedText(dialog, IDC_PORT_DATA_BITS));
  settings.stopBits = ListIndex(dialog, IDC_PORT_STOP_BITS);
  settings.flow = ListIndex(dialog, IDC_PORT_FLOW);
  WriteNums(kSection, "ComPort", settings.port);
  WriteNums(kSection, "Baudrate", static_cast<int>(settings.baud));
  WriteNums(kSection, "Parity", settings.parity);
  WriteNums(kSection, "DataBit", settings.dataBits);
  WriteNums(kSection, "StopBit", settings.stopBits);
  WriteNums(kSection, "FlowCtrl", settings.flow);
  FormatPortSpecification(&settings, data->specification, data->size);
}

INT_PTR CALLBACK PortDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* data = static_cast<PortDialog*>(DialogData(dialog, message, lParam));
  switch (message) {
    case WM_INITDIALOG:
      InitPortDialog(dialog);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK && data) {
        AcceptPortDialog(dialog, data);
        EndDialog(dialog, IDOK);
        return TRUE;
      }
      if (LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
        return TRUE;
      }
      break;
  }
  return FALSE;
}

}  // namespace

void OpenTerminalWindow(HWND frame) {
  char specification[64] = "";
  PortDialog data = {specification, sizeof specification};
  if (RunDialog(frame, IDD_PORT_SETTINGS, PortDialogProc, &data) != IDOK) return;
  if (specification[0]) OpenOrActivateDocument(specification, nullptr, 0, 0);
}

bool OpenTerminalForDocument(void*, EditDocument* document, const char*) {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (EditorWindowDocument(child) == document) return OpenTerminal(document, child);
  }
  return false;
}

void TerminalWindowNotice(HWND window, WPARAM wParam) {
  EditorWindow* editor = EditorWindowOf(window);
  if (!editor || !editor->document->terminal) return;
  int firstLine = editor->view.caretLine;
  // A stream posts a notice per read and the first one takes everything: the rest cost nothing,
  // so the keys queued behind them are not kept waiting.
  if (TerminalNoticed(&editor->view, wParam) == 0 && (wParam & 0xFFFF) == 2) return;
  // Only the lines that took text can have grown wider.
  for (int line = firstLine; line <= editor->view.caretLine; ++line) {
    int columns = LineColumns(DocumentLine(editor->document, line));
    if (columns > editor->widestColumns) editor->widestColumns = columns;
  }
  UpdateScrollBar(editor);
  CaretFollows(editor);
}
