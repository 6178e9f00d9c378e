#!/bin/sh
# Holds what a shared library exports against the list that is kept of it. A name that goes is a
# break of the interface; one that comes is a promise. With "update", the list becomes what is
# exported now.
#
#   tests/install/symbols.sh LIBRARY LIST [update]
export LC_ALL=C
exports() { nm -DC --defined-only --with-symbol-versions "$1" | cut -d' ' -f3- | sort -u; }

if [ "$3" = update ]; then
    exports "$1" >"$2"
elif ! exports "$1" | diff -u --label kept "$2" --label exported -; then
    echo "What $1 exports is not what is kept. If that is meant: $0 $1 $2 update" >&2
    exit 1
fi
