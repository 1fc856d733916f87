#!/usr/bin/env bash
# Runs the fuzz targets one after the other, each for a while. What they find lies in build/fuzz/found and belongs, once
# mended, into the target's corpus in the tree. The tests only replay the corpora; this runs every night, and by hand.
#
# build/fuzz-tally.tsv adds up over all calls: target, seconds of processor time, inputs, calls that found something.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

TALLY=build/fuzz-tally.tsv

usage() {
    echo "usage: scripts/fuzz.sh [seconds for each target (1200)] [target ...]"
    echo "       scripts/fuzz.sh --tally: what all calls so far add up to"
    exit 1
}

# note_child_seconds: fills child_seconds, the processor time of all children that have ended.
note_child_seconds() {
    times >build/fuzz/times  # in a pipe it would be another shell's
    child_seconds=$(awk 'NR == 2 { split($1 "m" $2, part, /[ms]+/); print part[1] * 60 + part[2] + part[3] * 60 + part[4] }' \
        build/fuzz/times)
}

# add_to_tally TARGET SECONDS INPUTS FINDINGS
add_to_tally() {
    local others=""
    [ -f "$TALLY" ] && others=$(cat "$TALLY")
    printf '%s\n%s\t%s\t%s\t%s\n' "$others" "$@" | awk -F '\t' -v OFS='\t' '
        NF == 4 { seconds[$1] += $2; inputs[$1] += $3; findings[$1] += $4 }
        END { for (target in inputs) printf "%s\t%.1f\t%.0f\t%d\n", target, seconds[target], inputs[target], findings[target] }' |
        sort >"$TALLY.new" && mv "$TALLY.new" "$TALLY"
}

print_tally() {
    awk -F '\t' '
        BEGIN { printf "%-24s %10s %16s %9s\n", "TARGET", "CPU HOURS", "INPUTS", "FINDINGS" }
        { printf "%-24s %10.2f %16.0f %9d\n", $1, $2 / 3600, $3, $4 }' "$TALLY"
}

# run_target TARGET SECONDS: its inputs and its time are counted however it ends.
run_target() {
    local target=$1 seeds before log="build/fuzz/$1.log" result=0
    seeds=$(git ls-files "*/corpus/$target/*" | head -n 1)
    mkdir -p "build/fuzz/corpus/$target"
    say "$target for $2 s"
    note_child_seconds
    before=$child_seconds
    "build/fuzz/fuzz/$target" -max_total_time="$2" -timeout=25 -rss_limit_mb=3000 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/found/$target-" "build/fuzz/corpus/$target" "${seeds%/*}" >"$log" 2>&1 &
    fuzzer=$!
    wait "$fuzzer" || result=$?
    if [ -n "$stopped" ]; then
        wait "$fuzzer"  # the one before was cut short by the signal; this one ends with the fuzzer
        result=0
    fi
    fuzzer=""
    note_child_seconds
    add_to_tally "$target" "$(echo "$child_seconds $before" | awk '{ print $1 - $2 }')" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | grep . || echo 0)" $((result != 0))
    grep -E '^(stat::number_of_executed_units|SUMMARY|Done)' "$log"
    return "$result"
}

stop() {
    stopped=yes
    [ -z "$fuzzer" ] || kill -INT "$fuzzer" 2>/dev/null
}

case "${1:-}" in
    --tally)
        [ -f "$TALLY" ] || fail "nothing has been fuzzed in this tree yet"
        print_tally
        exit
        ;;
    *[!0-9]*) usage ;;
esac
seconds=${1:-1200}
[ $# -gt 0 ] && shift

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_TEST $PACKAGES_FUZZ
configure fuzz
[ $# -gt 0 ] || mapfile -t targets < <(git ls-files '*/corpus/*' | sed -E 's|.*/corpus/([^/]+)/.*|\1|' | sort -u)
[ $# -gt 0 ] && targets=("$@")
build fuzz --target "${targets[@]}"

mkdir -p build/fuzz/found
fuzzer="" stopped="" found=""
trap stop INT TERM HUP
for target in "${targets[@]}"; do
    run_target "$target" "$seconds" || found="$found $target"
    [ -z "$stopped" ] || break
done
print_tally
[ -z "$found" ] || fail "something was found by$found: see build/fuzz/*.log and build/fuzz/found"
[ -z "$stopped" ] || fail "stopped before its end"
