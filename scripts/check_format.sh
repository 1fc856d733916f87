#!/usr/bin/env bash
# Says which sources clang-format would write otherwise, and fails if there are any. With --fix it writes them so.
set -u
cd "$(dirname "$0")/.." || exit 1

mode="--dry-run -Werror"
[ "${1:-}" = --fix ] && mode=-i
# shellcheck disable=SC2086 # one or two words
git ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h' | xargs -0 clang-format $mode || {
    echo "check_format.sh: scripts/check_format.sh --fix writes the lines above as they should be" >&2
    exit 1
}
