#!/usr/bin/env bash
# Libraries and programs are hardened: what was done to them stands in their headers and in the
# functions that they call.
#
# libquarn is left without checks of sizes: it calls nothing that has them.
#
#   tests/install/hardening.sh FILE...
failed=0
for file in "$@"; do
    about=$(readelf -hldW --dyn-syms "$file")
    while read -r what pattern; do
        [[ $about =~ $pattern || "$file $what" == *libquarn*check-of-sizes ]] || { echo "$file: no $what ($pattern)" >&2 && failed=1; }
    done <<END
position-independence Type: +DYN
read-only-relocations GNU_RELRO
binding-at-start BIND_NOW|NOW
guard-of-the-stack __stack_chk_fail
check-of-sizes _chk@
END
done
exit $failed
