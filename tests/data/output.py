"""Writes made files into a folder, or compares what lies there."""

import os
import sys


def write(folder, files):
    """0 when the folder holds just these .tb files, afterwards or, with --check, already; otherwise 1."""
    check = "--check" in sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    wrong = []
    expected = {}
    for name, data in files:
        if name in expected:
            raise SystemExit("two files are named " + name)
        expected[name] = data
        path = os.path.join(folder, name)
        if not check:
            with open(path, "wb") as out:
                out.write(data)
        elif not os.path.exists(path) or open(path, "rb").read() != data:
            wrong.append(path + " is not what the script makes")
    for name in sorted(os.listdir(folder)):
        if name.endswith(".tb") and name not in expected:
            wrong.append(os.path.join(folder, name) + " is not made by the script")
    print("\n".join(wrong) if wrong else "%d files, %d bytes" % (len(expected), sum(map(len, expected.values()))))
    return 1 if wrong else 0
