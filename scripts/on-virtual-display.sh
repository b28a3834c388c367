#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
#
# Runs a command on a virtual display: an X server without a screen, a message
# bus, a window manager and the accessibility bus. The command gets its own home
# folder, so that the settings and windows of the user are not touched. With
# --wayland, the display is a Wayland compositor instead of an X server. It has no
# keyboard and no mouse, so no window ever has the focus.
#
#     scripts/on-virtual-display.sh [--wayland] COMMAND [ARGUMENT...]
#
# VEXMARROW_SCREEN=1280x1024 (width x height) sets the size of the screen.
# The exit status is that of the command. All processes and files that were
# started or made here are removed before this script ends.
set -euo pipefail

say() { printf 'on-virtual-display: %s\n' "$*" >&2; }

# The part that runs on the message bus: it starts the window manager and the
# accessibility bus, and then replaces itself by the command. The buses write
# their messages to a log. The command gets the output and the error output of
# the caller, which are the first two arguments (as numbers of descriptors).
inside() {
    local output=$1 errors=$2
    exec 1>&"$output" 2>&"$errors" {output}>&- {errors}>&-
    shift 2
    dbus-send --session --print-reply=literal --reply-timeout=120000 --dest=org.a11y.Bus /org/a11y/bus \
        org.a11y.Bus.GetAddress >/dev/null || { say "no accessibility bus"; exit 125; }
    [ -z "${WAYLAND_DISPLAY-}" ] || exec "$@"
    openbox --sm-disable </dev/null >"$HOME/openbox.log" 2>&1 &
    local tries=0
    until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; do
        tries=$((tries + 1))
        if [ "$tries" -gt 2400 ]; then
            say "the window manager did not start:"
            cat "$HOME/openbox.log" >&2
            exit 125
        fi
        sleep 0.05
    done
    exec "$@"
}

if [ "${1-}" = --inside ]; then
    shift
    inside "$@"
fi

kind=x tools=(Xvfb openbox xprop)
if [ "${1-}" = --wayland ]; then
    kind=wayland tools=(weston)
    shift
fi
if [ $# -eq 0 ]; then
    say "no command is given. Usage: on-virtual-display.sh [--wayland] COMMAND [ARGUMENT...]"
    exit 2
fi
for tool in "${tools[@]}" dbus-run-session dbus-send; do
    if ! command -v "$tool" >/dev/null; then
        say "$tool is missing; scripts/install-packages.sh test installs it"
        exit 125
    fi
done

exec {output}>&1 {errors}>&2
self=$(readlink -f "${BASH_SOURCE[0]}")
# Directly under /tmp, because the names of sockets must be short.
home=$(mktemp -d /tmp/vexmarrow-display.XXXXXX)
server=
desktop=

# The ids of all processes that have the mark of this display in their
# environment. The buses start programs that are not children of this script.
marked() {
    grep -lszxF -- "VEXMARROW_DISPLAY_HOME=$home" /proc/[0-9]*/environ | cut -d/ -f3 || true
}

end_marked() {
    local ids tries
    for tries in $(seq 60); do
        ids=$(marked)
        [ -n "$ids" ] || return 0
        # Processes get two seconds to end by themselves; then they are killed.
        # shellcheck disable=SC2086
        if [ "$tries" -eq 1 ]; then kill -TERM $ids; elif [ "$tries" -gt 40 ]; then kill -KILL $ids; fi \
            2>/dev/null || true
        sleep 0.05
    done
    say "still running: $ids"
}

cleanup() {
    trap '' INT TERM HUP
    end_marked
    if [ -n "$desktop" ]; then wait "$desktop" 2>/dev/null || true; fi
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    rm -rf "$home"
}
trap cleanup EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

mkdir -p "$home/config" "$home/state" "$home/data" "$home/cache"
mkdir -m 700 "$home/run"

screen=${VEXMARROW_SCREEN:-1280x1024}
display=()

# The server chooses a free display number and writes it when it is ready.
start_x() {
    local number part name=''
    mkfifo "$home/number"
    exec {number}<>"$home/number"
    # If two servers choose the same number at the same moment, one of them gives up.
    for _ in 1 2 3 4 5; do
        Xvfb -displayfd "$number" -screen 0 "${screen}x24" -nolisten tcp -noreset \
            </dev/null >"$home/server.log" 2>&1 {output}>&- {errors}>&- &
        server=$!
        # The number may come before a time-out and its line end after it.
        for _ in $(seq 240); do
            if read -r -t 0.5 -u "$number" part; then name+=$part; break; fi
            name+=$part
            kill -0 "$server" 2>/dev/null || break
        done
        [ -z "$name" ] || break
        kill "$server" 2>/dev/null || true
    done
    exec {number}>&-
    [ -z "$name" ] || display=(DISPLAY=":$name" QT_QPA_PLATFORM=xcb)
}

start_wayland() {
    local name=vexmarrow
    env -u DISPLAY -u WAYLAND_DISPLAY HOME="$home" XDG_RUNTIME_DIR="$home/run" \
        weston --no-config --backend=headless-backend.so --use-pixman --debug --idle-time=0 \
        --width="${screen%x*}" --height="${screen#*x}" --socket="$name" \
        </dev/null >"$home/server.log" 2>&1 {output}>&- {errors}>&- &
    server=$!
    for _ in $(seq 2400); do
        if [ -S "$home/run/$name" ]; then display=(WAYLAND_DISPLAY="$name" QT_QPA_PLATFORM=wayland); fi
        if [ "${#display[@]}" -gt 0 ] || ! kill -0 "$server" 2>/dev/null; then break; fi
        sleep 0.05
    done
}

if [ "$kind" = x ]; then start_x; else start_wayland; fi
if [ "${#display[@]}" -eq 0 ]; then
    say "the virtual display did not start:"
    cat "$home/server.log" >&2
    exit 125
fi

# The toolkit's other input methods need a keyboard or a service of the desktop.
# A shell handles signals only between foreground commands, so the desktop runs in
# the background, and the shell waits for it.
env -u DISPLAY -u WAYLAND_DISPLAY -u XAUTHORITY -u SESSION_MANAGER -u DBUS_SESSION_BUS_ADDRESS \
    -u AT_SPI_BUS_ADDRESS -u NO_AT_BRIDGE -u XDG_CURRENT_DESKTOP -u XDG_SESSION_TYPE \
    -u DESKTOP_SESSION -u QT_QPA_PLATFORMTHEME -u QT_STYLE_OVERRIDE -u LANGUAGE \
    VEXMARROW_DISPLAY_HOME="$home" "${display[@]}" HOME="$home" LC_ALL=C.UTF-8 \
    XDG_CONFIG_HOME="$home/config" XDG_STATE_HOME="$home/state" XDG_DATA_HOME="$home/data" \
    XDG_CACHE_HOME="$home/cache" XDG_RUNTIME_DIR="$home/run" \
    QT_IM_MODULE=compose QT_ACCESSIBILITY=1 QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 \
    dbus-run-session -- "$self" --inside "$output" "$errors" "$@" <&0 >"$home/bus.log" 2>&1 &
desktop=$!
status=0
wait "$desktop" || status=$?
desktop=
# 125 means that this script failed, 127 that the bus did.
if [ "$status" -eq 125 ] || [ "$status" -eq 127 ]; then cat "$home/bus.log" >&2; fi
exit "$status"
