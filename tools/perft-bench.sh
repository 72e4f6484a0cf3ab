#!/usr/bin/env bash
# Times perft through the engine's UCI interface, once without and once with a
# 256 MB perft table, and checks every count against the known result.
#
#   tools/perft-bench.sh path/to/kelvaran
#
# Needs only bash, coreutils and awk. Exits non-zero if a count is wrong or missing.
set -euo pipefail

engine=${1:?usage: $0 engine-binary}
[ -x "$engine" ] || { echo "$0: '$engine' is not an executable" >&2; exit 1; }

# name | position command argument | depth | expected nodes
laeufe=(
    "start|startpos|6|119060324"
    "kiwipete|fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1|5|193690690"
    "position3|fen 8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1|7|178633661"
    "position5|fen rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8|5|89941194"
)

fehler=0

# One engine process per measurement, so a table from the previous run cannot help.
messen() {  # position depth extra -> "ms nodes" or nothing
    local aus
    # An engine that dies early is reported by its missing line, not by ending the script.
    aus=$( { printf 'uci\nposition %s\nperft depth %s%s\nquit\n' "$1" "$2" "$3" 2>/dev/null || true; } |
        "$engine" 2>/dev/null) || true
    awk '$1 == "info" && $2 == "depth" && $4 == "time" && $6 == "nodes" { print $5, $7; exit }' <<<"$aus"
}

tabelle() {  # title, extra perft words
    local titel=$1 extra=$2 lauf name pos tiefe soll ergebnis ms knoten
    local summe_ms=0 summe_knoten=0
    echo "$titel"
    printf '%-10s %5s %12s %9s %12s  %s\n' position depth nodes ms nps check
    for lauf in "${laeufe[@]}"; do
        IFS='|' read -r name pos tiefe soll <<<"$lauf"
        ergebnis=$(messen "$pos" "$tiefe" "$extra")
        if [ -z "$ergebnis" ]; then
            printf '%-10s %5s %12s %9s %12s  %s\n' "$name" "$tiefe" - - - "no perft output"
            fehler=1
            continue
        fi
        read -r ms knoten <<<"$ergebnis"
        local pruefung=ok
        if [ "$knoten" != "$soll" ]; then pruefung="WRONG, expected $soll"; fehler=1; fi
        printf '%-10s %5s %12s %9s %12s  %s\n' "$name" "$tiefe" "$knoten" "$ms" \
            "$(awk -v n="$knoten" -v t="$ms" 'BEGIN { if (t > 0) printf "%.0f", n * 1000 / t; else print "-" }')" \
            "$pruefung"
        summe_ms=$((summe_ms + ms))
        summe_knoten=$((summe_knoten + knoten))
    done
    printf '%-10s %5s %12s %9s %12s\n' total "" "$summe_knoten" "$summe_ms" \
        "$(awk -v n="$summe_knoten" -v t="$summe_ms" 'BEGIN { if (t > 0) printf "%.0f", n * 1000 / t; else print "-" }')"
    echo
}

tabelle "perft without table" ""
tabelle "perft with Hash 256" " Hash 256"
exit $fehler
