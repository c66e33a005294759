#!/usr/bin/env python3
"""Generates the automation server's interface from platform/caudalis.api.

    generate.py caudalis.api OUTDIR

writes into OUTDIR:
  Caudalis.idl         the type library (widl turns it into the .tlb and the C/C++ header)
  CaudalisRecords.hpp  the records' conversion declarations and type traits
  CaudalisGlue.cpp     the records' conversions; one COM class per automation class: vtable
                       methods that convert and call the library, IDispatch::Invoke over the
                       same methods; the class and interface tables
  InterfaceTable.inc   every interface member in order with its dispatch id, for the tests
  Classes.vbs          the creatable and the library-only program identifiers, for the tests
"""

import re
import sys
import uuid
from dataclasses import dataclass, field
from pathlib import Path

NAMESPACE = uuid.UUID("6f1b6a54-9c1e-4b8e-a3f5-2d7c0e1a9b00")

SCALARS = {
    # name: (IDL type, C++ library type)
    "Integer": ("short", "std::int16_t"),
    "Long": ("long", "std::int32_t"),
    "Double": ("double", "double"),
    "Boolean": ("VARIANT_BOOL", "bool"),
    "String": ("BSTR", "std::string"),
    "Variant": ("VARIANT", "caudalis::Variant"),
    "VariantArray": ("VARIANT", "caudalis::BoundedArray<caudalis::Variant>"),
    "Collection": ("IDispatch*", "caudalis::CollectionRef"),
    "Enumerator": ("IUnknown*", None),
}


def guid(kind, name):
    return str(uuid.uuid5(NAMESPACE, f"Caudalis/{kind}/{name}")).upper()


@dataclass
class Param:
    name: str
    type: str
    out: bool = False
    byval: bool = False
    optional: bool = False
    anyvalue: bool = False
    boundsonly: bool = False


@dataclass
class Op:
    name: str
    params: list
    result: str = None
    kind: str = "method"  # method, get, getput
    expr: str = None
    value: bool = False
    newenum: bool = False


@dataclass
class Klass:
    name: str
    instancing: str
    implements: str = None
    impl: str = None
    hidden: bool = False
    ops: list = field(default_factory=list)


@dataclass
class Api:
    enums: dict = field(default_factory=dict)
    errors: dict = field(default_factory=dict)
    records: dict = field(default_factory=dict)
    classes: dict = field(default_factory=dict)


def parse_param(text):
    words = text.split()
    p = Param(words[0], words[1])
    for w in words[2:]:
        if w == "out":
            p.out = True
        elif w == "val":
            p.byval = True
        elif w == "opt":
            p.optional = True
        elif w == "any":
            p.anyvalue = True
        elif w == "bounds":
            p.boundsonly = True
        else:
            raise SystemExit(f"unknown parameter modifier {w!r} in {text!r}")
    return p


OP_LINE = re.compile(r"^(\w+)\((.*?)\)(?:\s*->\s*(\S+))?((?:\s+(?:get|getput|value|newenum))*)\s*(?:=\s*(.+))?$")


def parse_op(text):
    m = OP_LINE.match(text)
    if not m:
        raise SystemExit(f"cannot read operation {text!r}")
    name, params, result, flags, expr = m.groups()
    op = Op(name, [parse_param(p) for p in params.split(",") if p.strip()], result, expr=expr)
    for f in (flags or "").split():
        if f in ("get", "getput"):
            op.kind = f
        elif f == "value":
            op.value = True
        elif f == "newenum":
            op.newenum = True
    return op


def parse(path):
    api = Api()
    current = None
    for raw in Path(path).read_text().splitlines():
        line = raw.split("#", 1)[0].rstrip()
        if not line.strip():
            continue
        if not line.startswith(" "):
            words = line.split()
            kind, name = words[0], words[1]
            if kind == "enum":
                current = api.enums.setdefault(name, [])
            elif kind == "errors":
                current = api.errors.setdefault(name, [])
            elif kind == "record":
                current = api.records.setdefault(name, [])
            elif kind == "class":
                k = Klass(name, words[2])
                rest = words[3:]
                while rest:
                    w = rest.pop(0)
                    if w == "implements":
                        k.implements = rest.pop(0)
                    elif w == "impl":
                        k.impl = rest.pop(0)
                    elif w == "hidden":
                        k.hidden = True
                    else:
                        raise SystemExit(f"unknown class attribute {w!r}")
                api.classes[name] = k
                current = k.ops
            continue
        text = line.strip()
        if isinstance(current, list) and current is not None and any(current is k.ops for k in api.classes.values()):
            current.append(parse_op(text))
        else:
            a, b = text.split()
            current.append((a, b))
    return api


class Types:
    """How each type of the description looks in IDL, in the library, and in the glue."""

    def __init__(self, api):
        self.api = api

    def array_of(self, t):
        m = re.match(r"^(\w+)\[(?:(\d+)\.\.(\d+))?\]$", t)
        return (m.group(1), m.group(2), m.group(3)) if m else None

    def is_record(self, t):
        return t in self.api.records

    def is_class(self, t):
        return t in self.api.classes

    def idl(self, t):
        arr = self.array_of(t)
        if arr:
            return f"SAFEARRAY({self.idl_element(arr[0])})"
        if t in SCALARS:
            return SCALARS[t][0]
        if self.is_record(t):
            return t
        if t in self.api.enums:
            return t
        if self.is_class(t):
            return "IDispatch*" if t == "Connection" else f"_{t}*"
        raise SystemExit(f"unknown type {t!r}")

    def idl_element(self, t):
        return t if (self.is_record(t) or t in self.api.enums) else self.idl(t)

    def com(self, t):
        """The C++ spelling of the COM type (widl's header)."""
        arr = self.array_of(t)
        if arr:
            return "SAFEARRAY*"
        if self.is_record(t):
            return f"::{t}"
        if t in self.api.enums:
            return f"::{t}"
        return self.idl(t)

    def lib(self, t):
        arr = self.array_of(t)
        if arr:
            return f"caudalis::BoundedArray<{self.lib(arr[0])}>"
        if t in SCALARS:
            return SCALARS[t][1]
        if self.is_record(t) or t in self.api.enums:
            return f"caudalis::{t}"
        if self.is_class(t):
            return f"std::shared_ptr<{self.impl(t)}>"
        raise SystemExit(f"unknown type {t!r}")

    def impl(self, cls):
        k = self.api.classes[cls]
        return k.impl or f"caudalis::{cls}"


def dispids(k):
    ids, n = [], 0
    for op in k.ops:
        if op.value:
            ids.append(0)
        elif op.newenum:
            ids.append(-4)
        else:
            n += 1
            ids.append(n)
    return ids


def member_names(op):
    """The C++ method names widl gives the member: one for a method, get_/put_ for properties."""
    if op.kind == "method":
        return [op.name]
    if op.kind == "get":
        return [f"get_{op.name}"]
    return [f"get_{op.name}", f"put_{op.name}"]


# ---------------------------------------------------------------------------------------- IDL

def idl_param(ty, p):
    base = ty.idl(p.type)
    if p.byval and not p.optional:
        return f"[in] {base} {p.name}"
    attrs = "[in, out, optional]" if p.optional else "[in, out]"
    if p.optional:
        base = "VARIANT"
    return f"{attrs} {base}* {p.name}"


def write_idl(api, ty, out):
    lines = [
        "// Generated by platform/generate.py from platform/caudalis.api; do not edit.",
        'import "oaidl.idl";',
        'import "ocidl.idl";',
        "",
        f'[uuid({guid("library", "Caudalis")}), version(1.0), helpstring("Caudalis: centre-pivot irrigation design")]',
        "library Caudalis {",
        'importlib("stdole2.tlb");',
    ]
    for name in api.classes:
        lines.append(f"interface _{name};")
    lines.append("")
    for name, members in api.enums.items():
        lines.append(f"typedef [uuid({guid('enum', name)}), v1_enum] enum {name} {{")
        lines.append(",\n".join(f"    {m} = {v}" for m, v in members))
        lines.append(f"}} {name};")
    lines.append("#ifndef CAUDALIS_HEADER")
    lines.append("// The error codes: vbObjectError + offset. Several enumerations share member names,")
    lines.append("// so they live in the type library only, not in the C header.")
    for name, members in api.errors.items():
        lines.append(f"typedef [uuid({guid('errors', name)}), v1_enum] enum {name} {{")
        lines.append(",\n".join(f"    {m} = {int(v) - 2147221504}" for m, v in members))
        lines.append(f"}} {name};")
    lines.append("#endif")
    for name, fields in record_order(api, ty):
        lines.append(f"typedef [uuid({guid('record', name)})] struct {name} {{")
        for fname, ftype in fields:
            lines.append(f"    {ty.idl(ftype)} {fname};")
        lines.append(f"}} {name};")
    lines.append("")
    for name, k in api.classes.items():
        header_only = k.hidden
        if header_only:
            lines.append("#ifndef CAUDALIS_HEADER")
        lines.append(f"[object, uuid({guid('interface', name)}), dual, oleautomation, nonextensible,")
        lines.append(f' helpstring("{name}")]')
        lines.append(f"interface _{name} : IDispatch {{")
        for op, dispid in zip(k.ops, dispids(k)):
            params = [idl_param(ty, p) for p in op.params]
            if op.kind in ("get", "getput"):
                hidden = ", hidden, restricted" if op.newenum else ""
                lines.append(f"    [id({dispid}), propget{hidden}] HRESULT {op.name}("
                             + ", ".join(params + [f"[out, retval] {ty.idl(op.result)}* result"]) + ");")
                if op.kind == "getput":
                    lines.append(f"    [id({dispid}), propput] HRESULT {op.name}([in] {ty.idl(op.result)} value);")
                continue
            if op.result:
                params.append(f"[out, retval] {ty.idl(op.result)}* result")
            lines.append(f"    [id({dispid})] HRESULT {op.name}({', '.join(params)});")
        lines.append("}")
        if header_only:
            lines.append("#endif")
    lines.append("")
    for name, k in api.classes.items():
        attrs = [f"uuid({guid('class', name)})"]
        if k.instancing == "appobject":
            attrs.append("appobject")
        if k.instancing == "library":
            attrs.append("noncreatable")
        faces = [f"[default] interface _{name};"]
        if k.implements:
            faces.append(f"interface _{k.implements};")
        guard = k.hidden
        if guard:
            lines.append("#ifndef CAUDALIS_HEADER")
        lines.append(f"    [{', '.join(attrs)}] coclass {name} {{ {' '.join(faces)} }};")
        if guard:
            lines.append("#endif")
    lines.append("}")
    (out / "Caudalis.idl").write_text("\n".join(lines) + "\n")


def record_order(api, ty):
    """Records in an order where each comes after the records it embeds."""
    done, order = set(), []

    def visit(name):
        if name in done:
            return
        done.add(name)
        for _, ftype in api.records[name]:
            arr = ty.array_of(ftype)
            inner = arr[0] if arr else ftype
            if ty.is_record(inner):
                visit(inner)
        order.append((name, api.records[name]))

    for name in api.records:
        visit(name)
    return order


# ---------------------------------------------------------------------------------------- glue

def write_glue(api, ty, out):
    g = []
    g.append("// Generated by platform/generate.py from platform/caudalis.api; do not edit.")
    g.append('#include "CaudalisRecords.hpp"')
    g.append("")
    write_record_conversions(api, ty, g)
    g.append("namespace caudalis::com {")
    g.append("")
    write_records(api, ty, g)
    write_object_wrapping(api, ty, g)
    for name, k in api.classes.items():
        if not k.hidden:
            write_class(api, ty, k, g)
    write_class_table(api, ty, g)
    g.append("}  // namespace caudalis::com")
    (out / "CaudalisGlue.cpp").write_text("\n".join(g) + "\n")


def write_record_header(api, ty, out):
    g = ["// Generated by platform/generate.py from platform/caudalis.api; do not edit.",
         "#pragma once",
         '#include "Marshal.hpp"',
         "",
         "namespace caudalis::com {",
         "",
         "IRecordInfo* recordInfoOf(const GUID& record);"]
    for name in api.records:
        g.append(f"template <> struct ComOf<caudalis::{name}> : ComType<::{name}, VT_RECORD> {{}};")
        g.append(f"template <> inline IRecordInfo* RecordTraits<::{name}>::info() {{")
        g.append(f"    static const GUID id = {guid_literal(guid('record', name))};")
        g.append("    return recordInfoOf(id);")
        g.append("}")
    g.append("")
    for name, k in api.classes.items():
        if not k.hidden:
            g.append(f"template <> inline const IID& InterfaceOf<_{name}>::iid() {{ return IID__{name}; }}")
    g.append("")
    g.append("}  // namespace caudalis::com")
    g.append("")
    g.append("// The records' conversions live beside the COM records (global namespace), where")
    g.append("// argument-dependent lookup finds them from the templates of Marshal.hpp.")
    for name in api.records:
        g.append(f"void fromCom(const ::{name}& c, caudalis::{name}& l);")
        g.append(f"void toCom(const caudalis::{name}& l, ::{name}& c);")
        g.append(f"void clearCom(::{name}& c);")
    (out / "CaudalisRecords.hpp").write_text("\n".join(g) + "\n")


def write_record_conversions(api, ty, g):
    for name, fields in api.records.items():
        for signature, line in ((f"void fromCom(const ::{name}& c, caudalis::{name}& l)", "fromCom(c.{0}, l.{0});"),
                                (f"void toCom(const caudalis::{name}& l, ::{name}& c)", "toCom(l.{0}, c.{0});"),
                                (f"void clearCom(::{name}& c)", "clearCom(c.{0});")):
            g.append(signature + " {")
            g.append("    using namespace caudalis::com;")
            for fname, _ in fields:
                g.append("    " + line.format(fname))
            g.append("}")
    g.append("")


def write_records(api, ty, g):
    # Variants holding records, both ways.
    g.append("void clearRecords(const GUID& record, void* data, ULONG count) {")
    for name in api.records:
        g.append(f"    if (IsEqualGUID(record, {guid_literal(guid('record', name))})) {{")
        g.append(f"        for (ULONG i = 0; i < count; ++i) {{")
        g.append(f"            clearCom(static_cast<::{name}*>(data)[i]);")
        g.append("        }")
        g.append("        return;")
        g.append("    }")
    g.append("}")
    g.append("")
    g.append("bool recordToVariant(const caudalis::Variant& v, VARIANT& c) {")
    for name in api.records:
        g.append(f"    if (v.holdsRecord<caudalis::{name}>()) {{")
        g.append(f"        storeRecord<::{name}>(v.toRecord<caudalis::{name}>(), c);")
        g.append("        return true;")
        g.append("    }")
    g.append("    return false;")
    g.append("}")
    g.append("bool recordFromVariant(const VARIANT& c, caudalis::Variant& v) {")
    for name in api.records:
        g.append(f"    if (holdsRecord<::{name}>(c)) {{")
        g.append(f"        v = caudalis::Variant::record(in<caudalis::{name}>(*static_cast<const ::{name}*>(c.pvRecord)));")
        g.append("        return true;")
        g.append("    }")
    g.append("    return false;")
    g.append("}")
    g.append("")


def guid_literal(text):
    u = uuid.UUID(text)
    b = u.hex
    parts = [b[0:8], b[8:12], b[12:16]] + [b[16 + 2 * i:18 + 2 * i] for i in range(8)]
    return "{0x%s, 0x%s, 0x%s, {%s}}" % (parts[0], parts[1], parts[2], ", ".join("0x" + p for p in parts[3:]))


def object_classes(api):
    """Classes whose library type derives from caudalis::Object, most derived first."""
    order = ["ReguladorPression", "MountedAspersor", "PivotApplier", "WaterDepthsComparator", "Comparator",
             "PivotWrapper", "CartaAspersores", "CalculosStrategy", "Aspersor", "TableSchema", "Connection",
             "Recordset", "Field"]
    return [c for c in order if c in api.classes]


def write_object_wrapping(api, ty, g):
    for name in api.classes:
        if not api.classes[name].hidden:
            g.append(f"IUnknown* wrapNew{name}(const std::shared_ptr<{ty.impl(name)}>& impl);")
    g.append("")
    for name, k in api.classes.items():
        if k.hidden:
            continue
        g.append(f"template <> IUnknown* Wrapper<{ty.impl(name)}>::make(const std::shared_ptr<{ty.impl(name)}>& impl) {{")
        g.append(f"    return wrapNew{name}(impl);")
        g.append("}")
    g.append("")
    g.append("IUnknown* wrapAnyObject(const std::shared_ptr<caudalis::Object>& object) {")
    for name in object_classes(api):
        g.append(f"    if (auto typed = std::dynamic_pointer_cast<{ty.impl(name)}>(object)) {{")
        g.append(f"        return wrap(typed);")
        g.append("    }")
    g.append("    return nullptr;")
    g.append("}")
    g.append("")


def write_class(api, ty, k, g):
    name = k.name
    impl = ty.impl(name)
    cls = f"{name}Object"
    faces = [f"_{name}"]
    g.append(f"class {cls} final : public ComObject<_{name}, {impl}> {{")
    g.append("public:")
    g.append(f"    using ComObject::ComObject;")
    for op in k.ops:
        write_vtable_methods(api, ty, k, op, g)
    g.append("")
    g.append("    HRESULT invokeMember(DISPID id, WORD flags, DISPPARAMS* dp, VARIANT* result) override {")
    write_invoke_switch(api, ty, k, "this", g)
    g.append("    }")
    if k.implements:
        face = api.classes[k.implements]
        g.append("")
        g.append(f"    // The {face.name} face: the same object answering the second interface.")
        g.append(f"    class Face final : public SecondFace<_{face.name}> {{")
        g.append("    public:")
        g.append(f"        explicit Face({cls}& owner) : SecondFace(static_cast<_{name}&>(owner)), self(owner) {{}}")
        for op in face.ops:
            write_face_methods(api, ty, face, op, g)
        g.append("        HRESULT invokeMember(DISPID id, WORD flags, DISPPARAMS* dp, VARIANT* result) override {")
        write_invoke_switch(api, ty, face, "this", g, indent="        ")
        g.append("        }")
        g.append(f"        {cls}& self;")
        g.append("    };")
        g.append("    Face face{*this};")
        g.append("    void* secondFace(REFIID riid) override {")
        g.append(f"        return IsEqualIID(riid, IID__{face.name}) ? static_cast<_{face.name}*>(&face) : nullptr;")
        g.append("    }")
    g.append("};")
    g.append("")
    g.append(f"IUnknown* wrapNew{name}(const std::shared_ptr<{impl}>& impl) {{")
    g.append(f"    return static_cast<_{name}*>(new {cls}(impl));")
    g.append("}")
    g.append("")


def call_expression(ty, k, op, args, target="impl()"):
    if op.expr:
        expr = op.expr.replace("{args}", ", ".join(args))
        for i, a in enumerate(args):
            expr = expr.replace("{%d}" % i, a)
        return expr.replace("impl()", target)
    return f"{target}.{op.name}({', '.join(args)})"


def param_lib_type(ty, p):
    t = ty.lib(p.type)
    return f"std::optional<{t}>" if p.optional else t


def vtable_signature(ty, op, getter=True):
    params = []
    for p in op.params:
        if p.byval and not p.optional:
            params.append(f"{ty.com(p.type)} {p.name}")
        elif p.optional:
            params.append(f"VARIANT* {p.name}")
        else:
            params.append(f"{ty.com(p.type)}* {p.name}")
    if op.result and getter:
        params.append(f"{ty.com(op.result)}* result")
    return ", ".join(params)


def body_lines(ty, k, op, target, indent):
    lines = []
    args = []
    for i, p in enumerate(op.params):
        src = p.name if (p.byval and not p.optional) else f"*{p.name}"
        if p.optional:
            lines.append(f"auto a{i} = optionalIn<{ty.lib(p.type)}>({p.name});")
        elif p.anyvalue:
            lines.append(f"auto a{i} = arrayOrNone({src});")
        elif p.boundsonly:
            lines.append(f"auto a{i} = boundsOf({src});")
        else:
            lines.append(f"auto a{i} = in<{ty.lib(p.type)}>({src});")
        args.append(f"a{i}")
    call = call_expression(ty, k, op, args, target)
    if op.result:
        lines.append(f"const auto& r = {call};")
    else:
        lines.append(f"{call};")
    for i, p in enumerate(op.params):
        if p.out:
            lines.append(f"caudalis::com::update(a{i}, *{p.name});")
    if op.result:
        lines.append("caudalis::com::out(r, *result);")
    return [indent + l for l in lines]


def write_vtable_methods(api, ty, k, op, g):
    names = member_names(op)
    g.append(f"    HRESULT STDMETHODCALLTYPE {names[0]}({vtable_signature(ty, op)}) override {{")
    g.append("        return guard([&] {")
    g.extend(body_lines(ty, k, op, "impl()", "            "))
    g.append("        });")
    g.append("    }")
    if op.kind == "getput":
        g.append(f"    HRESULT STDMETHODCALLTYPE {names[1]}({ty.com(op.result)} value) override {{")
        g.append("        return guard([&] {")
        g.append(f"            impl().{op.name}(in<{ty.lib(op.result)}>(value));")
        g.append("        });")
        g.append("    }")


def write_face_methods(api, ty, face, op, g):
    names = member_names(op)
    g.append(f"        HRESULT STDMETHODCALLTYPE {names[0]}({vtable_signature(ty, op)}) override {{")
    g.append("            return self.guard([&] {")
    g.extend(body_lines(ty, face, op, f"static_cast<{ty.impl(face.name)}&>(self.impl())", "                "))
    g.append("            });")
    g.append("        }")


def arg_class(api, ty, p):
    if p.optional or p.type in ("Variant", "VariantArray"):
        return "Arg<VARIANT>"
    if ty.array_of(p.type):
        return "Arg<SAFEARRAY*>"
    if p.type == "Boolean":
        return "Arg<VARIANT_BOOL, VT_BOOL>"
    if ty.is_record(p.type):
        return f"RecordArg<::{p.type}>"
    if p.type in ("Collection", "Connection"):
        return "ObjectArg<IDispatch>"
    if ty.is_class(p.type):
        return f"ObjectArg<_{p.type}>"
    return f"Arg<{ty.com(p.type)}>"


def ret_class(ty, t):
    if t == "Boolean":
        return "Ret<VARIANT_BOOL, VT_BOOL>"
    return f"Ret<{ty.com(t)}>"


def write_invoke_switch(api, ty, k, target, g, indent="    "):
    i2 = indent + "    "
    g.append(f"{i2}(void)flags;")
    g.append(f"{i2}(void)result;")
    g.append(f"{i2}switch (id) {{")
    for op, dispid in zip(k.ops, dispids(k)):
        names = member_names(op)
        g.append(f"{i2}case {dispid}: {{  // {op.name}")
        if op.kind == "getput":
            value = Param("value", op.result, byval=True)
            g.append(f"{i2}    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {{")
            g.append(f"{i2}        if (dp->cArgs != 1) return DISP_E_BADPARAMCOUNT;")
            g.append(f"{i2}        {arg_class(api, ty, value)} value(dp, 0, 1, false);")
            g.append(f"{i2}        if (FAILED(value.status())) return value.status();")
            g.append(f"{i2}        return {target}->{names[1]}(value.value());")
            g.append(f"{i2}    }}")
        n = len(op.params)
        forwards = op.kind == "get" and n == 0 and ty.is_class(op.result)
        if forwards:
            # Arguments given to a property that holds an object are its default member's:
            # rs.Fields("name") is rs.Fields.Item("name").
            g.append(f"{i2}    if (dp->cArgs > 0) {{")
            g.append(f"{i2}        {ret_class(ty, op.result)} object;")
            g.append(f"{i2}        const HRESULT hr = {target}->{names[0]}(object.pointer());")
            g.append(f"{i2}        if (FAILED(hr)) return hr;")
            g.append(f"{i2}        return invokeValue(*object.pointer(), flags, dp, result);")
            g.append(f"{i2}    }}")
        required = sum(1 for p in op.params if not p.optional)
        if required:
            g.append(f"{i2}    if (dp->cArgs < {required} || dp->cArgs > {n}) return DISP_E_BADPARAMCOUNT;")
        elif not forwards:
            g.append(f"{i2}    if (dp->cArgs > {n}) return DISP_E_BADPARAMCOUNT;")
        call_args = []
        for i, p in enumerate(op.params):
            cls = arg_class(api, ty, p)
            ctor = f"(dp, {i})" if cls.startswith(("RecordArg", "ObjectArg")) else f"(dp, {i}, {n}, {str(p.optional).lower()})"
            g.append(f"{i2}    {cls} a{i}{ctor};")
            g.append(f"{i2}    if (FAILED(a{i}.status())) return a{i}.status();")
            call_args.append(f"a{i}.value()" if (p.byval and not p.optional) else f"a{i}.pointer()")
        if op.result:
            g.append(f"{i2}    {ret_class(ty, op.result)} r;")
            call_args.append("r.pointer()")
        g.append(f"{i2}    const HRESULT hr = {target}->{names[0]}({', '.join(call_args)});")
        g.append(f"{i2}    if (FAILED(hr)) return hr;")
        for i, p in enumerate(op.params):
            if p.out:
                g.append(f"{i2}    a{i}.writeBack();")
        if op.result:
            g.append(f"{i2}    r.store(result);")
        g.append(f"{i2}    return hr;")
        g.append(f"{i2}}}")
    g.append(f"{i2}default:")
    g.append(f"{i2}    return DISP_E_MEMBERNOTFOUND;")
    g.append(f"{i2}}}")


def write_class_table(api, ty, g):
    g.append("const ClassEntry classTable[] = {")
    for name, k in api.classes.items():
        if k.hidden:
            continue
        creatable = k.instancing in ("creatable", "appobject")
        maker = f"[] {{ return wrapNew{name}(std::make_shared<{ty.impl(name)}>()); }}" if creatable else "nullptr"
        g.append(f'    {{L"{name}", &CLSID_{name}, {maker}}},')
    g.append("};")
    g.append("const std::size_t classCount = sizeof(classTable) / sizeof(classTable[0]);")
    g.append("const InterfaceEntry interfaceTable[] = {")
    for name, k in api.classes.items():
        if not k.hidden:
            g.append(f'    {{L"_{name}", &IID__{name}}},')
    g.append("};")
    g.append("const std::size_t interfaceCount = sizeof(interfaceTable) / sizeof(interfaceTable[0]);")
    g.append("")


# ---------------------------------------------------------------------------------------- tests

def write_tests(api, ty, out):
    t = ["// Generated by platform/generate.py from platform/caudalis.api; do not edit.",
         "// interface, member, dispatch id, number of parameters (result excluded)"]
    for name, k in api.classes.items():
        if k.hidden:
            continue
        for op, dispid in zip(k.ops, dispids(k)):
            t.append(f'{{L"_{name}", L"{op.name}", {dispid}, {len(op.params)}}},')
    (out / "InterfaceTable.inc").write_text("\n".join(t) + "\n")
    creatable = [n for n, k in api.classes.items() if k.instancing in ("creatable", "appobject")]
    library = [n for n, k in api.classes.items() if k.instancing == "library"]
    v = ["' Generated by platform/generate.py from platform/caudalis.api; do not edit.",
         f'Const CreatableClasses = "{" ".join(creatable)}"',
         f'Const LibraryOnlyClasses = "{" ".join(library)}"']
    (out / "Classes.vbs").write_text("\r\n".join(v) + "\r\n")


def main():
    api = parse(sys.argv[1])
    out = Path(sys.argv[2])
    out.mkdir(parents=True, exist_ok=True)
    ty = Types(api)
    write_idl(api, ty, out)
    write_record_header(api, ty, out)
    write_glue(api, ty, out)
    write_tests(api, ty, out)


if __name__ == "__main__":
    main()
