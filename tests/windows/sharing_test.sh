#!/usr/bin/env bash
# One company, and three hosts at work on it: two script hosts and the prompt, which is a native
# program. They allocate the same product, and none of it may be lost; and each sees who is logged on.
# Started in a prepared prefix.
#
#   sharing_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/suite.sh"
EACH=20
SECONDS_ALLOWED=60

STOCK=$'STOCK_CODE:text(8)\tQTY_IN_STOCK:double\tQTY_ALLOCATED:double'
printf '%s\nBOLT\t99999\t0\nNUT\t7\t3\n' "$STOCK" >"$FOLDER/StockData.table"
printf 'LOGON_NAME:text(30)\tEMPTY_FLAG:boolean\n' >"$FOLDER/QueueData.table"
printf 'NAME:text(30)\nANN\nBOB\n' >"$FOLDER/AccessData.table"
mkdir -p "$FOLDER/broken/SalesData.table"
cat >"$FOLDER/host.vbs" <<'VBS'
Dim engine, products, users, files, made, answer
Set engine = CreateObject("ArdSimulator.Engine")
On Error Resume Next
engine.Open WScript.Arguments(0) & "\broken"
WScript.Echo Err.Description
On Error GoTo 0
engine.Open WScript.Arguments(0)
Set products = CreateObject("ArdObjects100.Products")
Set products.ArdWorkspace = engine.Workspace
Set users = CreateObject("ArdObjects100.General")
Set users.ArdWorkspace = engine.Workspace
If Not engine.Workspace.Connect("", WScript.Arguments(1), "", "") Then WScript.Quit 1
Set files = CreateObject("Scripting.FileSystemObject")
Do While users.GetNumActiveUsers() < 3
Loop
' Nobody leaves before everybody has seen the others.
files.CreateTextFile(WScript.Arguments(0) & "\" & WScript.Arguments(1) & ".seen").Close
Do Until files.FileExists(WScript.Arguments(0) & "\go")
Loop
Do While made < CLng(WScript.Arguments(2))
  answer = products.UpdateAllocQty("BOLT", 1)
  If engine.LastError.Number = 0 Then
    If Not answer Then WScript.Quit 1
    made = made + 1
  End If
Loop
WScript.Echo made
VBS

# expect ANSWER QUESTION: of the prompt.
ask() {
  local echoed answer
  printf '? %s\n' "$1" >&"${HOST[1]}"
  read -r -t "$SECONDS_ALLOWED" echoed <&"${HOST[0]}"
  read -r -t "$SECONDS_ALLOWED" answer <&"${HOST[0]}"
  printf '%s' "$answer"
}
expect() {
  local answer
  answer="$(ask "$2")"
  judge "$2, which is $answer," test "$answer" == "$1"
}
writes() {
  diff <(tr -d '\r' <"$FOLDER/$1") <(printf '%s\n' "${@:2}")
}

coproc HOST { "$PROMPT" "$FOLDER"; }
expect True 'Messaging.LogonUser("MANAGER", "")'
for user in ann bob; do
  # Wine's script host cannot read a script that another one is just opening.
  cp "$FOLDER/host.vbs" "$FOLDER/$user.vbs"
  wine_script "$ARCH" "$SECONDS_ALLOWED" "$FOLDER/$user.vbs" "$(windows_path "$FOLDER")" "$user" \
    "$EACH" >"$FOLDER/$user.txt" 2>&1 </dev/null &
  scripts+=($!)
done
for user in ann bob; do judge "$user" wait_until "$SECONDS_ALLOWED" test -f "$FOLDER/$user.seen"; done
expect 3 'General.GetNumActiveUsers()'
touch "$FOLDER/go"
made=0
while ((made < EACH)); do
  if [[ "$(ask 'Products.UpdateAllocQty("BOLT", 1)')" == True ]]; then ((made += 1)); fi
done
for script in "${scripts[@]}"; do judge "a script" wait "$script"; done
for user in ann bob; do judge "$user" writes "$user.txt" 'SalesData.table: Is a directory' "$EACH"; done
expect "Allocated = $((3 * EACH)), OnOrder = 0" 'Products.GetAllocOnOrder("BOLT")'
expect 1 'General.GetNumActiveUsers()'
judge "what is stored" writes StockData.table "$STOCK" $'BOLT\t99999\t'$((3 * EACH)) $'NUT\t7\t3'
((FAILED == 0)) || cat "$FOLDER"/*.txt
finish
