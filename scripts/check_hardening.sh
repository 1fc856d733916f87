#!/usr/bin/env bash
# Says which release programs and producers lack what cmake/NorvikHardening.cmake gives them, and fails if any does.
#
# usage: scripts/check_hardening.sh FILE...
set -u
[ $# -gt 0 ] || { echo "usage: scripts/check_hardening.sh FILE..." >&2; exit 2; }

code=$(mktemp)
trap 'rm -f "$code"' EXIT
failed=0
offend() {
    printf 'check_hardening.sh: %s: %s\n' "$1" "$2" >&2
    failed=1
}
# expect FILE WHAT PATTERN TEXT: the text that readelf gave has the pattern in it.
expect() {
    grep -qE -- "$3" <<<"$4" || offend "$1" "$2"
}

for file in "$@"; do
    header=$(LC_ALL=C readelf --wide --file-header --program-headers --dynamic "$file") || exit 1
    symbols=$(LC_ALL=C readelf --wide --dyn-syms "$file")
    expect "$file" "not position-independent" '^ *Type: +DYN' "$header"
    expect "$file" "its relocations stay writable (-z relro)" '^ *GNU_RELRO ' "$header"
    expect "$file" "its symbols are bound late (-z now)" 'BIND_NOW|FLAGS_1.* NOW' "$header"
    expect "$file" "its stack can be executed" '^ *GNU_STACK .* RW +0x' "$header"
    expect "$file" "no stack protector" ' __stack_chk_fail@' "$symbols"
    expect "$file" "no checked call of the C library (-D_FORTIFY_SOURCE)" ' __[a-z]+_chk@' \
        "$(grep -v __stack_chk_fail <<<"$symbols")"
    # The mark in the notes is lost as soon as one object lacks it, as Debian's own start files do. What can be seen is
    # the instruction that marks where an indirect branch may land, endbr64: one at most functions, where the compiler's
    # own start files bring two or three.
    if grep -qE 'Machine: .*X86-64' <<<"$header"; then
        objcopy --output-target=binary --only-section=.text "$file" "$code" || exit 1
        [ "$(LC_ALL=C grep -oaP '\xf3\x0f\x1e\xfa' "$code" | wc -l)" -gt 20 ] ||
            offend "$file" "no control-flow protection (-fcf-protection)"
    fi
done
exit $failed
