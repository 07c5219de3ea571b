"""The two users of the demonstration, their files, and which of these a backup has to hold."""

import collections
import datetime
import os
import pathlib
import random
import time

User = collections.namedtuple("User", "name method method_name mail_when selected excluded")
USERS = [
    User("ann", "1", "the local database", "always",
         [r"D:\ann\Documents", r"D:\ann\Pictures", r"D:\ann\notes.txt"],
         [r"D:\ann\Documents\Drafts", r"D:\ann\Documents\not this one.txt"]),
    User("ben", "0", "the compare list", "failure", [r"D:\ben"], [r"D:\ben\Cache", r"D:\ben\disk image.iso"]),
]


def files_under(folder):
    return {path for path in folder.rglob("*") if path.is_file()}


class DemoFiles:
    """Drive D of the machine in a folder of the host."""

    def __init__(self, data):
        self.data = data

    def on_host(self, path):
        return self.data.joinpath(*path.removeprefix("D:\\").split("\\"))

    def on_machine(self, path):
        return "D:\\" + "\\".join(path.relative_to(self.data).parts)

    def write(self, path, data):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)

    def make(self):
        for user in USERS:
            chance = random.Random(user.name)
            folder = self.data / user.name
            documents = folder / "Documents"
            for number in range(140):
                place = documents / f"Project {number % 12}" if number % 3 else folder / "Pictures"
                self.write(place / f"file {number:03}.dat", chance.randbytes(chance.randrange(1, 24_000)))
            self.write(documents / "empty.txt", b"")
            for name in ["Übersicht für März.txt", "Résumé – 100 €.txt", "Ελληνικά.txt", "日本語のファイル.txt"]:
                self.write(documents / name, name.encode())
            deep = documents.joinpath(*[f"a folder with a rather long name, level {level} of six" for level in range(6)])
            self.write(deep / "at the end of a path of more than 256 characters.txt", b"deep down\n")
            self.write(folder / "notes.txt", b"remember\n")
        for path in [r"ann\Documents\Drafts\draft.txt", r"ann\Documents\Drafts\Old\older draft.txt",
                     r"ann\Documents\not this one.txt", r"ann\Music\unselected.ogg", r"ben\Cache\page.html",
                     r"ben\disk image.iso"]:
            self.write(self.on_host("D:\\" + path), b"not for the vault\n")
        for path in files_under(self.data):
            stamp = int(time.time()) - random.Random(str(path.name)).randrange(3600, 300 * 86_400)
            os.utime(path, (stamp, stamp))

    def change(self, user):
        """Changes two files of the user, makes one, and touches what is excluded. The path of the one that is new."""
        folder = self.data / user.name
        for path in [folder / "Documents" / "Project 1" / "file 001.dat", folder / "notes.txt",
                     *filter(pathlib.Path.is_file, map(self.on_host, user.excluded))]:
            with path.open("ab") as file:
                file.write(f"changed {datetime.datetime.now():%H:%M:%S.%f}\n".encode())
        new = folder / "Documents" / "New" / f"neu für {datetime.datetime.now():%Y-%m-%d %H-%M-%S-%f}.txt"
        self.write(new, b"new\n")
        return new

    def wanted(self, user):
        wanted = set()
        for path in map(self.on_host, user.selected):
            wanted |= files_under(path) if path.is_dir() else {path}
        for path in map(self.on_host, user.excluded):
            wanted = {file for file in wanted if file != path and path not in file.parents}
        return wanted
