// The "book" command family: maintenance of the one in-memory book that the
// interpreter owns, and the PGN-based tools. Subcommands are found by searching
// the text after "book"; the first found wins:
//   delete | lock | unlock | add <pgn> [value N] [CalcELO] | readmem <book> |
//   writemem <book> | write <book> [threshold T] [width W] (also writeEPD;
//   write960 writes nothing) | entropy <pgn> | positions <pgn> out <epd> |
//   makepos <epd> out <epd> [nodes N] [hash H] | addpos <epd> [value N]
// Apart from "entropy" (and the PGN reader's error lines) nothing is answered.
#pragma once

#include <memory>
#include <ostream>

#include "book/buch.h"
#include "book/pgnleser.h"

// `antwort` takes the protocol lines; `bericht`, when given, a summary line
// per command (the command-line tool prints them, the UCI interpreter does not).
void BuchBefehl(std::unique_ptr<Buch_t>& buch, const char* rest, const Meldung_t& antwort,
                const Meldung_t& bericht = nullptr);

// "--book": each further argument is one book command (the text after "book"),
// run in order on one book, with a summary line each; besides them
// "probe <book file> <FEN>" lists a book's moves for a position (ours or
// Polyglot). Returns the exit status.
int BuchWerkzeug(int argc, char** argv, std::ostream& aus);
