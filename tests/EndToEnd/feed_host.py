#!/usr/bin/python3
"""Runs a program in a network of its own, in which one host alone exists: it serves a folder over HTTPS, under a
certificate authority that this program alone trusts. Needs root.

    feed_host.py HOST FOLDER LOG -- COMMAND...

FOLDER is served at the top of the host; each request is a line in LOG, and secrets come to lie beside it."""

import ctypes
import http.server
import os
import signal
import ssl
import subprocess
import sys
from pathlib import Path

#: prctl(2): the signal that a child gets when its parent dies.
PR_SET_PDEATHSIG = 1
OWN_NETWORK = ["unshare", "--net", "--mount", "--propagation", "private"]


def main() -> int:
    host, folder, log = sys.argv[1:4]
    command = sys.argv[5:]
    if "QUILLMERE_OWN_NETWORK" not in os.environ:
        os.environ["QUILLMERE_OWN_NETWORK"] = "1"
        os.execvp("unshare", [*OWN_NETWORK, sys.executable, "-B", *sys.argv])
    secrets = Path(log).with_name("secrets")
    secrets.mkdir(exist_ok=True)
    make_certificates(secrets, host)
    be_the_only_host(secrets, host)
    server = listen(secrets, Path(folder), Path(log))
    # The command keeps the number of this process, by which it is known.
    if os.fork() == 0:
        ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGTERM)
        server.serve_forever()
    os.execvp(command[0], command)


def make_certificates(folder: Path, host: str) -> None:
    def openssl(*arguments: str) -> None:
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)

    curve = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]
    openssl("req", "-x509", *curve, "-days", "2", "-subj", "/CN=Trial authority", "-keyout", "ca.key", "-out", "ca.pem")
    openssl("req", "-new", *curve, "-subj", f"/CN={host}", "-keyout", "host.key", "-out", "host.csr")
    (folder / "names").write_text(f"subjectAltName=DNS:{host}\n")
    openssl("x509", "-req", "-in", "host.csr", "-CA", "ca.pem", "-CAkey", "ca.key", "-CAcreateserial", "-days", "2",
            "-extfile", "names", "-out", "host.pem")


def be_the_only_host(folder: Path, host: str) -> None:
    """All in namespaces of this process alone."""
    def run(*arguments: str) -> None:
        subprocess.run(arguments, check=True)

    run("ip", "link", "set", "lo", "up")
    (folder / "hosts").write_text(f"127.0.0.1 localhost {host}\n")
    run("mount", "--bind", str(folder / "hosts"), "/etc/hosts")
    run("mount", "-t", "tmpfs", "none", "/etc/ssl/certs")
    Path("/etc/ssl/certs/trial.pem").write_bytes((folder / "ca.pem").read_bytes())
    subprocess.run(["openssl", "rehash", "/etc/ssl/certs"], check=True, capture_output=True)


def listen(secrets: Path, folder: Path, log: Path) -> http.server.ThreadingHTTPServer:
    class Handler(http.server.SimpleHTTPRequestHandler):
        def __init__(self, *arguments):
            super().__init__(*arguments, directory=str(folder))

        def log_message(self, text, *values):
            with log.open("a") as lines:
                lines.write(text % values + "\n")

    server = http.server.ThreadingHTTPServer(("127.0.0.1", 443), Handler)
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(secrets / "host.pem", secrets / "host.key")
    server.socket = context.wrap_socket(server.socket, server_side=True)
    return server


if __name__ == "__main__":
    sys.exit(main())
