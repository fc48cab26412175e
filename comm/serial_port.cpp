#include "comm/serial_port.h"

#include <cstring>

#include "foundation/diagnostics.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/language.h"
#include "foundation/memory.h"

constexpr unsigned kReceiveBlock = 1024;

// What the worker owns: its receive block and its three overlapped operations.
struct SerialWork {
  unsigned char block[kReceiveBlock];
  OsSerialIo read;
  OsSerialIo write;
  OsSerialIo status;
};

namespace {

constexpr int kQueueInitial = 4096;
constexpr unsigned kDriverQueue = 1024;
constexpr unsigned kWaitMs = 500;
constexpr int kStrPortNotReady = 500;  // "'COM%d' device not ready or busy (Error=%d)"

void Notify(SerialPort* port, unsigned code) {
  if (port->notifyMessage)
    OsPostNotice(port->ownerWindow, port->notifyMessage,
                 (static_cast<uintptr_t>(port->number) << 16) | code);
}

// Told only when the queue was empty: the owner takes everything there is on each notice, so a
// notice per read would pile up in its message queue, ahead of the user's keys, while a stream
// lasts.
void Received(SerialPort* port, const unsigned char* bytes, unsigned count) {
  bool wasEmpty;
  {
    LockGuard guard(&port->receiveLock);
    wasEmpty = ByteQueueLength(&port->receive) == 0;
    if (!AppendBytes(&port->receive, bytes, count)) {
      DebugLog("RecvData Queue Full (%d bytes lost)\r\n", static_cast<int>(count));
      return;
    }
  }
  if (wasEmpty) Notify(port, kSerialDataArrived);
}

void ApplySettings(SerialPort* port) {
  OsSerialState state;
  memset(&state, 0, sizeof state);
  if (!OsGetSerialState(port->handle, &state))
    DebugLog("GetCommState() Error=%d\r\n", static_cast<int>(OsSerialError()));
  OsSerialSettings settings = {};
  settings.baud = port->baud;
  settings.dataBits = port->dataBits;
  settings.parity = port->parity;
  settings.stopBits = port->stopBits;
  settings.eventChar = (port->eventMask & kEvRxFlag) ? port->eventChar : 0;
  settings.xonChar = port->xonChar;
  settings.xoffChar = port->xoffChar;
  settings.xonLimit = port->xonLimit;
  settings.xoffLimit = port->xoffLimit;
  settings.rtsControl = port->rtsControl;
  settings.ctsOutFlow = port->ctsOutFlow;
  settings.xonXoffOut = port->xonXoffOut;
  settings.xonXoffIn = port->xonXoffIn;
  OsApplySerialSettings(&state, &settings);
  if (!OsSetSerialState(port->handle, &state))
    DebugLog("SetCommState() Error=%d\r\n", static_cast<int>(OsSerialError()));
  if (!OsSetSerialTimeouts(port->handle, &port->workingTimeouts))
    DebugLog("SetCommTimeouts() Error=%d\r\n", static_cast<int>(OsSerialError()));
  if (!OsSetSerialMask(port->handle, port->eventMask))
    DebugLog("SetCommMask() Error=%d\r\n", static_cast<int>(OsSerialError()));
}

void LogStatus(SerialPort* port, unsigned events) {
  OsSerialLineStatus status = {};
  if (!OsGetSerialLineStatus(port->handle, &status))
    DebugLog("ClearCommError() Error=%d\r\n", static_cast<int>(OsSerialError()));
  char text[600];
  FormatSerialStatus(events, &status, text, sizeof text);
  DebugLog("%s\r\n", text);
}

enum Step : int { kGoOn, kAgain, kEnd, kFail };

// Step 1: reads until the device has nothing more at once.
Step Read(SerialPort* port, SerialWork* work, bool* readArmed) {
  while (*readArmed) {
    unsigned count = 0;
    unsigned result =
        OsStartSerialRead(port->handle, &work->read, work->block, kReceiveBlock, &count);
    if (result == kOsIoPending) {
      *readArmed = false;
    } else if (result != kOsIoDone) {
      DebugLog("ReadComm() Error=%d\r\n", static_cast<int>(result));
      return kFail;
    } else if (count > 0) {
      Received(port, work->block, count);
    } else {
      break;  // the read's time-out passed without data; the wait below comes first
    }
  }
  return kGoOn;
}

// Step 2: the whole transmit queue in one request, read from the queue's pinned block.
Step Write(SerialPort* port, SerialWork* work, bool* writeAllowed, bool* writePending) {
  if (!*writeAllowed) return kGoOn;
  size_t length;
  const unsigned char* data;
  {
    LockGuard guard(&port->transmitLock);
    length = ByteQueueLength(&port->transmit);
    data = length ? PinBytes(&port->transmit, &length) : nullptr;
  }
  if (length == 0) {
    *writeAllowed = false;
    return kGoOn;
  }
  unsigned count = 0;
  unsigned result =
      OsStartSerialWrite(port->handle, &work->write, data, static_cast<unsigned>(length), &count);
  if (result == kOsIoDone) {
    LockGuard guard(&port->transmitLock);
    ConsumeBytes(&port->transmit, count);
    return kAgain;
  }
  if (result == kOsIoPending) {
    *writePending = true;
    *writeAllowed = false;
    return kGoOn;
  }
  DebugLog("WriteComm() Error=%d\r\n", static_cast<int>(result));
  LockGuard guard(&port->transmitLock);
  ConsumeBytes(&port->transmit, 0);
  return kFail;
}

// Step 3: never reached as things stand, since nothing arms the status wait before one has
// completed.
Step WaitStatus(SerialPort* port, SerialWork* work, bool* statusArmed) {
  if (!*statusArmed) return kGoOn;
  unsigned events = 0;
  unsigned result = OsStartSerialEventWait(port->handle, &work->status, &events);
  if (result == kOsIoDone) {
    LogStatus(port, events);
    return kAgain;
  }
  if (result == kOsIoPending)
    *statusArmed = false;
  else
    DebugLog("WaitCommEvent() Error=%d\r\n", static_cast<int>(result));
  return kGoOn;
}

// Step 4: one wait and what its event means.
Step Wait(SerialPort* port, SerialWork* work, bool* readArmed, bool* writeAllowed,
          bool* writePending, bool* statusArmed) {
  int which = OsWaitSerial(port->handle, &work->read, &work->write, &work->status,
                           &port->sendRequest, &port->stop, kWaitMs);
  unsigned count = 0;
  switch (which) {
    case 0: {
      unsigned result = OsSerialIoResult(port->handle, &work->read, &count);
      if (result == kOsIoAborted) {
        DebugLog("RecvData Pend Aborted...\r\n");
      } else if (result != kOsIoDone) {
        DebugLog("RecvData Overlapped Result Error=%d...\r\n", static_cast<int>(result));
        return kFail;
      } else if (count > 0) {
        Received(port, work->block, count);
      }
      OsResetSerialIo(&work->read);
      *readArmed = true;
      return kGoOn;
    }
    case 1: {
      unsigned result = OsSerialIoResult(port->handle, &work->write, &count);
      if (result == kOsIoAborted) {
        DebugLog("SendData Pend Aborted\r\n");
        count = 0;
      } else if (result != kOsIoDone) {
        DebugLog("SendData Overlapped Result Error=%d...\r\n", static_cast<int>(result));
        LockGuard guard(&port->transmitLock);
        ConsumeBytes(&port->transmit, 0);
        return kFail;
      }
      {
        LockGuard guard(&port->transmitLock);
        ConsumeBytes(&port->transmit, count);
      }
      *writePending = false;
      OsResetSerialIo(&work->write);
      *writeAllowed = true;
      return kGoOn;
    }
    case 2: {
      unsigned result = OsSerialIoResult(port->handle, &work->status, &count);
      if (result == kOsIoDone) {
        *statusArmed = true;
      } else if (result == kOsIoAborted) {
        DebugLog("ReadStatus Pend Aborted\r\n");
      } else {
        DebugLog("ReadStatus Overlapped Result Error...\r\n");
        return kFail;
      }
      return kGoOn;
    }
    case 3:
      if (!*writePending) *writeAllowed = true;
      return kGoOn;
    case 4:
      return kEnd;
    default:
      return kGoOn;  // time-out (or a failed wait, which is tried again after its pause)
  }
}

unsigned RunWorker(void* argument) {
  auto* port = static_cast<SerialPort*>(argument);
  SerialWork* work = port->work;
  ApplySettings(port);
  bool readArmed = true;
  bool writeAllowed = true;
  bool writePending = false;
  bool statusArmed = false;
  Step step = kGoOn;
  while (step != kEnd && step != kFail) {
    step = Read(port, work, &readArmed);
    if (step == kGoOn) step = Write(port, work, &writeAllowed, &writePending);
    if (step == kGoOn) step = WaitStatus(port, work, &statusArmed);
    if (step == kGoOn)
      step = Wait(port, work, &readArmed, &writeAllowed, &writePending, &statusArmed);
  }
  // Abandons what is still under way, so the device no longer touches the block and records.
  if (!readArmed) OsAbandonSerialIo(port->handle, &work->read);
  if (writePending) OsAbandonSerialIo(port->handle, &work->write);
  if (writePending) {
    LockGuard guard(&port->transmitLock);
    ConsumeBytes(&port->transmit, 0);
  }
  OsDeleteSerialIo(&work->read);
  OsDeleteSerialIo(&work->write);
  OsDeleteSerialIo(&work->status);
  __atomic_store_n(&port->work, static_cast<SerialWork*>(nullptr), __ATOMIC_RELEASE);
  FreeMem(work);
  if (step == kFail) Notify(port, kSerialWorkerFailed);
  return step == kFail ? 1 : 0;
}

}  // namespace

SerialPort* CreateSerialPort(int number, uint32_t baud, int parity, int dataBits, int stopBits,
                             int flow) {
  if (number < 1 || number > 255) return nullptr;  // COM1 ... COM255
  auto* port = static_cast<SerialPort*>(AllocMem(sizeof(SerialPort), kOwnerSerialPort));
  if (!port) return nullptr;
  memset(static_cast<void*>(port), 0, sizeof(SerialPort));
  port->handle = kNoSerial;
  port->eventMask = kEvCts | kEvDsr | kEvRlsd | kEvBreak | kEvErr | kEvRing;
  port->eventChar = '\n';
  port->xonChar = 0x11;
  port->xoffChar = 0x13;
  port->rtsControl = flow == kFlowHardware ? 2 : 0;
  port->ctsOutFlow = flow == kFlowHardware;
  port->xonXoffOut = port->xonXoffIn = flow == kFlowXonXoff;
  port->number = static_cast<uint8_t>(number);
  port->baud = baud;
  port->dataBits = static_cast<uint8_t>(dataBits);
  port->parity = static_cast<uint8_t>(parity);
  port->stopBits = static_cast<uint8_t>(stopBits);
  port->workingTimeouts = OsSerialTimeouts{1, 1, 1, 1, 1};
  port->finishWaitMs = 10000;
  bool queues = InitByteQueue(&port->receive, kQueueInitial, kOwnerSerialReceive) &&
                InitByteQueue(&port->transmit, kQueueInitial, kOwnerSerialTransmit);
  bool stopEvent = queues && OsCreateEvent(&port->stop, true);
  bool sendEvent = stopEvent && OsCreateEvent(&port->sendRequest, false);
  if (!sendEvent) {
    if (stopEvent) OsCloseEvent(&port->stop);
    FreeByteQueue(&port->receive);
    FreeByteQueue(&port->transmit);
    FreeMem(port);
    return nullptr;
  }
  OsCreateLock(&port->receiveLock);
  OsCreateLock(&port->transmitLock);
  return port;
}

bool OpenSerialPort(SerialPort* port, void* ownerWindow, unsigned notifyMessage) {
  if (port->open) return true;
  port->ownerWindow = ownerWindow;
  port->notifyMessage = notifyMessage;
  port->handle = OsOpenSerial(port->number);
  if (port->handle == kNoSerial) {
    int error = static_cast<int>(OsSerialError());
    char text[200];
    FormatStr(text, sizeof text, GetStr(kStrPortNotReady), port->number, error);
    HostMessage(text, kMbOk | kMbIconExclamation);
    return false;
  }
  if (!OsGetSerialTimeouts(port->handle, &port->savedTimeouts))
    DebugLog("GetCommTimeouts() Error=%d\r\n", static_cast<int>(OsSerialError()));
  ApplySettings(port);
  OsSetSerialQueues(port->handle, kDriverQueue, kDriverQueue);
  if (!OsSetSerialDtr(port->handle, true))
    DebugLog("EscapeCommFunction(SETDTR) Error=%d\r\n", static_cast<int>(OsSerialError()));
  OsResetEvent(&port->stop);
  port->work = static_cast<SerialWork*>(AllocMem(sizeof(SerialWork), kOwnerSerialWork));
  bool started = port->work && OsCreateSerialIo(&port->work->read) &&
                 OsCreateSerialIo(&port->work->write) && OsCreateSerialIo(&port->work->status);
  if (started) port->thread = OsStartThread(RunWorker, port);
  if (!port->thread) {
    // No worker: the port is given back as if it had not opened.
    DebugLog("CreateThread() Error=%d\r\n", static_cast<int>(OsSerialError()));
    if (port->work) {
      OsDeleteSerialIo(&port->work->read);
      OsDeleteSerialIo(&port->work->write);
      OsDeleteSerialIo(&port->work->status);
    }
    FreeMem(port->work);
    port->work = nullptr;
    OsCloseSerial(port->handle);
    port->handle = kNoSerial;
    return false;
  }
  port->open = true;
  return true;
}

void CloseSerialPort(SerialPort* port) {
  if (!port->open) return;
  port->open = false;
  OsSetEvent(&port->stop);
  if (!OsWaitThread(port->thread, port->finishWaitMs)) {
    DebugLog("Wait For Finish CommThread Timeout\r\n");
    OsTerminateThread(port->thread);
    // The worker had no chance to give back its block.
    if (SerialWork* work = __atomic_load_n(&port->work, __ATOMIC_ACQUIRE)) {
      OsDeleteSerialIo(&work->read);
      OsDeleteSerialIo(&work->write);
      OsDeleteSerialIo(&work->status);
      FreeMem(work);
    }
  }
  port->work = nullptr;
  {
    // A write the worker left pending is over now.
    LockGuard guard(&port->transmitLock);
    if (port->transmit.pinned) ConsumeBytes(&port->transmit, 0);
  }
  if (!OsSetSerialDtr(port->handle, false))
    DebugLog("EscapeCommFunction(CLRDTR) Error=%d\r\n", static_cast<int>(OsSerialError()));
  if (!OsSetSerialTimeouts(port->handle, &port->savedTimeouts))
    DebugLog("SetCommTimeouts(Restoration to original) Error=%d\r\n",
             static_cast<int>(OsSerialError()));
  if (!OsPurgeSerial(port->handle))
    DebugLog("PurgeComm() Error=%d\r\n", static_cast<int>(OsSerialError()));
  OsCloseSerial(port->handle);
  port->handle = kNoSerial;
  OsCloseThread(port->thread);
  port->thread = 0;
}

void DestroySerialPort(SerialPort* port) {
  if (!port) return;
  FreeByteQueue(&port->receive);
  FreeByteQueue(&port->transmit);
  OsCloseEvent(&port->stop);
  OsCloseEvent(&port->sendRequest);
  OsDeleteLock(&port->receiveLock);
  OsDeleteLock(&port->transmitLock);
  FreeMem(port);
}

void SendSerial(SerialPort* port, const void* bytes, int count) {
  if (!port->open || count < 1) return;
  {
    LockGuard guard(&port->transmitLock);
    if (!AppendBytes(&port->transmit, bytes, static_cast<size_t>(count)))
      DebugLog("SendData Queue Full (%d bytes lost)\r\n", count);
  }
  OsSetEvent(&port->sendRequest);
}

int ReadSerialByte(SerialPort* port) {
  LockGuard guard(&port->receiveLock);
  return TakeByte(&port->receive);
}

int FormatSerialStatus(unsigned events, const OsSerialLineStatus* status, char* text, int size) {
  struct Name {
    unsigned bit;
    const char* name;
  };
  static constexpr Name kEvents[] = {
      {kEvCts, "CTS"},       {kEvDsr, "DSR"},       {kEvErr, "ERR"},
      {kEvRing, "RING"},     {kEvRlsd, "RLSD"},     {kEvBreak, "BREAK"},
      {kEvRxFlag, "RXFLAG"}, {kEvRxChar, "RXCHAR"}, {kEvTxEmpty, "TXEMPTY"},
  };
  static constexpr Name kErrors[] = {
      {0x800, "DNS"}, {0x400, "IOE"},  {0x1000, "OOP"},   {0x200, "PTO"},   {0x8000, "MODE"},
      {0x8, "FRAME"}, {0x1, "RXOVER"}, {0x100, "TXFULL"}, {0x2, "OVERRUN"}, {0x4, "RXPARITY"},
  };
  FormatStr(text, size, "EVENT:");
  int length = static_cast<int>(strlen(text));
  auto add = [&](const char* format, auto... values) {
    if (length >= size - 1) return;
    FormatStr(text + length, size - length, format, values...);
    length += static_cast<int>(strlen(text + length));
  };
  for (const Name& name : kEvents)
    if (events & name.bit) add(" %s", name.name);
  add(" ERROR:");
  for (const Name& name : kErrors)
    if (status->errors & name.bit) add(" %s", name.name);
  const bool holds[] = {status->ctsHold,  status->dsrHold, status->rlsdHold, status->xoffHold,
                        status->xoffSent, status->eof,     status->txim};
  static constexpr const char* kHolds[] = {
      "Tx waiting for CTS signal.",   "Tx waiting for DSR signal.",  "Tx waiting for RLSD signal.",
      "Tx waiting, XOFF char rec'd.", "Tx waiting, XOFF char sent.", "EOF character received.",
      "Character waiting for Tx.",
  };
  for (int i = 0; i < 7; ++i)
    if (holds[i]) add(" %s", kHolds[i]);
  add(" %d bytes in input buffer.", static_cast<int>(status->inQueue));
  add(" %d bytes in output buffer.", static_cast<int>(status->outQueue));
  return length;
}
