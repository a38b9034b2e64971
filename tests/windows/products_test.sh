#!/usr/bin/env bash
# Works the dialogs that tests/windows/products_test.vbs opens, by keys alone, and looks at what is
# remembered afterwards. Started in a prepared prefix and on its display.
#
#   products_test.sh ARCHITECTURE
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=tools/console.sh
source tools/console.sh
# shellcheck source=tools/wine.sh
source tools/wine.sh
# shellcheck source=tools/display.sh
source tools/display.sh
# shellcheck source=tools/drive.sh
source tools/drive.sh

ARCH="$1"
SECONDS_ALLOWED=150
SETTINGS='HKCU\Software\VB and VBA Program Settings\Manufacturing Test\Options\ProductSearch'
FOLDER="$(mktemp -d "$BUILD/products-$ARCH.XXXXXX")"
trap 'rm -rf "$FOLDER"' EXIT

# remembered FIELD TAB
remembered() {
  local values
  values="$(wine_run 30 reg query "$SETTINGS" | tr -d '\r')"
  if grep -qE "^ *Field +REG_SZ +$1\$" <<<"$values" && grep -qE "^ *Tab +REG_SZ +$2\$" <<<"$values"; then
    say "ok - field $1 and tab $2 are remembered"
  else
    say "not ok - remembered were $values"
    return 1
  fi
}

work_dialogs() {
  wait_window "Manufacturing" 60 # the description of the new product
  type_ahead "Typed in"
  keys Return
  wait_closed

  wait_window "Select Product" # the second special row
  keys Down Return
  wait_closed
  remembered 0 1

  wait_window "Select Product" # on LOCK: the second page, whose list starts with LOCK-3PT
  keys ctrl+Tab
  keys Tab Tab Tab Tab Home Down Return
  wait_closed
  remembered 0 2

  wait_window "Select Product" # opens on the second page: a search in it
  type_ahead "CAB-2D"
  keys Return
  keys Down Home Down Down Return
  wait_closed
  remembered 0 2

  wait_window "Select Product" # back to the first page, three rows with a gap
  keys ctrl+Tab
  keys Home shift+Down ctrl+Down ctrl+Down ctrl+Down ctrl+space Return
  wait_closed
  remembered 0 1

  wait_window "Select Product" # one page only
  keys Escape
  wait_closed

  wait_window "Select Product" # no database: still there is the stock
  keys ctrl+Tab ctrl+Tab Return
  wait_closed

  wait_window "Select Product" # no engine: nothing to pick
  keys Return Escape
  wait_closed
}

cp -r examples/company "$FOLDER/company"
sqlite3 "$FOLDER/host.db" <examples/host_database.sql
wine_use "$WINEPREFIX"
wine_run 30 reg delete "$SETTINGS" /f >"$FOLDER/reg.txt" 2>&1 || true

wine_script "$ARCH" "$SECONDS_ALLOWED" tests/windows/products_test.vbs \
  "$(windows_path "$FOLDER/company")" "$FOLDER/host.db" >"$FOLDER/output.txt" 2>&1 </dev/null &
HOST=$!
STATUS=0
work_dialogs || STATUS=1
if ((STATUS != 0)); then kill "$HOST" 2>/dev/null || true; fi
wait "$HOST" || STATUS=1
# The next process finds what was written.
for code in COPY BLANK GIVEN ASKED; do
  grep -q "^$code"$'\t' "$FOLDER/company/StockData.table" || {
    say "not ok - $code is not in the company"
    STATUS=1
  }
done
tr -d '\r' <"$FOLDER/output.txt"
exit "$STATUS"
