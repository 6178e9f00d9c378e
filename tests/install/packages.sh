#!/usr/bin/env bash
# Makes the Debian packages of a built tree, unpacks them into one folder and runs the program from
# there; libraries and program are hardened, and lintian, where it is installed, has neither an error
# nor a warning to tell.
#
#   tests/install/packages.sh BUILD LIBDIR EXAMPLE
set -euo pipefail
build=$1 libdir=$2 example=$3

away=$(mktemp -d)
trap 'rm -rf "$away"' EXIT
(cd "$build" && cpack -G DEB -B "$away") >"$away/log" 2>&1 || { cat "$away/log" && exit 1; }
cd "$away"

for package in libquarn0 libquarn-dev quarn; do
    dpkg-deb -x "$package"_*.deb root
done
while read -r file; do
    [[ -e root/usr/$file ]] || { echo "missing: /usr/$file" && exit 1; }
done <<END
$libdir/libquarn.so.0
$libdir/libvorn.so.0
$libdir/libquarn.so
$libdir/pkgconfig/quarn.pc
$libdir/cmake/quarn/quarn-config.cmake
include/quarn/quarn.h
include/vorn/vorn.h
bin/quarn
share/man/man1/quarn.1.gz
share/bash-completion/completions/quarn
share/doc/quarn/copyright
END
[[ $(LD_LIBRARY_PATH=root/usr/$libdir root/usr/bin/quarn decode --obis 1.8.0 --format csv \
    "$example" 2>/dev/null | wc -l) == 5 ]]
"${0%/*}/hardening.sh" root/usr/"$libdir"/lib*.so.0 root/usr/bin/quarn
echo "the packages hold what they should, and the program runs"

if command -v lintian >/dev/null; then
    lintian --fail-on error,warning ./*.deb 2>&1 | grep -v 'root privileges' || true
    [[ ${PIPESTATUS[0]} == 0 ]]
    echo "lintian: clean"
fi
