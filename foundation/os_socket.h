// Platform service: TCP client sockets with time-outs, for the HTTP client. Every call that waits
// takes a limit in milliseconds, so a thread that asks a dead server never waits longer than it
// chose. The calls keep no state of their own: any thread may use its own sockets.
#pragma once
#include <cstddef>
#include <cstdint>

using OsSocket = uintptr_t;
constexpr OsSocket kNoSocket = ~OsSocket{0};

constexpr int kOsSocketFailed = -1;
constexpr int kOsSocketTimedOut = -2;

// The socket library's start and end around a process's use (WinSock's start-up on Windows,
// nothing elsewhere). Quill.exe's start-up does its own; quill-tool calls these.
bool OsStartSockets();
void OsStopSockets();

// Connects to `host` (a name or dotted IPv4 address) at `port`. Name lookup uses the system's
// resolver and its own limits; the connection itself waits at most `timeoutMs`. kNoSocket on
// failure, with `*timedOut` telling a time-out from a refusal or an unknown host.
OsSocket OsConnect(const char* host, unsigned port, unsigned timeoutMs, bool* timedOut);
// Sends every byte; kOsSocketTimedOut when the peer takes none for `timeoutMs`, else 0 or
// kOsSocketFailed.
int OsSend(OsSocket socket, const void* data, size_t size, unsigned timeoutMs);
// Receives what has arrived, at most `size` bytes, waiting up to `timeoutMs` for the first:
// the count, 0 when the peer has closed, kOsSocketTimedOut or kOsSocketFailed.
int OsReceive(OsSocket socket, void* buffer, size_t size, unsigned timeoutMs);
void OsCloseSocket(OsSocket socket);
