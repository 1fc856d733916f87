# shellcheck shell=bash disable=SC2034
# Sourced by run.sh, test.sh, .ci/run and the scripts beside it: what the machine needs, and how it gets there.

# Debian packages, by what they are for.
PACKAGES_BUILD="g++ cmake ninja-build qt6-base-dev libboost-dev libboost-filesystem-dev libpugixml-dev zlib1g-dev \
libcli11-dev nlohmann-json3-dev libpng-dev"
PACKAGES_RUN="fonts-wqy-microhei"
PACKAGES_PACKAGE="binutils dpkg-dev file"
PACKAGES_TEST="locales libgtest-dev libgmock-dev libbenchmark-dev iproute2 tshark clang-format python3 git xvfb xdotool \
desktop-file-utils"
PACKAGES_DEMO="iproute2 util-linux xvfb xdotool python3"
PACKAGES_FUZZ="clang libclang-rt-dev"
PACKAGES_TIDY="clang-tidy"
PACKAGES_DOCS="doxygen"

say() { printf '%s: %s\n' "${0##*/}" "$*"; }

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# ensure_packages PACKAGE...: installs those that are missing, and says so.
ensure_packages() {
    command -v dpkg-query >/dev/null || fail "this is no Debian system. Install what these packages hold by hand: $*"
    local missing="" package
    for package in "$@"; do
        is_installed "$package" || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0

    say "these packages are missing and will be installed:$missing"
    local as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "only root can install packages. As root, run: apt-get install$missing"
        as_root=sudo
    fi
    local apt="$as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0"
    $apt update || fail "the package lists could not be read. Is this machine connected? See /etc/apt/sources.list"
    # shellcheck disable=SC2086 # a list of names
    $apt install -y --no-install-recommends $missing ||
        fail "the packages could not be installed. What apt-get said above tells why; run it by hand: apt-get install$missing"
}

# configure PRESET CMAKE-ARGUMENT...: quiet unless it fails.
configure() {
    local preset=$1 log="build/$1.configure.log"
    shift
    mkdir -p build
    say "configuring $preset"
    cmake --preset "$preset" "$@" >"$log" 2>&1 || {
        cat "$log" >&2
        fail "the configuration of $preset failed. What CMake said stands above and in $log; rm -r build/$preset starts anew"
    }
}

# build PRESET CMAKE-ARGUMENT...
build() {
    local preset=$1
    shift
    cmake --build --preset "$preset" "$@" ||
        fail "the build of $preset failed: see the first error above. rm -r build/$preset starts anew"
}
