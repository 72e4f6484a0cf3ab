// The bitbase tools of the command line and the UCI extension command
// "bitbase probe fen FEN".
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "board/stellung.h"

class Optionen_t;

// "--CreateBitbase file", "--CreateBitbaseParallel file" (8 threads),
// "--CreateBitbase Threads=N file", and the rules check "--CheckBitbase file" /
// "--CheckBitbase Threads=N file". file is a signature name, optionally after a
// directory ("dir/KDK"); the files go to and come from that directory.
// Returns -1 when no bitbase switch applies, else the exit status (0).
int BitbaseWerkzeug(int argc, char** argv, std::ostream& aus);

// The men of a position as the probe takes them: king first, then queens,
// rooks, bishops, knights and pawns; zero-terminated type lists.
struct BitbaseSteine_t {
    int weissTypen[17], schwarzTypen[17];
    int weissFelder[17], schwarzFelder[17];
    int anzahl;  // men of both sides
};
void BitbaseSteineVon(const Stellung_t& st, BitbaseSteine_t& steine);

// "bitbase probe fen FEN": one line "info string bitbase NAME index I bit B
// result R" (R from White's view: 1, 0, -1 or "unknown") through a cache sized
// and pathed by the options "BitbaseCache" and "BitbasePath". Bad input goes
// to `fehler` as the interpreter reports it for "position".
void BitbaseBefehl(const char* rest, const Optionen_t& optionen, const std::function<void(const std::string&)>& zeile,
                   const std::function<void(const char*, const char*)>& fehler);
