// The search tools of the command line: the fixed-depth benchmark, the
// test-position runner and the best-move writer.
#pragma once

#include <ostream>

// "bench": a fixed list of positions to a fixed depth on one thread; the last
// line is "N nodes M nps". The node count is the signature of the search.
int Bench(std::ostream& aus);

// "--Testpos file": each EPD position with its "bm" moves is searched; one line
// "<position> bm <move>" each (" (not found)" when the move is not among them),
// then the number solved. KELVARAN_TESTZEIT sets the milliseconds per position.
int Testpos(const char* datei, std::ostream& aus);

// "--CSVN in out": every position of `in` is written to `out` with the engine's
// best move as "<position> bm <move>".
int Csvn(const char* eingabe, const char* ausgabe, std::ostream& aus);
