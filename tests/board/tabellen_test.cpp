// Attack tables and bit tricks, checked against slow square-by-square references.
#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <set>

#include "board/tabellen.h"
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

// Whole line through s in direction (dl, dr), both ways, s included.
Bitboard GanzeLinie(Feld s, int dl, int dr) { return Strahl(s, dl, dr, 0) | Strahl(s, -dl, -dr, 0) | Bit(s); }

Bitboard Rand(Bitboard b, Feld s, int dl, int dr) {
    // Drop the last square of each half ray: it never changes what the slider sees.
    for (int sign : {1, -1}) {
        int l = static_cast<int>(LinieVon(s)), r = static_cast<int>(ReiheVon(s));
        int el = -1, er = -1;
        while (AufBrett(l + sign * dl, r + sign * dr)) {
            l += sign * dl;
            r += sign * dr;
            el = l;
            er = r;
        }
        if (el >= 0) b &= ~Bit(FeldAus(static_cast<unsigned>(el), static_cast<unsigned>(er)));
    }
    return b;
}

}  // namespace

TEST(Bitscan, EinzelneBitsUndRaender) {
    EXPECT_EQ(NiedrigstesFeld(1), 0u);
    EXPECT_EQ(NiedrigstesFeld(Bitboard{1} << 63), 63u);
    for (Feld f = 0; f < 64; ++f) EXPECT_EQ(NiedrigstesFeld(Bit(f)), f) << f;
    std::set<int32_t> gesehen;
    for (int32_t v : BitIndex) gesehen.insert(v);
    EXPECT_EQ(gesehen.size(), 64u) << "the De Bruijn hash must reach every slot once";
}

TEST(Bitscan, SchleifeLiefertAufsteigendeFelder) {
    std::mt19937_64 zufall(7);
    for (int i = 0; i < 2000; ++i) {
        Bitboard x = zufall() & zufall();
        const Bitboard original = x;
        Bitboard wieder = 0;
        int letztes = -1;
        while (x) {
            EXPECT_EQ(NiedrigstesFeld(x), static_cast<Feld>(std::countr_zero(x)));
            const Feld f = NimmFeld(x);
            EXPECT_GT(static_cast<int>(f), letztes);
            letztes = static_cast<int>(f);
            wieder |= Bit(f);
        }
        EXPECT_EQ(wieder, original);
    }
}

TEST(Bitzaehlung, SwarUndTabelleStimmenMitPopcount) {
    for (unsigned i = 0; i < 65536; ++i) ASSERT_EQ(Bitzahl16[i], std::popcount(i)) << i;
    std::mt19937_64 zufall(11);
    EXPECT_EQ(Bitzahl(0), 0u);
    EXPECT_EQ(Bitzahl(~Bitboard{0}), 64u);
    for (int i = 0; i < 10000; ++i) {
        const Bitboard x = zufall() & zufall();
        ASSERT_EQ(Bitzahl(x), static_cast<unsigned>(std::popcount(x))) << std::hex << x;
    }
}

TEST(Sprungtabellen, KoenigUndSpringerOhneUmlauf) {
    static const int koenig[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
    static const int springer[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
    for (Feld s = 0; s < 64; ++s) {
        EXPECT_EQ(KoenigFelder[s], Spruenge(s, koenig, 8)) << brett_test::FeldName(s);
        EXPECT_EQ(SpringerFelder[s], Spruenge(s, springer, 8)) << brett_test::FeldName(s);
    }
    EXPECT_EQ(Bitzahl(KoenigFelder[F("a1")]), 3u);
    EXPECT_EQ(Bitzahl(SpringerFelder[F("h8")]), 2u);
    EXPECT_EQ(Bitzahl(SpringerFelder[F("d4")]), 8u);
}

TEST(Strahlen, VierLinienJeFeld) {
    for (Feld s = 0; s < 64; ++s) {
        EXPECT_EQ(Strahlen[s][0], GanzeLinie(s, 1, 0) & ~Bit(s)) << "rank " << s;
        EXPECT_EQ(Strahlen[s][1], GanzeLinie(s, 0, 1) & ~Bit(s)) << "file " << s;
        // the +-7 line runs a1-h8 wards (north-east), the +-9 line a8-h1 wards
        EXPECT_EQ(Strahlen[s][2], GanzeLinie(s, 1, 1) & ~Bit(s)) << "+-7 line " << s;
        EXPECT_EQ(Strahlen[s][3], GanzeLinie(s, -1, 1) & ~Bit(s)) << "+-9 line " << s;
    }
}

TEST(Zwischen, BekannteFaelle) {
    Bitboard b2g7 = 0;
    for (const char* f : {"b2", "c3", "d4", "e5", "f6", "g7"}) b2g7 |= Bit(F(f));
    EXPECT_EQ(Zwischen[F("a1") * 64 + F("h8")], b2g7);
    EXPECT_EQ(Zwischen[F("h8") * 64 + F("a1")], b2g7);
    EXPECT_EQ(Zwischen[F("a1") * 64 + F("b3")], 0u);
    EXPECT_EQ(Zwischen[F("e4") * 64 + F("e5")], 0u);
    EXPECT_EQ(Zwischen[F("e4") * 64 + F("f5")], 0u);
    EXPECT_EQ(Zwischen[F("a8") * 64 + F("h8")], 0x7eu);
    EXPECT_EQ(Zwischen[F("e4") * 64 + F("e4")], 0u);
}

TEST(Zwischen, AlleFeldpaareGegenReferenz) {
    static const int richtungen[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
    for (Feld a = 0; a < 64; ++a) {
        for (Feld b = 0; b < 64; ++b) {
            Bitboard zwischen = 0;
            for (const auto& r : richtungen) {
                const Bitboard strahl = Strahl(a, r[0], r[1], Bit(b));
                if (strahl & Bit(b)) zwischen = strahl & ~Bit(b);
            }
            ASSERT_EQ(Zwischen[a * 64 + b], zwischen) << brett_test::FeldName(a) << "-" << brett_test::FeldName(b);
        }
    }
}

TEST(Linie, BekannteFaelle) {
    Bitboard diagonale = 0;
    for (unsigned i = 0; i < 8; ++i) diagonale |= Bit(FeldAus(i, i + 1));
    EXPECT_EQ(Linie[F("a1") * 64 + F("c3")], diagonale);
    EXPECT_EQ(Linie[F("h8") * 64 + F("b2")], diagonale);
    EXPECT_EQ(Linie[F("a1") * 64 + F("b3")], ~Bitboard{0});
    EXPECT_EQ(Linie[F("a1") * 64 + F("a2")], 0x0101010101010101u);
    EXPECT_EQ(Linie[F("c8") * 64 + F("f8")], 0xffu);
}

TEST(Linie, AlleFeldpaareGegenReferenz) {
    static const int linien[4][2] = {{1, 0}, {0, 1}, {1, 1}, {-1, 1}};
    for (Feld a = 0; a < 64; ++a) {
        for (Feld b = 0; b < 64; ++b) {
            if (a == b) continue;  // a square is on all four of its lines
            Bitboard linie = ~Bitboard{0};
            for (const auto& r : linien) {
                const Bitboard l = GanzeLinie(a, r[0], r[1]);
                if (l & Bit(b)) linie = l;
            }
            ASSERT_EQ(Linie[a * 64 + b], linie) << brett_test::FeldName(a) << "-" << brett_test::FeldName(b);
        }
    }
}

TEST(Gleiter, LeeresBrettUndErsterBlocker) {
    const Bitboard turmA8 = TurmAngriffe(F("a8"), 0);
    EXPECT_EQ(Bitzahl(turmA8), 14u);
    EXPECT_EQ(turmA8, (0xffu | 0x0101010101010101u) & ~Bit(F("a8")));
    EXPECT_EQ(Bitzahl(LaeuferAngriffe(F("d4"), 0)), 13u);
    EXPECT_EQ(Bitzahl(DameAngriffe(F("d4"), 0)), 27u);

    // A blocker right next to the slider cuts its ray down to that square.
    const Bitboard belegt = Bit(F("d5")) | Bit(F("e5"));
    EXPECT_EQ(TurmAngriffe(F("d4"), belegt) & Strahl(F("d4"), 0, 1, 0), Bit(F("d5")));
    EXPECT_EQ(LaeuferAngriffe(F("d4"), belegt) & Strahl(F("d4"), 1, 1, 0), Bit(F("e5")));
    EXPECT_EQ(TurmAngriffe(F("a1"), Bit(F("a2")) | Bit(F("b1"))), Bit(F("a2")) | Bit(F("b1")));
    EXPECT_EQ(LaeuferAngriffe(F("h8"), Bit(F("g7"))), Bit(F("g7")));
    // The slider's own square never counts, occupied or not.
    EXPECT_EQ(TurmAngriffe(F("e4"), Bit(F("e4"))), TurmAngriffe(F("e4"), 0));
}

TEST(Gleiter, MaskenOhneRand) {
    for (Feld s = 0; s < 64; ++s) {
        const Bitboard diag = GanzeLinie(s, 1, 1) | GanzeLinie(s, -1, 1);
        EXPECT_EQ(LaeuferMagie[s].maske, diag & ~Bit(s) & 0x007e7e7e7e7e7e00u) << s;
        const Bitboard turm = Rand(GanzeLinie(s, 1, 0), s, 1, 0) | Rand(GanzeLinie(s, 0, 1), s, 0, 1);
        EXPECT_EQ(TurmMagie[s].maske, turm & ~Bit(s)) << s;
    }
}

// Every subset of every mask: a mistyped multiplier or offset shows up as a
// collision with a different attack set somewhere in the shared store.
TEST(Gleiter, AlleTeilmengenJederMaskeGegenStrahlen) {
    for (Feld s = 0; s < 64; ++s) {
        const Bitboard lm = LaeuferMagie[s].maske;
        Bitboard occ = 0;
        do {
            ASSERT_EQ(LaeuferAngriffe(s, occ), LangsameLaeuferAngriffe(s, occ))
                << "bishop " << brett_test::FeldName(s) << " occ " << std::hex << occ;
            occ = (occ - 1) & lm;
        } while (occ);
        const Bitboard tm = TurmMagie[s].maske;
        occ = 0;
        do {
            ASSERT_EQ(TurmAngriffe(s, occ), LangsameTurmAngriffe(s, occ))
                << "rook " << brett_test::FeldName(s) << " occ " << std::hex << occ;
            occ = (occ - 1) & tm;
        } while (occ);
    }
}

TEST(Gleiter, ZufaelligeBelegungenAufJedemFeld) {
    std::mt19937_64 zufall(2017);
    for (Feld s = 0; s < 64; ++s) {
        for (int i = 0; i < 3000; ++i) {
            Bitboard belegt = zufall();
            if (i % 3 == 1) belegt &= zufall();
            if (i % 3 == 2) belegt &= zufall() & zufall();
            ASSERT_EQ(LaeuferAngriffe(s, belegt), LangsameLaeuferAngriffe(s, belegt))
                << brett_test::FeldName(s) << std::hex << " " << belegt;
            ASSERT_EQ(TurmAngriffe(s, belegt), LangsameTurmAngriffe(s, belegt))
                << brett_test::FeldName(s) << std::hex << " " << belegt;
            ASSERT_EQ(DameAngriffe(s, belegt), LangsameLaeuferAngriffe(s, belegt) | LangsameTurmAngriffe(s, belegt));
        }
    }
}

TEST(Bauernangriffe, KeinUmlaufUeberDenRand) {
    EXPECT_EQ(WeisseBauernAngriffe(Bit(F("h4"))), Bit(F("g5")));
    EXPECT_EQ(WeisseBauernAngriffe(Bit(F("a4"))), Bit(F("b5")));
    EXPECT_EQ(SchwarzeBauernAngriffe(Bit(F("h5"))), Bit(F("g4")));
    EXPECT_EQ(SchwarzeBauernAngriffe(Bit(F("a5"))), Bit(F("b4")));
    EXPECT_EQ(WeisseBauernAngriffe(Bit(F("e2"))), Bit(F("d3")) | Bit(F("f3")));
    EXPECT_EQ(SchwarzeBauernAngriffe(Bit(F("e7"))), Bit(F("d6")) | Bit(F("f6")));
    EXPECT_EQ(BauernAngriffe(Schwarz, Bit(F("e7"))), SchwarzeBauernAngriffe(Bit(F("e7"))));
    // Whole pawn sets: every pawn on every square at once.
    for (Feld s = 8; s < 56; ++s) {
        const int w[2][2] = {{-1, 1}, {1, 1}};
        const int b[2][2] = {{-1, -1}, {1, -1}};
        EXPECT_EQ(WeisseBauernAngriffe(Bit(s)), Spruenge(s, w, 2)) << s;
        EXPECT_EQ(SchwarzeBauernAngriffe(Bit(s)), Spruenge(s, b, 2)) << s;
    }
}
