#!/usr/bin/env bash
# Sets up what is missing, builds a preset and runs its tests.
set -u
cd "$(dirname "$0")" || exit 1
. scripts/setup.sh

preset=debug
case "${1:-}" in
    -h | --help)
        echo "usage: ./test.sh [debug|release|asan|tsan] [-- ctest arguments]"
        echo "Installs the packages that are missing, builds the preset (debug if none is named) and runs its tests."
        exit 0
        ;;
    "" | --) ;;
    *)
        preset=$1
        shift
        ;;
esac
if [ "${1:-}" = -- ]; then
    shift
elif [ $# -gt 0 ]; then
    fail "what is '$1'? Arguments for ctest stand behind --. Try ./test.sh --help"
fi
case "$preset" in
    debug | release | asan | tsan) ;;
    *) fail "there is no preset '$preset'. There are debug, release, asan and tsan" ;;
esac

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_PACKAGE $PACKAGES_TEST
configure "$preset" -DNORVIK_BUILD_TESTS=ON -DNORVIK_BUILD_BENCH=ON \
    -DNORVIK_WARNINGS_AS_ERRORS="$([ "${CI:-}" = true ] && echo ON || echo OFF)"
build "$preset"
ctest --preset "$preset" "$@" || fail "not all tests of $preset passed. build/$preset/Testing/Temporary/LastTest.log has all they said"
