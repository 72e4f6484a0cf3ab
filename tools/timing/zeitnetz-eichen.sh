#!/usr/bin/env bash
# Fits the scaling of the time network's inputs: self-play games with both engines
# writing time logs ("TimeLogfile"), then "time fit" on those logs, which moves the
# scale and offset of each input with the built-in weights held. Prints the fit's
# error after and before, and the 15 lines "input I scale A offset B": the values
# of ZeitskalierungStandard in src/timing/zeiteingaben.cpp.
#
#   tools/timing/zeitnetz-eichen.sh [-e ENGINE] [-n GAMES] [-t TC] [-p PASSES] DIR
#
#   -e ENGINE  the engine (default build/kelvaran of this checkout)
#   -n GAMES   self-play games (default 24, about 1200 searches)
#   -t TC      time control (default 10+0.1)
#   -p PASSES  passes of the fit (default 2000)
#   DIR        receives the logs, the games and the fit (fit.txt); when it holds
#              logs already, they are fitted again without new games
#
# One game at a time: a log must hold one search after another, and two engine
# processes appending to one file would interleave theirs. Needs FASTCHESS (see
# tools/match.sh).
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
usage() { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }

engine=$root/build/kelvaran
games=24
tc=10+0.1
passes=2000
while getopts 'e:n:t:p:h' flag; do
    case $flag in
        e) engine=$OPTARG ;;
        n) games=$OPTARG ;;
        t) tc=$OPTARG ;;
        p) passes=$OPTARG ;;
        *) usage ;;
    esac
done
shift $((OPTIND - 1))
[ $# -eq 1 ] || usage
dir=$(mkdir -p "$1" && cd "$1" && pwd)
[ -x "$engine" ] || make -C "$root" build >&2
engine=$(realpath "$engine")

if [ ! -s "$dir/a.log" ]; then
    "$root/tools/match.sh" -e "$engine" -n "$games" -t "$tc" -c 1 \
        -o "Hash=16,TimeLogfile=$dir/a.log" -O "Hash=16,TimeLogfile=$dir/b.log" \
        -b "$root/../shared/openings/UHO_4060_v2_4000.epd" -d "$dir/games" "$engine" >&2
fi
printf 'uci\ntime add %s\ntime add %s\ntime fit %s\nquit\n' "$dir/a.log" "$dir/b.log" "$passes" |
    "$engine" | grep '^info string \(Mittlerer\|input\)' | tee "$dir/fit.txt"
