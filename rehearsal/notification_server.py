#!/usr/bin/env python3
"""The notification endpoint for tests and rehearsals: takes posts over TLS and keeps each as it came.

It makes an authority and a server's certificate in FOLDER, writes the authority to FOLDER/authority.pem,
listens at port 11900 of ADDRESS, says "ready" (and writes the address to FOLDER/ready), keeps each request,
head and body byte for byte, in FOLDER/post-1.txt, FOLDER/post-2.txt and so on, and answers it. It ends on
SIGTERM and when its standard input closes, so that it does not outlive whoever started it.

Exit codes: 0 told to end; 1 could not listen or make its certificates; 2 wrong usage.
"""

import argparse
import ipaddress
import os
import pathlib
import re
import signal
import socket
import ssl
import subprocess
import sys
import threading

PORT = 11900
HEAD_LIMIT_BYTES = 64 * 1024
BODY_LIMIT_BYTES = 64 * 1024 * 1024
PATIENCE_S = 60
ANOTHER_ADDRESS = "192.0.2.1"


def openssl(folder, *arguments):
    done = subprocess.run(["openssl", *arguments], cwd=folder, stdin=subprocess.DEVNULL, text=True,
                          capture_output=True, check=False)
    if done.returncode != 0:
        raise OSError(f"openssl {arguments[0]} failed: {done.stderr.strip()}")


def make_authority(folder, name, file):
    # Wine fails to check some signatures of elliptic curves, those whose numbers begin with a zero byte.
    openssl(folder, "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "30",
            "-subj", f"/CN={name}", "-addext", "keyUsage=critical,keyCertSign,cRLSign",
            "-keyout", f"{file}.key", "-out", f"{file}.pem")


def make_certificates(folder, address, kind):
    """The server's certificate and key, signed by the authority of authority.pem unless a stranger's are wanted."""
    make_authority(folder, "Notification test authority", "authority")
    signer = "authority"
    if kind == "stranger":
        signer = "stranger"
        make_authority(folder, "Unknown authority", signer)
    named = ANOTHER_ADDRESS if kind == "wrong-name" else address
    (folder / "server.ext").write_text(
        f"basicConstraints=CA:FALSE\nextendedKeyUsage=serverAuth\nsubjectAltName=IP:{named},DNS:{named}\n", "utf-8")
    openssl(folder, "req", "-new", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
            "-subj", f"/CN={named}", "-keyout", "server.key", "-out", "server.csr")
    openssl(folder, "x509", "-req", "-in", "server.csr", "-CA", f"{signer}.pem", "-CAkey", f"{signer}.key",
            "-CAcreateserial", "-days", "-1" if kind == "expired" else "30", "-extfile", "server.ext",
            "-out", "server.pem")


def reason_of(status):
    return {200: "OK", 401: "Unauthorized", 403: "Forbidden", 503: "Service Unavailable"}.get(status, "As told")


class Endpoint:
    def __init__(self, options):
        self.options = options
        self.kept = 0
        self.lock = threading.Lock()
        self.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.tls.minimum_version = ssl.TLSVersion.TLSv1_2
        self.tls.load_cert_chain(options.folder / "server.pem", options.folder / "server.key")

    def keep(self, request):
        with self.lock:
            self.kept += 1
            unfinished = self.options.folder / "unfinished"
            unfinished.write_bytes(request)
            unfinished.rename(self.options.folder / f"post-{self.kept}.txt")

    def serve(self, connection):
        """One connection from its first byte to its end; what is not a request is dropped."""
        try:
            with connection:
                connection.settimeout(PATIENCE_S)
                with self.tls.wrap_socket(connection, server_side=True) as client:
                    if not self.options.drop:
                        self.exchange(client)
                        client.unwrap()
        except OSError:
            pass

    def exchange(self, client):
        request = read_request(client)
        if request is None:
            answer(client, 400)
            return
        self.keep(request)
        if self.options.hang:
            while client.recv(4096):
                pass
            return
        answer(client, self.options.status)

    def run(self, listener):
        while True:
            connection, _ = listener.accept()
            threading.Thread(target=self.serve, args=[connection], daemon=True).start()


def answer(client, status):
    body = b"thank you\n" if status == 200 else b"no\n"
    head = f"HTTP/1.0 {status} {reason_of(status)}\r\nContent-Type: text/plain\r\nContent-Length: {len(body)}\r\n\r\n"
    client.sendall(head.encode() + body)


def read_request(client):
    """The whole request, or None if it is not a request or too long."""
    received = b""
    while b"\r\n\r\n" not in received:
        piece = client.recv(65536)
        if not piece or len(received) > HEAD_LIMIT_BYTES:
            return None
        received += piece
    head = received[: received.index(b"\r\n\r\n") + 4]
    if not re.match(rb"[!-~]+ [!-~]+ HTTP/1\.[01]\r\n", head):
        return None
    length = re.search(rb"\r\ncontent-length:[ \t]*(\d{1,12})[ \t]*\r\n", head, re.I)
    wanted = len(head) + (int(length.group(1)) if length else 0)
    if wanted - len(head) > BODY_LIMIT_BYTES:
        return None
    pieces = [received]
    have = len(received)
    while have < wanted:
        pieces.append(client.recv(65536))
        if not pieces[-1]:
            return None
        have += len(pieces[-1])
    return b"".join(pieces)


def loopback(text):
    try:
        address = ipaddress.IPv4Address(text)
    except ValueError as error:
        raise argparse.ArgumentTypeError(f"{text} is not an address such as 127.0.0.1") from error
    if not address.is_loopback:
        raise argparse.ArgumentTypeError(f"{text} is not an address of this system alone; take one of 127.0.0.0/8")
    return text


def own_address():
    """One that no other running process has."""
    return str(ipaddress.IPv4Address((127 << 24) | (os.getpid() << 2 & 0xFFFFFF)))


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path, metavar="FOLDER", help="where certificates and posts go; made if missing")
    parser.add_argument("address", type=loopback, metavar="ADDRESS", nargs="?", default=own_address(),
                        help="a loopback address, one for each server; without it one is made of the process id")
    parser.add_argument("--certificate", choices=["good", "wrong-name", "expired", "stranger"], default="good",
                        help="a server's certificate that holds (the default), or what is wrong with it: another address, "
                             "over since yesterday, signed by an authority that is not in authority.pem")
    parser.add_argument("--status", type=int, default=200, help="the status of each answer (default 200)")
    parser.add_argument("--hang", action="store_true", help="keep the requests and never answer")
    parser.add_argument("--drop", action="store_true", help="end each connection before its request is read")
    options = parser.parse_args()
    if not 200 <= options.status <= 599:
        parser.error("--status is a number from 200 to 599")
    options.folder = options.folder.resolve()
    return options


def main():
    options = parse()
    signal.signal(signal.SIGTERM, lambda *_: os._exit(0))
    try:
        options.folder.mkdir(parents=True, exist_ok=True)
        for old in ["ready", *(post.name for post in options.folder.glob("post-*.txt"))]:
            (options.folder / old).unlink(missing_ok=True)
        make_certificates(options.folder, options.address, options.certificate)
        endpoint = Endpoint(options)
        listener = socket.create_server((options.address, PORT), backlog=64)
    except OSError as error:
        sys.exit(f"notification_server: {error}")
    threading.Thread(target=endpoint.run, args=[listener], daemon=True).start()
    (options.folder / "ready").write_text(options.address, "utf-8")
    print("ready", flush=True)
    while os.read(sys.stdin.fileno(), 4096):
        pass
    os._exit(0)


if __name__ == "__main__":
    main()
