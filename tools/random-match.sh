#!/usr/bin/env bash
# Plays the random player against the mate-in-one random player through a UCI
# match runner and prints the runner's summary. The runner is not part of the
# project: point FASTCHESS at a fastchess binary built elsewhere.
#
#   FASTCHESS=/path/to/fastchess tools/random-match.sh build/kelvaran [games]
set -euo pipefail
engine=$(realpath "${1:?usage: $0 engine-binary [games]}")
here=$(cd "$(dirname "$0")" && pwd)
games=${2:-400}
runner=${FASTCHESS:?set FASTCHESS to a fastchess binary}
openings=$(realpath "$here/../../shared/openings/noob_3moves_4000.epd")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The runner leaves a config.json behind in its working directory: keep it in the scratch one.
cd "$work"
"$runner" -engine cmd="$engine" args=--Rnd name=Rnd -engine cmd="$engine" args=--RndMate name=RndMate \
    -each tc=1+0.01 proto=uci -openings file="$openings" format=epd order=random \
    -rounds $((games / 2)) -games 2 -repeat -concurrency 2 -pgnout file="$work/games.pgn" >"$work/log" 2>&1

# Anything but a normal game end is a fault of the engine.
grep -i -E 'illegal|disconnect|loses on time|timeout|crash' "$work/log" && { echo "FAULTS FOUND" >&2; exit 1; }
grep -o '{[^}]*}' "$work/log" | sort | uniq -c
sed -n '/^Results of/,/^Ptnml/p' "$work/log"
