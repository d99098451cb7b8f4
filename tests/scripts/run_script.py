#!/usr/bin/env python3
"""Runs one sgsh script and compares its output with the expected file.

usage: run_script.py SGSH SCRIPT.sg EXPECTED.out

The script's exit status must be 0, or the number given on a line
"% exit status: N" in the script. On a mismatch the differences are shown.
"""
import difflib
import re
import subprocess
import sys


def main():
    sgsh, script, expected_path = sys.argv[1:4]
    with open(script, encoding="utf-8") as f:
        source = f.read()
    m = re.search(r"^%\s*exit status:\s*(\d+)", source, re.M)
    want_status = int(m.group(1)) if m else 0
    run = subprocess.run([sgsh, script], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
    got = run.stdout.decode("utf-8", "replace")
    with open(expected_path, encoding="utf-8") as f:
        want = f.read()
    ok = True
    if got != want:
        ok = False
        sys.stdout.writelines(difflib.unified_diff(
            want.splitlines(True), got.splitlines(True), "expected", "actual"))
    if run.returncode != want_status:
        ok = False
        print(f"exit status {run.returncode}, expected {want_status}")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
