// A serial port served by one worker thread. The interface thread queues bytes to send and takes
// received bytes; the worker moves them between the queues and the device and posts the owner
// window a notice: code 2 when data arrived, code 1 when it ended on an error.
#pragma once
#include <cstdint>

#include "comm/byte_queue.h"
#include "foundation/os_lock.h"
#include "foundation/os_serial.h"

constexpr int kOwnerSerialPort = 530;
constexpr int kOwnerSerialWork = 531;
constexpr int kOwnerSerialReceive = 7200;
constexpr int kOwnerSerialTransmit = 7201;

constexpr unsigned kSerialDataArrived = 2;
constexpr unsigned kSerialWorkerFailed = 1;

// Comm event bits (the system's EV_* values).
enum : unsigned {
  kEvRxChar = 0x1,
  kEvRxFlag = 0x2,
  kEvTxEmpty = 0x4,
  kEvCts = 0x8,
  kEvDsr = 0x10,
  kEvRlsd = 0x20,
  kEvBreak = 0x40,
  kEvErr = 0x80,
  kEvRing = 0x100,
};

enum SerialFlow : int { kFlowNone = 0, kFlowXonXoff = 1, kFlowHardware = 2 };

struct SerialWork;

struct SerialPort {
  void* ownerWindow;
  unsigned notifyMessage;
  OsSerial handle;
  OsThread thread;
  unsigned eventMask;
  uint8_t eventChar;
  uint8_t xonChar;
  uint8_t xoffChar;
  uint16_t xonLimit;
  uint16_t xoffLimit;
  uint8_t rtsControl;
  bool ctsOutFlow;
  bool xonXoffOut;
  bool xonXoffIn;
  bool open;  // the interface thread's alone
  uint8_t number;
  uint32_t baud;
  uint8_t dataBits;
  uint8_t parity;
  uint8_t stopBits;
  OsSerialTimeouts savedTimeouts;
  OsSerialTimeouts workingTimeouts;
  ByteQueue receive;
  ByteQueue transmit;
  OsLock receiveLock;
  OsLock transmitLock;
  OsEvent stop;
  OsEvent sendRequest;
  unsigned finishWaitMs;  // how long close waits for the worker (10 s)
  SerialWork* work;       // the worker's block, freed by close when the worker was terminated
};

// Null when memory, a lock's queue or an event cannot be had. Nothing is opened.
SerialPort* CreateSerialPort(int number, uint32_t baud, int parity, int dataBits, int stopBits,
                             int flow);
// True when open (at once when it already was). A failure is shown to the user.
bool OpenSerialPort(SerialPort* port, void* ownerWindow, unsigned notifyMessage);
void CloseSerialPort(SerialPort* port);
void DestroySerialPort(SerialPort* port);
void SendSerial(SerialPort* port, const void* bytes, int count);
// The next received byte, or -1.
int ReadSerialByte(SerialPort* port);

// The text of the status decoding for the events that occurred and the line's state.
int FormatSerialStatus(unsigned events, const OsSerialLineStatus* status, char* text, int size);
