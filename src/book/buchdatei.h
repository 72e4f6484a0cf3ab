// The book file: a 48-byte header, then 24-byte records sorted by position key
// and move, so a lookup is a binary search on the file itself. All numbers are
// little-endian.
//
// Header:  0  8  "KelvBuch"
//          8  2  version (1)
//         10  2  flags: 1 locked, 2 written for play (pruned by "write")
//         12  2  record size (24)
//         14  2  header size (48)
//         16  8  key of the standard start position: books made with other
//                position keys are refused
//         24  8  number of records
//         32  8  checksum of the records (FNV-1a, 64 bits)
//         40  8  reserved (0)
// Record:  0  8  position key
//          8  2  move word
//         10  6  weight
//         16  4  games
//         20  4  points (half points of the side that played the move)
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "book/buch.h"

namespace Buchdatei {

constexpr char Kennung[8] = {'K', 'e', 'l', 'v', 'B', 'u', 'c', 'h'};
constexpr uint16_t Version = 1;
constexpr size_t KopfGroesse = 48;
constexpr size_t SatzGroesse = 24;
enum : uint16_t { FlagGesperrt = 1, FlagAuswahl = 2 };

enum class Status {
    Ok,
    NichtDa,        // cannot be opened
    Fremd,          // no book of ours (too short for the header, or another signature)
    Fassung,        // a later version or another layout
    Schluessel,     // made with other position keys
    Abgeschnitten,  // shorter or longer than its header says
    Pruefsumme,     // records damaged
    Unsortiert,     // records out of order
    Schreibfehler,
};

const char* StatusText(Status s);

// Key of the standard start position: the signature of our key scheme.
uint64_t Schluesselsignatur();

void KodiereSatz(const Buchzug_t& z, unsigned char* p);
Buchzug_t DekodiereSatz(const unsigned char* p);

// Writes the records (in file order) to a scratch file and renames it over the
// target, so an interrupted write never leaves half a book.
Status Schreiben(const std::string& datei, const std::vector<Buchzug_t>& saetze, uint16_t flags);

// Reads and checks the whole file.
Status Lesen(const std::string& datei, std::vector<Buchzug_t>& saetze, uint16_t& flags);

// The moves of one position, by binary search in the file; the header and the
// length are checked, the records only as far as they are read.
Status Suchen(const std::string& datei, uint64_t schluessel, std::vector<Buchzug_t>& zuege);

// True when the file begins with our signature.
bool IstBuchdatei(const std::string& datei);

}  // namespace Buchdatei
