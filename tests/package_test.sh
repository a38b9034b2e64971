#!/usr/bin/env bash
# The release as a customer gets it: built, installed, used, replaced and removed again, in a prefix of
# its own. What each step leaves of the registry and the file system is compared with what was there.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=tools/console.sh
source tools/console.sh
# shellcheck source=tools/wine.sh
source tools/wine.sh
# shellcheck source=tools/display.sh
source tools/display.sh
# shellcheck source=tools/packaging.sh
source tools/packaging.sh
say_what_breaks_off

FOLDER="$(mktemp -d "$BUILD/package-test.XXXXXX")"
VERSION="$(release_version)"
NEW="$BUILD/package/$PRODUCT-$VERSION-setup.exe"
passed=0
failed=0
HOLDERS=()

clean_up() {
  wine_stop
  rm -rf "$FOLDER"
}
trap clean_up EXIT

# expect WHAT EXPECTED FOUND
expect() {
  if [[ "$2" == "$3" ]]; then
    ((passed += 1))
  else
    ((failed += 1))
    printf '%s:\n  wanted %s\n  got    %s\n' "$@"
  fi
}

# variant VERSION CHANGE: a setup of something that is not quite this release, and signed.
variant() {
  local stage="$FOLDER/stage-$1"
  stage_setup "$stage"
  rm -rf "$stage/manual"  # as much again, for nothing
  "$2" "$stage"
  local CERTIFICATE="$FOLDER/maker.p12" CERTIFICATE_PASSWORD="open sesame"
  export CERTIFICATE CERTIFICATE_PASSWORD
  sign "$stage/x64/$PRODUCT.dll" >"$LOGS/sign.log"
  make_setup "$stage" "$1" "$FOLDER/$1.exe" >"$LOGS/setup-$1.log" || die "no setup of $1"
}
older() {
  printf 'x' | tee -a "$1"/x{64,86}/$PRODUCT.dll >/dev/null
  mkdir -p "$1/gone/deep" && echo "only here" >"$1/gone/deep/old.txt"
}
broken() { echo "no library" >"$1/x86/$PRODUCT.dll"; }

# How a Windows program ends, the setup FILE OPTION..., and Windows Installer told to do OPTION with FILE.
code() {
  local status=0
  wine_run 100 "$@" >/dev/null 2>&1 || status=$?
  say "$status"
}
setup() { code "$(windows_path "$1")" /S "${@:2}"; }
install() { code msiexec "$1" "$(windows_path "$2")" /qn; }

# Wine looks for classes among those of the machine only, and keeps but one view of the user's, where the
# library that was registered last is. What the user has is put there in both views, as Windows would show
# it, for as long as the command takes. (That both have been registered shows in the type library's keys.)
with_user_classes() {
  wine_again 60 reg export 'HKCU\Software\Classes' "$(windows_path "$FOLDER/user.reg")" /y >/dev/null 2>&1
  iconv -f UTF-16 -t UTF-8 "$FOLDER/user.reg" | sed '/^@=""/d; s/^\[HKEY_CURRENT_USER/[HKEY_LOCAL_MACHINE/' >"$FOLDER/there.reg"
  { sed 's/\\\\x86\\\\/\\\\x64\\\\/' "$FOLDER/there.reg" &&
    sed '1d; s/Classes\\CLSID/Classes\\Wow6432Node\\CLSID/' "$FOLDER/there.reg"; } >"$FOLDER/both.reg"
  # Not the keys that others' classes are in.
  sed -nE '1p; /\\(Classes|Wow6432Node|CLSID|Interface|TypeLib|AppID)\]/!s/^\[/[-/p' \
    "$FOLDER/both.reg" >"$FOLDER/away.reg"
  wine_again 60 regedit /S "$(windows_path "$FOLDER/both.reg")"
  "$@"
  wine_again 60 regedit /S "$(windows_path "$FOLDER/away.reg")"
}

# The files of the type library that are registered, of 64 bits and of 32.
type_libraries() {
  local platform
  for platform in win64 win32; do
    wine_again 60 reg query "$1\\Software\\Classes\\TypeLib\\{9F172FBD-0E00-49C2-834D-4C2F00C3C8DD}\\1.0\\0\\$platform" /ve |
      tr -d '\r' | sed -nE 's/.*REG_SZ +//p'
  done | paste -sd' '
}

# What hosts say of the library: the script ARCH.vbs, or that of another NAME.
host() {
  wine_again 120 "${WINE_SYSTEM[$1]}\\cscript.exe" //nologo "$(windows_path "$FOLDER/${2:-$1}.vbs")" </dev/null 2>/dev/null
}
said() { tr -d '\r' | paste -sd' '; }
hosts() { { host x64; host x86; } | said; }

# Two hosts, one of each kind, that have the library loaded until `release`.
hold() {
  local arch
  touch "$FOLDER/held"
  rm -f "$FOLDER"/x{64,86}.out
  for arch in x64 x86; do
    host "$arch" "hold-$arch" >"$FOLDER/$arch.out" &
    HOLDERS+=($!)
  done
  # What does not become true shows in the next expectation.
  for arch in x64 x86; do wait_until 60 test -s "$FOLDER/$arch.out" || true; done
}
release() {
  expect "they have it" "works works" "$(cat "$FOLDER"/x{64,86}.out | said)"
  rm "$FOLDER/held"
  wait "${HOLDERS[@]}" || true
  HOLDERS=()
  expect "they have gone on" "works works works works" "$(cat "$FOLDER"/x{64,86}.out | said)"
}
# Which library is where it is registered: "old", "new" or "none", of 64 bits and of 32.
libraries() {
  local arch file
  for arch in x64 x86; do
    file="$1/$arch/$PRODUCT.dll"
    if cmp -s "$file" "$FOLDER/stage-0.9.0/$arch/$PRODUCT.dll"; then
      say old
    elif cmp -s "$file" "$BUILD/windows-$arch/bin/$PRODUCT.dll"; then
      say new
    elif [[ -e "$file" ]]; then
      say other
    else
      say none
    fi
  done | paste -sd' '
}

# All files, and all keys and values but for the times, after a new start of the system. Where Windows
# Installer keeps what it knows is its own.
state() {
  local once='HKCU\Software\Microsoft\Windows\CurrentVersion\RunOnce'
  wine_stop
  wine_again 60 wineboot >/dev/null 2>&1
  # Wine leaves out what is to be run once for the user.
  wine_again 60 reg query "$once" | tr -d '\r' | sed -nE 's/.*REG_SZ +cmd .c /@/p' >"$FOLDER/once.bat"
  wine_again 60 cmd /c "$(windows_path "$FOLDER/once.bat")" >/dev/null 2>&1
  wine_again 60 reg delete "$once" /va /f >/dev/null
  wine_stop
  (cd "$WINEPREFIX" && find drive_c | LC_ALL=C sort && cat ./*.reg) |
    sed -E '/^#time=/d; /^"DriverDateData"=/d; /^$/d; s/^(\[.*\]) [0-9]+$/\1/' |
    awk '/^\[/ {of_consoles = /^\[Console/} !of_consoles' | # Wine keeps them for whoever opens one
    grep -vE '^drive_c/windows/Installer$|\\Installer\\\\((UserData\\\\S-1-5-18\\\\)?(Components|Features|Products|UpgradeCodes))\]$' >"$1"
}
nothing_left() {
  state "$FOLDER/after.txt"
  expect "left behind $1" "" "$(diff "$FOLDER/before.txt" "$FOLDER/after.txt" | grep '^[<>]' | head -n 30)"
}

SCRIPT='On Error Resume Next
Set customers = CreateObject("ArdObjects100.Customers")
If Err.Number <> 0 Then
  WScript.Echo "none"
  WScript.Quit
End If
customers.AppName = "works"
WScript.Echo customers.AppName'
for arch in x64 x86; do
  # Each has a copy of its own: a script cannot be read while another host opens it.
  say "$SCRIPT" >"$FOLDER/$arch.vbs"
  say "$SCRIPT
Set files = CreateObject(\"Scripting.FileSystemObject\")
Set shell = CreateObject(\"WScript.Shell\")
Do While files.FileExists(\"$(windows_path "$FOLDER/held")\")
  shell.Run \"ping -n 2 127.0.0.1\", 0, True
Loop
WScript.Echo customers.AppName" >"$FOLDER/hold-$arch.vbs"
done

openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=A maker" -addext extendedKeyUsage=codeSigning \
  -keyout "$FOLDER/key.pem" -out "$FOLDER/maker.pem" 2>/dev/null
openssl pkcs12 -export -inkey "$FOLDER/key.pem" -in "$FOLDER/maker.pem" -passout "pass:open sesame" -out "$FOLDER/maker.p12"
variant 0.9.0 older
variant 99.0.0 broken
wine_use "$BUILD/package-prefix"
# What an interrupted or failed run has left there.
if [[ -e "$WINEPREFIX/.dirty" ]]; then rm -rf "$WINEPREFIX"; fi
wine_prepare >"$LOGS/package-prefix.log" 2>&1
touch "$WINEPREFIX/.dirty"
# What the system makes of itself when it is used for the first time.
for key in Classes 'Microsoft\Windows\CurrentVersion\RunOnce'; do
  wine_again 60 reg add "HKCU\\Software\\$key" /f >/dev/null
done
for arch in x64 x86; do
  sed '/WScript.Quit/d' "$FOLDER/hold-$arch.vbs" >"$FOLDER/first.vbs"
  host "$arch" first >/dev/null
done
state "$FOLDER/before.txt"
USER_PATH="C:\\users\\$(id -un)\\AppData\\Local\\Programs\\$PRODUCT"
USER_FOLDER="$WINEPREFIX/drive_c/users/$(id -un)/AppData/Local/Programs/$PRODUCT"

expect "a broken setup" 2 "$(setup "$FOLDER/99.0.0.exe")"
nothing_left "by a setup that has failed"

expect "for the user" 0 "$(setup "$FOLDER/0.9.0.exe" /CurrentUser)"
expect "both registered" "$USER_PATH\\x64\\$PRODUCT.dll $USER_PATH\\x86\\$PRODUCT.dll" "$(type_libraries HKCU)"
for file in "$FOLDER/0.9.0.exe" "$USER_FOLDER"/{uninstall.exe,x64/$PRODUCT.dll}; do
  expect "the signature of $file" "Signature verification: ok" \
    "$(osslsigncode verify -CAfile "$FOLDER/maker.pem" -in "$file" 2>&1 | grep '^Signature verification')"
done
expect "hosts of the old" "works works" "$(with_user_classes hosts)"
with_user_classes hold
expect "over one in use" 0 "$(setup "$NEW")"
expect "the exchange" "new new works works" "$(libraries "$USER_FOLDER") $(with_user_classes hosts)"
release
expect "an older one" 3 "$(setup "$FOLDER/0.9.0.exe")"
expect "a broken one" 2 "$(setup "$FOLDER/99.0.0.exe" /CurrentUser)"
expect "what stays" "new new works works" "$(libraries "$USER_FOLDER") $(with_user_classes hosts)"
stage_setup "$FOLDER/stage-new"
expect "what is there" "$({ files_of "$FOLDER/stage-new" && printf '%s\n' files.txt setup.ini uninstall.exe; } | LC_ALL=C sort)" \
  "$(files_of "$USER_FOLDER")"
expect "an older one all the same" 0 "$(setup "$FOLDER/0.9.0.exe" /Downgrade)"
expect "the older one" "old old works works" "$(libraries "$USER_FOLDER") $(with_user_classes hosts)"

# A setup that was ended while it moved the old files away, or the new ones to their places: the next one
# begins with what was there before it.
for moved in "" moved; do
  mkdir -p "$USER_FOLDER"/old-7/x64
  tee "$USER_FOLDER"/old-7/{old,new}.txt <"$USER_FOLDER/files.txt" >/dev/null
  mv "$USER_FOLDER/x64/$PRODUCT.dll" "$USER_FOLDER/old-7/x64/"
  if [[ -n "$moved" ]]; then
    mv "$USER_FOLDER/x86" "$USER_FOLDER"/*.* "$USER_FOLDER/old-7/"
    cp "$FOLDER/stage-new/x64/$PRODUCT.dll" "$USER_FOLDER/x64/"
  fi
  touch "$USER_FOLDER/old-7/"{undo,$moved}
  if [[ -n "$moved" ]]; then
    # Where the new ones would be put to is something else: nothing of the old is thrown away.
    touch "$USER_FOLDER/old-7/new"
    expect "what cannot be undone" 2 "$(setup "$NEW")"
    rm "$USER_FOLDER/old-7/new"
  fi
  expect "after one that was killed" 2 "$(setup "$FOLDER/99.0.0.exe")"
  expect "what it had moved" "old old works works" "$(libraries "$USER_FOLDER") $(with_user_classes hosts)"
done

# It could not delete itself. What waits to do so may not take the next one's.
remove() { setup "$USER_FOLDER/uninstall.exe" "_?=$USER_PATH"; }
expect "removed and put back" "0 0 old old" \
  "$(remove) $(setup "$FOLDER/0.9.0.exe" /CurrentUser) $(libraries "$USER_FOLDER")"
expect "what waits" "" \
  "$(wine_again 60 reg query 'HKCU\Software\Microsoft\Windows\CurrentVersion\RunOnce' | grep 'uninstall.exe')"

with_user_classes hold
expect "removed while in use" 0 "$(remove)"
expect "no library" "none none" "$(with_user_classes hosts)"
release
nothing_left "by the user's uninstaller"

# ---- What a developer gets ----
python3 -m zipfile -e "$BUILD/package/$PRODUCT-$VERSION-sdk.zip" "$FOLDER"
SDK="$FOLDER/$PRODUCT-$VERSION-sdk"
expect "the prompt" '? Customers.GetName("ABC001") "ABC Components Ltd"' "$(say '? Customers.GetName("ABC001")' |
  wine_run 60 "$(windows_path "$SDK/bin/ard_console.exe")" "$(windows_path "$SDK/simulator/company")" 2>/dev/null | said)"
expect "what the prompt is" "usage: ard_console COMPANY_FOLDER [DATABASE_FILE]" \
  "$(wine_run 60 "$(windows_path "$SDK/bin/ard_console.exe")" --help 2>/dev/null | head -n 1 | said)"
# By the samples' own first lines.
build="$(sed -nE '/^.. Build/,/exe/s#^//( Build)? +##p' "$SDK/samples/cpp/example_host.cpp" | said)"
expect "compilers" "" "$(cd "$SDK/samples/cpp" && $build 2>&1 &&
  mcs -out:host.exe -r:Microsoft.CSharp.dll ../csharp/first_host.cs ../../include/$PRODUCT.cs 2>&1)"

# ---- For all users ----
MACHINE_FOLDER="$WINEPREFIX/drive_c/Tools/Library"
expect "either or" 5 "$(setup "$NEW" /AllUsers /CurrentUser)"
expect "a quoted folder" 5 "$(setup "$NEW" /AllUsers '/D=C:\Tools and\Library')"
mkdir -p "$MACHINE_FOLDER" && say "another's" >"$MACHINE_FOLDER/LICENSE.txt"
expect "among another's files" "2 another's" \
  "$(setup "$NEW" /AllUsers '/D=C:\Tools\Library') $(cd "$MACHINE_FOLDER" && cat -- *)"
rm -r "$MACHINE_FOLDER"
expect "for all users" 0 "$(setup "$NEW" /AllUsers '/D=C:\Tools\Library')"
expect "hosts" "new new works works" "$(libraries "$MACHINE_FOLDER") $(hosts)"
expect "another folder" 5 "$(setup "$NEW" /AllUsers '/D=C:\Elsewhere')"
expect "over itself" 0 "$(setup "$NEW")"
key="HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\$PRODUCT"
expect "its entry" "DisplayIcon=C:\\Tools\\Library\\uninstall.exe DisplayName=$PRODUCT DisplayVersion=$VERSION \
InstallLocation=C:\\Tools\\Library NoModify=0x1 NoRepair=0x1 Publisher=$PUBLISHER \
QuietUninstallString=\"C:\\Tools\\Library\\uninstall.exe\" /S UninstallString=\"C:\\Tools\\Library\\uninstall.exe\"" \
  "$(wine_again 60 reg query "$key" | sed -nE '/EstimatedSize/d; s/^ +(\w+) +REG_\w+ +/\1=/p' | said)"
shortcuts="Trace report.lnk"
if [[ -d "$FOLDER/stage-new/manual" ]]; then shortcuts="Manual.lnk $shortcuts"; fi
expect "its shortcuts" "$shortcuts" \
  "$(cd "$WINEPREFIX/drive_c/ProgramData/Microsoft/Windows/Start Menu/Programs/$PRODUCT" && printf '%s\n' * | paste -sd' ')"
# By itself it goes on in a copy.
expect "removed" 0 "$(setup "$MACHINE_FOLDER/uninstall.exe")"
wait_until 60 test ! -e "$MACHINE_FOLDER" || true
expect "no library" "none none" "$(hosts)"
rmdir "$WINEPREFIX/drive_c/Tools"
nothing_left "by the machine's uninstaller"

# ---- By Windows Installer ----
INSTALLER_FOLDER="$WINEPREFIX/drive_c/Program Files/Common Files/$PRODUCT"
python3 -m zipfile -e "$BUILD/package/$PRODUCT-$VERSION-redist.zip" "$FOLDER"
NEW_MSI="$FOLDER/$PRODUCT-$VERSION-redist/$PRODUCT-$VERSION.msi"
make_msi "$FOLDER/stage-0.9.0" 0.9.0 "$FOLDER/0.9.0.msi" >"$LOGS/msi.log" 2>&1
expect "the older" "0 old old works works" "$(install /i "$FOLDER/0.9.0.msi") $(libraries "$INSTALLER_FOLDER") $(hosts)"
expect "over it" "0 new new works works" "$(install /i "$NEW_MSI") $(libraries "$INSTALLER_FOLDER") $(hosts)"
expect "the texts of its licences" "" "$(diff -r "$FOLDER/stage-new/licences" "$INSTALLER_FOLDER/licences" 2>&1)"
expect "the older again" "67 new new works works" "$(install /i "$FOLDER/0.9.0.msi") $(libraries "$INSTALLER_FOLDER") $(hosts)"
expect "removed" "0 none none none none" "$(install /x "$NEW_MSI") $(libraries "$INSTALLER_FOLDER") $(hosts)"
nothing_left "by Windows Installer"

if ((failed == 0)); then rm "$WINEPREFIX/.dirty"; fi
say "$passed passed, $failed failed"
((failed == 0))
