"""What hosts of other languages are compiled against, of the published interface: what Microsoft's tlbimp
and Delphi's importer make of the type library, as sources, for where these cannot be had."""

import published

# In C#, a type and how it crosses over.
CSHARP = {
    "BSTR": ("string", "MarshalAs(UnmanagedType.BStr)"),
    "VARIANT_BOOL": ("bool", "MarshalAs(UnmanagedType.VariantBool)"),
    "short": ("short", ""),
    "long": ("int", ""),
    "double": ("double", ""),
    "DATE": ("DateTime", ""),
    "IDispatch*": ("object", "MarshalAs(UnmanagedType.IDispatch)"),
    "SAFEARRAY(BSTR)*": ("Array", "MarshalAs(UnmanagedType.SafeArray, SafeArraySubType = VarEnum.VT_BSTR)"),
}
PASCAL = {
    "BSTR": "WideString",
    "VARIANT_BOOL": "WordBool",
    "short": "Smallint",
    "long": "Integer",
    "double": "Double",
    "DATE": "TDateTime",
    "IDispatch*": "IDispatch",
    "SAFEARRAY(BSTR)*": "PSafeArray",
}


def by_reference(parameter):
    return parameter.type != parameter.base or parameter.base == "SAFEARRAY(BSTR)*"


def csharp(interface, idl):
    """By dispatch ids throughout: the vtable's order would depend on where a compiler puts accessors."""

    def attributes(*words):
        words = [word for word in words if word]
        return f"[{', '.join(words)}] " if words else ""

    def default(parameter):
        if "optional" not in parameter.flags:
            return ""
        if parameter.base == "VARIANT_BOOL":
            value = str(parameter.default != "0").lower()
        elif parameter.base in interface.enumerations:
            value = f"{parameter.base}.{parameter.default}"
        else:
            value = f"(short){parameter.default}" if parameter.base == "short" else parameter.default
        return f"Optional, DefaultParameterValue({value})"

    def declared(parameter):
        name, marshalled = CSHARP.get(parameter.base, (parameter.base, ""))
        reference = "ref " if by_reference(parameter) else ""
        passed = ("In", "Out") if reference else ()
        return f"{attributes(*passed, marshalled, default(parameter))}{reference}{name} {parameter.name}"

    def member_of(member):
        name, marshalled = CSHARP[member.result.base] if member.result else ("void", "")
        returned = f"[return: {marshalled}] " if marshalled else ""
        yield f"    /// <summary>{member.help}</summary>"
        if not member.is_property:
            parameters = ", ".join(map(declared, member.passed))
            yield f"    [DispId({member.number})] {returned}{name} {member.name}({parameters});"
            return
        getter = f"{returned}get; " if member.gets else ""
        setter = f"{f'[param: {marshalled}] ' if marshalled else ''}set; " if member.puts else ""
        yield f"    [DispId({member.number})] {name} {member.name} {{ {getter}{setter}}}"

    lines = [
        published.written_by(idl, __file__) + "using System;",
        "using System.Runtime.InteropServices;\n",
        f'[assembly: Guid("{interface.id}")]',
        f'[assembly: ImportedFromTypeLib("{interface.name}")]\n',
        f"namespace {interface.name} {{",
    ]
    for name, (text, values) in interface.enumerations.items():
        lines += [f"  /// <summary>{text}</summary>", f"  public enum {name} {{"]
        lines += [*(f"    {n} = {v}," for n, (v, _) in values.items()), "  }\n"]
    for kind in interface.classes:
        lines += [
            f'  [ComImport, Guid("{kind.interface_id}"), InterfaceType(ComInterfaceType.InterfaceIsIDispatch)]',
            f"  public interface {kind.interface} {{",
            *(line for member in kind.members for line in member_of(member)),
            "  }\n",
            f"  /// <summary>{kind.help}</summary>",
            f'  [ComImport, Guid("{kind.interface_id}"), CoClass(typeof({kind.name}Class))]',
            f"  public interface {kind.name} : {kind.interface} {{}}\n",
            f'  [ComImport, Guid("{kind.id}"), ClassInterface(ClassInterfaceType.None)]',
            f"  public class {kind.name}Class {{}}\n",
        ]
    return "\n".join([*lines, "}", ""])


def pascal(interface, idl):
    def declared(parameter):
        how = "var " if by_reference(parameter) else "const "
        return f"{how}{parameter.name}: {PASCAL.get(parameter.base, parameter.base)}"

    def procedure(name, passed, result=None):
        parameters = f"({'; '.join(map(declared, passed))})" if passed else ""
        if result:
            return f"    function {name}{parameters}: {PASCAL[result.base]}; safecall;"
        return f"    procedure {name}{parameters}; safecall;"

    def members(kind):
        properties = []
        for member in kind.members:
            if not member.is_property:
                yield procedure(member.name, member.passed, member.result)
                continue
            get, put = f"Get_{member.name}", f"{'_' if member.puts == 'putref' else ''}Set_{member.name}"
            setter = [procedure(put, [published.Parameter("Value", member.result.base, {"in"}, None)])]
            both = setter * bool(member.puts) + [procedure(get, [], member.result)] * member.gets
            yield from both if member.puts_first else reversed(both)
            access = f" read {get}" * member.gets + f" write {put}" * bool(member.puts)
            properties += [f"    property {member.name}: {PASCAL[member.result.base]}{access};"]
        yield from properties

    lines = [
        published.written_by(idl, __file__) + f"unit {interface.name}_TLB;",
        "{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}",
        "\ninterface\n",
        "uses\n  ActiveX, ComObj, SysUtils;\n",
        "type",
    ]
    for name, (_, values) in interface.enumerations.items():
        lines += [f"  {name} = type LongWord;", "const", *(f"  {n} = {v};" for n, (v, _) in values.items()), "type"]
    for kind in interface.classes:
        lines += [
            f"  {kind.interface} = interface(IDispatch)",
            f"    ['{published.braced(kind.interface_id)}']",
            *members(kind),
            "  end;\n",
            f"  Co{kind.name} = class",
            f"    class function Create: {kind.interface};",
            "  end;\n",
        ]
    lines += ["implementation\n"]
    for kind in interface.classes:
        lines += [
            f"class function Co{kind.name}.Create: {kind.interface};",
            "begin",
            f"  Result := CreateComObject(StringToGUID('{published.braced(kind.id)}')) as {kind.interface};",
            "end;\n",
        ]
    return "\n".join([*lines, "end.", ""])
