# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# How a session is played on the display as a user would, with the mouse and the keyboard; to be
# sourced behind common.sh. Every step waits for what has to be painted, never for a time alone; and
# what talks to the instrument is followed by such a wait, because input is dropped meanwhile.

# Where things are, in pixels from the upper left of the display, where the main window stands at
# its first size. Those of a dialog are added when it is there.
declare -A place=(
    [Tool]="67 13" [Tool-LAN]="87 38" [Tool-Scpi]="87 59" [Tool-Color]="87 80"
    [Tool-Upgrade]="87 101"
    [Rescan]="922 103" [Apply]="922 103" [LAN]="18 81" [address]="177 103" [last-octet]="780 103"
    [USB]="40 113" [link]="460 46" [Reset]="941 175" [A]="187 208" [C]="603 208"
    [D]="811 208" [3]="219 325" [10]="778 325" [20]="622 269" [away]="500 392"
)

# begin_session FOLDER PROGRAM [ARG...]: the program runs until the script ends.
begin_session() {
    shots=$1
    shift
    step=0
    part=()
    mkdir -p "$shots"
    rm -f "$shots"/*.png
    "$@" 2>"$shots/messages.txt" &
    program=$!
    trap end_session EXIT
}

end_session() {
    kill "$program" 2>/dev/null || true
    rm -f "$shots"/{old,new}.png
}

fail() {
    import -window root "$shots/failed.png"
    echo "The session failed in step $step: $*" >&2
    exit 1
}

click() {
    # shellcheck disable=SC2086 # two numbers
    xdotool mousemove ${place[$1]} click 1
}

# around PLACE PICTURE: the pixels there.
around() {
    local x y
    read -r x y <<<"${place[$1]}"
    convert "$2" -crop "60x24+$((x - 30))+$((y - 12))" +repage txt:-
}

# is_painted PLACE COLOUR: whether the display shows the colour around the place, or for the colour
# "other" something else than in the last picture.
is_painted() {
    import -window root "$shots/new.png"
    if [ "$2" = other ]; then
        ! diff <(around "$1" "$shots/old.png") <(around "$1" "$shots/new.png") >/dev/null
    else
        around "$1" "$shots/new.png" | grep -i "$2" >/dev/null
    fi
}

# shot NAME PLACE COLOUR [SECONDS]: waits until a colour is painted around a place, then keeps the
# picture of the display, or of the dialog that was last waited for.
shot() {
    local end=$((SECONDS + ${4:-30}))
    step=$((step + 1))
    # shellcheck disable=SC2086
    xdotool mousemove ${place[away]}
    until is_painted "$2" "$3"; do
        [ "$SECONDS" -lt "$end" ] || fail "no $3 at $2 for $1"
        sleep 0.1
    done
    mv "$shots/new.png" "$shots/old.png"
    convert "$shots/old.png" "${part[@]}" "$shots/$(printf '%02d' "$step")-$1.png"
}

# dialog TITLE NAME=X,Y...: waits for a dialog, gives it the keyboard and names places in it, which
# count from its right or lower edge when they are negative. Pictures show the dialog alone.
dialog() {
    local title=$1 id name x y end=$((SECONDS + 30)) X Y WIDTH HEIGHT
    shift
    until id=$(xdotool search --onlyvisible --name "^$title\$" 2>/dev/null); do
        [ "$SECONDS" -lt "$end" ] || fail "there is no window $title"
        sleep 0.1
    done
    xdotool windowfocus --sync "$id"
    eval "$(xdotool getwindowgeometry --shell "$id" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"
    part=(-crop "${WIDTH}x$HEIGHT+$X+$Y" +repage)
    for name; do
        IFS=, read -r x y <<<"${name#*=}"
        place[${name%%=*}]="$((X + x + (x < 0 ? WIDTH : 0))) $((Y + y + (y < 0 ? HEIGHT : 0)))"
    done
}

# leave TITLE KEY: closes a dialog with a key, which is lost while the program talks to the
# instrument and then given again. Pictures show the whole display afterwards.
leave() {
    local end=$((SECONDS + 30)) polls=0
    while xdotool search --onlyvisible --name "^$1\$" >/dev/null 2>&1; do
        [ "$SECONDS" -lt "$end" ] || fail "the window $1 does not close"
        [ $((polls++ % 20)) -ne 0 ] || xdotool key "$2"
        sleep 0.1
    done
    part=()
}

# route_over_lan: connects the instrument at 127.0.0.1 and routes a port.
route_over_lan() {
    click LAN
    click address
    xdotool type 127.0.0.1
    shot lan-address last-octet '#000000'
    click Apply
    shot lan-connected link other
    click A
    click 3
    shot lan-routed 3 '#00BFFF'
}
