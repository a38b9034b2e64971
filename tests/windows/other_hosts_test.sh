#!/usr/bin/env bash
# Hosts in other languages, each with its own idea of variables and arrays, and what they have to get.
# Started in a prepared prefix.
#
#   other_hosts_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/suite.sh"

# writes_its_text SCRIPT: what the text beside it has.
writes_its_text() {
  wine_script "$ARCH" 60 "tests/windows/$1" "$(windows_path examples/company)" </dev/null | tr -d '\r' |
    diff "tests/windows/${1%.*}.txt" -
}

for script in used_variables.vbs array_objects.js; do judge "$script" writes_its_text "$script"; done
finish
