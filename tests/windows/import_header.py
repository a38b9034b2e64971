#!/usr/bin/env python3
"""Writes what stands for Microsoft's `#import "ArdObjects100.dll"` where another compiler takes it for a
header of that name:

    import_header.py TOOLS IDL HEADER COMPILER

The wrappers have the names and types that #import would give them, over the interfaces of widl's header.
"""

import sys
from pathlib import Path

sys.path.insert(0, sys.argv[1])
import published  # noqa: E402

RESULTS = {"BSTR": "_bstr_t({}, false)", "IDispatch*": "IDispatchPtr({}, false)"}
WRAPPED = {"BSTR": "_bstr_t", "IDispatch*": "IDispatchPtr", "SAFEARRAY(BSTR)*": "SAFEARRAY**"}


def wrapper(interface, raw, name, parameters):
    result = next((p for p in parameters if p.is_result), None)
    passed = [p for p in parameters if not p.is_result]
    types = ["IDispatch*" if p.type == "IDispatch*" else WRAPPED.get(p.type, p.type) for p in passed]
    declared = ", ".join(f"{t} {p.name}" for t, p in zip(types, passed))
    arguments = [p.name for p in passed] + (["&answer"] if result else [])
    call = f"_com_util::CheckError(reinterpret_cast<::{interface}*>(this)->{raw}({', '.join(arguments)}));"
    if not result:
        return f"  HRESULT {name}({declared}) {{ {call} return S_OK; }}"
    answer = RESULTS.get(result.base, "{}").format("answer")
    return f"  {WRAPPED.get(result.base, result.base)} {name}({declared}) {{ {result.base} answer{{}}; {call} return {answer}; }}"


def main():
    _, _, idl, header, compiler = sys.argv
    interface = published.read(idl, compiler)
    # MinGW's comdef.h leaves the pointer out that everything here needs.
    lines = ["#include <ArdObjects100.h>", "_COM_SMARTPTR_TYPEDEF(IDispatch, __uuidof(IDispatch));"]
    lines += [f"namespace {interface.name} {{"]
    for kind in interface.classes:
        lines += [f"using ::{kind.name};", f"struct {kind.interface} : IDispatch {{"]
        for member in kind.members:
            if member.gets:
                lines += [wrapper(kind.interface, f"get_{member.name}", f"Get{member.name}", member.parameters)]
            if member.puts:
                prefix = "PutRef" if member.puts == "putref" else "Put"
                value = published.Parameter("Value", member.result.base, {"in"}, None)
                lines += [wrapper(kind.interface, f"{member.puts}_{member.name}", prefix + member.name, [value])]
            if not member.is_property:
                lines += [wrapper(kind.interface, member.name, member.name, member.parameters)]
        pointer = f"_com_ptr_t<_com_IIID<{kind.interface}, &::IID_{kind.interface}>>"
        lines += ["};", f"using {kind.interface}Ptr = {pointer};"]
    Path(header).write_text("\n".join([*lines, "}", ""]))


main()
