"""A Windows of Wine in a folder, for tests that use the packages as a person would."""

import pathlib
import re
import shutil
import subprocess
import tempfile

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = PROJECT / "build" / "windows-x64"
SERVICE_NAME = "Ondura Service"


class Windows:
    """One in a folder, with the packages beside it."""

    def __init__(self, folder, scenario, trust):
        self.folder = pathlib.Path(folder).resolve()
        self.scenario = scenario
        self.trust = trust
        self.drive = self.folder / "wine" / "prefix" / "drive_c"
        self.packages = self.folder / "packages"

    def command(self, *words):
        return [str(PROJECT / "scripts" / "wine"), str(self.folder / "wine"), *map(str, words)]

    def run(self, *words, limit_s=120):
        """What it prints goes through files: whatever Wine starts after a program keeps its output open."""
        with tempfile.TemporaryFile() as stdout, tempfile.TemporaryFile() as stderr:
            code = subprocess.run(self.command(*words), stdin=subprocess.DEVNULL, stdout=stdout, stderr=stderr,
                                  check=False, timeout=limit_s).returncode
            for file in (stdout, stderr):
                file.seek(0)
            return subprocess.CompletedProcess(words, code, *[file.read().decode("utf-8", "replace")
                                                              for file in (stdout, stderr)])

    def path(self, windows_path):
        return self.drive.joinpath(*windows_path.removeprefix("C:\\").split("\\"))

    def begin_anew(self):
        """A run that was killed leaves services behind, which no later package removes."""
        subprocess.run(self.command("--end"), check=True, stdin=subprocess.DEVNULL)
        shutil.rmtree(self.folder / "wine", ignore_errors=True)
        subprocess.run(self.command("--start"), check=True, stdin=subprocess.DEVNULL)

    def stay_on(self):
        """Wine switches its Windows off when no program runs, and starts the services with the next one."""
        return subprocess.Popen(self.command("cmd"), stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)

    def play(self, action):
        done = self.run(self.scenario, action, BUILD / "engines" / "rehearsal-engine.exe",
                        BUILD / "rehearsal" / "rehearsal-database-manager.exe")
        if done.returncode != 0:
            raise AssertionError(f"the scenario's {action} failed: {done.stderr}")
        return done.stdout.replace("\r", "")

    def pack(self, release):
        """Installer and zip of the release."""
        folder = self.packages / release
        done = subprocess.run([PROJECT / "scripts" / "package", "--built", "--preset", "windows-x64", "--release",
                               release, "--output", folder], capture_output=True, text=True, check=False)
        if done.returncode != 0:
            raise AssertionError(done.stderr)
        return folder / f"Ondura-{release}-x64.msi", folder / f"Ondura-{release}-x64.zip"

    def ini_value(self, windows_path, key):
        """A value of an ini file that another program may be writing at this moment."""
        try:
            found = re.search(rf"^{key}=(.*?)\r?$", self.path(windows_path).read_text("cp1252"), re.M)
        except OSError:
            return None
        return found.group(1) if found else None

    def service_state(self):
        """The service manager's word for the state of the service; None when there is no such service."""
        found = re.search(r"STATE\s*: \d\s+(\w+)", self.run("sc", "query", SERVICE_NAME).stdout)
        return found.group(1) if found else None

    def is_registered(self):
        return self.run("reg", "query", "HKCR\\OnduraEService.Controller\\CLSID").returncode == 0
