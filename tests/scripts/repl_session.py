#!/usr/bin/env python3
"""The REPL fed through a pipe, as a person's session would be: Ctrl-C stops a
running command and keeps the workspace, an error never ends the session,
and input that ends inside a block is reported.

usage: repl_session.py SGSH
"""
import signal
import subprocess
import sys
import time


def wait_for_interrupt_handler(pid, limit=30.0):
    """Waits until the process catches SIGINT: on a loaded machine the shell
    may still be starting when the fixed delay is over, and the signal would
    then end it instead of the running command."""
    mask = 1 << (signal.SIGINT - 1)
    end = time.monotonic() + limit
    while time.monotonic() < end:
        try:
            with open(f"/proc/{pid}/status") as f:
                for line in f:
                    if line.startswith("SigCgt:") and int(line.split()[1], 16) & mask:
                        return
        except OSError:
            return
        time.sleep(0.01)


def session(sgsh, lines, interrupt_after=None, more=b""):
    p = subprocess.Popen([sgsh], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    p.stdin.write(lines)
    p.stdin.flush()
    if interrupt_after is not None:
        wait_for_interrupt_handler(p.pid)
        time.sleep(interrupt_after)
        p.send_signal(signal.SIGINT)
        time.sleep(0.2)
    p.stdin.write(more)
    p.stdin.close()
    out = p.stdout.read().decode("utf-8", "replace")
    return out, p.wait(timeout=60)


def main():
    sgsh = sys.argv[1]
    failures = []

    def expect(name, got, want):
        if got != want:
            failures.append(f"{name}:\n  expected {want!r}\n  got      {got!r}")

    # Fault pinned: Ctrl-C ended the whole session and lost the workspace.
    out, status = session(sgsh, b"x = 5;\nwhile true, end\n", interrupt_after=1.0, more=b"disp(x)\n")
    expect("interrupt", (out, status), ("Error: Interrupted. (VANTEL:sgsh:Interrupted)\n5\n", 0))

    out, status = session(sgsh, b"y = [1 2];\ny(0)\ndisp(numel(y))\n")
    expect("error keeps the session", (out.splitlines()[-1:], status), (["2"], 0))

    # Fault pinned: a block left open at the end of input was dropped silently.
    out, status = session(sgsh, b"x = 1;\nif x\n  disp(1)\n")
    expect("unfinished block", (out, status),
           ("Error: The input ended inside a block or statement that was not finished. "
            "(VANTEL:sgsh:UnfinishedBlock)\n", 1))

    for f in failures:
        print(f)
    print(f"{3 - len(failures)} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
