#!/usr/bin/env python3
"""Compares what zds-inspect reads from configuration files with the known answers.

usage: check_vectors_zdc.py ZDS_INSPECT FOLDER

FOLDER holds NAME.zdc and NAME.dump.txt, a Python literal of every field. Exit code 1 on any
difference. Null and empty strings count as equal; bytes that are always zero are no fields.
"""

import ast
import json
import pathlib
import subprocess
import sys

CONSTANT_FIELDS = {"zero_byte": 0}


def same(expected, found):
    if expected is None or found is None:
        return not expected and not found
    return expected == found


def differences(expected, found, where):
    if isinstance(expected, dict) and isinstance(found, dict):
        expected = {k: v for k, v in expected.items()
                    if not (k in CONSTANT_FIELDS and v == CONSTANT_FIELDS[k])}
        for key in sorted(expected.keys() | found.keys()):
            if key not in found or key not in expected:
                yield f"{where}.{key}: only in {'the answer' if key in expected else 'the output'}"
            else:
                yield from differences(expected[key], found[key], f"{where}.{key}")
    elif isinstance(expected, list) and isinstance(found, list):
        if len(expected) != len(found):
            yield f"{where}: {len(found)} elements instead of {len(expected)}"
        for index, pair in enumerate(zip(expected, found)):
            yield from differences(*pair, f"{where}[{index}]")
    elif not same(expected, found):
        yield f"{where}: {found!r} instead of {expected!r}"


def check(program, zdc):
    run = subprocess.run([program, "--json", zdc], capture_output=True, timeout=60)
    if run.returncode != 0:
        return [f"{zdc.name}: exit code {run.returncode}: {run.stderr.decode()}"]
    expected = ast.literal_eval(zdc.with_suffix(".dump.txt").read_text(encoding="utf-8"))
    found = json.loads(run.stdout)[0]["configuration"]
    return list(differences(expected, found, zdc.stem))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    files = sorted(f for f in folder.glob("*.zdc") if f.with_suffix(".dump.txt").exists())
    if not files:
        sys.exit(f"no configuration with a known answer in {folder}")
    found = 0
    for zdc in files:
        problems = check(program, zdc)
        print(f"{zdc.name}: {'as expected' if not problems else f'{len(problems)} differences'}")
        for problem in problems[:20]:
            print(f"  {problem}")
        found += len(problems)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
