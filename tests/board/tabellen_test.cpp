// Attack tables against a slow square-by-square walk, and the edge cases that once went wrong.
#include <bit>
#include <random>

#include "brett_hilfe.h"

using namespace brett_test;

namespace {

// Rays from s in directions [von, bis), each ending on the first occupied square; rook directions first.
Bitboard Gleiten(Feld s, Bitboard belegt, int von, int bis) {
    static const int d[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
    Bitboard b = 0;
    for (int i = von; i < bis; ++i) {
        int l = static_cast<int>(LinieVon(s)) + d[i][0], r = static_cast<int>(ReiheVon(s)) + d[i][1];
        for (; l >= 0 && l < 8 && r >= 1 && r <= 8; l += d[i][0], r += d[i][1]) {
            const Bitboard f = Bit(FeldAus(static_cast<unsigned>(l), static_cast<unsigned>(r)));
            b |= f;
            if (belegt & f) break;
        }
    }
    return b;
}

Bitboard Felder(std::initializer_list<const char*> namen) {
    Bitboard b = 0;
    for (const char* n : namen) b |= Bit(F(n));
    return b;
}

}  // namespace

// A mistyped magic or offset shows up as a wrong set on some square; the bit tricks ride along.
TEST(Tabellen, GleiterGegenLangsameStrahlen) {
    std::mt19937_64 zufall(2017);
    for (Feld s = 0; s < 64; ++s) {
        for (int i = 0; i < 3000; ++i) {
            Bitboard belegt = zufall();
            for (int k = 0; k < i % 3; ++k) belegt &= zufall();  // sparse boards reach the long rays
            const Bitboard turm = Gleiten(s, belegt, 0, 4), laeufer = Gleiten(s, belegt, 4, 8);
            ASSERT_EQ(TurmAngriffe(s, belegt), turm) << s << " " << std::hex << belegt;
            ASSERT_EQ(LaeuferAngriffe(s, belegt), laeufer) << s << " " << std::hex << belegt;
            ASSERT_EQ(DameAngriffe(s, belegt), turm | laeufer) << s << " " << std::hex << belegt;
            ASSERT_EQ(Bitzahl(belegt), static_cast<unsigned>(std::popcount(belegt))) << std::hex << belegt;
            ASSERT_EQ(NiedrigstesFeld(belegt | Bit(63)), static_cast<Feld>(std::countr_zero(belegt | Bit(63))));
        }
    }
}

TEST(Tabellen, Randfaelle) {
    // The slider's own square never counts; a blocker next to it is attacked and ends the ray.
    EXPECT_EQ(TurmAngriffe(F("e4"), Bit(F("e4"))), TurmAngriffe(F("e4"), 0));
    EXPECT_EQ(TurmAngriffe(F("a1"), Felder({"a2", "b1"})), Felder({"a2", "b1"}));
    EXPECT_EQ(LaeuferAngriffe(F("h8"), Bit(F("g7"))), Bit(F("g7")));
    // No wrapping round the board edge.
    EXPECT_EQ(WeisseBauernAngriffe(Bit(F("h4"))), Bit(F("g5")));
    EXPECT_EQ(SchwarzeBauernAngriffe(Bit(F("a5"))), Bit(F("b4")));
    EXPECT_EQ(KoenigFelder[F("a1")], Felder({"a2", "b2", "b1"}));
    EXPECT_EQ(SpringerFelder[F("h8")], Felder({"f7", "g6"}));
    // Zwischen excludes both ends, works both ways, and is empty for neighbours and unaligned squares.
    const Bitboard b2g7 = Felder({"b2", "c3", "d4", "e5", "f6", "g7"});
    EXPECT_EQ(Zwischen[F("a1") * 64 + F("h8")], b2g7);
    EXPECT_EQ(Zwischen[F("h8") * 64 + F("a1")], b2g7);
    EXPECT_EQ(Zwischen[F("a8") * 64 + F("h8")], 0x7eu);
    EXPECT_EQ(Zwischen[F("a1") * 64 + F("b3")], 0u);
    EXPECT_EQ(Zwischen[F("e4") * 64 + F("f5")], 0u);
    EXPECT_EQ(Zwischen[F("e4") * 64 + F("e4")], 0u);
    // Linie is the whole line through two aligned squares, all ones otherwise.
    EXPECT_EQ(Linie[F("h8") * 64 + F("b2")], b2g7 | Felder({"a1", "h8"}));
    EXPECT_EQ(Linie[F("a1") * 64 + F("a2")], 0x0101010101010101u);
    EXPECT_EQ(Linie[F("a1") * 64 + F("b3")], ~Bitboard{0});
}
