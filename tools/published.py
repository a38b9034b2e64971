#!/usr/bin/env python3
"""Reads the published interface out of its IDL file, which is the one description of every member, and
writes what is derived of it in C++.

    published.py IDL FOLDER COMPILER

writes FOLDER/<name>_members.h, by which the classes' members are called natively by name, and lists
them in FOLDER/<name>_members.txt. What the automation server is made of, shell_header() writes for
type_library.py.
"""

import re
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

STRING = re.compile(r'"((?:[^"\\]|\\.)*)"')
COMMENT_OR_STRING = re.compile(r'//[^\n]*|/\*.*?\*/|' + STRING.pattern, re.S)

# Types: what the IDL calls them, what late binding does (windows/server/dispatch.h), and people.
KINDS = {
    "BSTR": ("String", "String"),
    "VARIANT_BOOL": ("Boolean", "Boolean"),
    "short": ("Integer", "Integer"),
    "long": ("Long", "Long"),
    "double": ("Double", "Double"),
    "DATE": ("DateTime", "Date"),
    "IDispatch*": ("ObjectReference", "Object"),
    "SAFEARRAY(BSTR)*": ("StringArray", "String()"),
}
# How a number is written that may be left out.
CONSTANTS = {"VARIANT_BOOL": "VARIANT_BOOL", "short": "SHORT", "long": "LONG"}
# The properties that every class keeps in the same place, its context (context_properties.h).
CONTEXT = {
    "AppName": "AppName",
    "RegistryPath": "RegistryPath",
    "ArdWorkspace": "ArdWorkspace",
    "ArdEngine": "ArdEngine",
    "oDBaseConn": "DBaseConn",
}
# What a property of a type is before it has been set, and how people write it.
BLANKS = {"BSTR": '""', "VARIANT_BOOL": "False", "short": "0", "long": "0", "double": "0", "IDispatch*": "Nothing"}


@dataclass
class Parameter:
    name: str
    type: str  # as in the IDL, without blanks: "BSTR*"
    flags: set
    default: str | None  # as in the IDL: "12", '" "'

    @property
    def is_result(self):
        return "retval" in self.flags

    @property
    def is_output(self):
        """By reference. An optional one is only read: nothing need be there to be put out to."""
        return "out" in self.flags and "optional" not in self.flags

    @property
    def base(self):
        """The type without the reference."""
        return self.type if self.type in KINDS else self.type.removesuffix("*")

    def kind(self):
        """For late binding: "Optional<ReadByRef<Boolean>, VARIANT_FALSE>"."""
        kind = KINDS[self.base][0] if self.base in KINDS else f"Enumeration<{self.base}>"
        if self.is_result:
            return kind
        if self.type != self.base:
            kind = f"{'ByRef' if self.is_output else 'ReadByRef'}<{kind}>"
        return f"Optional<{kind}, {self._cpp_default()}>" if "optional" in self.flags else kind

    def _cpp_default(self):
        if self.base == "BSTR":
            assert not self.default.strip('" '), "a text that matters cannot be left out yet"
            return "nullptr"
        return f"{CONSTANTS[self.base]}{{{self.default}}}" if self.base in CONSTANTS else self.default

    def word(self):
        return KINDS[self.base][1] if self.base in KINDS else "Long"


@dataclass
class Example:
    """A call as the prompt takes it: "Name", 'Read("SMI001")', "ArdEngine = engine"."""

    before: list  # what has to go before
    call: str
    user: list  # what the user does in the dialog, as the prompt takes it
    answer: str  # as the prompt gives it; "" for none

    def __str__(self):
        user = f" {{{', '.join(self.user)}}}" if self.user else ""
        return "; ".join([*self.before, self.call + user])


@dataclass
class Member:
    name: str
    number: int
    help: str
    comment: list  # the lines above it
    gets: bool = False
    puts: str = ""  # "put" or "putref"
    puts_first: bool = False
    parameters: list = field(default_factory=list)  # a method's, its result included
    meanings: dict = field(default_factory=dict)  # of the parameters
    neutral: str = ""
    settings: str = ""
    remarks: list = field(default_factory=list)
    examples: list = field(default_factory=list)

    @property
    def is_property(self):
        return self.gets or bool(self.puts)

    @property
    def result(self):
        return next((p for p in self.parameters if p.is_result), None)

    @property
    def passed(self):
        return [p for p in self.parameters if not p.is_result]

    def describe(self, glossary):
        """Takes the lines of comment apart."""
        lines = []
        for line in self.comment:
            if line.startswith(" "):
                lines[-1] += " " + line.strip()
            else:
                lines.append(line)
        names = [p.name for p in self.passed] if not self.is_property else []
        self.meanings = {name: glossary[name] for name in names if name in glossary}
        for line in lines:
            label, _, text = line.partition(": ")
            if label in names:
                self.meanings[label] = text
            elif label == "Neutral":
                self.neutral = text
            elif label == "Settings":
                self.settings = text
            elif label == "Example":
                self.examples.append(example(text))
            else:
                self.remarks.append(line)
        if self.is_property:
            self.neutral = f"{BLANKS[self.result.base]} until it has been {'set' if self.puts else 'filled'}."

    def lacks(self):
        """What is not said of the member."""
        if not self.help:
            yield "what it gives"
        if not self.neutral:
            yield "its neutral answer"
        if not self.examples:
            yield "an example"
        if not self.is_property:
            yield from (f"the argument {p.name}" for p in self.passed if not self.meanings.get(p.name))

    def text(self):
        """All of it but the example, in lines."""
        lines = [self.help] + self.remarks
        lines += [f"{name}: {meaning}" for name, meaning in self.meanings.items()]
        lines += [f"Neutral: {self.neutral}"] + ([f"Settings: {self.settings}"] if self.settings else [])
        return lines + [f"Example: {e}{' -> ' + e.answer if e.answer else ''}" for e in self.examples]


@dataclass
class Class:
    name: str
    id: str
    help: str
    interface: str
    interface_id: str
    remarks: str
    members: list


@dataclass
class Interface:
    name: str
    id: str
    version: str
    classes: list
    enumerations: dict  # {name: (help, {constant: (value, help)})}

    @property
    def constants(self):
        return {name: value for _, values in self.enumerations.values() for name, (value, _) in values.items()}


def example(text):
    text, _, answer = text.partition(" -> ")
    # A quoted text may hold what separates steps, and a step what separates the user's commands.
    *before, call = re.findall(r'(?:"[^"]*"|\{[^}]*\}|[^;"{])+', text)
    call, _, user = call.strip().partition(" {")
    return Example([step.strip() for step in before], call, user.rstrip("}").split(", ") if user else [], answer)


def read(idl, compiler):
    """The published interface. Macros of the IDL are expanded by the compiler."""
    expanded = subprocess.run(
        [compiler, "-E", "-P", "-CC", "-x", "c", "-nostdinc", idl], check=True, capture_output=True, text=True
    ).stdout
    # Texts and comments may hold whatever else has a meaning here: their numbers stand for them.
    texts = []

    def kept(match):
        comment = match[1] is None
        texts.append(re.sub(r"^(//|/\*) ?|(?: ?\*/)$", "", match[0]) if comment else match[1])
        return f"@{len(texts) - 1}@" if comment else f'"{len(texts) - 1}"'

    text = COMMENT_OR_STRING.sub(kept, expanded)
    glossary = dict(re.findall(r"^  (\w+): (.*)", "\n".join(texts).partition("mean the same everywhere:\n")[2], re.M))

    def helpstring(attributes):
        return texts[int(re.search(r'helpstring\("(\d+)"\)', attributes)[1])]

    def commented(numbers):
        return [texts[int(n)] for n in re.findall(r"@(\d+)@", numbers)]

    def members(body):
        found = {}
        for comment, attributes, name, parameters in re.findall(
            r"((?:@\d+@\s*)*)\[([^\]]*)\]\s*HRESULT (\w+)\((.*?)\);", body, re.S
        ):
            number = int(re.search(r"\bid\((\d+)\)", attributes)[1])
            member = found.setdefault(number, Member(name, number, helpstring(attributes), commented(comment)))
            assert member.name == name, f"{name} has the number of {member.name}"
            member.puts_first |= "prop" in attributes and not member.gets and "propget" not in attributes
            member.gets |= "propget" in attributes
            member.puts = next((k for k in ("putref", "put") if f"prop{k}" in attributes), member.puts)
            if "prop" not in attributes or "propget" in attributes:
                member.parameters = [parameter(*p) for p in re.findall(r"\[([^\]]*)\]\s*([^,]+?)\s*(\w+)\s*(?:,|$)", parameters)]
        assert list(found) == list(range(1, len(found) + 1)), "numbers count from 1 in member order"
        for member in found.values():
            member.describe(glossary)
        return list(found.values())

    def parameter(attributes, type_name, name):
        default = re.search(r"defaultvalue\((.*)\)", attributes)
        default = default and STRING.sub(lambda m: f'"{texts[int(m[1])]}"', default[1])
        flags = set(re.findall(r"\b(in|out|optional|retval)\b", attributes))
        return Parameter(name, re.sub(r"\s", "", type_name), flags, default)

    interfaces = {
        name: (identity, " ".join(commented(comment)), members(body))
        for comment, identity, name, body in re.findall(
            r"((?:@\d+@\s*)*)\[object,\s*uuid\(([-\w]+)\)[^\]]*\]\s*interface (\w+) : IDispatch \{(.*?)\};", text, re.S
        )
    }
    classes = [
        Class(name, identity, texts[int(help_text)], interface, *interfaces[interface])
        for identity, help_text, name, interface in re.findall(
            r'\[uuid\(([-\w]+)\),\s*helpstring\("(\d+)"\)\]\s*coclass (\w+) \{\s*\[default\] interface (\w+);', text
        )
    ]
    identity, version, name = re.search(r"\[uuid\(([-\w]+)\), version\(([\d.]+)\)[^\]]*\]\s*library (\w+)", text).groups()
    enumerations = {
        name: (
            texts[int(help_text)],
            {
                n: (int(v), texts[int(t)])
                for t, n, v in re.findall(r'\[helpstring\("(\d+)"\)\] (\w+) = (\d+)', body)
            },
        )
        for help_text, body, name in re.findall(
            r'typedef \[[^\]]*helpstring\("(\d+)"\)\]\s*enum \w+ \{(.*?)\} (\w+);', text, re.S
        )
    }
    assert classes and len(classes) == len(interfaces), "a class for each interface"
    return Interface(name, identity, version, classes, enumerations)


def written_by(idl, tool=__file__):
    return f"// Written by {Path(tool).name} from {Path(idl).name}.\n"


def members_header(published, idl):
    """A function template for each class that names its members to whoever binds them."""

    def literal(parameter):
        words = [parameter.name, parameter.word()]
        if "optional" in parameter.flags:
            words.append(str(published.constants.get(parameter.default, parameter.default)).strip('"'))
        return "{" + ", ".join(f'L"{word}"' for word in words) + "}"

    def help_text(member):
        text = "\\n".join(line.replace("\\", "\\\\").replace('"', '\\"') for line in member.text())
        return f'L"{text}"'

    lines = [written_by(idl), "namespace ard::published {\n"]
    for kind in published.classes:
        lines += ["template <class Class, class Bind>", f"void Bind{kind.name}(Bind& bind) {{"]
        for member in kind.members:
            word = member.result.word() if member.result else ""
            if not member.is_property:
                parameters = ", ".join(map(literal, member.passed))
                lines += [
                    f'  bind.Method({{L"{member.name}", L"{word}", {help_text(member)}}}, &Class::{member.name},',
                    f"              {{{parameters}}});",
                ]
            elif member.name in CONTEXT:
                if word != "Object":
                    lines += [f'  bind.ContextProperty({{L"{member.name}", L"{word}", {help_text(member)}}});']
            else:
                puts = "true" if member.puts else "false"
                lines += [f'  bind.Property({{L"{member.name}", L"{word}", {help_text(member)}}}, {puts});']
        lines += ["}\n"]
    lines += ["#define ARD_PUBLISHED_CLASSES(CLASS) \\"]
    lines += ["  " + " ".join(f"CLASS({kind.name})" for kind in published.classes) + "\n"]
    return "\n".join(lines + ["}  // namespace ard::published", ""])


def members_list(published):
    """Lines such as "call Customers.GetName String", "put Products.ShowSpecialProds Boolean"."""
    for kind in published.classes:
        for member in kind.members:
            word = member.result.word() if member.result else "-"
            if not member.is_property:
                yield f"call {kind.name}.{member.name} {word}"
            if member.puts:
                yield f"{member.puts} {kind.name}.{member.name} {word}"
            if member.gets:
                yield f"get {kind.name}.{member.name} {word}"


def shell_header(published, idl):
    """The automation classes: each procedure hands over to the portable class, and the table by which
    late-bound hosts call it."""
    lines = [written_by(idl), "namespace ard::windows {\n"]
    for kind in published.classes:
        lines += [*shell(kind), *table(kind)]
    lines += ["#define ARD_PUBLISHED_CLASSES(CLASS) \\"]
    lines += [
        "  \\\n".join(f'  CLASS({kind.name}, L"{kind.help}")' for kind in published.classes) + "\n",
        "}  // namespace ard::windows",
        "",
    ]
    return "\n".join(lines)


def signature(member):
    result = member.result.kind() if member.result else "void"
    return f"{result}({', '.join(p.kind() for p in member.passed)})"


def shell(kind):
    base = f"AutomationObject<{kind.interface}, classes::{kind.name}>"
    for member in kind.members:
        if member.name in CONTEXT:
            base = f"With{CONTEXT[member.name]}<{base}>"
    yield f"class {kind.name}Object final"
    yield f"    : public {base} {{"
    yield " public:"
    yield f"  explicit {kind.name}Object(const PublishedClass& published) : {base.split('<')[0]}(published) {{}}"
    for member in kind.members:
        if member.is_property and member.name not in CONTEXT:
            access = f'Property<{member.result.kind()}, L"{member.name}">'
            if member.gets:
                yield procedure(f"get_{member.name}", member.parameters, f"Get{access}(Value)")
            if member.puts:
                value = Parameter("Value", member.result.base, {"in"}, None)
                yield procedure(f"put_{member.name}", [value], f"Put{access}(Value)")
        elif not member.is_property:
            arguments = "".join(f", {p.name}" for p in member.passed)
            result = "Result" if member.result else "nullptr"
            call = f"Call<{signature(member)}>(&classes::{kind.name}::{member.name}, {result}{arguments})"
            yield procedure(member.name, member.parameters, call)
    yield "};\n"


def procedure(name, parameters, call):
    def declared(parameter):
        base = "SAFEARRAY**" if parameter.base == "SAFEARRAY(BSTR)*" else parameter.type
        return f"{base} {parameter.name}"

    return (
        f"  HRESULT STDMETHODCALLTYPE {name}({', '.join(map(declared, parameters))}) override {{\n"
        f"    return this->template {call};\n  }}"
    )


def table(kind):
    yield f"inline constexpr Member k{kind.name}Members[] = {{"
    for member in kind.members:
        at = f"&{kind.interface}::"
        if member.puts == "putref":
            yield f"    ObjectProperty<{at}get_{member.name}, {at}putref_{member.name}>,"
        elif member.puts:
            yield f"    Property<{at}get_{member.name}, {at}put_{member.name}, {member.result.kind()}>,"
        elif member.gets:
            yield f"    ReadOnlyProperty<{at}get_{member.name}, {member.result.kind()}>,"
        else:
            yield f"    Method<{at}{member.name}, {signature(member)}>,"
    yield "};"
    yield f"inline constexpr const wchar_t* k{kind.name}Names[] = {{"
    for member in kind.members:
        parameters = [] if member.is_property else member.passed
        yield f'    L"{" ".join([member.name, *(p.name for p in parameters)])}",'
    yield "};\n"


def manifest(published, processor):
    """By which hosts use the classes without registration."""
    name, version, identity = published.name, published.version, braced(published.id)
    lines = [
        '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
        '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
        f'  <assemblyIdentity type="win32" name="{name}" version="{version}.0.0"'
        f' processorArchitecture="{processor}"/>',
        f'  <file name="{name}.dll">',
        f'    <typelib tlbid="{identity}" version="{version}" helpdir=""/>',
    ]
    for kind in published.classes:
        assert not set(kind.help) & set('<&"\\'), kind.help  # neither XML nor C++ minds the rest
        lines += [
            f'    <comClass description="{kind.help}" clsid="{braced(kind.id)}" tlbid="{identity}"'
            f' progid="{name}.{kind.name}" threadingModel="Apartment">',
            f"      <progid>{name}.{kind.name}.1</progid>",
            "    </comClass>",
        ]
    lines += ["  </file>"]
    for kind in published.classes:
        lines += [
            f'  <comInterfaceExternalProxyStub name="{kind.interface}" iid="{braced(kind.interface_id)}"'
            f' tlbid="{identity}" proxyStubClsid32="{{00020424-0000-0000-C000-000000000046}}"/>',
        ]
    return "\n".join(lines + ["</assembly>", ""])


def braced(identity):
    return "{" + identity.upper() + "}"


if __name__ == "__main__":
    source, folder, compiler = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
    interface = read(source, compiler)
    (folder / f"{source.stem}_members.h").write_text(members_header(interface, source))
    (folder / f"{source.stem}_members.txt").write_text("\n".join(members_list(interface)) + "\n")
