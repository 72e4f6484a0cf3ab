#!/usr/bin/env bash
# Plays complete games between Kelvaran, speaking XBoard/CECP, and an XBoard engine
# from Debian (fairymax by default, or phalanx) under Debian's xboard, headless
# under Xvfb in xboard's match mode. Keeps the PGN and xboard's debug log, then
# checks the games: no "Illegal move", no "Error" line from Kelvaran, no loss on
# time, and every result Kelvaran announced ("1-0 {...}", "resign" ...) agrees
# with the result the GUI recorded. Installs xboard, xvfb, xauth, the opponent
# and python3 with apt-get when they are missing.
#
#   tools/xboard-match.sh [options]
#
#   -n GAMES    games to play, colours alternating (default 4)
#   -t TC       moves/minutes, e.g. 40/1 or 40/0:30; or minutes+increment in
#               seconds, e.g. 2+1 (default 40/0:30)
#   -o ENGINE   opponent: fairymax or phalanx (default fairymax)
#   -e BINARY   Kelvaran binary (default build/kelvaran of this checkout, built
#               with cmake when missing)
#   -p          let both engines ponder ("hard")
#   -d DIR      where the PGN, the debug log and the engine copy go (default a
#               new directory /tmp/xboard-match.XXXXXX, kept after the run)
#   -c DIR      only check the games of an earlier run in DIR (with -n its game count)
#
# The engine runs from a copy in DIR/engine beside a Kelvaran.ini (Hash 32), so
# the settings file is read as a user would have it. Exit status: 0 when every
# check passed, 1 otherwise.
#
#   tools/xboard-match.sh -n 6 -t 40/0:30
#   tools/xboard-match.sh -n 2 -t 2+1 -p -o phalanx
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/.." && pwd)
usage() { sed -n '2,/^set -euo/p' "$0" | sed '$d; s/^# \{0,1\}//' >&2; exit 2; }

games=4
tc=40/0:30
opponent=fairymax
engine=""
ponder=0
outdir=""
check_only=""
while getopts 'n:t:o:e:pd:c:h' flag; do
    case $flag in
        n) games=$OPTARG ;;
        t) tc=$OPTARG ;;
        o) opponent=$OPTARG ;;
        e) engine=$OPTARG ;;
        p) ponder=1 ;;
        d) outdir=$OPTARG ;;
        c) check_only=$OPTARG ;;
        *) usage ;;
    esac
done
case $opponent in fairymax|phalanx) ;; *) echo "opponent must be fairymax or phalanx" >&2; exit 2 ;; esac

if [ -z "$check_only" ]; then
# ---------------------------------------------------------------- what it needs
"$(dirname "$0")/install-deps.sh" xboard xvfb xauth python3 "$opponent"
export PATH="$PATH:/usr/games"

if [ -z "$engine" ]; then
    engine=$root/build/kelvaran
    if [ ! -x "$engine" ]; then
        cmake -S "$root" -B "$root/build" -DCMAKE_BUILD_TYPE=Release >/dev/null
        cmake --build "$root/build" -j "$(nproc)" --target kelvaran >&2
    fi
fi
engine=$(realpath "$engine")
[ -n "$outdir" ] || outdir=$(mktemp -d /tmp/xboard-match.XXXXXX)
mkdir -p "$outdir/engine" "$outdir/home"
outdir=$(realpath "$outdir")
cp "$engine" "$outdir/engine/kelvaran"
printf 'setoption name Hash value 32\n' >"$outdir/engine/Kelvaran.ini"
rm -f "$outdir/games.pgn" "$outdir/xboard.debug"

# ---------------------------------------------------------------- time control
# moves/minutes (the control repeats) or minutes+increment (the whole game).
if [[ $tc == */* ]]; then
    timing=(-mps "${tc%%/*}" -tc "${tc#*/}")
elif [[ $tc == *+* ]]; then
    timing=(-tc "${tc%%+*}" -inc "${tc#*+}")
else
    echo "time control $tc: use moves/minutes or minutes+increment" >&2
    exit 2
fi
ponderflag=-xponder
[ "$ponder" -eq 1 ] && ponderflag=-ponder

# ---------------------------------------------------------------- the match
# xboard keeps its settings in HOME: a private one leaves the user's alone and
# keeps the user's from changing the match.
echo "playing $games games Kelvaran - $opponent at $tc in $outdir" >&2
start=$(date +%s)
HOME=$outdir/home timeout $((games * 900)) xvfb-run -a -s "-screen 0 1024x768x24" xboard \
    -fcp ./kelvaran -fd "$outdir/engine" -fn Kelvaran \
    -scp "$opponent" -sd "$outdir" \
    -mg "$games" "${timing[@]}" "$ponderflag" \
    -matchPause 500 -testClaims true -autoCallFlag true -popupExitMessage false \
    -saveSettingsOnExit false -saveGameFile "$outdir/games.pgn" \
    -debug -nameOfDebugFile "$outdir/xboard.debug" >"$outdir/xboard.out" 2>&1 || true
echo "match took $(( $(date +%s) - start )) s" >&2
else
    outdir=$(realpath "$check_only")
fi

# ---------------------------------------------------------------- the checks
python3 - "$outdir/games.pgn" "$outdir/xboard.debug" "$games" <<'EOF'
import re, sys

pgn_file, log_file, wanted = sys.argv[1], sys.argv[2], int(sys.argv[3])
pgn = open(pgn_file, errors="replace").read() if __import__("os").path.exists(pgn_file) else ""
log = open(log_file, errors="replace").read().splitlines()

# Games of the PGN in order: who had White, the result, the termination comment.
partien = []
for block in re.split(r"\n(?=\[Event )", pgn.strip()):
    if not block.strip():
        continue
    weiss = re.search(r'\[White "([^"]*)"\]', block)
    ergebnis = re.search(r'\[Result "([^"]*)"\]', block)
    schluss = re.findall(r"\{([^}]*)\}\s*(?:1-0|0-1|1/2-1/2|\*)\s*$", block)
    partien.append({"weiss": weiss.group(1) if weiss else "?",
                    "ergebnis": ergebnis.group(1) if ergebnis else "?",
                    "grund": schluss[-1] if schluss else ""})

# Kelvaran's announcements, game by game. The GUI ends each game with "result"; an
# announcement can arrive just after it (the GUI saw the mate first), so it belongs
# to the game that is being played, or else to the one that has just ended.
fehler, illegal, gui = [], [], []
ansagen = [[] for _ in range(max(wanted, 1) + 1)]
im_spiel = False
for zeile in log:
    if "Illegal move" in zeile or "llegal move" in zeile:
        illegal.append(zeile)
    m = re.match(r"\d+ <first\s*: (.*)$", zeile)
    if m:
        text = m.group(1)
        if text.startswith("Error"):
            fehler.append(text)
        if re.match(r"(1-0|0-1|1/2-1/2) \{", text) or text == "resign":
            spiel = len(gui) + (1 if im_spiel else 0)
            while len(ansagen) <= spiel:
                ansagen.append([])
            ansagen[max(spiel, 1) - 1].append(text)
    if re.match(r"\d+ >first\s*: (usermove|go)\b", zeile):
        im_spiel = True
    m = re.match(r"\d+ >first\s*: result (\S+)", zeile)
    if m:
        gui.append(m.group(1))
        im_spiel = False

zeit = [p for p in partien if "on time" in p["grund"] or "forfeit" in p["grund"].lower()]
widerspruch = []
for i, (p, eigene) in enumerate(zip(partien, ansagen), 1):
    kelvaran_weiss = p["weiss"] == "Kelvaran"
    for a in eigene:
        if a == "resign":
            verloren = "0-1" if kelvaran_weiss else "1-0"
            if p["ergebnis"] != verloren:
                widerspruch.append(f"game {i}: Kelvaran resigned, the GUI has {p['ergebnis']}")
        elif a.split()[0] != p["ergebnis"]:
            widerspruch.append(f"game {i}: Kelvaran announced {a}, the GUI has {p['ergebnis']} {{{p['grund']}}}")

punkte = {"W": 0, "D": 0, "L": 0}
for p in partien:
    kelvaran_weiss = p["weiss"] == "Kelvaran"
    if p["ergebnis"] == "1/2-1/2":
        punkte["D"] += 1
    elif p["ergebnis"] in ("1-0", "0-1"):
        punkte["W" if (p["ergebnis"] == "1-0") == kelvaran_weiss else "L"] += 1

print(f"games: {len(partien)} of {wanted}; Kelvaran +{punkte['W']} ={punkte['D']} -{punkte['L']}")
for i, p in enumerate(partien, 1):
    eigene = ansagen[i - 1] if i <= len(ansagen) else []
    farbe = "White" if p["weiss"] == "Kelvaran" else "Black"
    print(f"  {i}: Kelvaran {farbe:5} {p['ergebnis']:7} {{{p['grund']}}}"
          + (f"  announced: {'; '.join(eigene)}" if eigene else ""))
print(f"announcements by Kelvaran: {sum(len(a) for a in ansagen)}, disagreeing with the GUI: {len(widerspruch)}")
print(f"illegal-move lines: {len(illegal)}; error lines from Kelvaran: {len(fehler)}; losses on time: {len(zeit)}")
for z in illegal[:5] + fehler[:5] + widerspruch:
    print("  " + z)
for p in zeit:
    print(f"  on time: {p['ergebnis']} {{{p['grund']}}}")
gut = len(partien) == wanted and len(gui) >= len(partien) and not (illegal or fehler or widerspruch or zeit)
print("OK" if gut else "FAILED")
sys.exit(0 if gut else 1)
EOF
