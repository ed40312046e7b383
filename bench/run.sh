#!/bin/sh
# Builds the benchmark suite, writes its inputs (once), runs every program
# and prints the comparison table. Usage: bench/run.sh [benchmark filter regex]
# Environment: TALVO_BENCH_BUILD (build directory, default build/bench),
# TALVO_BENCH_DATA (inputs, default /tmp/talvo-bench-data),
# TALVO_BENCH_MIN_TIME (seconds per benchmark, default 0.1). Each benchmark
# first runs a short untimed warm-up, so that the first one of a program does
# not pay alone for growing the heap.
set -e
root=$(cd "$(dirname "$0")/.." && pwd)
build=${TALVO_BENCH_BUILD:-$root/build/bench}
TALVO_BENCH_DATA=${TALVO_BENCH_DATA:-/tmp/talvo-bench-data}
export TALVO_BENCH_DATA
min_time=${TALVO_BENCH_MIN_TIME:-0.1}
filter=${1:-.}

cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DTALVO_BUILD_BENCHMARKS=ON \
    -DTALVO_BUILD_TESTS=OFF -DTALVO_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" -j2 >/dev/null

if [ ! -f "$TALVO_BENCH_DATA/complete" ]; then
    echo "writing inputs to $TALVO_BENCH_DATA" >&2
    python3 "$root/bench/make_inputs.py" "$TALVO_BENCH_DATA"
fi

results="$build/results"
rm -rf "$results"
mkdir -p "$results"
for program in "$build"/bench/*_bench; do
    name=$(basename "$program")
    echo "running $name" >&2
    "$program" --benchmark_filter="$filter" --benchmark_min_time="$min_time" --benchmark_min_warmup_time=0.05 \
        --benchmark_out="$results/$name.json" --benchmark_out_format=json >/dev/null
done
python3 "$root/bench/table.py" "$results"/*.json
