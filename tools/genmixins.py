#!/usr/bin/env python3
"""The class generator.

    genmixins.py objects/<Class>/<Class>.def <output dir>
        writes <output dir>/sgutils/objects/<Class>.gen.h and <Class>.gen.cpp:
        the C++ class with its members, accessors and stage hooks, the class
        info (`<Class>::COSInfo`), one property class per face, the
        constructor method and `sgutils::generated::register<Class>()`.
    genmixins.py --registrations <output header> <.def files...>
        writes the list of those registration functions, each class after
        the generated classes it derives from.
    genmixins.py --check <.def files...>
        parses and validates only.

Each description is read (classgen/parse.py), checked (classgen/validate.py)
and written through one template per construct (classgen/emit.py). A file
is written only when its content changes. The `.def` form is described in
docs/architecture.md ("The class description form").
"""

import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from classgen import emit  # noqa: E402
from classgen.parse import DefError, parse_file  # noqa: E402
from classgen.validate import validate  # noqa: E402


def write_if_changed(path, text):
    """Writes `text` unless the file holds it already, so that an unchanged
    class does not make its dependents rebuild. True when written."""
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return False
    except FileNotFoundError:
        pass
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    with open(path + ".tmp", "w", encoding="utf-8") as f:
        f.write(text)
    os.replace(path + ".tmp", path)
    return True


def source_name(path):
    """The path the banner names: from objects/ or tests/ on, as in the tree."""
    parts = os.path.normpath(path).split(os.sep)
    for root in ("objects", "tests"):
        if root in parts:
            return "/".join(parts[len(parts) - 1 - parts[::-1].index(root):])
    return path


def load(path):
    return validate(parse_file(path))


def generate(definition, outdir):
    d = load(definition)
    stem = os.path.splitext(os.path.basename(definition))[0]
    if stem != d.name:
        raise DefError("the file of {} is named {}.def, as the build expects".format(d.cpp, d.name), definition)
    src = source_name(definition)
    target = os.path.join(outdir, "sgutils", "objects")
    header, source = (emit.faces_header, emit.faces_source) if d.faces else (emit.header, emit.source)
    write_if_changed(os.path.join(target, d.name + ".gen.h"), header(d, src))
    write_if_changed(os.path.join(target, d.name + ".gen.cpp"), source(d, src))


def main(argv):
    try:
        if len(argv) >= 3 and argv[1] == "--registrations":
            descriptions = [load(p) for p in argv[3:]]
            write_if_changed(argv[2], emit.registration_list(descriptions))
        elif len(argv) >= 2 and argv[1] == "--check":
            for p in argv[2:]:
                load(p)
        elif len(argv) == 3 and not argv[1].startswith("--"):
            generate(argv[1], argv[2])
        else:
            raise SystemExit(__doc__)
    except (DefError, ValueError) as e:
        raise SystemExit("genmixins: {}".format(e))


if __name__ == "__main__":
    main(sys.argv)
