// The static evaluation: a fixed sequence of terms, each a packed pair of
// middlegame and endgame values, blended by the game phase, scaled, turned to
// the side to move's view and quantised onto a coarse grid.
#pragma once

#include <cstdint>

#include "board/stellung.h"

// Packed score: middlegame in the upper 16 bits, signed endgame in the lower 16.
// Packed scores add as plain integers.
constexpr int32_t S(int mg, int eg) { return static_cast<int32_t>(static_cast<uint32_t>(mg) << 16) + eg; }
inline int MgWert(int32_t s) { return (s + 32768) >> 16; }
inline int EgWert(int32_t s) { return static_cast<int16_t>(static_cast<uint16_t>(s & 0xffff)); }

// Material and phase of one material configuration (looked up by the material key).
struct Materialeintrag_t {
    uint64_t schluessel;
    int16_t passerFaktor[2];  // read by the passed-pawn term
    int16_t egGewicht;        // phase weights in 256ths
    int16_t mgGewicht;
    int32_t wert;             // plain score added after blending (White's view)
    int32_t material;         // packed material score (White's view)
};

// Pawn structure of one pawn configuration (looked up by the pawn key).
struct Bauerneintrag_t {
    uint64_t schluessel;
    int32_t wert;              // packed pawn-structure score (White's view)
    Bitboard freibauern[2];    // passed pawns of each side, for the passed-pawn term
    Bitboard angriffe[2];      // squares the pawns of each side attack
    uint8_t offeneLinien[2];   // per side: files without a pawn of that side
};

constexpr int MaterialcacheBytes = 0x18000;
constexpr int BauerncacheBytes = 0x20000;

struct Materialcache_t {
    static constexpr int Eintraege = MaterialcacheBytes / sizeof(Materialeintrag_t);
    Materialeintrag_t e[Eintraege];
};
struct Bauerncache_t {
    static constexpr int Eintraege = BauerncacheBytes / sizeof(Bauerneintrag_t);
    Bauerneintrag_t e[Eintraege];
};

// Score of the position for the side to move, in internal units (a pawn is
// about 1000); never a mate score. `daten` must hold both attack records.
int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material);

// The last step of the evaluation, also used by the endgame rules' callers:
// r >= 2 -> (r & ~15) + 8, r < -1 -> ((r - 1) | 15) - 7, -1..1 unchanged.
inline int Quantisiere(int r) {
    if (r >= 2) return (r & ~15) + 8;
    if (r < -1) return ((r - 1) | 15) - 7;
    return r;
}
