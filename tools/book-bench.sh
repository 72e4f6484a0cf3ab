#!/usr/bin/env bash
# The opening-book benchmark and end-to-end check, on a generated PGN file of
# GAMES games (openings from Scid's ECO file, random continuations, comments,
# NAGs, variations, escape lines, FEN games, and BROKEN games with an illegal
# move or a bad FEN tag):
#   1. "book add" speed in games per second, and every broken game reported
#      once, at the line and column of the bad token;
#   2. writemem, readmem, writemem gives the same file; write prunes;
#   3. our Polyglot keys against a book made by the polyglot program from the
#      same games: the same moves in every sampled position;
#   4. a Polyglot book from Debian (gnuchess-book) looked up in known positions.
#
#   tools/book-bench.sh [GAMES] [BROKEN]      (defaults: 20000, 20)
set -euo pipefail
cd "$(dirname "$0")/.."
spiele=${1:-20000}
kaputt=${2:-20}

pakete=()
command -v g++ >/dev/null || pakete+=(g++)
command -v python3 >/dev/null || pakete+=(python3)
[[ -f /usr/share/scid/data/scid.eco ]] || pakete+=(scid-data)
[[ -x /usr/games/polyglot ]] || pakete+=(polyglot)
[[ -f /usr/share/games/gnuchess/book.bin ]] || pakete+=(gnuchess-book)
if ((${#pakete[@]})); then
    apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${pakete[@]}" >/dev/null
fi

if [[ ! -x build/kelvaran || ! -f build/libkelvaran_engine.a ]]; then
    cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
    cmake --build build -j2 --target kelvaran >/dev/null
fi
engine=$PWD/build/kelvaran
arbeit=$(mktemp -d /tmp/kelvaran-book.XXXXXX)
trap 'rm -rf "$arbeit"' EXIT

g++ -O2 -std=c++20 -Isrc tools/book/pgn_erzeugen.cpp build/libkelvaran_engine.a -lpthread -o "$arbeit/pgn_erzeugen"
"$arbeit/pgn_erzeugen" /usr/share/scid/data/scid.eco "$spiele" 1 "$arbeit/spiele.pgn" "$kaputt"
cd "$arbeit"
echo "PGN: $spiele games, $(wc -l <spiele.pgn) lines, $(du -m spiele.pgn | cut -f1) MB, $kaputt broken"

# 1. Speed of "add" (best of three) and the error reports.
beste=0
for _ in 1 2 3; do
    "$engine" --book "add spiele.pgn" >add.txt
    rate=$(sed -n 's/.* \([0-9]*\) games\/s.*/\1/p' add.txt)
    ((rate > beste)) && beste=$rate
done
grep "^info string add" add.txt
echo "book add: best of 3 runs $beste games/s"
fehler=$(grep -c "PGN-Parser" add.txt || true)
[[ "$fehler" == "$kaputt" ]] || { echo "FAIL: $fehler error reports for $kaputt broken games" >&2; exit 1; }
# Each report must point at the bad token.
grep "PGN-Parser" add.txt | while read -r _ _ _ _ _ _ zeile _ spalte meldung; do
    spalte=${spalte%:}
    text=$(sed -n "${zeile}p" spiele.pgn)
    token=${text:$((spalte - 1))}
    case "$meldung" in
        *"illegal move Ke9"*) [[ "$token" == Ke9* ]] ;;
        *"illegal FEN"*) [[ "$token" == \"8/8/8* ]] ;;
        *) false ;;
    esac || { echo "FAIL: report '$meldung' at line $zeile char $spalte: '$token'" >&2; exit 1; }
done
echo "error reports: $fehler, each at the line and column of the bad token"

# 2. Round trip and pruning.
"$engine" --book "add spiele.pgn" "writemem a.opn" "delete" "readmem a.opn" "writemem b.opn" \
    "entropy spiele.pgn" "write c.opn threshold 3000 width 25" | grep -v PGN-Parser
cmp a.opn b.opn && echo "round trip: writemem / readmem / writemem identical ($(du -k a.opn | cut -f1) kB)"
"$engine" --book "probe c.opn rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"

# 3. Polyglot keys: polyglot's own book of the games without FEN tags against ours.
python3 - <<'EOF'
import re
spiele = re.split(r'\n\n(?=\[Event)', open('spiele.pgn').read())
ohne = [s for s in spiele if '[FEN' not in s and 'Ke9' not in s]
open('ohnefen.pgn', 'w').write('\n\n'.join(ohne) + '\n')
EOF
/usr/games/polyglot make-book -pgn ohnefen.pgn -bin pg.bin -max-ply 40 -min-game 1 >/dev/null 2>&1
"$engine" --book "add ohnefen.pgn" "writemem o.opn" "positions ohnefen.pgn out o.epd" >/dev/null
python3 - "$engine" <<'EOF'
import random, subprocess, sys
stellungen = [z.strip() for z in open('o.epd')]
random.seed(1)
auswahl = stellungen[:500] + random.sample(stellungen, min(1500, len(stellungen)))
argumente = [sys.argv[1], '--book']
for s in auswahl:
    argumente += ['probe o.opn %s 0 1' % s, 'probe pg.bin %s 0 1' % s, 'probe - -']
zeilen = subprocess.run(argumente, capture_output=True, text=True).stdout.splitlines()
gruppen, jetzt = [], []
for z in zeilen:
    if 'book file and FEN expected' in z:
        gruppen.append(jetzt); jetzt = []
    else:
        jetzt.append(z)
gleich = nichtleer = 0
for g in gruppen:
    unsere = sorted(z.split()[3] for z in g if ' games ' in z)
    fremde = sorted(z.split()[3] for z in g if z.startswith('info string probe ') and ' weight ' in z and ' games ' not in z)
    gleich += unsere == fremde
    nichtleer += len(fremde) > 0
print('polyglot keys: %d of %d sampled positions with the same moves in both books (%d with moves)'
      % (gleich, len(gruppen), nichtleer))
sys.exit(0 if gleich == len(gruppen) and nichtleer > len(gruppen) // 2 else 1)
EOF

# 4. A real Polyglot book.
buch=/usr/share/games/gnuchess/book.bin
echo "gnuchess book ($(du -k $buch | cut -f1) kB), start position and after 1.e4 c5:"
"$engine" --book "probe $buch rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1" >probe.txt
head -5 probe.txt
"$engine" --book "probe $buch rnbqkbnr/pp1ppppp/8/2p5/4P3/8/PPPP1PPP/RNBQKBNR w KQkq c6 0 2" >probe.txt
head -5 probe.txt
# In play: "go" answers from the book at once when the driver asks it (OwnBook, BookFile).
antwort=$(printf 'uci\nsetoption name BookFile value %s\nposition startpos moves e2e4 c7c5\ngo wtime 60000 btime 60000\nisready\n' "$buch" |
    timeout 60 "$engine" | grep -E "^info string book move|^bestmove" | tr '\n' ' ' || true)
echo "go after 1.e4 c5 with the gnuchess book: $antwort"
