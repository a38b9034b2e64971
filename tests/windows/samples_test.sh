#!/usr/bin/env bash
# The first hosts of examples/, each in its language, go the same way and print the same lines: those of
# examples/first_host.txt, worked out by hand from the tables of the demo company, which each leaves as
# it was. Started in a prepared prefix and on its display.
#
#   samples_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/suite.sh"
# shellcheck source=tools/free_pascal.sh
source tools/free_pascal.sh

SECONDS_ALLOWED=120
INTEROP="$BUILD/windows-$ARCH/src/windows"
PROGRAMS="$(windows_path "$BUILD/windows-$ARCH/bin")"
cp -r examples/company "$FOLDER/company"
sqlite3 "$FOLDER/host.db" <examples/host_database.sql
SETTINGS=("$(windows_path "$FOLDER/company")" "Driver=SQLite3;Database=$FOLDER/host.db")

# What its user does: logs on, takes the customer on which the list opens, and no product.
work_dialogs() {
  wait_window "Logon" 60 || return
  type_ahead "anne"
  keys Tab
  type_ahead "Rivet7"
  keys Return
  wait_closed && wait_window "Select Customer" 60 || return
  keys Return
  wait_closed && wait_window "Select Product" 60 || return
  keys Escape
  wait_closed
}

# sample NAME COMMAND...
sample() {
  local status=0
  "${@:2}" "${SETTINGS[@]}" </dev/null >"$FOLDER/output.txt" &
  work_dialogs || status=1
  # One that still waits for its user is ended at its time limit: the next must not see its windows.
  wait "$!" || status=1
  judge "$1" printed_the_same "$status"
}

# printed_the_same STATUS
printed_the_same() {
  tr -d '\r' <"$FOLDER/output.txt" | diff examples/first_host.txt - &&
    diff -r -x company.lock examples/company "$FOLDER/company" && (($1 == 0))
}

# pascal_sample SOURCE OPTION...
pascal_sample() {
  local program="$FOLDER/${1//\//_}.exe"
  pascal_compile "$ARCH" "examples/$1" "$program" "${@:2}" >"$FOLDER/compiler.txt" 2>&1 ||
    tail -n "$TAIL_LINES" "$FOLDER/compiler.txt"
  sample "$1" wine_run "$SECONDS_ALLOWED" "$(windows_path "$program")"
}

# python_sample PACKAGE: with a stand-in for that, natively.
python_sample() {
  local status=0
  python3 tests/windows/python_stand_in.py "$1" tools src/windows/server/ArdObjects100.idl \
    "$PROMPT" "$FOLDER/company" "$FOLDER/host.db" examples/python/first_host.py \
    >"$FOLDER/output.txt" || status=$?
  judge "Python with $1" printed_the_same "$status"
}

# What VBScript understands of the VBA module.
vba_as_script() {
  sed -E '/^(Attribute|#End If)/d; /^#If/,/^#Else/d; s/ As [A-Za-z0-9.]+//g; s/\(0 To 2\)/(2)/
    s/New (ArdObjects100\.[A-Za-z]+)/CreateObject("\1")/; s/Debug\.Print/WScript.Echo/
    s/^(Private Const COMPANY =).*/Dim COMPANY: COMPANY = WScript.Arguments(0)/
    s/^(Private Const CONNECTION =).*/Dim CONNECTION: CONNECTION = WScript.Arguments(1)/' "$1"
  cat <<'VBS'
FirstHost
Function Format(value, pattern)
  If InStr(pattern, "y") Then
    Format = Year(value) & "-" & Right("0" & Month(value), 2) & "-" & Right("0" & Day(value), 2)
  Else
    Format = FormatNumber(value, Len(pattern) - 2, True, False, False)
  End If
End Function
VBS
}

sample VBScript wine_script "$ARCH" "$SECONDS_ALLOWED" examples/vbscript/first_host.vbs
sample JScript wine_script "$ARCH" "$SECONDS_ALLOWED" examples/jscript/first_host.js
vba_as_script examples/vba/first_host.bas >"$FOLDER/first_host.vbs"
sample VBA wine_script "$ARCH" "$SECONDS_ALLOWED" "$FOLDER/first_host.vbs"
sample "C++" wine_run "$SECONDS_ALLOWED" "$PROGRAMS\\example_host.exe"
sample "C++ with #import" wine_run "$SECONDS_ALLOWED" "$PROGRAMS\\import_host.exe"
if pascal_missing; then
  ((SKIPPED += 2))
else
  pascal_sample freepascal/first_host.pp
  pascal_sample delphi/first_host.dpr -Mdelphi "-Fu$INTEROP"
fi
# What no architecture matters to.
if [[ "$ARCH" == x64 ]]; then
  python_sample win32com
  python_sample comtypes
  judge "C#" mcs "-out:$FOLDER/first_host.exe" -r:Microsoft.CSharp.dll examples/csharp/first_host.cs \
    "$INTEROP/ArdObjects100.cs"
  judge "C#, dynamic" mcs "-out:$FOLDER/dynamic_host.exe" -r:Microsoft.CSharp.dll \
    examples/csharp/dynamic_host.cs
fi
finish
