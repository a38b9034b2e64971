#!/usr/bin/env bash
# A script host and the prompt are asked the same (tests/windows/answers.txt), every published member
# and every dialog, and must answer the same, line by line, and leave the same behind: the DLL
# late-bound on Windows and worked by keys, and the portable classes natively. Started in a prepared
# prefix and on its display.
#
#   answers_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/suite.sh"
SECONDS_ALLOWED=300
MEMBERS="$BUILD/native-debug/console/ArdObjects100_members.txt"
VB_SETTINGS='HKCU\Software\VB and VBA Program Settings\Manufacturing Demo'
INI="$WINEPREFIX/drive_c/windows/veltrix.ini"

# The published members as "KIND CLASS.MEMBER TYPE", KIND being call, get or put.
published() { cat "$MEMBERS"; }

# The table, the examples of the reference, and then every property: what it has come to be, and what it
# takes.
questions() {
  grep -v "^'" tests/windows/answers.txt
  python3 tools/examples.py --questions src/windows/server/ArdObjects100.idl g++
  published | awk '$3 ~ /^Object/ || $1 == "call" {next}
    $1 == "put" {print $2 " = " ($3 == "String" ? "\"of " $2 "\"" : $3 == "Boolean" ? "True" : "7")}
    {print "? " $2}'
}

# The members that are asked; the properties all are. Not the stores: they are objects, which the prompt
# itself hands to the classes.
asked() { grep -oE '^(\? )?[A-Za-z]+\.[A-Za-z0-9]+' "$FOLDER/questions.txt" | sed 's/^? //' | sort -u; }
to_be_asked() { published | awk '$3 !~ /^Object/ || $1 == "call" {print $2}' | sort -u; }

for_prompt() {
  awk -F'\t' '!/^(\t|= )/ {print $1} $4 != "" {gsub(", ", "\n", $4); print $4}' "$FOLDER/questions.txt"
}

# What the prompt wrote, with just the titles of the windows in place of each run of the same.
answers_of_prompt() {
  awk 'function title(text) {if (text != last) print "\t" text; last = text}
    FNR == NR {if (!/^\t/) asked[$0]; next}
    $0 in asked {last = ""}
    /^--- .* ---$/ {gsub(/^--- |(: Product Information.*)? ---$/, ""); title($0); drawing = 1}
    /^\[(!|stop|\?)\] / {sub(/^[^ ]+ /, ""); sub(/: .*/, ""); title($0); next}
    !drawing && !/^ | \.*$/ {print}
    /\(\? helps\) / {drawing = 0}' <(for_prompt) -
}

# The questions whose answers are known, as the prompt repeats them, and these answers.
expected() {
  awk -F'\t' '/^= / {print asked; print substr($0, 3)} /^\? / {asked = $1}' "$FOLDER/questions.txt" |
    sed -E 's/(LogonUser|PassLogged).+/\1.../'
}
# What the prompt has answered to them.
answered() {
  awk 'FNR == NR {if (FNR % 2) asked[++n] = $0; next}
    i < n && $0 == asked[i + 1] {++i; print; getline; while (/^\t/) getline; print}' \
    <(expected) "$FOLDER/prompt.txt" | sed -E 's/ +"(,|$)/"\1/g'
}

for_script() {
  cat <<'VBS'
Dim engine, connection, a, b, c, d, list, answer
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open "company"
Set connection = CreateObject("ADODB.Connection")
connection.Open "Driver=SQLite3;Database=company.db"
VBS
  local class line expression repeated
  for class in $(published | sed -E 's/^[a-z]+ ([A-Za-z]+)\..*/\1/' | sort -u); do
    printf 'Dim %s\nSet %s = CreateObject("ArdObjects100.%s")\nPrepare %s\n' \
      "$class" "$class" "$class" "$class"
  done
  # As the reference calls them.
  printf 'Dim accessRights, deliveryAddress\nSet accessRights = cAccessRights\nSet deliveryAddress = cDeliveryAddress\n'
  while IFS= read -r line; do
    if [[ "$line" == $'\t'* || "$line" == "= "* ]]; then continue; fi
    expression="${line%%$'\t'*}"
    # The prompt does not repeat what may be a password.
    repeated="$(sed -E 's/(LogonUser|PassLogged).+/\1.../' <<<"$expression")"
    printf 'WScript.Echo "%s"\n' "${repeated//\"/\"\"}"
    case "$line" in
      *$'\t'*) printf 'a = Empty: b = Empty: c = Empty: d = Empty\n%s\nTell\n' "${line#*$'\t'}" ;;
      '? '*) printf 'Result %s\nTell\n' "${expression#\? }" ;;
      *) printf '%s\n' "$line" ;;
    esac
  done <"$FOLDER/questions.txt"
  cat <<'VBS'
Set record = Nothing
If engine.OpenFiles > 0 Or engine.LivingObjects > 0 Or connection.OpenRecordsets > 0 Then
  WScript.Echo "something is left open"
End If

Sub Prepare(object)
  On Error Resume Next
  Set object.ArdWorkspace = engine.Workspace
  Set object.ArdEngine = engine
  Set object.oDBaseConn = connection
  object.AppName = "Manufacturing"
  object.RegistryPath = "Manufacturing Demo"
  object.ArdDataPath = "company"
End Sub

Function StockRecord(code)
  Set StockRecord = engine.Workspace.CreateRecordObject("StockRecord")
  StockRecord.Fields.Item("STOCK_CODE").Value = code
  StockRecord.Find False
End Function

Sub Add(text)
  If answer <> "" Then answer = answer & ", "
  answer = answer & text
End Sub
Sub Result(ByVal value)
  Add Literal(value)
End Sub
Sub Outputs(pairs)
  Dim i
  For i = 0 To UBound(pairs) Step 2
    Add pairs(i) & " = " & Literal(pairs(i + 1))
  Next
End Sub
Sub Elements(values)
  Dim i
  For i = 0 To UBound(values)
    Add Literal(values(i))
  Next
End Sub
Sub Tell
  If answer <> "" Then WScript.Echo answer
  answer = ""
End Sub

' As the prompt writes them.
Function Literal(value)
  Select Case VarType(value)
    Case vbString: Literal = """" & Replace(value, """", """""") & """"
    Case vbDate: Literal = Year(value) & "-" & Right("0" & Month(value), 2) & "-" & Right("0" & Day(value), 2)
    Case Else: Literal = CStr(value)
  End Select
End Function
VBS
}

# Works the windows of the table, and lists their titles.
work_dialogs() {
  local line title pressed key last=
  while IFS= read -r line <&3; do
    if [[ "$line" != $'\t'* ]]; then
      last=
      continue
    fi
    IFS=$'\t' read -r title pressed _ <<<"$line"
    wait_window "$title" 60 || return
    if [[ "$title" != "$last" ]]; then printf '\t%s\n' "$title"; fi
    last="$title"
    for key in $pressed; do
      case "$key" in
        ...) continue 2 ;; # it stays
        \"*) type_ahead "${key//\"/}" ;;
        *) keys "$key" ;;
      esac
    done
    wait_closed || return
  done 3<"$FOLDER/questions.txt" >"$FOLDER/windows.txt"
}

for side in prompt script; do
  mkdir "$FOLDER/$side"
  cp -r examples/company "$FOLDER/$side/company"
  sqlite3 "$FOLDER/$side/company.db" <examples/host_database.sql
done
questions >"$FOLDER/questions.txt"
wine_run 30 reg delete "$VB_SETTINGS" /f >"$FOLDER/reg.txt" 2>&1 || true
rm -f "$INI"
for_script >"$FOLDER/script.vbs"

(cd "$FOLDER/prompt" && for_prompt | "$PROMPT" company company.db) >"$FOLDER/raw.txt" || true
cd "$FOLDER/script"
# With the trace in all detail, and what a debugger would be told among the errors.
ARDOBJECTS_TRACE="$(windows_path "$FOLDER/trace.txt")" ARDOBJECTS_TRACE_DETAIL=1 \
  WINEDEBUG="$WINEDEBUG,+debugstr" \
  wine_script "$ARCH" "$SECONDS_ALLOWED" "$FOLDER/script.vbs" >"$FOLDER/output.txt" 2>"$FOLDER/errors.txt" </dev/null &
HOST=$!
work_dialogs || kill "$HOST" 2>/dev/null || true
# What Wine itself complains of is no answer; it is shown when something is wrong.
judge "the script host" wait "$HOST"
for side in prompt script; do
  sqlite3 "$FOLDER/$side/company.db" .dump >"$FOLDER/$side/company.sql"
  rm "$FOLDER/$side/company.db"
done

answers_of_prompt <"$FOLDER/raw.txt" >"$FOLDER/prompt.txt"
wine_again 60 reg query 'HKCU\Software' /s >"$FOLDER/registry.txt" 2>&1
judge "asking every member" diff <(to_be_asked) <(asked)
judge "answering as worked out by hand" diff <(expected) <(answered)
judge "answering the same" diff <(grep -v $'^\t' "$FOLDER/prompt.txt") <(tr -d '\r' <"$FOLDER/output.txt")
judge "showing the same" diff <(grep $'^\t' "$FOLDER/prompt.txt") "$FOLDER/windows.txt"
judge "leaving the same" diff -r -x company.lock "$FOLDER/prompt" "$FOLDER/script"
judge "the entry in the ini file" grep -q 'AddIn1=Host,.*,host.bmp,host.exe' "$INI"
judge "the detail of the trace" grep -q $'Messaging.LogonUser\t.*("anne", [*][*][*])' "$FOLDER/trace.txt"
judge "writing no password" diff /dev/null <(grep -E 'Rivet7|Anvil9' "$FOLDER"/{trace,registry,errors}.txt)
((FAILED == 0)) || cat "$FOLDER/errors.txt"
((PASSED += $(grep -c '^?' "$FOLDER/questions.txt")))
finish
