#!/usr/bin/env bash
# Installs a built tree, moves what was installed somewhere else, and builds and runs one small host
# against it both ways: through CMake's find_package and through pkg-config.
#
#   tests/install/consume.sh ROOT BUILD LIBDIR COMPILER FLAGS
set -euo pipefail
root=$1 build=$2 libdir=$3 compiler=$4 flags=$5

away=$(mktemp -d)
trap 'rm -rf "$away"' EXIT
cmake --install "$build" --prefix "$away/first" >"$away/install.log"
mv "$away/first" "$away/prefix"
cp -r "$root/tests/install/host" "$root/examples/household.bin" "$away"
cd "$away"

cat >expected <<'END'
1.8.0 147981129
1.8.0 147981134
attention 0, 31 bytes
1.8.0 147981138
1.8.0 147981138
result 0, 3 lines of trace
END

cmake -S host -B cmake -DCMAKE_PREFIX_PATH="$away/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" >cmake.log
cmake --build cmake >>cmake.log || { cat cmake.log && exit 1; }
cmake/host household.bin | diff expected -
echo "find_package(quarn): the host runs"

export PKG_CONFIG_PATH=$away/prefix/$libdir/pkgconfig
read -ra package <<<"$(pkg-config --cflags --libs quarn)"
"$compiler" -std=c++17 $flags -Wall -Wextra -Wpedantic -Werror host/host.cpp "${package[@]}" -o host.pc
LD_LIBRARY_PATH=$away/prefix/$libdir ./host.pc household.bin | diff expected -
echo "pkg-config quarn: the host runs"

[[ $(prefix/bin/quarn decode --obis 1.8.0 --format csv household.bin 2>/dev/null | wc -l) == 5 ]]
echo "quarn: the installed program runs"
