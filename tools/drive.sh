# shellcheck shell=bash
# Works a dialog as a person would, by keys. To be sourced, after tools/display.sh.
#
#   wait_window TITLE [SECONDS]  waits for a window whose title starts so, and brings it to the front
#   keys KEY...                  presses keys in it, by their X names: Next, Return, Escape, alt+c ...
#   type_ahead TEXT              types the text in it
#   click X Y                    clicks at that point of it, in pixels from its top left corner
#   shot NAME                    leaves a picture of it in $SHOTS/NAME.png
#   wait_closed                  waits until it is gone

WINDOW=
KEY_DELAY_MS=60

wait_window() {
  local title="$1" seconds="${2:-30}"
  wait_until "$seconds" find_window "$title" || {
    say "No window \"$title\" after $seconds seconds; on the screen were:" >&2
    window_titles >&2
    return 1
  }
  # It may be one that only passes, such as a progress window: then the one that follows it is meant.
  wait_until 10 bring_to_front "$title" || {
    say "The window \"$title\" did not come to the front" >&2
    return 1
  }
  # In front does not mean ready: the program takes the keyboard itself, when it gets round to it.
  wait_until 10 window_has_keyboard || {
    say "The window \"$title\" did not take the keyboard" >&2
    return 1
  }
  settle
}

find_window() {
  WINDOW="$(xdotool search --onlyvisible --name "^$1" 2>/dev/null | tail -n 1)"
  [[ -n "$WINDOW" ]]
}

# Until the first activation there is no active window to ask for, which it reports as an error.
bring_to_front() {
  find_window "$1" && timeout 10 xdotool windowactivate --sync "$WINDOW" 2>/dev/null
}

window_has_keyboard() { [[ "$(xdotool getwindowfocus 2>/dev/null)" == "$WINDOW" ]]; }

# After an input Wine draws a little later; what comes next shall see the outcome.
settle() { sleep 0.3; }

keys() {
  xdotool key --clearmodifiers --delay "$KEY_DELAY_MS" "$@"
  settle
}

type_ahead() {
  xdotool type --clearmodifiers --delay "$KEY_DELAY_MS" "$1"
  settle
}

click() {
  xdotool mousemove --window "$WINDOW" "$1" "$2" click 1
  settle
}

shot() { screenshot "$SHOTS/$1.png" "$WINDOW"; }

window_is_gone() { ! xdotool search --onlyvisible --name '.' 2>/dev/null | grep -qx "$WINDOW"; }

wait_closed() {
  wait_until 15 window_is_gone || {
    say "The window \"$(xdotool getwindowname "$WINDOW")\" did not close" >&2
    return 1
  }
}

window_titles() {
  local window
  for window in $(xdotool search --onlyvisible --name '.' 2>/dev/null); do
    xdotool getwindowname "$window" | sed 's/^/  /'
  done
}
