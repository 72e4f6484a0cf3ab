#!/usr/bin/env bash
# The search benchmark: runs "kelvaran bench" (a fixed list of positions to a
# fixed depth on one thread) several times and prints the node count, which must
# be the same every run, and the median nodes per second.
#
#   tools/search-bench.sh [ENGINE] [RUNS]     (defaults: build/kelvaran, 5)
set -euo pipefail
engine=${1:-build/kelvaran}
runs=${2:-5}
nodes=""
nps=()
for ((i = 0; i < runs; i++)); do
    read -r n _ r _ < <("$engine" bench | tail -1)
    if [[ -n "$nodes" && "$n" != "$nodes" ]]; then
        echo "node count changed between runs: $nodes then $n" >&2
        exit 1
    fi
    nodes=$n
    nps+=("$r")
done
median=$(printf '%s\n' "${nps[@]}" | sort -n | awk '{a[NR] = $1} END {print (NR % 2) ? a[(NR + 1) / 2] : int((a[NR / 2] + a[NR / 2 + 1]) / 2)}')
echo "bench: $nodes nodes, median $median nps over $runs runs (each: ${nps[*]})"
