// The searcher as a whole: mates at their distance, the draw rules inside the
// search, positions without a move, and the root's limits.
#include <memory>
#include <string>

#include "../board/brett_hilfe.h"
#include "protocol/optionen.h"
#include "protocol/suchwerkzeuge.h"
#include "search/hashtabelle.h"
#include "search/suche.h"
#include "search/suchparameter.h"
#include "such_hilfe.h"

namespace {

using such_test::Fen;

using brett_test::Text;

TEST(Suche, MattAufKuerzestemWeg) {
    struct Fall {
        const char* fen;
        int zuege;  // mate in this many moves
        const char* zug;  // the mating move when it is the only one
    };
    const Fall faelle[] = {
        {"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1", 1, "a1a8"},
        {"r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4", 1, "h5f7"},
        {"2k5/8/2K5/8/8/8/8/3R4 w - - 0 1", 2, "c6b6"},
        {"r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1", 3, nullptr},
        {"r1b1kb1r/pppp1ppp/5q2/4n3/3KP3/2N3PN/PPP4P/R1BQ1B1R b kq - 0 1", 3, nullptr},
        {"7k/8/8/8/5K2/8/8/6R1 w - - 0 1", 4, nullptr},
        {"8/8/8/8/1k6/8/8/1K1Q4 w - - 0 1", 5, nullptr},
    };
    // The parallel search must find the same mates as one thread.
    for (int threads : {1, 3}) {
        Werkzeugsuche_t suche;
        suche.Setze(("setoption name NumberOfProcessors value " + std::to_string(threads)).c_str());
        for (const Fall& f : faelle) {
            const Stellung_t st = Fen(f.fen);
            suche.NeuesSpiel();
            const Zug_t zug = suche.Suche(st, 0, 0, f.zuege);
            EXPECT_EQ(suche.Wert(), Matt - (2 * f.zuege - 1)) << f.fen << " threads " << threads;
            if (f.zug != nullptr) {
                EXPECT_EQ(Text(st, zug), f.zug) << f.fen << " threads " << threads;
            }
        }
    }
}

TEST(Suche, KeinZugUndUnmoeglicheStellungen) {
    const char* const fens[] = {
        "7k/6Q1/6K1/8/8/8/8/8 b - - 0 1",  // mated
        "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",  // stalemate
        "4k3/4R3/8/8/8/8/8/4K3 w - - 0 1", // the side not to move stands in check
    };
    Werkzeugsuche_t suche;
    for (const char* fen : fens) EXPECT_EQ(suche.Suche(Fen(fen), 4, 0, 0), 0) << fen;
}

TEST(Suche, RemisRegelnInDerSuche) {
    Werkzeugsuche_t suche;
    // Black, a queen down, can repeat the position a third time with Nb8.
    const brett_test::Brett wiederholung("rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                                         {"b1c3", "b8c6", "c3b1", "c6b8", "b1c3", "b8c6", "c3b1"});
    EXPECT_EQ(Text(*wiederholung.st, suche.Suche(*wiederholung.st, 6, 0, 0)), "c6b8");
    EXPECT_EQ(suche.Wert(), 0);

    // The hundredth reversible ply ends the game: a queen up is worth nothing here.
    EXPECT_NE(suche.Suche(Fen("8/8/8/4k3/8/8/8/KQ6 w - - 99 80"), 6, 0, 0), 0);
    EXPECT_EQ(suche.Wert(), 0);
    // With a few plies left the same position is a clear win.
    suche.Suche(Fen("8/8/8/4k3/8/8/8/KQ6 w - - 10 80"), 6, 0, 0);
    EXPECT_GT(suche.Wert(), 3000);

}

TEST(Suche, ClearHashBeimNaechstenGo) {
    // The search is deterministic: from a cleared table it spends exactly the same
    // nodes again, while a warm table saves some.
    Werkzeugsuche_t suche;
    const Stellung_t st = Fen("r1bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQK2R w KQ - 4 6");
    suche.NeuesSpiel();
    suche.Suche(st, 7, 0, 0);
    const uint64_t kalt = suche.Knoten();
    suche.Suche(st, 7, 0, 0);
    EXPECT_LT(suche.Knoten(), kalt);
    suche.NeuesSpiel();
    suche.Suche(st, 7, 0, 0);
    EXPECT_EQ(suche.Knoten(), kalt);
}

TEST(Suche, WenigeKnotenBeiEinzigemZug) {
    Werkzeugsuche_t suche;
    // One legal move: the search ends after its first iteration even with time to spare.
    const Stellung_t st = Fen("k7/8/8/8/8/8/1q6/K7 w - - 0 1");
    EXPECT_EQ(Text(st, suche.Suche(st, 0, 60000, 0)), "a1b2");
    EXPECT_LT(suche.Knoten(), 1000u);
}

TEST(Suche, HarteGrenzeSchonInDerErstenIteration) {
    if (Suchparameter::ErsteIterationOhneGrenze) GTEST_SKIP() << "the first iteration runs to its end";
    // In counting mode the clock is the node counter: a hard limit of 60 "ms" stops the
    // first iteration after a few root moves, with one of them as the answer.
    const Stellung_t st = Fen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    Suche_t suche;
    Optionen_t optionen(Optionstabelle);
    TestAusgabe_t ausgabe;
    Zeitkontrolle_t zeit;
    auto auftrag = std::make_unique<Suchauftrag_t>();
    auftrag->stellung = st;
    auftrag->optionen = &optionen;
    auftrag->ausgabe = &ausgabe;
    auftrag->zeit = &zeit;
    Stellungsdaten_t daten;
    BerechneStellungsdaten(auftrag->stellung, daten);
    for (Zug_t z : brett_test::Legal(auftrag->stellung, daten)) auftrag->wurzelzuege[auftrag->anzahlWurzelzuege++] = z;
    zeit.setzen(0, 0, 0, 1, 0, 0, 0, false, false);  // "depth 1": the whole first iteration
    suche.Go(*auftrag);
    suche.WarteBisUntaetig();
    const uint64_t ganz = suche.Knoten();
    zeit.setzen(0, 0, 0, 0, 0, 0, 60, false, true);
    ausgabe.besterZug = 0;
    suche.Go(*auftrag);
    suche.WarteBisUntaetig();
    EXPECT_GE(suche.Knoten(), 60u);
    EXPECT_LT(suche.Knoten(), ganz);
    bool gefunden = false;
    for (int i = 0; i < auftrag->anzahlWurzelzuege; ++i) gefunden |= auftrag->wurzelzuege[i] == ausgabe.besterZug;
    EXPECT_TRUE(gefunden);
}

}  // namespace
