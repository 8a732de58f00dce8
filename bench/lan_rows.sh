# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the scripts share that measure over LAN, each in a network namespace of its own.

work=$(mktemp -d)
servers=()
# Only what was started here.
trap 'kill "${servers[@]}"; rm -r "$work"' EXIT
trap 'exit 1' INT TERM HUP
ip link set lo up

# serve LINES COMMAND...: starts a server, which prints so many lines when it is ready.
serve() {
    local lines=$1 said
    said=$work/server${#servers[@]}
    shift
    "$@" >"$said" &
    servers+=($!)
    until [ "$(wc -l <"$said")" -ge "$lines" ]; do kill -0 "${servers[-1]}"; sleep 0.1; done
}

# The middle one of the numbers read.
median() { sort -g | awk '{ line[NR] = $1 } END { print line[int(NR / 2) + 1] }'; }

# row FIGURE UNIT MEASURED YARDSTICK GOAL
row() {
    awk -v figure="$1" -v unit="$2" -v measured="$3" -v yardstick="$4" -v goal="$5" 'BEGIN {
        printf "%-54s %-10s %11.2f %11s %11s %11s\n", figure, unit, measured, yardstick,
            yardstick == "-" ? "-" : sprintf("%.2f", measured / yardstick), goal }'
}

# lxi_rate ADDRESS REQUESTS: thousands a second.
lxi_rate() {
    lxi benchmark -a "$1" -c "$2" | grep -o '[0-9.]* requests/second' |
        awk '{ printf "%.3f\n", $1 / 1000 }'
}
