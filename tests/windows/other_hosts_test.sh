#!/usr/bin/env bash
# Hosts in other languages, each with its own idea of variables and arrays, and what they have to get.
# Started in a prepared prefix.
#
#   other_hosts_test.sh ARCHITECTURE
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=tools/console.sh
source tools/console.sh
# shellcheck source=tools/wine.sh
source tools/wine.sh

ARCH="$1"
SECONDS_ALLOWED=60
COMPANY="$(windows_path examples/company)"
FOLDER="$(mktemp -d "$BUILD/hosts-$ARCH.XXXXXX")"
trap 'rm -rf "$FOLDER"' EXIT
wine_use "$WINEPREFIX"
passed=0
failed=0

# expect NAME COMMAND... <EXPECTED
expect() {
  local name="$1" status=0
  shift
  cat >"$FOLDER/expected.txt"
  "$@" </dev/null >"$FOLDER/output.txt" || status=$?
  if tr -d '\r' <"$FOLDER/output.txt" | diff "$FOLDER/expected.txt" - && ((status == 0)); then
    ((passed += 1))
  else
    ((failed += 1))
    say "$name failed"
  fi
}

expect "used variables" wine_script "$ARCH" "$SECONDS_ALLOWED" tests/windows/used_variables.vbs "$COMPANY" <<'TEXT'
String: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
Null: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
Empty: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
String: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
String: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
Integer: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
Boolean: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
Date: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
Object: [String SCA001  ][Double 0][Double 44]
[Integer 2][Integer 2][String 0.00][String 0.00]
an array failed with 13
a text for a Boolean that is only read failed with 13
[String 0][Boolean True]
TEXT

expect "arrays that are objects" wine_script "$ARCH" "$SECONDS_ALLOWED" tests/windows/array_objects.js "$COMPANY" <<'TEXT'
full 4 [0   Fixings][1   Fixings][2   Ironmongery][3   Sheet and Section]
sparse 2 [0   Fixings][1   Fixings]
empty 0 
like 2 [0   Fixings][1   Fixings]
codes 3 [T99 0.00][kept][undefined]
none refused
text refused
negative refused
held 3 ANNE OFFICE-04
held SCA001  number044
held SCA001  044
a value, not a variable
done
TEXT

say "$passed passed, $failed failed"
((failed == 0))
