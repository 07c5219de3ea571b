#!/usr/bin/env -S python3 -X utf8
"""Measures whole backup jobs beside plain restic and borgmatic, on one tree of real files.

    bench/backup_bench.py BUILD [--folders N] [--rounds N]

BUILD is a folder that cmake built the project in. The tree has 20 files in each folder, 200,000 in all unless told
otherwise, and lies with its stores under $TMPDIR (about 4 GB). A job is ondura-host with one schedule that is due,
its waits made short; plain restic is one `restic backup` of the same tree with nothing set but its password. Both
take turns, and each figure is the median of the rounds. borgmatic does the unchanged run only.

Ends with 1 when a target is missed or a run fails.
"""

import argparse
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

FILES_PER_FOLDER = 20
RATIO_TARGET = 1.10
MEMORY_TARGET_MIB = 16
MIB = 1 << 20
PASSWORD = "rosebud"
SPEED = 60  # how many times faster the waits of component and engine pass
TICKS = 2  # the first pass of a host runs what is due
LOOK_S = 0.02


class Failed(Exception):
    pass


def make_tree(folder, folders):
    """Files of many sizes whose contents differ, so that every store has to keep each of them."""
    chance = random.Random(11)
    for number in range(folders):
        place = folder / f"{number // 100:03}" / f"{number % 100:02}"
        place.mkdir(parents=True)
        for file in range(FILES_PER_FOLDER):
            (place / f"file {file}.dat").write_bytes(chance.randbytes(min(int(chance.expovariate(1 / 3000)) + 1, 60_000)))


def run(command, **options):
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          check=False, **options)
    if done.returncode != 0:
        raise Failed(f"'{' '.join(map(str, command))}' ended with {done.returncode}: {done.stderr.strip()[-400:]}")
    return done.stdout


def seconds_of(work):
    start = time.monotonic()
    work()
    return time.monotonic() - start


class Job:
    """One user's scheduled backup, through host, component and engine."""

    def __init__(self, home, tree, build):
        self.home, self.tree, self.build = home, tree, build
        self.machine = home / "machine"
        self.peak_kib = 0

    def ondura(self, *words, text_in=None):
        done = subprocess.run([self.build / "tools" / "ondura", "--root", self.machine, *map(str, words)],
                              input=text_in or "", text=True, capture_output=True, check=False)
        if done.returncode != 0:
            raise Failed(f"'ondura {' '.join(map(str, words))}' ended with {done.returncode}: {done.stderr.strip()}")
        return done.stdout

    def begin(self):
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()
        self.ondura("init", "--drive", f"D={self.tree}", "--store", self.home / "store")
        self.ondura("user", "add", "ann", "--password-stdin", text_in=f"swordfish\n{PASSWORD}\n")
        self.ondura("select", "ann", "D:\\")
        # The care of the store has a time of its own, once a week.
        with (self.machine / "C" / "Program Files" / "Ondura" / "Engine.ini").open("a", newline="") as settings:
            settings.write("[Check]\r\nDays=0\r\n")
        self.ondura("set", "ann", "STARTMISSEDSCH", "1")

    def look(self):
        """The engine's own memory; restic beside it is another process."""
        for entry in pathlib.Path("/proc").iterdir():
            if not entry.name.isdigit():
                continue
            try:
                program = pathlib.Path(os.readlink(entry / "exe"))
                if self.machine not in program.parents or not program.name.endswith("ClsClient.exe"):
                    continue
                status = (entry / "status").read_text()
            except OSError:
                continue
            for line in status.splitlines():
                if line.startswith("VmHWM:"):
                    self.peak_kib = max(self.peak_kib, int(line.split()[1]))

    def run(self):
        self.ondura("schedule", "add", "ann", "--at", "now", "--repeat", "daily", "--replace")
        start = time.monotonic()
        with subprocess.Popen([self.build / "hosts" / "ondura-host", "service", "--root", self.machine,
                               "--speed", str(SPEED), "--ticks", str(TICKS)], stdin=subprocess.DEVNULL) as host:
            while host.poll() is None:
                self.look()
                time.sleep(LOOK_S)
        seconds = time.monotonic() - start
        status = self.ondura("status", "ann")
        if host.returncode != 0 or not any(code in status for code in ["(402)", "(-411)"]):
            raise Failed(f"the job did not end well:\n{status}")
        return seconds


class Restic:
    """restic as a person would run it."""

    def __init__(self, home, tree):
        self.home, self.tree = home, tree
        self.settings = {**os.environ, "RESTIC_PASSWORD": PASSWORD, "RESTIC_REPOSITORY": str(home / "store"),
                         "RESTIC_CACHE_DIR": str(home / "cache")}

    def begin(self):
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()
        run(["restic", "init"], env=self.settings)

    def run(self):
        return seconds_of(lambda: run(["restic", "backup", self.tree], env=self.settings))


class Borgmatic:
    """borgmatic with the store that its own page begins with."""

    def __init__(self, home, tree):
        self.home, self.tree = home, tree
        self.settings = {**os.environ, "BORG_BASE_DIR": str(home), "BORG_PASSPHRASE": PASSWORD}

    def begin(self):
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir()
        (self.home / "config.yaml").write_text(
            f"location:\n  source_directories: [{self.tree}]\n  repositories: [{self.home}/store]\n"
            f"storage:\n  encryption_passphrase: {PASSWORD}\n")
        run(["borgmatic", "--config", self.home / "config.yaml", "rcreate", "--encryption", "repokey"], env=self.settings)
        self.run()

    def run(self):
        return seconds_of(lambda: run(["borgmatic", "--config", self.home / "config.yaml", "create"], env=self.settings))


class Table:
    def __init__(self):
        self.missed = 0
        self.row("measure", "value", "target")

    @staticmethod
    def row(name, value, target="-", verdict=""):
        print(f"{name:48} {value:>16} {target:>18}  {verdict}".rstrip(), flush=True)

    def target(self, name, value, limit, unit):
        met = value <= limit
        self.missed += not met
        self.row(name, f"{value:.3g} {unit}", f"<= {limit:.3g} {unit}", "met" if met else "MISSED")


def measure(home, build, folders, rounds):
    tree = home / "tree"
    make_tree(tree, folders)
    job, restic = Job(home / "ondura", tree, build), Restic(home / "restic", tree)
    first, unchanged, table = {job: [], restic: []}, {job: [], restic: []}, Table()
    count = f"{folders * FILES_PER_FOLDER:,} files"
    # The first of each round goes first the next time, too: what the machine has in memory helps both alike.
    for turn in range(rounds):
        for side in [job, restic] if turn % 2 else [restic, job]:
            side.begin()
            first[side].append(side.run())
    for turn in range(rounds):
        for side in [job, restic] if turn % 2 else [restic, job]:
            unchanged[side].append(side.run())
    for name, figures in [("first", first), ("unchanged", unchanged)]:
        own, plain = statistics.median(figures[job]), statistics.median(figures[restic])
        table.row(f"{name} backup of {count}, whole job", f"{own:.3g} s")
        table.row(f"{name} backup of {count}, restic alone", f"{plain:.3g} s")
        table.target(f"{name} backup, whole job beside restic alone", own / plain, RATIO_TARGET, "x")
    if shutil.which("borgmatic"):
        borgmatic = Borgmatic(home / "borgmatic", tree)
        borgmatic.begin()
        figures = [borgmatic.run() for _ in range(rounds)]
        table.row(f"unchanged backup of {count}, borgmatic", f"{statistics.median(figures):.3g} s")
    else:
        table.row("unchanged backup, borgmatic", "not installed")
    table.target("engine's own memory", job.peak_kib * 1024 / MIB, MEMORY_TARGET_MIB, "MiB")
    return table.missed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="the build folder")
    parser.add_argument("--folders", type=int, default=10_000, help="folders of 20 files each (10000)")
    parser.add_argument("--rounds", type=int, default=3, help="runs of each kind (3)")
    options = parser.parse_args()
    if options.folders < 1 or options.rounds < 1:
        parser.error("--folders and --rounds have to be 1 or more")
    try:
        with tempfile.TemporaryDirectory(prefix="ondura-bench-") as home:
            return 1 if measure(pathlib.Path(home), options.build.absolute(), options.folders, options.rounds) else 0
    except Failed as failure:
        print(f"backup_bench: {failure}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
