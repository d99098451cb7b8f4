"""Writes the generated header and source of a validated description,
construct by construct, through the templates of templates.py."""

from . import flags as fl
from . import templates as t

AUTO_MANUAL = "graphics::datatype::AutoManual"


def member(name):
    return name[0].lower() + name[1:]


def is_value_class(cpp):
    return cpp not in ("bool", "double") and not cpp.endswith("*")


def arg_of(cpp):
    return "const {}&".format(cpp) if is_value_class(cpp) else cpp


def word_of(cpp, expr):
    """The COSValue word of a C++ value of a member type."""
    if cpp == "bool":
        return "COSValue::fromBool({})".format(expr)
    if cpp == "double":
        return "COSValue::fromDouble({})".format(expr)
    if cpp.endswith("*"):
        return "COSValue({})".format(expr)
    return "COSValue(&{})".format(expr)  # a value class: the word points at the member


def value_of(cpp, expr):
    if cpp == "bool":
        return "{}.asBool()".format(expr)
    if cpp == "double":
        return "{}.asDouble()".format(expr)
    return "{}.asPointer<{}>()".format(expr, cpp[:-1].strip())


def factory_expr(factory):
    if factory == "typedefault":
        return "t.copy(COSValue())"
    return "t.copy(COSValue::fromWord({}))".format(factory)


def base_of(d):
    return d.parent if d.parent else "sgutils::GeneratedBlock"


def has_callback_events(d):
    """Whether an event row asks for a generated callback property: the class
    then also derives from the interface that holds the callbacks."""
    return any(on and a == "HasCallbackProperty" for r in d.of("event") for a, on in r.meta)


def bases_of(d):
    base = "public " + base_of(d)
    return base + ", public sgutils::GeneratedCallbackInterface" if has_callback_events(d) else base


def include_lines(headers, quote_all=False):
    out = []
    for inc in sorted(set(headers)):
        out.append("#include {}\n".format(inc if inc.startswith("<") and not quote_all else '"{}"'.format(inc)))
    return "".join(out)


# ---- header ---------------------------------------------------------------

def header(d, src):
    out = [t.BANNER.substitute(src=src)]
    out.append("// {}.\n".format(d.description) if d.description else "")
    out.append("#pragma once\n\n")
    includes = ["sgdatatypes/AutoManual.h", "sgutils/SgutilsExport.h", "sgutils/objects/GeneratedClassSupport.h"]
    includes.append(d.parent_header if d.parent else "sgutils/objects/GeneratedBlock.h")
    if d.of("definition"):
        includes.append("sgutils/propinfos/PropertyStorage.h")
    if has_callback_events(d):
        includes.append("sgutils/objects/GeneratedCallbackInterface.h")
    out.append(include_lines(includes + d.includes))
    # Setup acts when it runs a member of its own (or attaches callbacks).
    setup_acts = bool(d.setup) or has_callback_events(d)
    out.append(t.CLASS_OPEN.substitute(namespace=d.namespace, name=d.name, base=base_of(d), bases=bases_of(d),
                                       acts=" | kSetupActs" if setup_acts else "",
                                       acts_note=", save Setup" if setup_acts else ""))
    for r in d.of("triple"):
        m = member(r.name)
        getter = (t.TRIPLE_COMPUTED_GETTER if r.computed else t.TRIPLE_GETTER).substitute(cpp=r.cpp, x=r.name, m=m)
        out.append(t.TRIPLE_ACCESSORS.substitute(x=r.name, m=m, getter=getter, arg=arg_of(r.cpp)))
    for r in d.of("definition"):
        m = member(r.name)
        mode = t.DEFINITION_MODE_ACCESSORS.substitute(x=r.name, m=m) if r.has_mode else ""
        out.append(t.DEFINITION_ACCESSORS.substitute(x=r.name, m=m, cpp=r.cpp, storage=r.storage, mode=mode))
    for r in d.of("single"):
        out.append(t.SINGLE_ACCESSORS.substitute(x=r.name, m=member(r.name), cpp=r.cpp, arg=arg_of(r.cpp)))
    for r in d.of("object"):
        out.append(t.OBJECT_ACCESSORS.substitute(x=r.name, m=member(r.name)))
    stubs = d.of("stub")
    if d.declares or stubs:
        out.append(t.HAND_WRITTEN.substitute(name=d.name))
        out.extend(t.STUB_IMPLS.substitute(x=r.name) for r in stubs)
        out.extend("  {}\n".format(decl) for decl in d.declares)
    out.append("\n private:\n")
    for r in d.of("triple"):
        out.append("  struct {x}PI;\n  struct {x}ModePI;\n  struct {x}_IPI;\n".format(x=r.name))
    for r in d.of("single") + d.of("stub") + d.of("object"):
        out.append("  struct {}PI;\n".format(r.name))
    for r in d.of("triple"):
        m = member(r.name)
        if d.packed and r.cpp == "bool":
            out.append("  bool {}_I_ : 1 = {};\n  unsigned char {}Mode_ : 1 = 0;\n".format(m, r.initial, m))
        else:
            out.append("  {} {}_I_ = {};\n  unsigned char {}Mode_ = 0;\n".format(r.cpp, m, r.initial, m))
    for r in d.of("definition"):
        out.append("  {} {}_{{{}}};\n".format(r.storage, member(r.name), r.initial))
    out.extend("  {}\n".format(decl) for decl in d.members)
    for r in d.of("single"):
        out.append("  {} {}_ = {};\n".format(r.cpp, member(r.name), r.initial))
    for r in d.of("object"):
        out.append("  COSInterfacePtr {}_;\n".format(member(r.name)))
    out.append(t.CLASS_CLOSE.substitute(namespace=d.namespace, name=d.name))
    return "".join(out)


# ---- source ---------------------------------------------------------------

def source_includes(d):
    incs = ["sgutils/objects/GeneratedClassInfo.h", "sgutils/startup/Namespaces.h", "sgutils/lifecycle/ObjectCtorMI.h",
            "sgutils/lifecycle/SGHandle.h", "vcos/COSClass.h", "vcos/COSClient.h", "vcos/COSDataType.h", "vcos/COSPackage.h"]
    if d.of("triple"):
        incs += ["sgutils/propinfos/DependentPropInfo.h", "sgutils/propinfos/InternalPropInfo.h",
                 "sgutils/propinfos/ModePropInfo.h", "sgutils/propinfos/PropertyDefinition.h"]
    if d.of("definition"):
        incs += ["sgutils/propinfos/PropertyDefinition.h"]
    if any(r.computed for r in d.of("triple")):
        incs += ["sgutils/objects/ComputedInternalPropInfo.h"]
    if d.of("single"):
        incs += ["sgutils/propinfos/InternalPropInfo.h"]
    if d.of("stub"):
        incs += ["sgutils/propinfos/StubPropInfo.h"]
    if d.of("object"):
        incs += ["sgutils/propinfos/ObjectPropInfo.h"]
    if d.of("event"):
        incs += ["vcos/COSEventT.h"]
    if has_callback_events(d):
        incs += ["sgutils/propinfos/GeneratedCallbackPropInfo.h"]
    return include_lines(incs, quote_all=True)


def internal_pi(d, r, field, suffix, computed=False):
    n = d.name
    kind = "ComputedInternalPropInfo" if computed else "InternalPropInfo"
    compute = t.COMPUTE.substitute(n=n, word=word_of(r.cpp, "b.get{}Impl()".format(r.name))) if computed else ""
    if is_value_class(r.cpp):
        write = t.ASSIGN.substitute(n=n, field=field, cpp=r.cpp)
    else:
        write = t.STORE.substitute(n=n, field=field, value=value_of(r.cpp, "v"))
    return t.INTERNAL_PI.substitute(n=n, x=r.name, suffix=suffix, kind=kind, compute=compute,
                                    read=word_of(r.cpp, "b." + field), write=write, factory=factory_expr(r.factory))


def property_classes(d):
    n, out = d.name, []
    for r in d.of("triple"):
        m = member(r.name)
        out.append(internal_pi(d, r, m + "_I_", "_IPI", r.computed))
        out.append(t.MODE_PI.substitute(n=n, x=r.name, m=m))
        out.append(t.DEPENDENT_PI.substitute(n=n, x=r.name))
    for r in d.of("single"):
        out.append(internal_pi(d, r, member(r.name) + "_", "PI"))
    for r in d.of("stub"):
        out.append(t.STUB_PI.substitute(n=n, x=r.name, factory=factory_expr(r.factory)))
    for r in d.of("object"):
        out.append(t.OBJECT_PI.substitute(n=n, x=r.name, m=member(r.name)))
    return "".join(out)


def face(pi, name, type_expr, access, flags, extra=""):
    return t.ADD_FACE.substitute(pi=pi, face=name, type=type_expr, get=access[0], set=access[1],
                                 flags=fl.cpp_word(flags), extra=extra)


def add_row(r):
    """The lines of initializeClass that add one row to the class."""
    x = r.name
    if r.kind == "definition":
        out = t.ADD_DEFINITION.substitute(m=member(x))
    elif r.kind == "event":
        send, listen = r.access[0]
        data = '"{}"'.format(r.data_class) if r.data_class else ""
        if not r.meta:
            return t.ADD_EVENT.substitute(x=x, send=send, listen=listen, data=data)
        attributes = "".join(t.SET_EVENT_ATTRIBUTE.substitute(attribute=a, value="true" if on else "false")
                             for a, on in r.meta)
        if any(on and a == "HasCallbackProperty" for a, on in r.meta):
            attributes += t.ADD_CALLBACK_PROPERTY.template
        return t.ADD_EVENT_WITH_ATTRIBUTES.substitute(x=x, send=send, listen=listen, data=data, attributes=attributes)
    elif r.kind == "triple":
        ty = 'COSDataTypePtr("{}")'.format(r.type)
        extra = ', COSID("{x}_I"), COSID("{x}Mode")'.format(x=x)
        out = (face(x + "PI", x, ty, r.access[0], r.flags[0], extra)
               + face(x + "ModePI", x + "Mode", "sgutils::detail::autoManualType()", r.access[1], r.flags[1])
               + face(x + "_IPI", x + "_I", ty, r.access[2], r.flags[2]))
    else:
        out = face(x + "PI", x, 'COSDataTypePtr("{}")'.format(r.type), r.access[0], r.flags[0])
    for attribute, on in r.meta:
        out += t.SET_PROPERTY_ATTRIBUTE.substitute(x=x, attribute=attribute, value="true" if on else "false")
    return out


def source(d, src):
    n, base = d.name, base_of(d)
    out = [t.BANNER.substitute(src=src), '#include "sgutils/objects/{}.gen.h"\n\n'.format(n), source_includes(d)]
    if d.allowed:
        allowed = "constexpr const char* kAllowedSubclasses[] = {{{}}};\n".format(
            ", ".join('"{}"'.format(a) for a in d.allowed))
    else:
        allowed = "constexpr std::span<const char* const> kAllowedSubclasses;\n"
    out.append(t.SOURCE_PREAMBLE.substitute(namespace=d.namespace, cpp=d.cpp, source=d.source or ("objects/" + n),
                                            allowed=allowed))
    out.append(property_classes(d))
    records = "".join(t.DEFINITION_RECORD.substitute(n=n, storage=r.storage, m=member(r.name), x=r.name,
                                                     attributes=fl.DEFINITION_FLAGS.cpp(r.attribute_word), type=r.type)
                      for r in d.of("definition"))
    out.append(t.CLASS_INFO.substitute(n=n, description=d.description,
                                       definitions="\n private:\n" + records if records else ""))
    superclass = "".join(t.SUPERCLASS.substitute(id=i) for i in ([d.parent_id] if d.parent else []) + d.superclasses)
    out.append(t.INITIALIZE_OPEN.substitute(n=n, superclass=superclass))
    out.extend(add_row(r) for r in d.rows)
    if d.methods_fn:
        out.append(t.ADD_METHODS.substitute(fn=d.methods_fn))
    out.append(t.INITIALIZE_CLOSE.substitute(n=n))
    destroy = "".join(t.DESTROY_ARRAY.substitute(m=member(r.name), type=r.type)
                      for r in d.of("definition") if r.cpp == "vxArray*")
    setup = "  {}(object);\n".format(d.setup) if d.setup else ""
    if has_callback_events(d):
        destroy = t.DETACH_CALLBACKS.template + destroy
        setup = t.ATTACH_CALLBACKS.template + setup
    # Each level hands its reference down the chain rather than copying it,
    # unless its own Setup uses the object after the base's.
    out.append(t.BLOCK_FRAME.substitute(n=n, destroy=destroy, package_getter=d.package_getter,
                                        full_name=d.full_name, base=base, setup=setup,
                                        setup_object="object" if setup else "std::move(object)"))
    for r in d.of("triple"):
        out.append(t.TRIPLE_SETTER.substitute(n=n, x=r.name, arg=arg_of(r.cpp), word=word_of(r.cpp, "value")))
        out.append(t.MODE_SETTER.substitute(n=n, x=r.name))
    for r in d.of("single"):
        out.append(t.SINGLE_SETTER.substitute(n=n, x=r.name, arg=arg_of(r.cpp), word=word_of(r.cpp, "value")))
    for r in d.of("definition"):
        out.append(t.FACE_SETTER.substitute(n=n, x=r.name, arg=r.cpp,
                                            word="sgutils::StorageTraits<{}>::word(value)".format(r.cpp)))
        if r.has_mode:
            out.append(t.MODE_SETTER.substitute(n=n, x=r.name))
    out.append(t.REGISTRATION.substitute(namespace=d.namespace, n=n, package_getter=d.package_getter, cpp=d.cpp))
    return "".join(out)


# ---- a set of faces for hand-written blocks --------------------------------

def faces_header(d, src):
    out = [t.BANNER.substitute(src=src)]
    out.append("// {}.\n".format(d.description) if d.description else "")
    out.append("#pragma once\n\n")
    includes = ["sgutils/propinfos/PropInfoBase.h", "vcos/COSClass.h"]
    if d.of("triple"):
        includes += ["sgutils/propinfos/DependentPropInfo.h", "sgutils/propinfos/InternalPropInfo.h",
                     "sgutils/propinfos/ModePropInfo.h", "sgutils/propinfos/PropertyDefinition.h"]
    out.append(include_lines(includes + d.includes))
    triples = d.of("triple")
    out.append("\nnamespace {} {{\n".format(d.namespace))
    if triples:
        summary = ", ".join('"{x}", "{x}Mode", "{x}_I"'.format(x=r.name) for r in triples)
        members = "".join(t.FACES_MEMBER.substitute(cpp=r.cpp, m=member(r.name)) for r in triples)
        out.append(t.FACES_OPEN.substitute(summary=summary, members=members))
    for r in triples:
        m = member(r.name)
        if is_value_class(r.cpp):
            write = "static void assign(Block& b, COSValue v) {{ b.{m} = v.isEmpty() ? {t}() : *v.asPointer<const {t}>(); }}".format(
                m=m, t=r.cpp)
        else:
            write = "static void store(Block& b, COSValue v) noexcept {{ b.{} = {}; }}".format(m, value_of(r.cpp, "v"))
        out.append(t.FACES_TRIPLE.substitute(x=r.name, m=m, read=word_of(r.cpp, "b." + m), write=write,
                                             factory=factory_expr(r.factory)))
    out.append(t.FACES_ADD_OPEN.substitute(name=d.name))
    for r in d.rows:
        x, ty = r.name, 'COSDataTypePtr("{}")'.format(r.type)
        if r.kind == "accessor":
            out.append(t.FACES_ADD_ACCESSOR.substitute(kind=r.kind_template, getter=r.getter, setter=r.setter, x=x,
                                                       type=ty, get=r.access[0][0], set=r.access[0][1],
                                                       flags=fl.cpp_word(r.flags[0]), description=r.description))
            for attribute, on in r.meta:
                out.append(t.SET_PROPERTY_ATTRIBUTE.substitute(x=x, attribute=attribute,
                                                               value="true" if on else "false"))
            continue
        faces = ((x + "PI", x, ty, r.access[0], r.flags[0], ', COSID("{x}_I"), COSID("{x}Mode")'.format(x=x)),
                 (x + "ModePI", x + "Mode", "sgutils::detail::autoManualType()", r.access[1], r.flags[1], ""),
                 (x + "_IPI", x + "_I", ty, r.access[2], r.flags[2], ""))
        for pi, name, type_expr, access, flags, extra in faces:
            out.append(t.FACES_ADD_FACE.substitute(pi=pi, face=name, type=type_expr, get=access[0], set=access[1],
                                                   flags=fl.cpp_word(flags), extra=extra))
        for attribute, on in r.meta:
            out.append(t.SET_PROPERTY_ATTRIBUTE.substitute(x=x, attribute=attribute, value="true" if on else "false"))
    out.append(t.FACES_CLOSE.substitute(namespace=d.namespace))
    return "".join(out)


def faces_source(d, src):
    return t.BANNER.substitute(src=src) + t.FACES_SOURCE.substitute(name=d.name)


# ---- the registration list ------------------------------------------------

def in_parent_order(descriptions):
    """The descriptions with every class after the generated parent it names;
    otherwise by class name, so the order does not depend on file order."""
    by_full = {d.full_name: d for d in descriptions}
    done, order = set(), []

    def visit(d, path):
        if d.full_name in done:
            return
        if d.full_name in path:
            raise ValueError("classes derive from each other: " + " -> ".join(path + [d.full_name]))
        parent = by_full.get(d.parent_id)
        if parent:
            visit(parent, path + [d.full_name])
        done.add(d.full_name)
        order.append(d)

    for d in sorted(descriptions, key=lambda d: d.name):
        visit(d, [])
    return order


def registration_list(descriptions):
    order = in_parent_order([d for d in descriptions if not d.faces and not d.by_startup])
    if not order:
        raise ValueError("the registration list needs at least one class description")
    includes = include_lines("sgutils/objects/{}.gen.h".format(d.name) for d in order)
    entries = "".join("    &register{},\n".format(d.name) for d in order)
    return t.REGISTRATION_LIST.substitute(includes=includes, entries=entries)
