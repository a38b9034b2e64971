#!/usr/bin/env bash
# What the commands of the root folder do with what they are told: on a copy of the project, with
# programs in place of the real ones that only write down that they have been started.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
COPY="$(mktemp -d)"
trap 'rm -rf "$COPY"' EXIT
PASSED=0
FAILED=0

for path in CMakePresets.json bench check cmake demo fuzz manual mutate package soak packaging tools tests examples fuzzers console src simulator host_database trace_report; do
  cp -r "$path" "$COPY/"
done
mkdir "$COPY/stubs"
export PATH="$COPY/stubs:$PATH" STARTED="$COPY/started.txt"
unset DISPLAY
cat >"$COPY/stubs/stub" <<'STUB'
#!/bin/bash
name="${0##*/}"
case "$name $*" in
  'git '*) echo src/a.cpp ;;
  *' -N'*) ;;
  'cmake --fresh '*) mkdir -p "build/$3" ;;&
  *) echo "$name $*" >>"$STARTED" ;;
esac
STUB
chmod +x "$COPY/stubs/stub"
for name in cmake ctest git clang-format apt-get; do ln -s stub "$COPY/stubs/$name"; done
# There is neither a display nor a Wine.
for name in Xvfb dpkg-query wineserver; do ln -s /bin/false "$COPY/stubs/$name"; done
sed -i 's#^WINE_LOADER=.*#WINE_LOADER=/bin/false#' "$COPY/tools/wine.sh"
sed -i 's/wait_until 20/wait_until 1/' "$COPY/tools/display.sh"
printf '#!/bin/sh\n[ "$2" = --missing ] || echo "install $*" >>"$STARTED"\n' >"$COPY/tools/install-packages.sh"
mkdir -p "$COPY/build/native-release/bin"
printf '#!/bin/sh\necho "prompt $*" >>"$STARTED"\n' >"$COPY/build/native-release/bin/ard_console"
chmod +x "$COPY/build/native-release/bin/ard_console"

# expect RC TEXT STARTED COMMAND...: how it ends, what it says among other things, and what it has
# started, in order.
expect() {
  local rc="$1" text="$2" started="$3" output status=0
  shift 3
  : >"$STARTED"
  output="$(cd "$COPY/examples" && "../$1" "${@:2}" 2>&1 </dev/null)" || status=$?
  if [[ "$status" == "$rc" && "$output" == *"$text"* &&
    "$(sed "s#$COPY/##g" "$STARTED")" == "$started" ]]; then
    ((PASSED += 1))
  else
    printf 'FAILED: ./%s\nrc %s, wanted %s with "%s"\n%s\nstarted:\n%s\nwanted:\n%s\n' \
      "$*" "$status" "$rc" "$text" "$output" "$(<"$STARTED")" "$started"
    ((FAILED += 1))
  fi
}

for command in bench check demo fuzz manual mutate package soak; do
  expect 0 "./$command" "" "$command" --help
  expect 2 "./$command: there is no option -x" "" "$command" -x
  # The help is all of the comment, and nothing else.
  expect 0 "$(sed -n '2s/^# //p' "$command")" "" "$command" x -h
done
expect 2 'there is no use for "nonsense"' "" bench Products nonsense
expect 2 "there is no suite 'nope'; there are: format commands warnings library fuzz manual package core_test " "" \
  check format nope
expect 2 "there is no suite 'x64:format'" "" check x64:format
expect 2 "there is no suite ''" "" check ""
expect 2 "--batch shows the demo company's own tour" "" demo --batch company
expect 2 "--fresh is for the prompt's copy" "" demo --fresh
expect 2 "there is no folder $COPY/examples/nowhere" "" demo --console nowhere
expect 2 "there is no file $COPY/examples/nowhere" "" demo --console company nowhere
expect 2 'there is no use for "third"' "" demo company host_database.sql third
expect 2 "a tour of a company of your own needs a screen" "" demo company
for number in 0 08 1.5 x 1000000000 ""; do
  expect 2 "SECONDS is to be a whole number from 1 on, and is \"$number\"" "" fuzz "$number"
done
expect 2 "no fuzzer 'nope'; there are: company conversions " "" fuzz 1 company nope
expect 2 "--seed wants a value" "" mutate --count 5 --seed
expect 2 '--count is to be a whole number from 1 on, and is "0"' "" mutate --count 0
expect 2 "there is no file nowhere.cpp" "" mutate nowhere.cpp
expect 2 "there is no file $COPY/examples/nowhere.p12" "" package --certificate nowhere.p12
expect 2 "the tree has changes that are not committed" "" package
expect 2 'CALLS is to be a whole number from 1 on, and is "many"' "" soak many
expect 2 'DIALOGS is to be a whole number from 0 on, and is "1e3"' "" soak 1 1e3

mkdir -p "$COPY/build/demo"
exec 8>"$COPY/build/demo/.in-use"
flock 8
expect 1 "Another tour is at work in this folder." "" demo --batch
exec 8>&-

# Only what is needed is built.
expect 0 "1 passed, 0 failed" "install all
clang-format --dry-run -Werror src/a.cpp" check format
configure="cmake --fresh --preset"
build="cmake --build --preset"
expect 1 "native: no suite is registered   FAILED" "install all
$configure native-debug
$build native-debug --target core_test fault_sweep_test
ctest --test-dir build/native-debug --parallel $(nproc) --timeout 900 --verbose -R ^(core_test|fault_sweep_test)(_[0-9]+)?\$" \
  check fault_sweep_test core_test
servers="ArdDatabase ArdObjects100 ArdSimulator"
expect 1 "x64: dialogs                                       NOT RUN (no Wine)
0 passed, 2 failed" "install all
$configure windows-x64
$build windows-x64 --target $servers dialog_test" check x64:dialogs

# The prompt's copy of the demo company is kept, and a company of one's own is worked on where it is.
build="$build native-release --target ard_console"
console="install native
$build"
kept="$COPY/build/demo/console"
expect 0 "--fresh starts with a fresh copy" "install native
$configure native-release
$build
prompt build/demo/console/company build/demo/console/host.db" demo --console
echo edited >"$kept/company/SalesData.table"
sqlite3 "$kept/host.db" 'DELETE FROM CurrentUsers'
edited="$(cat "$kept/company/SalesData.table" && sqlite3 "$kept/host.db" .dump | cksum)"
expect 0 "" "$console
prompt build/demo/console/company build/demo/console/host.db" demo --console
expect 0 "" "$console
prompt examples/company" demo --console company
[[ "$(cat "$kept/company/SalesData.table" && sqlite3 "$kept/host.db" .dump | cksum)" == "$edited" ]] || {
  echo "FAILED: the user's company has been changed"
  ((FAILED += 1))
}
# What a build tree was begun with is no longer what the toolchains say.
echo "# more" >>"$COPY/cmake/mingw.cmake"
expect 0 "" "install native
$configure native-release
$build
prompt build/demo/console/company build/demo/console/host.db" demo --console --fresh
diff -r "$COPY/examples/company" "$kept/company" || ((FAILED += 1))

echo "$PASSED passed, $FAILED failed"
((FAILED == 0))
