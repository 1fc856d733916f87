#!/usr/bin/env bash
# The demo's machine, its cables, switches and cameras, and the story on it. Only scripts/demo/start.sh runs it: it takes
# the namespace that it is in for its own.
set -u
. scripts/setup.sh

programs=$1 window=$1/bin/norvik
pictures=${2:-build/demo}
has_command=${3:+yes}  # "--": what follows is run here in place of the window
# A new machine's first process, with nothing switched on yet.
if [ $$ -ne 1 ] || [ -n "$(ip -o link show up)" ]; then
    fail "this is no machine of the demo's own"
fi
# An installation has the layout of a build folder further down, and its window a launcher that knows the producer.
if [ -d "$1/lib/norvik" ]; then
    programs=$1/lib/norvik
    unset GENICAM_GENTL64_PATH
else
    GENICAM_GENTL64_PATH=$(realpath "$programs/cti")
    export GENICAM_GENTL64_PATH
fi
[ -n "$has_command" ] || [ -x "$window" ] ||
    fail "there is no $window: $1 is neither a build folder nor where Norvik is installed"
rm -rf "$pictures"
mkdir -p "$pictures"

# wait_for SECONDS WHAT COMMAND...: until the command succeeds.
wait_for() {
    local end=$((SECONDS + $1)) what=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || fail "$what. What the programs said is in $pictures/*.log"
        sleep 0.05
    done
}

is_elsewhere() { [ "$(readlink "/proc/$1/ns/net")" != "$(readlink /proc/self/ns/net)" ]; }

# Makes a network namespace, held by a process that sleeps in it; $namespace is that process.
new_namespace() {
    unshare --net sleep infinity &
    namespace=$!
    wait_for 5 "no network namespace" is_elsewhere $namespace
}

inside() {
    local namespace=$1
    shift
    nsenter --net="/proc/$namespace/ns/net" "$@"
}

# switch ADAPTER ADDRESS: a new adapter of this machine, cabled to a switch, which is $switch.
switch() {
    new_namespace
    switch=$namespace
    inside "$switch" ip link add name bridge type bridge
    inside "$switch" ip link set bridge up
    ip link add name "$1" type veth peer name uplink netns "$switch"
    inside "$switch" ip link set uplink master bridge up
    ip address add "$2" broadcast + dev "$1"
    ip link set "$1" up
}

# camera SERIAL MAC ADDRESS NAME [FLAG...]: a camera on the last switch; its adapter is in $namespace.
camera() {
    local serial=$1 mac=$2 address=$3 name=$4
    shift 4
    new_namespace
    inside "$switch" ip link add name "port$serial" type veth peer name camera address "$mac" netns "$namespace"
    inside "$switch" ip link set "port$serial" master bridge up
    # In a session of its own, so that a Ctrl-C in the terminal isn't for it.
    inside "$namespace" setsid "$programs/bin/virtual-camera" --interface camera --serial "$serial" --name "$name" \
        --persistent "$address" --verbose "$@" >"$pictures/camera-$serial.log" 2>&1 &
    wait_for 10 "the camera $serial did not start" has_address "$namespace" "${address%/*}"
}

has_address() { inside "$1" ip -4 -o address show dev camera | grep -qF " $2/"; }

# Two adapters with three cameras each. The third one of the first adapter is on a subnet where nobody finds it, and an
# application on the first switch holds the second one.
lost_mac=02-4E-56-00-01-03
lost_address=10.99.0.5
new_address=192.168.10.13
build_network() {
    ip link set lo up
    switch eth1 192.168.10.1/24
    camera 101 02:4e:56:00:01:01 192.168.10.11/24 left
    camera 102 02:4e:56:00:01:02 192.168.10.12/24 held
    camera 103 02:4e:56:00:01:03 $lost_address/24 lost
    lost=$namespace
    inside "$switch" ip address add 192.168.10.200/24 dev bridge
    inside "$switch" python3 scripts/demo/hold.py 192.168.10.12 >"$pictures/hold.log" 2>&1 &
    wait_for 10 "the other application did not get its camera" grep -q held "$pictures/hold.log"
    switch eth2 192.168.20.1/24
    camera 201 02:4e:56:00:02:01 192.168.20.11/24 top
    camera 202 02:4e:56:00:02:02 192.168.20.12/24 middle
    camera 203 02:4e:56:00:02:03 192.168.20.13/24 bottom
}

start_window() {
    "$window" >"$pictures/norvik.log" 2>&1 &
    norvik=$!
}

# For somebody at a display.
play() {
    start_window
    cat <<END

The window shows a machine with two adapters and three cameras behind each. One of them, $lost_mac, is on the
subnet of $lost_address, where nothing reaches it. To bring it back:

  1. Type its MAC into the upper edit:            $lost_mac
  2. Select all in the lower edit, and type:      $new_address
  3. Press the left button, and a second later the right one: the camera is listed on its new address.

Another application holds 192.168.10.12. The demo ends with the window.
END
    wait $norvik || fail "the window ended with an error: see $pictures/norvik.log"
}

# Pictures of the display's screen. The tree is the left part of the window.
window_left=460 window_top=220 window_width=800 window_height=600
picture() {
    python3 scripts/demo/screenshot.py "$pictures/Xvfb_screen0" "$1" $window_left $window_top "$2" $window_height
}
tree_has_changed() {
    picture "$pictures/tree-now.png" 530 && ! cmp -s "$pictures/tree-now.png" "$pictures/tree-before.png"
}
tree_is_still() {
    picture "$pictures/tree-1.png" 530 && sleep 0.3 && picture "$pictures/tree-2.png" 530 &&
        cmp -s "$pictures/tree-1.png" "$pictures/tree-2.png"
}

click() { xdotool mousemove $((window_left + $1)) $((window_top + $2)) click 1; }
type_over() { xdotool key --clearmodifiers ctrl+a type --delay 20 "$1"; }

# Without a display: a screen of its own, the real window on it, and a hand that types and presses.
tell_story() {
    # No lock file, and no socket in the file system: the screen is this namespace's own.
    Xvfb -displayfd 3 -nolock -nolisten tcp -nolisten unix -screen 0 1920x1040x24 -fbdir "$pictures" \
        3>"$pictures/display" 2>"$pictures/xvfb.log" &
    wait_for 20 "the screen did not start" test -s "$pictures/display"
    DISPLAY=:$(cat "$pictures/display")
    export DISPLAY
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM
    start_window
    wait_for 30 "the window did not come" xdotool search --onlyvisible --name CNorvik
    xdotool mousemove 0 0
    wait_for 10 "the window does not come to rest" tree_is_still
    picture "$pictures/1-list-before.png" $window_width
    picture "$pictures/tree-before.png" 530

    click 640 130
    type_over $lost_mac
    click 640 234
    type_over $new_address
    wait_for 10 "the window does not come to rest" tree_is_still
    picture "$pictures/2-recovery-typed.png" $window_width
    click 600 262
    wait_for 20 "the camera did not come up on $new_address" has_address "$lost" $new_address

    click 710 262
    wait_for 15 "the list did not change" tree_has_changed
    wait_for 10 "the window does not come to rest" tree_is_still
    picture "$pictures/3-list-after.png" $window_width
    kill $norvik
    rm -f "$pictures"/tree-*.png "$pictures/Xvfb_screen0" "$pictures/display"
    say "the camera $lost_mac was lost on $lost_address, and is back on $new_address. See"
    printf '  %s\n' "$pictures"/*.png
}

# run_command PREFIX [COMMAND...]: with our programs in the PATH; a shell if no command is given.
run_command() {
    PATH=$(realpath "$1/bin"):$PATH
    shift
    [ $# -eq 0 ] || { "$@"; return; }
    cat <<END
This shell is on a machine with the adapters eth1 and eth2 and three cameras behind each. One of them, $lost_mac,
is on the subnet of $lost_address, where nothing reaches it; another application holds 192.168.10.12. Try

  norvikctl --help
  norvikctl list
  norvikctl recover $lost_mac $new_address
  norvikctl grab 192.168.10.11 -n 10 -o /tmp/frames

"exit" ends it, and the machine with it.
END
    PS1='norvik demo \w$ ' bash --norc -i
}

build_network
if [ -n "$has_command" ]; then
    run_command "$1" "${@:4}"
elif [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    play
else
    tell_story
fi
