#!/usr/bin/env python3
"""Does Kelvaran convert won endings within the fifty-move rule?

usage: tools/endspiel-check.py ENGINE EPD [MS] [UCI-OPTION=VALUE ...]

Every position of EPD (FEN, strong side first to move or not) is played out:
Kelvaran plays the side to move of the FEN, Debian's Stockfish (/usr/games/stockfish,
installed with apt-get when missing) defends with the same time per move. The
referee is Stockfish's own "d" and "go depth 1": the game is a win when the
defender is mated before the fifty-move count reaches 100 plies, a draw at the
fifty-move rule, a threefold repetition or stalemate. Prints one line per position
and the total, e.g.

  tools/endspiel-check.py build/kelvaran tools/data/endspiele.epd 200 \\
      BitbaseCache=16 BitbasePath=/tmp/kbb4
"""
import os
import shutil
import subprocess
import sys

STOCKFISH = "/usr/games/stockfish"


class Uci:
    def __init__(self, cmd, options):
        self.p = subprocess.Popen([cmd], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.send("uci")
        self.until("uciok")
        for name, value in options:
            self.send(f"setoption name {name} value {value}")
        self.send("isready")
        self.until("readyok")

    def send(self, text):
        self.p.stdin.write(text + "\n")
        self.p.stdin.flush()

    def until(self, prefix):
        lines = []
        while True:
            line = self.p.stdout.readline()
            if not line:
                raise RuntimeError("engine ended")
            line = line.strip()
            lines.append(line)
            if line.startswith(prefix):
                return lines

    def move(self, fen, moves, ms):
        self.send(f"position fen {fen} moves {' '.join(moves)}" if moves else f"position fen {fen}")
        self.send(f"go movetime {ms}")
        return self.until("bestmove")[-1].split()[1]

    def quit(self):
        self.send("quit")
        self.p.wait(timeout=5)


def state(ref, fen, moves):
    """FEN after the moves, whether the side to move is in check, and its legal-move status."""
    ref.send(f"position fen {fen} moves {' '.join(moves)}" if moves else f"position fen {fen}")
    ref.send("d")
    lines = ref.until("Checkers:")
    now = next(l for l in lines if l.startswith("Fen:"))[5:].strip()
    check = lines[-1].split(":", 1)[1].strip() != ""
    ref.send("go depth 1")
    none = ref.until("bestmove")[-1].split()[1] == "(none)"
    return now, check, none


def play(engine, ref, defender, fen, ms):
    moves, seen = [], {}
    strong = fen.split()[1]
    for _ in range(400):
        now, check, none = state(ref, fen, moves)
        side = now.split()[1]
        if none:
            if check and side != strong:
                return "win", len(moves)
            return "stalemate", len(moves)
        if int(now.split()[4]) >= 100:
            return "fifty", len(moves)
        key = " ".join(now.split()[:4])
        seen[key] = seen.get(key, 0) + 1
        if seen[key] >= 3:
            return "repetition", len(moves)
        who = engine if side == strong else defender
        moves.append(who.move(fen, moves, ms))
    return "long", len(moves)


def main():
    if len(sys.argv) < 3:
        print(__doc__)
        sys.exit(2)
    if not os.path.exists(STOCKFISH):
        subprocess.run(["apt-get", "install", "-y", "-qq", "stockfish"], check=True)
    engine_path, epd = sys.argv[1], sys.argv[2]
    ms = int(sys.argv[3]) if len(sys.argv) > 3 else 200
    options = [tuple(a.split("=", 1)) for a in sys.argv[4:]]
    fens = [l.split(";")[0].strip() for l in open(epd) if l.strip() and not l.startswith("#")]
    fens = [" ".join(f.split()[:4]) + " 0 1" for f in fens]
    engine = Uci(engine_path, options)
    defender = Uci(shutil.which("stockfish") or STOCKFISH, [("Hash", 16)])
    ref = Uci(shutil.which("stockfish") or STOCKFISH, [])
    wins = 0
    for fen in fens:
        engine.send("ucinewgame")
        result, plies = play(engine, ref, defender, fen, ms)
        wins += result == "win"
        print(f"{fen}: {result} after {plies} plies", flush=True)
    print(f"won {wins} of {len(fens)} within the fifty-move rule")
    for e in (engine, defender, ref):
        e.quit()


if __name__ == "__main__":
    main()
