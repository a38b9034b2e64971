# shellcheck shell=bash
# A display without a screen. To be sourced, after tools/console.sh.
#
#   display_start                starts it, with a window manager, and exports DISPLAY
#   display_stop                 ends both
#   screenshot FILE [WINDOW]     a picture of the whole screen, or of one window with its frame

DISPLAY_SIZE=1280x1024x24
DISPLAY_PIDS=()

display_start() {
  local number_file window_manager_log="$LOGS/openbox.log"
  number_file="$(mktemp)"
  # The server takes the first free number, and tells it when it is ready.
  Xvfb -displayfd 3 -screen 0 "$DISPLAY_SIZE" -dpi 96 -noreset -nolisten tcp \
    3>"$number_file" >"$LOGS/xvfb.log" 2>&1 &
  DISPLAY_PIDS=($!)
  wait_until 20 test -s "$number_file" || {
    say "No virtual display, see ${LOGS#"$ROOT"/}/xvfb.log" >&2
    rm -f "$number_file"
    return 1
  }
  DISPLAY=":$(<"$number_file")"
  export DISPLAY
  # Nothing inside may talk to the desktop of whoever runs this.
  unset WAYLAND_DISPLAY XAUTHORITY SESSION_MANAGER
  rm -f "$number_file"

  openbox --sm-disable --config-file "$ROOT/tools/openbox.xml" >"$window_manager_log" 2>&1 &
  DISPLAY_PIDS+=($!)
  # Windows that open before the window manager runs get neither frame nor focus.
  wait_until 20 window_manager_runs || {
    say "No window manager, see ${window_manager_log#"$ROOT"/}" >&2
    return 1
  }
  # A plain background, as a desktop has.
  display -window root -size 64x64 'xc:#3a6ea5' >>"$window_manager_log" 2>&1 || true
}

display_stop() {
  local pid
  # The window manager first: it complains when the display goes away.
  for ((i = ${#DISPLAY_PIDS[@]} - 1; i >= 0; --i)); do
    pid="${DISPLAY_PIDS[i]}"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
  done
  DISPLAY_PIDS=()
}

window_manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

# wait_until SECONDS COMMAND... : until the command succeeds; fails when the time is over.
wait_until() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    ((SECONDS < end)) || return 1
    sleep 0.1
  done
}

screenshot() {
  local file="$1" window="${2:-root}" x y width height frame
  mkdir -p "$(dirname "$file")"
  if [[ "$window" == root ]]; then
    import -silent -window root "$file"
    return
  fi
  # A window's own picture lacks its frame, so its place is cut out of the whole screen.
  read -r x y width height < <(
    xwininfo -id "$window" | awk '/Absolute upper-left X/ {x = $NF} /Absolute upper-left Y/ {y = $NF}
      /Width:/ {w = $NF} /Height:/ {h = $NF} END {print x, y, w, h}'
  )
  # left, right, top, bottom
  IFS=', ' read -r -a frame < <(xprop -id "$window" -notype _NET_FRAME_EXTENTS | sed 's/.*= //')
  ((${#frame[@]} == 4)) || frame=(0 0 0 0)
  import -silent -window root -crop "$((width + frame[0] + frame[1]))x$((height + frame[2] + \
    frame[3]))+$((x - frame[0]))+$((y - frame[2]))" +repage "$file"
}
