// The static evaluation: material, pawn structure, the network's value and tempo,
// each a packed pair of middlegame and endgame values, blended by the game phase,
// scaled, turned to the side to move's view and quantised onto a coarse grid.
#pragma once

#include <cstdint>

#include "board/stellung.h"

// Packed score: middlegame in the upper 16 bits, signed endgame in the lower 16.
// Packed scores add as plain integers.
constexpr int32_t S(int mg, int eg) { return static_cast<int32_t>(static_cast<uint32_t>(mg) << 16) + eg; }
inline int MgWert(int32_t s) { return (s + 32768) >> 16; }
inline int EgWert(int32_t s) { return static_cast<int16_t>(static_cast<uint16_t>(s & 0xffff)); }

// Material and phase of one material configuration (looked up by the material key).
// 24 bytes: the cache holds a power of two of them.
struct Materialeintrag_t {
    uint64_t schluessel;      // material key, salted so that a zeroed slot matches nothing
    int32_t material;         // packed material score (White's view)
    int32_t wert;             // plain score added after blending (White's view)
    int16_t mgGewicht;        // phase weights in 256ths, summing to 256
    int16_t egGewicht;
    uint8_t skalierung[2];    // in 64ths, applied when that side is ahead
};

// Pawn structure of one pawn configuration (looked up by the pawn key).
struct Bauerneintrag_t {
    uint64_t schluessel;  // pawn key, salted: positions without pawns have key 0
    int32_t wert;         // packed pawn-structure score (White's view)
};

constexpr int MaterialcacheBytes = 0x18000;
constexpr int BauerncacheBytes = 0x20000;

struct Materialcache_t {
    static constexpr int Eintraege = MaterialcacheBytes / sizeof(Materialeintrag_t);
    static_assert((Eintraege & (Eintraege - 1)) == 0, "indexed by masking");
    Materialeintrag_t e[Eintraege];
};
struct Bauerncache_t {
    static constexpr int Eintraege = BauerncacheBytes / sizeof(Bauerneintrag_t);
    static_assert((Eintraege & (Eintraege - 1)) == 0, "indexed by masking");
    Bauerneintrag_t e[Eintraege];
};

// Score of the position for the side to move, in internal units (a pawn is
// about 1000); never a mate score. `netzWert` is the network's packed value for the
// side to move (NetzWert), which stands for every term but material and pawn structure.
int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material,
            int32_t netzWert);
// The same with the built-in network's value computed from scratch (tools and tests).
int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material);

// What frames the network's value, White's view, for its trainer: material, pawn
// structure and tempo as one packed score, the phase weights in 256ths, the plain
// score added after blending, and the scale in 64ths when White or Black is ahead.
struct Bewertungsrahmen_t {
    int32_t summe;
    int mgGewicht, egGewicht;
    int wert;
    int faktor[2];
};
Bewertungsrahmen_t BewertungsrahmenVon(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern,
                                       Materialcache_t& material);

// The last step of the evaluation, also used by the endgame rules' callers:
// r >= 2 -> (r & ~15) + 8, r < -1 -> ((r - 1) | 15) - 7, -1..1 unchanged.
inline int Quantisiere(int r) {
    if (r >= 2) return (r & ~15) + 8;
    if (r < -1) return ((r - 1) | 15) - 7;
    return r;
}

static_assert(sizeof(Materialeintrag_t) == 24 && sizeof(Bauerneintrag_t) == 16, "cache entry sizes");

// Pieces of the evaluation shared by its source files.
namespace Bewertungshilfe {

constexpr Bitboard LinieA = 0x0101010101010101ULL;
constexpr Bitboard LinienMaske(unsigned linie) { return LinieA << linie; }
constexpr Bitboard ReihenMaske(unsigned reihe) { return Bitboard{0xff} << (8 * (8 - reihe)); }
constexpr Bitboard Nachbarlinien(unsigned linie) {
    return ((LinienMaske(linie) << 1) & OhneALinie) | ((LinienMaske(linie) >> 1) & OhneHLinie);
}
// Rank 1..8 as seen from the side: its pawns start on 2 and promote on 8.
constexpr unsigned RelativeReihe(unsigned seite, Feld f) { return seite == Weiss ? ReiheVon(f) : 9 - ReiheVon(f); }
constexpr Feld Vor(unsigned seite, Feld f) { return seite == Weiss ? f - 8 : f + 8; }
// Every square strictly ahead of the set, towards the side's promotion rank.
constexpr Bitboard Vorne(unsigned seite, Bitboard b) {
    if (seite == Weiss) {
        b >>= 8;
        b |= b >> 8;
        b |= b >> 16;
        return b | b >> 32;
    }
    b <<= 8;
    b |= b << 8;
    b |= b << 16;
    return b | b << 32;
}

// Per side and square, built by the compiler.
struct Bauernmasken_t {
    Bitboard vorne[2][64];      // the file ahead
    Bitboard freiMaske[2][64];  // own and neighbouring files ahead: no enemy pawn there means passed
    Bitboard begleiter[2][64];  // neighbouring files, level or behind: pawns that could still support
};
constexpr Bauernmasken_t BaueBauernmasken() {
    Bauernmasken_t m{};
    for (unsigned s = 0; s < 2; ++s) {
        for (Feld f = 0; f < 64; ++f) {
            const Bitboard nachbarn = Nachbarlinien(LinieVon(f));
            m.vorne[s][f] = Vorne(s, Bit(f));
            m.freiMaske[s][f] = Vorne(s, Bit(f) | (nachbarn & ReihenMaske(ReiheVon(f))));
            m.begleiter[s][f] = nachbarn & ~Vorne(s, ReihenMaske(ReiheVon(f)));
        }
    }
    return m;
}
inline constexpr Bauernmasken_t Bauernmasken = BaueBauernmasken();

}  // namespace Bewertungshilfe

// Pawn structure of the position into `e`; the caller sets the key.
void BerechneBauern(const Stellung_t& st, Bauerneintrag_t& e);

