# Runs a program that needs a screen on a machine that may have none.
# shellcheck shell=bash

# A home of its own, so that neither the user's settings nor an earlier run change what is seen.
private_home() {
    local home
    home=$(mktemp -d "${TMPDIR:-/tmp}/hbbtv-home.XXXXXX")
    at_exit "rm -rf -- $(printf %q "$home")"
    mkdir -m 700 "$home/run"
    export HOME=$home XDG_RUNTIME_DIR=$home/run XDG_CACHE_HOME=$home/cache XDG_CONFIG_HOME=$home/config \
        XDG_DATA_HOME=$home/data
}

# The screen is always a virtual one of the same size, so that a screenshot does not depend on the desktop;
# the whole process group goes when the time is up.
on_virtual_screen() { # time limit in seconds, command...
    local limit=$1
    shift
    env -u WAYLAND_DISPLAY -u DBUS_SESSION_BUS_ADDRESS NO_AT_BRIDGE=1 GTK_A11Y=none GIO_USE_VFS=local \
        GSETTINGS_BACKEND=memory GDK_BACKEND=x11 LIBGL_ALWAYS_SOFTWARE=1 \
        timeout --kill-after=15 "$limit" \
        xvfb-run -a -s '-screen 0 1280x1024x24 -nolisten tcp' "$@" </dev/null
}
