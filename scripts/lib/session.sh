# Sourced by run.

# is_xwayland: whether the X server of $DISPLAY shows X11 windows to a Wayland compositor. The server says so: by an
# extension, older ones by the names of their outputs. $WAYLAND_DISPLAY, which may be left over from another session,
# counts only where a tool to ask is missing, or gets no answer.
is_xwayland() {
    local extensions outputs
    local named='(^|[[:space:]])XWAYLAND'
    if [ -z "${DISPLAY:-}" ]; then
        return 1
    fi
    extensions=$(xdpyinfo 2>/dev/null) || extensions=
    outputs=$(xrandr --current 2>/dev/null) || outputs=
    if [[ $extensions =~ $named || $outputs =~ $named ]]; then
        return 0
    fi
    if [ -n "$extensions" ] && [ -n "$outputs" ]; then
        return 1
    fi
    [ -n "${WAYLAND_DISPLAY:-}" ]
}
