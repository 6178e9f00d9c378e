#!/bin/sh
# Holds what a shared library exports against the list that is kept of it. A name that goes is a
# break of the interface; one that comes is a promise, which is made by adding it to the list.
#
#   tests/install/symbols.sh LIBRARY LIST
export LC_ALL=C
nm -DC --defined-only --with-symbol-versions "$1" | cut -d' ' -f3- | sort -u |
    diff -u --label kept "$2" --label exported - && exit
echo "The exports of $1 differ from $2. If that is meant: patch -p0 the list with the lines above" >&2
exit 1
