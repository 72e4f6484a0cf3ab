// The training position record of the network tools: 32 bytes, written and read
// as it lies in memory on a little-endian machine.
#pragma once

#include <cstdint>

#include "board/stellung.h"

struct Datensatz_t {
    uint64_t belegt;        // occupied squares, bit = square (a8 = 0)
    uint8_t figuren[16];    // the occupied squares' men in rising square order, a nibble each,
                            // low nibble first: side << 3 | type
    int16_t wert;           // the search's score, side to move's view, internal units
    int8_t ergebnis;        // the game's result, side to move's view: 1 won, 0 drawn, -1 lost
    uint8_t amZug;          // 0 White, 1 Black
    uint16_t ply;           // plies played since the opening position
    uint16_t reserviert;    // 0
};
static_assert(sizeof(Datensatz_t) == 32, "the file format is 32 bytes a record");

// Scores are stored within this bound; a mate score is never stored.
constexpr int DatensatzWertGrenze = 32000;

// The record of a position with at most 32 men.
Datensatz_t Packe(const Stellung_t& st, int wert, int ergebnis, int ply);

// The men and the side to move of a record (no castling, no en passant), with the
// position's data; false for a record that is not a position (bad men, not one king each).
bool Entpacke(const Datensatz_t& d, Stellung_t& st, Stellungsdaten_t& daten);

// Calls f(side, type, square) for every man of the record.
template <typename F>
inline void JederMann(const Datensatz_t& d, F&& f) {
    Bitboard b = d.belegt;
    for (unsigned i = 0; b; ++i) {
        const Feld feld = NimmFeld(b);
        const unsigned nibble = (d.figuren[i >> 1] >> (4 * (i & 1))) & 15;
        f(nibble >> 3, nibble & 7, feld);
    }
}
