#!/usr/bin/env bash
# Every --help has an example, and every example runs: the input in it is read, and at worst found to
# be damaged.
#
#   tests/docs/examples.sh PROGRAM EXAMPLES
set -uo pipefail
program=$1
away=$(mktemp -d)
trap 'rm -rf "$away"' EXIT
cp -r "$2" "$away/examples"
cd "$away"
export PATH=$(dirname "$program"):$PATH
failed=0

quarn unframe examples/household.bin >file.sml 2>/dev/null
commands=$(quarn --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
for command in '' $commands; do
    # A pipe goes on in the next line.
    examples=$(quarn $command --help | sed -n '/^Examples\?:/,/^$/s/^  //p' | sed ':a;/|$/{N;s/\n */ /;ba}')
    [[ $examples == *quarn* ]] || { echo "quarn $command --help has no example" && failed=1; }
    while read -r example; do
        output=$(timeout 10 bash -c "$example" 2>&1 </dev/null)
        (($? <= 1)) || { printf '%s\n%s\n' "$example" "$output" && failed=1; }
    done <<<"$examples"
done
exit $failed
