#!/usr/bin/env bash
# Makes the reference of TLClass, GenApi and gev from their headers, as web pages. A warning of doxygen's fails it.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

case "${1:-}" in
    -h | --help)
        echo "usage: scripts/docs.sh [FOLDER]"
        echo "Installs doxygen if it is missing and writes the reference into FOLDER/html, build/docs/html if none is named."
        exit 0
        ;;
esac
# shellcheck disable=SC2086 # a list of names
ensure_packages $PACKAGES_DOCS
output=${1:-build/docs}
mkdir -p "$output" || fail "the folder $output can't be made"
# What stands last counts.
{
    cat docs/Doxyfile
    printf 'OUTPUT_DIRECTORY = "%s"\n' "$output"
} | doxygen - || fail "doxygen warns of the comments above. They stand in the headers that it names"
say "the reference is in $output/html/index.html"
