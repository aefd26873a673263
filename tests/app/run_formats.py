#!/usr/bin/env python3
"""Converts a folder of real models there and back with the program and writes what came of it as tables.

usage: run_formats.py PROGRAM MODELS [--table FILE] [--assimp PROGRAM] [--tolerance T] [--seconds S]

Every model goes to a native file A, A to glTF, and that to a native file again, which must equal A; A also goes to a
native file in the other byte order, which must equal A, too. Then A goes to every other format that is written, and
is read back from there. Every step is a process of its own with a time limit. Exit code 1 when a model that the
importing library's own tool reads does not come back equal from glTF or from the other byte order, or is not read,
and no reason is given below.
"""
import argparse
import collections
import concurrent.futures
import io
import os
import struct
import subprocess
import sys
import tempfile

from run_models import extension_of, find_models, known_extensions, put, short_reason

EQUAL = "equal"
BOX_TOLERANCE = 1e-4  # of the longest side of the box
EXPLAINED = {
    "the file holds nothing to draw": "nodes, cameras or lights only: a model without meshes is refused",
    "No meshes remaining": "all its faces or vertices are invalid and are dropped, so that nothing is left",
}


class Step(Exception):
    """A step that failed, with the reason."""


def run(arguments, seconds):
    try:
        done = subprocess.run(arguments, capture_output=True, timeout=seconds)
    except subprocess.TimeoutExpired:
        raise Step(f"no end within {seconds:g} s") from None
    out = done.stdout.decode(errors="replace")
    err = done.stderr.decode(errors="replace")
    if done.returncode < 0:
        raise Step(f"ended by signal {-done.returncode}")
    return done.returncode, out, err


class Program:
    def __init__(self, path, seconds, tolerance):
        self.path, self.seconds, self.tolerance = path, seconds, tolerance

    def convert(self, source, target, *options):
        code, _, err = run([self.path, "convert", source, target, *options], self.seconds)
        if code != 0:
            raise Step((err.strip().splitlines() or ["no reason given"])[-1])

    def difference(self, one, other, tolerance):
        code, out, err = run([self.path, "diff", one, other, "--tolerance", str(tolerance)], self.seconds)
        if code == 0:
            return EQUAL
        return (err.strip() or out.strip() or "no reason given").splitlines()[0]


def writable_extensions(program):
    """What the program says that it writes, when it is asked for what it does not write."""
    with tempfile.TemporaryDirectory() as folder:
        source = os.path.join(folder, "square.obj")
        with open(source, "w", encoding="ascii") as file:
            file.write("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")
        _, _, message = run([program, "convert", source, os.path.join(folder, "square.blend")], 30)
    _, found, known = message.partition("what can be written: ")
    if not found:
        sys.exit(f"the program does not tell what it writes: {message}")
    return [name for name in known.split() if name != "tb"]


def triangles_and_box(path):
    with open(path, "rb") as file:
        data = file.read()
    (count,) = struct.unpack_from("<I", data, 80)
    low, high = [float("inf")] * 3, [float("-inf")] * 3
    for _, *corners in struct.iter_unpack("<12s9fH", data[84:84 + 50 * count]):
        for i, value in enumerate(corners[:9]):
            low[i % 3] = min(low[i % 3], value)
            high[i % 3] = max(high[i % 3], value)
    return count, low, high


def same_shape(one, other):
    count, low, high = triangles_and_box(one)
    count_back, low_back, high_back = triangles_and_box(other)
    if count != count_back:
        return f"{count} triangles became {count_back}"
    size = max(h - l for l, h in zip(low, high)) or 1.0
    error = max(abs(a - b) for a, b in zip(low + high, low_back + high_back)) / size
    return EQUAL if error <= BOX_TOLERANCE else f"the box differs by {error:.2g} of its size"


def through_format(program, native, shape, extension, folder):
    target = os.path.join(folder, "x." + extension)
    back = os.path.join(folder, extension + "-back.stl" if shape else extension + "-back.tb")
    try:
        program.convert(native, target)
    except Step as step:
        return "not written: " + str(step)
    try:
        program.convert(target, back)
        return same_shape(shape, back) if shape else EQUAL
    except Step as step:
        return "not read back: " + str(step)


def run_model(program, assimp, path, formats):
    """What came of each step, by its name."""
    result = {}
    try:
        code, _, _ = run([assimp, "info", path], program.seconds)
        result["tool"] = EQUAL if code == 0 else "refused"
    except Step as step:
        result["tool"] = str(step)
    with tempfile.TemporaryDirectory() as folder:
        native, middle, back, swapped, shape = (
            os.path.join(folder, name) for name in ("a.tb", "b.glb", "c.tb", "d.tb", "a.stl"))
        steps = (("native", lambda: program.convert(path, native)),
                 ("glb", lambda: program.convert(native, middle)),
                 ("back", lambda: program.convert(middle, back)),
                 ("trip", lambda: program.difference(native, back, program.tolerance)),
                 ("swap", lambda: program.convert(native, swapped, "--swap")),
                 ("order", lambda: program.difference(native, swapped, 0)))
        for name, step in steps:
            try:
                result[name] = step() or EQUAL
            except Step as failure:
                result[name] = str(failure)
            if result[name] != EQUAL and name == "native":
                return result
        try:
            program.convert(native, shape)
        except Step:
            shape = None  # no triangles
        for extension in formats:
            result["to " + extension] = through_format(program, native, shape, extension, folder)
    return result


def make_in_table(folder, results):
    out = io.StringIO()
    rows = collections.defaultdict(collections.Counter)
    for path, result in results.items():
        for name in (extension_of(path), "**all**"):
            row = rows[name]
            row["models"] += 1
            for step in ("tool", "native", "trip", "order"):
                row[step] += result.get(step) == EQUAL
    out.write("| format | models | read by the tool | imported | back equal | other order |\n|---|" + "---:|" * 5 + "\n")
    for name in sorted(rows, key=lambda name: (name == "**all**", name)):
        cells = (rows[name][column] for column in ("models", "tool", "native", "trip", "order"))
        out.write(f"| {name} | " + " | ".join(map(str, cells)) + " |\n")
    out.write("\nRead by the tool, and not equal here:\n\n| model | step | reason |\n|---|---|---|\n")
    for path, step, reason in exceptions(results):
        told = short_reason(folder, path, reason)
        meaning = next((meaning for text, meaning in EXPLAINED.items() if text in reason), "")
        out.write(f"| {os.path.relpath(path, folder)} | {step} | {told}{': ' + meaning if meaning else ''} |\n")
    return out.getvalue()


def make_out_table(folder, results, formats):
    out = io.StringIO()
    out.write("| written | tried | written | read back, same shape |\n|---|---:|---:|---:|\n")
    faults = []
    for extension in formats:
        outcomes = [(path, result["to " + extension]) for path, result in results.items() if "to " + extension in result]
        written = sum(not outcome.startswith("not written") for _, outcome in outcomes)
        same = sum(outcome == EQUAL for _, outcome in outcomes)
        out.write(f"| {extension} | {len(outcomes)} | {written} | {same} |\n")
        reasons = collections.defaultdict(list)
        for path, outcome in outcomes:
            if outcome != EQUAL:
                step, program_speaks, reason = outcome.partition("tamber: ")
                reasons[step + reason.rpartition(": ")[2] if program_speaks else outcome].append(path)
        faults += [(extension, reason, paths) for reason, paths in reasons.items()]
    out.write("\n| format | what came of it | models |\n|---|---|---|\n")
    for extension, reason, paths in faults:
        names = ", ".join(os.path.relpath(path, folder) for path in paths[:2])
        more = f" and {len(paths) - 2} more" if len(paths) > 2 else ""
        out.write(f"| {extension} | {reason.replace('|', '/')} | {names}{more} |\n")
    return out.getvalue()


def exceptions(results):
    for path, result in results.items():
        if result["tool"] == EQUAL:
            wrong = next((step for step in ("native", "glb", "back", "trip", "swap", "order")
                          if result.get(step, EQUAL) != EQUAL), None)
            if wrong:
                yield path, wrong, result[wrong]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("models")
    parser.add_argument("--table", help="document whose tables are replaced; otherwise they are printed")
    parser.add_argument("--assimp", default="assimp", help="the importing library's own tool")
    parser.add_argument("--tolerance", type=float, default=1e-6)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--only", help="only formats of these extensions are written, separated by commas")
    options = parser.parse_args()
    path = os.path.abspath(options.program)
    program = Program(path, options.seconds, options.tolerance)
    formats = options.only.split(",") if options.only else writable_extensions(path)
    models = find_models(options.models, known_extensions(path))
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        results = dict(zip(models, pool.map(lambda model: run_model(program, options.assimp, model, formats), models)))
    put(options.table, {"in": make_in_table(options.models, results),
                        "out": make_out_table(options.models, results, formats)})
    unexplained = [(model, step, reason) for model, step, reason in exceptions(results)
                   if not any(text in reason for text in EXPLAINED)]
    for model, step, reason in unexplained:
        print(f"{model}: {step}: {reason}", file=sys.stderr)
    return 1 if unexplained else 0


if __name__ == "__main__":
    sys.exit(main())
