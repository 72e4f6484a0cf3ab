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
// 24 bytes: the cache holds a power of two of them.
struct Materialeintrag_t {
    uint64_t schluessel;      // material key, salted so that a zeroed slot matches nothing
    int32_t material;         // packed material score (White's view)
    int32_t wert;             // plain score added after blending (White's view)
    int16_t mgGewicht;        // phase weights in 256ths, summing to 256
    int16_t egGewicht;
    int8_t passerFaktor[2];   // read by the passed-pawn term: the opponent's pieces in phase units
    uint8_t skalierung[2];    // in 64ths, applied when that side is ahead
};

// Pawn structure of one pawn configuration (looked up by the pawn key). One cache
// line, so a probe touches one line and the cache holds a power of two.
struct alignas(64) Bauerneintrag_t {
    uint64_t schluessel;           // pawn key, salted: positions without pawns have key 0
    Bitboard freibauern[2];        // passed pawns of each side, for the passed-pawn term
    Bitboard spanne[2];            // squares the pawns of each side attack now or after advancing
    int32_t wert;                  // packed pawn-structure score (White's view)
    uint8_t offeneLinien[2];       // per side: files without a pawn of that side, bit = file
    uint16_t schildSchluessel[2];  // king square | castling rights << 6 the shelter belongs to
    int16_t schild[2];             // king shelter, mg, the owner's view
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
// about 1000); never a mate score. `daten` must hold both attack records.
int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material);

// The last step of the evaluation, also used by the endgame rules' callers:
// r >= 2 -> (r & ~15) + 8, r < -1 -> ((r - 1) | 15) - 7, -1..1 unchanged.
inline int Quantisiere(int r) {
    if (r >= 2) return (r & ~15) + 8;
    if (r < -1) return ((r - 1) | 15) - 7;
    return r;
}

static_assert(sizeof(Materialeintrag_t) == 24 && sizeof(Bauerneintrag_t) == 64, "cache entry sizes");

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
// The rank that is rank `reihe` (1..8) from the side's point of view.
constexpr Bitboard RelativeReihenMaske(unsigned seite, unsigned reihe) {
    return ReihenMaske(seite == Weiss ? reihe : 9 - reihe);
}
// The set moved one rank towards the side's promotion rank, or one rank back.
constexpr Bitboard EinVor(unsigned seite, Bitboard b) { return seite == Weiss ? b >> 8 : b << 8; }
constexpr Bitboard EinZurueck(unsigned seite, Bitboard b) { return EinVor(seite ^ 1, b); }
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
// Every square strictly behind the set.
constexpr Bitboard Hinten(unsigned seite, Bitboard b) { return Vorne(seite ^ 1, b); }

inline unsigned Abstand(Feld a, Feld b) {
    const int dl = static_cast<int>(LinieVon(a)) - static_cast<int>(LinieVon(b));
    const int dr = static_cast<int>(a >> 3) - static_cast<int>(b >> 3);
    const int l = dl < 0 ? -dl : dl, r = dr < 0 ? -dr : dr;
    return static_cast<unsigned>(l > r ? l : r);
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

// Shelter and storm of side `seite`'s king on `koenig`, mg, that side's view.
int Koenigsschild(const Stellung_t& st, unsigned seite, Feld koenig);
