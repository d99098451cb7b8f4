"""Checks what the words of a parsed description mean: type names against
the registered types, flag words, names, and the options each row kind
takes. Turns flag texts into values (`row.flags`)."""

import os
import re

from . import flags as fl
from .parse import DefError

TYPES_FILE = os.path.join(os.path.dirname(__file__), "types.txt")
NAME = re.compile(r"^[A-Za-z_][A-Za-z0-9_]*$")


def registered_types(path=TYPES_FILE):
    with open(path, encoding="utf-8") as f:
        return {line.strip() for line in f if line.strip() and not line.startswith("#")}


def library_types(path):
    """Types a library registers itself, listed in a types.txt at the
    library's root: the nearest one in a folder above the description
    (classes/types.txt for classes/Line/Line.def)."""
    folder = os.path.dirname(os.path.dirname(os.path.abspath(path)))
    candidate = os.path.join(folder, "types.txt")
    return registered_types(candidate) if os.path.isfile(candidate) else set()


def validate(d, types=None):
    types = registered_types() | library_types(d.path) if types is None else types
    seen = {}  # property faces and events apart: they are separate lists of a class
    seen_events = {}

    def fail(row, message):
        raise DefError(message, d.path, row.line)

    if not re.match(r"^[A-Za-z_][\w:]*$", d.cpp) or "::" not in d.cpp:
        raise DefError("class is a C++ name with its namespace: " + d.cpp, d.path)
    if d.parent_id and d.parent_id == d.full_name:
        raise DefError("a class cannot derive from itself: " + d.full_name, d.path)
    if d.faces:
        extra = [k for k, v in (("package", d.package), ("parent", d.parent), ("allowed", d.allowed),
                                ("declare", d.declares), ("member", d.members), ("packed", d.packed)) if v]
        if extra:
            raise DefError("a faces description takes no {} entry".format(", ".join(extra)), d.path)
        for row in d.rows:
            if row.kind not in ("triple", "accessor") or getattr(row, "computed", False):
                raise DefError("a faces description holds plain triple and accessor rows only", d.path, row.line)
    else:
        for row in d.of("accessor"):
            raise DefError("accessor rows belong to a faces description", d.path, row.line)
    for row in d.rows:
        if not NAME.match(row.name):
            fail(row, "`{}` is no property or event name".format(row.name))
        names = seen_events if row.kind == "event" else seen
        for face in faces_of(row):
            if face in names:
                fail(row, "`{}` is already defined on line {}".format(face, names[face]))
            names[face] = row.line
        if hasattr(row, "type") and row.type not in types:
            fail(row, "unknown type `{}` (registered types are listed in tools/classgen/types.txt, or in a types.txt at the root of the library that registers them)".format(row.type))
        for access in row.access if hasattr(row, "access") else ():
            if any(a not in (0, 1, 2) for a in access):
                fail(row, "access numbers are 0 (public), 1 (protected) or 2 (private)")
        if hasattr(row, "flag_text"):
            try:
                row.flags = [fl.parse_word(t) for t in row.flag_text]
            except ValueError as e:
                fail(row, str(e))
        if row.kind == "definition":
            try:
                row.attribute_word = fl.DEFINITION_FLAGS.parse(row.attributes)
            except ValueError as e:
                fail(row, str(e))
        if row.kind == "triple" and row.cpp == "bool" and row.initial not in ("true", "false"):
            fail(row, "a bool triple starts true or false, not " + row.initial)
    return d


def faces_of(row):
    if row.kind == "triple":
        return [row.name, row.name + "Mode", row.name + "_I"]
    if row.kind == "definition":
        names = [row.name, row.name + "_I"] + ([row.name + "Mode"] if row.has_mode else [])
        return names + (["Serializable" + row.name] if row.serializable else [])
    return [row.name]
