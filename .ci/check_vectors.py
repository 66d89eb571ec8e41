#!/usr/bin/env python3
"""Converts the known-answer logs and compares the result with what a correct conversion gives.

    check_vectors.py ZDS_CONVERT VECTORS_DIR TOOLS_DIR

TOOLS_DIR holds the independent MDF4 reader. Prints each difference; exit code 1 if there is any.
"""
import json
import math
import pathlib
import re
import subprocess
import sys
import tempfile

import numpy as np


def messages_of(log):
    found = {"Status": [], "Warning": [], "Error": []}
    for line in log.read_text(encoding="utf-8").splitlines():
        kind, _, text = line.partition(": ")
        if kind in found:
            found[kind].append(text)
    return found


def plain(text):
    return text.replace("&lt;", "<").replace("&gt;", ">")


class Check:
    def __init__(self, name):
        self.name = name
        self.failures = []

    def that(self, ok, text):
        if not ok:
            self.failures.append(text)


def comparable(value):
    """Stored bytes as the hexadecimal text that the answers have; all else as it is."""
    if isinstance(value, np.ndarray):
        return value.astype(np.uint8).tobytes().hex()
    return value


def same_numbers(actual, expected, tolerance):
    if len(actual) != len(expected):
        return False
    for a, e in zip(map(comparable, actual), expected):
        if isinstance(e, str) or isinstance(a, str):
            if str(a) != str(e):
                return False
        elif not (math.isclose(float(a), float(e), rel_tol=max(tolerance, 1e-12), abs_tol=tolerance)
                  or (math.isnan(float(a)) and math.isnan(float(e)))):
            return False
    return True


def channel_problem(channel, expected):
    if expected.get("unit") is not None and channel.unit != expected["unit"]:
        return f"unit {channel.unit!r}"
    reasons = []
    for alt in expected["alts"]:
        raw = channel.raw
        if channel.data_type != alt["data_type"]:
            reasons.append(f"data type {channel.data_type}")
        elif channel.bit_count // 8 not in alt["sizes"]:
            reasons.append(f"size {channel.bit_count // 8}")
        elif channel.cc_type not in alt["cc_types"]:
            reasons.append(f"conversion {channel.cc_type}")
        elif alt["cc_vals"] and channel.cc_vals and not same_numbers(
                channel.cc_vals, alt["cc_vals"], 1e-15):
            reasons.append(f"coefficients {channel.cc_vals}")
        elif alt["cc_refs"] and list(channel.cc_refs) != list(alt["cc_refs"]):
            reasons.append(f"texts {channel.cc_refs}")
        elif alt["raw"] is not None and not same_numbers(raw, alt["raw"], alt["tol"]):
            reasons.append(f"stored values {list(raw[:5])} for {alt['raw'][:5]}")
        else:
            reasons = []
            break
    if reasons:
        return "; ".join(reasons)
    if expected.get("phys") and not same_numbers(channel.phys, expected["phys"],
                                                 expected.get("phys_tol", 1e-9)):
        return "physical values"
    return None


def times_problem(group, expected):
    if group.cycle_count != expected["count"]:
        return f"{group.cycle_count} records for {expected['count']}"
    times = [int(t) for t in group.master.raw]
    if len(times) != len(expected["t"]) or any(
            abs(a - e) > expected["t_tol"] for a, e in zip(times, expected["t"])):
        return f"times {times[:6]} for {expected['t'][:6]}"
    return None


def take_groups(found, expected):
    """Takes groups off the front of `found` until they hold the channels of the expected one.

    An answer has one group for a DAQ list; the file has one for each set of ODTs, since signals of
    different sets don't always complete together. The order of channels within a group is free.
    """
    missing = list(expected["channels"])
    while any(not channel["optional"] for channel in missing):
        if not found:
            return f"no group with {missing[0]['names']}"
        name, group = found.pop(0)
        if name != expected["name"]:
            return f"group {name}"
        problem = times_problem(group, expected)
        for channel in (c for c in group.channels if c is not group.master):
            wanted = next((w for w in missing if channel.name in w["names"]), None)
            if problem or wanted is None:
                return problem or f"channel {channel.name}"
            missing.remove(wanted)
            problem = channel_problem(channel, wanted)
            if problem:
                return f"{channel.name}: {problem}"
    return None


def variant_problem(mdf, variant, names):
    if len(mdf.groups) != len(names):
        return f"{len(mdf.groups)} groups in the file, {len(names)} announced"
    found = list(zip(names, mdf.groups))
    for wanted in variant["groups"]:
        problem = take_groups(found, wanted)
        if problem:
            return f"{wanted['name']}: {problem}"
    return f"{len(found)} groups more" if found else None


def property_of(comment, name):
    match = re.search(rf'<e name="{name}">(.*?)</e>', comment)
    return match.group(1) if match else None


def check_head(check, mdf, head):
    check.that(mdf.hd_start_time_ns == head["start_time_ns"], "start time")
    for name in ("project", "subject"):
        if name in head:
            check.that(property_of(mdf.hd_comment, name) == head[name], f"HD {name}")
    text = re.search(r"<TX>(.*?)</TX>", mdf.hd_comment, re.S)
    check.that(text and text.group(1) == head["tx"], "HD text")


def check_messages(check, found, wanted):
    for text in wanted["status"]:
        check.that(any(text in line for line in found["Status"]), f"no status {text!r}")
    for text in wanted["status_absent"]:
        check.that(not any(text in line for line in found["Status"]), f"status {text!r}")
    check.that(found["Warning"] == [plain(t) for t in wanted["warning"]],
               f"warnings {found['Warning']}")
    errors = [e for e in found["Error"] if not e.startswith("Timestamp-error")]
    check.that(errors == [plain(t) for t in wanted["error"]], f"errors {errors[:3]}")
    check.that(len(found["Error"]) - len(errors) == wanted["timestamp_errors"],
               "count of timestamp errors")


def check_one(program, log, read):
    expected = json.loads(log.with_suffix(".json").read_text(encoding="utf-8"))
    check = Check(log.stem)
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        messages = folder / "messages.txt"
        run = subprocess.run([program, "--quiet", "-o", folder, "--log", messages, log],
                             capture_output=True, timeout=120)
        output = folder / (log.stem + ".mf4")
        check.that(output.exists() == expected["convert"], f"output, exit code {run.returncode}")
        found = messages_of(messages)
        check_messages(check, found, expected["messages"])
        left = sorted(p.name for p in folder.iterdir() if p not in (messages, output))
        check.that(not left, f"left behind: {left}")
        if output.exists() and expected["convert"]:
            mdf = read(str(output))
            check.that(not mdf.findings, f"findings {mdf.findings[:3]}")
            check_head(check, mdf, expected["hd"])
            names = [re.match(r"Writing: channel-group:(.*) signal-count:", t).group(1)
                     for t in found["Status"] if t.startswith("Writing: channel-group:")]
            problems = [variant_problem(mdf, v, names) for v in expected["variants"]]
            check.that(None in problems, "; ".join(str(p) for p in problems))
    return check


def main():
    program, vectors, tools = sys.argv[1:4]
    sys.path.insert(0, tools)
    from mdf4_check import read
    np.seterr(all="ignore")
    failed = 0
    logs = sorted(pathlib.Path(vectors).glob("*.rld"))
    for log in logs:
        check = check_one(program, log, read)
        print(f"{'ok  ' if not check.failures else 'FAIL'} {check.name}")
        for text in check.failures:
            print(f"     {text}")
        failed += bool(check.failures)
    print(f"{len(logs) - failed} of {len(logs)} known answers met")
    return 1 if failed or not logs else 0


if __name__ == "__main__":
    sys.exit(main())
