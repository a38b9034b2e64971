# shellcheck shell=bash
# What the commands that run a Windows program of ours have in common. To be sourced; brings
# tools/console.sh, tools/arguments.sh, tools/wine.sh and tools/display.sh along.
#
#   windows_prepare PROGRAM      builds the 64-bit program and the servers, and gets a Wine prefix with
#                                these registered and a display ready; both end with the command
#   windows_program SECONDS NAME ARGUMENT...
#                                runs one of the programs
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=tools/console.sh
source tools/console.sh
# shellcheck source=tools/arguments.sh
source tools/arguments.sh
# shellcheck source=tools/wine.sh
source tools/wine.sh
# shellcheck source=tools/display.sh
source tools/display.sh

WINDOWS_BIN="$BUILD/windows-x64/bin"

windows_clean_up() {
  wine_stop
  display_stop
}

windows_prefix() {
  wine_stop
  wine_prepare
  register_servers x64 "$WINDOWS_BIN"/{ArdObjects100,ArdSimulator,ArdDatabase}.dll
}

windows_prepare() {
  trap windows_clean_up EXIT
  tools/install-packages.sh windows
  must_step programs-build "build, Windows" \
    configure_and_build windows-x64 ArdObjects100 ArdSimulator ArdDatabase "$1"
  wine_use "$BUILD/check/prefix"
  display_start
  must_step programs-prefix "Wine prefix" windows_prefix
}

windows_program() {
  local seconds="$1" name="$2"
  shift 2
  wine_run "$seconds" "$(windows_path "$WINDOWS_BIN/$name")" "$@" | tr -d '\r'
}
