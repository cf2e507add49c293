#!/usr/bin/env python3
"""Builds the bundled type catalogue and NVO table from the facts in data/.

    python3 scripts/gen_catalogue.py            # writes examples/snvts.xml, nvotable.xml, units.xml
    python3 scripts/gen_catalogue.py --check    # validates only, writes nothing

Inputs: data/snvts.json (the standard types), data/catalogue.json (the project's additions),
data/user-types.xml (the project's user types, copied as they stand) and data/us-units.json (US
customary units of the SI units, with exact factors), which gives examples/units.xml. Facts that contradict each
other stop the run with a message naming the type; nothing is written then. Both files are
written through a temporary file and a rename, so a run never leaves half a file.
"""

import argparse
import json
import os
import sys
import tempfile
from xml.sax.saxutils import escape
import xml.etree.ElementTree as ElementTree

ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

NUMERIC = ("SignedNumeric", "UnsignedNumeric", "Float")

# Field types the facts name by their C type: a field that matches one of these exactly takes the
# shared helper type of that name instead of one of its own.
BASE_TYPES = {
    "unsigned_short": {"kind": "UnsignedNumeric", "length": 1, "min": 0, "max": 255},
    "unsigned_long": {"kind": "UnsignedNumeric", "length": 2, "min": 0, "max": 65535},
    "signed_short": {"kind": "SignedNumeric", "length": 1, "min": -128, "max": 127},
    "signed_long": {"kind": "SignedNumeric", "length": 2, "min": -32768, "max": 32767},
    "s32_type": {"kind": "SignedNumeric", "length": 4, "min": -2147483648, "max": 2147483647},
}


class FactError(Exception):
    """Facts that contradict each other; the message names the type."""


def number_text(value):
    """A number as the catalogue writes it: whole numbers without a point, others shortest."""
    if value is None:
        return None
    if isinstance(value, bool):
        raise TypeError("not a number")
    if isinstance(value, int) or (float(value).is_integer() and abs(value) < 1e15):
        return str(int(value))
    return repr(float(value)).upper().replace("E+0", "E+").replace("E-0", "E-")


def short_id(name):
    return name[5:] if name.startswith("SNVT_") else name


class Catalogue:
    def __init__(self, facts, extras):
        self.facts = {t["name"]: t for t in facts}
        self.order = [t["name"] for t in facts]
        self.extras = extras
        self.helpers = {}  # id -> element text
        self.helper_layouts = {}  # id -> the layout it was made for, to share only equal ones
        self.left_out = {}  # name -> reason
        self.units = {}  # type id -> its unit, for the display-unit table
        self.enum_ids = {}  # enum type name ("hvac_t") -> standard enumeration id
        for t in facts:
            if t["kind"] == "Enum" and t.get("enum_type"):
                self.enum_ids.setdefault(t["enum_type"], short_id(t["name"]))

    # ---- validation -------------------------------------------------------------------------

    def validate(self, t):
        name = t["name"]
        if t["kind"] in NUMERIC:
            lo, hi = t.get("min"), t.get("max")
            if lo is not None and hi is not None and lo > hi:
                raise FactError(f"{name}: minimum {lo} is above maximum {hi}")
            if t.get("A") is None and t["kind"] != "Float":
                raise FactError(f"{name}: a number without scaling A")
        if t["kind"] == "Enum" and not t.get("states"):
            raise FactError(f"{name}: an enumeration without states")
        if t["kind"] == "Enum":
            values = [s["value"] for s in t["states"]]
            if len(set(values)) != len(values):
                raise FactError(f"{name}: two states share a value")
        if t.get("length") is None or t["length"] <= 0:
            raise FactError(f"{name}: no length")
        if t.get("fields"):
            self.validate_fields(name, t["fields"], t["length"])

    def validate_fields(self, name, fields, length):
        end = 0
        for f in fields:
            if f["offset"] + f["length"] > length:
                raise FactError(f"{name}: field {f['name']} ends past the end of the structure "
                                f"({f['offset']} + {f['length']} > {length})")
            if f["kind"] == "Bitfield":
                bit_end = f.get("bit_offset", 0) + f.get("bits", 8)
                if bit_end > 8 * f["length"]:
                    raise FactError(f"{name}: bit field {f['name']} ends past its byte")
            elif f["kind"] != "Union" and f["offset"] < end:
                raise FactError(f"{name}: field {f['name']} overlaps the field before it")
            if f["kind"] in NUMERIC:
                lo, hi = f.get("min"), f.get("max")
                if lo is not None and hi is not None and lo > hi:
                    raise FactError(f"{name}: field {f['name']}: minimum {lo} is above maximum {hi}")
            if f["kind"] == "Enum" and not f.get("states"):
                raise FactError(f"{name}: field {f['name']} is an enumeration without states")
            if f["kind"] == "Union":
                # Alternatives over the same bytes: each on its own.
                for alternative in f["fields"]:
                    if alternative["offset"] + alternative["length"] > f["length"]:
                        raise FactError(f"{name}: alternative {alternative['name']} of "
                                        f"{f['name']} ends past the union")
                    if alternative.get("fields"):
                        self.validate_fields(f"{name}.{f['name']}.{alternative['name']}",
                                             alternative["fields"], alternative["length"])
            elif f["kind"] == "Bitfield" and f.get("fields"):
                for bit in f["fields"]:  # named bits of a wider container
                    if bit["offset"] + bit["length"] > f["length"]:
                        raise FactError(f"{name}: bit {bit['name']} ends past {f['name']}")
            elif f.get("fields"):
                self.validate_fields(f"{name}.{f['name']}", f["fields"], f["length"])
            end = max(end, f["offset"] + f["length"])
        if end != length:
            raise FactError(f"{name}: the fields cover {end} of its {length} bytes")

    # ---- writing ----------------------------------------------------------------------------

    def element(self, type_id, attributes, children):
        attrs = "".join(f' {k}="{v}"' for k, v in attributes)
        lines = [f"  <SNVT_{type_id}{attrs}>"]
        lines += [f"    {c}" for c in children]
        lines.append(f"  </SNVT_{type_id}>")
        return "\n".join(lines)

    def numeric_children(self, type_id, kind, length, a, b, c, lo, hi, invalid, unit):
        if unit and kind in NUMERIC:
            self.units[type_id] = unit
        children = [f"<NAME>{escape(type_id)}</NAME>", f"<TYPE>{kind}</TYPE>"]
        default = self.extras["defaults"].get(type_id)
        if default is not None:
            children.append(f"<DEFAULT>{default}</DEFAULT>")
        if unit:
            children.append(f"<UNIT>{escape(unit)}</UNIT>")
            bacnet = self.extras["bacnet_units"].get(unit)
            if bacnet:
                children.append(f"<BACNETUNIT>{bacnet}</BACNETUNIT>")
        if lo is not None:
            children.append(f"<MIN>{number_text(lo)}</MIN>")
        if hi is not None:
            children.append(f"<MAX>{number_text(hi)}</MAX>")
        children.append(f"<LENGTH>{length}</LENGTH>")
        children += [f"<A_COEF>{a if a is not None else 1}</A_COEF>",
                     f"<B_COEF>{b if b is not None else 0}</B_COEF>",
                     f"<C_COEF>{c if c is not None else 0}</C_COEF>"]
        if invalid is not None:
            children.append(f"<INVALIDVALUE>{number_text(invalid)}</INVALIDVALUE>")
        return children

    def enum_children(self, type_id, states):
        children = [f"<NAME>{escape(type_id)}</NAME>", "<TYPE>Enum</TYPE>"]
        default = self.extras["defaults"].get(type_id)
        if default is not None:
            children.append(f"<DEFAULT>{default}</DEFAULT>")
        children.append("<LENGTH>1</LENGTH>")
        children.append("<Enums>")
        children += [f"  <{s['name']}>{s['value']}</{s['name']}>" for s in states]
        children.append("</Enums>")
        return children

    def bits_children(self, bits):
        lines = ["<Bits>"]
        lines += [f'  <{b["name"]} OFFSET="{b.get("bit_offset", 0)}" WIDTH="{b.get("bits", 1)}"/>'
                  for b in bits]
        lines.append("</Bits>")
        return lines

    def helper(self, type_id, layout, make):
        """The helper type type_id, made once; the same name for another layout is an error."""
        if f"SNVT_{type_id}" in self.facts:
            raise FactError(f"helper type {type_id} would hide the standard type of that name")
        known = self.helper_layouts.get(type_id)
        if known is None:
            self.helper_layouts[type_id] = layout
            self.helpers[type_id] = make()
        elif known != layout:
            raise FactError(f"helper type {type_id} stands for two different layouts")
        return type_id

    def scalar_field_type(self, owner, field, length):
        """The type of a plain field: a standard type it is the same as, a shared base type, or a
        helper of its own."""
        for same in field.get("same_as", []):
            if same in self.facts:
                return short_id(same)
        if field["type"].startswith("SNVT_") and field["type"] in self.facts:
            return short_id(field["type"])
        kind = field["kind"]
        layout = (kind, length, field.get("A"), field.get("B"), field.get("C"), field.get("min"),
                  field.get("max"), field.get("invalid"), field.get("unit", ""))
        base = BASE_TYPES.get(field["type"])
        if (base and kind == base["kind"] and length == base["length"]
                and field.get("min") == base["min"] and field.get("max") == base["max"]
                and (field.get("A"), field.get("B"), field.get("C")) == (1, 0, 0)
                and field.get("invalid") is None and not field.get("unit")):
            type_id = field["type"]
        else:
            type_id = f"{owner}_{field['name']}"
        return self.helper(type_id, layout, lambda: self.element(
            type_id, [("FACTOR", "1"), ("K4REGION", "0")],
            self.numeric_children(type_id, kind, length, field.get("A"), field.get("B"),
                                  field.get("C"), field.get("min"), field.get("max"),
                                  field.get("invalid"), field.get("unit", ""))))

    def enum_field_type(self, owner_name, field):
        chosen = self.extras["field_enumerations"].get(f"{owner_name}.{field['name']}")
        if chosen:
            states = self.extras["enumerations"][chosen]
            return self.helper(chosen, ("Enum", tuple((s["name"], s["value"]) for s in states)),
                               lambda: self.element(chosen, [("FACTOR", "1"), ("K4REGION", "0")],
                                                    self.enum_children(chosen, states)))
        if field["type"] in self.enum_ids:
            return self.enum_ids[field["type"]]
        type_id = field["type"]
        states = field["states"]
        return self.helper(type_id, ("Enum", tuple((s["name"], s["value"]) for s in states)),
                           lambda: self.element(type_id, [("FACTOR", "1"), ("K4REGION", "0")],
                                                self.enum_children(type_id, states)))

    def field_entries(self, owner_name, owner_id, fields):
        """(element name, type id) for each field of a structure, bit fields gathered by byte."""
        entries = []
        i = 0
        while i < len(fields):
            f = fields[i]
            if f["kind"] == "Union":
                # Alternatives over the same bytes: one field list cannot switch between them, so
                # the union is its raw bytes, each settable in full.
                byte = {"kind": "UnsignedNumeric", "type": "unsigned_short", "length": 1,
                        "A": 1, "B": 0, "C": 0, "min": 0, "max": 255, "invalid": None}
                byte_type = self.scalar_field_type(owner_id, byte, 1)
                if f["length"] == 1:
                    entries.append((f["name"], byte_type))
                else:
                    entries += [(f"{f['name']}_{n}", byte_type) for n in range(f["length"])]
                i += 1
                continue
            if f["kind"] == "Bitfield" and f.get("fields"):
                # A container of named bits over several bytes.
                type_id = f"{owner_id}_{f['name']}"
                bits = [dict(b, bit_offset=8 * b["offset"] + b.get("bit_offset", 0))
                        for b in f["fields"]]
                layout = ("Bits", f["length"], tuple((b["name"], b["bit_offset"], b.get("bits"))
                                                     for b in bits))
                self.helper(type_id, layout, lambda: self.element(
                    type_id, [("FACTOR", "1"), ("K4REGION", "0")],
                    self.numeric_children(type_id, "Bitfield", f["length"], 1, 0, 0, 0,
                                          256 ** f["length"] - 1, None, "")
                    + self.bits_children(bits)))
                entries.append((f["name"], type_id))
            elif f["kind"] == "Bitfield":
                group = [f]
                while (i + 1 < len(fields) and fields[i + 1]["kind"] == "Bitfield"
                       and fields[i + 1]["offset"] == f["offset"]):
                    i += 1
                    group.append(fields[i])
                name = f["name"] if len(group) == 1 else f"bits_{f['offset']}"
                type_id = f"{owner_id}_{name}"
                layout = ("Bits", tuple((b["name"], b.get("bit_offset"), b.get("bits"))
                                        for b in group))
                self.helper(type_id, layout, lambda: self.element(
                    type_id, [("FACTOR", "1"), ("K4REGION", "0")],
                    self.numeric_children(type_id, "Bitfield", 1, 1, 0, 0, 0, 255, None, "")
                    + self.bits_children(group)))
                entries.append((name, type_id))
            elif f["kind"] == "Struct" and f["type"] in self.facts:
                # A standard structure nested whole.
                entries.append((f["name"], short_id(f["type"])))
            elif f["kind"] == "Struct":
                type_id = f"{owner_id}_{f['name']}"
                inner = self.field_entries(f"{owner_name}.{f['name']}", type_id, f["fields"])
                self.helper(type_id, ("Struct", tuple(inner)), lambda: self.element(
                    type_id, [("FACTOR", "1"), ("K4REGION", "0")],
                    self.struct_children(type_id, f["length"], inner)))
                entries.append((f["name"], type_id))
            elif f.get("array"):
                element = dict(f)
                element.pop("array")
                size = f["element_length"]
                for n in range(f["array"]):
                    entries.append((f"{f['name']}_{n}",
                                    self.scalar_field_type(owner_id, element, size)
                                    if f["kind"] != "Enum" else self.enum_field_type(owner_name, f)))
            elif f["kind"] == "Enum" or f"{owner_name}.{f['name']}" in self.extras["field_enumerations"]:
                entries.append((f["name"], self.enum_field_type(owner_name, f)))
            else:
                entries.append((f["name"], self.scalar_field_type(owner_id, f, f["length"])))
            i += 1
        return entries

    def struct_children(self, type_id, length, entries):
        children = [f"<NAME>{escape(type_id)}</NAME>", "<TYPE>Struct</TYPE>",
                    f"<LENGTH>{length}</LENGTH>", "<Fields>"]
        children += [f"  <{name}>{field_type}</{name}>" for name, field_type in entries]
        children.append("</Fields>")
        return children

    def standard(self, t):
        """The catalogue element of a standard type, and the kind it was written as."""
        type_id = short_id(t["name"])
        attributes = [("FACTOR", "1"), ("K4REGION", "0"), ("INDEX", str(t["index"]))]
        if t["obsolete"]:
            attributes.append(("OBSOLETE", "1"))
        kind = t["kind"]
        fields = t.get("fields") or []
        if kind in NUMERIC:
            children = self.numeric_children(type_id, kind, t["length"], t["A"], t["B"], t["C"],
                                             t["min"], t["max"], t["invalid"], t["unit"])
        elif kind == "Enum":
            children = self.enum_children(type_id, t["states"])
        elif kind == "Bitfield":
            children = self.numeric_children(type_id, kind, t["length"], t["A"], t["B"], t["C"],
                                             t["min"], t["max"], t["invalid"], t["unit"])
            children += self.bits_children(
                [dict(b, bit_offset=8 * b["offset"] + b.get("bit_offset", 0)) for b in fields])
        elif kind == "Textual" and t["length"] == 1:
            # One character: its code, as a number.
            kind = "UnsignedNumeric"
            children = self.numeric_children(type_id, kind, 1, 1, 0, 0, 0, 255, None, "")
        elif kind == "Textual" and len(fields) == 1 and fields[0].get("element_length") == 1:
            children = [f"<NAME>{type_id}</NAME>", "<TYPE>Textual</TYPE>",
                        f"<LENGTH>{t['length']}</LENGTH>"]
        else:
            # A structure, or a text whose bytes are not one character each: its fields.
            kind = "Struct"
            children = self.struct_children(type_id, t["length"],
                                             self.field_entries(t["name"], type_id, fields))
        return self.element(type_id, attributes, children), kind


class Unsupported(Exception):
    """A layout the catalogue format cannot hold."""


def read_user_types(path):
    with open(path, encoding="utf-8") as f:
        text = f.read()
    start = text.index("<UserTypes>") + len("<UserTypes>")
    end = text.index("</UserTypes>")
    return text[start:end].strip("\n")


def nvo_table(entries, extras):
    """Each type accepts itself and the types of the same quantity and unit with the same raw
    layout."""
    groups = {}
    for type_id, key in entries:
        if key is not None:
            groups.setdefault(key, []).append(type_id)
    lines = ['<?xml version="1.0" encoding="UTF-8"?>',
             "<!-- Written by scripts/gen_catalogue.py from data/. For each output type, the input",
             "     types it may be connected to: itself, and every type of the same physical quantity",
             "     and unit whose raw layout is identical (same kind, length and scaling A, B, C), so",
             "     that its bytes mean the same value on both sides. -->",
             "<NVOTable>"]
    for type_id, key in entries:
        accepted = groups.get(key, [type_id]) if key is not None else [type_id]
        lines.append(f"  <SNVT_{type_id}>" + "".join(f"<SNVT_{a}/>" for a in accepted)
                     + f"</SNVT_{type_id}>")
    lines.append("</NVOTable>")
    return "\n".join(lines) + "\n"


def unit_table(units, us_units, user_layout):
    """US customary display units per type: the unit, the exact factor and offset from the SI
    unit (us = si x factor + offset), for every type whose unit has a primary US counterpart."""
    primary = {r["si_unit"]: r for r in us_units if r["primary"] and r["si_unit"] != r["us_unit"]}
    lines = ['<?xml version="1.0" encoding="UTF-8"?>',
             "<!-- Written by scripts/gen_catalogue.py from data/us-units.json: the US customary",
             "     display unit of each type of examples/snvts.xml that has one, with the exact",
             "     factor and offset from its catalogue unit (us = si x FACTOR + OFFSET); a",
             "     DIFFERENCE is converted without the offset. A type not listed shows its catalogue",
             "     unit in both systems. -->",
             "<Units>"]
    for type_id, unit in list(units.items()) + list(user_layout.items()):
        row = primary.get(unit)
        if not row:
            continue
        offset = "0" if row["differential"] else number_text(row["offset"])
        lines.append(f'  <SNVT_{type_id} UNIT="{escape(row["us_unit"])}" '
                     f'FACTOR="{row["exact_factor"]}" OFFSET="{offset}"'
                     + (' DIFFERENCE="1"' if row["differential"] else "") + "/>")
    lines.append("</Units>")
    return "\n".join(lines) + "\n"


def write_atomically(path, text):
    folder = os.path.dirname(path)
    handle, temporary = tempfile.mkstemp(dir=folder, prefix=".gen-", suffix=".xml")
    try:
        with os.fdopen(handle, "w", encoding="utf-8") as f:
            f.write(text)
        # mkstemp makes the file private; the catalogue is read by everyone.
        umask = os.umask(0)
        os.umask(umask)
        os.chmod(temporary, 0o666 & ~umask)
        os.replace(temporary, path)
    except BaseException:
        if os.path.exists(temporary):
            os.unlink(temporary)
        raise


def build(facts, extras, user_types, us_units, schedules=None):
    catalogue = Catalogue(facts, extras)
    for t in facts:
        catalogue.validate(t)
    written = []
    table_entries = []
    for name in catalogue.order:
        t = catalogue.facts[name]
        made = (dict(catalogue.helpers), dict(catalogue.helper_layouts))
        try:
            text, kind = catalogue.standard(t)
        except Unsupported as reason:
            # Field types made for a type left out would be orphans.
            catalogue.helpers, catalogue.helper_layouts = made
            catalogue.left_out[name] = str(reason)
            continue
        written.append(text)
        key = None
        if kind in NUMERIC and t["quantity"]:
            key = (t["quantity"], t["unit"], kind, t["length"], t["A"], t["B"], t["C"])
        table_entries.append((short_id(name), key))
    # A user type of a quantity joins the standard types of that quantity and layout.
    for type_id, (kind, length, a, b, c, unit) in user_layouts(user_types).items():
        quantity = extras.get("user_type_quantities", {}).get(type_id)
        key = (quantity, unit, kind, length, a, b, c) if quantity and kind in NUMERIC else None
        table_entries.append((type_id, key))

    header = ['<?xml version="1.0" encoding="UTF-8"?>',
              "<!-- Written by scripts/gen_catalogue.py from data/snvts.json, data/catalogue.json and",
              "     data/user-types.xml: edit those and run the script again. The standard types in",
              "     index order (INDEX, OBSOLETE), then the field types they use, then the user",
              "     types. MIN, MAX and INVALIDVALUE are engineering values; value = A x 10^B x",
              "     (raw + C). A bit field lists its named bits in Bits: OFFSET counts from the most",
              "     significant bit of the field, WIDTH in bits. -->"]
    if catalogue.left_out:
        header.append("<!-- Left out, as the field list of this format cannot hold them:")
        header += [f"     {name}: {reason}" for name, reason in sorted(catalogue.left_out.items())]
        header.append("-->")
    body = ["<SNVTS>", "  <!-- Standard types -->"] + written
    body.append("  <!-- Field types -->")
    body += [catalogue.helpers[k] for k in sorted(catalogue.helpers)]
    body.append("  <!-- User types -->")
    body.append(user_types)
    if schedules:
        lengths = {short_id(t["name"]): t["length"] for t in facts}
        body.append(schedule_types(schedules, lengths))
    body.append("</SNVTS>")
    user_units = {type_id: layout[5] for type_id, layout in user_layouts(user_types).items()
                  if layout[5] and layout[0] in NUMERIC}
    return ("\n".join(header + body) + "\n", nvo_table(table_entries, extras),
            unit_table(catalogue.units, us_units, user_units), catalogue)


def user_layouts(user_types):
    """Kind, length, scaling and unit of each user type of the user-types document."""

    root = ElementTree.fromstring("<UserTypes>" + user_types + "</UserTypes>")
    layouts = {}
    for element in root:
        type_id = element.tag[5:]

        def number(tag):
            child = element.find(tag)
            return int(child.text) if child is not None else None

        kind = element.findtext("TYPE")
        layouts[type_id] = (kind, number("LENGTH"), number("A_COEF"), number("B_COEF"),
                            number("C_COEF"), element.findtext("UNIT") or "")
    return layouts


def scpt_table(scpts, catalogue_text):
    """The standard configuration property types: index, name, and the catalogue type a
    property of a type built on a standard type takes; the others give their kind and size."""
    known = {t.tag for t in ElementTree.fromstring(catalogue_text)}
    lines = ['<?xml version="1.0" encoding="UTF-8"?>',
             "<!-- Written by scripts/gen_catalogue.py from data/scpts.json. One SCPT per",
             "     standard configuration property type: INDEX, NAME, KIND (snvt: built on the",
             "     catalogue type TYPE; scaled, enum, structure, union: a type of its own;",
             "     inheriting: the type of what it applies to) and SIZE in bytes. -->",
             "<SCPTS>"]
    for scpt in sorted(scpts, key=lambda s: s["index"]):
        attributes = [("INDEX", str(scpt["index"])), ("NAME", scpt["name"]), ("KIND", scpt["kind"])]
        base = scpt.get("base_name")
        if scpt["kind"] == "snvt" and base:
            if base not in known:
                raise FactError(f"{scpt['name']} is built on {base}, which the catalogue lacks")
            attributes.append(("TYPE", short_id(base)))
        if scpt.get("size") is not None:
            attributes.append(("SIZE", str(scpt["size"])))
        if scpt.get("obsolete"):
            attributes.append(("OBSOLETE", "1"))
        lines.append("  <SCPT " + " ".join(f'{k}="{escape(v)}"' for k, v in attributes) + "/>")
    lines.append("</SCPTS>")
    return "\n".join(lines) + "\n"


def schedule_types(schedules, lengths):
    """The schedule types and their field types as catalogue elements: flat structures of
    switching points (time, value), holiday ranges and exception days."""
    elements = []
    for t in schedules["field_types"]:
        children = [f"<NAME>{t['id']}</NAME>", "<TYPE>UnsignedNumeric</TYPE>",
                    f"<DEFAULT>{t['default']}</DEFAULT>"]
        if t.get("unit"):
            children.append(f"<UNIT>{escape(t['unit'])}</UNIT>")
        children += [f"<MIN>{t['min']}</MIN>", f"<MAX>{t['max']}</MAX>",
                     f"<LENGTH>{t['length']}</LENGTH>", "<A_COEF>1</A_COEF>", "<B_COEF>0</B_COEF>",
                     "<C_COEF>0</C_COEF>"]
        if t.get("invalid") is not None:
            children.append(f"<INVALIDVALUE>{t['invalid']}</INVALIDVALUE>")
        elements.append((t["id"], t["comment"], children))
        lengths[t["id"]] = t["length"]
    points = range(1, schedules["points_per_day"] + 1)
    for t in schedules["types"]:
        fields = []
        if t["form"] == "week":
            for day in schedules["days"]:
                for n in points:
                    fields += [(f"{day}{n}_time", "sched_time"), (f"{day}{n}_{t['value']}", t["value_type"])]
        elif t["form"] == "day":
            for n in points:
                fields += [(f"p{n}_time", "sched_time"), (f"p{n}_{t['value']}", t["value_type"])]
        elif t["form"] == "holidays":
            for r in range(1, schedules["holiday_ranges"] + 1):
                fields += [(f"h{r:02}_year", "sched_year"), (f"h{r:02}_from_month", "sched_month"),
                           (f"h{r:02}_from_day", "sched_day"), (f"h{r:02}_to_month", "sched_month"),
                           (f"h{r:02}_to_day", "sched_day")]
        elif t["form"] == "exceptions":
            for r in range(1, schedules["exception_days"] + 1):
                fields += [(f"x{r:02}_year", "sched_year"), (f"x{r:02}_month", "sched_month"),
                           (f"x{r:02}_day", "sched_day")]
                for n in points:
                    fields += [(f"x{r:02}{n}_time", "sched_time"),
                               (f"x{r:02}{n}_{t['value']}", t["value_type"])]
        else:
            raise FactError(f"schedule type {t['id']} has an unknown form {t['form']}")
        length = 0
        for _, field_type in fields:
            if field_type not in lengths:
                raise FactError(f"schedule type {t['id']} uses {field_type}, which has no length")
            length += lengths[field_type]
        children = [f"<NAME>{t['id']}</NAME>", "<TYPE>Struct</TYPE>", f"<LENGTH>{length}</LENGTH>",
                    "<Fields>"] + [f"  <{name}>{field_type}</{name}>" for name, field_type in fields]
        children.append("</Fields>")
        elements.append((t["id"], t["comment"], children))
    lines = ["  <!-- Schedule types, written from data/schedules.json -->"]
    for type_id, comment, children in elements:
        lines.append(f'  <SNVT_{type_id} FACTOR="1" K4REGION="0">')
        lines.append(f"    <!-- {escape(comment)} -->")
        lines += ["    " + c for c in children]
        lines.append(f"  </SNVT_{type_id}>")
    return "\n".join(lines)


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--data", default=os.path.join(ROOT, "data"))
    parser.add_argument("--out", default=os.path.join(ROOT, "examples"))
    parser.add_argument("--check", action="store_true", help="validate only; write nothing")
    options = parser.parse_args(argv)
    with open(os.path.join(options.data, "snvts.json"), encoding="utf-8") as f:
        facts = json.load(f)
    with open(os.path.join(options.data, "catalogue.json"), encoding="utf-8") as f:
        extras = json.load(f)
    user_types = read_user_types(os.path.join(options.data, "user-types.xml"))
    with open(os.path.join(options.data, "us-units.json"), encoding="utf-8") as f:
        us_units = json.load(f)
    try:
        schedules_path = os.path.join(options.data, "schedules.json")
        schedules = None
        if os.path.exists(schedules_path):
            with open(schedules_path, encoding="utf-8") as f:
                schedules = json.load(f)
        catalogue_text, table_text, units_text, catalogue = build(facts, extras, user_types,
                                                                  us_units, schedules)
    except FactError as error:
        print(f"gen_catalogue: {error}; nothing written", file=sys.stderr)
        return 1
    scpts_path = os.path.join(options.data, "scpts.json")
    scpts_text = None
    if os.path.exists(scpts_path):
        with open(scpts_path, encoding="utf-8") as f:
            try:
                scpts_text = scpt_table(json.load(f), catalogue_text)
            except FactError as error:
                print(f"gen_catalogue: {error}; nothing written", file=sys.stderr)
                return 1
    if not options.check:
        if scpts_text:
            write_atomically(os.path.join(options.out, "scpts.xml"), scpts_text)
        write_atomically(os.path.join(options.out, "snvts.xml"), catalogue_text)
        write_atomically(os.path.join(options.out, "nvotable.xml"), table_text)
        write_atomically(os.path.join(options.out, "units.xml"), units_text)
    standard = len(facts) - len(catalogue.left_out)
    print(f"gen_catalogue: {standard} of {len(facts)} standard types, "
          f"{len(catalogue.helpers)} field types, {len(catalogue.left_out)} left out")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
