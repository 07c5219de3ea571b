#!/usr/bin/env python3
"""Checks of OnduraEService.dll from outside a program; the build's ctest calls it.

    com_test.py file --objdump OBJDUMP LIBRARY...
    com_test.py register --kept FILE --library LIBRARY -- WINE...
    com_test.py unregister --kept FILE --library LIBRARY -- WINE...
    com_test.py script --engine ENGINE -- WINE...
    com_test.py snippets --kept FOLDER --compiler "COMPILER OPTION..." -- WINE...
"""

import argparse
import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
EXPORTS = ["DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"]
WINDOWS_OWN = {
    "advapi32.dll", "kernel32.dll", "msvcrt.dll", "ntdll.dll", "ole32.dll", "oleaut32.dll", "psapi.dll",
    "shell32.dll", "user32.dll", "wininet.dll", "ws2_32.dll", "wsock32.dll", "wtsapi32.dll",
}
LIMIT_BYTES = int(2.5 * 1024 * 1024)
CLASSES = ["Controller", "Scheduler", "Transfer", "Options", "clsSystemState", "CDummyCall", "cBase64", "time"]
HIVES = ["HKEY_LOCAL_MACHINE\\Software\\Classes", "HKEY_CURRENT_USER\\Software\\Classes"]


def check(condition, what):
    if not condition:
        sys.exit("com_test: " + what)


def on_windows(path):
    return "Z:" + str(pathlib.Path(path).resolve()).replace("/", "\\")


def run(wine, *command, limit_s=60):
    done = subprocess.run([*wine, *command], stdin=subprocess.DEVNULL, text=True, capture_output=True, check=False,
                          timeout=limit_s)
    return done.returncode, done.stdout


def check_file(options):
    for library in options.files:
        headers = subprocess.run([options.objdump, "-p", library], text=True, capture_output=True, check=True).stdout
        exports = re.findall(r"^\t\[ *\d+\] (?!\+base)(\S+)$", headers, re.M)
        check(exports == EXPORTS, f"{library} exports {exports}")
        imports = {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers)}
        check(imports and imports <= WINDOWS_OWN, f"{library} needs {sorted(imports - WINDOWS_OWN)}")
        size = pathlib.Path(library).stat().st_size
        check(size < LIMIT_BYTES, f"{library} has {size} bytes")


def registry(wine, kept):
    """The text of what registrations may touch, one line a key or value."""
    text = ""
    for hive in HIVES:
        file = pathlib.Path(f"{kept}.reg")
        file.unlink(missing_ok=True)
        run(wine, "regedit", "/e", on_windows(file.parent) + "\\" + file.name, hive)
        text += file.read_text("utf-16") if file.exists() else ""
    return text


def check_register(options):
    # The script host registers itself when it is first started; that is none of the library's doing.
    run(options.wine, "cscript", "//nologo", on_windows(HERE / "nothing.vbs"))
    before = registry(options.wine, options.kept)
    check("OnduraEService" not in before, "something of the library is registered before it is")
    pathlib.Path(options.kept).write_text(before, "utf-8")
    code, _ = run(options.wine, "regsvr32", "/s", on_windows(options.library))
    check(code == 0, f"regsvr32 ends with {code}")
    after = registry(options.wine, options.kept)
    for name in CLASSES:
        check(f"\\Classes\\OnduraEService.{name}\\CLSID]" in after, f"{name} has no name to be made by")
    servers = after.count('"ThreadingModel"="Apartment"') - before.count('"ThreadingModel"="Apartment"')
    check(servers == len(CLASSES), f"{servers} classes live in apartments")
    library_id = re.search(r'"OnduraEService\.Controller"(?:.|\n)*?\\TypeLib\]\n@="(\{[^"]*\})"', after)
    check(library_id and f"\\TypeLib\\{library_id.group(1)}\\1.0\\0\\win64]" in after, "the type library is not registered")


def check_unregister(options):
    code, _ = run(options.wine, "regsvr32", "/s", "/u", on_windows(options.library))
    check(code == 0, f"regsvr32 /u ends with {code}")
    before = set(pathlib.Path(options.kept).read_text("utf-8").splitlines())
    after = set(registry(options.wine, options.kept).splitlines())
    check(after <= before, f"left behind: {sorted(after - before)[:5]}")
    check(before <= after, f"taken away: {sorted(before - after)[:5]}")


def check_script(options):
    code, said = run(options.wine, "cscript", "//nologo", on_windows(HERE / "client.vbs"), "C:\\ScriptClient",
                     on_windows(options.engine), limit_s=280)
    print(said, end="")
    wanted = (HERE / "client.vbs").read_text("utf-8")
    check(code == 0, f"cscript ends with {code}")
    count = re.fullmatch(r"(\d+) checks, 0 failures", said.splitlines()[-1] if said else "")
    check(count, "the script failed or did not reach its end")
    check(int(count.group(1)) >= len(re.findall(r"\b(?:Good|Bad|Equal|Check) \"", wanted)), "checks were left out")


def check_snippets(options):
    """What the documentation says that its snippets print is what they print."""
    text = (HERE.parent.parent / "docs" / "windows.md").read_text("utf-8")
    snippets = re.findall(r"^```(vbscript|cpp)\n(.*?)^```\n\nsays\n\n```\n(.*?)^```", text, re.M | re.S)
    check([language for language, _, _ in snippets] == ["vbscript", "cpp"], "the snippets of docs/windows.md have gone")
    folder = pathlib.Path(options.kept)
    folder.mkdir(parents=True, exist_ok=True)
    for language, source, says in snippets:
        file = folder / f"snippet.{ {'vbscript': 'vbs', 'cpp': 'cpp'}[language] }"
        file.write_text(source, "utf-8")
        command = ["cscript", "//nologo", on_windows(file)]
        if language == "cpp":
            program = folder / "snippet.exe"
            subprocess.run([*options.compiler.split(), file, "-o", program, "-lole32", "-loleaut32", "-luuid"], check=True)
            command = [program]
        code, said = run(options.wine, *command)
        check((code, said) == (0, says), f"the {language} snippet ends with {code} and says {said!r}")


def main():
    arguments = sys.argv[1:]
    split = arguments.index("--") if "--" in arguments else len(arguments)
    parser = argparse.ArgumentParser()
    parser.add_argument("what", choices=["file", "register", "unregister", "script", "snippets"])
    parser.add_argument("files", nargs="*")
    for option in ("--objdump", "--kept", "--library", "--engine", "--compiler"):
        parser.add_argument(option)
    options = parser.parse_intermixed_args(arguments[:split])
    options.wine = arguments[split + 1:]
    {"file": check_file, "register": check_register, "unregister": check_unregister,
     "script": check_script, "snippets": check_snippets}[options.what](options)


if __name__ == "__main__":
    main()
