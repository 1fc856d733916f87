#!/usr/bin/env bash
# Writes the manual page of a program, which is what its --help says.
#
# usage: manpage.sh PROGRAM SUMMARY PAGE [COMMAND...]
set -eu -o pipefail
program=$1 name=${1##*/} summary=$2 page=$3
shift 3

# Line by line, with nothing taken for roff.
literally() {
    printf '.nf\n'
    sed -e 's/\\/\\e/g' -e 's/-/\\-/g' -e "s/^[.']/\\\\\\&&/"
    printf '.fi\n'
}
{
    printf '.TH %s 1 "" Norvik\n.SH NAME\n%s \\- %s\n.SH DESCRIPTION\n' "${name^^}" "$name" "$summary"
    "$program" --help | literally
    for command in "$@"; do
        printf '.SH %s %s\n' "$name" "$command"
        "$program" "$command" --help | literally
    done
} | gzip -9n >"$page"
