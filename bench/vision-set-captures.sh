# SPDX-License-Identifier: GPL-3.0-or-later
# Window captures for the vision set makers (sourced, not run): a private Xvfb screen and a browser
# captured on it. Each set keeps its own window position, so its pictures stay the ones it was scored with.
# Uses the caller's $display, $work, $out and note; sets $xvfb, which the caller's exit trap kills.

start_screen() {
    Xvfb "$display" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
    xvfb=$!
    sleep 2
}

# browse URL OUT SIZE WINDOW_ONLY POSITION: opens URL in Chromium at SIZE and POSITION and captures its window
# ("window") or the whole screen into $out/OUT.
browse() {
    DISPLAY=$display chromium --no-sandbox --test-type --user-data-dir="$work/chrome" --no-first-run --disable-gpu \
        --window-size="$3" --window-position="$5" "$1" >/dev/null 2>&1 &
    local pid=$! target=root
    sleep 12
    [ "$4" = window ] && target=$(DISPLAY=$display xdotool search --onlyvisible --class chromium | tail -1)
    import -window "$target" -display "$display" "$out/$2"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
}

# capture_program NAME OUT COMMAND...: runs COMMAND on the private screen and captures its window called NAME
# into $out/OUT, or notes that none came up within 20 s.
capture_program() {
    local name=$1 picture=$2 id="" pid
    shift 2
    DISPLAY=$display NO_AT_BRIDGE=1 "$@" >/dev/null 2>&1 &
    pid=$!
    for _ in $(seq 20); do
        sleep 1
        id=$(DISPLAY=$display xdotool search --onlyvisible --name "$name" 2>/dev/null | tail -1) || true
        [ -n "$id" ] && break
    done
    sleep 2
    if [ -n "$id" ]; then
        import -window "$id" -display "$display" "$out/$picture"
    else
        note "no window called $name for $picture"
    fi
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
}
