// The random players: one position at a time on the searcher thread, then the whole
// program driven as a GUI drives it (go, stop, ponderhit, quit, end of input).
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "../board/brett_hilfe.h"
#include "../protocol/protokoll_hilfen.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "search/suche_zufall.h"
#include "search/zufallsgenerator.h"

namespace {

struct Zufallsspiel_t {
    std::ostringstream aus;
    UciAusgabe_t ausgabe{LeereOptionstabelle, aus};
    SucheZufall_t sucher;
    std::unique_ptr<Suchauftrag_t> auftrag = std::make_unique<Suchauftrag_t>();

    Zufallsspiel_t(bool matt, const char* fen) : sucher(matt) {
        Stellungsdaten_t daten;
        EXPECT_TRUE(SetzeStellung(auftrag->stellung, daten, fen)) << fen;
        for (Zug_t z : brett_test::Legal(auftrag->stellung, daten)) auftrag->wurzelzuege[auftrag->anzahlWurzelzuege++] = z;
        auftrag->ausgabe = &ausgabe;
    }
    // What one search prints, "" for nothing.
    std::string Suche() {
        aus.str("");
        sucher.Go(*auftrag);
        sucher.WarteBisUntaetig();
        return aus.str();
    }
    // Is the line the "bestmove" of one of the legal moves?
    bool Legal(const std::string& zeile) const {
        char text[8];
        for (int k = 0; k < auftrag->anzahlWurzelzuege; ++k) {
            ZugText(auftrag->stellung, static_cast<Zug_t>(auftrag->wurzelzuege[k]), text);
            if (zeile == "bestmove " + std::string(text) + "\n") return true;
        }
        return false;
    }
};

TEST(Zufallsspieler, Zugwahl) {
    for (bool matt : {false, true}) {
        // In check from the rook on a8, Black has only Kh7.
        EXPECT_EQ(Zufallsspiel_t(matt, "R6k/8/5K2/8/8/8/8/8 b - - 0 1").Suche(), "bestmove h8h7\n");
        EXPECT_EQ(Zufallsspiel_t(matt, "k7/8/1QK5/8/8/8/8/8 b - - 0 1").Suche(), "");  // stalemate
    }
    // Both rooks mate; the mate mode takes the first in the list, never a random one of the two.
    Zufallsspiel_t matt(true, "6k1/5ppp/8/8/8/8/8/RR4K1 w - - 0 1");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(matt.Suche(), "bestmove a1a8\n");
    Zufallsspiel_t ohneMatt(true, nullptr);
    for (int i = 0; i < 20; ++i) EXPECT_TRUE(ohneMatt.Legal(ohneMatt.Suche()));
}

TEST(Zufallsspieler, PonderWartetAufPonderhit) {
    Zufallsspiel_t spiel(false, nullptr);
    spiel.aus.str("");
    spiel.auftrag->flags = StartPonder;
    spiel.sucher.Go(*spiel.auftrag);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(spiel.aus.str(), "");
    spiel.sucher.ponderhit();
    spiel.sucher.WarteBisUntaetig();
    EXPECT_TRUE(spiel.Legal(spiel.aus.str())) << spiel.aus.str();
}

// What "--Rnd" prints after its handshake. Without "quit", the end of input stops the
// search and waits for its move, so the output does not depend on thread timing.
std::vector<std::string> Nach(const std::string& befehle) {
    const Lauf_t l = Starte("uci\nposition startpos\n" + befehle, {"--Rnd"});
    EXPECT_EQ(l.status, 0);
    const size_t n = std::min<size_t>(l.aus.size(), 3);
    EXPECT_EQ(std::vector<std::string>(l.aus.begin(), l.aus.begin() + n), HandshakeOhneOptionen);
    return std::vector<std::string>(l.aus.begin() + n, l.aus.end());
}

// One "bestmove" line, with one of the given moves when any are given.
bool EinZug(const std::vector<std::string>& z, const std::vector<std::string>& erlaubt = {}) {
    if (z.size() != 1 || z[0].rfind("bestmove ", 0) != 0) return false;
    return erlaubt.empty() || std::find(erlaubt.begin(), erlaubt.end(), z[0].substr(9)) != erlaubt.end();
}

TEST(Zufallsprogramm, PonderEndet) {
    // "quit" silences the move of the search it stops; "stop" and the end of input let it through.
    EXPECT_EQ(Nach("go ponder\nisready\nquit\n"), std::vector<std::string>{"readyok"});
    EXPECT_TRUE(EinZug(Nach("go ponder\nstop\nquit\n")));
    EXPECT_TRUE(EinZug(Nach("go infinite ponder\n")));
}

TEST(Zufallsprogramm, GoBefehle) {
    // Unknown moves in the list are skipped.
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(EinZug(Nach("go searchmoves g1f3 zz99 e2e4\n"), {"g1f3", "e2e4"}));
    EXPECT_TRUE(EinZug(Nach("go excludemoves a2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 f2f4 g2g3 g2g4 "
                            "h2h3 h2h4 b1a3 b1c3 g1h3\n"),
                       {"g1f3"}));
    EXPECT_TRUE(EinZug(Nach("go wtime -5 btime abc movestogo 99999999999999999999 depth x nodes -\n")));
}

TEST(Zufallsgenerator, GleicheSaatGleicheFolge) {
    Zufallsgenerator_t a(42), b(42), c(43);
    bool verschieden = false;
    for (int i = 0; i < 100; ++i) {
        const uint32_t x = a.Ziehe();
        EXPECT_EQ(x, b.Ziehe());
        verschieden |= x != c.Ziehe();
    }
    EXPECT_TRUE(verschieden);
}

}  // namespace
