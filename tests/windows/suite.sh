# shellcheck shell=bash
# What the suites of scripts begin with: to be sourced with the architecture, in a prepared prefix. They
# work in $FOLDER, which goes with them, and end with `finish`.
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
for tool in console wine display drive; do
  # shellcheck disable=SC1090
  source "tools/$tool.sh"
done
say_what_breaks_off

ARCH="$1"
# shellcheck disable=SC2034  # for those who source this
PROMPT="$BUILD/native-debug/bin/ard_console"
FOLDER="$(mktemp -d "$BUILD/suite-$ARCH.XXXXXX")"
trap 'rm -rf "$FOLDER"' EXIT
wine_use "$WINEPREFIX"
PASSED=0
FAILED=0
SKIPPED=0

# judge WHAT COMMAND...: a test, which passes when the command does.
judge() {
  if "${@:2}"; then
    ((PASSED += 1))
  else
    ((FAILED += 1))
    say "$1 failed"
  fi
}

finish() {
  say "$PASSED passed, $FAILED failed, $SKIPPED skipped"
  ((FAILED == 0))
}
