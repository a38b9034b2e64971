# shellcheck shell=bash
# What a release holds, and how its files are made: the same bytes from the same commit. To be sourced,
# after tools/console.sh.
#
#   release_version              "1.0.0", as CMakeLists.txt has it
#   stage_setup FOLDER           what gets installed
#   stage_redist FOLDER          what a maker embeds
#   stage_sdk FOLDER             what a host's developer works with
#   make_setup FOLDER VERSION FILE
#                                the setup that installs what is in the folder
#   make_msi FOLDER VERSION FILE the libraries in the folder for Windows Installer
#   make_zip FOLDER FILE         all that is in the folder, below the file's name
#   sign FILE...                 when there is a certificate: CERTIFICATE names it, CERTIFICATE_PASSWORD
#                                is what opens it, and TIMESTAMP the service that says when it was

PRODUCT=ArdObjects100
PUBLISHER="The $PRODUCT maintainers"
PACKAGING="$ROOT/packaging"
# What is built for it: of both architectures, and of one alone. A program of 32 bits runs everywhere.
# shellcheck disable=SC2034  # for the caller
RELEASE_TARGETS=(ArdObjects100 ArdSimulator)
RELEASE_PROGRAMS=(trace_report ard_console)

release_version() { sed -nE 's/^project\(.* VERSION ([0-9.]+) .*/\1/p' "$ROOT/CMakeLists.txt"; }

# The time of all files, in seconds since 1970.
release_time() { say "${SOURCE_DATE_EPOCH:-$(git -C "$ROOT" log -1 --format=%ct)}"; }

# copy TO FILE...: into a folder, with nothing of who has built it.
copy() {
  local to="$1"
  shift
  mkdir -p "$to"
  cp --no-preserve=mode -r "$@" "$to/"
}

# Text as Windows' own programs show it.
text() { mkdir -p "$(dirname "$2")" && sed 's/$/\r/' "$1" >"$2"; }

stage_notices() {
  text "$ROOT/LICENSE" "$1/LICENSE.txt"
  text "$PACKAGING/third-party.txt" "$1/THIRD-PARTY.txt"
  local package
  for package in gcc-mingw-w64-base mingw-w64-common nsis; do
    text "/usr/share/doc/$package/copyright" "$1/licences/$package.txt"
  done
}

# headers FOLDER NAME...: what compilers are told of the library.
headers() {
  local to="$1"
  shift
  copy "$to" "${@/#/$BUILD/windows-x64/src/windows/$PRODUCT}"
  # Where it was made is nobody's business.
  sed -i '1s# from /[^*]*/# from #' "$to"/*
}

# Only when it has been built; without what its builder keeps for the next time.
stage_manual() {
  [[ -f "$BUILD/manual/index.html" ]] || return 0
  copy "$1" "$BUILD/manual"
  rm -rf "$1"/manual/.[!.]*
}

stage_setup() {
  local arch
  for arch in x64 x86; do copy "$1/$arch" "$BUILD/windows-$arch/bin/$PRODUCT.dll"; done
  copy "$1" "$BUILD/windows-x86/bin/trace_report.exe"
  stage_notices "$1"
  text "$ROOT/CHANGELOG.md" "$1/CHANGELOG.txt"
  stage_manual "$1"
  sign "$1"/x{64,86}/$PRODUCT.dll "$1/trace_report.exe"
}

stage_redist() {
  local arch
  for arch in x64 x86; do
    copy "$1/$arch" "$BUILD/windows-$arch"/{bin/$PRODUCT.dll,bin/$PRODUCT.manifest,src/windows/$PRODUCT.tlb}
    sign "$1/$arch/$PRODUCT.dll"
  done
  headers "$1/include" .h _i.c
  stage_notices "$1"
  make_msi "$1" "$(release_version)" "$1/$PRODUCT-$(release_version).msi"
  text "$PACKAGING/redist.txt" "$1/README.txt"
}

stage_sdk() {
  local arch name
  for arch in x64 x86; do
    copy "$1/simulator/$arch" "$BUILD/windows-$arch/bin/ArdSimulator.dll"
    copy "$1/symbols/$arch" "$BUILD/windows-$arch/bin"/{$PRODUCT,ArdSimulator}.dll.debug
    sign "$1/simulator/$arch/ArdSimulator.dll"
  done
  # Without what somebody who has worked with them has left there.
  git -C "$ROOT" ls-files -z --cached --others --exclude-standard examples |
    tar -c --ignore-failed-read --null -C "$ROOT" -T - | tar -x -C "$1"
  mv "$1/examples" "$1/samples"
  mv "$1/samples/company" "$1/simulator/"
  rm "$1/samples/cpp/CMakeLists.txt"
  find "$1/samples" -type f -exec sed -i 's/$/\r/' {} +
  headers "$1/include" .h _i.c .cs _TLB.pas
  for name in "${RELEASE_PROGRAMS[@]}"; do
    copy "$1/bin" "$BUILD/windows-x86/bin/$name.exe"
    copy "$1/symbols/x86" "$BUILD/windows-x86/bin/$name.exe.debug"
    sign "$1/bin/$name.exe"
  done
  stage_manual "$1"
  stage_notices "$1"
  text "$PACKAGING/sdk.txt" "$1/README.txt"
}

# The files below a folder, one a line, in an order that no locale changes.
files_of() { (cd "$1" && find . -type f -printf '%P\n' | LC_ALL=C sort); }

dated() { find "$1" -exec touch -h -d "@$(release_time)" {} +; }

# The icon, and the pictures of the pages: the same drawing in several sizes.
make_art() {
  local size icons=()
  mkdir -p "$1"
  for size in 16 32 48 64; do
    drawing "$size" "$1/$size.png"
    icons+=("$1/$size.png")
  done
  convert "${icons[@]}" -strip "$1/icon.ico"
  drawing 88 "$1/88.png"
  convert -size 240x114 xc:white "$1/88.png" -gravity East -geometry +8+0 -composite \
    -type TrueColor "BMP3:$1/header.bmp"
  drawing 180 "$1/180.png"
  convert -size 290x628 'xc:#1f5582' "$1/180.png" -gravity North -geometry +0+90 \
    -composite -type TrueColor "BMP3:$1/side.bmp"
}

# A ledger's page with a tick, drawn at four times its size.
drawing() {
  local s=$(($1 * 4))
  at() { say $(($1 * s / 64)); }
  convert -size "${s}x$s" xc:none \
    -fill '#1f5582' -draw "roundrectangle 0,0 $((s - 1)),$((s - 1)) $(at 12),$(at 12)" \
    -fill white -draw "roundrectangle $(at 14),$(at 9) $(at 46),$(at 54) $(at 3),$(at 3)" \
    -fill '#7fa8cc' -draw "rectangle $(at 19),$(at 17) $(at 41),$(at 20)" \
    -draw "rectangle $(at 19),$(at 26) $(at 41),$(at 29)" \
    -draw "rectangle $(at 19),$(at 35) $(at 32),$(at 38)" \
    -fill '#1f5582' -draw "circle $(at 44),$(at 45) $(at 44),$(at 29)" \
    -fill '#3fae5a' -draw "circle $(at 44),$(at 45) $(at 44),$(at 32)" \
    -draw "fill none stroke white stroke-width $(at 4) stroke-linecap round stroke-linejoin round
      path 'M $(at 38),$(at 46) L $(at 42),$(at 50) L $(at 50),$(at 41)'" \
    -resize "$1x$1" -strip "$2"
}

make_setup() {
  local stage="$1" version="$2" out="$3" work name defines=()
  work="$(mktemp -d "$BUILD/setup.XXXXXX")"
  make_art "$work/art"
  # What the setup puts there, in the words of its system; the list itself is one of them.
  { files_of "$stage" && printf 'uninstall.exe\nsetup.ini\nfiles.txt\n'; } | sed 's/$/\r/; s#/#\\#g' >"$work/files.txt"
  {
    while read -r name; do
      # The paths of a setup are in the system's own characters.
      [[ "$name" =~ ^[A-Za-z0-9._/-]+$ ]] || die "a name that the setup cannot have: $name"
      printf 'SetOutPath "$INSTDIR\\new\\%s"\nFile "%s/%s"\n' \
        "$(dirname "$name" | sed 's#/#\\#g')" "$stage" "$name"
    done < <(files_of "$stage")
    printf 'SetOutPath "$INSTDIR\\new"\nFile "%s"\n' "$work/files.txt"
  } >"$work/files.nsh"
  # The setup remembers when its files were written.
  dated "$stage"
  dated "$work"
  if [[ -d "$stage/manual" ]]; then defines+=(-DMANUAL); fi
  if [[ -n "${CERTIFICATE:-}" ]]; then defines+=("-DSIGN=$ROOT/tools/sign.sh"); fi
  SOURCE_DATE_EPOCH="$(release_time)" makensis -V2 -WX "-DNAME=$PRODUCT" "-DVERSION=$version" \
    "-DPUBLISHER=$PUBLISHER" "-DART=$work/art" "-DFILES=$work/files.nsh" "-DOUT=$out" \
    "-DBYTES=$(find "$stage" -type f -printf '%s\n' | awk '{sum += $1} END {print int(sum / 1024)}')" "${defines[@]}" "$PACKAGING/setup.nsi"
  sign "$out"
  rm -rf "$work"
}

# Neither of its builders can be told the time or an identifier, so one is told another time, and the
# identifier of the file, which says what is in it, is set afterwards.
make_msi() {
  local folder="$1" version="$2" out="$3" upgrade=7C1B7A3E-52B6-4E0E-9B1C-3C9C2C1B5D10 table
  local then=(env TZ=UTC faketime -f "$(TZ=UTC date -d "@$(release_time)" '+%F %T')")
  table="$(mktemp -d "$BUILD/msi.XXXXXX")/SelfReg.idt"
  dated "$folder"
  printf '%s\t%s\r\n' File_ Cost s72 I2 SelfReg File_ Library64 "" Library32 "" >"$table"
  (cd "$folder" && "${then[@]}" wixl -a x64 -o "$out" -D NAME=$PRODUCT -D "VERSION=$version" \
    -D "PUBLISHER=$PUBLISHER" -D UPGRADE=$upgrade -D "PRODUCT=$(name_id $upgrade "$version")" \
    "$PACKAGING/library.wxs")
  "${then[@]}" msibuild "$out" -i "$table"
  "${then[@]}" msibuild "$out" -s "Core Accounts Integration" "$PUBLISHER" "x64;1033" \
    "{$(name_id $upgrade "$(cd "$folder" && sha256sum x*/*.dll) $version")}"
  rm -r "$(dirname "$table")"
  sign "$out"
}

# name_id SPACE NAME: the identifier that a name has, in capitals as installers want it.
name_id() { python3 -c 'import sys, uuid; print(str(uuid.uuid5(uuid.UUID(sys.argv[1]), sys.argv[2])).upper())' "$@"; }

make_zip() {
  rm -f "$2"
  python3 - "$1" "$2" "$(release_time)" <<'PYTHON'
import os, sys, time, zipfile
folder, out, seconds = sys.argv[1:]
date = time.gmtime(int(seconds))[:6]
top = os.path.splitext(os.path.basename(out))[0]
names = sorted(os.path.relpath(os.path.join(at, name), folder)
               for at, _, files in os.walk(folder) for name in files)
with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as archive:
    for name in names:
        entry = zipfile.ZipInfo(f"{top}/{name}", date)
        entry.compress_type = zipfile.ZIP_DEFLATED
        entry.external_attr = 0o644 << 16
        with open(os.path.join(folder, name), "rb") as file:
            archive.writestr(entry, file.read())
PYTHON
}

sign() {
  local file
  [[ -n "${CERTIFICATE:-}" ]] || return 0
  for file in "$@"; do
    osslsigncode sign -pkcs12 "$CERTIFICATE" -readpass <(printf '%s' "${CERTIFICATE_PASSWORD:-}") \
      -h sha256 -n "$PRODUCT" ${TIMESTAMP:+-ts "$TIMESTAMP"} -in "$file" -out "$file.signed"
    mv "$file.signed" "$file"
  done
}
