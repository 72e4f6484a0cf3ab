#!/usr/bin/env bash
# Speed-up of the parallel search: time to reach a fixed depth on the 40 bench
# positions (table cleared before each) with 1 thread and with N threads.
#
#   tools/smp-bench.sh [ENGINE] [DEPTH] [RUNS] [THREADS]
#
# The runs alternate (1, N, 1, N, ...) so a machine that gets busier or quieter
# affects both alike. Prints the median wall time and nodes per second of each,
# and their ratios: the time-to-depth speed-up and the nps scaling.
set -euo pipefail
ENGINE=${1:-build/kelvaran}
DEPTH=${2:-12}
RUNS=${3:-5}
THREADS=${4:-2}

median() { sort -n | awk '{a[NR]=$1} END {print (NR%2 ? a[(NR+1)/2] : (a[NR/2]+a[NR/2+1])/2)}'; }

declare -A zeit nps
for ((i = 0; i < RUNS; i++)); do
    for t in 1 "$THREADS"; do
        start=$(date +%s%N)
        zeile=$("$ENGINE" bench "$DEPTH" "$t" | tail -1)
        ende=$(date +%s%N)
        zeit[$t]+="$(awk -v a="$start" -v b="$ende" 'BEGIN {printf "%.3f", (b - a) / 1e9}') "
        nps[$t]+="$(echo "$zeile" | awk '{print $3}') "
        echo "run $((i + 1)) threads $t: $zeile" >&2
    done
done

z1=$(echo ${zeit[1]} | tr ' ' '\n' | median)
zn=$(echo ${zeit[$THREADS]} | tr ' ' '\n' | median)
n1=$(echo ${nps[1]} | tr ' ' '\n' | median)
nn=$(echo ${nps[$THREADS]} | tr ' ' '\n' | median)
printf 'depth %s, %s runs: 1 thread %.2f s %d nps; %s threads %.2f s %d nps\n' "$DEPTH" "$RUNS" "$z1" "$n1" "$THREADS" "$zn" "$nn"
awk -v z1="$z1" -v zn="$zn" -v n1="$n1" -v nn="$nn" \
    'BEGIN {printf "time-to-depth speed-up %.2f, nps scaling %.2f\n", z1 / zn, nn / n1}'
