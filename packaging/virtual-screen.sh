# shellcheck shell=bash
# Sourced by run.sh: a screen of its own for a machine that has none.

virtual_screen=
screen_processes=()

start_virtual_screen() {
    local number cookie
    virtual_screen=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-screen-XXXXXX")
    export XAUTHORITY=$virtual_screen/Xauthority
    : >"$XAUTHORITY"
    cookie=$(od -An -N16 -tx1 /dev/urandom | tr -d ' \n')

    # The server picks a free number and says which; the cookie keeps other users of this machine out.
    xauth -q -f "$XAUTHORITY" add :0 . "$cookie"
    mkfifo "$virtual_screen/number"
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset -auth "$XAUTHORITY" \
        3>"$virtual_screen/number" 2>"$virtual_screen/Xvfb.log" &
    screen_processes+=($!)
    read -r number <"$virtual_screen/number"
    export DISPLAY=:$number
    xauth -q -f "$XAUTHORITY" add "$DISPLAY" . "$cookie"

    openbox 2>"$virtual_screen/openbox.log" &
    screen_processes+=($!)
    cat <<TEXT
There is no display here, so Quillmere runs on a virtual screen.
  A picture of it:   XAUTHORITY=$XAUTHORITY import -display $DISPLAY -window root quillmere.png
  To use it:         apt-get install x11vnc
                     x11vnc -auth $XAUTHORITY -display $DISPLAY -localhost
                     and connect a VNC viewer to this machine's port 5900, through ssh -L 5900:localhost:5900
Ctrl+C ends it.
TEXT
}

stop_virtual_screen() {
    [ -n "$virtual_screen" ] || return 0
    local index
    for ((index = ${#screen_processes[@]} - 1; index >= 0; --index)); do
        kill "${screen_processes[index]}" 2>/dev/null && wait "${screen_processes[index]}" 2>/dev/null
    done
    rm -rf "$virtual_screen"
    virtual_screen=
}
