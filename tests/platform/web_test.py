#!/usr/bin/env python3
"""Runs the tests of web requests in a Windows of its own, with a server of each kind on this side of it.

    web_test.py WINE... TESTS [ARGUMENT...]

The tests find the servers in the file that ONDURA_TEST_SERVERS names: options;address;folder, a line each.
"""

import contextlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

SERVER = pathlib.Path(__file__).resolve().parent.parent.parent / "rehearsal" / "notification_server.py"
KINDS = ["", "--status 503", "--certificate wrong-name", "--certificate expired", "--certificate stranger", "--hang"]


def on_windows(path):
    return "Z:" + str(path).replace("/", "\\")


def main():
    if len(sys.argv) < 2 or sys.argv[1] in ("-h", "--help"):
        sys.exit(__doc__)
    with contextlib.ExitStack() as stack:
        folder = pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory(prefix="ondura-web-test-")))
        table = folder / "servers.txt"
        lines = []
        for number, kind in enumerate(KINDS):
            own = folder / str(number)
            server = stack.enter_context(subprocess.Popen([SERVER, own, *kind.split()], stdin=subprocess.PIPE,
                                                          stdout=subprocess.PIPE, text=True))
            stack.callback(server.terminate)
            if server.stdout.readline() != "ready\n":
                sys.exit(f"web_test: the server with \"{kind}\" did not start")
            lines.append(f"{kind};{(own / 'ready').read_text('utf-8')};{on_windows(own)}\n")
        table.write_text("".join(lines), "utf-8")
        done = subprocess.run(sys.argv[1:], env=dict(os.environ, ONDURA_TEST_SERVERS=on_windows(table)),
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True, check=False)
        print(done.stdout, end="")
        if not re.search(r"^\[  PASSED  \] [1-9]", done.stdout, re.M):
            sys.exit("web_test: no test ran to its end and passed")
        return done.returncode


if __name__ == "__main__":
    sys.exit(main())
