#!/usr/bin/env bash
# Installs the packages of build/packages into a fresh Debian 12 in a folder of its own, and uses them there: what they
# forget to depend on is missing in it. By hand, as root: it fetches several hundred megabytes. scripts/package.sh first.
#
# usage: scripts/check_packages.sh [PACKAGES-DIRECTORY]
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

# Mounts of its own, so that none is left behind, however this ends.
if [ "${NORVIK_OWN_MOUNTS:-}" != yes ]; then
    [ "$(id -u)" -eq 0 ] || fail "only root can make a Debian in a folder. Try: sudo $0"
    NORVIK_OWN_MOUNTS=yes exec unshare --mount "$0" "$@"
fi

packages=${1:-build/packages}
ls "$packages"/*.deb >/dev/null 2>&1 || fail "there are no packages in $packages. scripts/package.sh makes them"
ensure_packages debootstrap

root=$(mktemp -d)
chmod 755 "$root"
trap 'umount --recursive "$root" 2>/dev/null; rm -rf --one-file-system "$root"' EXIT
say "making a Debian 12 in $root"
debootstrap --variant=minbase bookworm "$root" >"$root.log" 2>&1 || fail "debootstrap failed: $root.log tells why"
rm "$root.log"
mkdir -p "$root/packages" "$root/tree/tests" "$root/old"
cp "$packages"/*.deb "$root/packages"
cp -r README.md scripts "$root/tree"
cp -r tests/packaging "$root/tree/tests"
# A mount itself, so that it can become the root of others.
mount --bind "$root" "$root"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"

# inside COMMAND...: in that Debian, with nothing of this environment but the way to the network's packages.
inside() {
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive ${http_proxy:+"http_proxy=$http_proxy"} \
        chroot "$root" "$@"
}
# alone [NAME=VALUE...] COMMAND...: a user's command in that Debian, with an empty environment, on a machine without any
# adapter, for what broadcasts. The Debian is all that it sees: from a mere chroot no user may make namespaces.
alone() {
    # shellcheck disable=SC2016 # they are that shell's
    unshare --mount --net sh -c 'cd "$0" && pivot_root . old && umount -l /old && cd /home/user &&
        exec setpriv --reuid user --regid user --clear-groups --inh-caps=-all --bounding-set=-all env -i HOME=/home/user "$@"' "$root" "$@"
}
# demo [-- COMMAND...]: the same with the demo's cameras.
demo() { alone PATH=/usr/bin:/bin /tree/scripts/demo/start.sh /usr /home/user/demo "$@"; }

# install NAME...: what is a pattern in /packages is one of ours.
install() {
    inside sh -c 'exec apt-get install -q -y --no-install-recommends $*' sh "$@" || fail "what is to be installed can't be: $*"
}
has_window_system() { inside dpkg-query -W 'libqt6gui6' 'libx11-6' 2>/dev/null; }

inside useradd --create-home user || fail "there can be no user"
inside apt-get update -q || fail "the package lists could not be read"
say "installing the programs for a terminal"
install /packages/norvik-producer_*.deb /packages/norvikctl_*.deb
! has_window_system || fail "the programs for a terminal bring a window system along"
alone /usr/bin/norvikctl --version || fail "norvikctl doesn't start"
alone GENICAM_GENTL64_PATH=/nowhere /usr/bin/norvikctl list || fail "norvikctl finds no producer"
alone /usr/bin/virtual-camera --help >/dev/null || fail "virtual-camera doesn't start"
install iproute2 python3
demo -- env -C /home/user /tree/tests/packaging/transcript.py /tree/README.md || fail "they don't do what the README says"

say "installing the window"
install /packages/norvik_*.deb xvfb xdotool
demo || fail "the window doesn't do what the demo tells"

say "installing the library, and building programs on it"
install /packages/libtlclass-dev_*.deb cmake g++ make
alone PATH=/usr/bin:/bin sh -c 'cp -r /usr/share/doc/libtlclass-dev/examples . && cmake -S examples -B build && cmake --build build' ||
    fail "the examples don't build"
demo -- env -C /home/user GENICAM_GENTL64_PATH=/usr/lib/norvik/cti /tree/tests/packaging/examples.sh /home/user/build settings.txt ||
    fail "the examples don't work"

say "removing them"
inside apt-get purge -q -y norvik-producer norvik norvikctl libtlclass-dev || fail "they can't be removed"
left=$(find "$root/usr" -ipath '*norvik*' -o -ipath '*tlclass*')
[ -z "$left" ] || fail "this is left of them: $left"
say "the packages are complete"
