#!/usr/bin/env bash
# ./bench.sh [--short] [--odd] [--json FILE] [--rows N]: builds Tracelyn and measures it against its targets.
#   --short   few rows and repetitions: shows that everything runs; the figures mean little
#   --odd     instead: how long frames of recordings take that nobody would record
#   --json    where the figures go, by default build/bench/results.json
#   --rows    samples of the recording to measure with, by default 1500000
set -euo pipefail
callers_folder=$PWD
cd "$(dirname "$(readlink -f "$0")")"
. scripts/common.sh

need_packages "${build_packages[@]}" "${bench_packages[@]}"
cmake --preset release -DTRACELYN_BENCH=ON >/dev/null
build release tracelyn-cli tracelyn tracelyn_python tracelyn_bench empty_window
exec python3 bench/bench.py --folder "$callers_folder" "$@"
