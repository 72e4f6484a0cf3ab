#!/usr/bin/env bash
# Writes the perft reference data that the board tests read, counted by an
# independent engine (Debian's stockfish), so the tests themselves never need it.
#
#   tools/perft-referenz.sh [stockfish-binary]
#
# Output (committed, regenerate only when the position sets change):
#   tests/board/data/perft_stellungen.txt   fen;depth;count
#       opening-book positions, and positions from a few to 160 random plies
#       into games from them and from Chess960 starts (castling, en passant,
#       promotions, endgames)
#   tests/board/data/chess960_start.txt     number;fen;depth;count
#       all 960 Chess960 start positions, in the standard numbering
set -euo pipefail

cd "$(dirname "$0")/.."
sf=${1:-$(command -v stockfish || echo /usr/games/stockfish)}
[ -x "$sf" ] || { echo "stockfish not found (apt-get install stockfish)" >&2; exit 1; }
buecher=../shared/openings
daten=tests/board/data
mkdir -p "$daten"
tiefe=3

RANDOM=2017  # reproducible walks

coproc SF { "$sf"; }
an() { printf '%s\n' "$*" >&"${SF[1]}"; }
# Reads engine lines up to and including the one starting with $1; they land in $zeilen.
bis() {
    zeilen=()
    local z
    while IFS= read -r -u "${SF[0]}" z; do
        zeilen+=("$z")
        [[ $z == "$1"* ]] && return 0
    done
    echo "stockfish ended early" >&2
    exit 1
}
an uci
bis uciok

chess960() { an "setoption name UCI_Chess960 value $1"; an isready; bis readyok; }

# perft count of a position given as "fen [moves ...]"
perft() {
    an "position fen $1"
    an "go perft $2"
    bis "Nodes searched"
    local letzte=${zeilen[${#zeilen[@]}-1]}
    echo "${letzte#Nodes searched: }"
}

# Sets $ziel to the FEN of the engine's current position.
aktuelle_fen() {
    an d
    bis Checkers
    local z
    for z in "${zeilen[@]}"; do
        if [[ $z == "Fen: "* ]]; then ziel=${z#Fen: }; fi
    done
}

# A castling letter names one rook; when another rook of that side stands
# further out on its home rank the letter is ambiguous for a KQkq-style reader.
mehrdeutig() {
    awk -v fen="$1" 'BEGIN {
        split(fen, f, " "); split(f[1], r, "/"); rechte = f[3]
        for (s = 0; s < 2; s++) {
            reihe = (s == 0) ? r[8] : r[1]; koenig = (s == 0) ? "K" : "k"; turm = (s == 0) ? "R" : "r"
            linie = 0; delete brett
            for (i = 1; i <= length(reihe); i++) {
                c = substr(reihe, i, 1)
                if (c ~ /[1-8]/) linie += c; else { brett[linie] = c; linie++ }
            }
            kf = -1; for (x = 0; x < 8; x++) if (brett[x] == koenig) kf = x
            for (i = 1; i <= length(rechte); i++) {
                c = substr(rechte, i, 1)
                if (s == 0 && c !~ /[A-H]/) continue
                if (s == 1 && c !~ /[a-h]/) continue
                rf = index("abcdefgh", tolower(c)) - 1
                for (x = 0; x < 8; x++)
                    if (brett[x] == turm && ((rf > kf && x > rf) || (rf < kf && x < rf))) exit 1
            }
        }
        exit 0
    }' && return 1
    return 0
}

# Plays n random legal plies from a FEN and sets $ziel to the FEN reached.
# No subshells here: they would not see the engine's pipes, nor advance $RANDOM.
zufallsweg() {
    local fen=$1 n=$2 zuege="" i
    for ((i = 0; i < n; i++)); do
        an "position fen $fen${zuege:+ moves$zuege}"
        an "go perft 1"
        bis "Nodes searched"
        local liste=() z
        for z in "${zeilen[@]}"; do
            if [[ $z =~ ^([a-h][1-8][a-h][1-8][nbrq]?):\ 1$ ]]; then liste+=("${BASH_REMATCH[1]}"); fi
        done
        if [ ${#liste[@]} -eq 0 ]; then break; fi
        zuege+=" ${liste[RANDOM % ${#liste[@]}]}"
    done
    an "position fen $fen${zuege:+ moves$zuege}"
    aktuelle_fen
}

ausgabe=$daten/perft_stellungen.txt
{
    echo "# fen;depth;count  (tools/perft-referenz.sh, counted by stockfish)"
    chess960 false
    # opening books: every 27th UHO position, every 40th noob position
    while read -r fen; do
        echo "$fen;$tiefe;$(perft "$fen" $tiefe)"
    done < <(awk 'NR % 27 == 1' "$buecher/UHO_4060_v2_4000.epd" | cut -d' ' -f1-4)
    while read -r fen; do
        echo "$fen;$tiefe;$(perft "$fen" $tiefe)"
    done < <(awk 'NR % 40 == 7' "$buecher/noob_3moves_4000.epd" | cut -d' ' -f1-4)
    # deeper into games: 10..49 random plies from UHO openings
    while read -r fen; do
        zufallsweg "$fen" $((10 + RANDOM % 40))
        echo "$ziel;$tiefe;$(perft "$ziel" $tiefe)"
    done < <(awk 'NR % 100 == 50' "$buecher/UHO_4060_v2_4000.epd" | cut -d' ' -f1-4)
    # Chess960 games: 4..35 random plies from every 16th start position
    chess960 true
    while read -r fen; do
        zufallsweg "$fen" $((4 + RANDOM % 32))
        if mehrdeutig "$ziel"; then continue; fi
        echo "$ziel;$tiefe;$(perft "$ziel" $tiefe)"
    done < <(awk 'NR % 16 == 3' "$buecher/FRC_openings.epd" | cut -d' ' -f1-4)
    # late games, 60..159 random plies in: promotions, few men, bare kings
    while read -r fen; do
        zufallsweg "$fen" $((60 + RANDOM % 100))
        if mehrdeutig "$ziel"; then continue; fi
        echo "$ziel;$tiefe;$(perft "$ziel" $tiefe)"
    done < <(awk 'NR % 37 == 5' "$buecher/FRC_openings.epd" | cut -d' ' -f1-4)
    chess960 false
    while read -r fen; do
        zufallsweg "$fen" $((60 + RANDOM % 100))
        echo "$ziel;$tiefe;$(perft "$ziel" $tiefe)"
    done < <(awk 'NR % 97 == 13' "$buecher/UHO_4060_v2_4000.epd" | cut -d' ' -f1-4)
} >"$ausgabe.neu"
mv "$ausgabe.neu" "$ausgabe"

ausgabe=$daten/chess960_start.txt
{
    echo "# number;fen;depth;count  (tools/perft-referenz.sh, counted by stockfish)"
    chess960 true
    n=0
    while read -r fen; do
        echo "$n;$fen;$tiefe;$(perft "$fen" $tiefe)"
        n=$((n + 1))
    done < <(cut -d' ' -f1-4 "$buecher/FRC_openings.epd")
} >"$ausgabe.neu"
mv "$ausgabe.neu" "$ausgabe"

an quit
wait "$SF_PID" 2>/dev/null || true
wc -l "$daten"/*.txt
