#!/usr/bin/env bash
# ./fuzz.sh MINUTES [TARGET]...: builds the fuzzers and runs all or the named ones side by side. Corpora stay below
# build/fuzz-corpus, findings below build/fuzz-findings, figures in build/fuzz-results.json. A finding is exit code 1.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")"
. scripts/common.sh

need_packages clang libclang-rt-14-dev python3 "${build_packages[@]}"
build fuzz
python3 fuzz/make_seeds.py build/fuzz-seeds
say "fuzzing"
python3 fuzz/run_fuzzers.py "$@"
