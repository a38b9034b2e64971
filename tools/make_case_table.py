#!/usr/bin/env python3
"""Writes src/frame/case_table.inc: the simple upper-case mapping of Unicode as runs.

A run maps every `step`-th code point from `first` to `last` by adding `delta`.
"""
import unicodedata


def simple_upper(code):
    upper = chr(code).upper()
    # The simple mapping is always one character; where the full one is longer there is none,
    # except for the few that map simply to their title-case form.
    if len(upper) == 1:
        return ord(upper)
    title = chr(code).title()
    return ord(title) if len(title) == 1 else code


def runs(pairs):
    current = None
    for code, delta in pairs:
        if current and delta == current[3]:
            gap = code - current[1]
            if gap <= 2 and (current[0] == current[1] or gap == current[2]):
                current[1], current[2] = code, gap
                continue
        if current:
            yield current
        current = [code, code, 1, delta]
    yield current


pairs = [(c, simple_upper(c) - c) for c in range(0x80, 0x110000) if simple_upper(c) != c]
print(f"// Written by tools/make_case_table.py from Unicode {unicodedata.unidata_version}.")
for first, last, step, delta in runs(pairs):
    print(f"{{0x{first:04X}, 0x{last:04X}, {step}, {delta}}},")
