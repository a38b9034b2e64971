# shellcheck shell=bash
# Shared by the commands of the root folder: where things are, and one readable line for each step.
# To be sourced, after `set -euo pipefail`.

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="$ROOT/build"
LOGS="$BUILD/logs"
mkdir -p "$LOGS"

# How many lines of a failing step's log are shown.
TAIL_LINES=40

say() { printf '%s\n' "$*"; }

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

# From here on a script that breaks off says where, in case the command that failed does not.
say_what_breaks_off() {
  set -E
  trap '((BASH_SUBSHELL > 0)) || say "broke off: ${BASH_SOURCE[0]##*/}, line $LINENO: $BASH_COMMAND" >&2' ERR
}

# step LOG_NAME TITLE COMMAND... : runs the command with its output in build/logs/LOG_NAME.log, and
# prints one line: title, outcome, seconds. A failure shows the end of the log. STEP_OK then is true
# or false.
#
# Neither this nor what calls it may be part of a condition (if, &&, ||): bash would ignore `set -e`
# all the way down, and a failing command in the middle of a step would go unnoticed.
step() {
  local log="$LOGS/$1.log" title="$2" status=0 started=$SECONDS
  shift 2
  printf '%-50s ' "$title"
  : >"$log"
  show_life "$log" "$title" &
  local life=$!
  set +e
  (
    set -e
    "$@"
  ) >"$log" 2>&1 </dev/null
  status=$?
  # It may be gone already, when the whole group was ended.
  kill "$life" 2>/dev/null
  wait "$life" 2>/dev/null
  set -e
  if [[ -t 1 ]]; then printf '\r%-50s \e[K' "$title"; fi
  if ((status == 0)); then
    STEP_OK=true
    printf 'ok      %3ds\n' $((SECONDS - started))
  else
    STEP_OK=false
    printf 'FAILED  %3ds   %s\n' $((SECONDS - started)) "${log#"$ROOT"/}"
    tail -n "$TAIL_LINES" "$log" | sed 's/^/    /'
  fi
}

# show_life LOG TITLE: until it is ended, shows that a step goes on: at a terminal the last line of
# its log, elsewhere a dot now and then.
show_life() {
  local log="$1" title="$2" started=$SECONDS pause=10
  if [[ -t 1 ]]; then pause=1; fi
  trap 'kill "$!" 2>/dev/null; exit 0' TERM
  while
    sleep "$pause" >/dev/null 2>&1 </dev/null &
    wait "$!"
  do
    if [[ -t 1 ]]; then
      printf '\r%-50s %3ds  \e[2m%.22s\e[0m\e[K' "$title" $((SECONDS - started)) \
        "$(tail -n 1 "$log" | tr -cd '[:print:]')"
    else
      printf '.'
    fi
  done
}

# The same, for a step without which there is no going on.
must_step() {
  step "$@"
  $STEP_OK || exit 1
}

# configure_and_build PRESET [TARGET...]
configure_and_build() {
  local preset="$1" stamp="build/$1/.configured-from" configured_from
  shift
  cd "$ROOT"
  # A build tree configures itself again when a CMake file changes, but goes on with what the presets and
  # the toolchains said when it was begun: another library than that of a new tree.
  configured_from="$(cat CMakePresets.json cmake/*.cmake | cksum)"
  if [[ ! -f "$stamp" || "$(<"$stamp")" != "$configured_from" ]]; then
    cmake --fresh --preset "$preset"
    say "$configured_from" >"$stamp"
  fi
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

# The library for x64 or x86, and its size.
declare -A TOOLCHAINS=([x64]=x86_64-w64-mingw32 [x86]=i686-w64-mingw32)
library_of() { say "$BUILD/windows-$1/bin/ArdObjects100.dll"; }
library_bytes() { stat -c %s "$(library_of "$1")"; }
