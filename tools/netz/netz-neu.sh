#!/usr/bin/env bash
# Regenerates the evaluation network from nothing. First generation: self-play games of
# the hand-written evaluation the network replaced, many quick ones at 200 nodes a move
# and fewer at 5000, and a network trained on their positions. Second generation: games
# of that network, quick ones at 200 nodes and deeper ones at 1000, and the first
# network trained on further on their positions at a lower rate.
#
#   tools/netz/netz-neu.sh DIR [FAST_GAMES] [GAMES1] [FAST_GAMES2] [GAMES2] [THREADS]
#
# DIR, outside the repository, receives the builds, the data, the logs and the networks
# netz1.knn and netz2.knn; copy the last over src/search/netz.knn and rebuild. The game
# counts count self-play games of about 55 (200 nodes), 68 (1000) or 70 (5000 nodes)
# kept positions each; their defaults, 295311, 16309, 352787 and 151212, make the
# network in the repository (FAST_GAMES2 and GAMES2 0: the first generation only).
# THREADS (default: every core) games are played at once. Every step resumes where an
# interrupted run stopped: the generator continues its file, a network already written
# is kept.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
[ $# -ge 1 ] || { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }
dir=$(mkdir -p "$1" && cd "$1" && pwd)
fast=${2:-295311}
games1=${3:-16309}
fast2=${4:-352787}
games2=${5:-151212}
threads=${6:-$(nproc)}
openings=("$root"/../shared/openings/{UHO_4060_v2_4000,noob_3moves_4000,FRC_openings}.epd)
# The last commit whose engine evaluated by hand, with the data generator already in it.
hand=afd871d

"$root/tools/install-deps.sh" cmake make g++ git

# The tools of this checkout, and the generator with the hand-written evaluation.
cmake -S "$root" -B "$dir/build" -DCMAKE_BUILD_TYPE=Release -DKELVARAN_TESTS=OFF >/dev/null
cmake --build "$dir/build" -j "$threads" --target kelvaran_netz >&2
if [ ! -x "$dir/build-hand/kelvaran_netz" ]; then
    rm -rf "$dir/src-hand"
    git -C "$root" worktree add --detach "$dir/src-hand" "$hand" >&2
    cmake -S "$dir/src-hand" -B "$dir/build-hand" -DCMAKE_BUILD_TYPE=Release -DKELVARAN_TESTS=OFF >/dev/null
    cmake --build "$dir/build-hand" -j "$threads" --target kelvaran_netz >&2
    git -C "$root" worktree remove --force "$dir/src-hand"
fi

daten() {  # NAME SEED GENERATOR GAMES NODES [net=FILE]
    local name=$1 seed=$2 generator=$3 games=$4 nodes=$5
    shift 5
    echo "$name: $games games at $nodes nodes" >&2
    "$generator" daten "$dir/$name.bin" games="$games" nodes="$nodes" threads="$threads" seed="$seed" "$@" \
        "${openings[@]}" | tee -a "$dir/$name.log" | tail -n 1
}
lernen() {  # OUT DATA... [SETTINGS...]
    local aus=$1
    shift
    [ -f "$aus" ] && return 0
    "$dir/build/kelvaran_netz" lernen "$aus" epochs=8 k=1100 threads="$threads" "$@" | tee "${aus%.knn}.log"
}

# The deep games come last: the trainer holds out the last positions for validation.
daten daten1f 101 "$dir/build-hand/kelvaran_netz" "$fast" 200
daten daten1 1 "$dir/build-hand/kelvaran_netz" "$games1" 5000
lernen "$dir/netz1.knn" "$dir/daten1f.bin" "$dir/daten1.bin"
if [ "$games2" -gt 0 ]; then
    daten daten2f 3 "$dir/build/kelvaran_netz" "$fast2" 200 net="$dir/netz1.knn"
    daten daten2 2 "$dir/build/kelvaran_netz" "$games2" 1000 net="$dir/netz1.knn"
    lernen "$dir/netz2.knn" "$dir/daten2f.bin" "$dir/daten2.bin" net="$dir/netz1.knn" lr=0.0003 epochs=4
fi
echo "networks in $dir" >&2
