#!/usr/bin/env python3
"""The HTTP server of the HTTP client's tests: well-behaved and broken replies on 127.0.0.1.
Prints its port on the first line, then serves until it is killed."""

import email.parser
import socketserver
import sys
import time

FILE = bytes(range(256)) * 40  # 10240 bytes
MODIFIED = "Tue, 03 Mar 2026 10:20:30 GMT"


def reply(status, body=b"", headers=()):
    head = f"HTTP/1.1 {status}\r\n" + "".join(f"{k}: {v}\r\n" for k, v in headers)
    return head.encode() + b"\r\n" + body


class Handler(socketserver.StreamRequestHandler):
    def handle(self):
        line = self.rfile.readline(65537).decode("latin-1").rstrip("\r\n")
        if not line:
            return
        method, path, _ = line.split(" ", 2)
        headers = {}
        while True:
            h = self.rfile.readline(65537).decode("latin-1").rstrip("\r\n")
            if not h:
                break
            name, value = h.split(":", 1)
            headers[name.strip().lower()] = value.strip()
        body = self.rfile.read(int(headers.get("content-length", "0")))
        out = self.wfile
        if path == "/file":
            if headers.get("if-modified-since") == MODIFIED:
                out.write(reply("304 Not Modified", headers=[("Last-Modified", MODIFIED)]))
            elif "range" in headers:
                first, last = headers["range"].removeprefix("bytes=").split("-")
                first, last = int(first), int(last) if last else len(FILE) - 1
                part = FILE[first:last + 1]
                out.write(reply("206 Partial Content", part, [("Content-Length", len(part)),
                          ("Content-Range", f"bytes {first}-{last}/{len(FILE)}"), ("Last-Modified", MODIFIED)]))
            else:
                out.write(reply("200 OK", FILE, [("Content-Length", len(FILE)), ("Last-Modified", MODIFIED)]))
        elif path == "/chunked":
            out.write(reply("200 OK", headers=[("Transfer-Encoding", "chunked"), ("Last-Modified", MODIFIED)]))
            for i in range(0, len(FILE), 1000):
                piece = FILE[i:i + 1000]
                out.write(f"{len(piece):x};note=x\r\n".encode() + piece + b"\r\n")
                out.flush()
            out.write(b"0\r\nX-Trailer: yes\r\n\r\n")
        elif path.startswith("/redirect/"):
            n = int(path.rsplit("/", 1)[1])
            if n == 0:
                out.write(reply("200 OK", b"arrived " + method.encode(), [("Content-Length", len(b"arrived ") + len(method))]))
            else:
                status = {1: "307 Temporary Redirect", 2: "301 Moved Permanently"}.get(n, "302 Found")
                out.write(reply(status, b"moved", [("Location", f"/redirect/{n - 1}"), ("Content-Length", 5)]))
        elif path == "/relative/start":
            out.write(reply("303 See Other", headers=[("Location", "../redirect/0"), ("Content-Length", 0)]))
        elif path == "/loop":
            out.write(reply("302 Found", headers=[("Location", "/loop"), ("Content-Length", 0)]))
        elif path == "/https":
            out.write(reply("302 Found", headers=[("Location", "https://127.0.0.1/"), ("Content-Length", 0)]))
        elif path == "/echo":
            message = email.parser.BytesParser().parsebytes(
                b"Content-Type: " + headers.get("content-type", "").encode() + b"\r\n\r\n" + body)
            text = f"{method} {message.get_content_type()}\n".encode()
            for part in message.get_payload():
                data = part.get_payload(decode=True)
                name = part.get_param("name", header="content-disposition")
                text += f"{name} {part.get_filename()} {len(data)}\n".encode() + data + b"\n"
            out.write(reply("200 OK", text, [("Content-Length", len(text))]))
        elif path == "/status/503":
            out.write(reply("503 Service Unavailable", b"busy", [("Content-Length", 4)]))
        elif path == "/silent":
            time.sleep(8)
        elif path == "/drip":
            try:
                out.write(b"HTTP/1.1 200 OK\r\n")
                for _ in range(40):
                    out.write(b"X")
                    out.flush()
                    time.sleep(0.25)
            except OSError:
                pass
        elif path == "/endless-header":
            out.write(b"HTTP/1.1 200 OK\r\n")
            try:
                for _ in range(100000):
                    out.write(b"X-Filler: " + b"y" * 90 + b"\r\n")
            except OSError:
                pass
        elif path == "/huge":
            out.write(reply("200 OK", b"0123456789", [("Content-Length", 10 * 2**30)]))
            time.sleep(2)
        elif path == "/cut":
            out.write(reply("200 OK", b"0123456789", [("Content-Length", 1000)]))
        elif path == "/bad-chunk":
            out.write(reply("200 OK", b"5\r\nhello\r\nzz\r\n", [("Transfer-Encoding", "chunked")]))
        elif path == "/not-http":
            out.write(b"SSH-2.0-OpenSSH_9.2\r\n")
        elif path == "/until-close":
            out.write(b"HTTP/1.0 200 OK\r\nContent-Type: text/plain\r\n\r\n" + FILE[:3000])
        elif path == "/continue":
            out.write(b"HTTP/1.1 100 Continue\r\n\r\n" + reply("200 OK", b"after", [("Content-Length", 5)]))
        else:
            out.write(reply("404 Not Found", b"no", [("Content-Length", 2)]))


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True
    allow_reuse_address = True


with Server(("127.0.0.1", 0), Handler) as server:
    print(server.server_address[1], flush=True)
    server.serve_forever()
