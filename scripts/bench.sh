#!/usr/bin/env bash
# Takes the figures of docs/benchmarks.md: builds the release, runs the benchmarks one after the other, and prints one
# table. By hand: some five minutes, and nothing else may run beside it.
#
# usage: scripts/bench.sh [--page | NAME...]
# --page also puts the table into docs/benchmarks.md. With names, as in update_bench, only these run.
# Fails if a benchmark fails or a goal is missed.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

page="" names=()
for argument in "$@"; do
    case "$argument" in
        --page) page=docs/benchmarks.md ;;
        -*) fail "there is no '$argument'. usage: scripts/bench.sh [--page | NAME...]" ;;
        *) names+=("$argument") ;;
    esac
done
[ -z "$page" ] || [ ${#names[@]} -eq 0 ] || fail "the page has the figures of one run of all, not of ${names[*]}"

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_TEST
configure release -DNORVIK_BUILD_TESTS=ON -DNORVIK_BUILD_BENCH=ON
if [ ${#names[@]} -eq 0 ]; then
    build release --target benchmarks
    for program in build/release/bench/*_bench; do
        names+=("${program##*/}")
    done
else
    build release --target "${names[@]}"
fi

table=build/release/bench/figures.md
log=build/release/bench/bench.log
: >"$log"
printf '| What | Ours | Limit | Ratio | Goal | Verdict | Program |\n|---|---|---|---|---|---|---|\n' >"$table"
failed=""
for name in "${names[@]}"; do
    say "$name" >&2
    "build/release/bench/$name" >"$log.now" 2>&1
    status=$?
    cat "$log.now" >>"$log"
    grep '^| ' "$log.now" | sed "s/\$/ \`$name\` |/" >>"$table"
    # 1 is a goal that was missed, which the table tells.
    if [ $status -gt 1 ] || grep -q 'ERROR OCCURRED' "$log.now" || ! grep -q '^| ' "$log.now"; then
        failed="$failed $name"
    fi
done
rm -f "$log.now"
cat "$table"
[ -z "$failed" ] || fail "these failed:$failed. What they said is in $log"

if [ -n "$page" ]; then
    machine="$(nproc) × $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)"
    {
        sed '/^<!-- figures -->$/q' "$page"
        printf '\nTaken on %s: %s, Linux %s, %s.\n\n' "$(date +%F)" "$machine" "$(uname -r)" "$(c++ --version | head -n 1)"
        cat "$table"
        printf '\n'
        sed -n '/^<!-- end of figures -->$/,$p' "$page"
    } >"$table.page" && mv "$table.page" "$page"
    say "put into $page"
fi
! grep -q '| missed |' "$table"
