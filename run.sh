#!/usr/bin/env bash
# Sets up what is missing, builds, and starts the window.
set -u
cd "$(dirname "$0")" || exit 1
. scripts/setup.sh

case "${1:-}" in
    "") ;;
    -h | --help)
        echo "usage: ./run.sh"
        echo "Installs the packages that are missing, builds Norvik and starts its window."
        exit 0
        ;;
    demo) fail "the demo needs the virtual camera, which is not part of Norvik yet" ;;
    *) fail "there is no '$1'. Try ./run.sh --help" ;;
esac

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}${QT_QPA_PLATFORM:-}" ]; then
    fail "there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set. Start it from a desktop session, or over" \
        "ssh -X. Without a display or a camera, ./run.sh demo shows what it does on a virtual network."
fi

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_RUN
[ -f build/release/build.ninja ] || configure release -DNORVIK_BUILD_TESTS=OFF -DNORVIK_BUILD_BENCH=OFF
build release --target norvik ZrGVTL

# Our own producer first, then whatever the user has.
export GENICAM_GENTL64_PATH="$PWD/build/release/cti${GENICAM_GENTL64_PATH:+:$GENICAM_GENTL64_PATH}"
exec build/release/bin/norvik
