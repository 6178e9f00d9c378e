#!/usr/bin/env bash
# Takes the repository into another project, once with static and once with shared libraries: that
# project keeps its settings, needs nothing that only tests and the program need, and its host runs,
# compiled without exceptions and run-time types.
#
#   tests/install/subproject.sh ROOT COMPILER FLAGS
set -euo pipefail
root=$1 compiler=$2 flags=$3

away=$(mktemp -d)
trap 'rm -rf "$away"' EXIT
cp "$root"/examples/{read_list.cpp,household.bin} "$away"
cd "$away"
cat >CMakeLists.txt <<END
cmake_minimum_required(VERSION 3.25)
project(parent VERSION 1.0.0 LANGUAGES CXX)
get_cmake_property(before CACHE_VARIABLES)
add_subdirectory($root quarn)
get_cmake_property(after CACHE_VARIABLES)
list(REMOVE_ITEM after \${before})
list(FILTER after EXCLUDE REGEX "^(QUARN_|quarn_|CMAKE_CXX_LINK_)")
if(after)
  message(FATAL_ERROR "left behind: \${after}")
endif()
add_executable(host read_list.cpp)
target_compile_options(host PRIVATE -fno-exceptions -fno-rtti -Wall -Wextra -Wpedantic -Werror)
target_link_libraries(host PRIVATE quarn::quarn)
END
for shared in OFF ON; do
    cmake -B $shared -DBUILD_SHARED_LIBS=$shared -DBUILD_TESTING=ON \
        -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" >log 2>&1 || { cat log && exit 1; }
    cmake --build $shared -j2 >log || { cat log && exit 1; }
    [[ $($shared/host household.bin 2>/dev/null | grep -c "^0100010800ff  1479811") == 4 ]]
    echo "BUILD_SHARED_LIBS=$shared: the host runs"
done
[[ $(find OFF ON -name 'lib*.so' -o -name 'lib*.a' | sort | xargs) == \
    'OFF/quarn/quarn/libquarn.a OFF/quarn/vorn/libvorn.a ON/quarn/quarn/libquarn.so ON/quarn/vorn/libvorn.so' ]]
