#!/usr/bin/env bash
# Builds the library against the framework beside this script, with AddressSanitizer, then one host
# against that library and against the one of the build: both hosts have to print the same, line by
# line, trace included.
#
#   tests/framework/run.sh ROOT LIBRARIES SCRATCH COMPILER FLAGS
set -euo pipefail
root=$1 libraries=$2 scratch=$3 compiler=$4 flags=$5
framework=$root/tests/framework/framework.h
checked="-O0 $flags -fsanitize=address"

cmake -S "$root" -B "$scratch" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$checked" -DQUARN_WERROR=ON -DQUARN_FRAMEWORK="$framework" >"$scratch.log"
cmake --build "$scratch" -j2 >>"$scratch.log" || { cat "$scratch.log" && exit 1; }

# host NAME FLAGS...: builds the host and keeps what it prints
host() {
    local name=$scratch/$1
    shift
    "$compiler" -std=c++17 $flags -I"$root" "$root/tests/framework/host.cpp" "$@" -o "$name"
    "$name" "$root/examples/household.bin" >"$name.out" 2>"$name.trace" || { cat "$name.trace" && exit 1; }
}
host other $checked "-DQUARN_FRAMEWORK_HEADER=\"$framework\"" -L"$scratch/lib" -lquarn -Wl,-rpath,"$scratch/lib"
host ours -L"$libraries" -lquarn -lvorn -Wl,-rpath,"$libraries"
diff "$scratch/ours.out" "$scratch/other.out"
diff "$scratch/ours.trace" "$scratch/other.trace"
grep -c '^record' "$scratch/other.out"
[[ $(grep -c '^encoded 0' "$scratch/other.out") -ge 14 ]]
