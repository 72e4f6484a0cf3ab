#!/usr/bin/env python3
"""How closely the engine keeps a fixed move time, and how fast it obeys "stop".

Usage: tools/movetime-check.py [engine] [runs]

Sends "go movetime 1000" from several positions and measures, on the wall clock,
from the moment the line is written until "bestmove" arrives; then "go infinite"
followed by "stop" after 500 ms. Prints each figure and the medians.
"""
import statistics
import subprocess
import sys
import time

ENGINE = sys.argv[1] if len(sys.argv) > 1 else "build/kelvaran"
RUNS = int(sys.argv[2]) if len(sys.argv) > 2 else 5
POSITIONS = [
    "startpos",
    "fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "fen 8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
]


def wait_for(proc, prefix):
    while True:
        line = proc.stdout.readline()
        if not line:
            raise RuntimeError("engine ended")
        if line.startswith(prefix):
            return line


def main():
    proc = subprocess.Popen([ENGINE], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
    proc.stdin.write("uci\nsetoption name Hash value 64\nisready\n")
    proc.stdin.flush()
    wait_for(proc, "readyok")
    movetime, stop = [], []
    for run in range(RUNS):
        for pos in POSITIONS:
            proc.stdin.write(f"ucinewgame\nposition {pos}\nisready\n")
            proc.stdin.flush()
            wait_for(proc, "readyok")
            start = time.monotonic()
            proc.stdin.write("go movetime 1000\n")
            proc.stdin.flush()
            wait_for(proc, "bestmove")
            movetime.append((time.monotonic() - start) * 1000)

            proc.stdin.write("go infinite\n")
            proc.stdin.flush()
            time.sleep(0.5)
            start = time.monotonic()
            proc.stdin.write("stop\n")
            proc.stdin.flush()
            wait_for(proc, "bestmove")
            stop.append((time.monotonic() - start) * 1000)
    proc.stdin.write("quit\n")
    proc.stdin.flush()
    proc.wait()
    print("go movetime 1000, ms until bestmove: " + " ".join(f"{x:.1f}" for x in movetime))
    print(f"  median {statistics.median(movetime):.1f}  min {min(movetime):.1f}  max {max(movetime):.1f}")
    print("stop, ms until bestmove: " + " ".join(f"{x:.1f}" for x in stop))
    print(f"  median {statistics.median(stop):.1f}  max {max(stop):.1f}")


if __name__ == "__main__":
    main()
