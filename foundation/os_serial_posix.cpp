#include "foundation/os_serial.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "foundation/memory.h"

namespace {

constexpr int kOwnerThreadRecord = 7202;
constexpr unsigned kIoIncomplete = 996;
constexpr unsigned kInvalidParameter = 87;

thread_local unsigned t_lastError;
OsNoticeSink g_sink;
char g_deviceFolder[512];

enum IoKind : int { kIoNone, kIoRead, kIoWrite, kIoStatus };

// An overlapped record: what the operation works on and, once the wait has finished it, how.
struct PosixIo {
  int kind;
  bool pending;
  bool complete;
  unsigned char* buffer;
  unsigned size;
  unsigned done;
  unsigned error;
};
static_assert(sizeof(PosixIo) <= sizeof(OsSerialIo::storage), "OsSerialIo too small");

struct PosixState {
  termios terms;
  uint32_t baud;
};
static_assert(sizeof(PosixState) <= sizeof(OsSerialState::storage), "OsSerialState too small");

struct ThreadRecord {
  pthread_t thread;
  unsigned (*run)(void*);
  void* argument;
  bool joined;
};

PosixIo* Io(OsSerialIo* io) {
  return reinterpret_cast<PosixIo*>(io->storage);
}

int Fd(OsSerial port) {
  return static_cast<int>(port);
}

// The system's codes for the failures a program on Windows would meet.
unsigned Fail(int error) {
  switch (error) {
    case ENOENT:
    case ENXIO:
      t_lastError = 2;  // file not found
      break;
    case EACCES:
    case EBUSY:
    case EWOULDBLOCK:
      t_lastError = 5;  // access denied: the port is in use
      break;
    case EIO:
    case EPIPE:
      t_lastError = kOsDeviceGone;
      break;
    default:
      t_lastError = static_cast<unsigned>(error);
  }
  return t_lastError;
}

speed_t SpeedOf(uint32_t baud) {
  struct Pair {
    uint32_t baud;
    speed_t speed;
  };
  static constexpr Pair kSpeeds[] = {
      {110, B110},       {300, B300},       {600, B600},       {1200, B1200},     {2400, B2400},
      {4800, B4800},     {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
      {115200, B115200}, {230400, B230400}, {460800, B460800}, {921600, B921600},
  };
  for (const Pair& pair : kSpeeds)
    if (pair.baud == baud) return pair.speed;
  // Rates between the standard ones (14400, 56000, 128000, 256000) take the next lower one:
  // a pseudo-terminal ignores the rate, and a real line needs a driver of its own for them.
  speed_t speed = 0;
  for (const Pair& pair : kSpeeds)
    if (pair.baud < baud) speed = pair.speed;
  return speed;
}

// Reads or writes what the device takes now; completes the operation unless it must go on.
void Advance(int fd, PosixIo* io) {
  for (;;) {
    ssize_t moved = io->kind == kIoRead ? read(fd, io->buffer, io->size)
                                        : write(fd, io->buffer + io->done, io->size - io->done);
    if (moved < 0 && errno == EINTR) continue;
    if (moved < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
    if (moved == 0 && io->kind == kIoWrite) return;  // took nothing now: the wait tries again
    if (moved < 0 || (moved == 0 && io->kind == kIoRead)) {
      // A terminal whose other end has gone reads as end of file.
      io->error = moved < 0 ? Fail(errno) : kOsDeviceGone;
    } else {
      io->done += static_cast<unsigned>(moved);
      if (io->kind == kIoWrite && io->done < io->size) continue;
      io->error = kOsIoDone;
    }
    io->pending = false;
    io->complete = true;
    return;
  }
}

unsigned Start(OsSerial port, OsSerialIo* record, int kind, const void* data, unsigned size,
               unsigned* count) {
  PosixIo* io = Io(record);
  *io =
      PosixIo{kind, true, false, static_cast<unsigned char*>(const_cast<void*>(data)), size, 0, 0};
  *count = 0;
  Advance(Fd(port), io);
  if (io->pending) return t_lastError = kOsIoPending;
  io->complete = false;  // finished at once: nothing for a wait to report
  *count = io->done;
  if (io->error != kOsIoDone) t_lastError = io->error;
  return io->error;
}

long long NowMs() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

void* RunThread(void* argument) {
  auto* record = static_cast<ThreadRecord*>(argument);
  record->run(record->argument);
  return nullptr;
}

}  // namespace

unsigned OsSerialError() {
  return t_lastError;
}

OsSerial OsOpenSerial(int number) {
  char path[600];
  if (g_deviceFolder[0])
    snprintf(path, sizeof path, "%s/com%d", g_deviceFolder, number);
  else
    snprintf(path, sizeof path, "/dev/ttyS%d", number - 1);
  int fd = open(path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) {
    Fail(errno);
    return kNoSerial;
  }
  // Not shared: a second opener is refused as Windows refuses it.
  if (!isatty(fd) || flock(fd, LOCK_EX | LOCK_NB) != 0) {
    Fail(isatty(fd) ? errno : ENOENT);
    close(fd);
    return kNoSerial;
  }
  return static_cast<OsSerial>(fd);
}

void OsCloseSerial(OsSerial port) {
  if (port != kNoSerial) close(Fd(port));
}

// A terminal device has no time-outs of this kind: reads and writes here never wait by
// themselves, the wait does.
bool OsGetSerialTimeouts(OsSerial, OsSerialTimeouts* timeouts) {
  *timeouts = OsSerialTimeouts{};
  return true;
}
bool OsSetSerialTimeouts(OsSerial, const OsSerialTimeouts*) {
  return true;
}

bool OsGetSerialState(OsSerial port, OsSerialState* state) {
  auto* posix = reinterpret_cast<PosixState*>(state->storage);
  posix->baud = 0;
  if (tcgetattr(Fd(port), &posix->terms) == 0) return true;
  Fail(errno);
  return false;
}

void OsApplySerialSettings(OsSerialState* state, const OsSerialSettings* settings) {
  auto* posix = reinterpret_cast<PosixState*>(state->storage);
  termios& terms = posix->terms;
  cfmakeraw(&terms);
  posix->baud = settings->baud;
  speed_t speed = SpeedOf(settings->baud);
  if (speed) cfsetspeed(&terms, speed);
  terms.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS);
  terms.c_cflag |= CREAD | CLOCAL;
  static constexpr tcflag_t kSizes[] = {CS5, CS6, CS7, CS8};
  if (settings->dataBits >= 5 && settings->dataBits <= 8)
    terms.c_cflag |= kSizes[settings->dataBits - 5];
  if (settings->parity == 1 || settings->parity == 3) terms.c_cflag |= PARENB | PARODD;
  if (settings->parity == 2 || settings->parity == 4) terms.c_cflag |= PARENB;
  if (settings->parity >= 3) terms.c_cflag |= CMSPAR;
  if (settings->parity) terms.c_iflag |= INPCK;
  if (settings->stopBits) terms.c_cflag |= CSTOPB;
  if (settings->ctsOutFlow || settings->rtsControl == 2) terms.c_cflag |= CRTSCTS;
  terms.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
  if (settings->xonXoffOut) terms.c_iflag |= IXON;
  if (settings->xonXoffIn) terms.c_iflag |= IXOFF;
  terms.c_cc[VSTART] = settings->xonChar;
  terms.c_cc[VSTOP] = settings->xoffChar;
  terms.c_cc[VMIN] = 1;  // a non-blocking read without data then says so instead of reading 0
  terms.c_cc[VTIME] = 0;
}

bool OsSetSerialState(OsSerial port, const OsSerialState* state) {
  const auto* posix = reinterpret_cast<const PosixState*>(state->storage);
  // Windows refuses a rate outside the device's range; so does this.
  if (posix->baud != 0 && (posix->baud < 50 || posix->baud > 4000000)) {
    t_lastError = kInvalidParameter;
    return false;
  }
  if (tcsetattr(Fd(port), TCSANOW, &posix->terms) == 0) return true;
  Fail(errno);
  return false;
}

bool OsSetSerialMask(OsSerial, unsigned) {
  return true;
}
bool OsSetSerialQueues(OsSerial, unsigned, unsigned) {
  return true;
}

bool OsSetSerialDtr(OsSerial port, bool raised) {
  int bits = TIOCM_DTR;
  if (ioctl(Fd(port), raised ? TIOCMBIS : TIOCMBIC, &bits) == 0) return true;
  // A pseudo-terminal has no modem lines: there is nothing to raise.
  if (errno == ENOTTY || errno == EINVAL) return true;
  Fail(errno);
  return false;
}

bool OsPurgeSerial(OsSerial port) {
  if (tcflush(Fd(port), TCIOFLUSH) == 0) return true;
  Fail(errno);
  return false;
}

bool OsGetSerialLineStatus(OsSerial port, OsSerialLineStatus* status) {
  *status = OsSerialLineStatus{};
  int in = 0;
  int out = 0;
  if (ioctl(Fd(port), FIONREAD, &in) != 0 || ioctl(Fd(port), TIOCOUTQ, &out) != 0) {
    Fail(errno);
    return false;
  }
  status->inQueue = static_cast<unsigned>(in);
  status->outQueue = static_cast<unsigned>(out);
  return true;
}

bool OsCreateSerialIo(OsSerialIo* io) {
  *Io(io) = PosixIo{};
  return true;
}
void OsDeleteSerialIo(OsSerialIo* io) {
  *Io(io) = PosixIo{};
}
void OsResetSerialIo(OsSerialIo* io) {
  Io(io)->complete = false;
}

unsigned OsStartSerialRead(OsSerial port, OsSerialIo* io, void* buffer, unsigned size,
                           unsigned* count) {
  return Start(port, io, kIoRead, buffer, size, count);
}

unsigned OsStartSerialWrite(OsSerial port, OsSerialIo* io, const void* data, unsigned size,
                            unsigned* count) {
  return Start(port, io, kIoWrite, data, size, count);
}

// A terminal device reports no line events: the wait stays pending until it is abandoned.
unsigned OsStartSerialEventWait(OsSerial, OsSerialIo* io, unsigned* events) {
  *Io(io) = PosixIo{kIoStatus, true, false, nullptr, 0, 0, 0};
  *events = 0;
  return t_lastError = kOsIoPending;
}

void OsAbandonSerialIo(OsSerial, OsSerialIo* io) {
  Io(io)->pending = false;
}

unsigned OsSerialIoResult(OsSerial, OsSerialIo* record, unsigned* count) {
  PosixIo* io = Io(record);
  *count = 0;
  if (io->pending) return t_lastError = kIoIncomplete;
  *count = io->done;
  if (io->error != kOsIoDone) t_lastError = io->error;
  return io->error;
}

bool OsCreateEvent(OsEvent* event, bool manualReset) {
  int fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  event->handle = static_cast<uintptr_t>(fd);
  event->manualReset = manualReset;
  if (fd >= 0) return true;
  Fail(errno);
  return false;
}

void OsCloseEvent(OsEvent* event) {
  close(static_cast<int>(event->handle));
  event->handle = ~uintptr_t{0};
}

void OsSetEvent(OsEvent* event) {
  uint64_t one = 1;
  ssize_t written = write(static_cast<int>(event->handle), &one, sizeof one);
  (void)written;  // only an overflowing counter fails, and it is set then anyway
}

void OsResetEvent(OsEvent* event) {
  uint64_t value;
  ssize_t taken = read(static_cast<int>(event->handle), &value, sizeof value);
  (void)taken;  // EAGAIN: it was not set
}

int OsWaitSerial(OsSerial port, OsSerialIo* readIo, OsSerialIo* writeIo, OsSerialIo*,
                 OsEvent* sendRequest, OsEvent* stop, unsigned timeoutMs) {
  PosixIo* reading = Io(readIo);
  PosixIo* writing = Io(writeIo);
  long long deadline = NowMs() + timeoutMs;
  for (;;) {
    short deviceEvents =
        static_cast<short>((reading->kind == kIoRead && reading->pending ? POLLIN : 0) |
                           (writing->kind == kIoWrite && writing->pending ? POLLOUT : 0));
    pollfd entries[3] = {{static_cast<int>(sendRequest->handle), POLLIN, 0},
                         {static_cast<int>(stop->handle), POLLIN, 0},
                         {deviceEvents ? Fd(port) : -1, deviceEvents, 0}};
    long long left = deadline - NowMs();
    int ready = poll(entries, 3, left > 0 ? static_cast<int>(left) : 0);
    if (ready < 0 && errno != EINTR) {
      Fail(errno);
      return -2;
    }
    if (ready > 0) {
      short device = entries[2].revents;
      if (reading->pending && (device & (POLLIN | POLLHUP | POLLERR))) {
        Advance(Fd(port), reading);
        if (reading->complete) return 0;
      }
      if (writing->pending && (device & (POLLOUT | POLLHUP | POLLERR))) {
        Advance(Fd(port), writing);
        if (writing->complete) return 1;
      }
      if (entries[0].revents & POLLIN) {
        if (!sendRequest->manualReset) OsResetEvent(sendRequest);
        return 3;
      }
      if (entries[1].revents & POLLIN) {
        if (!stop->manualReset) OsResetEvent(stop);
        return 4;
      }
      if (device & POLLNVAL) {
        t_lastError = 6;  // invalid handle
        return -2;
      }
    }
    if (NowMs() >= deadline) return -1;
  }
}

OsThread OsStartThread(unsigned (*run)(void*), void* argument) {
  auto* record = static_cast<ThreadRecord*>(AllocMem(sizeof(ThreadRecord), kOwnerThreadRecord));
  if (!record) return 0;
  *record = ThreadRecord{{}, run, argument, false};
  if (pthread_create(&record->thread, nullptr, RunThread, record) != 0) {
    Fail(errno);
    FreeMem(record);
    return 0;
  }
  return reinterpret_cast<OsThread>(record);
}

bool OsWaitThread(OsThread thread, unsigned timeoutMs) {
  auto* record = reinterpret_cast<ThreadRecord*>(thread);
  if (record->joined) return true;
  timespec until;
  clock_gettime(CLOCK_REALTIME, &until);
  until.tv_sec += timeoutMs / 1000;
  until.tv_nsec += static_cast<long>(timeoutMs % 1000) * 1000000L;
  if (until.tv_nsec >= 1000000000L) {
    until.tv_sec += 1;
    until.tv_nsec -= 1000000000L;
  }
  record->joined = pthread_timedjoin_np(record->thread, nullptr, &until) == 0;
  return record->joined;
}

void OsTerminateThread(OsThread thread) {
  auto* record = reinterpret_cast<ThreadRecord*>(thread);
  if (record->joined) return;
  pthread_cancel(record->thread);
  record->joined = pthread_join(record->thread, nullptr) == 0;
}

void OsCloseThread(OsThread thread) {
  auto* record = reinterpret_cast<ThreadRecord*>(thread);
  if (!record) return;
  if (!record->joined) pthread_detach(record->thread);
  FreeMem(record);
}

void OsPostNotice(void* window, unsigned message, uintptr_t wParam) {
  if (OsNoticeSink sink = __atomic_load_n(&g_sink, __ATOMIC_ACQUIRE)) sink(window, message, wParam);
}

OsNoticeSink SetNoticeSink(OsNoticeSink sink) {
  return __atomic_exchange_n(&g_sink, sink, __ATOMIC_ACQ_REL);
}

void SetSerialDeviceFolder(const char* folder) {
  snprintf(g_deviceFolder, sizeof g_deviceFolder, "%s", folder ? folder : "");
}
