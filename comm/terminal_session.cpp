#include "comm/terminal_session.h"

#include "comm/serial_port.h"
#include "comm/terminal_text.h"
#include "editor/document.h"
#include "editor/editor_view.h"
#include "foundation/memory.h"
#include "foundation/os_codepage.h"

namespace {

constexpr int kOwnerTerminalSession = 7203;

// The byte before the last one typed, for the line-end rule; one for the whole program.
int g_previousByte = -1;

}  // namespace

bool OpenTerminal(EditDocument* document, void* window) {
  PortSpecification settings;
  if (!ParsePortSpecification(document->path, &settings)) return false;
  TerminalSession* session = document->terminal;
  if (!session) {
    session =
        static_cast<TerminalSession*>(AllocMem(sizeof(TerminalSession), kOwnerTerminalSession));
    if (!session) return false;
    *session = TerminalSession{};
    document->terminal = session;
  }
  if (session->port) {
    CloseSerialPort(session->port);
    DestroySerialPort(session->port);
  }
  session->window = window;
  session->port = CreateSerialPort(settings.port, settings.baud, settings.parity, settings.dataBits,
                                   settings.stopBits, settings.flow);
  document->untitled = 0;
  return session->port && OpenSerialPort(session->port, window, kTerminalNotice);
}

void CloseTerminal(EditDocument* document) {
  TerminalSession* session = document->terminal;
  if (!session) return;
  if (session->port) {
    CloseSerialPort(session->port);
    DestroySerialPort(session->port);
  }
  FreeMem(session);
  document->terminal = nullptr;
}

void TerminalTyped(EditDocument* document, char16_t unit) {
  TerminalSession* session = document->terminal;
  if (!session || !session->port || unit == 0) return;
  char text[8];
  int length = 1;
  text[0] = static_cast<char>(unit);
  if (unit >= 0x80) length = OsWideToCodePage(kCodePageSystem, &unit, 1, text, sizeof text);
  SendSerial(session->port, text, length);
}

int TerminalNoticed(EditorView* view, uintptr_t wParam) {
  TerminalSession* session = view->document ? view->document->terminal : nullptr;
  if (!session || !session->port) return 0;
  int taken = 0;
  switch (wParam & 0xFFFF) {
    case 1:
      CloseSerialPort(session->port);
      OpenSerialPort(session->port, session->window, kTerminalNotice);
      break;
    case 2: {
      unsigned char bytes[4096];
      int count = 0;
      for (int byte; (byte = ReadSerialByte(session->port)) >= 0;) {
        bytes[count++] = static_cast<unsigned char>(byte);
        ++taken;
        if (count == static_cast<int>(sizeof bytes)) {
          TypeReceivedBytes(view, bytes, count, &g_previousByte);
          count = 0;
        }
      }
      TypeReceivedBytes(view, bytes, count, &g_previousByte);
      break;
    }
  }
  return taken;
}
