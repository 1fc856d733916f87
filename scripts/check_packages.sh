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
trap 'umount "$root/proc" 2>/dev/null; rm -rf --one-file-system "$root"' EXIT
say "making a Debian 12 in $root"
debootstrap --variant=minbase bookworm "$root" >"$root.log" 2>&1 || fail "debootstrap failed: $root.log tells why"
rm "$root.log"
mkdir "$root/packages"
cp "$packages"/*.deb "$root/packages"
cp -r tests/packaging/outside "$root/outside"
mount -t proc proc "$root/proc"

# inside COMMAND...: in that Debian, with nothing of this environment but the way to the network's packages.
inside() {
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive ${http_proxy:+"http_proxy=$http_proxy"} \
        chroot "$root" "$@"
}
# alone [NAME=VALUE...] COMMAND...: in that Debian with an empty environment, on a machine without any adapter, for what
# broadcasts.
alone() { unshare --net chroot "$root" /usr/bin/env -i "$@"; }

# install NAME...: what is a pattern in /packages is one of ours.
install() {
    inside sh -c 'exec apt-get install -q -y --no-install-recommends $*' sh "$@" || fail "what is to be installed can't be: $*"
}

inside apt-get update -q || fail "the package lists could not be read"
say "installing the window and the programs for a terminal"
install /packages/norvik_*.deb /packages/norvikctl_*.deb
alone /usr/bin/norvikctl --version || fail "norvikctl doesn't start"
alone /usr/bin/norvikctl list || fail "norvikctl finds no producer"
alone /usr/bin/virtual-camera --help >/dev/null || fail "virtual-camera doesn't start"
alone QT_QPA_PLATFORM=offscreen /usr/bin/timeout 5 /usr/bin/norvik
[ $? -eq 124 ] || fail "the window doesn't stay open"

say "installing the library, and building a program on it"
install /packages/libtlclass-dev_*.deb cmake g++ make
inside sh -c 'cmake -S /outside -B /outside/build && cmake --build /outside/build' || fail "the program doesn't build"
alone GENICAM_GENTL64_PATH=/usr/lib/norvik/cti /outside/build/outside || fail "the program doesn't run"

say "removing them"
inside apt-get purge -q -y norvik norvikctl libtlclass-dev || fail "they can't be removed"
left=$(find "$root/usr" -ipath '*norvik*' -o -ipath '*tlclass*')
[ -z "$left" ] || fail "this is left of them: $left"
say "the packages are complete"
