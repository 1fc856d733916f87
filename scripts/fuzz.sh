#!/usr/bin/env bash
# Runs the fuzz targets one after the other, each for a while. What they find lies in build/fuzz/found and belongs, once
# mended, into the target's corpus in the tree. By hand: the tests only replay the corpora.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

seconds=${1:-1200}
[ $# -gt 0 ] && shift
case "$seconds" in
    *[!0-9]*)
        echo "usage: scripts/fuzz.sh [seconds for each target (1200)] [target ...]"
        exit 1
        ;;
esac

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_TEST $PACKAGES_FUZZ
configure fuzz
[ $# -gt 0 ] || mapfile -t targets < <(git ls-files '*/corpus/*' | sed -E 's|.*/corpus/([^/]+)/.*|\1|' | sort -u)
[ $# -gt 0 ] && targets=("$@")
build fuzz --target "${targets[@]}"

mkdir -p build/fuzz/found
result=0
for target in "${targets[@]}"; do
    seeds=$(git ls-files "*/corpus/$target/*" | head -n 1)
    mkdir -p "build/fuzz/corpus/$target"
    say "$target for $seconds s"
    "build/fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=3000 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/found/$target-" "build/fuzz/corpus/$target" "${seeds%/*}" \
        >"build/fuzz/$target.log" 2>&1 || result=1
    grep -E '^(stat::number_of_executed_units|SUMMARY|Done)' "build/fuzz/$target.log"
done
[ $result = 0 ] || fail "something was found: see build/fuzz/*.log and build/fuzz/found"
