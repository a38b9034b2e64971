#!/usr/bin/env bash
# Works the dialogs that tests/windows/ledgers_test.vbs opens, by keys alone. Started in a prepared
# prefix and on its display.
#
#   ledgers_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/script_suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/script_suite.sh" "$1"

# in_window TITLE KEY...: presses keys that close the window
in_window() {
  wait_window "$1" 60
  shift
  keys "$@"
  wait_closed
}

work_dialogs() {
  in_window "Select Supplier" Down Return
  in_window "Select Supplier" Return
  in_window "Select Nominal Code" Return
  wait_window "Select Nominal Code" # a control account: its refusal, then Cancel
  keys Return
  keys Return
  keys Escape
  wait_closed
  in_window "Select Bank Account" End Return
  in_window "Select Bank Account" Down Down Return
  in_window "Select Sales Order" Down Return
  in_window "Select Sales Order" Return
  in_window "Select Purchase Order" Escape
  in_window "Select Purchase Order" Return
  in_window "Discount Breakdown" Return

  in_window "Delivery Addresses" Return       # the company's
  in_window "Delivery Addresses" Down Down Return # the customer's third
  wait_window "Delivery Addresses"            # no account yet: its box has the focus
  keys alt+k Down                             # those of suppliers, and back
  keys Up
  keys alt+l
  in_window "Select Customer" Escape
  wait_window "Delivery Addresses"
  keys alt+a
  type_ahead "ADD001"
  keys Return
  keys alt+d
  in_window "Delivery Address Details" Return
  wait_window "Delivery Addresses"
  keys Return
  wait_closed
  in_window "Delivery Addresses" Escape
}

run_host tests/windows/ledgers_test.vbs "$(windows_path "$PWD/examples/company")"
tr -d '\r' <"$FOLDER/output.txt"
exit "$STATUS"
