#!/usr/bin/env python3
"""Checks all .mf4 files of some folders with the independent reader.

    check_mf4.py TOOLS_DIR FOLDER...

Prints the findings; exit code 1 if there is one, or a folder without any file.
"""
import pathlib
import sys

import numpy as np


def main():
    tools, *folders = sys.argv[1:]
    sys.path.insert(0, tools)
    from mdf4_check import read
    np.seterr(all="ignore")
    failed = False
    for folder in folders:
        files = sorted(pathlib.Path(folder).glob("**/*.mf4"))
        found = 0
        for file in files:
            for finding in read(str(file)).findings:
                print(f"{file}: {finding}")
                found += 1
        print(f"{len(files)} files in {folder}, {found} findings")
        failed = failed or found > 0 or not files
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
