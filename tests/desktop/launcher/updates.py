"""Helpers for tests of updates: a server, a feed, a signing key and programs that can be replaced."""

import base64
import ctypes
import plistlib
import re
import threading
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path
from xml.sax.saxutils import escape, quoteattr

FEED_READER = Path(__file__).parents[3] / "src" / "updates" / "updater" / "Feed.cpp"
# The XML namespace of the elements that describe a version.
NAMESPACE = re.search(r'versionNamespace\("([^"]*)"\)', FEED_READER.read_text(encoding="utf-8"))[1]


class SigningKey:
    """A key pair for tests, always the same for the same number."""

    def __init__(self, number=1):
        self._sodium = ctypes.CDLL("libsodium.so.23")
        public, self._secret = ctypes.create_string_buffer(32), ctypes.create_string_buffer(64)
        self._sodium.crypto_sign_seed_keypair(public, self._secret, bytes([number]) * 32)
        self.public = base64.b64encode(public.raw).decode()

    def sign(self, data):
        signature = ctypes.create_string_buffer(64)
        size = ctypes.c_ulonglong(len(data))
        self._sodium.crypto_sign_detached(signature, None, data, size, self._secret)
        return base64.b64encode(signature.raw).decode()


class UpdateServer:
    """An HTTP server on this machine. It answers 404 for other paths than those in `answers`."""

    def __init__(self):
        self.answers = {}  # path: (status, body)
        self.requests = []
        self._held = {}  # path: (bytes sent at first, event that releases the rest)
        self._server = ThreadingHTTPServer(("127.0.0.1", 0), self._handler())
        self._server.daemon_threads = True

    def __enter__(self):
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        for _, rest in self._held.values():
            rest.set()
        self._server.shutdown()
        self._server.server_close()

    def address(self, path):
        return f"http://127.0.0.1:{self._server.server_port}{path}"

    def hold(self, path, sent_at_first):
        """Sends the first bytes of an answer, and the rest once the returned event is set."""
        rest = threading.Event()
        self._held[path] = sent_at_first, rest
        return rest

    def request_count(self, path):
        return self.requests.count(path)

    def _handler(self):
        server = self

        class Handler(BaseHTTPRequestHandler):
            def do_GET(self):
                server.requests.append(self.path)
                status, body = server.answers.get(self.path, (404, b"nothing here"))
                self.send_response(status)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                sent, rest = server._held.get(self.path, (len(body), None))
                try:
                    self.wfile.write(body[:sent])
                    self.wfile.flush()
                    if rest is not None:
                        rest.wait()
                        self.wfile.write(body[sent:])
                except OSError:
                    pass  # the client has closed the connection

            def log_message(self, *_):
                pass

        return Handler


def feed(version, notes, page=None, address=None, length=0, signature=None):
    """A feed with one version."""
    inside = [f"<{tag}>{escape(text)}</{tag}>" for tag, text in (("v:version", version), ("description", notes))]
    if page:
        inside.append(f"<link>{escape(page)}</link>")
    if address:
        signed = f" v:edSignature={quoteattr(signature)}" if signature else ""
        inside.append(
            f'<enclosure url={quoteattr(address)} length="{length}" type="application/octet-stream"{signed}/>'
        )
    item = "".join(inside)
    return (
        f'<?xml version="1.0" encoding="utf-8"?>\n<rss version="2.0" xmlns:v={quoteattr(NAMESPACE)}>'
        f"<channel><title>Amberquill</title><item><title>{escape(version)}</title>{item}</item></channel></rss>\n"
    ).encode()


def write_information(path, version=None, feed_address=None, key=None):
    """The Info.plist of an installed program."""
    values = {"CFBundleShortVersionString": version, "SUFeedURL": feed_address, "SUPublicEDKey": key}
    path.write_bytes(plistlib.dumps({name: value for name, value in values.items() if value}))


def program_image(version, started):
    """A substitute for an image: prints its version for --version, otherwise writes it to the file `started`."""
    script = (
        "#!/bin/sh\n"
        f'if [ "$1" = --version ]; then echo "Amberquill {version}"; exit; fi\n'
        f"echo '{version}' > '{started}'\nexit\n"
    )
    return script.encode() + b"#" * 400_000
