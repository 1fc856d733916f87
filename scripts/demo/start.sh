#!/usr/bin/env bash
# Shows what Norvik does, without a camera: a machine of its own with two adapters, three cameras in software behind
# each, and the window on it. Started by ./run.sh demo, which builds what it needs.
#
# usage: scripts/demo/start.sh BUILD-DIRECTORY|PREFIX [DIRECTORY-FOR-PICTURES [-- [COMMAND...]]]
# With the prefix of an installation (/usr) it shows what is installed there. Behind -- it runs a command on that machine
# in place of the window, or a shell if there is none, and ends as that does.
#
# Everything runs in namespaces of its own, network, mounts and processes alike. When the first process in them ends, for
# whatever reason, the kernel ends the others and takes the adapters and bridges away: nothing is ever left.
set -u
cd "$(dirname "$0")/../.." || exit 1
. scripts/setup.sh

own=(--net --mount --pid --mount-proc --fork --kill-child)
[ "$(id -u)" -eq 0 ] || own=(--user --map-root-user "${own[@]}")
refusal=$(unshare "${own[@]}" true 2>&1) ||
    fail "this user may not make network namespaces ($refusal). Try: sudo ./run.sh demo, or for users:" \
        "sudo sysctl kernel.unprivileged_userns_clone=1"

# A display is reached through a socket in the file system. One over the network isn't reached from inside.
case "${DISPLAY:-}" in
    "" | :* | unix:*) ;;
    *)
        say "the display $DISPLAY is not on this machine, so the demo runs by itself and takes pictures"
        unset DISPLAY
        ;;
esac

# Its life hangs on this shell, even if that is killed. It reads from the same terminal, and can be interrupted, as if it
# weren't in the background.
setpriv --pdeathsig KILL env --default-signal=INT,QUIT unshare "${own[@]}" scripts/demo/machine.sh "$@" <&0 &
machine=$!
trap 'kill -KILL $machine 2>/dev/null' EXIT
trap 'exit 130' TERM HUP
if [ "${3:-}" = -- ]; then
    trap : INT  # it is for the command
else
    trap 'exit 130' INT
fi
wait $machine
status=$?
while kill -0 $machine 2>/dev/null; do
    wait $machine
    status=$?
done
exit $status
