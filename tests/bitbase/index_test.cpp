// Bitbase indexing: names, sizes, anchors, pair codes, folding by symmetry and
// the en-passant rows, with the decoder as the inverse.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "bitbase/index.h"
#include "erzeugung_hilfe.h"

using erzeugung_test::F;

namespace {

// A position as the probe hands it over; the lists are zero-terminated.
struct Steine_t {
    std::vector<int> wt, st, wf, sf;
};

Bitbase_t Position(const Steine_t& s, int amZug, int ep = 0) {
    std::vector<int> wt = s.wt, st = s.st, wf = s.wf, sf = s.sf;
    wt.push_back(0), st.push_back(0), wf.push_back(0), sf.push_back(0);
    Bitbase_t b;
    EXPECT_TRUE(b.SetzeSteine(wt.data(), st.data(), wf.data(), sf.data(), amZug, ep));
    return b;
}

uint64_t IndexVon(const Steine_t& s, int amZug, int ep = 0) { return Position(s, amZug, ep).Index(); }

// The eight symmetries of the board: a mask, then optionally the a8-h1 reflection.
int Symmetrie(int f, int g) {
    f ^= (g & 3) == 0 ? 0 : (g & 3) == 1 ? 7 : (g & 3) == 2 ? 56 : 63;
    return g & 4 ? ((f & 7) << 3) | (f >> 3) : f;
}

Steine_t Abgebildet(const Steine_t& s, int g) {
    Steine_t t = s;
    for (int& f : t.wf) f = Symmetrie(f, g);
    for (int& f : t.sf) f = Symmetrie(f, g);
    return t;
}

// Random men on distinct squares, pawns on rows 1..6.
Steine_t Zufaellig(std::mt19937& rng, const std::vector<int>& wt, const std::vector<int>& st) {
    Steine_t s{wt, st, {}, {}};
    std::vector<int> frei;
    for (;;) {
        s.wf.clear(), s.sf.clear();
        std::vector<bool> belegt(64, false);
        bool ok = true;
        auto setze = [&](int typ, std::vector<int>& liste) {
            int f;
            do f = static_cast<int>(rng() % 64);
            while (belegt[f]);
            if (typ == 1 && (f < 8 || f >= 56)) ok = false;
            belegt[f] = true;
            liste.push_back(f);
        };
        for (int t : wt) setze(t, s.wf);
        for (int t : st) setze(t, s.sf);
        if (ok) return s;
    }
}

TEST(BitbaseIndex, SignaturUndGroesse) {
    const struct {
        const char* name;
        uint64_t positionen;
    } groessen[] = {
        {"KK", 1280},           {"KDK", 81920},          {"KBK", 262144},          {"KKB", 262144},
        {"KTTK", 2621440},      {"KTKT", 5242880},       {"KBBK", 16777216},       {"KBKB", 16777216},
        {"KSSSK", 167772160},     {"KDKTT", 167772160},    {"KTBKT", 1073741824},    {"KBBKB", 536870912},
        {"KSSSSK", 5368709120}, {"KBBBKB", 34359738368}, {"KDTLSK", 21474836480},
    };
    for (const auto& g : groessen) EXPECT_EQ(AnzahlPositionen(g.name), g.positionen) << g.name;
    for (const char* falsch : {"", "K", "KD", "DKK", "KDKK", "KKK", "KXK", "KDKd", "KDDDKDD", "K-K", "kdk"})
        EXPECT_EQ(AnzahlPositionen(falsch), 0u) << falsch;
}

TEST(BitbaseIndex, AnkersteinUndPaare) {
    const struct {
        const char* name;
        int anker;
        const char* paare;  // per man: '1' belongs to a group coded together
    } faelle[] = {
        {"KDK", -1, "000"},     {"KBK", 1, "000"},       {"KKB", 2, "000"},       {"KBKB", 1, "0000"},
        {"KTKB", 3, "0000"},    {"KBBK", 1, "0000"},     {"KBBBK", 1, "00110"},   {"KBBKB", 4, "01100"},
        {"KBBKBB", 1, "000011"}, {"KKBB", 2, "0000"},    {"KTTK", -1, "0110"},    {"KBKBB", 1, "00011"},
        {"KSSSSK", -1, "011110"},
    };
    for (const auto& f : faelle) {
        Bitbase_t b;
        ASSERT_TRUE(b.SetzeSignatur(f.name));
        EXPECT_EQ(b.Ankerstein, f.anker) << f.name;
        std::string paare;
        for (int i = 0; i < b.anzahlSteine; ++i) paare += b.paar[i] ? '1' : '0';
        EXPECT_EQ(paare, f.paare) << f.name;
    }
    char zwilling[7];
    GespiegelteSignatur("KTKB", zwilling);
    EXPECT_STREQ(zwilling, "KBKT");
    GespiegelteSignatur("KDK", zwilling);
    EXPECT_STREQ(zwilling, "KKD");
    GespiegelteSignatur("KK", zwilling);
    EXPECT_STREQ(zwilling, "KK");
}

TEST(BitbaseIndex, Paarcode) {
    const int a[] = {3, 10}, b[] = {10, 3}, gleich[] = {20, 20};
    EXPECT_EQ(Paarcode(0, a, 2), 48u);  // 10 * 9 / 2 + 3
    EXPECT_EQ(Paarcode(0, b, 2), 48u);
    EXPECT_EQ(Paarcode(5, a, 2), 5u * 2048 + 48);
    EXPECT_EQ(Paarcode(0, gleich, 2), 0x7E0u);
    // Three men sort fully: a pair, then the largest square in 6 bits.
    const int drei[] = {10, 3, 5}, dreiAnders[] = {5, 10, 3};
    EXPECT_EQ(Paarcode(0, drei, 3), 13u * 64 + 10);
    EXPECT_EQ(Paarcode(0, dreiAnders, 3), 13u * 64 + 10);
    // Four men leave places 2 and 3 uncompared: (3, 2) codes 2 * 1 / 2 + 3 = 4, not 5.
    const int vierA[] = {0, 1, 3, 2}, vierB[] = {0, 1, 2, 3}, vierC[] = {5, 1, 4, 2};
    EXPECT_EQ(Paarcode(0, vierA, 4), 4u);
    EXPECT_EQ(Paarcode(0, vierB, 4), 5u);
    EXPECT_EQ(Paarcode(0, vierC, 4), 2u * 2048 + 14);  // sorted by the network to (1, 2) (4, 5)
}

TEST(BitbaseIndex, KoenigAufA1FaltetNachA8) {
    // Mask 56 folds a1 onto a8; queen b2 -> b7 (9), black king h8 -> h1 (63), all on the diagonal.
    const Steine_t s{{6, 5}, {6}, {F("a1"), F("b2")}, {F("h8")}};
    EXPECT_EQ(IndexVon(s, 0), (0u * 64 + 9) * 64 + 63);
    EXPECT_EQ(IndexVon(s, 1), (1u * 64 + 9) * 64 + 63);
    // Off the diagonal the first man that leaves it decides the reflection.
    const Steine_t t{{6, 5}, {6}, {F("a8"), F("a7")}, {F("c3")}};
    const Steine_t u{{6, 5}, {6}, {F("a8"), F("b8")}, {F("f6")}};
    EXPECT_EQ(IndexVon(t, 0), IndexVon(u, 0));
    EXPECT_EQ(IndexVon(t, 0), (0u * 64 + 1) * 64 + F("f6"));
}

TEST(BitbaseIndex, DreiSteineOhneBauernLaufenVon0Bis81919) {
    uint64_t kleinster = ~uint64_t{0}, groesster = 0;
    Bitbase_t b;
    ASSERT_TRUE(b.SetzeSignatur("KDK"));
    for (int seite = 0; seite < 2; ++seite)
        for (int k = 0; k < 64; ++k)
            for (int d = 0; d < 64; ++d)
                for (int s = 0; s < 64; ++s) {
                    const int32_t felder[3] = {k, d, s};
                    const uint64_t i = b.Index(felder, seite, -1);
                    kleinster = std::min(kleinster, i);
                    groesster = std::max(groesster, i);
                }
    EXPECT_EQ(kleinster, 0u);
    EXPECT_EQ(groesster, 81919u);
}

TEST(BitbaseIndex, SymmetrischeStellungenGleicherIndex) {
    std::mt19937 rng(12345);
    const std::vector<std::pair<std::vector<int>, std::vector<int>>> signaturen = {
        {{6, 5}, {6}}, {{6, 4, 4}, {6}}, {{6, 5}, {6, 4}}, {{6, 2, 2, 2}, {6}}, {{6, 3}, {6, 2, 2}}};
    for (const auto& [wt, st] : signaturen) {
        for (int n = 0; n < 300; ++n) {
            const Steine_t s = Zufaellig(rng, wt, st);
            const uint64_t index = IndexVon(s, n & 1);
            for (int g = 1; g < 8; ++g) EXPECT_EQ(IndexVon(Abgebildet(s, g), n & 1), index);
            // Identical men in either order: the same index unless the king stands on the
            // a8-h1 diagonal of its quarter, where the first of them off it decides the reflection.
            Steine_t t = s;
            if (wt.size() > 2 && wt[1] == wt[2]) std::swap(t.wf[1], t.wf[2]);
            if (st.size() > 2 && st[1] == st[2]) std::swap(t.sf[1], t.sf[2]);
            const int k = s.wf[0] ^ ((s.wf[0] & 7) >= 4 ? 7 : 0) ^ ((s.wf[0] >> 3) >= 4 ? 56 : 0);
            if ((k >> 3) != (k & 7)) {
                EXPECT_EQ(IndexVon(t, n & 1), index);
            }
        }
    }
    // King a8, rooks c8 (above the diagonal) and a5 (below): the first listed decides.
    const Steine_t oben{{6, 4, 4}, {6}, {F("a8"), F("c8"), F("a5")}, {F("h1")}};
    const Steine_t unten{{6, 4, 4}, {6}, {F("a8"), F("a5"), F("c8")}, {F("h1")}};
    EXPECT_EQ(IndexVon(oben, 0), Paarcode(0, std::vector<int>{F("c8"), F("a5")}.data(), 2) * 64 + 63);
    EXPECT_EQ(IndexVon(unten, 0), Paarcode(0, std::vector<int>{F("d8"), F("a6")}.data(), 2) * 64 + 63);
    // With pawns only the left-right mirror folds.
    for (int n = 0; n < 500; ++n) {
        const Steine_t s = Zufaellig(rng, {6, 4}, {6, 1, 1});
        EXPECT_EQ(IndexVon(Abgebildet(s, 1), n & 1), IndexVon(s, n & 1));
    }
}

TEST(BitbaseIndex, JedeLegaleKpkStellungImBereich) {
    Bitbase_t b;
    ASSERT_TRUE(b.SetzeSignatur("KBK"));
    std::vector<bool> gesehen(b.positionen, false);
    uint64_t stellungen = 0;
    for (int bauer = 8; bauer < 56; ++bauer)
        for (int k = 0; k < 64; ++k)
            for (int s = 0; s < 64; ++s) {
                if (k == s || k == bauer || s == bauer) continue;
                for (int seite = 0; seite < 2; ++seite) {
                    const uint64_t i = IndexVon({{6, 1}, {6}, {k, bauer}, {s}}, seite);
                    ASSERT_LT(i, b.positionen);
                    gesehen[i] = true;
                    ++stellungen;
                }
            }
    // Mirrored twins share an index: exactly half as many indices as placements.
    EXPECT_EQ(static_cast<uint64_t>(std::count(gesehen.begin(), gesehen.end(), true)), stellungen / 2);
}

TEST(BitbaseIndex, AusIndexUmkehrung) {
    std::mt19937 rng(777);
    for (const char* name : {"KTK", "KBK", "KTKB", "KSSKB", "KTTK", "KBBKB"}) {
        Bitbase_t b;
        ASSERT_TRUE(b.SetzeSignatur(name));
        for (int n = 0; n < 2000; ++n) {
            Bitbase_t p = b;
            uint64_t belegt = 0;
            for (int i = 0; i < b.anzahlSteine; ++i) {
                const bool bauer = b.typ[i] == 1;
                do p.feld[i] = bauer ? 8 + static_cast<int>(rng() % 48) : static_cast<int>(rng() % 64);
                while (belegt >> p.feld[i] & 1);
                belegt |= uint64_t{1} << p.feld[i];
            }
            p.amZug = n & 1;
            p.epFeld = -1;
            const uint64_t i = p.Index();
            ASSERT_LT(i, b.positionen) << name;
            Bitbase_t q = b;
            ASSERT_TRUE(q.AusIndex(i)) << name;
            EXPECT_EQ(q.amZug, n & 1);
            // The decoder lists identical men by square; listed the other way round
            // they may reflect differently (see above).
            bool gefunden = q.Index() == i;
            for (int g = 0; g < q.gruppen && !gefunden; ++g) {
                if (q.gruppenGroesse[g] != 2) continue;
                std::swap(q.feld[q.gruppenStart[g]], q.feld[q.gruppenStart[g] + 1]);
                gefunden = q.Index() == i;
            }
            EXPECT_TRUE(gefunden) << name << " " << i;
        }
    }
    // Pair codes beyond 0x7DF and anchor codes beyond 19 encode nothing.
    Bitbase_t t;
    ASSERT_TRUE(t.SetzeSignatur("KTTK"));
    EXPECT_FALSE(t.AusIndex(0x7E0 * 64));
    EXPECT_FALSE(t.AusIndex(t.positionen));
}

TEST(BitbaseIndex, EnPassant) {
    // White e5, Black has just played d7-d5: ep d6. The index codes the pawn on row 7.
    const Steine_t s{{6, 1}, {6, 1}, {F("e1"), F("e5")}, {F("e8"), F("d5")}};
    const uint64_t mitEp = IndexVon(s, 0, F("d6"));
    const uint64_t ohneEp = IndexVon(s, 0, 0);
    EXPECT_NE(mitEp, ohneEp);
    // The mirror image (d5 takes on e6) is the same position for the index.
    EXPECT_EQ(IndexVon(Abgebildet(s, 1), 0, F("e6")), mitEp);
    // An en-passant square no pawn can use changes nothing.
    EXPECT_EQ(IndexVon(s, 0, F("a6")), ohneEp);

    // The decoder gives the square back, in the mirrored orientation (anchor on files a-d).
    Bitbase_t b = Position(s, 0, F("d6"));
    ASSERT_TRUE(b.AusIndex(mitEp));
    EXPECT_EQ(b.epFeld, F("e6"));
    EXPECT_EQ(b.feld[1], F("d5"));
    EXPECT_EQ(b.Index(), mitEp);

    // The index itself compares with the square as it stands: unmirrored it misses the pawn.
    Bitbase_t roh = Position(s, 0, 0);
    roh.epFeld = static_cast<int8_t>(F("d6"));
    EXPECT_EQ(roh.Index(), ohneEp);

    // Black takes: e4 against d2-d4, ep d3.
    const Steine_t t{{6, 1}, {6, 1}, {F("e1"), F("d4")}, {F("e8"), F("e4")}};
    EXPECT_NE(IndexVon(t, 1, F("d3")), IndexVon(t, 1, 0));
    EXPECT_EQ(IndexVon(Abgebildet(t, 1), 1, F("e3")), IndexVon(t, 1, F("d3")));

    // A capture row with the wrong side to move decodes to nothing.
    Bitbase_t c;
    ASSERT_TRUE(c.SetzeSignatur("KBKB"));
    ASSERT_TRUE(c.AusIndex(mitEp));
    EXPECT_FALSE(c.AusIndex(mitEp + 1 * (c.positionen / 64)));  // black to move
}

}  // namespace
