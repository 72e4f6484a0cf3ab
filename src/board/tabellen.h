// Bitboards and the attack tables built once at start-up.
//
// Squares: a8 = 0, b8 = 1, ..., h8 = 7, a7 = 8, ..., a1 = 56, h1 = 63.
// Rank 8 is the low byte of a bitboard; White's pawns advance by -8.
#pragma once

#include <cstdint>

using Bitboard = uint64_t;
using Feld = unsigned;

enum Farbe : unsigned { Weiss = 0, Schwarz = 1 };
enum Figur : unsigned { Leer = 0, Bauer = 1, Springer = 2, Laeufer = 3, Turm = 4, Dame = 5, Koenig = 6 };

constexpr Bitboard OhneHLinie = 0x7f7f7f7f7f7f7f7fULL;  // every square but the h-file
constexpr Bitboard OhneALinie = 0xfefefefefefefefeULL;  // every square but the a-file
constexpr Bitboard HelleFelder = 0xaa55aa55aa55aa55ULL;
constexpr Bitboard DunkleFelder = ~HelleFelder;

constexpr Bitboard Bit(Feld f) { return Bitboard{1} << f; }
constexpr unsigned LinieVon(Feld f) { return f & 7; }        // file: a = 0 ... h = 7
constexpr unsigned ReiheVon(Feld f) { return 8 - (f >> 3); }  // rank: 1 ... 8
constexpr Feld FeldAus(unsigned linie, unsigned reihe) { return linie + 8 * (8 - reihe); }

// One sliding piece's record of the fixed-shift magic scheme.
struct Magie_t {
    Bitboard maske;
    Bitboard magie;
    const Bitboard* angriffe;
};

extern int32_t BitIndex[64];
extern uint8_t Bitzahl16[65536];
extern Bitboard KoenigFelder[64];
extern Bitboard SpringerFelder[64];
extern Bitboard Strahlen[64][4];  // rank, file, anti-diagonal (+-7), diagonal (+-9)
extern Bitboard Zwischen[64 * 64];
extern Bitboard Linie[64 * 64];  // the whole line through two aligned squares, else all ones
extern Magie_t LaeuferMagie[64];
extern Magie_t TurmMagie[64];

constexpr int AngriffsspeicherGroesse = 88772;

// Builds every table above. Call once, before any position is set up.
void InitTabellen();

constexpr uint64_t DeBruijn = 0x218a7a392dd9abfULL;

// Square of the lowest set bit of a non-zero word.
inline Feld NiedrigstesFeld(Bitboard x) {
    const Bitboard b = x & (0 - x);
    return static_cast<Feld>(BitIndex[(b * DeBruijn) >> 58]);
}

// Removes the lowest set bit and returns its square.
inline Feld NimmFeld(Bitboard& x) {
    const Bitboard b = x & (0 - x);
    x ^= b;
    return static_cast<Feld>(BitIndex[(b * DeBruijn) >> 58]);
}

inline unsigned Bitzahl(Bitboard x) {
    x = x - ((x >> 1) & 0x5555555555555555ULL);
    x = (x & 0x3333333333333333ULL) + ((x >> 2) & 0x3333333333333333ULL);
    x = (x + (x >> 4)) & 0x0f0f0f0f0f0f0f0fULL;
    return static_cast<unsigned>((x * 0x0101010101010101ULL) >> 56);
}

inline Bitboard LaeuferAngriffe(Feld s, Bitboard belegt) {
    const Magie_t& m = LaeuferMagie[s];
    return m.angriffe[((belegt & m.maske) * m.magie) >> 55];
}

inline Bitboard TurmAngriffe(Feld s, Bitboard belegt) {
    const Magie_t& m = TurmMagie[s];
    return m.angriffe[((belegt & m.maske) * m.magie) >> 52];
}

inline Bitboard DameAngriffe(Feld s, Bitboard belegt) {
    return LaeuferAngriffe(s, belegt) | TurmAngriffe(s, belegt);
}

// Squares attacked by a whole set of pawns of one side.
inline Bitboard WeisseBauernAngriffe(Bitboard p) {
    return ((p >> 7) & OhneALinie) | ((p >> 9) & OhneHLinie);
}
inline Bitboard SchwarzeBauernAngriffe(Bitboard p) {
    return ((p << 7) & OhneHLinie) | ((p << 9) & OhneALinie);
}
inline Bitboard BauernAngriffe(unsigned seite, Bitboard p) {
    return seite == Weiss ? WeisseBauernAngriffe(p) : SchwarzeBauernAngriffe(p);
}
