// Books in the widely used Polyglot format: 16-byte big-endian entries (key,
// move, weight, learn data) sorted by a key of the format's own hashing scheme.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "board/zug.h"

extern const uint64_t PolyglotZufall[781];

// The Polyglot key of a position: pieces, castling rights, the en-passant file
// (only when a pawn of the side to move stands beside the pawn that just
// advanced two squares) and White to move.
uint64_t PolyglotSchluessel(const Stellung_t& st);

struct PolyglotEintrag_t {
    uint64_t schluessel = 0;
    uint16_t zug = 0;
    uint16_t gewicht = 0;
    uint32_t lernen = 0;
};

// The legal move that a Polyglot move word stands for (castling is written as
// the king taking its own rook); 0 when there is none.
Zug_t PolyglotZugAus(Stellung_t& st, const Stellungsdaten_t& daten, uint16_t pgZug);
// Our move as a Polyglot move word.
uint16_t PolyglotZugWort(const Stellung_t& st, Zug_t zug);

// The entries of one key, by binary search in the file; false when the file
// cannot be read or its length is no multiple of 16.
bool PolyglotSuchen(const std::string& datei, uint64_t schluessel, std::vector<PolyglotEintrag_t>& eintraege);
