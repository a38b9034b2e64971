#!/usr/bin/env bash
# Works the dialogs that tests/windows/products_test.vbs opens, by keys alone, and looks at what is
# remembered afterwards. Started in a prepared prefix and on its display.
#
#   products_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/script_suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/script_suite.sh" "$1"

SETTINGS='HKCU\Software\VB and VBA Program Settings\Manufacturing Test\Options\ProductSearch'

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

fresh_stores company
wine_run 30 reg delete "$SETTINGS" /f >"$FOLDER/reg.txt" 2>&1 || true

run_host tests/windows/products_test.vbs "$(windows_path "$FOLDER/company")" "$FOLDER/company.db"
# The next process finds what was written.
for code in COPY BLANK GIVEN ASKED; do
  grep -q "^$code"$'\t' "$FOLDER/company/StockData.table" || {
    say "not ok - $code is not in the company"
    STATUS=1
  }
done
tr -d '\r' <"$FOLDER/output.txt"
exit "$STATUS"
