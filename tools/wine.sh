# shellcheck shell=bash
# Wine in a private prefix. To be sourced, after tools/console.sh.
#
#   wine_use PREFIX              everything below works on this prefix
#   wine_prepare                 creates it, unless it is there and up to date
#   wine_run SECONDS COMMAND...  runs a Windows program, and kills it after that time
#   wine_again SECONDS COMMAND...
#                                the same for what can be run twice: tried anew when Wine itself fails
#   never_began STATUS FILE      so Wine has failed: it ended without a word in the file
#   wine_script ARCH SECONDS SCRIPT [ARGUMENT...]
#                                runs a script by the x64 or x86 script host; its lines come in UTF-8
#   wine_start COMMAND...        starts one in the background; its process id is in WINE_PID
#   wine_stop                    ends all that still runs in the prefix
#   register_servers ARCH DLL... registers automation servers (Unix paths), for x64 or x86 programs
#   windows_path PATH            the path as Windows programs see it
#   wine32_missing               prints why 32-bit programs cannot run; fails when they can

# Debian's `wine` prefers the 32-bit loader, which turns `cscript` or `regsvr32` into the 32-bit one.
# The 64-bit loader takes a plain name as 64-bit, and runs 32-bit programs just as well.
WINE_LOADER=/usr/lib/wine/wine64

# Where each architecture's own programs are: cscript, regsvr32 ...
# shellcheck disable=SC2034  # for those who source this
declare -A WINE_SYSTEM=([x64]='C:\windows\system32' [x86]='C:\windows\syswow64')

WINE_LOOK="$ROOT/tools/wine-look.reg"

WINE_CODE_PAGE=CP437

WINE_IN_USE=false

wine_use() {
  WINE_IN_USE=true
  export WINEPREFIX="$1" WINEARCH=win64 WINEDEBUG="${WINEDEBUG:--all}"
  # Nothing here needs these, and Wine would offer to download them.
  export WINEDLLOVERRIDES="mscoree,mshtml="
  # What scripts write is in the code page that goes with this: $WINE_CODE_PAGE.
  export LC_ALL=C.UTF-8
}

# A prefix is made anew when Wine, its 32-bit half or the settings have changed since.
wine_prepare() {
  local stamp="$WINEPREFIX/.made-from" made_from
  made_from="$(
    dpkg-query -W -f='${Package}:${Architecture} ${Version} ${db:Status-Status}\n' \
      libwine fonts-wine fonts-open-sans 2>/dev/null
    cksum <"$WINE_LOOK"
  )"
  if [[ -f "$stamp" && "$(<"$stamp")" == "$made_from" ]]; then return 0; fi
  if [[ -e "$WINEPREFIX" ]]; then
    # Only what was made here is removed.
    if [[ ! -f "$stamp" && "$WINEPREFIX" != "$BUILD"/* ]]; then
      say "$WINEPREFIX exists, and is none of this project's Wine prefixes" >&2
      return 1
    fi
    wine_stop
    rm -rf "$WINEPREFIX"
  fi
  mkdir -p "$WINEPREFIX"
  wine_again 600 wineboot -i || return
  wine_again 300 regedit /S "$(windows_path "$WINE_LOOK")" || return
  # A server that was started without a display never shows a window, and the settings of the look
  # are read when it starts.
  wine_stop
  printf '%s\n' "$made_from" >"$stamp"
}

wine_run() {
  local seconds="$1"
  shift
  timeout --kill-after=5 "$seconds" "$WINE_LOADER" "$@"
}

# On a busy machine a program that is started, be it Wine's own, now and then ends with 1 and without a
# word, once in a thousand starts or so. It says nothing of what is tested.
never_began() { (($1 == 1)) && [[ ! -s "$2" ]]; }

wine_again() {
  local try status
  for try in 1 2 3; do
    sleep $((try - 1))
    status=0
    wine_run "$@" || status=$?
    ((status == 1)) || return "$status"
  done
  say "failed three times: ${*:2}" >&2
  return 1
}

# A script that breaks off with an error ends Wine's script host silently and with success. What the
# host would have reported shows only in a debug message, so that is what is looked for.
wine_script() {
  local arch="$1" seconds="$2" script="$3" messages status try
  shift 3
  messages="$(mktemp)"
  for try in 1 2; do
    status=0
    WINEDEBUG="${WINEDEBUG:+$WINEDEBUG,}fixme+wscript" wine_run "$seconds" \
      "${WINE_SYSTEM[$arch]}\\cscript.exe" //nologo "$(windows_path "$script")" "$@" \
      2>"$messages" | as_utf8 || status=$?
    never_began "$status" "$messages" || break
  done
  grep -v ':fixme:wscript:set_host_properties' "$messages" >&2 || true
  if grep -q ':fixme:wscript:ActiveScriptSite_OnScriptError' "$messages"; then
    say "$script broke off with an error" >&2
    status=1
  fi
  rm -f "$messages"
  return "$status"
}

# Line by line, as they come.
as_utf8() {
  local line
  while IFS= read -r line || [[ -n "$line" ]]; do
    iconv -f "$WINE_CODE_PAGE" -t UTF-8 <<<"${line%$'\r'}"
  done
}

wine_start() {
  "$WINE_LOADER" "$@" &
  # shellcheck disable=SC2034  # for the caller
  WINE_PID=$!
}

wine_stop() {
  # Whatever the caller's own prefix is, it is none of our business.
  $WINE_IN_USE && [[ -d "$WINEPREFIX" ]] || return 0
  # It fails when no server runs, which is as well. The second call waits until it is gone.
  wineserver -k 2>/dev/null || true
  timeout 20 wineserver -w 2>/dev/null || true
}

register_servers() {
  local arch="$1" dll
  shift
  for dll in "$@"; do
    wine_again 60 "${WINE_SYSTEM[$arch]}\\regsvr32.exe" /s "$(windows_path "$dll")" || {
      say "regsvr32 failed for $dll" >&2
      return 1
    }
  done
}

# Drive Z: is the whole file system.
windows_path() {
  local path
  path="$(realpath -m -- "$1")"
  printf 'Z:%s\n' "${path//\//\\}"
}

wine32_missing() {
  if [[ -f "$BUILD/wine32-unavailable.txt" ]]; then
    cat "$BUILD/wine32-unavailable.txt"
  elif [[ ! -e /usr/lib/i386-linux-gnu/wine/i386-windows/ntdll.dll ]]; then
    say "32-bit Wine is not installed"
  else
    return 1
  fi
}
