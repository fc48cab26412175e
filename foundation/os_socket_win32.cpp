#include "foundation/os_socket.h"

#include <winsock2.h>

#include <cstring>

namespace {

// Waits until the socket can write (or has failed to connect) or can read; 1 when ready, 0 on
// time-out, -1 on failure.
int Wait(SOCKET s, bool write, unsigned timeoutMs) {
  fd_set ready, failed;
  FD_ZERO(&ready);
  FD_ZERO(&failed);
  FD_SET(s, &ready);
  FD_SET(s, &failed);
  timeval limit = {static_cast<long>(timeoutMs / 1000), static_cast<long>(timeoutMs % 1000 * 1000)};
  int count = select(0, write ? nullptr : &ready, write ? &ready : nullptr, &failed, &limit);
  if (count == SOCKET_ERROR) return -1;
  if (count == 0) return 0;
  return FD_ISSET(s, &failed) ? -1 : 1;
}

}  // namespace

bool OsStartSockets() {
  WSADATA data;
  return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

void OsStopSockets() {
  WSACleanup();
}

OsSocket OsConnect(const char* host, unsigned port, unsigned timeoutMs, bool* timedOut) {
  *timedOut = false;
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(port));
  address.sin_addr.s_addr = inet_addr(host);
  if (address.sin_addr.s_addr == INADDR_NONE) {
    // The lookup's result lives in the calling thread's own storage.
    hostent* entry = gethostbyname(host);
    if (!entry || entry->h_addrtype != AF_INET || !entry->h_addr_list[0]) return kNoSocket;
    memcpy(&address.sin_addr, entry->h_addr_list[0], sizeof address.sin_addr);
  }
  SOCKET s = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  if (s == INVALID_SOCKET) return kNoSocket;
  u_long nonBlocking = 1;
  ioctlsocket(s, FIONBIO, &nonBlocking);
  if (connect(s, reinterpret_cast<sockaddr*>(&address), sizeof address) == SOCKET_ERROR) {
    int ready = WSAGetLastError() == WSAEWOULDBLOCK ? Wait(s, true, timeoutMs) : -1;
    if (ready == 0) *timedOut = true;
    if (ready <= 0) {
      closesocket(s);
      return kNoSocket;
    }
  }
  BOOL on = TRUE;
  setsockopt(s, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
  return static_cast<OsSocket>(s);
}

int OsSend(OsSocket socket, const void* data, size_t size, unsigned timeoutMs) {
  SOCKET s = static_cast<SOCKET>(socket);
  const char* p = static_cast<const char*>(data);
  while (size) {
    int ready = Wait(s, true, timeoutMs);
    if (ready <= 0) return ready == 0 ? kOsSocketTimedOut : kOsSocketFailed;
    int chunk = size > 0x10000 ? 0x10000 : static_cast<int>(size);
    int sent = send(s, p, chunk, 0);
    if (sent == SOCKET_ERROR) {
      if (WSAGetLastError() == WSAEWOULDBLOCK) continue;
      return kOsSocketFailed;
    }
    p += sent;
    size -= static_cast<size_t>(sent);
  }
  return 0;
}

int OsReceive(OsSocket socket, void* buffer, size_t size, unsigned timeoutMs) {
  SOCKET s = static_cast<SOCKET>(socket);
  int chunk = size > 0x10000000 ? 0x10000000 : static_cast<int>(size);
  for (;;) {
    int ready = Wait(s, false, timeoutMs);
    if (ready <= 0) return ready == 0 ? kOsSocketTimedOut : kOsSocketFailed;
    int got = recv(s, static_cast<char*>(buffer), chunk, 0);
    if (got != SOCKET_ERROR) return got;
    if (WSAGetLastError() != WSAEWOULDBLOCK) return kOsSocketFailed;
  }
}

void OsCloseSocket(OsSocket socket) {
  if (socket != kNoSocket) closesocket(static_cast<SOCKET>(socket));
}
