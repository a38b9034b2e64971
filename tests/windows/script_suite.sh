# shellcheck shell=bash
# What the suites of a script host have in common. To be sourced, with the suite's arguments: the
# architecture. They are started in a prepared prefix and on its display.
#
#   ARCH, FOLDER        the architecture, and a folder of the suite's own that goes with it
#   fresh_stores NAME   makes $FOLDER/NAME, a company, and $FOLDER/NAME.db, its host's database
#   run_host SCRIPT ARGUMENT...
#                       runs a script, worked by the suite's function work_dialogs; its output is in
#                       $FOLDER/output.txt, and STATUS is 1 when either of them failed
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
FOLDER="$(mktemp -d "$BUILD/$(basename "$0" .sh)-$ARCH.XXXXXX")"
trap 'rm -rf "$FOLDER"' EXIT
wine_use "$WINEPREFIX"

fresh_stores() {
  cp -r examples/company "$FOLDER/$1"
  sqlite3 "$FOLDER/$1.db" <examples/host_database.sql
}

run_host() {
  wine_script "$ARCH" "$SECONDS_ALLOWED" "$@" >"$FOLDER/output.txt" 2>&1 </dev/null &
  local host=$!
  STATUS=0
  work_dialogs || STATUS=1
  if ((STATUS != 0)); then kill "$host" 2>/dev/null || true; fi
  wait "$host" || STATUS=1
}
