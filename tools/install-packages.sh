#!/usr/bin/env bash
# Installs what building and testing need, and does nothing when it is all there.
#
#   tools/install-packages.sh native    the native build and its tests
#   tools/install-packages.sh windows   the 64-bit Windows build, Wine and a virtual display
#   tools/install-packages.sh bench     the native build and what lays a program out in several ways
#   tools/install-packages.sh manual    what makes the manual
#   tools/install-packages.sh all       all of these, the 32-bit ones, clang and the fuzzers
#   tools/install-packages.sh SET --missing   prints what it would install
#
# 32-bit Wine and Free Pascal are wanted but not required: when one cannot be had, the reason is left in
# build/wine32-unavailable.txt or build/free-pascal-unavailable.txt, and its tests report themselves as
# skipped.
set -euo pipefail
# shellcheck source=tools/console.sh
source "$(dirname "${BASH_SOURCE[0]}")/console.sh"
# shellcheck source=tools/free_pascal.sh
source "$ROOT/tools/free_pascal.sh"

COMMON_PACKAGES=(
  cmake ninja-build ccache googletest git ca-certificates
  # A host's database, natively and behind Wine's ODBC.
  unixodbc libodbc2 libsqliteodbc sqlite3
)

NATIVE_PACKAGES=("${COMMON_PACKAGES[@]}" g++ unixodbc-dev libedit-dev)

WINDOWS_PACKAGES=(
  "${COMMON_PACKAGES[@]}"
  # The build. libwine-dev and libwine bring the IDL files and the type library that widl needs; what widl
  # leaves out is done in Python, and when it was run is not to be seen.
  g++-mingw-w64-x86-64-posix mingw-w64-tools libwine libwine-dev python3 faketime
  # Running it.
  wine wine64 fonts-wine fonts-open-sans fonts-dejavu-core
  # A display without a screen, keys for it, and pictures of it.
  xvfb openbox xdotool x11-utils imagemagick procps
)

# Only recommended by Wine, but without them its windows lack keys and pointer.
WINE_X_LIBRARIES=(
  libxcomposite1 libxcursor1 libxfixes3 libxi6 libxinerama1 libxrandr2 libxrender1 libxxf86vm1
)
WINDOWS_PACKAGES+=("${WINE_X_LIBRARIES[@]}")

CHECK_PACKAGES=(g++-mingw-w64-i686-posix clang clang-format lld libclang-rt-dev mono-mcs nsis osslsigncode openssl msitools wixl)

# wine64 is named along so that both halves of Wine stay the same version.
WINE32_PACKAGES=(
  wine32:i386 wine64 libsqliteodbc:i386 libodbc2:i386 "${WINE_X_LIBRARIES[@]/%/:i386}"
)

# The manual, and the browser that its tests look at it with.
MANUAL_PACKAGES=(
  g++ python3 python3-sphinx python3-myst-parser python3-sphinx-inline-tabs furo
  chromium chromium-driver python3-selenium
)

LOG="$LOGS/packages.log"

# Prints those of the given packages that are not installed. A name without an architecture means
# the machine's own: the same package may be there for the other one only.
missing() {
  local native installed package
  native="$(dpkg --print-architecture)"
  # Of unknown packages it says so on standard error, and that is just what "missing" means.
  installed="$(dpkg-query -W -f='${Package}:${Architecture} ${db:Status-Status}\n' "${@%%:*}" \
    2>/dev/null | sed -n 's/ installed$//p')" || true
  for package in "$@"; do
    [[ "$package" == *:* ]] || package="$package:$native"
    grep -qxF -e "$package" -e "${package%:*}:all" <<<"$installed" ||
      printf '%s\n' "${package%:"$native"}"
  done
}

as_root() {
  if ((EUID == 0)); then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    say "root or sudo is needed to install packages"
    return 1
  fi
}

# Without a TTY apt writes no progress bars; a package manager that runs already is waited for.
apt() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=300 \
    -o Dpkg::Use-Pty=0 "$@"
}

apt_install() { apt install --no-install-recommends "$@"; }

# The same without the security suite, for an architecture whose security index is out of step:
# there, common packages exist in versions that the other architecture cannot match.
apt_install_without_security() {
  local preferences status=0
  preferences="$(mktemp)"
  cat >"$preferences" <<'PREFERENCES'
Package: *
Pin: release l=Debian-Security
Pin-Priority: -1

Package: *
Pin: release l=Debian
Pin-Priority: 1001
PREFERENCES
  chmod 644 "$preferences"
  apt install --no-install-recommends --allow-downgrades \
    -o Dir::Etc::Preferences="$preferences" "$@" || status=$?
  rm -f "$preferences"
  return "$status"
}

# A single unreachable index must not stop the rest: the installation itself will tell.
refresh_indexes() { apt update || true; }

install_required() {
  local wanted
  mapfile -t wanted < <(missing "$@" | sort -u)
  ((${#wanted[@]})) || return 0
  say "Installing ${#wanted[@]} packages: ${wanted[*]}"
  must_step packages "packages" with_indexes "${wanted[@]}"
}

# install_wanted WHAT REASON_FILE ATTEMPT PACKAGE...
install_wanted() {
  local what="$1" reason="$2" attempt="$3"
  shift 3
  if [[ -z "$(missing "$@")" ]]; then
    rm -f "$reason"
    return
  fi
  # A failed attempt is not repeated on every run, but once a day.
  if [[ -n "$(find "$reason" -mmin -1440 2>/dev/null)" ]]; then return; fi

  say "Installing $what"
  "$attempt" "$@" >>"$LOG" 2>&1 || true

  if [[ -z "$(missing "$@")" ]]; then
    rm -f "$reason"
  else
    {
      printf '%s could not be installed: ' "$what"
      grep -E '^E: |root or sudo' "$LOG" | tail -n 1 | sed 's/^E: //' || true
    } >"$reason"
    cat "$reason"
  fi
}

with_indexes() { refresh_indexes && apt_install "$@"; }

for_i386() {
  as_root dpkg --add-architecture i386 && refresh_indexes &&
    { apt_install "$@" || apt_install_without_security "$@"; }
}

case "${1:-all}" in
  native) packages=("${NATIVE_PACKAGES[@]}") ;;
  windows) packages=("${WINDOWS_PACKAGES[@]}") ;;
  bench) packages=("${NATIVE_PACKAGES[@]}" python3 lld) ;;
  manual) packages=("${MANUAL_PACKAGES[@]}") ;;
  all)
    packages=("${NATIVE_PACKAGES[@]}" "${WINDOWS_PACKAGES[@]}" "${CHECK_PACKAGES[@]}" "${MANUAL_PACKAGES[@]}")
    ;;
  *) die "usage: ${0##*/} [native|windows|bench|manual|all] [--missing]" ;;
esac
if [[ "${2:-}" == --missing ]]; then
  missing "${packages[@]}" | sort -u
  exit
fi
: >"$LOG"
install_required "${packages[@]}"
if [[ "${1:-all}" == all ]]; then
  install_wanted "32-bit Wine" "$BUILD/wine32-unavailable.txt" for_i386 "${WINE32_PACKAGES[@]}"
  install_wanted "Free Pascal" "$PASCAL_UNAVAILABLE" with_indexes "${PASCAL_PACKAGES[@]}"
fi
