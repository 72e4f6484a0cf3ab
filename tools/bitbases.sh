#!/usr/bin/env bash
# Builds every endgame bitbase up to N men into a directory, smaller ones first.
#
#   tools/bitbases.sh BINARY N DIR [THREADS]
#
# BINARY  the engine (e.g. build/kelvaran); N  2..5 men, kings included;
# DIR     created if missing; files already there are kept (a second run only
#         adds what is missing); THREADS  default: the number of cores.
# Each signature is written with its colour-flipped twin (KDK.kbb and KKD.kbb)
# by "--CreateBitbase Threads=T NAME", which reads every file back and compares
# it with the generated bits. With CHECK=1 in the environment every signature is
# afterwards checked against the rules by "--CheckBitbase Threads=T NAME".
# Point the engine at DIR with "setoption name BitbasePath value DIR".
set -euo pipefail

if [ $# -lt 3 ] || ! [[ $2 =~ ^[2-5]$ ]]; then
    echo "usage: $0 BINARY N(2-5) DIR [THREADS]" >&2
    exit 2
fi
binaer=$(realpath "$1")
maenner=$2
verzeichnis=$3
threads=${4:-$(nproc)}
[ -x "$binaer" ] || { echo "$binaer: not an executable" >&2; exit 2; }
mkdir -p "$verzeichnis"
cd "$verzeichnis"

# Multisets of k men spelt by falling value (D T L S B), one per line.
mengen() {
    local k=$1 ab=${2:-0} buchstaben=DTLSB i
    if [ "$k" -eq 0 ]; then echo ""; return; fi
    for ((i = ab; i < 5; i++)); do
        while read -r rest; do echo "${buchstaben:i:1}$rest"; done < <(mengen $((k - 1)) "$i")
    done
}

# Signatures by men, then by pawns: captures and promotions lead only to smaller ones.
namen=()
for ((m = 2; m <= maenner; m++)); do
    for ((bauern = 0; bauern <= m - 2; bauern++)); do
        for ((w = m - 2; w >= 0; w--)); do
            while read -r weiss; do
                while read -r schwarz; do
                    name="K${weiss}K${schwarz}"
                    p=${name//[^B]/}
                    [ ${#p} -eq "$bauern" ] && namen+=("$name")
                done < <(mengen $((m - 2 - w)))
            done < <(mengen "$w")
        done
    done
done

start=$(date +%s)
for name in "${namen[@]}"; do
    [ -f "$name.kbb" ] && continue   # made with its twin
    "$binaer" --CreateBitbase "Threads=$threads" "$name"
    [ -f "$name.kbb" ] || { echo "$name.kbb was not written" >&2; exit 1; }
done
if [ "${CHECK:-0}" = 1 ]; then
    for name in "${namen[@]}"; do
        ausgabe=$("$binaer" --CheckBitbase "Threads=$threads" "$name")
        echo "$ausgabe"
        [[ $ausgabe == *", 0 Fehler"* ]] || { echo "check of $name failed" >&2; exit 1; }
    done
fi
anzahl=$(ls ./*.kbb | wc -l)
bytes=$(cat ./*.kbb | wc -c)
echo "$anzahl files, $bytes bytes, $(( $(date +%s) - start )) s"
