"""Reads a `.def` description into a ClassDescription: header entries and
one row per property or event, in the order of their lines. Only the shape
of each line is checked here; validate.py checks what the words mean."""

from . import flags as fl


class DefError(ValueError):
    """A fault in a description, with the line it was found on."""

    def __init__(self, message, path=None, line=None):
        super().__init__(message)
        self.path, self.line = path, line

    def __str__(self):
        where = "{}:{}: ".format(self.path, self.line) if self.path and self.line else (
            "{}: ".format(self.path) if self.path else "")
        return where + self.args[0]


def split_fields(text):
    """Words split at blanks; a word that starts with a double quote runs to
    the next one and loses both (a type name such as "double scalar").
    Quotes inside a word, as in u"auto", stay."""
    fields, i, n = [], 0, len(text)
    while i < n:
        if text[i].isspace():
            i += 1
        elif text[i] == '"':
            end = text.find('"', i + 1)
            if end < 0:
                raise DefError("unclosed quote: " + text[i:])
            fields.append(text[i + 1:end])
            i = end + 1
        else:
            end = i
            while end < n and not text[end].isspace():
                end += 1
            fields.append(text[i:end])
            i = end
    return fields


def split_access(text, what):
    parts = text.split("/")
    if len(parts) != 2 or not all(p.isdigit() for p in parts):
        raise DefError("{} access is <get>/<set> with numbers: {}".format(what, text))
    return int(parts[0]), int(parts[1])


def split_options(fields, count, allowed):
    """The first `count` fields and the trailing options: bare words and key=value."""
    positional, options = fields[:count], {}
    for word in fields[count:]:
        key, eq, value = word.partition("=")
        if key not in allowed or bool(eq) != (allowed[key] is not None):
            raise DefError("unexpected word `{}` (options here: {})".format(
                word, ", ".join(k + ("=..." if v else "") for k, v in allowed.items()) or "none"))
        if key in options:
            raise DefError("option `{}` given twice".format(key))
        options[key] = value if eq else True
    if len(positional) < count:
        raise DefError("needs {} fields before its options, has {}".format(count, len(positional)))
    return positional, options


META = {"meta": "attributes"}


class Row:
    """A property or event row. `line` is where it stands in the file."""
    kind = None
    line = None
    meta = ()

    def take_meta(self, options, on, off=()):
        if "meta" in options:
            self.meta = fl.parse_attributes(options["meta"], on, off)


class Triple(Row):
    kind = "triple"
    # name, type, access (one get/set or X:XMode:X_I), flags X/XMode/X_I, C++ type, member initial, factory
    def __init__(self, fields):
        (self.name, self.type, access, flag_text, self.cpp, self.initial, self.factory), opts = split_options(
            fields, 7, {"computed": None, **META})
        self.computed = "computed" in opts
        faces = access.split(":")
        if len(faces) not in (1, 3):
            raise DefError("triple access is get/set or X:XMode:X_I: " + access)
        self.access = [split_access(f, "triple") for f in (faces * 3 if len(faces) == 1 else faces)]
        self.flag_text = flag_text.split("/")
        if len(self.flag_text) != 3:
            raise DefError("triple flags are X/XMode/X_I: " + flag_text)
        self.take_meta(opts, fl.PROPERTY_ATTRIBUTES, fl.PROPERTY_ATTRIBUTES_ON)


class Definition(Row):
    kind = "definition"

    def __init__(self, fields):
        (self.name, self.cpp, self.type, mode, self.attributes, self.initial), opts = split_options(fields, 6, META)
        mode_word, plus, extra = mode.partition("+")
        if mode_word not in ("mode", "nomode") or (plus and extra != "serializable"):
            raise DefError("definition mode is mode or nomode, optionally +serializable: " + mode)
        self.has_mode = mode_word == "mode"
        self.serializable = bool(plus)
        self.take_meta(opts, fl.PROPERTY_ATTRIBUTES, fl.PROPERTY_ATTRIBUTES_ON)

    @property
    def storage(self):
        tag = "sgutils::HasMode" if self.has_mode else "sgutils::NoMode"
        if self.serializable:
            return "sgutils::PropertyStorage<{}, {}, sgutils::SerializableStorage>".format(self.cpp, tag)
        return "sgutils::PropertyStorage<{}, {}>".format(self.cpp, tag)


class Single(Row):
    kind = "single"

    def __init__(self, fields):
        (self.name, self.type, access, flag_text, self.cpp, self.initial, self.factory), opts = split_options(
            fields, 7, META)
        self.access = [split_access(access, "single")]
        self.flag_text = [flag_text]
        self.take_meta(opts, fl.PROPERTY_ATTRIBUTES, fl.PROPERTY_ATTRIBUTES_ON)


class Stub(Row):
    kind = "stub"

    def __init__(self, fields):
        (self.name, self.type, access, flag_text, self.factory), opts = split_options(fields, 5, META)
        self.access = [split_access(access, "stub")]
        self.flag_text = [flag_text]
        self.take_meta(opts, fl.PROPERTY_ATTRIBUTES, fl.PROPERTY_ATTRIBUTES_ON)


class ObjectRow(Row):
    kind = "object"

    def __init__(self, fields):
        (self.name, self.type, access, flag_text), opts = split_options(fields, 4, META)
        self.access = [split_access(access, "object")]
        self.flag_text = [flag_text]
        self.take_meta(opts, fl.PROPERTY_ATTRIBUTES, fl.PROPERTY_ATTRIBUTES_ON)


class Accessor(Row):
    """A face of a hand-written block read and written through its getter and
    setter, by a hand-written property class template (faces descriptions)."""
    kind = "accessor"

    def __init__(self, fields):
        (self.name, self.type, access, flag_text, self.kind_template, self.getter, self.setter,
         self.description), opts = split_options(fields, 8, META)
        self.access = [split_access(access, "accessor")]
        self.flag_text = [flag_text]
        self.take_meta(opts, fl.PROPERTY_ATTRIBUTES, fl.PROPERTY_ATTRIBUTES_ON)


class Event(Row):
    kind = "event"

    def __init__(self, fields):
        (self.name, access), opts = split_options(fields, 2, {"data": "class", **META})
        self.access = [split_access(access, "event")]
        self.data_class = opts.get("data", "")
        self.take_meta(opts, fl.EVENT_ATTRIBUTES)


ROW_KINDS = {r.kind: r for r in (Triple, Definition, Single, Stub, ObjectRow, Event, Accessor)}
# Entries whose rest of line is kept as it stands, '#' included.
VERBATIM = ("declare", "member")
HEADER_KEYS = ("class", "faces", "package", "parent", "superclass", "source", "description", "include", "packed",
               "allowed", "setup", "methods", "registration") + VERBATIM


class ClassDescription:
    def __init__(self, path):
        self.path = path
        self.cpp = None
        self.faces = False  # a set of faces for hand-written blocks, not a class
        self.package = self.package_getter = None
        self.parent = self.parent_id = self.parent_header = None
        self.source = None
        self.description = ""
        self.includes = []
        self.packed = False
        self.declares = []
        self.members = []
        self.allowed = []
        self.superclasses = []  # further superclasses, in the class system only
        self.setup = None  # hand-written member that Setup calls after the base's
        self.methods_fn = None  # hand-written function that adds the class's methods
        self.by_startup = False  # registered by the library's start-up, not the list
        self.rows = []

    @property
    def namespace(self):
        return self.cpp.rpartition("::")[0]

    @property
    def name(self):
        return self.cpp.rpartition("::")[2]

    @property
    def full_name(self):
        return self.package + "." + self.name

    def of(self, kind):
        return [r for r in self.rows if r.kind == kind]

    @property
    def properties(self):
        return [r for r in self.rows if r.kind != "event"]


def parse_text(text, path="<text>"):
    d = ClassDescription(path)
    for number, raw in enumerate(text.splitlines(), 1):
        stripped = raw.strip()
        verbatim = stripped.startswith(VERBATIM) and stripped.split(None, 1)[0] in VERBATIM
        line = stripped if verbatim else raw.split("#", 1)[0].strip()
        if not line:
            continue
        key, _, rest = line.partition(" ")
        try:
            _take(d, key, rest.strip())
        except ValueError as e:  # DefError, or a flag or attribute fault
            raise DefError(e.args[0], path, number) from None
        if d.rows and d.rows[-1].line is None:
            d.rows[-1].line = number
    if not d.cpp or (not d.package and not d.faces):
        raise DefError("class and package are required", path)
    return d


def parse_file(path):
    with open(path, encoding="utf-8") as f:
        return parse_text(f.read(), path)


def _take(d, key, rest):
    fields = split_fields(rest)
    if key in ROW_KINDS:
        d.rows.append(ROW_KINDS[key](fields))
    elif key in ("class", "faces"):
        if d.cpp:
            raise DefError("one class or faces entry per description")
        d.cpp = rest
        d.faces = key == "faces"
    elif key == "package":
        if len(fields) != 2:
            raise DefError("package is <full package name> <C++ getter>")
        d.package, d.package_getter = fields
    elif key == "parent":
        if len(fields) != 3:
            raise DefError("parent is <C++ class> <full class name> <header>")
        d.parent, d.parent_id, d.parent_header = fields
    elif key == "source":
        d.source = rest
    elif key == "description":
        d.description = rest
    elif key == "include":
        d.includes.append(rest)
    elif key == "packed":
        if rest not in ("yes", "no"):
            raise DefError("packed is yes or no")
        d.packed = rest == "yes"
    elif key == "declare":
        d.declares.append(rest)
    elif key == "member":
        d.members.append(rest)
    elif key == "allowed":
        d.allowed.append(rest)
    elif key == "superclass":
        d.superclasses.append(rest)
    elif key == "setup":
        d.setup = rest
    elif key == "methods":
        d.methods_fn = rest
    elif key == "registration":
        if rest not in ("listed", "startup"):
            raise DefError("registration is listed or startup")
        d.by_startup = rest == "startup"
    else:
        raise DefError("unknown entry `{}` (entries are {}; rows are {})".format(
            key, ", ".join(HEADER_KEYS), ", ".join(ROW_KINDS)))
