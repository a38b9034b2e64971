#!/usr/bin/env bash
# A script host and the prompt are asked the same (tests/windows/answers.txt) and must answer the
# same, line by line: the DLL late-bound on Windows, and the portable classes natively.
#
#   answers_test.sh ARCHITECTURE
set -euo pipefail
# shellcheck source=tests/windows/script_suite.sh
source "$(dirname "${BASH_SOURCE[0]}")/script_suite.sh" "$1"

LINES=tests/windows/answers.txt

# The lines as a script.
script() {
  cat <<'VBS'
Dim engine, connection, a, b, c, d, list
Set engine = CreateObject("ArdSimulator.Engine")
engine.Open WScript.Arguments(0)
Set connection = CreateObject("ADODB.Connection")
connection.Open "Driver=SQLite3;Database=" & WScript.Arguments(1)
VBS
  local class line expression
  for class in $(sed -nE 's/^(\? )?([A-Za-z]+)\..*/\2/p' "$LINES" | sort -u); do
    printf 'Dim %s\nSet %s = CreateObject("ArdObjects100.%s")\nPrepare %s\n' \
      "$class" "$class" "$class" "$class"
  done
  while IFS= read -r line; do
    if [[ "$line" == "'"* ]]; then continue; fi
    expression="${line%%$'\t'*}"
    printf 'WScript.Echo "%s"\n' "${expression//\"/\"\"}"
    case "$line" in
      *$'\t'*) printf 'a = Empty: b = Empty: c = Empty: d = Empty: answer = ""\n%s\nWScript.Echo answer\n' "${line#*$'\t'}" ;;
      '? '*) printf 'answer = ""\nResult %s\nWScript.Echo answer\n' "${expression#\? }" ;;
      *) printf '%s\n' "$line" ;;
    esac
  done <"$LINES"
  cat <<'VBS'
Sub Prepare(object)
  On Error Resume Next
  Set object.ArdWorkspace = engine.Workspace
  Set object.ArdEngine = engine
  Set object.oDBaseConn = connection
  object.AppName = "Manufacturing"
  object.RegistryPath = "Manufacturing Demo"
End Sub

Function StockRecord(code)
  Set StockRecord = engine.Workspace.CreateRecordObject("StockRecord")
  StockRecord.Fields.Item("STOCK_CODE").Value = code
  StockRecord.Find False
End Function

Dim answer
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

fresh_stores prompt
fresh_stores script
cut -f1 "$LINES" | "$BUILD/native-debug/bin/ard_console" "$FOLDER/prompt" "$FOLDER/prompt.db" \
  >"$FOLDER/prompt.txt"
script >"$FOLDER/script.vbs"
wine_script "$ARCH" 60 "$FOLDER/script.vbs" "$(windows_path "$FOLDER/script")" "$FOLDER/script.db" \
  2>"$FOLDER/errors.txt" | tr -d '\r' >"$FOLDER/script.txt"

questions="$(grep -c '^?' "$LINES")"
different="$(diff "$FOLDER/prompt.txt" "$FOLDER/script.txt" | tee /dev/stderr | grep -c '^[<>]')" || true
if ((different == 0)); then
  say "$questions passed, 0 failed"
else
  cat "$FOLDER/errors.txt"
  say "0 passed, $different failed"
  exit 1
fi
