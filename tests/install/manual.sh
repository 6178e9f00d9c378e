#!/usr/bin/env bash
# Every command and option that --help tells of stands in the manual page and is offered by the
# completion; the page is one that man reads without a warning.
#
#   tests/install/manual.sh PROGRAM BUILD
set -euo pipefail
program=$1 build=$2
failed=0
fail() { echo "$*" >&2 && failed=1; }

# complete WORDS... : what the completion offers for the last of them
source "$build/quarn.bash"
offer() {
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _quarn
    echo " ${COMPREPLY[*]} "
}

page=$(tr -d '\\' <"$build/quarn.1")
commands=$("$program" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[[ $(wc -w <<<"$commands") -ge 5 ]] || fail "commands: $commands"
for command in '' $commands; do
    [[ $page == *".SS $command"* ]] || fail "not in the manual: $command"
    [[ $(offer quarn "$command") == *" ${command:-check} "* ]] || fail "not offered: $command"
    for option in $("$program" $command --help | grep -oE '^  (-.,)?--[a-z-]+' | grep -oE -- '--.*'); do
        [[ $option == --help || $page == *"$option"* ]] || fail "not in the manual: $command $option"
        [[ $(offer quarn $command "$option") == *" $option "* ]] ||
            fail "not offered: $command $option"
    done
done
[[ $(offer quarn decode --format '') == *" csv "* ]] || fail 'choices of --format are not offered'
[[ $(offer quarn decode '') == '  ' ]] || fail 'something is offered where a file is due'
if command -v man >/dev/null; then
    warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 \
        man --warnings -E UTF-8 -l -Tutf8 -Z "$build/quarn.1" 2>&1 >/dev/null)
    [[ -z $warnings ]] || fail "$warnings"
fi
exit $failed
