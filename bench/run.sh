#!/usr/bin/env bash
# Builds the benchmarks optimised, without sanitizers, and runs each.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ >/dev/null
cmake --build build/bench --target formatter_bench memory_bench
for b in formatter_bench memory_bench; do build/bench/bin/$b; done
