#!/usr/bin/env -S python3 -X utf8
"""Backs up into stores on real servers, which also go down, break off and refuse: sftp with a private sshd, REST over TLS.

    tests/stores_test.py BUILD_FOLDER HOME
"""

import pathlib
import shutil
import socket
import subprocess
import sys
import time
import unittest

BUILD, HOME = (pathlib.Path(argument).absolute() for argument in sys.argv[1:3])
SSHD = shutil.which("sshd", path="/usr/sbin:/usr/bin")
RCLONE = shutil.which("rclone")
SERVER_LIMIT_S = 10


def run(*command, **options):
    return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          check=False, **options)


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Machine:
    """A machine with one user, whose backups run through the real host and engine."""

    def __init__(self, name, location):
        self.root = HOME / name / "machine"
        self.data = HOME / name / "data"
        shutil.rmtree(HOME / name, ignore_errors=True)
        self.data.mkdir(parents=True)
        (self.data / "a.txt").write_text("first")
        self.ondura("init", "--drive", f"D={self.data}", "--store", location)
        subprocess.run([BUILD / "tools" / "ondura", "--root", self.root, "user", "add", "ann", "--password-stdin"],
                       input="swordfish\nrosebud\n", text=True, check=True, capture_output=True)
        self.ondura("select", "ann", "D:\\")

    def ondura(self, *words, fails=False):
        done = run(BUILD / "tools" / "ondura", "--root", self.root, *words)
        assert (done.returncode != 0) == fails, f"{words}: {done.stdout}{done.stderr}"
        return done.stdout + done.stderr

    def settings(self, **values):
        file = self.root / "C" / "Program Files" / "Ondura" / "Engine.ini"
        kept = [line for line in file.read_text().splitlines() if line.partition("=")[0] not in values]
        lines = [f"{key}={value}" for key, value in values.items() if value is not None]
        file.write_text("\r\n".join([*kept, *lines]) + "\r\n", newline="")

    def result(self):
        """One command 51, as the job gives it."""
        engine = self.root / "C" / "Program Files" / "Ondura" / "OnduraClsClient.exe"
        self.ondura("set", "ann", "RetValue", "0")
        subprocess.run([engine, "51<>"], env={"ONDURA_ROOT": str(self.root), "ONDURA_SPEED": "20", "HOME": str(HOME),
                                             "PATH": "/usr/bin:/bin"}, timeout=120, check=False, capture_output=True)
        return self.ondura("get", "ann", "RetValue").strip().rpartition("=")[2].strip().strip('"')

    def engine_words(self):
        return (self.root / "C" / "ProgramData" / "Ondura" / "Onduraann" / "TraceFile.txt").read_text("cp1252")


class Server:
    """A server program that can go down and come back at its port."""

    def __init__(self, command, port):
        self.command, self.port = [str(word) for word in command], port
        self.start()

    def start(self):
        self.process = subprocess.Popen(self.command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + SERVER_LIMIT_S
        while time.monotonic() < deadline:
            try:
                socket.create_connection(("127.0.0.1", self.port), 1).close()
                return
            except OSError:
                time.sleep(0.05)
        raise AssertionError(f"no server: {self.command}")

    def stop(self):
        self.process.kill()
        self.process.wait()


class StoresTest(unittest.TestCase):
    def go_through(self, machine, server):
        """A backup, one without the server, and one when it is back."""
        self.assertEqual(machine.result(), "402", machine.ondura("store", fails=True) if server is None else "")
        self.assertEqual(machine.result(), "-411")
        server.stop()
        self.assertEqual(machine.result(), "-416")
        self.assertIn("refused", machine.engine_words())
        server.start()
        (machine.data / "b.txt").write_text("second")
        self.assertEqual(machine.result(), "402")
        machine.ondura("restore", "ann", "D:\\b.txt", "--to", HOME / "back" / machine.root.parent.name)
        back = HOME / "back" / machine.root.parent.name / "D" / "b.txt"
        self.assertEqual(back.read_text(), "second")

    def setUp(self):
        shutil.rmtree(HOME / "back", ignore_errors=True)

    @unittest.skipUnless(SSHD, "no sshd: run scripts/setup")
    def test_sftp(self):
        ssh = HOME / "ssh"
        shutil.rmtree(ssh, ignore_errors=True)
        ssh.mkdir(parents=True)
        for key in ("host", "user", "other"):
            run("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", ssh / key)
        port = free_port()
        (ssh / "authorized").write_text((ssh / "user.pub").read_text())
        (ssh / "known").write_text(f"[127.0.0.1]:{port} " + (ssh / "host.pub").read_text())
        (ssh / "sshd").write_text(f"Port {port}\nListenAddress 127.0.0.1\nHostKey {ssh / 'host'}\nPidFile none\n"
                                  f"AuthorizedKeysFile {ssh / 'authorized'}\nStrictModes no\nUsePAM no\n"
                                  "Subsystem sftp internal-sftp\n")
        for name, key, known in (("good", "user", "known"), ("stranger", "other", "known"), ("unknown", "user", "none")):
            (ssh / name).write_text(f"Host 127.0.0.1\n IdentityFile {ssh / key}\n IdentitiesOnly yes\n"
                                    f" StrictHostKeyChecking yes\n UserKnownHostsFile {ssh / known}\n")
        pathlib.Path("/run/sshd").mkdir(exist_ok=True)
        server = Server([SSHD, "-D", "-e", "-f", ssh / "sshd"], port)
        self.addCleanup(server.stop)
        user = run("id", "-un").stdout.strip()
        machine = Machine("sftp", f"sftp://{user}@127.0.0.1:{port}/{HOME / 'sftp-store'}")
        shutil.rmtree(HOME / "sftp-store", ignore_errors=True)
        (HOME / "sftp-store").mkdir(parents=True)
        machine.settings(SshConfig=ssh / "good")
        self.go_through(machine, server)
        machine.settings(SshConfig=ssh / "stranger")
        self.assertEqual(machine.result(), "-403")
        machine.settings(SshConfig=ssh / "unknown")
        self.assertEqual(machine.result(), "-416")
        self.assertIn("Host key verification failed", machine.engine_words())

    @unittest.skipUnless(RCLONE, "no rclone: run scripts/setup")
    def test_rest_over_tls(self):
        tls = HOME / "tls"
        shutil.rmtree(tls, ignore_errors=True)
        tls.mkdir(parents=True)
        for name in ("good", "other"):
            run("openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=127.0.0.1",
                "-addext", "subjectAltName=IP:127.0.0.1", "-keyout", tls / f"{name}.key", "-out", tls / f"{name}.pem")
        port = free_port()
        store = HOME / "rest-store"
        shutil.rmtree(store, ignore_errors=True)
        store.mkdir()
        server = Server([RCLONE, "serve", "restic", store, "--addr", f"127.0.0.1:{port}", "--user", "ann", "--pass",
                         "swordfish", "--cert", tls / "good.pem", "--key", tls / "good.key"], port)
        self.addCleanup(server.stop)
        machine = Machine("rest", f"rest:https://127.0.0.1:{port}/")
        shutil.copy(tls / "good.pem", machine.root / "C" / "good.pem")
        shutil.copy(tls / "other.pem", machine.root / "C" / "other.pem")
        machine.settings(Authority="C:\\good.pem")
        self.go_through(machine, server)
        machine.settings(Authority="C:\\other.pem")
        self.assertEqual(machine.result(), "-416")
        self.assertIn("x509", machine.engine_words())
        machine.settings(Authority="C:\\good.pem")
        subprocess.run([BUILD / "tools" / "ondura", "--root", machine.root, "set", "ann", "password", "--stdin"],
                       input="wrong\n", text=True, check=True, capture_output=True)
        self.assertEqual(machine.result(), "-403")
        self.assertNotIn("swordfish", machine.engine_words())

    def test_a_damaged_pack_is_found(self):
        machine = Machine("damage", HOME / "damage" / "store")
        self.assertEqual(machine.result(), "402")
        machine.ondura("verify", "ann")
        packs = [path for path in (HOME / "damage" / "store" / "ann" / "data").rglob("*") if path.is_file()]
        data = bytearray(packs[0].read_bytes())
        data[len(data) // 2] ^= 1
        packs[0].chmod(0o600)
        packs[0].write_bytes(data)
        self.assertIn("not sound", machine.ondura("verify", "ann", fails=True))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
