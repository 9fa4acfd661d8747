#!/bin/bash
# Sets up, builds and starts Quillmere.
set -euo pipefail

usage() {
    cat <<'TEXT'
Usage: ./run.sh [--sample-home [--size normal]] [--build-only]

Installs what is missing from Debian 12, builds Quillmere and starts it. Without a display it starts on a
virtual screen and says how to look at it.

  --sample-home   Starts on a made-up home full of rubbish, in which every button may be tried. It is made in a
                  temporary folder and taken away at the end. Disks, power and passwords of this machine are out
                  of reach meanwhile; its running programs are not.
  --size normal   A larger sample home, of about 1.2 GB instead of 650 MB.
  --build-only    Does not start it.
  --help          Prints this.
TEXT
}

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$here"
. packaging/debian-packages.sh
. packaging/virtual-screen.sh

sample_home=no
sample_size=small
start=yes
while [ $# -gt 0 ]; do
    case $1 in
        --sample-home) sample_home=yes ;;
        --size)
            sample_size=${2:-}
            shift
            ;;
        --build-only) start=no ;;
        --help)
            usage
            exit 0
            ;;
        *)
            usage >&2
            exit 2
            ;;
    esac
    shift
done

build() {
    install_packages build run
    [ -f build/release/build.ninja ] || cmake --preset release
    cmake --build --preset release
}

has_display() { [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; }

# The display and the session are found through the home and the runtime directory, which are about to change.
hold_on_to_session() {
    local runtime=${XDG_RUNTIME_DIR:-}
    [ -n "${DBUS_SESSION_BUS_ADDRESS:-}" ] || ! [ -S "$runtime/bus" ] ||
        export DBUS_SESSION_BUS_ADDRESS=unix:path=$runtime/bus
    export XAUTHORITY=${XAUTHORITY:-$HOME/.Xauthority}
    case ${WAYLAND_DISPLAY:-} in
        '' | /*) ;;
        *) export WAYLAND_DISPLAY=$runtime/$WAYLAND_DISPLAY ;;
    esac
}

make_sample_home() {
    sample=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-sample-XXXXXX")
    tests/SampleHome/make_sample_home.py "$sample" --size "$sample_size" >/dev/null
    set -a
    # shellcheck source=/dev/null
    . "$sample/environment"
    set +a
    # No disk, no power switch and no password dialog of this machine.
    export DBUS_SYSTEM_BUS_ADDRESS=unix:path=$sample/no-system-bus
    echo "The sample home is $HOME."
}

complete_setup() {
    PYTHONPATH=tests/EndToEnd /usr/bin/python3 -B -c 'import sys, pathlib
from harness import settings
settings.complete_setup(*map(pathlib.Path, sys.argv[1:]))' "$HOME" "${program[0]}"
}

finish() {
    local status=$?
    trap - EXIT
    if [ -n "${running:-}" ]; then
        kill -- "-$running" 2>/dev/null || true
        wait "$running" 2>/dev/null || true
    fi
    stop_virtual_screen
    if [ -n "${sample:-}" ]; then
        tests/SampleHome/make_sample_home.py "$sample" --check &&
            echo "Every document of the sample home is still there, unchanged."
        tests/SampleHome/make_sample_home.py "$sample" --remove
    fi
    exit "$status"
}

build
[ $start = yes ] || exit 0

trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
if has_display; then
    hold_on_to_session
else
    install_packages screen
    start_virtual_screen
fi

program=("$here/build/release/Quillmere.app/Contents/MacOS/quillmere")
[ $sample_home = no ] || make_sample_home
# Root's wizard would really copy the program into the folder of all users.
[ $sample_home = no ] || [ "$(id -u)" != 0 ] || complete_setup
[ -n "${DBUS_SESSION_BUS_ADDRESS:-}" ] || program=(dbus-run-session -- "${program[@]}")
# In a process group of its own, so that at the end it goes with everything that it started.
set -m
"${program[@]}" &
running=$!
set +m
wait "$running"
