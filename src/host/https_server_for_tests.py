"""An HTTPS server on loopback that answers in every way a server can, good and bad.

Usage: https_server_for_tests.py FOLDER

FOLDER holds NAME.crt and NAME.key for each identity but three, which have the certificate of "good" and do
without what protects it: "old-protocol" speaks no later TLS than 1.1, "no-cipher" leaves all readable,
"no-tls" speaks plain HTTP. Every identity gets a port of its own; the ports are printed as one JSON object,
and the server runs until its standard input ends. The first part of a
request's path says how it is answered: a number is a status, the other kinds are below; "script" takes
the next kind from FOLDER/script (one a line) and is 200 after the last. What arrived is written to
FOLDER/ledger, one JSON object a line, before it is answered.
"""

import json
import os
import socket
import ssl
import struct
import sys
import threading
import warnings

FOLDER = sys.argv[1]
CERTIFICATES = ("good", "expired", "not-yet-valid", "self-signed", "wrong-host", "unknown-ca", "short-key",
                "weak-digest", "for-clients", "without-deputy", "signed-by-a-server")
UNPROTECTED = ("old-protocol", "no-cipher", "no-tls")
lock = threading.Lock()
stopping = threading.Event()
script = None


def write_ledger(entry):
    with lock, open(os.path.join(FOLDER, "ledger"), "a", encoding="utf-8") as ledger:
        ledger.write(json.dumps(entry) + "\n")


def next_of_script():
    global script
    with lock:
        if script is None:
            with open(os.path.join(FOLDER, "script"), encoding="utf-8") as lines:
                script = lines.read().split()
        return script.pop(0) if script else "200"


def read_request(stream):
    head = b""
    while b"\r\n\r\n" not in head:
        part = stream.recv(65536)
        if not part:
            return None
        head += part
    head, _, body = head.partition(b"\r\n\r\n")
    lines = head.decode("latin-1").split("\r\n")
    headers = [tuple(line.split(": ", 1)) if ": " in line else (line.rstrip(":"), "") for line in lines[1:]]
    length = int(dict((name.lower(), value) for name, value in headers).get("content-length", "0"))
    while len(body) < length:
        part = stream.recv(65536)
        if not part:
            return None
        body += part
    method, path, _ = lines[0].split(" ")
    return {"method": method, "path": path, "headers": headers, "body": body.decode("utf-8")}


def close_with_reset(stream):
    raw = stream.detach()
    plain = socket.socket(fileno=raw)
    plain.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    plain.close()


def plain_answer(status, extra=""):
    return f"HTTP/1.1 {status} Answer\r\nContent-Length: 2\r\n{extra}Connection: close\r\n\r\nok".encode()


def answer(stream, kind):
    if kind in ("204", "304"):
        stream.sendall(f"HTTP/1.1 {kind} Answer\r\nConnection: close\r\n\r\n".encode())
    elif kind in ("301", "302", "307"):
        stream.sendall(plain_answer(kind, "Location: /200/stat/4\r\n"))
    elif kind == "no-answer":
        stopping.wait(30)
    elif kind == "slow":
        stream.sendall(b"HTTP/1.1 200 Answer\r\nContent-Length: 1000\r\n\r\n")
        for _ in range(1000):
            if stopping.wait(0.05):
                return
            stream.sendall(b"x")
    elif kind == "cut-in-headers":
        stream.sendall(b"HTTP/1.1 200 Ans")
    elif kind == "cut-in-body":
        stream.sendall(b"HTTP/1.1 200 Answer\r\nContent-Length: 1000\r\n\r\nonly this")
    elif kind == "cut-in-chunks":
        stream.sendall(b"HTTP/1.1 200 Answer\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nonly ")
    elif kind == "reset":
        close_with_reset(stream)
    elif kind == "set-cookie":
        stream.sendall(plain_answer("200", "Set-Cookie: uid=stolen; Path=/\r\nSet-Cookie: more=1\r\n"))
    else:
        stream.sendall(plain_answer(kind))


def serve(connection, identity, context):
    try:
        stream = context.wrap_socket(connection, server_side=True)
    except (ssl.SSLError, OSError) as failure:
        write_ledger({"identity": identity, "handshake": str(failure)})
        connection.close()
        return
    try:
        request = read_request(stream)
        if request is None:
            write_ledger({"identity": identity, "handshake": "closed without a request"})
            return
        kind = request["path"].split("/")[1]
        if kind == "script":
            kind = next_of_script()
        write_ledger({"identity": identity, "kind": kind, **request})
        answer(stream, kind)
    except (ssl.SSLError, OSError):
        pass
    finally:
        stream.close()


def serve_openly(connection, identity):
    """Says yes to anything that comes, and notes whether it could read what was asked."""
    if b"POST" in connection.recv(65536):
        write_ledger({"identity": identity, "kind": "readable"})
    connection.sendall(plain_answer("200"))
    connection.close()


def context_of(identity):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    if identity != "good":
        # Whatever is weak is for the other side to refuse.
        context.set_ciphers("eNULL:@SECLEVEL=0" if identity == "no-cipher" else "ALL:@SECLEVEL=0")
    if identity == "no-cipher":
        context.maximum_version = ssl.TLSVersion.TLSv1_2  # later ones always encrypt
    if identity == "old-protocol":
        warnings.simplefilter("ignore", DeprecationWarning)
        context.minimum_version = ssl.TLSVersion.TLSv1
        context.maximum_version = ssl.TLSVersion.TLSv1_1
    base = os.path.join(FOLDER, "good" if identity in UNPROTECTED else identity)
    context.load_cert_chain(base + ".crt", base + ".key")
    return context


def listen(identity):
    how = (serve_openly, identity) if identity == "no-tls" else (serve, identity, context_of(identity))
    server = socket.create_server(("127.0.0.1", 0))

    def accept():
        while True:
            connection, _ = server.accept()
            threading.Thread(target=how[0], args=(connection, *how[1:]), daemon=True).start()

    threading.Thread(target=accept, daemon=True).start()
    return server.getsockname()[1]


print(json.dumps({identity: listen(identity) for identity in CERTIFICATES + UNPROTECTED}), flush=True)
sys.stdin.read()
stopping.set()
