#include "foundation/os_socket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// Waits for `events` on the socket; 1 when ready, 0 on time-out, -1 on failure.
int Wait(int fd, short events, unsigned timeoutMs) {
  pollfd entry = {fd, events, 0};
  for (;;) {
    int ready = poll(&entry, 1, static_cast<int>(timeoutMs));
    if (ready >= 0) return ready > 0 ? 1 : 0;
    if (errno != EINTR) return -1;
  }
}

}  // namespace

bool OsStartSockets() {
  return true;
}

void OsStopSockets() {}

OsSocket OsConnect(const char* host, unsigned port, unsigned timeoutMs, bool* timedOut) {
  *timedOut = false;
  addrinfo hints = {};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  char service[8];
  snprintf(service, sizeof service, "%u", port & 0xFFFF);
  addrinfo* found = nullptr;
  if (getaddrinfo(host, service, &hints, &found) != 0 || !found) return kNoSocket;
  int fd = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) {
    freeaddrinfo(found);
    return kNoSocket;
  }
  fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
  int result = connect(fd, found->ai_addr, found->ai_addrlen);
  freeaddrinfo(found);
  if (result != 0) {
    int ready = errno == EINPROGRESS ? Wait(fd, POLLOUT, timeoutMs) : -1;
    int error = 0;
    socklen_t length = sizeof error;
    if (ready == 0) *timedOut = true;
    if (ready <= 0 || getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) != 0 || error != 0) {
      close(fd);
      return kNoSocket;
    }
  }
  int on = 1;
  setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return static_cast<OsSocket>(fd);
}

int OsSend(OsSocket socket, const void* data, size_t size, unsigned timeoutMs) {
  int fd = static_cast<int>(socket);
  const char* p = static_cast<const char*>(data);
  while (size) {
    int ready = Wait(fd, POLLOUT, timeoutMs);
    if (ready <= 0) return ready == 0 ? kOsSocketTimedOut : kOsSocketFailed;
    ssize_t sent = send(fd, p, size, MSG_NOSIGNAL);
    if (sent < 0) {
      if (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK) continue;
      return kOsSocketFailed;
    }
    p += sent;
    size -= static_cast<size_t>(sent);
  }
  return 0;
}

int OsReceive(OsSocket socket, void* buffer, size_t size, unsigned timeoutMs) {
  int fd = static_cast<int>(socket);
  if (size > 0x7FFFFFFF) size = 0x7FFFFFFF;
  for (;;) {
    int ready = Wait(fd, POLLIN, timeoutMs);
    if (ready <= 0) return ready == 0 ? kOsSocketTimedOut : kOsSocketFailed;
    ssize_t got = recv(fd, buffer, size, 0);
    if (got >= 0) return static_cast<int>(got);
    if (errno != EINTR && errno != EAGAIN && errno != EWOULDBLOCK) return kOsSocketFailed;
  }
}

void OsCloseSocket(OsSocket socket) {
  if (socket != kNoSocket) close(static_cast<int>(socket));
}
