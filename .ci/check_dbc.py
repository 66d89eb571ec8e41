#!/usr/bin/env python3
"""Compares what zds-inspect reads from DBC files with what an independent reading expects.

usage: check_dbc.py ZDS_INSPECT DATA_FOLDER MAKE_BIG_DBC

DATA_FOLDER holds dbc/ and EXPECTED.json: for each file whether it is accepted, the exact error with
its line, sums over the fields of all signals, and the first and the last signal, or all of them.
MAKE_BIG_DBC SIZE_MB OUT [option...] writes a large file and prints what is in it as JSON. The large
file and the largest ones of the folder have to be read within a bound of memory. Exit code 1 on any
difference.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

# Name of a sum, and what each signal adds to it.
SUMS = {
    "msg_id": lambda s: s["msg_id"],
    "extended": lambda s: s["extended_id"],
    "start_bit": lambda s: s["start_bit"],
    "bit_length": lambda s: s["bit_length"],
    "little_endian": lambda s: s["little_endian"],
    "signed": lambda s: s["is_signed"],
    "mux_1": lambda s: s["mux_kind"] == 1,
    "mux_2": lambda s: s["mux_kind"] == 2,
    "mux_value": lambda s: s["mux_value"],
    "dlc": lambda s: s["dlc"],
    "with_description": lambda s: bool(s["description"]),
    "with_unit": lambda s: bool(s["unit"]),
}
BIG_FILES = [(20, []), (20, ["--seed", "2", "--crlf"])]

# Peak memory: so many times the file, beside what the program takes before it reads anything.
MEMORY_FACTOR = 12
STARTUP_MB = 20
LARGEST_FILES = 3
# Runs a command and prints the KiB that it took. In a process of its own: a child begins with the
# memory of who started it, and this program holds what it compares.
PEAK_MEMORY = """
import resource, subprocess, sys
subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)
"""


def inspect(program, files):
    run = subprocess.run([program, "--json", *files], capture_output=True, timeout=300)
    return {found["file"]: found for found in json.loads(run.stdout)}


def compare_signal(expected, found, where):
    for field, value in expected.items():
        # JSON doesn't tell whole numbers from others.
        if type(value)(found[field]) != value:
            yield f"{where}.{field}: {found[field]!r} instead of {value!r}"


def compare(expected, found):
    for field in ("ok", "error"):
        if found[field] != expected[field]:
            yield f"{field}: {found[field]!r} instead of {expected[field]!r}"
    if expected["line"] and f"line number {expected['line']} " not in found["error"]:
        yield f"the error doesn't name line {expected['line']}"
    signals = found["signals"]
    if len(signals) != expected["signals"]:
        yield f"{len(signals)} signals instead of {expected['signals']}"
        return
    for name, value in expected.get("sums", {}).items():
        total = sum(SUMS[name](signal) for signal in signals)
        if total != value:
            yield f"sum of {name}: {total} instead of {value}"
    for name, index in (("first", 0), ("last", -1)):
        if signals and expected.get(name):
            yield from compare_signal(expected[name], signals[index], name)
    for index, signal in enumerate(expected.get("all", [])):
        yield from compare_signal(signal, signals[index], f"signal {index}")


def check_memory(program, file, name):
    run = subprocess.run([sys.executable, "-c", PEAK_MEMORY, program, "--json", file],
                         capture_output=True, check=True, timeout=300)
    size_mb = os.path.getsize(file) / 1e6
    peak_mb = int(run.stdout) * 1024 / 1e6
    limit_mb = STARTUP_MB + MEMORY_FACTOR * size_mb
    print(f"{name}: {size_mb:.1f} MB, peak memory {peak_mb:.0f} MB, limit {limit_mb:.0f} MB")
    if peak_mb > limit_mb:
        yield f"{name}: {peak_mb:.0f} MB of memory for a file of {size_mb:.1f} MB"


def check_corpus(program, folder):
    answers = json.loads((folder / "EXPECTED.json").read_text(encoding="utf-8"))["dbc"]
    files = {name: str(folder / "dbc" / name) for name in answers}
    unknown = {str(f) for f in (folder / "dbc").rglob("*") if f.suffix.lower() == ".dbc"}
    unknown -= set(files.values())
    found = inspect(program, files.values())
    problems = [f"{file}: no answer is known" for file in sorted(unknown)]
    for name, expected in answers.items():
        problems += [f"{name}: {text}" for text in compare(expected, found[files[name]])]
    for name in sorted(files, key=lambda each: os.path.getsize(files[each]))[-LARGEST_FILES:]:
        problems += check_memory(program, files[name], name)
    print(f"{len(answers)} DBC files, {len(problems)} differences")
    return problems


def check_big_file(program, maker, size_mb, options):
    with tempfile.TemporaryDirectory() as work:
        file = str(pathlib.Path(work) / "big.dbc")
        made = subprocess.run([sys.executable, maker, str(size_mb), file, *options],
                              capture_output=True, check=True)
        expected = json.loads(made.stdout)
        found = inspect(program, [file])[file]
        memory = list(check_memory(program, file, f"file of {size_mb} MB"))
    signals = found["signals"]
    counts = {
        "messages": found["summary"]["messages"],
        "signals": len(signals),
        "comments": sum(bool(s["description"]) for s in signals),
        "values": found["summary"]["value_tables"],
        "multiplexors": sum(s["mux_kind"] == 2 for s in signals),
        "multiplexed": sum(s["mux_kind"] == 1 for s in signals),
        "bytes": found["size"],
    }
    problems = memory if found["ok"] else [f"big file: {found['error']}"]
    problems += [f"big file {options}: {name}: {counts[name]} instead of {expected[name]}"
                 for name in counts if counts[name] != expected[name]]
    print(f"file of {size_mb} MB {' '.join(options)}: {len(signals)} signals, "
          f"{len(problems)} differences")
    return problems


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    program, folder, maker = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3]
    problems = check_corpus(program, folder)
    for size_mb, options in BIG_FILES:
        problems += check_big_file(program, maker, size_mb, options)
    for problem in problems[:100]:
        print(f"  {problem}")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
