#!/usr/bin/env python3
"""Golden-file tests of tools/genmixins.py.

    run_golden.py <genmixins.py> [--update]

rows/<Kind>.def       one fixture per row kind; its generated header and
                      source must equal expected/<Class>.gen.h and .gen.cpp.
equivalent/<X>.def    the same class written another way (decimal flag
                      words); must generate the text of rows/<X>.def, banner
                      line aside.
errors/<X>.def        must be refused with the message of its first line,
                      `# error: <text>`.
The registration list of all rows/ fixtures must equal
expected/GeneratedRegistrations.h. Unchanged output must not be rewritten.
--update rewrites the expected files from the generator.
"""

import os
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))


def run(generator, *args):
    return subprocess.run([sys.executable, generator, *args], capture_output=True, text=True)


def read(path):
    with open(path, encoding="utf-8") as f:
        return f.read()


def fixtures(folder):
    return sorted(os.path.join(HERE, folder, f) for f in os.listdir(os.path.join(HERE, folder)) if f.endswith(".def"))


def generated(generator, definition, outdir):
    r = run(generator, definition, outdir)
    if r.returncode != 0:
        raise AssertionError("{} was refused: {}".format(definition, r.stderr.strip()))
    folder = os.path.join(outdir, "sgutils", "objects")
    return {f: read(os.path.join(folder, f)) for f in sorted(os.listdir(folder))}


def without_banner(text):
    return text.split("\n", 1)[1]


def main(argv):
    generator, update = argv[1], "--update" in argv
    failures = []

    def check(name, ok, detail=""):
        print("{} {}".format("ok  " if ok else "FAIL", name))
        if not ok:
            failures.append(name + (": " + detail if detail else ""))

    expected_dir = os.path.join(HERE, "expected")
    for definition in fixtures("rows"):
        with tempfile.TemporaryDirectory() as out:
            files = generated(generator, definition, out)
            for name, text in files.items():
                path = os.path.join(expected_dir, name)
                if update:
                    with open(path, "w", encoding="utf-8") as f:
                        f.write(text)
                check("rows/{} -> {}".format(os.path.basename(definition), name),
                      os.path.exists(path) and read(path) == text, "differs from expected/" + name)
            # A second run over unchanged output leaves the files untouched.
            paths = [os.path.join(out, "sgutils", "objects", n) for n in files]
            for p in paths:
                os.utime(p, ns=(0, 0))
            generated(generator, definition, out)
            check("rows/{} unchanged output is not rewritten".format(os.path.basename(definition)),
                  all(os.stat(p).st_mtime_ns == 0 for p in paths))

    for definition in fixtures("equivalent"):
        with tempfile.TemporaryDirectory() as a, tempfile.TemporaryDirectory() as b:
            mine = generated(generator, definition, a)
            theirs = generated(generator, os.path.join(HERE, "rows", os.path.basename(definition)), b)
            same = mine.keys() == theirs.keys() and all(
                without_banner(mine[k]) == without_banner(theirs[k]) for k in mine)
            check("equivalent/" + os.path.basename(definition), same, "output differs from rows/")

    for definition in fixtures("errors"):
        first = read(definition).split("\n", 1)[0]
        want = first.partition("# error:")[2].strip()
        with tempfile.TemporaryDirectory() as out:
            r = run(generator, definition, out)
            written = os.listdir(out)
        check("errors/" + os.path.basename(definition), r.returncode != 0 and want in r.stderr and not written,
              "wanted `{}`, got `{}`".format(want, r.stderr.strip()))

    with tempfile.TemporaryDirectory() as out:
        header = os.path.join(out, "GeneratedRegistrations.h")
        r = run(generator, "--registrations", header, *fixtures("rows"))
        text = read(header) if r.returncode == 0 else r.stderr
        path = os.path.join(expected_dir, "GeneratedRegistrations.h")
        if update and r.returncode == 0:
            with open(path, "w", encoding="utf-8") as f:
                f.write(text)
        check("registrations in parent order", read(path) == text, "differs from expected/GeneratedRegistrations.h")

    if failures:
        print("\n".join(["", "failed:"] + failures))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
