"""A service that usage data may be sent to, for tests of the whole program."""

import contextlib
import os
import socket
import ssl
import subprocess
import threading


class UsageService:
    """On this machine, with an authority of its own. It counts everyone who connects, and keeps what is posted.
    `openssl` makes its certificates, which hold for that many days."""

    def __init__(self, folder, openssl=("openssl",), days=2):
        self.folder, self.openssl, self.days = folder, openssl, str(days)
        self.connections, self.posts = 0, []
        self.make_certificates()
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.file("service.crt"), self.file("service.key"))
        self.server = socket.create_server(("127.0.0.1", 0))
        self.variables = {"TRIMORA_ANALYTICS_URL": f"https://localhost:{self.server.getsockname()[1]}/stat",
                          "SSL_CERT_FILE": self.file("authority.crt"), "no_proxy": "*"}
        threading.Thread(target=self.accept, args=[context], daemon=True).start()

    def file(self, name):
        return os.path.join(self.folder, name)

    def make_certificates(self):
        def openssl(*words):
            subprocess.run([*self.openssl, *words], cwd=self.folder, check=True, capture_output=True)
        key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"]
        openssl("req", "-x509", *key, "-days", self.days, "-subj", "/CN=Authority", "-keyout", "authority.key", "-out",
                "authority.crt")
        openssl("req", *key, "-subj", "/CN=localhost", "-keyout", "service.key", "-out", "service.csr")
        with open(self.file("service.ext"), "w") as extensions:
            extensions.write("subjectAltName=DNS:localhost\n")
        openssl("x509", "-req", "-in", "service.csr", "-CA", "authority.crt", "-CAkey", "authority.key",
                "-CAcreateserial", "-days", self.days, "-extfile", "service.ext", "-out", "service.crt")

    def accept(self, context):
        while True:
            connection, _ = self.server.accept()
            self.connections += 1
            threading.Thread(target=self.serve, args=[context, connection], daemon=True).start()

    def serve(self, context, connection):
        # One that ends before it has sent everything sends it again at the next start.
        with contextlib.suppress(OSError), context.wrap_socket(connection, server_side=True) as stream:
            post = self.read(stream)
            if post is None:
                return
            self.posts.append(post)
            self.before_answer(post)
            stream.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n\r\nok")

    def before_answer(self, post):
        """What happens between the last byte of a post and the answer."""

    @staticmethod
    def read(stream):
        """A whole request; none where the other side leaves before its end."""
        data, length = b"", None
        while length is None or len(data) < length:
            part = stream.recv(1 << 16)
            if not part:
                return None
            data += part
            if length is None and b"\r\n\r\n" in data:
                head, _, _ = data.partition(b"\r\n\r\n")
                fields = dict(line.lower().split(b": ", 1) for line in head.split(b"\r\n")[1:] if b": " in line)
                length = len(head) + 4 + int(fields.get(b"content-length", b"0"))
        return data
