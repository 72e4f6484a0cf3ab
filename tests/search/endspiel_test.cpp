// The KPK table checked entry by entry against a move walk of its own, that walk
// against the engine's move generator, and the endgame rules by case.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "../board/brett_hilfe.h"
#include "search/endspiel.h"
#include "such_hilfe.h"

using namespace brett_test;

namespace {

int Lin(Feld f) { return static_cast<int>(LinieVon(f)); }
int Rei(Feld f) { return static_cast<int>(ReiheVon(f)); }
bool Nachbar(Feld x, Feld y) { return x != y && std::abs(Lin(x) - Lin(y)) <= 1 && std::abs(Rei(x) - Rei(y)) <= 1; }
bool Schlaegt(Feld bauer, Feld f) { return Rei(f) == Rei(bauer) + 1 && std::abs(Lin(f) - Lin(bauer)) == 1; }
std::vector<Feld> Nachbarn(Feld f) {
    std::vector<Feld> n;
    for (Feld g = 0; g < 64; ++g)
        if (Nachbar(f, g)) n.push_back(g);
    return n;
}

// A queen (or rook) new on q wins when it survives and the defender has a move or is in check.
bool Umwandlung(Feld q, Feld a, Feld v, bool dame) {
    if (Nachbar(v, q) && !Nachbar(a, q)) return false;
    auto angegriffen = [&](Feld z) {
        const int dl = Lin(z) - Lin(q), dr = Rei(z) - Rei(q);
        if (z == q || (dl && dr && (!dame || std::abs(dl) != std::abs(dr)))) return false;
        const int sl = (dl > 0) - (dl < 0), sr = (dr > 0) - (dr < 0);
        for (int l = Lin(q) + sl, r = Rei(q) + sr; l != Lin(z) || r != Rei(z); l += sl, r += sr)
            if (FeldAus(static_cast<unsigned>(l), static_cast<unsigned>(r)) == a) return false;
        return true;
    };
    if (angegriffen(v)) return true;
    for (Feld n : Nachbarn(v))
        if (!Nachbar(n, a) && !angegriffen(n)) return true;
    return false;
}

// The moves of one placement as (child, kind): kind 0 plain, 1 winning promotion, 2 pawn captured,
// 3 losing promotion. Children are (pawn, attacker king, defender king).
struct Kind_t { Feld b, a, v; int art; };
std::vector<Kind_t> Zuege(Feld b, Feld a, Feld v, bool angreifer) {
    std::vector<Kind_t> k;
    if (!angreifer) {
        for (Feld n : Nachbarn(v))
            if (!Nachbar(n, a) && !Schlaegt(b, n)) k.push_back({b, a, n, n == b ? 2 : 0});
        return k;
    }
    for (Feld n : Nachbarn(a))
        if (n != b && !Nachbar(n, v)) k.push_back({b, n, v, 0});
    if (b - 8 != a && b - 8 != v) {
        const bool sieg = Rei(b) == 7 && (Umwandlung(b - 8, a, v, true) || Umwandlung(b - 8, a, v, false));
        k.push_back({b - 8, a, v, Rei(b) == 7 ? (sieg ? 1 : 3) : 0});
        if (Rei(b) == 2 && b - 16 != a && b - 16 != v) k.push_back({b - 16, a, v, 0});
    }
    return k;
}

std::string Fen(Feld b, Feld a, Feld v, bool weissZieht) {
    std::string brett(64, '1'), fen;
    brett[b] = 'P', brett[a] = 'K', brett[v] = 'k';
    for (int r = 0; r < 8; ++r) fen += brett.substr(static_cast<size_t>(8 * r), 8) + (r < 7 ? "/" : "");
    return fen + (weissZieht ? " w - - 0 1" : " b - - 0 1");
}

Endspielergebnis_t Wissen(const std::string& fen) {
    Brett b(fen.c_str());
    EXPECT_TRUE(b.ok) << fen;
    return Endspielwissen(*b.st);
}

}  // namespace

// Every entry: legality, and its byte from the children's bytes by the rules of the
// distance (attacker: fastest win, defender: slowest loss, any escape is a draw).
TEST(Kpk, JederEintragFolgtAusSeinenZuegen) {
    int fehler = 0, zahl[2][3] = {};
    for (Feld b = 8; b < 56; ++b) {
        if (Lin(b) > 3) continue;
        for (Feld a = 0; a < 64; ++a) {
            for (Feld v = 0; v < 64; ++v) {
                for (bool angreifer : {true, false}) {
                    const uint8_t w = KpkProbe(b, a, v, angreifer);
                    const bool legal = a != v && a != b && v != b && !Nachbar(a, v) && !(angreifer && Schlaegt(b, v));
                    int erwartet = legal ? KpkNichtGewonnen : KpkIllegal;
                    const auto kinder = legal ? Zuege(b, a, v, angreifer) : std::vector<Kind_t>{};
                    if (legal && kinder.empty() && !angreifer && Schlaegt(b, v)) erwartet = 0;
                    int best = angreifer ? 1000 : 0;
                    for (const Kind_t& k : kinder) {
                        const int kw = k.art == 1 ? 0 : k.art ? KpkNichtGewonnen : KpkProbe(k.b, k.a, k.v, !angreifer);
                        fehler += kw == KpkIllegal;
                        const bool sieg = kw < KpkNichtGewonnen;
                        if (angreifer && sieg) best = std::min(best, kw);
                        if (!angreifer) best = sieg ? std::max(best, kw) : 1000;
                    }
                    if (legal && !kinder.empty() && best < 1000) erwartet = best + 1;
                    if (w != erwartet && ++fehler < 5) ADD_FAILURE() << Fen(b, a, v, angreifer) << " " << int{w};
                    ++zahl[angreifer][w == KpkIllegal ? 2 : w == KpkNichtGewonnen ? 1 : 0];
                }
            }
        }
    }
    EXPECT_EQ(fehler, 0);
    // Won, not won, illegal; attacker to move, then defender.
    EXPECT_EQ((std::vector<int>{zahl[1][0], zahl[1][1], zahl[1][2]}), (std::vector<int>{62480, 19184, 16640}));
    EXPECT_EQ((std::vector<int>{zahl[0][0], zahl[0][1], zahl[0][2]}), (std::vector<int>{48802, 35210, 14292}));
}

// The walk above against the engine's generator, on a sample of legal placements.
TEST(Kpk, ZuegeWieDerGenerator) {
    int geprueft = 0;
    for (unsigned i = 0; i < 24 * 2 * 64 * 64; i += 37) {
        const Feld b = FeldAus(i % 4, 2 + i / 4 % 6), a = i / 24 % 64, v = i / 1536 % 64;
        const bool angreifer = i / 98304 == 0;
        if (a == v || a == b || v == b || Nachbar(a, v) || (angreifer && Schlaegt(b, v))) continue;
        Brett brett(Fen(b, a, v, angreifer).c_str());
        std::vector<std::pair<Feld, Feld>> motor, eigen;
        for (Zug_t z : Pseudolegal(*brett.st, brett.d))
            if (IstLegal(*brett.st, z, brett.d) && (!IstUmwandlung(z) || Art(z) == UmwandlungDame))
                motor.push_back({Von(z), Nach(z)});
        for (const Kind_t& k : Zuege(b, a, v, angreifer))
            eigen.push_back(angreifer ? std::pair{k.b == b ? a : b, k.b == b ? k.a : k.b} : std::pair{v, k.v});
        std::sort(motor.begin(), motor.end());
        std::sort(eigen.begin(), eigen.end());
        EXPECT_EQ(motor, eigen) << Fen(b, a, v, angreifer);
        ++geprueft;
    }
    EXPECT_GT(geprueft, 3000);
}

TEST(Kpk, BekannteStellungen) {
    struct Fall { const char *bauer, *angreifer, *verteidiger; int weissZieht, schwarzZieht; };
    constexpr int G = -1, R = KpkNichtGewonnen;  // G: won at some distance
    const Fall faelle[] = {
        {"d5", "d6", "d8", G, G},  // king on the sixth in front of its pawn
        {"e4", "e5", "e7", R, G},  // opposition: who moves loses it
        {"e7", "e6", "e8", G, R},  // Black to move is stalemated
        {"a4", "c4", "a8", R, R},  // rook pawn, the defender in the corner
        {"c5", "h1", "h8", G, G},  // outside the pawn's square
        {"c5", "h1", "d7", R, R},  // inside it
        {"a2", "h1", "h8", G, G},  // the double step counts
        {"e7", "c4", "d7", R, R},  // the new queen is taken, or the pawn first
        {"c7", "c6", "a7", 1, G},  // the queen stalemates, the rook wins at once
        {"b7", "b1", "h8", 1, G},
    };
    for (const Fall& f : faelle) {
        for (bool weiss : {true, false}) {
            const int erwartet = weiss ? f.weissZieht : f.schwarzZieht;
            const int w = KpkProbe(F(f.bauer), F(f.angreifer), F(f.verteidiger), weiss);
            if (erwartet == G) EXPECT_LT(w, R) << f.bauer << f.angreifer << f.verteidiger << weiss;
            else EXPECT_EQ(w, erwartet) << f.bauer << f.angreifer << f.verteidiger << weiss;
            // Files e-h read the mirror image; ranks 1 and 8 hold no pawn.
            EXPECT_EQ(KpkProbe(F(f.bauer) ^ 7, F(f.angreifer) ^ 7, F(f.verteidiger) ^ 7, weiss), w);
        }
    }
    EXPECT_EQ(KpkProbe(F("e8"), F("a1"), F("h1"), true), KpkIllegal);
    EXPECT_EQ(KpkProbe(F("e1"), F("a3"), F("h3"), true), KpkIllegal);
}

// Exact answers: the fixed draws, the pawnless rule's arithmetic, the limit of 7 men.
TEST(Endspiel, FesteWerte) {
    const std::pair<const char*, Endspielergebnis_t> faelle[] = {
        {"8/8/8/4k3/8/8/8/3NK3 w - - 0 1", {2, 0}},        // KNK
        {"8/8/8/4k3/2b5/8/8/4K3 w - - 0 1", {2, 0}},       // KBK
        {"8/8/8/4k3/8/8/8/2NNK3 w - - 0 1", {2, 1}},       // KNNK: never a win
        {"8/8/8/4k3/8/8/8/2NNK3 b - - 0 1", {2, -1}},
        {"2nnk3/8/8/8/8/8/8/4K3 b - - 0 1", {2, 1}},
        {"r3k3/8/8/8/8/8/8/RNB1K1n1 w - - 0 1", {0, 0}},   // 7 men, pawnless
        {"r3k3/8/8/8/8/8/8/R3K3 w - - 0 1", {2, 0}},       // identical sets
        {"4k3/p7/8/8/8/8/7P/4K3 b - - 0 1", {2, 0}},
        {"4k3/8/8/2n5/8/8/8/2B1K3 w - - 0 1", {2, 0}},
        {"k7/8/8/8/8/8/8/7K w - - 0 1", {2, 0}},           // bare kings
        {"k7/8/8/8/P7/8/8/2K5 w - - 0 1", {2, 0}},         // KPK drawn
        {"k7/8/8/8/P7/8/8/2B1K3 w - - 0 1", {2, 0}},       // wrong bishop, king in the corner
        {"k7/8/8/8/8/8/8/3BKB2 w - - 0 1", {2, 0}},        // two bishops of one colour
        {"k7/8/8/8/3K4/8/8/7Q w - - 0 1", {2, 10228}},     // pawnless: d >= 3436
        {"k7/8/8/8/3K4/8/8/7Q b - - 0 1", {2, -10228}},
        {"7q/8/8/3k4/8/8/8/K7 w - - 0 1", {2, -10228}},    // d < -3436
        {"4k3/8/8/3nn3/8/8/8/R3K3 w - - 0 1", {2, -157}},  // KRKNN: min(0, (d + 1000) / 2)
        {"n3k3/n7/8/8/8/8/8/2B1KB2 w - - 0 1", {2, -18}},  // KBBKNN: d = 700 gives 0
        {"4k3/8/8/8/8/8/3rn3/Q3K3 b - - 0 1", {2, -282}},  // KQKRN: (1600 - 1000) / 2
    };
    for (const auto& [fen, erwartet] : faelle) {
        const Endspielergebnis_t e = Wissen(fen);
        EXPECT_EQ(std::pair(e.modus, e.wert), std::pair(erwartet.modus, erwartet.wert)) << fen;
    }
    // KQKR and KRKB have rules of their own; the pawnless rule alone gives d + 200 and (d - 1000) / 2.
    for (const auto& [fen, wert] : {std::pair{"4k3/8/8/8/8/8/8/r2QK3 w - - 0 1", 4982},
                                    std::pair{"4k3/8/8/8/8/8/8/b3K2R b - - 0 1", -332}}) {
        Brett b(fen);
        EXPECT_EQ(BauernlosesEndspiel(*b.st).wert, wert) << fen;
    }
}

// One position per rule with the mode it answers; the colour mirror must answer the same.
TEST(Endspiel, ModusUndFarbsymmetrie) {
    const std::pair<const char*, int> faelle[] = {
        {"2b1k2r/8/8/8/3P4/8/8/R3K3 w - - 0 1", 1},   // KRPKRB: the pieces give back half their surplus
        {"2b1k2r/3P4/8/8/8/8/8/R3K3 w - - 0 1", 0},   // ... but a pawn on the seventh is the search's
        {"1nn1k3/8/8/8/3P4/8/8/4KB2 b - - 0 1", 1},    // KBPKNN
        {"r3k3/8/8/8/3P4/8/8/2N1K3 w - - 0 1", 1},    // KNPKR
        {"3k4/8/3K4/3P4/8/8/r7/5R2 w - - 0 1", 2},    // KRPKR
        {"8/8/8/n7/P7/8/1k6/2n1K3 w - - 0 1", 2},     // KPKNN
        {"4k3/8/8/8/3P4/8/8/2B1Kb2 w - - 0 1", 2},    // KBPKB, bishops of opposite colours
        {"4k3/8/8/8/3P4/8/8/3BKb2 w - - 0 1", 0},     // ... of one colour
        {"r3k3/8/8/8/8/8/8/R1N1K3 w - - 0 1", 2},     // KRNKR
        {"4k3/8/8/8/8/8/8/2B1KB1n b - - 0 1", 2},     // KBBKN
        {"3qk3/8/8/8/8/8/8/2NQK3 w - - 0 1", 2},      // KQNKQ
        {"4k3/4n3/8/8/8/8/8/4K2R w - - 0 1", 2},      // KRKN
        {"k7/8/8/8/2b5/8/1R6/4K3 b - - 0 1", 2},      // KRKB
        {"4k3/8/8/8/8/8/8/r2QK3 w - - 0 1", 2},       // KQKR
        {"k7/8/8/8/2B5/8/8/3NK3 b - - 0 1", 2},       // KBNK
        {"k7/8/8/8/P7/8/8/1B2K3 w - - 0 1", 2},       // KBPK
        {"4k3/8/8/2K5/2P5/8/8/8 b - - 0 1", 2},       // KPK won
        {"4k3/8/8/8/8/8/3rn3/Q3K3 w - - 0 1", 2},     // the pawnless rule
        {"4k3/pp6/8/8/8/8/1P6/4K3 w - - 0 1", 0},     // pawns, no rule
    };
    for (const auto& [fen, modus] : faelle) {
        const Endspielergebnis_t e = Wissen(fen), s = Wissen(such_test::Spiegele(fen));
        EXPECT_EQ(e.modus, modus) << fen;
        EXPECT_EQ(std::pair(e.modus, e.wert), std::pair(s.modus, s.wert)) << fen;
    }
}

// Ordered pairs, White to move: the first is the better one for White.
TEST(Endspiel, RichtungDerRegeln) {
    const std::pair<const char*, const char*> faelle[] = {
        {"k7/8/8/8/2B5/8/8/3NK3 w - - 0 1", "8/8/8/8/2B5/8/8/k2NK3 w - - 0 1"},        // KBNK: the bishop's corner
        {"4k3/8/8/8/8/8/8/n3K2R w - - 0 1", "4k3/4n3/8/8/8/8/8/4K2R w - - 0 1"},       // KRKN: knight far off
        {"k7/8/8/8/2b5/8/1R6/4K3 w - - 0 1", "7k/8/8/8/2b5/8/1R6/3K4 w - - 0 1"},      // KRKB: the bishop's corner
        {"1K6/1P1k4/8/8/8/8/r7/5R2 w - - 0 1", "3k4/8/3K4/3P4/8/8/r7/5R2 w - - 0 1"},  // Lucena over Philidor
        {"7k/8/8/8/3PK3/8/r7/5R2 w - - 0 1", "3k4/8/3K4/3P4/8/8/r7/5R2 w - - 0 1"},   // Philidor holds
        {"4k3/8/8/2K5/2P5/8/8/8 w - - 0 1", "4k3/8/8/2K5/8/2P5/8/8 w - - 0 1"},        // KPK: the pawn advances
        {"4k3/8/8/2K5/8/2P5/8/8 w - - 0 1", "4k3/8/8/2K5/8/8/8/8 w - - 0 1"},          // ... and a win beats KK
        {"8/8/n7/P7/8/8/1k6/2n1K3 w - - 0 1", "8/8/8/n7/P7/8/1k6/2n1K3 w - - 0 1"},    // Troitzky line
        {"4k3/8/8/8/8/8/8/2B1KB1n w - - 0 1", "4k3/8/8/8/8/8/8/3BKB1n w - - 0 1"},     // KBBKN: both colours
        {"k7/8/8/8/P7/8/8/1B2K3 w - - 0 1", "k7/8/8/8/P7/8/8/2B1K3 w - - 0 1"},        // KBPK: right bishop
        {"k7/8/8/8/3K4/8/8/7Q w - - 0 1", "k7/2P5/8/2K5/8/8/8/8 w - - 0 1"},           // promoting pays
    };
    for (const auto& [besser, schlechter] : faelle) EXPECT_GT(Wissen(besser).wert, Wissen(schlechter).wert) << besser;
}
