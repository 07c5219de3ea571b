#!/usr/bin/env -S python3 -X utf8
"""Runs the demonstration on a machine of its own, and looks at what it leaves behind.

    tests/demo_test.py BUILD_FOLDER HOME ENGINE
"""

import json
import pathlib
import subprocess
import sys
import unittest

PROJECT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(PROJECT / "rehearsal"))
from demo_files import USERS, DemoFiles, files_under  # noqa: E402

BUILD, HOME = map(pathlib.Path, sys.argv[1:3])
ENGINE = sys.argv[3]
DATA_FOLDER = HOME / "machine" / "C" / "ProgramData" / "Ondura"
SENTENCE = "View the log to know the status of the backup job."


def ini_values(path, section):
    values, inside = {}, False
    for line in path.read_bytes().decode("cp1252").splitlines():
        if line.startswith("["):
            inside = line.strip().lower() == f"[{section.lower()}]"
        elif inside:
            key, _, value = line.partition("=")
            values[key.strip().lower()] = value.strip()
    return values


class DemoTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.files = DemoFiles(HOME / "data")
        for how in (["--fresh"], []):  # the second time on the machine that is there
            done = subprocess.run([PROJECT / "scripts" / "demo", "--built", BUILD, "--home", HOME, "--engine", ENGINE, *how],
                                  stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
            assert done.returncode == 0, done.stdout[-3000:] + done.stderr

    def lines_of(self, user, name):
        return (DATA_FOLDER / f"Ondura{user.name}" / name).read_bytes().decode("utf-16").splitlines()

    def test_the_store_holds_the_selection_with_its_times_and_nothing_else(self):
        for user in USERS:
            copied = DATA_FOLDER / "Vault" / user.name / "D" if ENGINE == "rehearsal" else HOME / "back" / user.name / "D"
            copies = {HOME / "data" / path.relative_to(copied): path for path in files_under(copied)}
            self.assertEqual(copies.keys(), self.files.wanted(user))
            self.assertGreater(max(len(self.files.on_machine(path)) for path in copies), 256)
            for path, copy in copies.items():
                self.assertEqual(path.read_bytes(), copy.read_bytes(), path)
                self.assertEqual(int(path.stat().st_mtime), int(copy.stat().st_mtime), path)

    def test_a_second_backup_copies_what_has_changed_since(self):
        for user in USERS:
            folder = HOME / "data" / user.name
            new = max((folder / "Documents" / "New").iterdir(), key=lambda path: path.name)
            changed = {folder / "Documents" / "Project 1" / "file 001.dat", folder / "notes.txt", new}
            self.assertEqual(set(self.lines_of(user, "ToBackup.txt")), set(map(self.files.on_machine, changed)))
            self.assertEqual(len(self.lines_of(user, "noToBackup.txt")), len(self.files.wanted(user)) - 3)

    def test_each_user_is_closed_up_after_a_whole_backup(self):
        for user in USERS:
            folder = DATA_FOLDER / f"Ondura{user.name}"
            status = ini_values(folder / "Ondura.ini", "BackupStatus")
            # The start of the host for the second user's backup has put the first one's key back.
            self.assertEqual((status["retvalue"], status["status"]), ("402", "4" if user == USERS[-1] else "0"))
            self.assertEqual(self.lines_of(user, "SchStatus.txt"), [SENTENCE])
            self.assertTrue((folder / "scheduleData.txt").read_bytes().startswith(b"0\r\n"))

    def test_each_method_has_its_own_list(self):
        known, listed = (DATA_FOLDER / f"Ondura{user.name}" / name
                         for user, name in zip(USERS, ("LDB/OnduraLDB.Ond", "TempCom/CompareListInput1.txt")))
        lines = listed.read_bytes().decode("utf-16").splitlines()
        self.assertGreaterEqual(len(lines), len(self.files.wanted(USERS[1])))
        lines = known.read_bytes().decode("utf-16").splitlines()
        self.assertGreaterEqual(len(lines), len(self.files.wanted(USERS[0])) if ENGINE == "rehearsal" else 1)

    @unittest.skipIf(ENGINE == "rehearsal", "its vault is no repository")
    def test_a_stranger_reads_the_repository_with_restic_alone(self):
        for user, password in zip(USERS, ("rosebud", "trout")):
            listed = subprocess.run(["restic", "-r", HOME / "store" / user.name, "snapshots", "--json"], text=True,
                                    input=password + "\n", capture_output=True, check=True)
            self.assertEqual(len(json.loads(listed.stdout[listed.stdout.index("["):])), 3)

    def test_a_success_is_told_to_those_who_want_to_know_it(self):
        mails = [path.read_bytes().decode("cp1252") for path in (HOME / "mail").glob("post-*.txt")]
        self.assertEqual(len(mails), 1)
        self.assertIn("EMAIL=ann", mails[0])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
