# Sourced by run.

# is_xwayland: whether the X server of $DISPLAY shows X11 windows to a Wayland compositor, as the environment
# or the server itself says: by an extension, by older ones by the names of its outputs.
is_xwayland() {
    if [ -z "${DISPLAY:-}" ]; then
        return 1
    fi
    if [ -n "${WAYLAND_DISPLAY:-}" ]; then
        return 0
    fi
    local extensions outputs
    extensions=$(xdpyinfo 2>/dev/null) || true
    outputs=$(xrandr --current 2>/dev/null) || true
    grep -q '^ *XWAYLAND$' <<<"$extensions" || grep -q '^XWAYLAND' <<<"$outputs"
}
