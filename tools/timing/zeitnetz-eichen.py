#!/usr/bin/env python3
"""Fits the working point of the time network's inputs to a time log.

The built-in network's weights are fixed. Fed with plainly scaled figures they
saturate every hidden node and the network answers about 3.5 whatever the search
did. This script finds inputs under which the network follows a rule instead:

    the bound of weiterIterieren, as a share of the target, (x + 17) / 30,
    should be 1.0 + 0.6 * unrest + score drop (pawns, at most 0.5),
    capped at 1.62 (the iteration limit of the sudden-death curve),

where unrest is the best-move changes halved at every later iteration. Inputs 0
(best move changed just now), 1 (unrest) and 3 (tanh of the score change over
1000) get a scale and an offset; every other input is a constant offset. The result is what ZeitEingaben in
src/timing/zeitlog.cpp uses.

    tools/timing/zeitnetz-eichen.py LOG

LOG is a time log written with the option "TimeLogfile" during games, one search
after the other (a single engine process per file). Takes a few minutes.
"""
import math
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CAP = 1.62


def weights():
    """The 85 connection weights from the description compiled into the engine."""
    text = (ROOT / "src/timing/zeitnetz.cpp").read_text()
    body = text[text.index("ZeitnetzBeschreibung[] ="):text.index(";", text.index("ZeitnetzBeschreibung[] ="))]
    numbers = " ".join(re.findall(r'"([^"]*)"', body)).replace("\\n", " ").split()
    reals = [float(n) for n in numbers if "." in n]
    w = [[reals[i * 5 + j] for j in range(5)] for i in range(16)]
    return w, reals[80:85]


def read_log(path):
    rows, last_start, unrest, prev = [], None, 0.0, None
    for line in open(path):
        f = line.split()
        if len(f) != 25 or f[0] != "Z":
            continue
        start, k, score, changed = int(f[1]), int(f[2]), int(f[6]), int(f[8])
        if start != last_start or k == 0:
            unrest, prev = 0.0, None
        last_start = start
        unrest = unrest / 2 + changed
        drop = 0.0 if prev is None else max(0.0, (prev - score) / 1000)
        change = 0.0 if prev is None else math.tanh((score - prev) / 1000)
        prev = score
        if k >= 5:  # earlier iterations end far below any bound
            target = min(1.0 + 0.6 * unrest + min(drop, 0.5), CAP)
            rows.append((changed, min(unrest, 2.0), change, target))
    return rows


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    w, u = weights()
    rows = read_log(sys.argv[1])
    if not rows:
        sys.exit("no usable lines in " + sys.argv[1])

    def loss(scale, offset):
        bias = [w[15][j] + sum(w[i][j] * offset[i] for i in range(15)) for j in range(5)]
        total = 0.0
        for changed, unrest, change, target in rows:
            out = 0.0
            for j in range(5):
                a = bias[j] + w[0][j] * scale[0] * changed + w[1][j] * scale[1] * unrest + w[3][j] * scale[3] * change
                out += u[j] * math.tanh(a)
            x = 100 * max(out, 0.02)
            total += (target - min((x + 17) / 30, CAP)) ** 2
        return total / len(rows)

    # Coordinate descent from the plain inputs (scale 1, offset 0), taking each
    # improvement at once and halving the step when a round brings none.
    scale, offset = [1.0] * 15, [0.0] * 15
    best = loss(scale, offset)
    step = 1.0
    while True:
        improved = False
        for i in range(15):
            for values in ((scale, offset) if i in (0, 1, 3) else (offset,)):
                for delta in (step, -step, 4 * step, -4 * step):
                    old = values[i]
                    values[i] = old + delta
                    value = loss(scale, offset)
                    if value < best:
                        best, improved = value, True
                    else:
                        values[i] = old
        print("step %.4f  mean squared error %.5f" % (step, best), file=sys.stderr, flush=True)
        if not improved:
            step /= 2
            if step < 0.03:
                break
    print("working point:", ", ".join("%.3f" % v for v in offset))
    print("scales of inputs 0, 1, 3: %.3f %.3f %.3f   error %.5f" % (scale[0], scale[1], scale[3], best))


if __name__ == "__main__":
    main()
