#!/usr/bin/env bash
# Plays an engine-vs-engine match through the fastchess runner and prints its
# summary (Elo with error bars, W/L/D, pentanomial pairs) plus a tally of games
# that ended abnormally: illegal moves, time forfeits, crashes and stalls.
# The runner is not part of the project: FASTCHESS points at a fastchess binary
# built elsewhere (default /tmp/fastchess/fastchess).
#
#   tools/match.sh [options] OPPONENT [-- extra fastchess arguments]
#
#   OPPONENT   engine command: a path, or a name looked up in PATH and /usr/games
#              (e.g. glaurung, toga2, stockfish, ethereal-chess)
#   -e ENGINE  first engine, same form (default build/kelvaran of this checkout,
#              built with make when missing)
#   -n GAMES   number of games, rounded up to an even count (default 200)
#   -t TC      time control, moves/minutes:seconds+increment (default 10+0.1)
#   -c N       games played at once (default 1; the machine has 2 cores)
#   -o OPTS    UCI options of the first engine, comma separated: "Hash=16,Threads=1"
#   -O OPTS    UCI options of the opponent: "Skill Level=3,Hash=16"
#   -b FILE    opening EPD (default ../shared/openings/noob_3moves_4000.epd next
#              to the repository root)
#   -d DIR     where the PGN, the runner log and its config.json go (default a new
#              directory /tmp/match.XXXXXX, kept after the run)
#
# The same settings can come from the environment: ENGINE, GAMES, TC, CONCURRENCY,
# OPTIONS, OPP_OPTIONS, OPENINGS, OUTDIR. Options given on the command line win.
# Each opening is played twice with colours reversed. Exit status: 0 when every game
# ended normally, 1 when any game ended by illegal move, time forfeit or crash.
# Glaurung searches with 2 threads unless told Threads=1; on this 2-core machine it
# then loses nearly every game on time.
#
#   tools/match.sh -n 400 -t 10+0.1 -o Hash=16 -O Threads=1 glaurung
#   tools/match.sh -e glaurung -o Threads=1 -n 10 -t 2+0.05 toga2
#   tools/match.sh -O "Skill Level=5" stockfish -- -draw movenumber=40 movecount=8 score=10
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
usage() { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }

engine=${ENGINE:-}
games=${GAMES:-200}
tc=${TC:-10+0.1}
concurrency=${CONCURRENCY:-1}
options=${OPTIONS:-}
opp_options=${OPP_OPTIONS:-}
openings=${OPENINGS:-$root/../shared/openings/noob_3moves_4000.epd}
outdir=${OUTDIR:-}
runner=${FASTCHESS:-/tmp/fastchess/fastchess}

while getopts 'e:n:t:c:o:O:b:d:h' flag; do
    case $flag in
        e) engine=$OPTARG ;;
        n) games=$OPTARG ;;
        t) tc=$OPTARG ;;
        c) concurrency=$OPTARG ;;
        o) options=$OPTARG ;;
        O) opp_options=$OPTARG ;;
        b) openings=$OPTARG ;;
        d) outdir=$OPTARG ;;
        *) usage ;;
    esac
done
shift $((OPTIND - 1))
[ $# -ge 1 ] || usage
opponent=$1
shift
[ "${1:-}" != -- ] || shift
extra=("$@")

# A path stays a path; a bare name is looked up in PATH, then in /usr/games.
resolve() {
    if [[ $1 == */* ]]; then
        [ -x "$1" ] && realpath "$1" && return
    else
        command -v "$1" 2>/dev/null && return
        [ -x "/usr/games/$1" ] && echo "/usr/games/$1" && return
    fi
    echo "engine not found: $1" >&2
    return 1
}

if [ -z "$engine" ]; then
    [ -x "$root/build/kelvaran" ] || make -C "$root" build >&2
    engine=$root/build/kelvaran
fi
engine=$(resolve "$engine")
opponent=$(resolve "$opponent")
[ -x "$runner" ] || { echo "no fastchess at $runner: set FASTCHESS" >&2; exit 2; }
[ -r "$openings" ] || { echo "no opening file at $openings" >&2; exit 2; }
openings=$(realpath "$openings")
[[ $games =~ ^[0-9]+$ && $games -gt 0 ]] || { echo "bad game count: $games" >&2; exit 2; }

# The runner needs distinct engine names.
name1=$(basename "$engine")
name2=$(basename "$opponent")
[ "$name1" != "$name2" ] || name2="$name2-2"

# "Hash=16,Threads=1" -> option.Hash=16 option.Threads=1 (names may contain spaces).
uci_options() {
    local opt
    local -a list
    IFS=, read -ra list <<<"$1"
    for opt in "${list[@]}"; do
        opt=$(echo "$opt" | sed 's/^ *//; s/ *$//')
        [ -z "$opt" ] || printf 'option.%s\n' "$opt"
    done
}
mapfile -t opts1 < <(uci_options "$options")
mapfile -t opts2 < <(uci_options "$opp_options")

if [ -z "$outdir" ]; then
    outdir=$(mktemp -d /tmp/match.XXXXXX)
else
    mkdir -p "$outdir"
    outdir=$(realpath "$outdir")
fi
pgn=$outdir/games.pgn
log=$outdir/fastchess.log
rm -f "$pgn"

echo "$name1 ($engine) vs $name2 ($opponent): $(((games + 1) / 2 * 2)) games at $tc," \
    "concurrency $concurrency, openings $(basename "$openings")"
echo "log: $log  (tail -f it to follow the match)"

# The runner leaves a config.json behind in its working directory: keep it in the output one.
cd "$outdir"
status=0
"$runner" -engine cmd="$engine" name="$name1" "${opts1[@]}" \
    -engine cmd="$opponent" name="$name2" "${opts2[@]}" \
    -each tc="$tc" proto=uci \
    -openings file="$openings" format=epd order=random \
    -rounds $(((games + 1) / 2)) -games 2 -repeat -concurrency "$concurrency" -recover \
    -pgnout file="$pgn" "${extra[@]}" >"$log" 2>&1 || status=$?
[ "$status" -eq 0 ] || echo "fastchess exited with status $status" >&2

# The last summary block is the final result; the per-player block counts timeouts and crashes.
awk '/^-+$/ { if (inside) last = block; block = ""; inside = !inside; next }
    inside { block = block $0 "\n" } END { printf "%s", last }' "$log"
sed -n '/^Player: /,/^  Crashed: /p' "$log"

# Attribute every abnormal game end to the engine that caused it.
# "Finished game 7 (A vs B): 0-1 {White loses on time (30ms overrun)}"
faults=$(sed -n 's/^Finished game [0-9]* (\(.*\) vs \(.*\)): [^{]*{\(.*\)}$/\1|\2|\3/p' "$log" |
    awk -F'|' '
        $3 ~ /illegal move/            { kind = "illegal move" }
        $3 ~ /loses on time/           { kind = "time forfeit" }
        $3 ~ /disconnects/             { kind = "crash/disconnect" }
        $3 ~ /connection stalls/       { kind = "stall" }
        $3 ~ /illegal move|loses on time|disconnects|connection stalls/ {
            who = ($3 ~ /^White/) ? $1 : $2; count[who ": " kind]++ }
        END { for (k in count) printf "  %s: %d\n", k, count[k] }' | sort)
terminations=$(grep -o '^\[Termination "[^"]*"\]' "$pgn" 2>/dev/null | sed 's/.*"\(.*\)".*/\1/' |
    sort | uniq -c | sed 's/^ */  /' || true)
warnings=$(grep '^Warning' "$log" | sed 's/ - move [a-h][1-8][a-h][1-8][qrbn]* / - move ... /' |
    sort | uniq -c | sort -rn | head -n 10 | sed 's/^ */  /' || true)
[ -z "$warnings" ] || { echo "Runner warnings (count, most frequent first):"; echo "$warnings"; }
echo "Game ends (PGN Termination tags):"
echo "${terminations:-  none recorded}"
# Thinking time and depth per engine, from the "{score/depth time}" comments of the moves.
python3 - "$pgn" <<'PY' || true
import re, sys
zeit, tiefe, partien = {}, {}, {}
for block in re.split(r"\n(?=\[Event )", open(sys.argv[1], errors="replace").read()):
    namen = [re.search(r'\[%s "([^"]*)"\]' % f, block) for f in ("White", "Black")]
    if not all(namen):
        continue
    am_zug = 0 if re.search(r'\[FEN "[^"]* w ', block) or "[FEN" not in block else 1
    for d, t in re.findall(r"\{[^/}]*/(\d+) ([0-9.]+)s", block):
        n = namen[am_zug].group(1)
        zeit[n] = zeit.get(n, 0.0) + float(t)
        tiefe.setdefault(n, []).append(int(d))
        am_zug ^= 1
    for m in namen:
        partien[m.group(1)] = partien.get(m.group(1), 0) + 1
for n in sorted(zeit):
    print(f"Thinking: {n}: {zeit[n] / partien[n]:.2f} s a game, depth {sum(tiefe[n]) / len(tiefe[n]):.2f} on average"
          f" over {len(tiefe[n])} moves")
PY
echo "PGN: $pgn"
if [ -n "$faults" ]; then
    echo "ABNORMAL GAME ENDS:"
    echo "$faults"
    exit 1
fi
echo "No illegal moves, time forfeits or crashes."
exit $((status == 0 ? 0 : 1))
