#!/usr/bin/env bash
# Runs one fuzz target from its corpus for a while; usage: fuzz_for_a_while.sh PROGRAM CORPUS SECONDS
# QRV_TEST_SEED repeats a run; the seed is printed. What was found is kept beside the program.
set -euo pipefail
program=$1 corpus=$2 seconds=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
seed=${QRV_TEST_SEED:-$RANDOM$RANDOM}
echo "seed $seed"
TMPDIR=$scratch "$program" -seed="$seed" -max_total_time="$seconds" -timeout=120 -rss_limit_mb=2048 -max_len=4096 \
  -print_final_stats=1 -artifact_prefix="$(dirname "$program")/found-" "$scratch" "$corpus" 2>&1 | tail -n 40
