#include "foundation/os_serial.h"

#include <windows.h>

#include "foundation/memory.h"

namespace {

constexpr int kOwnerThreadRecord = 7202;

OsNoticeSink g_sink;

struct WinIo {
  OVERLAPPED overlapped;
};
static_assert(sizeof(WinIo) <= sizeof(OsSerialIo::storage), "OsSerialIo too small");
static_assert(sizeof(DCB) <= sizeof(OsSerialState::storage), "OsSerialState too small");

struct ThreadRecord {
  HANDLE thread;
  unsigned (*run)(void*);
  void* argument;
};

HANDLE Handle(OsSerial port) {
  return reinterpret_cast<HANDLE>(port);
}

OVERLAPPED* Overlapped(OsSerialIo* io) {
  return &reinterpret_cast<WinIo*>(io->storage)->overlapped;
}

DCB* Dcb(OsSerialState* state) {
  return reinterpret_cast<DCB*>(state->storage);
}

unsigned Outcome(BOOL done) {
  return done ? kOsIoDone : static_cast<unsigned>(GetLastError());
}

// Wine ends a serial read or write that reached its time-out with the time-out code, where
// Windows completes it with the bytes that came: both are a completion with that count.
unsigned Transfer(BOOL done) {
  unsigned result = Outcome(done);
  return result == ERROR_TIMEOUT ? kOsIoDone : result;
}

DWORD WINAPI RunThread(void* argument) {
  auto* record = static_cast<ThreadRecord*>(argument);
  return record->run(record->argument);
}

}  // namespace

unsigned OsSerialError() {
  return static_cast<unsigned>(GetLastError());
}

OsSerial OsOpenSerial(int number) {
  wchar_t name[32];
  wsprintfW(name, L"\\\\.\\COM%d", number);
  HANDLE handle = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              FILE_FLAG_OVERLAPPED, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return kNoSerial;
  return reinterpret_cast<OsSerial>(handle);
}

void OsCloseSerial(OsSerial port) {
  if (port != kNoSerial) CloseHandle(Handle(port));
}

bool OsGetSerialTimeouts(OsSerial port, OsSerialTimeouts* timeouts) {
  COMMTIMEOUTS values = {};
  BOOL done = GetCommTimeouts(Handle(port), &values);
  *timeouts = {values.ReadIntervalTimeout, values.ReadTotalTimeoutMultiplier,
               values.ReadTotalTimeoutConstant, values.WriteTotalTimeoutMultiplier,
               values.WriteTotalTimeoutConstant};
  return done != FALSE;
}

bool OsSetSerialTimeouts(OsSerial port, const OsSerialTimeouts* timeouts) {
  COMMTIMEOUTS values = {timeouts->readInterval, timeouts->readMultiplier, timeouts->readConstant,
                         timeouts->writeMultiplier, timeouts->writeConstant};
  return SetCommTimeouts(Handle(port), &values) != FALSE;
}

bool OsGetSerialState(OsSerial port, OsSerialState* state) {
  DCB* dcb = Dcb(state);
  dcb->DCBlength = sizeof(DCB);
  return GetCommState(Handle(port), dcb) != FALSE;
}

void OsApplySerialSettings(OsSerialState* state, const OsSerialSettings* settings) {
  DCB* dcb = Dcb(state);
  dcb->DCBlength = sizeof(DCB);
  dcb->BaudRate = settings->baud;
  dcb->ByteSize = settings->dataBits;
  dcb->Parity = settings->parity;
  dcb->StopBits = settings->stopBits;
  dcb->XonChar = static_cast<char>(settings->xonChar);
  dcb->XoffChar = static_cast<char>(settings->xoffChar);
  dcb->XonLim = settings->xonLimit;
  dcb->XoffLim = settings->xoffLimit;
  dcb->EvtChar = static_cast<char>(settings->eventChar);
  // The flow-control and DTR/RTS bits are the port's, nothing of the old state.
  dcb->fOutxCtsFlow = settings->ctsOutFlow;
  dcb->fOutxDsrFlow = FALSE;
  dcb->fDtrControl = DTR_CONTROL_DISABLE;
  dcb->fDsrSensitivity = FALSE;
  dcb->fTXContinueOnXoff = FALSE;
  dcb->fOutX = settings->xonXoffOut;
  dcb->fInX = settings->xonXoffIn;
  dcb->fRtsControl = settings->rtsControl;
  dcb->fBinary = TRUE;
  dcb->fParity = TRUE;
}

bool OsSetSerialState(OsSerial port, const OsSerialState* state) {
  DCB dcb = *reinterpret_cast<const DCB*>(state->storage);
  return SetCommState(Handle(port), &dcb) != FALSE;
}

bool OsSetSerialMask(OsSerial port, unsigned mask) {
  return SetCommMask(Handle(port), mask) != FALSE;
}

bool OsSetSerialQueues(OsSerial port, unsigned inSize, unsigned outSize) {
  return SetupComm(Handle(port), inSize, outSize) != FALSE;
}

bool OsSetSerialDtr(OsSerial port, bool raised) {
  return EscapeCommFunction(Handle(port), raised ? SETDTR : CLRDTR) != FALSE;
}

bool OsPurgeSerial(OsSerial port) {
  return PurgeComm(Handle(port), PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR) !=
         FALSE;
}

bool OsGetSerialLineStatus(OsSerial port, OsSerialLineStatus* status) {
  DWORD errors = 0;
  COMSTAT stat = {};
  BOOL done = ClearCommError(Handle(port), &errors, &stat);
  *status = {errors,
             stat.fCtsHold != 0,
             stat.fDsrHold != 0,
             stat.fRlsdHold != 0,
             stat.fXoffHold != 0,
             stat.fXoffSent != 0,
             stat.fEof != 0,
             stat.fTxim != 0,
             stat.cbInQue,
             stat.cbOutQue};
  return done != FALSE;
}

bool OsCreateSerialIo(OsSerialIo* io) {
  OVERLAPPED* overlapped = Overlapped(io);
  ZeroMemory(overlapped, sizeof *overlapped);
  overlapped->hEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  return overlapped->hEvent != nullptr;
}

void OsDeleteSerialIo(OsSerialIo* io) {
  OVERLAPPED* overlapped = Overlapped(io);
  if (overlapped->hEvent) CloseHandle(overlapped->hEvent);
  overlapped->hEvent = nullptr;
}

void OsResetSerialIo(OsSerialIo* io) {
  ResetEvent(Overlapped(io)->hEvent);
}

unsigned OsStartSerialRead(OsSerial port, OsSerialIo* io, void* buffer, unsigned size,
                           unsigned* count) {
  DWORD done = 0;
  unsigned result = Transfer(ReadFile(Handle(port), buffer, size, &done, Overlapped(io)));
  *count = done;
  return result;
}

unsigned OsStartSerialWrite(OsSerial port, OsSerialIo* io, const void* data, unsigned size,
                            unsigned* count) {
  DWORD done = 0;
  unsigned result = Transfer(WriteFile(Handle(port), data, size, &done, Overlapped(io)));
  *count = done;
  return result;
}

unsigned OsStartSerialEventWait(OsSerial port, OsSerialIo* io, unsigned* events) {
  DWORD mask = 0;
  unsigned result = Outcome(WaitCommEvent(Handle(port), &mask, Overlapped(io)));
  *events = mask;
  return result;
}

void OsAbandonSerialIo(OsSerial port, OsSerialIo* io) {
  DWORD done = 0;
  if (CancelIoEx(Handle(port), Overlapped(io)) || GetLastError() != ERROR_NOT_FOUND)
    GetOverlappedResult(Handle(port), Overlapped(io), &done, TRUE);
}

unsigned OsSerialIoResult(OsSerial port, OsSerialIo* io, unsigned* count) {
  DWORD done = 0;
  unsigned result = Transfer(GetOverlappedResult(Handle(port), Overlapped(io), &done, FALSE));
  *count = done;
  return result;
}

bool OsCreateEvent(OsEvent* event, bool manualReset) {
  HANDLE handle = CreateEventW(nullptr, manualReset, FALSE, nullptr);
  event->handle = reinterpret_cast<uintptr_t>(handle);
  event->manualReset = manualReset;
  return handle != nullptr;
}

void OsCloseEvent(OsEvent* event) {
  if (event->handle) CloseHandle(reinterpret_cast<HANDLE>(event->handle));
  event->handle = 0;
}

void OsSetEvent(OsEvent* event) {
  SetEvent(reinterpret_cast<HANDLE>(event->handle));
}

void OsResetEvent(OsEvent* event) {
  ResetEvent(reinterpret_cast<HANDLE>(event->handle));
}

int OsWaitSerial(OsSerial, OsSerialIo* read, OsSerialIo* write, OsSerialIo* status,
                 OsEvent* sendRequest, OsEvent* stop, unsigned timeoutMs) {
  HANDLE handles[5] = {Overlapped(read)->hEvent, Overlapped(write)->hEvent,
                       Overlapped(status)->hEvent, reinterpret_cast<HANDLE>(sendRequest->handle),
                       reinterpret_cast<HANDLE>(stop->handle)};
  DWORD which = WaitForMultipleObjects(5, handles, FALSE, timeoutMs);
  if (which < WAIT_OBJECT_0 + 5) return static_cast<int>(which - WAIT_OBJECT_0);
  return which == WAIT_TIMEOUT ? -1 : -2;
}

OsThread OsStartThread(unsigned (*run)(void*), void* argument) {
  auto* record = static_cast<ThreadRecord*>(AllocMem(sizeof(ThreadRecord), kOwnerThreadRecord));
  if (!record) return 0;
  record->run = run;
  record->argument = argument;
  DWORD id = 0;
  record->thread = CreateThread(nullptr, 0, RunThread, record, 0, &id);
  if (!record->thread) {
    FreeMem(record);
    return 0;
  }
  return reinterpret_cast<OsThread>(record);
}

bool OsWaitThread(OsThread thread, unsigned timeoutMs) {
  auto* record = reinterpret_cast<ThreadRecord*>(thread);
  return WaitForSingleObject(record->thread, timeoutMs) == WAIT_OBJECT_0;
}

void OsTerminateThread(OsThread thread) {
  auto* record = reinterpret_cast<ThreadRecord*>(thread);
  TerminateThread(record->thread, 1);
  WaitForSingleObject(record->thread, 1000);
}

void OsCloseThread(OsThread thread) {
  auto* record = reinterpret_cast<ThreadRecord*>(thread);
  if (!record) return;
  CloseHandle(record->thread);
  FreeMem(record);
}

void OsPostNotice(void* window, unsigned message, uintptr_t wParam) {
  if (OsNoticeSink sink = __atomic_load_n(&g_sink, __ATOMIC_ACQUIRE)) {
    sink(window, message, wParam);
    return;
  }
  PostMessageW(static_cast<HWND>(window), message, wParam, 0);
}

OsNoticeSink SetNoticeSink(OsNoticeSink sink) {
  return __atomic_exchange_n(&g_sink, sink, __ATOMIC_ACQ_REL);
}

// The system's own device names are used.
void SetSerialDeviceFolder(const char*) {}
