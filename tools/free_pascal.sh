# shellcheck shell=bash
# Free Pascal for Windows: Debian has its compiler for Linux and the sources of everything else. What is
# made of them (in about ten seconds of a processor's time) is kept in build/free-pascal. To be sourced,
# after tools/console.sh.
#
#   pascal_missing               prints why it cannot be had; fails when it can
#   pascal_compile ARCH SOURCE PROGRAM [OPTION...]
#                                makes a Windows program, for x64 or x86, of a Pascal one

PASCAL_HOME="$BUILD/free-pascal"
PASCAL_PACKAGES=(fp-compiler fp-units-rtl fpc-source)
PASCAL_UNAVAILABLE="$BUILD/free-pascal-unavailable.txt"

pascal_missing() {
  if [[ -f "$PASCAL_UNAVAILABLE" ]]; then
    cat "$PASCAL_UNAVAILABLE"
  elif ! command -v ppcx64 >/dev/null || [[ -z "$(pascal_sources)" ]]; then
    say "Free Pascal is not installed"
  else
    return 1
  fi
}

pascal_sources() { find /usr/share/fpcsrc -mindepth 1 -maxdepth 1 -type d 2>/dev/null | sort | tail -n 1; }

# The compiler for 32-bit programs is one more program to compile; its messages are made by another.
pascal_cross_compiler() {
  local sources="$1" folder="$PASCAL_HOME/compiler" units messages
  [[ -x "$folder/ppcross386" ]] && return
  units="$(dirname "$(dpkg -L "$(pascal_package fp-units-rtl)" | grep '/sysutils\.ppu$')")"
  messages="$(dpkg -L "$(pascal_package fp-compiler)" | grep '/errore\.msg$')"
  mkdir -p "$folder/units"
  ppcx64 -n -v0 -Fu"$units" -FU"$folder/units" -FE"$folder" "$sources/compiler/utils/msg2inc.pp"
  (cd "$folder" && ./msg2inc "$messages" msg msg)
  ppcx64 -n -v0 -O1 -dI386 -Fu"$units" -FU"$folder/units" -Fi"$folder" \
    -F{i,u}"$sources"/compiler/{i386,x86} -F{i,u}"$sources/compiler" -Fu"$sources/compiler/systems" \
    -o"$folder/ppcross386" "$sources/compiler/pp.pas"
}

# The package that a plain name depends on has the version in its name, and the files.
pascal_package() { dpkg-query -W -f='${binary:Package}\n' "$1-[0-9]*" | head -n 1; }

pascal_compile() {
  local arch="$1" source="$2" program="$3" compiler=ppcx64 cpu=x86_64 target=win64 made_from sources
  shift 3
  sources="$(pascal_sources)"
  made_from="$(dpkg-query -W "${PASCAL_PACKAGES[@]}")"
  if [[ ! -f "$PASCAL_HOME/.made-from" || "$(<"$PASCAL_HOME/.made-from")" != "$made_from" ]]; then
    rm -rf "$PASCAL_HOME"
    mkdir -p "$PASCAL_HOME"
    printf '%s\n' "$made_from" >"$PASCAL_HOME/.made-from"
  fi
  if [[ "$arch" == x86 ]]; then
    pascal_cross_compiler "$sources"
    compiler="$PASCAL_HOME/compiler/ppcross386" cpu=i386 target=win32
  fi

  local rtl="$sources/rtl" packages="$sources/packages" units="$PASCAL_HOME/$target"
  local options=(-n -v0 "-T$target" "-FU$units"
    -F{i,u}"$rtl"/{"$target",inc,"$cpu",win,win/wininc,objpas} "-Fi$rtl"/objpas/{sysutils,classes}
    -F{i,u}"$packages"/{rtl-objpas/src/{inc,win},fcl-base/src,fcl-registry/src,winunits-base/src})
  mkdir -p "$units"
  # Units are compiled as they are needed; the first of all has to be asked for.
  [[ -f "$units/system.ppu" ]] || "$compiler" "${options[@]}" -Us -Sg "$rtl/$target/system.pp"
  "$compiler" "${options[@]}" "$@" -Xs "-o$program" "$source"
}
