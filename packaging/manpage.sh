#!/usr/bin/env bash
# Writes the manual page of a program, made of what its --help says.
#
# usage: manpage.sh PROGRAM SUMMARY PAGE [COMMAND...]
set -eu -o pipefail
program=$1 name=${1##*/} summary=$2 page=$3
shift 3

# A help text as roff. Headings get entries with a name and a text, other indented lines stay as they are, and paragraphs
# are filled.
roff() {
    awk -v heading="$1" '
        function literally(text) {
            gsub(/\\/, "\\e", text)
            gsub(/-/, "\\-", text)
            return text ~ /^[.\047]/ ? "\\&" text : text
        }
        function leave_block() {
            if (block) print ".fi\n.RE"
            block = 0
        }
        /^Usage: / { print ".PP\n.B " literally(substr($0, 8)); next }
        /^[A-Z][A-Za-z ]*:$/ {
            leave_block()
            title = substr($0, 1, length($0) - 1)
            print heading " " (heading == ".SH" ? toupper(title) : title)
            entries = 1
            next
        }
        /^$/ { leave_block(); entries = 0; print ".PP"; next }
        entries && /^  [^ ]/ {
            text = substr($0, 3)
            end = match(text, /  +/) ? RSTART : length(text) + 1
            print ".TP\n.B " literally(substr(text, 1, end - 1))
            text = substr(text, end)
            sub(/^ +/, "", text)
            if (text != "") print literally(text)
            next
        }
        entries { sub(/^ +/, ""); print literally($0); next }
        /^ / { if (!block) print ".PP\n.RS\n.nf"; block = 1; print literally(substr($0, 3)); next }
        { leave_block(); print literally($0) }
        END { leave_block() }'
}
# The lines that tell the usage.
usage() { sed -n 's/-/\\-/g; s/^Usage: \(.*\)/.B \1\n.br/p'; }

{
    printf '.TH %s 1 "" Norvik\n.SH NAME\n%s \\- %s\n.SH SYNOPSIS\n' "${name^^}" "$name" "$summary"
    "$program" --help | usage
    for command in "$@"; do
        "$program" "$command" --help | usage
    done
    printf '.SH DESCRIPTION\n'
    "$program" --help | sed '/^Usage: /d' | roff .SH
    for command in "$@"; do
        printf '.SH %s %s\n' "$name" "$command"
        "$program" "$command" --help | roff .SS
    done
} | gzip -9n >"$page"
