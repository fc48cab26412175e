// Platform service: serial ports in overlapped mode, the events and the thread that serve them.
// The calls follow the system's serial API one for one, so that the engine above them orders its
// operations as it would on Windows. The POSIX twin opens a terminal device (a pseudo-terminal
// in the tests) and imitates overlapped operations inside OsWaitSerial: a read or write that
// cannot complete at once is pending until the wait finds the device ready and finishes it.
#pragma once
#include <cstddef>
#include <cstdint>

using OsSerial = uintptr_t;
constexpr OsSerial kNoSerial = ~OsSerial{0};

// The system's codes the engine tells apart (the POSIX side returns the same numbers).
constexpr unsigned kOsIoDone = 0;
constexpr unsigned kOsIoAborted = 995;    // the operation was cancelled
constexpr unsigned kOsIoPending = 997;    // it goes on in the background
constexpr unsigned kOsDeviceGone = 1167;  // the device is not connected (any more)

// The part of the device state that a port's settings choose.
struct OsSerialSettings {
  uint32_t baud;
  uint8_t dataBits;
  uint8_t parity;    // 0-4: none, odd, even, mark, space
  uint8_t stopBits;  // 0, 1, 2: 1, 1.5, 2
  uint8_t eventChar;
  uint8_t xonChar;
  uint8_t xoffChar;
  uint16_t xonLimit;
  uint16_t xoffLimit;
  uint8_t rtsControl;  // 2 = handshake
  bool ctsOutFlow;
  bool xonXoffOut;
  bool xonXoffIn;
};

struct OsSerialTimeouts {
  uint32_t readInterval;
  uint32_t readMultiplier;
  uint32_t readConstant;
  uint32_t writeMultiplier;
  uint32_t writeConstant;
};

// The device state as the system keeps it, read and written whole.
struct OsSerialState {
  alignas(8) unsigned char storage[96];
};

// Line errors and queue state (the system's COMSTAT).
struct OsSerialLineStatus {
  unsigned errors;  // the CE_* bits
  bool ctsHold, dsrHold, rlsdHold, xoffHold, xoffSent, eof, txim;
  unsigned inQueue, outQueue;
};

// One overlapped operation with its own auto-reset completion event.
struct OsSerialIo {
  alignas(16) unsigned char storage[96];
};

// A manual-reset or auto-reset event.
struct OsEvent {
  uintptr_t handle;
  bool manualReset;
};

using OsThread = uintptr_t;

// The error code of the calling thread's last failed call.
unsigned OsSerialError();

// Opens COMn for reading and writing, unshared, existing device only, overlapped; kNoSerial on
// failure (OsSerialError tells why).
OsSerial OsOpenSerial(int number);
void OsCloseSerial(OsSerial port);
bool OsGetSerialTimeouts(OsSerial port, OsSerialTimeouts* timeouts);
bool OsSetSerialTimeouts(OsSerial port, const OsSerialTimeouts* timeouts);
bool OsGetSerialState(OsSerial port, OsSerialState* state);
// Puts `settings` into `state` (the flow-control and DTR/RTS bits replaced, parity checking on).
void OsApplySerialSettings(OsSerialState* state, const OsSerialSettings* settings);
bool OsSetSerialState(OsSerial port, const OsSerialState* state);
bool OsSetSerialMask(OsSerial port, unsigned mask);
bool OsSetSerialQueues(OsSerial port, unsigned inSize, unsigned outSize);
bool OsSetSerialDtr(OsSerial port, bool raised);
// Aborts and clears both directions.
bool OsPurgeSerial(OsSerial port);
bool OsGetSerialLineStatus(OsSerial port, OsSerialLineStatus* status);

bool OsCreateSerialIo(OsSerialIo* io);
void OsDeleteSerialIo(OsSerialIo* io);
void OsResetSerialIo(OsSerialIo* io);
// Each returns kOsIoDone with `*count` (or `*events`) filled, kOsIoPending, or another error.
unsigned OsStartSerialRead(OsSerial port, OsSerialIo* io, void* buffer, unsigned size,
                           unsigned* count);
unsigned OsStartSerialWrite(OsSerial port, OsSerialIo* io, const void* data, unsigned size,
                            unsigned* count);
unsigned OsStartSerialEventWait(OsSerial port, OsSerialIo* io, unsigned* events);
// Cancels an operation that is still pending and waits until the device has let go of its
// buffer and record.
void OsAbandonSerialIo(OsSerial port, OsSerialIo* io);
// The outcome of a completed operation: kOsIoDone with `*count`, kOsIoAborted or an error.
unsigned OsSerialIoResult(OsSerial port, OsSerialIo* io, unsigned* count);

bool OsCreateEvent(OsEvent* event, bool manualReset);
void OsCloseEvent(OsEvent* event);
void OsSetEvent(OsEvent* event);
void OsResetEvent(OsEvent* event);

// Waits at most `timeoutMs` for the first of read done, write done, status done, `sendRequest`,
// `stop`, in that order of precedence: 0-4, or -1 on time-out, -2 when the wait itself failed.
// An auto-reset event that is reported is reset by the wait.
int OsWaitSerial(OsSerial port, OsSerialIo* read, OsSerialIo* write, OsSerialIo* status,
                 OsEvent* sendRequest, OsEvent* stop, unsigned timeoutMs);

// The worker thread.
OsThread OsStartThread(unsigned (*run)(void*), void* argument);
// True when the thread has ended within `timeoutMs`.
bool OsWaitThread(OsThread thread, unsigned timeoutMs);
void OsTerminateThread(OsThread thread);
void OsCloseThread(OsThread thread);

// Posts `message` with `wParam` (lParam 0) to `window`. Windows posts a window message; the POSIX
// side hands it to the sink that a test or tool installed (nothing without one).
void OsPostNotice(void* window, unsigned message, uintptr_t wParam);
using OsNoticeSink = void (*)(void* window, unsigned message, uintptr_t wParam);
OsNoticeSink SetNoticeSink(OsNoticeSink sink);

// Where the POSIX side finds COMn: `<folder>/com<n>` (the tests link a pseudo-terminal there, as
// a Wine prefix's dosdevices folder does). Null restores the default, /dev/ttyS<n-1>.
void SetSerialDeviceFolder(const char* folder);
