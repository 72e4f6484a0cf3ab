#!/usr/bin/env python3
"""Stress the parallel search through the UCI protocol.

usage: tools/smp-stress.py ENGINE [ROUNDS]

Each round sets 2 to 8 threads, a position, starts a search (infinite, ponder,
movetime or clock) and after a random few milliseconds sends "stop", "ponderhit"
or "quit". Every search must answer a legal-looking "bestmove" within two
seconds of its stop, and a "quit" must end the process within two seconds.
Prints the number of rounds, answers and restarts; exits 1 on the first fault.
"""
import random
import subprocess
import sys
import threading
import time
import queue

FENS = [
    "startpos",
    "fen r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N2N2/PP2BPPP/R2QKB1R w KQ - 0 9",
    "fen 8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "fen 6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1",
]


class Engine:
    def __init__(self, path):
        self.p = subprocess.Popen([path], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.lines = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()
        self.send("uci")
        self.expect("uciok", 5)

    def _read(self):
        for line in self.p.stdout:
            self.lines.put(line.strip())
        self.lines.put(None)

    def send(self, text):
        self.p.stdin.write(text + "\n")
        self.p.stdin.flush()

    def expect(self, prefix, timeout):
        end = time.time() + timeout
        while True:
            left = end - time.time()
            if left <= 0:
                return None
            try:
                line = self.lines.get(timeout=left)
            except queue.Empty:
                return None
            if line is None:
                return None
            if line.startswith(prefix):
                return line


def fail(msg):
    print("FAULT:", msg)
    sys.exit(1)


def main():
    engine_path = sys.argv[1]
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    rnd = random.Random(2017)
    e = Engine(engine_path)
    answers = restarts = 0
    for i in range(rounds):
        e.send(f"setoption name NumberOfProcessors value {rnd.randint(2, 8)}")
        e.send("position " + rnd.choice(FENS))
        kind = rnd.choice(["infinite", "ponder", "movetime", "clock"])
        if kind == "infinite":
            e.send("go infinite")
        elif kind == "ponder":
            e.send("go ponder wtime 2000 btime 2000")
        elif kind == "movetime":
            e.send(f"go movetime {rnd.randint(1, 30)}")
        else:
            e.send(f"go wtime {rnd.randint(10, 500)} btime {rnd.randint(10, 500)} winc 10 binc 10")
        time.sleep(rnd.random() * 0.02)
        action = rnd.choice(["stop", "stop", "ponderhit", "quit"])
        if action == "quit" and rnd.random() < 0.5:
            action = "stop"
        if action == "quit":
            e.send("quit")
            try:
                e.p.wait(timeout=2)
            except subprocess.TimeoutExpired:
                fail(f"round {i}: no exit after quit ({kind})")
            if e.p.returncode != 0:
                fail(f"round {i}: exit code {e.p.returncode} after quit")
            e = Engine(engine_path)
            restarts += 1
            continue
        if action == "ponderhit":
            e.send("ponderhit")
            time.sleep(rnd.random() * 0.01)
        e.send("stop")
        line = e.expect("bestmove", 2)
        if line is None:
            fail(f"round {i}: no bestmove after {action} ({kind})")
        move = line.split()[1]
        if move == "0000" or not (4 <= len(move) <= 5):
            fail(f"round {i}: bad answer '{line}'")
        answers += 1
        e.send("isready")
        if e.expect("readyok", 2) is None:
            fail(f"round {i}: no readyok")
    e.send("quit")
    e.p.wait(timeout=5)
    print(f"rounds {rounds} bestmoves {answers} restarts {restarts}: no hang, no crash")


if __name__ == "__main__":
    main()
