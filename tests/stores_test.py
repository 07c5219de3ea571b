#!/usr/bin/env -S python3 -X utf8
"""Backs up into stores on real servers, which also go down, break off and refuse: sftp with a private sshd, REST over TLS.

    tests/stores_test.py BUILD_FOLDER HOME
"""

import os
import pathlib
import random
import shutil
import signal
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


def wait_until(is_so, what):
    deadline = time.monotonic() + SERVER_LIMIT_S
    while not is_so():
        assert time.monotonic() < deadline, what
        time.sleep(0.02)


def programs_below(process):
    """The numbers of all programs that it has started, and they."""
    found = [int(word) for task in pathlib.Path(f"/proc/{process}/task").glob("*/children") for word in task.read_text().split()]
    return found + [number for child in found for number in programs_below(child)]


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
        file.write_text("\r\n".join([kept[0], *lines, *kept[1:]]) + "\r\n", newline="")

    def transfer(self):
        """Begins a command 51, as the job gives it."""
        engine = self.root / "C" / "Program Files" / "Ondura" / "OnduraClsClient.exe"
        self.ondura("set", "ann", "RetValue", "0")
        return subprocess.Popen([engine, "51<>"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                env={"ONDURA_ROOT": str(self.root), "ONDURA_SPEED": "20", "HOME": str(HOME),
                                     "PATH": "/usr/bin:/bin"})

    def result(self, running=None):
        """What a transfer comes to, one of its own where none is running."""
        with running or self.transfer() as engine:
            engine.wait(timeout=120)
        return self.ondura("get", "ann", "RetValue").strip().rpartition("=")[2].strip().strip('"')

    def file_of_user(self, *names):
        return self.root.joinpath("C", "ProgramData", "Ondura", "Onduraann", *names)

    def add_much(self, name):
        """More than goes up in a second at the rate that comes with it."""
        (self.data / name).write_bytes(random.Random(name).randbytes(24_000_000))

    def limit_upload(self, kibibytes):
        with (self.root / "C" / "Program Files" / "Ondura" / "Engine.ini").open("a", newline="") as settings:
            settings.write(f"[Limits]\r\nUploadKiB={kibibytes}\r\n")

    def brings_back(self, *names):
        back = HOME / "back" / self.root.parent.name
        shutil.rmtree(back, ignore_errors=True)
        self.ondura("restore", "ann", "D:\\", "--to", back)
        return all((back / "D" / name).read_bytes() == (self.data / name).read_bytes() for name in names)

    def engine_words(self):
        return self.file_of_user("TraceFile.txt").read_text("cp1252")


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
        if self.process.poll() is not None:
            return
        for number in [*programs_below(self.process.pid), self.process.pid]:
            os.kill(number, signal.SIGKILL)
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
        self.assertTrue(machine.brings_back("a.txt", "b.txt"))

    def lose(self, machine, server, store):
        """The server dies while a file goes up."""
        machine.add_much("much.dat")
        machine.limit_upload(4000)
        before = sum(1 for path in store.rglob("data/*/*"))
        engine = machine.transfer()
        wait_until(lambda: sum(1 for path in store.rglob("data/*/*")) > before, "nothing went up")
        server.stop()
        return engine

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
        self.assertEqual(machine.result(self.lose(machine, server, HOME / "sftp-store")), "-504")
        server.start()
        self.assertEqual(machine.result(), "402")
        self.assertTrue(machine.brings_back("b.txt", "much.dat"))
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
        store, aside = HOME / "rest-store", HOME / "rest-store-aside"
        for folder in (store, aside):
            shutil.rmtree(folder, ignore_errors=True)
        store.mkdir()
        server = Server([RCLONE, "serve", "restic", store, "--addr", f"127.0.0.1:{port}", "--user", "ann", "--pass",
                         "swordfish", "--cert", tls / "good.pem", "--key", tls / "good.key"], port)
        self.addCleanup(server.stop)
        machine = Machine("rest", f"rest:https://127.0.0.1:{port}/")
        shutil.copy(tls / "good.pem", machine.root / "C" / "good.pem")
        shutil.copy(tls / "other.pem", machine.root / "C" / "other.pem")
        machine.settings(Authority="C:\\good.pem")
        self.go_through(machine, server)
        # This store is tried again for a quarter of an hour, in which the user can stop it, or the server come back.
        engine = self.lose(machine, server, store)
        machine.ondura("set", "ann", "Cancel", "1")
        begun = time.monotonic()
        self.assertEqual(machine.result(engine), "-414")
        self.assertLess(time.monotonic() - begun, 9)
        machine.ondura("set", "ann", "Cancel", "0")
        server.start()
        self.assertEqual(machine.result(), "402")
        self.assertTrue(machine.brings_back("b.txt", "much.dat"))
        # A server that has forgotten everything gets no new repository.
        server.stop()
        store.rename(aside)
        store.mkdir()
        server.start()
        self.assertEqual(machine.result(), "-416")
        self.assertEqual(list(store.rglob("config")), [])
        server.stop()
        store.rmdir()
        aside.rename(store)
        server.start()
        machine.settings(Authority="C:\\other.pem")
        self.assertEqual(machine.result(), "-416")
        self.assertIn("x509", machine.engine_words())
        machine.settings(Authority="C:\\good.pem")
        subprocess.run([BUILD / "tools" / "ondura", "--root", machine.root, "set", "ann", "password", "--stdin"],
                       input="wrong\n", text=True, check=True, capture_output=True)
        self.assertEqual(machine.result(), "-403")
        self.assertNotIn("swordfish", machine.engine_words())

    @unittest.skipUnless(RCLONE, "no rclone: run scripts/setup")
    def test_rclone(self):
        """The way to every cloud that it knows."""
        shutil.rmtree(HOME / "rclone-store", ignore_errors=True)
        machine = Machine("rclone", f"rclone::local:{HOME / 'rclone-store'}")
        self.assertEqual([machine.result(), machine.result()], ["402", "-411"])
        self.assertTrue(machine.brings_back("a.txt"))

    @unittest.skipUnless(os.geteuid() == 0, "only root may mount a small disk")
    def test_a_disk_that_is_full(self):
        disk = HOME / "full disk"
        disk.mkdir(parents=True, exist_ok=True)
        self.assertEqual(run("mount", "-t", "tmpfs", "-o", "size=3m", "none", disk).stderr, "")
        self.addCleanup(run, "umount", "-l", disk)
        machine = Machine("full", disk / "store")
        self.assertEqual(machine.result(), "402")
        machine.add_much("much.dat")
        self.assertEqual(machine.result(), "-432")
        self.assertIn("no space left", machine.engine_words())
        self.assertTrue(machine.brings_back("a.txt"), "what was there before can still be read")
        run("mount", "-o", "remount,size=60m", disk)
        self.assertEqual(machine.result(), "402")
        self.assertTrue(machine.brings_back("a.txt", "much.dat"))

    @unittest.skipUnless(os.geteuid() == 0, "only root may take another host name")
    def test_a_store_that_somebody_has_locked(self):
        store = HOME / "locked" / "store"
        machine = Machine("locked", store)
        machine.add_much("much.dat")
        self.assertEqual(machine.result(), "402")
        settings = {**os.environ, "RESTIC_PASSWORD": "rosebud", "RESTIC_REPOSITORY": str(store / "ann"),
                    "RESTIC_CACHE_DIR": str(machine.root)}
        elsewhere = ["unshare", "--uts", "sh", "-c", 'hostname elsewhere; exec "$@"', "sh"]
        for before, code in [([], "-429"), (elsewhere, "-434")]:
            with self.subTest(code), subprocess.Popen([*before, "restic", "check", "--read-data"], env=settings,
                                                      stdout=subprocess.DEVNULL) as holder:
                wait_until(lambda: list(store.rglob("locks/*")), "no lock")
                holder.send_signal(signal.SIGSTOP)
                self.assertEqual(machine.result(), code)
                holder.kill()
            run("restic", "unlock", "--remove-all", env=settings)
        self.assertIn("elsewhere", machine.ondura("get", "ann", "MultipleIP"))
        self.assertEqual(machine.result(), "-411")

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

    def test_a_run_that_is_killed_anywhere_loses_nothing(self):
        machine = Machine("kills", HOME / "kills" / "store")
        self.assertEqual(machine.result(), "402")
        machine.limit_upload(20000)
        chance = random.Random(5)
        names = [f"much {number}.dat" for number in range(5)]
        for name in names:
            machine.add_much(name)
            engine = machine.transfer()
            time.sleep(chance.uniform(0.1, 2.5))
            below = programs_below(engine.pid)
            engine.kill()
            engine.wait()
            wait_until(lambda: not any(pathlib.Path(f"/proc/{number}").exists() for number in below),
                       f"outlived its engine: {below}")
        self.assertIn(machine.result(), ("402", "-411"))  # the last one may have been killed when all was saved
        self.assertTrue(machine.brings_back("a.txt", *names))
        machine.ondura("verify", "ann")

    def test_old_snapshots_go_and_their_data_with_them(self):
        store = HOME / "keep" / "store"
        machine = Machine("keep", store)
        machine.ondura("keep", "ann", "--last", "1")
        for name in ("old.dat", "new.dat"):
            machine.add_much(name)
            self.assertEqual(machine.result(), "402")
            (machine.data / "old.dat").unlink(missing_ok=True)
            # The week is over.
            record = machine.file_of_user("Engine", "Store.ini")
            lines = record.read_text().splitlines()
            record.write_text("\r\n".join("Last=01-01-2026 00:00:00" if line.startswith("Last=") else line for line in lines)
                              + "\r\n", newline="")
        self.assertEqual(len(machine.ondura("snapshots", "ann").splitlines()), 1)
        self.assertLess(sum(path.stat().st_size for path in store.rglob("data/*/*")), 30_000_000)
        self.assertTrue(machine.brings_back("a.txt", "new.dat"))
        machine.ondura("verify", "ann")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
