#!/usr/bin/env bash
# Works the dialogs and messages that tests/windows/users_test.vbs opens, by keys alone, and looks at
# what is left afterwards. Started in a prepared prefix and on its display.
#
#   users_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/script_suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/script_suite.sh" "$1"

SETTINGS='HKCU\Software\VB and VBA Program Settings\Manufacturing Users Test'
LAUNCHER='HKLM\Software\ArdObjects100'
INI="$WINEPREFIX/drive_c/windows/veltrix.ini"

# expect WHAT COMMAND...
expect() {
  local what="$1"
  shift
  if "$@" >/dev/null 2>&1; then
    say "ok - $what"
  else
    say "not ok - $what"
    return 1
  fi
}

remembered() {
  wine_run 30 reg query "$SETTINGS\\Options\\Logon\\Acme" | tr -d '\r' | grep -qE "^ *$1 +REG_SZ +$2\$"
}

# message: one that says something, dismissed.
message() {
  wait_window "Manufacturing" "${1:-30}"
  keys Return
  wait_closed
}

work_dialogs() {
  message 60 # the data is held exclusively

  wait_window "Logon" # a refusal first
  type_ahead "anne"
  keys Tab
  type_ahead "wrong"
  keys Return
  message
  wait_window "Logon"
  keys Tab
  type_ahead "Rivet7"
  keys alt+r Return
  wait_closed
  expect "the logon is remembered" remembered RememberLogonName 1
  expect "and the name" remembered LogonName anne

  wait_window "Logon" # the name is filled in, the password has the focus
  type_ahead "Rivet7"
  keys Return
  wait_closed

  wait_window "Logon"
  keys Escape
  wait_closed

  message # Visitor is not in the table
  message # there is no table
  message # the connection is another kind of object
  message # may not open bank accounts

  wait_window "Select User"
  keys Home Down Return
  wait_closed

  wait_window "User List" # the manager deletes the second logon
  keys ctrl+Tab
  keys Home Down alt+d
  keys Escape
  wait_closed

  wait_window "User List" # others cannot
  keys ctrl+Tab
  keys Home alt+d
  keys Escape
  wait_closed
}

fresh_stores company
rm -f "$INI"
wine_run 30 reg delete "$SETTINGS" /f >"$FOLDER/reg.txt" 2>&1 || true
# The launcher's settings, as an installation of the accounts product would write them; both views of
# the registry, for both kinds of program.
for view in 32 64; do
  for setting in LauncherFolder=Ardenic LauncherFile=launch.exe LauncherName=Ardenic \
    "Installation12={12}"; do
    wine_run 30 reg add "$LAUNCHER" /v "${setting%%=*}" /d "${setting#*=}" /f "/reg:$view" \
      >>"$FOLDER/reg.txt" 2>&1
  done
done

run_host tests/windows/users_test.vbs "$(windows_path "$FOLDER/company")" "$FOLDER/company.db"

expect "just GÜNTER's logon is gone" test \
  "$(sqlite3 "$FOLDER/company.db" 'SELECT group_concat(ID) FROM CurrentUsers')" = 1,2,4,5,6 || STATUS=1
expect "one entry in the ini file" test \
  "$(tr -d '\r' <"$INI" | grep -c '^AddIn.=Host,.*,host.bmp,host.exe$')" = 1 || STATUS=1
expect "the shortcut is there" test -s "$FOLDER/company/RunAccounts.lnk" || STATUS=1
expect "the newcomer is in the company" grep -q '^NEWCOMER' "$FOLDER/company/AccessData.table" || STATUS=1
wine_run 30 reg delete "$LAUNCHER" /f >>"$FOLDER/reg.txt" 2>&1 || true
tr -d '\r' <"$FOLDER/output.txt"
exit "$STATUS"
