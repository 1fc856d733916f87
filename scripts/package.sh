#!/usr/bin/env bash
# Sets up what is missing, builds the preset release, and makes the Debian packages of it in build/packages.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh
[ $# -eq 0 ] || fail "it takes no arguments. The packages go to build/packages"

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_PACKAGE
[ -f build/release/build.ninja ] || configure release -DNORVIK_BUILD_TESTS=OFF -DNORVIK_BUILD_BENCH=OFF
build release --target norvik ZrGVTL norvikctl virtual-camera norvik_manpage norvikctl_manpage virtual-camera_manpage
scripts/check_hardening.sh build/release/bin/{norvik,norvikctl,virtual-camera} build/release/cti/ZrGVTL.cti ||
    fail "the programs above lack a protection that cmake/NorvikHardening.cmake gives. rm -r build/release starts anew"

rm -rf build/packages
(cd build/release && cpack -B ../packages) >build/packages.log 2>&1 || {
    cat build/packages.log >&2
    fail "the packages could not be made. What cpack said stands above and in build/packages.log"
}
rm -rf build/packages/_CPack_Packages
say "made in build/packages:"
printf '  %s\n' build/packages/*.deb
