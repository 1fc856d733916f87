#!/usr/bin/env bash
# Takes ten thousand images over a link shaped to a gigabit, at 0.99 of what it carries, and compares each with what the
# camera draws. By hand: two minutes, and nothing else may run beside it.
set -u
cd "$(dirname "$0")/.." || exit 1
. scripts/setup.sh

# shellcheck disable=SC2086 # lists of names
ensure_packages $PACKAGES_BUILD $PACKAGES_TEST
configure release -DNORVIK_BUILD_TESTS=ON
build release --target ProducerEntriesTest ZrGVTL
build/release/tests/ProducerEntriesTest --gtest_also_run_disabled_tests \
    --gtest_filter=ProducerStream.DISABLED_TenThousandImagesAtTheLimitOfAGigabitLink
