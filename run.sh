#!/usr/bin/env bash
# Sets up what is missing, builds, and starts the window.
set -u
cd "$(dirname "$0")" || exit 1
. scripts/setup.sh

case "${1:-}" in
    "" | demo) ;;
    -h | --help)
        echo "usage: ./run.sh [demo [-- [COMMAND...]]]"
        echo "Installs the packages that are missing, builds Norvik and starts its window. The demo does so on a virtual"
        echo "network with six cameras in software, one of them lost; without a display it tells the story by itself and"
        echo "leaves pictures in build/demo. Behind -- it runs a command there in place of the window, such as"
        echo "./run.sh demo -- norvikctl list; without a command, a shell."
        exit 0
        ;;
    *) fail "there is no '$1'. Try ./run.sh --help" ;;
esac
[ $# -le 1 ] || [ "$2" = -- ] || fail "what is '$2'? A command for the demo stands behind --. Try ./run.sh --help"

# shellcheck disable=SC2086 # lists of names
if [ "${1:-}" = demo ]; then
    ensure_packages $PACKAGES_BUILD $PACKAGES_RUN $PACKAGES_DEMO
    [ -f build/release/build.ninja ] || configure release -DNORVIK_BUILD_TESTS=OFF -DNORVIK_BUILD_BENCH=OFF
    if [ $# -gt 1 ]; then
        build release --target norvikctl ZrGVTL virtual-camera >&2
        exec scripts/demo/start.sh build/release build/demo "${@:2}"
    fi
    build release --target norvik norvikctl ZrGVTL virtual-camera
    exec scripts/demo/start.sh build/release
fi

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}${QT_QPA_PLATFORM:-}" ]; then
    fail "there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set. Start it from a desktop session, or over" \
        "ssh -X. Without a display or a camera, ./run.sh demo shows what it does on a virtual network."
fi

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_RUN
[ -f build/release/build.ninja ] || configure release -DNORVIK_BUILD_TESTS=OFF -DNORVIK_BUILD_BENCH=OFF
build release --target norvik norvikctl ZrGVTL

# Our own producer first, then whatever the user has.
export GENICAM_GENTL64_PATH="$PWD/build/release/cti${GENICAM_GENTL64_PATH:+:$GENICAM_GENTL64_PATH}"
exec build/release/bin/norvik
