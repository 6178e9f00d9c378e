#!/usr/bin/env bash
# Installs a built tree, moves what was installed somewhere else, and builds and runs the examples
# against it both ways, outside of the tree: through CMake's find_package and through pkg-config.
#
#   tests/install/consume.sh ROOT BUILD LIBDIR COMPILER FLAGS
set -euo pipefail
root=$1 build=$2 libdir=$3 compiler=$4 flags=$5

away=$(mktemp -d)
trap 'rm -rf "$away"' EXIT
cmake --install "$build" --prefix "$away/first" >"$away/install.log"
mv "$away/first" "$away/prefix"
cp "$root"/examples/{read_list.cpp,request_profile.cpp,household.bin} "$away"
cd "$away"

# What the examples print, with $1 before their names.
run() {
    "$1read_list" household.bin 2>&1
    "$1request_profile" | od -An -tx1
}

cat >CMakeLists.txt <<'END'
cmake_minimum_required(VERSION 3.25)
project(hosts LANGUAGES CXX)
find_package(quarn 0.1 REQUIRED)
foreach(host read_list request_profile)
  add_executable(${host} ${host}.cpp)
  target_link_libraries(${host} PRIVATE quarn::quarn)
endforeach()
END
cmake -B found -DCMAKE_PREFIX_PATH="$away/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" >cmake.log
cmake --build found >>cmake.log || { cat cmake.log && exit 1; }
run found/ >found.out
[[ $(grep -c "^0100010800ff  1479811" found.out) == 4 ]]
echo "find_package(quarn): the hosts run"

export PKG_CONFIG_PATH=$away/prefix/$libdir/pkgconfig
read -ra package <<<"$(pkg-config --cflags --libs quarn)"
for host in *.cpp; do
    "$compiler" -std=c++17 $flags -Wall -Wextra -Wpedantic -Werror "$host" "${package[@]}" \
        -o "pc-${host%.cpp}"
done
export LD_LIBRARY_PATH=$away/prefix/$libdir
run ./pc- | diff found.out -
echo "pkg-config quarn: the hosts run"

unset LD_LIBRARY_PATH
[[ $(prefix/bin/quarn decode --obis 1.8.0 --format csv household.bin 2>/dev/null | wc -l) == 5 ]]
echo "quarn: the installed program runs"
