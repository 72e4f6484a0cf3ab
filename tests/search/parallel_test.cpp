// The parallel search: threads made and ended by the option, split points only
// with further threads, and "stop" at any moment (its mates are in suche_test.cpp).
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>

#include "board/zugmachen.h"
#include "protocol/suchwerkzeuge.h"
#include "search/hashtabelle.h"
#include "such_hilfe.h"

namespace {

using such_test::Fen;

bool Legal(const Stellung_t& st, Zug_t zug) {
    Stellung_t kopie = st;
    Stellungsdaten_t daten;
    BerechneStellungsdaten(kopie, daten);
    return zug != 0 && IstLegal(kopie, zug, daten);
}

void Threads(Werkzeugsuche_t& suche, int n) {
    suche.Setze(("setoption name NumberOfProcessors value " + std::to_string(n)).c_str());
}

const char* const Mittelspiel = "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N2N2/PP2BPPP/R2QKB1R w KQ - 0 9";

TEST(ParalleleSuche, NurMitWeiterenThreadsWirdGeteilt) {
    Werkzeugsuche_t suche;
    const Stellung_t st = Fen(Mittelspiel);
    Threads(suche, 1);
    EXPECT_TRUE(Legal(st, suche.Suche(st, 10, 0, 0)));
    EXPECT_EQ(suche.Teilungen(), 0u);

    // Threads are made and ended between searches, in any order.
    for (int n : {3, 2, 4, 1, 2}) {
        Threads(suche, n);
        suche.NeuesSpiel();
        EXPECT_TRUE(Legal(st, suche.Suche(st, 10, 0, 0))) << n;
        if (n == 1) EXPECT_EQ(suche.Teilungen(), 0u);
        else EXPECT_GT(suche.Teilungen(), 0u) << n;
    }
}

// Searches stopped after a random few milliseconds with 2 to 4 threads always
// answer a legal move; a hang or crash fails the whole run. KELVARAN_STRESS sets
// the number of rounds (tools/smp-stress.sh runs thousands).
TEST(ParalleleSuche, StopZuJederZeit) {
    const char* const fens[] = {
        Mittelspiel,
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
        "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    };
    const char* runden = std::getenv("KELVARAN_STRESS");
    const int anzahl = runden != nullptr ? std::atoi(runden) : 120;
    std::mt19937 zufall(12345);
    Werkzeugsuche_t suche;
    for (int i = 0; i < anzahl; ++i) {
        if (i % 10 == 0) Threads(suche, 2 + static_cast<int>(zufall() % 3));
        const Stellung_t st = Fen(fens[zufall() % 4]);
        suche.Starte(st, 60, 0, 0);
        std::this_thread::sleep_for(std::chrono::microseconds(zufall() % 4000));
        const Zug_t zug = suche.Stoppe();
        ASSERT_TRUE(Legal(st, zug)) << "round " << i;
    }
}

// Threads made for one search and ended at the next, over and over: a searcher ended
// just as it was about to wait must never stay in the pool's table of waiting ones
// (the next split would wake a searcher that no longer exists).
TEST(ParalleleSuche, ThreadsKommenUndGehen) {
    Werkzeugsuche_t suche;
    const Stellung_t st = Fen(Mittelspiel);
    for (int i = 0; i < 150; ++i) {
        const int n = (i % 3 == 2) ? 1 : 2 + i % 4;
        Threads(suche, n);
        if (i % 5 == 4) {
            suche.Starte(st, 60, 0, 0);
            std::this_thread::sleep_for(std::chrono::microseconds(500 + 100 * (i % 7)));
            ASSERT_TRUE(Legal(st, suche.Stoppe())) << "round " << i;
        } else {
            ASSERT_TRUE(Legal(st, suche.Suche(st, 2 + i % 3, 0, 0))) << "round " << i;
        }
    }
}

}  // namespace
