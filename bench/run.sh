#!/usr/bin/env bash
# Builds the benchmarks optimised, without sanitizers, and runs each (or the ones named).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=g++ >/dev/null
names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  for source in bench/*_bench.cpp; do names+=("$(basename "$source" .cpp)"); done
fi
cmake --build build/bench --target "${names[@]}"
for b in "${names[@]}"; do build/bench/bin/$b; done
