#!/usr/bin/env python3
"""Packs the 64-bit build, and uses the zip and the installer under Wine as a person would.

    packages_test.py --scenario SCENARIO-PROGRAM --trust TRUST-PROGRAM --folder DIR
"""

import argparse
import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

sys.dont_write_bytecode = True
from wine_windows import PROJECT, SERVICE_NAME, Windows  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
RESTIC_EXE = PROJECT / "build" / "windows-tools" / "restic.exe"
SERVER = PROJECT / "rehearsal" / "notification_server.py"
EXPECTED = (HERE.parent / "three_backends" / "expected.txt").read_text("utf-8")

INSTALLED = {"OnduraEService.dll", "OnduraService.exe", "OnduraBackground.exe", "OnduraElevated.exe", "OndruaEStartup.exe",
             "Deployment.ini", "UserName.ini"}
EDITED = {"Deployment.ini", "UserName.ini"}
ENGINE = {"OnduraClsClient.exe", "OnduraScan.exe"}
SCENARIO_INSTALL = "C:\\Scenario\\Install"


def files_about(user, text):
    """What a shown scenario says about one user's files, but the folder that the next job removes."""
    blocks = re.split(r"(?m)^(?=== )", re.sub(r"(?m)^== \S*\\<moment>\\\n", "", text))
    return "".join(block for block in blocks if re.match(rf"== \S*(Ondura|Vault\\){user}\b", block))


def bytes_under(folder):
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class ZipTest(unittest.TestCase):
    """The hosts of the zip, on the machine of the scenario, whose users are due."""

    @classmethod
    def setUpClass(cls):
        cls.home = WINDOWS.path("C:\\Zip\\Ondura")
        shutil.rmtree(cls.home.parent, ignore_errors=True)
        with zipfile.ZipFile(WINDOWS.zip) as archive:
            archive.extractall(cls.home.parent)
        # Such a file would say that the data lies elsewhere.
        assert not (cls.home / "UserName.ini").exists()

    def host(self, name, *words, **how):
        return WINDOWS.run(f"C:\\Zip\\Ondura\\{name}", *words, **how)

    def register(self):
        done = self.host("OnduraService.exe", "register")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.addCleanup(self.host, "OnduraService.exe", "unregister")

    def test_every_program_knows_windows_10_and_long_paths(self):
        for program in self.home.glob("*.exe"):
            content = program.read_bytes()
            self.assertIn(b"{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}", content, program.name)
            self.assertIn(b"longPathAware", content, program.name)

    def test_command_lines_are_read_or_refused(self):
        for story, words, code, stdout, stderr in [
            ("the service's help names its commands", ["OnduraService.exe", "--help"], 0, "unregister", None),
            ("the twin's help", ["OnduraBackground.exe", "--help"], 0, "--period", None),
            ("the elevated host's help", ["OnduraElevated.exe", "--help"], 0, "--period", None),
            ("the mail helper without its fields", ["OndruaEStartup.exe"], 2, None, "text is required"),
            ("too few fields", ["OndruaEStartup.exe", "ann@example.com;0;2"], 2, None, "fields"),
            ("a version", ["OnduraService.exe", "--version"], 0, "OnduraService 1.", None),
            ("nothing said", ["OnduraService.exe"], 2, None, "Usage:"),
            ("an unknown word", ["OnduraService.exe", "frobnicate"], 2, None, "not expected"),
            ("a console that is a service too", ["OnduraService.exe", "--console", "--service"], 2, None, "--service"),
            ("a period that is no number", ["OnduraBackground.exe", "--period", "soon"], 2, None, "soon"),
            ("no product in the folder", ["OnduraService.exe", "--console", "--install", "C:\\windows"], 2, None,
             "C:\\windows\\Configuration.ini"),
            ("the component not registered", ["OnduraService.exe", "--console", "--ticks", "1"], 2, None, "regsvr32"),
            ("no such service", ["OnduraService.exe", "start"], 1, None, SERVICE_NAME),
        ]:
            with self.subTest(story):
                done = self.host(*words)
                self.assertEqual(done.returncode, code, done.stderr)
                self.assertIn(stdout or "", done.stdout)
                self.assertIn(stderr or "", done.stderr)

    def test_the_console_service_runs_the_due_job_through_the_component(self):
        self.register()
        WINDOWS.play("prepare")
        done = self.host("OnduraService.exe", "--console", "--install", SCENARIO_INSTALL, "--ticks", "1", limit_s=240)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.maxDiff = None
        self.assertEqual(files_about("ann", EXPECTED), files_about("ann", WINDOWS.play("show")))

    @unittest.skipUnless(RESTIC_EXE.exists(), "no build/windows-tools/restic.exe: scripts/setup --windows builds it")
    def test_what_two_jobs_of_restic_have_saved_comes_back_here_and_on_linux(self):
        self.register()
        WINDOWS.play("prepare")
        engine = SCENARIO_INSTALL + "\\ScnClsClient.exe"
        shutil.copy(self.home / "OnduraClsClient.exe", WINDOWS.path(engine))
        shutil.copy(RESTIC_EXE, WINDOWS.path(SCENARIO_INSTALL + "\\restic.exe"))
        WINDOWS.path("C:\\Scenario\\Data\\userlist.ini").write_bytes(b"ann;\r\n")
        scenario = WINDOWS.path("C:\\Scenario")
        user, store = scenario / "Data" / "Onduraann", scenario / "Data" / "Store" / "ann"
        shared = scenario / "Data" / "UserName.ini"
        schedule = (user / "scheduleData.txt").read_bytes()
        states = []
        for method, change in [(b"0", b"before"), (b"1", b"after")]:
            (scenario / "Docs" / "plain.txt").write_bytes(change)
            (user / "scheduleData.txt").write_bytes(schedule)
            shared.write_bytes(shared.read_bytes().replace(b"DB=0", b"DB=" + method))
            done = self.host("OnduraService.exe", "--console", "--install", SCENARIO_INSTALL, "--ticks", "1", limit_s=240)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(WINDOWS.ini_value("C:\\Scenario\\Data\\Onduraann\\Ondura.ini", "RetValue"), "402")
            states.append({path: content for path, content in bytes_under(scenario).items()
                           if path.startswith(("Docs", "Elsewhere/alone")) and "xclu" not in path and "not this" not in path})
        self.assertEqual((user / "ToBackup.txt").read_bytes().decode("utf-16"), "C:\\Scenario\\Docs\\plain.txt\r\n")
        snapshots = [json.loads(line)["id"] for line in WINDOWS.run(engine, "--door", "snapshots", "ann").stdout.splitlines()]
        for snapshot, state in zip(snapshots, states, strict=True):
            back = WINDOWS.run(engine, "--door", "restore", "ann", "--to", "C:\\Scenario\\" + snapshot, "--at", snapshot,
                               "C:\\Scenario")
            self.assertEqual(back.returncode, 0, back.stdout + back.stderr)
            self.assertEqual(bytes_under(scenario / snapshot / "C" / "Scenario"), state)
            with tempfile.TemporaryDirectory() as folder:
                subprocess.run(["restic", "-r", store, "restore", snapshot, "--target", folder], check=True,
                               env={**os.environ, "RESTIC_PASSWORD": "rosebud"}, capture_output=True)
                self.assertEqual(bytes_under(pathlib.Path(folder) / "C" / "Scenario"), state)

    def prepare_an_engine_without_end(self):
        """The users are due, and the transfer of a file takes longer than any test."""
        self.register()
        WINDOWS.play("prepare")
        with WINDOWS.path(SCENARIO_INSTALL + "\\Deployment.ini").open("ab") as deployment:
            deployment.write(b"[Demo]\r\nMillisecondsPerFile=36000000\r\n")

    @staticmethod
    def engines():
        """The numbers of the processes of the scenario's engine in this Windows."""
        return [process.name for process in pathlib.Path("/proc").iterdir()
                if process.name.isdigit() and ZipTest.is_engine(process)]

    @staticmethod
    def is_engine(process):
        try:
            return ((process / "cmdline").read_bytes().startswith(b"C:\\Scenario\\Install\\ScnClsClient.exe")
                    and f"WINEPREFIX={WINDOWS.folder}/".encode() in (process / "environ").read_bytes())
        except OSError:
            return False

    def test_an_engine_beyond_its_limit_is_stopped_as_its_user_would(self):
        self.prepare_an_engine_without_end()
        done = self.host("OnduraService.exe", "--console", "--install", SCENARIO_INSTALL, "--ticks", "1",
                         "--engine-limit", "0.001", limit_s=240)
        self.assertEqual(done.returncode, 0, done.stderr)
        trace = WINDOWS.path("C:\\Scenario\\Data\\ScheduleTraceFile.txt").read_bytes().decode("utf-16")
        self.assertIn("User ann: the backup engine ran longer than 0.001 h, and its job was stopped", trace)
        self.assertEqual(self.engines(), [])

    def test_an_engine_ends_with_a_host_that_is_killed(self):
        self.prepare_an_engine_without_end()
        host = subprocess.Popen(WINDOWS.command("C:\\Zip\\Ondura\\OnduraService.exe", "--console", "--install",
                                                SCENARIO_INSTALL), stdin=subprocess.DEVNULL)
        self.addCleanup(host.kill)
        deadline = time.monotonic() + 120
        engines, seen = [], 0
        while seen < 20 and time.monotonic() < deadline:
            time.sleep(0.2)
            before, engines = engines, self.engines()
            seen = seen + 1 if engines and engines == before else 0
        self.assertEqual(len(engines), 1, "the engine that transfers lives on")
        WINDOWS.run("taskkill", "/f", "/im", "OnduraService.exe")
        deadline = time.monotonic() + 30
        while self.engines() and time.monotonic() < deadline:
            time.sleep(0.2)
        self.assertEqual(self.engines(), [])

    def test_the_twin_is_in_charge_while_it_runs_and_no_longer(self):
        self.register()
        WINDOWS.play("prepare")
        WINDOWS.path("C:\\Scenario\\Data\\userlist.ini").write_bytes(b"nobody;\r\n")
        twin = subprocess.Popen(WINDOWS.command("C:\\Zip\\Ondura\\OnduraBackground.exe", "--install", SCENARIO_INSTALL,
                                                "--period", "3600"), stdin=subprocess.DEVNULL)
        self.addCleanup(twin.kill)
        deadline = time.monotonic() + 60
        while self.standard() != "1" and time.monotonic() < deadline:
            time.sleep(0.1)
        self.assertEqual(self.standard(), "1")
        second = self.host("OnduraBackground.exe", "--install", SCENARIO_INSTALL, "--ticks", "1")
        self.assertEqual(second.returncode, 3)
        self.assertIn("another background host runs", second.stderr)
        self.assertEqual(self.standard(), "1")
        WINDOWS.run("taskkill", "/im", "OnduraBackground.exe")
        self.assertEqual(twin.wait(30), 0)
        self.assertEqual(self.standard(), "0")

    @staticmethod
    def standard():
        return WINDOWS.ini_value("C:\\Scenario\\Data\\UserName.ini", "Standard")

    def test_the_elevated_host_serves_a_request_for_a_dump(self):
        self.register()
        WINDOWS.play("prepare")
        request = WINDOWS.path("C:\\Scenario\\Data\\OxWin\\SqlLaunchStatus.txt")
        request.parent.mkdir(exist_ok=True)
        request.write_bytes(b"1\r\n")
        done = self.host("OnduraElevated.exe", "--install", SCENARIO_INSTALL, "--ticks", "1")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(request.read_bytes(), b"2\r\n")


class MailTest(unittest.TestCase):
    """The mail helper of the zip, with a server on the other side of Wine."""

    FIELDS = "ann@example.com;0;2;M/d/yyyy;C:\\Mail\\log.txt;All;  done.;11/14/2026 12:30:00 PM; SQL Server ;no room;ann"
    CONTENT = ("Dear Ondura User (ann) ,\r\n\r\nScheduled Backup status: (Ondura Backup Version No 3.4.1)\r\n"
               "Scheduled Time : 11/14/2026 12:30:00 PM\r\nNumber%20of%20files%20considered%20for%20Backup%3A%203\r\n\r\n"
               "All;  done.\r\nSuccessfully completed the SQL Server Scheduled backup.\r\n\r\n"
               "\r\nRegards,\r\nOndura Support.\r\n")
    FORM = ("EMAIL=ann%40example%2Ecom\r\n&SUBJECT=Scheduled%20backup%20email%20notification%5Bann%5D\r\n&CONTENT="
            + CONTENT).encode()

    def setUp(self):
        self.home = WINDOWS.path("C:\\Mail")
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()
        with zipfile.ZipFile(WINDOWS.zip) as archive:
            (self.home / "OndruaEStartup.exe").write_bytes(archive.read("Ondura/OndruaEStartup.exe"))
        (self.home / "log.txt").write_bytes("Number of files considered for Backup: 3\r\nend\r\n".encode("utf-16"))
        # In a folder of the host that goes with the test.
        self.kept = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        server = subprocess.Popen([SERVER, self.kept], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(server.communicate)
        self.assertEqual(server.stdout.readline(), "ready\n")
        (self.home / "Deployment.ini").write_text(
            "[Deployment]\nNotificationHost=" + (self.kept / "ready").read_text("utf-8").strip(), "cp1252")

    def configure(self, number):
        product = {"ProductNumber": number, "ProductName": "Ondura", "ProductInstallationName": "Ondura",
                   "ExeGroup": "Ondura", "ProductCaption": "Ondura Backup"}
        lines = ["[ProductInfo]", *[f"{stored_form(key)}={stored_form(value)}" for key, value in product.items()]]
        (self.home / "Configuration.ini").write_text("\n".join(lines) + "\n", "cp1252")

    def mail(self):
        return WINDOWS.run(WINDOWS.trust, InstallerTest.on_windows(self.kept / "authority.pem"),
                           "C:\\Mail\\OndruaEStartup.exe", self.FIELDS).returncode

    def test_the_form_of_each_product_arrives_byte_for_byte(self):
        for number, (product, path) in enumerate([("3", "/cgi-bin/Notify"), ("2", "/cgi-bin/Notify_email_ondura")], 1):
            with self.subTest(product):
                self.configure(product)
                self.assertEqual(self.mail(), 0)
                head, _, form = (self.kept / f"post-{number}.txt").read_bytes().partition(b"\r\n\r\n")
                self.assertTrue(head.startswith(f"POST {path} HTTP/1.0\r\n".encode()), head)
                self.assertIn(b"\r\nContent-Type: application/x-www-form-urlencoded", head)
                self.assertEqual(form, self.FORM)

    def test_a_server_that_nobody_vouches_for_gets_nothing(self):
        self.configure("3")
        done = WINDOWS.run("C:\\Mail\\OndruaEStartup.exe", self.FIELDS)
        self.assertEqual(done.returncode, 1)
        self.assertIn("is lost", done.stderr)
        self.assertEqual(list(self.kept.glob("post-*")), [])


def stored_form(text):
    """How Configuration.ini keeps keys and values."""
    return "".join(chr(ord(character) + 2) + chr(ord(character) + 3) for character in text)


class InstallerTest(unittest.TestCase):
    HOME = "C:\\Program Files\\Ondura\\"
    DATA = "C:\\ProgramData\\Ondura\\"

    def setUp(self):
        """Clears away what a test that failed has left, and what a removal leaves."""
        for msi in [WINDOWS.msi, *WINDOWS.packages.glob("*/*-x64.msi")]:
            WINDOWS.run("msiexec", "/x", self.on_windows(msi), "/qn")
        WINDOWS.run("reg", "delete", "HKLM\\Software\\Ondura", "/f")
        for folder in [self.HOME, self.DATA, "C:\\Prögs x\\", "C:\\Dätä x\\"]:
            shutil.rmtree(WINDOWS.path(folder), ignore_errors=True)

    def installer(self, what, msi, *words):
        """The installer says nothing when it is quiet; its log does."""
        done = WINDOWS.run("msiexec", what, self.on_windows(msi or WINDOWS.msi), "/qn", "/l*v", "C:\\msi.log", *words)
        if done.returncode:
            log = WINDOWS.path("C:\\msi.log").read_text("utf-8", "replace").splitlines()
            self.fail("\n".join([f"msiexec {what} ended with {done.returncode}; its log ends:", *log[-40:]]))

    def install(self, *words, msi=None):
        self.installer("/i", msi, *words)

    def remove(self, msi=None):
        self.installer("/x", msi)

    @staticmethod
    def on_windows(path):
        return "Z:" + str(path).replace("/", "\\")

    @classmethod
    def installed(cls, home=HOME):
        folder = WINDOWS.path(home)
        return {file.name for file in folder.iterdir()} if folder.exists() else set()

    def service(self, *words, code=0, says=""):
        done = WINDOWS.run(self.HOME + "OnduraService.exe", *words)
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertIn(says, done.stderr)

    def wait_for(self, what, is_there):
        deadline = time.monotonic() + 60
        while True:
            # A file that is being replaced is missing for a moment, as Wine does it in two steps.
            with contextlib.suppress(FileNotFoundError):
                if is_there():
                    return
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.2)

    def test_the_product_comes_and_goes(self):
        self.install()
        self.assertEqual(self.installed(), INSTALLED)
        self.assertTrue(WINDOWS.is_registered())
        self.assertEqual(WINDOWS.service_state(), "RUNNING")
        self.assertEqual(WINDOWS.ini_value(self.HOME + "UserName.ini", "VirtualPath"), self.DATA)
        stops = [subprocess.Popen(WINDOWS.command(self.HOME + "OnduraService.exe", "stop"), stdin=subprocess.DEVNULL)
                 for _ in range(2)]
        self.assertEqual([stop.wait(60) for stop in stops], [0, 0], "a second one waits for the first")
        self.assertEqual(WINDOWS.service_state(), "STOPPED")
        self.service("start")
        self.assertEqual(WINDOWS.service_state(), "RUNNING")
        request = WINDOWS.path(self.DATA + "OxWin\\SqlLaunchStatus.txt")
        request.parent.mkdir(exist_ok=True)
        request.write_bytes(b"1\r\n")
        self.wait_for("the service has an elevated host that serves requests",
                      lambda: request.read_bytes() == b"2\r\n")
        precious = WINDOWS.path(self.DATA + "Onduraann\\Ondura.ini")
        precious.parent.mkdir()
        precious.write_bytes(b"[Tolmera]\r\n")
        self.remove()
        self.assertEqual(self.installed(), EDITED)
        self.assertFalse(WINDOWS.is_registered())
        self.assertIsNone(WINDOWS.service_state())
        self.assertFalse(self.has_event_source())
        self.assertTrue(precious.exists(), "what users have made stays")
        self.assertTrue(WINDOWS.path(self.DATA + "Configuration.ini").exists())

    @staticmethod
    def has_event_source():
        key = "HKLM\\SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\" + SERVICE_NAME
        return "OnduraService.exe" in WINDOWS.run("reg", "query", key, "/v", "EventMessageFile").stdout

    def test_one_engine_comes_when_asked_for(self):
        for feature, files in [("Restic", ENGINE), ("Rehearsal", ENGINE | {"OnduraSDBManager.exe"})]:
            with self.subTest(feature):
                self.install("ADDLOCAL=Main," + feature)
                self.assertEqual(self.installed(), INSTALLED | files)
                description = WINDOWS.path(self.HOME + "OnduraClsClient.exe").read_bytes()
                self.assertEqual("Ondura engine for rehearsals".encode("utf-16-le") in description, feature == "Rehearsal")
                self.remove()
        for both in ["ALL", "Main,Restic,Rehearsal"]:
            refused = WINDOWS.run("msiexec", "/i", self.on_windows(WINDOWS.msi), "/qn", "ADDLOCAL=" + both)
            self.assertNotEqual(refused.returncode, 0)
            self.assertEqual(self.installed(), EDITED)

    def test_a_newer_version_keeps_chosen_folders_edited_files_and_users(self):
        home, data = "C:\\Prögs x\\", "C:\\Dätä x\\"
        newer, _ = WINDOWS.pack("1.3.0")
        self.install(f"INSTALLDIR={home[:-1]}", f"DATADIR={data[:-1]}")
        kept = {}
        for file, line in [(home + "Deployment.ini", "PrimaryServer=mine.example"), (data + "Configuration.ini", "mine=1"),
                           (data + "userlist.ini", "ann;"), (data + "Onduraann\\Ondura.ini", "[Tolmera]"),
                           (data + "Onduraann\\scheduleData.txt", "0")]:
            path = WINDOWS.path(file)
            path.parent.mkdir(exist_ok=True)
            with path.open("ab") as content:
                content.write((line + "\r\n").encode())
            kept[file] = path.read_bytes()
        # Without an engine a service makes no pass, and notes why.
        notes = WINDOWS.path(data + "HostState.ini")
        notes.unlink(missing_ok=True)
        self.install(msi=newer)
        self.assertEqual(self.installed(home), INSTALLED)
        self.assertEqual(self.installed(), set())
        for file, content in kept.items():
            # The start of the service writes into the profile as well.
            self.assertTrue(WINDOWS.path(file).read_bytes().startswith(content), file)
        self.assertEqual(WINDOWS.ini_value(home + "UserName.ini", "VirtualPath"), data)
        self.assertTrue(WINDOWS.is_registered(), "the older one goes with its registration before the newer comes")
        self.assertEqual(WINDOWS.service_state(), "RUNNING")
        self.wait_for("the newer service works on the chosen folder", notes.exists)
        moved = WINDOWS.run(home + "OnduraService.exe", "register", "--keep", "--data", self.DATA)
        self.assertEqual(moved.returncode, 0, moved.stderr)
        self.assertEqual(WINDOWS.ini_value(home + "UserName.ini", "VirtualPath"), data)
        self.remove(msi=newer)
        self.assertEqual(self.installed(home), EDITED)
        self.assertIsNone(WINDOWS.service_state())
        self.assertEqual(WINDOWS.path(home + "Deployment.ini").read_bytes(), kept[home + "Deployment.ini"])

    def test_the_tables_hold_what_was_completed(self):
        def rows(table):
            text = subprocess.run(["msiinfo", "export", WINDOWS.msi, table], capture_output=True, text=True, check=True).stdout
            return [row.split("\t") for row in text.splitlines()[3:]]

        self.assertEqual([row[0] for row in rows("InstallUISequence")], ["ExecuteAction"])
        self.assertEqual({row[2].split("|")[-1] for row in rows("File") if not row[4]},
                         {"Deployment.ini", "Configuration.ini"}, "files without a version")
        self.assertEqual({row[0] for row in rows("Component") if int(row[3]) & 0x90 == 0x90}, {"Deployment", "Configuration"})

    def test_the_other_word_size_is_refused(self):
        other = WINDOWS.packages / "other.msi"
        shutil.copy(WINDOWS.msi, other)
        for key, value in [("UpgradeCode", "{0C0B8B52-0F4E-4C51-9D8A-7C2A1D1F6E43}"),
                           ("ProductCode", "{11111111-6F3C-4B39-9F34-3A1B7E0C52D6}")]:
            subprocess.run(["msibuild", other, "-q", f"UPDATE `Property` SET `Value`='{value}' WHERE `Property`='{key}'"],
                           check=True)
        subprocess.run(["msibuild", other, "-q", "DELETE FROM `LaunchCondition`"], check=True)
        self.install(msi=other)
        self.addCleanup(self.remove, other)
        done = WINDOWS.run("msiexec", "/i", self.on_windows(WINDOWS.msi), "/qn")
        self.assertNotEqual(done.returncode, 0)
        self.assertEqual(WINDOWS.service_state(), "RUNNING")

    def test_a_service_is_installed_and_removed_without_the_installer(self):
        self.install()
        self.assertTrue(self.has_event_source())
        self.service("stop")
        self.service("remove")
        self.assertIsNone(WINDOWS.service_state())
        self.service("install")
        self.assertEqual(WINDOWS.service_state(), "STOPPED")
        self.service("unregister")
        commands = WINDOWS.path(self.DATA + "OxWin")
        commands.rename(commands.with_name("aside"))
        commands.symlink_to(WINDOWS.path(self.HOME), target_is_directory=True)
        self.service("register", code=1, says="is a link to another folder")
        commands.unlink()
        commands.with_name("aside").rename(commands)
        WINDOWS.path(self.DATA).chmod(0o777)
        self.service("start", code=1, says="did not start")
        self.service("register")
        # Wine keeps rights as a file's mode, which shows no more of them.
        self.assertEqual(WINDOWS.path(self.DATA).stat().st_mode & 0o002, 0, "others may not write to the data folder")
        self.service("start")
        self.assertEqual(WINDOWS.service_state(), "RUNNING")
        self.remove()
        self.assertIsNone(WINDOWS.service_state())

    def test_an_account_gets_rights_on_what_it_needs(self):
        self.install()
        WINDOWS.path(self.DATA + "Onduraann").mkdir()
        for story, words, code, stderr in [
            ("a user that is there", ["Everyone", "--user", "ann"], 0, ""),
            ("no such account", ["OFFICE\\nobody", "--user", "ann"], 1, "no account"),
            ("no such user", ["Everyone", "--user", "bob"], 2, "no backup user 'bob'"),
            ("no user", ["Everyone"], 2, "--user"),
        ]:
            with self.subTest(story):
                self.service("allow", *words, code=code, says=stderr)
        self.remove()


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--scenario", required=True)
    parser.add_argument("--trust", required=True)
    parser.add_argument("--folder", required=True)
    options, others = parser.parse_known_args()
    WINDOWS = Windows(options.folder, options.scenario, options.trust)
    WINDOWS.msi, WINDOWS.zip = WINDOWS.pack("1.2.3")
    WINDOWS.begin_anew()
    with WINDOWS.stay_on():
        program = unittest.main(argv=[sys.argv[0], *others], verbosity=2, exit=False)
    sys.exit(0 if program.result.wasSuccessful() else 1)
