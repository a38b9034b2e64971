#!/usr/bin/env python3
"""Puts together what the manual is made of: its own pages (docs/manual), and those of what is described elsewhere: the reference of the classes, of the
published interface's IDL; what is asked of the engine, of the record of what each member asks; the
samples, of their folders.

    reference.py ROOT COMPILER PICTURES FOLDER

Fails when there is a member of which something is not said.
"""

import re
import sys
from pathlib import Path

import languages
import published

# What a line of the transcript tells that is none of the engine's objects.
NO_OBJECTS = {"trace", "operations", "row", "dialog", "says", "setting", "progress", "shortcut", "help", "asks"}
OPERATIONS = re.compile(
    r"(Create|Open|Read|Count|FindFirst|FindNext|Find|Write|Close|MoveFirst|MoveNext|MoveTo|Position|RecordNumber"
    r"|AddNew|Edit|Update|Version|Connect|ConnectNT|Disconnect|Key|ExtraText|CustomerUnitPrice|SupplierUnitPrice"
    r"|Transactions|LastError|Number|Text)(?:\((.*)\)| = .*)?"
)

# What the company of the transcript, and what its user does there, do not lead to: in its words, and by
# members that do the same.
MORE = """
Customers.ShowDiscBDown
  like Customers.GetDiscPercent
Products.GetSpecialPrice
  Pricing: CustomerUnitPrice("ABC001", "BOLT")
Products.GetSupplierPrice
  Pricing: SupplierUnitPrice("BOLT", "SUP001")
  PriceIndex: RecordNumber
  PriceData: Read(1); STORED_PRICE
Products.UpdateAllocQty
  StockRecord: Edit; QTY_ALLOCATED = 1; Update
Nominal.FastList
  NominalData: FindFirst("ACCOUNT_REF", "4*")
  NominalIndex: Position
PurchaseOrders.FastList
  PopData: FindFirst("ORDER_NUMBER", "7*")
  PopIndex: Key = "701"; Find(False); Position
SalesOrders.FastList
  SopIndex: Key = "4001"; Find(False); Position
Messaging.LogonUser
  Engine: LastError; Number; Text
Messaging.CheckForLogon
  like Messaging.LogonUser
cAccessRights.IsUserAllowedAccess
  AccessData: CUST_RECORD; SUPP_RECORD; NOM_RECORD; PROD_RECORD; INV_EDIT; SOP_ENTRY; POP_ENTRY; Count; Read(1)
cDeliveryAddress.GetAddress
  CompanyDeliveryData: Create; Open(64); Read(1); ACCOUNT_REF; ADDRESS_1; ADDRESS_REF; CONTACT_NAME; DEFAULT_REF
  CompanyDeliveryData: DESCRIPTION; EMAIL; FAX; NAME; REFERENCE; TELEPHONE; Close
  like Customers.FastList
  like Suppliers.FastList
  like Suppliers.List
"""
# Fields of which there are many.
FAMILIES = {
    r"T\d+_(RATE|DESCRIPTION)": r"T0_\1 to T99_\1",
    r"DISC_[A-E]_LEVEL_\d+_(QTY|RATE)": r"DISC_A_LEVEL_1_\1 to DISC_E_LEVEL_10_\1",
    r"(SALES_AMOUNT_SOLD|SALES_ADD_DISC)_\d+": r"\1_1 to \1_10",
    r"(ADDRESS|DEL_ADDRESS)_\d": r"\1_1 to \1_5",
    r"ADDRESS_PROMPT_\d": "ADDRESS_PROMPT_1 to ADDRESS_PROMPT_6",
    r"(\w+)_(BF|FUTURE|MTH\d+)": r"\1_BF, \1_FUTURE and \1_MTH1 to \1_MTH12",
}


class Use:
    """What a member asks of one object of the engine's."""

    def __init__(self):
        self.operations, self.read, self.written = {}, {}, {}

    def add(self, other):
        for mine, theirs in zip(vars(self).values(), vars(other).values()):
            mine.update(theirs)


def engine_use(transcript):
    """{member: {object: Use}}, in the order in which it is asked."""
    members = {}
    for line in transcript.splitlines():
        if not line:
            continue
        if not line.startswith(" "):
            uses = members.setdefault(line.partition(",")[0], {})
            continue
        if line.startswith("  like "):
            for name, other in members[line.split()[1]].items():
                uses.setdefault(name, Use()).add(other)
            continue
        name, _, steps = line.strip().partition(": ")
        if name == "StockRecord.":  # and "ransactions", as the transcript has it
            name = "StockRecord.Transactions"
        if name in NO_OBJECTS:
            continue
        for step in re.findall(r'(?:"(?:[^"]|"(?![;,)]|$))*"|[^;"])+', steps):
            use, step = uses.setdefault(name, Use()), step.strip().removeprefix("ransactions.")
            if match := OPERATIONS.fullmatch(step):
                mode = f"({match[2]})" if match[1] == "Open" else ""
                use.operations[match[1] + mode] = True
            else:
                field, _, value = step.partition(" = ")
                field = "every field" if field.isdigit() else field.upper()
                (use.written if value else use.read)[field] = True
    return {member: uses for member, uses in members.items() if uses}


def numbered(fields):
    """Each family once."""
    found = {}
    for field in fields:
        for pattern, text in FAMILIES.items():
            if re.fullmatch(pattern, field):
                field = re.sub(pattern, text, field)
                break
        found[field] = True
    return list(found)


def literals(words):
    return ", ".join(f"``{word}``" if word != "every field" else word for word in words)


def use_lines(uses):
    for name, use in uses.items():
        text = f"``{name}``: {literals(use.operations)}"
        if use.read:
            text += f"; reads {literals(numbered(use.read))}"
        if use.written:
            text += f"; sets {literals(numbered(use.written))}"
        yield text


def heading(text, line):
    return [text, line * len(text), ""]


def signature(kind, member):
    if member.is_property:
        access = "read and written" if member.puts and member.gets else "read-only"
        return f"{kind.name}.{member.name} As {member.result.word()}", access

    def shown(parameter):
        text = f"{'ByRef ' if parameter.type != parameter.base or '()' in parameter.word() else ''}{parameter.name}"
        kind_of = parameter.base if parameter.base not in published.KINDS else parameter.word()
        text += f" As {kind_of}"
        return f"[{text} = {parameter.default}]" if "optional" in parameter.flags else text

    text = f"{kind.name}.{member.name}({', '.join(map(shown, member.passed))})"
    return (f"{text} As {member.result.word()}" if member.result else text), ""


def escaped(text):
    """Names stand for themselves, and no character has a meaning."""
    text = re.sub(r"([\\*`|_])", r"\\\1", text)
    return re.sub(r'"((?:[^"])*)"', lambda m: f'"{m[1]}"', text)


def member_lines(interface, kind, member, uses):
    yield f".. _{kind.name}.{member.name}:"
    yield ""
    yield from heading(member.name, "-")
    text, access = signature(kind, member)
    yield from [".. code-block:: text", "   :class: signature", "", f"   {text}", ""]
    yield from [escaped(member.help), ""]
    for remark in member.remarks:
        yield escaped(remark) + (" See :doc:`/dialogs`." if remark.startswith("Shows the") else "")
        yield ""
    for name, meaning in member.meanings.items():
        yield f":{name}: {escaped(meaning)}"
    if access:
        yield f":Access: {access}"
    yield f":Neutral result: {escaped(member.neutral)}"
    if member.settings:
        yield f":Settings: {escaped(member.settings)} See :doc:`/settings`."
    used = list(use_lines(uses.get(f"{kind.name}.{member.name}", {})))
    if used:
        yield f":Engine: {used[0]}"
        for line in used[1:]:
            yield from ["", f"         {line}"]
    yield ""
    for example in member.examples:
        for language in languages.ALL:
            yield from [f".. tab:: {language.name}", "", f"   .. code-block:: {language.lexer}", ""]
            for line in language.example(interface, kind, member, example):
                yield f"      {line}".rstrip()
            yield ""


def class_page(interface, kind, uses):
    yield from heading(kind.name, "=")
    yield from [escaped(kind.remarks), ""]
    yield from [
        ".. list-table::",
        "   :class: identity",
        "",
        "   * - Created as",
        f"     - ``{interface.name}.{kind.name}``",
        "   * - Class identifier",
        f"     - ``{published.braced(kind.id)}``",
        f"   * - Interface ``{kind.interface}``",
        f"     - ``{published.braced(kind.interface_id)}``",
        "",
    ]
    yield from ["An object of it, as the examples below use it:", ""]
    for language in languages.ALL:
        yield from [f".. tab:: {language.name}", "", f"   .. code-block:: {language.lexer}", ""]
        yield from (f"      {line}".rstrip() for line in language.create(interface, kind))
        yield ""
    yield from [".. list-table::", "   :header-rows: 1", "", "   * - Member", "     - Gives"]
    for member in kind.members:
        yield f"   * - :ref:`{member.name} <{kind.name}.{member.name}>`"
        yield f"     - {escaped(member.help)}"
    yield ""
    for member in kind.members:
        yield from member_lines(interface, kind, member, uses)


def enumerations_page(interface):
    yield from heading("Enumerations", "=")
    for name, (text, values) in interface.enumerations.items():
        yield from [f".. _{name}:", "", *heading(name, "-"), escaped(text), ""]
        yield from [".. list-table::", "   :header-rows: 1", "", "   * - Name", "     - Value", "     - Means"]
        for value, (number, meaning) in values.items():
            yield from [f"   * - ``{value}``", f"     - {number}", f"     - {escaped(meaning)}"]
        yield ""
    yield "Languages without the type library pass the number."


def index_page(interface):
    yield from heading("Reference", "=")
    yield from ["What is said here stands in the library's interface definition, once; the prompt's ``help`` shows the same.", ""]
    yield from [".. list-table::", "   :header-rows: 1", "", "   * - Class", "     - For", "     - Members"]
    for kind in interface.classes:
        yield f"   * - :doc:`{kind.name}`"
        yield f"     - {kind.help.removeprefix('Core Accounts: ')}"
        yield f"     - {len(kind.members)}"
    yield ""
    yield from [".. toctree::", "   :hidden:", "", *(f"   {kind.name}" for kind in interface.classes), "   enumerations"]


# How the engine's objects are called by people, in the order of dispatch_ids.h.
OBJECTS = {
    "Workspace": "workspace",
    "Engine": "engine",
    "Error": "error",
    "DataFile": "data file",
    "Record": "record",
    "Transactions": "transactions of a stock record",
    "Index": "index",
    "Fields": "fields",
    "Field": "field",
}


def engine_page(ids, uses):
    """The operations with their ids, and who asks what."""
    numbers = {}
    for name, body in re.findall(r"struct (\w+)Id \{\s*enum : long \{(.*?)\}", ids, re.S):
        for operation, value in re.findall(r"k(\w+) = (\w+(?:::\w+)?)", body):
            if "::" in value:
                value = numbers[tuple(value.replace("Id::k", " ").split())]
            numbers[name, operation] = value
    yield from heading("Operations, objects, fields", "=")
    yield from ["Made of the library's own table of dispatch ids, and of the record of what each member asks.", ""]
    yield from heading("Operations and dispatch ids", "-")
    yield from [".. list-table::", "   :header-rows: 1", "", "   * - Object", "     - Operation", "     - Dispatch id"]
    for name, words in OBJECTS.items():
        for (of, operation), value in numbers.items():
            if of == name:
                operation = {"ItemByName": "Item", "ConnectNt": "ConnectNT"}.get(operation, operation)
                yield from [f"   * - {words}", f"     - ``{operation}``", f"     - {int(value, 0)}" + (f" ({value})" if value.startswith("0x") else "")]
    named = re.findall(r'L"(\w+)"', ids)
    yield from ["", f"Without an id, by name: {literals(named)} (of fields, a field, a stock record and the pricing service).", ""]

    yield from heading("Objects and fields", "-")
    yield from [".. list-table::", "   :header-rows: 1", "   :widths: 20 30 50", "", "   * - Object", "     - Operations", "     - Fields"]
    objects = {}
    for member_uses in uses.values():
        for name, use in member_uses.items():
            objects.setdefault(name, Use()).add(use)
    for name in sorted(objects):
        use = objects[name]
        fields = literals(numbered(use.read))
        only_set = [field for field in use.written if field not in use.read]
        if only_set:
            fields += ("; " if fields else "") + f"set: {literals(numbered(only_set))}"
        yield from [f"   * - ``{name}``", f"     - {literals(use.operations)}", f"     - {fields}"]
    yield ""

    yield from heading("By member", "-")
    yield from ["What each member asks when nothing fails, over all its ways. A member that is not here asks nothing.", ""]
    yield from [".. list-table::", "   :header-rows: 1", "   :widths: 25 75", "", "   * - Member", "     - Asks"]
    for member in sorted(uses):
        lines = list(use_lines(uses[member]))
        yield f"   * - :ref:`{member} <{member}>`"
        yield f"     - {lines[0]}"
        for line in lines[1:]:
            yield from ["", f"       {line}"]
    yield ""


# The folders of samples, what their language is called, and how each kind of source is highlighted.
SAMPLES = {
    "vbscript": "VBScript",
    "jscript": "JScript",
    "vba": "VBA",
    "vbnet": "VB.NET",
    "csharp": "C#",
    "cpp": "C++",
    "python": "Python",
    "delphi": "Delphi",
    "freepascal": "Free Pascal",
    "powershell": "PowerShell",
}
SOURCES = {
    ".vbs": "vbscript",
    ".js": "javascript",
    ".bas": "vb.net",
    ".cls": "vb.net",
    ".vb": "vb.net",
    ".cs": "csharp",
    ".cpp": "cpp",
    ".py": "python",
    ".dpr": "delphi",
    ".pas": "delphi",
    ".pp": "delphi",
    ".ps1": "powershell",
}


LABELS = ("Shows", "Build", "Run", "Checked")


def head_of(source):
    """What a sample says of itself in the comment at its head, by label: "Checked run under Wine"."""
    about, label = {}, None
    for line in source.splitlines():
        text = re.sub(r"^(//|'|#) ?", "", line)
        if match := re.match(rf"({'|'.join(LABELS)}) +(.*)", text):
            label = match[1]
            about[label] = match[2]
        elif label and text.startswith("    "):
            about[label] += " " + re.sub(" {2,}.*", "", text.strip())
        elif label:
            break
    return about


def samples_pages(examples, folder):
    """A page for each language that has samples, with copies of them."""
    pages = []
    for name, title in SAMPLES.items():
        sources = [path for path in (examples / name).glob("*") if path.suffix in SOURCES]
        sources.sort(key=lambda path: (not path.name.startswith("first"), path.name))
        if not sources:
            continue
        pages.append((name, title))
        lines = [*heading(title, "=")]
        for source in sources:
            text = source.read_text(encoding="utf-8-sig")
            lines += heading(source.name, "-")
            about = head_of(text)
            assert not about or {"Shows", "Run", "Checked"} <= about.keys(), source
            for label in LABELS:
                if about.get(label):
                    lines.append(f":{label}: {escaped(about[label])}")
            write(folder / source.name, [text.rstrip("\n")])
            lines += ["", f".. literalinclude:: {source.name}", f"   :language: {SOURCES[source.suffix]}", ""]
        write(folder / f"{name}.rst", lines)
    lines = [*heading("Samples", "=")]
    lines += ["Complete small hosts, in the folder ``samples`` of ``sdk.zip``, ``examples`` beside the library's sources. Each says at", "its top how it is run, what of it has been run, and what has only been compiled or read. With ``\"\"`` for a", "CONNECTION they do without a database.", ""]
    lines += [".. toctree::", "", *(f"   {title} <{name}>" for name, title in pages)]
    write(folder / "index.rst", lines)


written = set()


def write(path, content):
    """Leaves a file alone that is the same: what is made of it need not be made again."""
    written.add(path)
    data = content if isinstance(content, bytes) else ("\n".join(content) + "\n").encode()
    if not path.exists() or path.read_bytes() != data:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


def main(root, compiler, pictures, folder):
    root, folder = Path(root), Path(folder)
    idl = root / "src/windows/server/ArdObjects100.idl"
    transcript = root / "tests/core/transcript.txt"
    ids = root / "src/windows/engine/dispatch_ids.h"
    interface = published.read(idl, compiler)
    gaps = [f"{kind.name}: what it is for is not said" for kind in interface.classes if not kind.remarks]
    gaps += [f"{kind.name}.{m.name}: {lack} is not said" for kind in interface.classes for m in kind.members for lack in m.lacks()]
    if gaps:
        sys.exit("\n".join(gaps))
    uses = engine_use(transcript.read_text() + MORE)
    unknown = set(uses) - {f"{kind.name}.{member.name}" for kind in interface.classes for member in kind.members}
    assert not unknown, unknown
    reference = folder / "reference"
    write(reference / "index.rst", index_page(interface))
    write(reference / "enumerations.rst", enumerations_page(interface))
    for kind in interface.classes:
        write(reference / f"{kind.name}.rst", class_page(interface, kind, uses))
    samples_pages(root / "examples", folder / "samples")
    write(folder / "engine_tables.rst", engine_page(ids.read_text(), uses))
    copies = {path.relative_to(root / "docs/manual"): path for path in (root / "docs/manual").rglob("*") if path.is_file()}
    copies |= {Path("pictures") / path.name: path for path in Path(pictures).glob("*.png")}
    if (change_log := root / "CHANGELOG.md").exists():
        copies[Path("change_log.md")] = change_log
    for name in ("deployment.md", "building.md", "compatibility.md", "change_log.md"):
        if Path(name) not in copies:
            write(folder / name, [f"# {name.removesuffix('.md').replace('_', ' ').capitalize()}", "", "There is no such page yet."])
    for name, path in copies.items():
        write(folder / name, path.read_bytes())
    # What an earlier run has left, and nothing makes any more.
    for path in folder.rglob("*"):
        if path.is_file() and path not in written:
            path.unlink()


if __name__ == "__main__":
    main(*sys.argv[1:])
