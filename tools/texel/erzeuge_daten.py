#!/usr/bin/env python3
"""Generate quiet, Stockfish-labelled positions for the Texel tuner.

Plays short Stockfish self-play games from opening books, with a few random
moves for variety, and writes "fen;score" lines (score in centipawns, side to
move view) for positions that are not in check and whose best move is quiet.

usage: erzeuge_daten.py OUT SECONDS [DEPTH] [SEED] [KEEP]

KEEP is the share of eligible positions written (default 0.35); neighbouring
positions of a game are alike, so a low share spreads the data over more games.
"""
import os
import random
import subprocess
import sys
import time

# The opening books live in ../shared/openings beside the repository.
_OEFFNUNGEN = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "shared", "openings")
BUECHER = [os.path.join(_OEFFNUNGEN, "UHO_4060_v2_4000.epd"),
           os.path.join(_OEFFNUNGEN, "noob_3moves_4000.epd")]


class Orakel:
    def __init__(self):
        self.p = subprocess.Popen(["/usr/games/stockfish"], stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, text=True, bufsize=1)
        self.send("uci"); self.warte("uciok")
        self.send("setoption name Threads value 1")
        self.send("setoption name Hash value 16")
        self.send("isready"); self.warte("readyok")

    def send(self, s):
        self.p.stdin.write(s + "\n")

    def warte(self, token):
        zeilen = []
        while True:
            z = self.p.stdout.readline()
            if not z:
                raise RuntimeError("stockfish died")
            z = z.strip()
            zeilen.append(z)
            if z.startswith(token):
                return zeilen

    def info(self, pos):
        # "d" gives the FEN and the checkers; "go perft 1" the legal moves.
        self.send(pos); self.send("d")
        fen, schach = None, ""
        for z in self.warte("Checkers:"):
            if z.startswith("Fen:"):
                fen = z[5:].strip()
            if z.startswith("Checkers:"):
                schach = z[9:].strip()
        self.send("go perft 1")
        zuege = []
        for z in self.warte("Nodes searched"):
            if ":" in z and not z.startswith("Nodes"):
                zuege.append(z.split(":")[0].strip())
        return fen, schach != "", zuege

    def suche(self, tiefe):
        self.send(f"go depth {tiefe}")
        wert, matt, best = None, False, None
        for z in self.warte("bestmove"):
            t = z.split()
            if t and t[0] == "info" and "score" in t and "pv" in t:
                i = t.index("score")
                matt = t[i + 1] == "mate"
                wert = int(t[i + 2])
            if t and t[0] == "bestmove":
                best = t[1]
        return wert, matt, best


def feld_belegt(fen, feld):
    brett = fen.split()[0].split("/")
    reihe = brett[8 - int(feld[1])]
    spalte = ord(feld[0]) - ord("a")
    x = 0
    for c in reihe:
        if c.isdigit():
            x += int(c)
        else:
            if x == spalte:
                return True
            x += 1
    return False


def ist_ruhig(fen, zug):
    if len(zug) == 5:
        return False
    ziel = zug[2:4]
    if feld_belegt(fen, ziel):
        return False
    ep = fen.split()[3]
    # En-passant captures land on the e.p. square with a pawn.
    return not (ziel == ep and feld_belegt(fen, zug[0:2]))


def main():
    aus, sekunden = sys.argv[1], float(sys.argv[2])
    tiefe = int(sys.argv[3]) if len(sys.argv) > 3 else 9
    rng = random.Random(int(sys.argv[4]) if len(sys.argv) > 4 else 1)
    behalten = float(sys.argv[5]) if len(sys.argv) > 5 else 0.35
    eroeffnungen = []
    for b in BUECHER:
        with open(b) as f:
            eroeffnungen += [" ".join(z.split()[:4]) + " 0 1" for z in f if z.strip()]
    sf = Orakel()
    ende = time.time() + sekunden
    gesehen = set()
    n = partien = 0
    with open(aus, "a") as out:
        while time.time() < ende:
            start = rng.choice(eroeffnungen)
            zuege = []
            partien += 1
            zufall_frueh = rng.randint(0, 4)
            for ply in range(260):
                pos = f"position fen {start}" + (" moves " + " ".join(zuege) if zuege else "")
                fen, schach, legal = sf.info(pos)
                if not legal:
                    break
                # A few random moves early, rare ones later: variety without chaos.
                if ply < zufall_frueh or rng.random() < 0.04:
                    zuege.append(rng.choice(legal))
                    continue
                wert, matt, best = sf.suche(tiefe)
                if matt or wert is None or abs(wert) > 2500 or best not in legal:
                    break
                schluessel = " ".join(fen.split()[:4])
                if (not schach and abs(wert) <= 2000 and ist_ruhig(fen, best)
                        and schluessel not in gesehen and rng.random() < behalten):
                    gesehen.add(schluessel)
                    out.write(f"{fen};{wert}\n")
                    n += 1
                zuege.append(best)
            out.flush()
    sf.send("quit")
    print(f"{n} positions from {partien} games", file=sys.stderr)


if __name__ == "__main__":
    main()
