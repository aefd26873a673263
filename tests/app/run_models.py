#!/usr/bin/env python3
"""Runs the program over a folder of real models and writes what came of it as a table.

usage: run_models.py PROGRAM MODELS [--table FILE] [--frames N] [--seconds S]

Each model runs for a few frames and is saved natively; the saved file then runs the same way and must give the same
counts. Every run is a process of its own with a time limit, so that a library that crashes or hangs on a damaged
file stops that file only. Exit code 1 when a saved model gives other counts than its source.
"""
import argparse
import collections
import concurrent.futures
import io
import os
import re
import subprocess
import sys
import tempfile

COUNTS = ("nodes visited", "nodes culled", "meshes drawn", "triangles")
RAN, REFUSED, CRASHED, HUNG, DIFFERENT = "ran", "refused", "crashed", "hung", "different"


def run(program, arguments, seconds):
    try:
        done = subprocess.run([program, "run", *arguments], capture_output=True, timeout=seconds)
    except subprocess.TimeoutExpired:
        return HUNG, "", f"no end within {seconds} s"
    err = done.stderr.decode(errors="replace").strip()
    if done.returncode == 0:
        return RAN, done.stdout.decode(errors="replace"), err
    if done.returncode == 1:
        return REFUSED, "", err
    return CRASHED, "", err or f"ended by signal {-done.returncode}"


def counts(output):
    """The counts per frame, and how many objects of each kind there are; no times and no bytes."""
    per_frame, _, memory = output.partition("memory by kind")
    rows = [re.split(r"\s{2,}", line) for line in per_frame.splitlines() if line.startswith(COUNTS)]
    objects = [tuple(re.split(r"\s{2,}", line)[:2]) for line in memory.splitlines()[1:] if line.count("  ")]
    return rows, sorted(row for row in objects if not row[0].startswith("everything"))


def run_model(program, path, frames, seconds):
    """What came of a model, and why when it is not RAN."""
    with tempfile.TemporaryDirectory() as folder:
        saved = os.path.join(folder, "saved.tb")
        arguments = ["--frames", str(frames), "--orbit"]
        outcome, output, reason = run(program, [path, *arguments, "--save", saved], seconds)
        if outcome != RAN:
            return outcome, reason
        outcome, again, reason = run(program, [saved, *arguments], seconds)
        if outcome != RAN:
            return DIFFERENT, "saved, then " + outcome + ": " + reason
        if counts(output) != counts(again):
            changed = [f"{a} / {b}" for a, b in zip(sum(counts(output), []), sum(counts(again), [])) if a != b]
            return DIFFERENT, "counts differ: " + "; ".join(map(str, changed[:3]))
        return RAN, ""


def known_extensions(program):
    with tempfile.NamedTemporaryFile(suffix=".unheard") as file:
        _, _, message = run(program, [file.name], 30)
    _, found, known = message.partition("Known extensions: ")
    if not found:
        sys.exit(f"the program does not tell its formats: {message}")
    return set(known.partition(".")[0].split()) - {"tb"}


def extension_of(path):
    return os.path.splitext(path)[1][1:].lower()


def find_models(folder, extensions):
    paths = [os.path.join(root, name) for root, _, names in os.walk(folder) for name in names]
    return sorted(path for path in paths if extension_of(path) in extensions)


def short_reason(folder, path, reason):
    text = reason.replace(path, "").replace(folder, "").replace("tamber: : ", "").replace("|", "/")
    text = " ".join(text.split())
    return text if len(text) <= 110 else text[:107] + "..."


def put(document, tables):
    """Puts each table between the lines `<!-- its name -->` and `<!-- end -->` of a document, or prints them."""
    if not document:
        return print("\n".join(tables.values()))
    with open(document, encoding="utf-8") as file:
        text = file.read()
    for name, table in tables.items():
        before, begin, rest = text.partition(f"<!-- {name} -->\n")
        _, end, after = rest.partition("<!-- end -->\n")
        if not end:
            sys.exit(f"{document} has no place for the table {name}")
        text = before + begin + table + end + after
    with open(document, "w", encoding="utf-8") as file:
        file.write(text)


def make_table(folder, results):
    out = io.StringIO()
    by_format = collections.defaultdict(collections.Counter)
    for path, (outcome, _) in results.items():
        by_format[extension_of(path)][outcome] += 1
    total = collections.Counter(outcome for outcome, _ in results.values())
    columns = (RAN, REFUSED, CRASHED, HUNG, DIFFERENT)
    out.write("| format | tried | ran, same counts | refused | crashed | hung | other counts |\n|---|" + "---:|" * 6 + "\n")
    for name in sorted(by_format):
        row = by_format[name]
        out.write(f"| {name} | {sum(row.values())} | " + " | ".join(str(row[c]) for c in columns) + " |\n")
    out.write(f"| **all** | {len(results)} | " + " | ".join(str(total[c]) for c in columns) + " |\n")
    out.write("\n| model | what came of it | reason |\n|---|---|---|\n")
    for path, (outcome, reason) in results.items():
        if outcome != RAN:
            out.write(f"| {os.path.relpath(path, folder)} | {outcome} | {short_reason(folder, path, reason)} |\n")
    return out.getvalue()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("models")
    parser.add_argument("--table", help="document whose table is replaced; otherwise it is printed")
    parser.add_argument("--frames", type=int, default=3)
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--jobs", type=int, default=2)
    options = parser.parse_args()
    program = os.path.abspath(options.program)
    models = find_models(options.models, known_extensions(program))
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        outcomes = pool.map(lambda path: run_model(program, path, options.frames, options.seconds), models)
        results = dict(zip(models, outcomes))
    put(options.table, {"models": make_table(options.models, results)})
    tally = collections.Counter(outcome for outcome, _ in results.values())
    print(f"{len(results)} models: " + ", ".join(f"{n} {outcome}" for outcome, n in tally.most_common()), file=sys.stderr)
    return 1 if tally[DIFFERENT] else 0


if __name__ == "__main__":
    sys.exit(main())
