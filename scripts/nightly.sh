#!/usr/bin/env bash
# What is too long for every change: the tests with data races watched, clang-tidy over all sources, fuzzing, and the
# soak. Goes through all of it whatever fails, and says at the end what did. Logs lie in build/nightly.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

STEPS="tests-tsan tidy fuzz soak soak-asan soak-tsan"
fuzz_seconds=900
soak_seconds=3600

usage() {
    cat <<END
usage: scripts/nightly.sh [--fuzz SECONDS] [--soak SECONDS] [STEP ...]
  --fuzz SECONDS  for each target ($fuzz_seconds)
  --soak SECONDS  in release ($soak_seconds); half of it with each sanitizer
  STEP            only these, of: $STEPS
END
    exit "$1"
}

# The steps. Each runs in a shell and a process group of its own, its output in a log.

step_tests-tsan() {
    ./test.sh tsan
}

step_tidy() {
    # shellcheck disable=SC2086 # lists of names
    ensure_packages $PACKAGES_BUILD $PACKAGES_TEST $PACKAGES_TIDY
    configure debug
    build debug  # some includes are made by the build
    # The sources that this build compiles, those of the product first; and how, without what clang doesn't know.
    python3 - <<'END' >build/nightly/tidy.list
import json, os
commands = json.load(open("build/debug/compile_commands.json"))
for entry in commands:
    entry["command"] = entry["command"].replace(" -fno-gnu-unique", "")
with open("build/nightly/compile_commands.json", "w") as file:
    json.dump(commands, file)
sources = {os.path.relpath(entry["file"]) for entry in commands}
sources = [source for source in sources if not source.startswith(("build/", ".."))]
print("\n".join(sorted(sources, key=lambda source: (source.startswith(("tests/", "bench/")), source))))
END
    say "$(wc -l <build/nightly/tidy.list) sources"
    xargs -d '\n' -P "$(nproc)" -n 1 nice -n 15 clang-tidy -p build/nightly --quiet <build/nightly/tidy.list 2>&1 |
        grep -vE '^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header-filter'
    return "${PIPESTATUS[0]}"
}

step_fuzz() {
    scripts/fuzz.sh "$fuzz_seconds"
}

# soak PRESET SECONDS: the program has its own sense of what takes too long; the time limit is for when that fails.
soak() {
    # shellcheck disable=SC2086 # lists of names
    ensure_packages $PACKAGES_BUILD $PACKAGES_TEST
    configure "$1"
    build "$1" --target soak_test
    NORVIK_SOAK_SECONDS=$2 timeout --foreground -k 10 $(($2 + 900)) \
        ctest --test-dir "build/$1" -C Night -R '^soak_night$' -V --no-tests=error
}
step_soak() { soak release "$soak_seconds"; }
step_soak-asan() { soak asan $((soak_seconds / 2)); }
step_soak-tsan() { soak tsan $((soak_seconds / 2)); }

# Ends what runs, with all that it has started. The fuzzer still writes its tally.
stop() {
    trap '' INT TERM HUP
    if [ -n "$running" ]; then
        kill -TERM -- "-$running" 2>/dev/null
        for ((i = 0; i < 100; ++i)); do
            kill -0 -- "-$running" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL -- "-$running" 2>/dev/null
    fi
    summary="$summary$(printf '%-12s stopped' "$step")"$'\n'
    finish 1
}

finish() {
    printf '\n%s' "$summary"
    exit "$1"
}

run_step() {
    local log="build/nightly/$step.log" started=$SECONDS verdict=good status=0
    say "$step"
    setsid "$0" --step "$step" --fuzz "$fuzz_seconds" --soak "$soak_seconds" >"$log" 2>&1 &
    running=$!
    wait "$running" || status=$?
    running=""
    [ "$status" = 0 ] || verdict=FAILED
    [ "$status" = 0 ] && grep -q 'Not Run\|Skipped' "$log" && [[ $step == soak* ]] && verdict=SKIPPED
    [ "$verdict" = good ] || failed=1
    summary="$summary$(printf '%-12s %-8s %6d s  %s' "$step" "$verdict" $((SECONDS - started)) "$log")"$'\n'
}

only="" chosen=""
while [ $# -gt 0 ]; do
    case "$1" in
        --fuzz | --soak | --step)
            [ $# -gt 1 ] || usage 1
            [[ $1 == --step || $2 =~ ^[0-9]+$ ]] || usage 1
            case "$1" in
                --step) only=$2 ;;
                --fuzz) fuzz_seconds=$2 ;;
                --soak) soak_seconds=$2 ;;
            esac
            shift
            ;;
        -h | --help) usage 0 ;;
        *)
            [[ " $STEPS " == *" $1 "* ]] || usage 1
            chosen="$chosen $1"
            ;;
    esac
    shift
done

mkdir -p build/nightly
if [ -n "$only" ]; then
    "step_$only"
    exit
fi
running="" summary="" failed=0 step=""
trap stop INT TERM HUP
for step in ${chosen:-$STEPS}; do
    run_step
done
finish "$failed"
