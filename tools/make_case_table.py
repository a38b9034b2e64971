#!/usr/bin/env python3
"""Writes src/frame/case_table.inc (or, asked for "lower", src/frame/lower_case_table.inc): a simple
case mapping of Unicode as runs.

A run maps every `step`-th code point from `first` to `last` by adding `delta`.
"""
import sys
import unicodedata


def simple_upper(code):
    upper = chr(code).upper()
    # The simple mapping is always one character; where the full one is longer there is none,
    # except for the few that map simply to their title-case form.
    if len(upper) == 1:
        return ord(upper)
    title = chr(code).title()
    return ord(title) if len(title) == 1 else code


def simple_lower(code):
    # The only full mapping that is longer begins with the simple one.
    return ord(chr(code).lower()[0])


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


simple = simple_lower if sys.argv[1:] == ["lower"] else simple_upper
pairs = [(c, simple(c) - c) for c in range(0x80, 0x110000) if simple(c) != c]
print(f"// Written by tools/make_case_table.py from Unicode {unicodedata.unidata_version}.")
for first, last, step, delta in runs(pairs):
    print(f"{{0x{first:04X}, 0x{last:04X}, {step}, {delta}}},")
