"""Flag words of property rows and the graphics metadata attributes.

A flag word is written as names joined by `|`: the bits of `PropInfoFlag`
(with or without their `kProp` prefix) and the presets below, or as one
decimal number. Both forms become the same C++ expression of the named
constants, so generated code never holds a bare flag number.
"""

# The bits of sgutils::PropInfoFlag, in bit order.
BITS = [
    "Abstract", "InitAllowed", "DefaultAllowed", "ResetAllowed", "Sealed", "Transient", "CopyAllowed",
    "ListenerGetAllowed", "ListenerSetAllowed", "InspectAllowed", "AbortSet", "Visible", "Static", "Dependent",
    "NoInterfaces",
]
BIT_OF = {name: 1 << i for i, name in enumerate(BITS)}
ALL_BITS = (1 << len(BITS)) - 1


def _word(*names):
    value = 0
    for n in names:
        value |= BIT_OF[n]
    return value


# The usual shapes of the three faces of a triple. A transient triple is
# recomputed rather than saved (Selected); a saved one is copied and kept in
# files (BaseColorStyle, Tile). Add bits with `|`, as in `ModeFace|ResetAllowed`.
PRESETS = {
    "PublicFace": _word("DefaultAllowed", "Transient", "ListenerGetAllowed", "ListenerSetAllowed", "InspectAllowed",
                        "AbortSet", "Visible", "Dependent"),
    "ModeFace": _word("DefaultAllowed", "Transient", "InspectAllowed"),
    "InternalFace": _word("DefaultAllowed", "Transient", "InspectAllowed", "AbortSet"),
    "SavedPublicFace": _word("DefaultAllowed", "CopyAllowed", "InspectAllowed", "AbortSet", "Visible", "Dependent"),
    "SavedModeFace": _word("DefaultAllowed", "ResetAllowed", "CopyAllowed", "InspectAllowed"),
    "SavedInternalFace": _word("DefaultAllowed", "ResetAllowed", "CopyAllowed", "InspectAllowed", "AbortSet"),
}


# The bits of sgutils::DefinitionAttribute, the attribute word of a
# definition row; most of them turn a quality off. Bit 8 has no name.
DEF_BIT_OF = {
    "NoObjectDirty": 1 << 0, "ReadOnly": 1 << 1, "LimitsDirty": 1 << 2, "SetProtected": 1 << 3,
    "SetPrivate": 1 << 4, "GetProtected": 1 << 5, "GetPrivate": 1 << 6, "Hidden": 1 << 7, "NoReset": 1 << 9,
    "NoCopy": 1 << 10, "NoGetListeners": 1 << 11, "NoSetListeners": 1 << 12, "Dependent": 1 << 13,
    "NotInspectable": 1 << 14, "Transient": 1 << 15, "NoDefault": 1 << 16, "NotAbortSet": 1 << 17,
}


class FlagSet:
    """One kind of flag word: the C++ constants `<prefix><Name>` and presets."""

    def __init__(self, what, prefix, bits, presets=None):
        self.what, self.prefix, self.bits, self.presets = what, prefix, bits, presets or {}
        self.all = 0
        for b in bits.values():
            self.all |= b

    def parse(self, text):
        """The value of a word; raises ValueError for an unknown name or bit."""
        if text.isdigit():
            value = int(text)
            if value & ~self.all:
                raise ValueError("{} {} has bits without a name: {:#x}".format(self.what, value, value & ~self.all))
            return value
        if text == "none":
            return 0
        value = 0
        for part in text.split("|"):
            name = part[len(self.prefix):] if part.startswith(self.prefix) else part
            if name in self.bits:
                value |= self.bits[name]
            elif part in self.presets:
                value |= self.presets[part]
            else:
                known = "names are " + ", ".join(self.bits)
                if self.presets:
                    known += "; presets " + ", ".join(self.presets)
                raise ValueError("unknown {} name `{}` ({})".format(self.what, part, known))
        return value

    def cpp(self, value):
        """The C++ expression of a word: its named constants, lowest bit first."""
        names = [n for n, b in sorted(self.bits.items(), key=lambda nb: nb[1]) if value & b]
        return " | ".join("sgutils::" + self.prefix + n for n in names) if names else "0u"


PROPERTY_FLAGS = FlagSet("flag", "kProp", BIT_OF, PRESETS)
DEFINITION_FLAGS = FlagSet("definition attribute", "kDef", DEF_BIT_OF)


def parse_word(text):
    return PROPERTY_FLAGS.parse(text)


def cpp_word(value):
    return PROPERTY_FLAGS.cpp(value)


# Graphics metadata attributes a property row may turn on (`meta=A|B`), and
# those of an event row.
PROPERTY_ATTRIBUTES = ["DeepCopy", "ReconnectOnCopy", "AffectsObject", "AffectsDataLimits", "AffectsLegend",
                       "InternalComponent"]
# Attributes that are on unless turned off (`meta=!Resettable`).
PROPERTY_ATTRIBUTES_ON = ["Resettable", "UsedInUpdate"]
EVENT_ATTRIBUTES = ["HasCallbackProperty"]


def parse_attributes(text, allowed_on, allowed_off=()):
    """[(attribute, bool)] of `A|B|!C`, in the order written."""
    out = []
    for part in text.split("|"):
        off = part.startswith("!")
        name = part[1:] if off else part
        if (not off and name not in allowed_on) or (off and name not in allowed_off):
            choices = list(allowed_on) + ["!" + a for a in allowed_off]
            raise ValueError("unknown attribute `{}` (attributes are {})".format(part, ", ".join(choices)))
        if any(n == name for n, _ in out):
            raise ValueError("attribute `{}` given twice".format(name))
        out.append((name, not off))
    return out
