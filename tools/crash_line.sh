#!/usr/bin/env bash
# Turns places in a DLL or program into lines of the sources.
#
#   tools/crash_line.sh FILE OFFSET...
#
# FILE is one that has been delivered, with its symbols (FILE.debug) beside it. An OFFSET is hexadecimal,
# from where the module begins, as the system's event log has it for a crash ("Fault offset"). Where
# functions have been merged, the line is followed by those from which it was reached.
set -euo pipefail
(($# > 1)) || { sed -n '2,8s/^# \{0,1\}//p' "$0" >&2 && exit 2; }
file="$1"
shift
base="$(x86_64-w64-mingw32-objdump -p "$file" | sed -nE 's/^ImageBase\s+//p')"
for offset in "$@"; do
  printf '0x%x\n' $((0x$base + 0x${offset#0x}))
done | x86_64-w64-mingw32-addr2line --exe="$file.debug" --inlines --functions --demangle --pretty-print |
  sed -E ':strip; s/<[^<>]*>|\{[^{}]*\}//g; t strip; s/\([^()]*\)( const)?( at )/\2/'  # what templates were made of
