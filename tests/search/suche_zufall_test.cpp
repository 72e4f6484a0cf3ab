// The random players and the thread hand-offs of the searcher wrapper: go, stop,
// ponderhit, quit and the end of input, driven as a GUI would drive them.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <sstream>
#include <string>
#include <thread>

#include "../protocol/protokoll_hilfen.h"
#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "search/suche_zufall.h"
#include "search/zufallsgenerator.h"

namespace {

// A searcher and an output object on a string stream, for one position at a time.
struct Zufallsspiel {
    std::ostringstream aus;
    UciAusgabe_t ausgabe{LeereOptionstabelle, aus};
    SucheZufall_t sucher;
    std::unique_ptr<Suchauftrag_t> auftrag = std::make_unique<Suchauftrag_t>();

    explicit Zufallsspiel(bool matt, const char* fen) : sucher(matt) {
        aus.str("");  // drop the handshake
        Stellungsdaten_t daten;
        EXPECT_TRUE(SetzeStellung(auftrag->stellung, daten, fen)) << fen;
        Zugliste_t liste;
        const uint32_t* ende = ErzeugeZuege(auftrag->stellung, daten, liste);
        for (const uint32_t* z = liste; z != ende; ++z)
            if (IstLegal(auftrag->stellung, static_cast<Zug_t>(*z), daten))
                auftrag->wurzelzuege[auftrag->anzahlWurzelzuege++] = *z;
        auftrag->ausgabe = &ausgabe;
    }

    std::string Suche(unsigned flags = 0) {
        auftrag->flags = flags;
        sucher.Go(*auftrag);
        sucher.WarteBisUntaetig();
        return aus.str();
    }
};

TEST(Zufallsspieler, EinzigerZugWirdGespielt) {
    // Black's king on h8 in check from the rook on a8: only Kh7 is legal.
    for (bool matt : {false, true}) {
        Zufallsspiel spiel(matt, "R6k/8/5K2/8/8/8/8/8 b - - 0 1");
        ASSERT_EQ(spiel.auftrag->anzahlWurzelzuege, 1);
        EXPECT_EQ(spiel.Suche(), "bestmove h8h7\n") << matt;
    }
}

TEST(Zufallsspieler, MattModusNimmtDasErsteMatt) {
    // Both rooks mate on the eighth rank; the list holds Ra1-a8 before Rb1-b8.
    Zufallsspiel spiel(true, "6k1/5ppp/8/8/8/8/8/RR4K1 w - - 0 1");
    EXPECT_EQ(SucheZufall_t::MattInEins(spiel.auftrag->stellung, spiel.auftrag->wurzelzuege,
                                        spiel.auftrag->anzahlWurzelzuege),
              MachZug(56, 0, Turm));
    for (int i = 0; i < 5; ++i) {
        spiel.aus.str("");
        EXPECT_EQ(spiel.Suche(), "bestmove a1a8\n");
    }
}

TEST(Zufallsspieler, OhneMattZiehtEinenLegalenZug) {
    Zufallsspiel spiel(true, nullptr);
    for (int i = 0; i < 20; ++i) {
        spiel.aus.str("");
        const std::string zeile = spiel.Suche();
        ASSERT_EQ(zeile.rfind("bestmove ", 0), 0u) << zeile;
        bool gefunden = false;
        for (int k = 0; k < spiel.auftrag->anzahlWurzelzuege; ++k) {
            char text[8];
            ZugText(spiel.auftrag->stellung, static_cast<Zug_t>(spiel.auftrag->wurzelzuege[k]), text);
            gefunden |= zeile == "bestmove " + std::string(text) + "\n";
        }
        EXPECT_TRUE(gefunden) << zeile;
    }
}

TEST(Zufallsspieler, KeinZugKeineAntwort) {
    Zufallsspiel spiel(false, "k7/8/1QK5/8/8/8/8/8 b - - 0 1");  // stalemate
    EXPECT_EQ(spiel.Suche(), "");
}

TEST(Zufallsspieler, PonderWartetAufPonderhitOderStop) {
    Zufallsspiel spiel(false, nullptr);
    spiel.auftrag->flags = StartPonder;
    spiel.sucher.Go(*spiel.auftrag);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_TRUE(spiel.sucher.ponder.load());
    spiel.sucher.ponderhit();
    spiel.sucher.WarteBisUntaetig();
    EXPECT_EQ(spiel.aus.str().rfind("bestmove ", 0), 0u);

    spiel.aus.str("");
    spiel.sucher.Go(*spiel.auftrag);
    spiel.sucher.Stop();
    EXPECT_EQ(spiel.aus.str().rfind("bestmove ", 0), 0u);
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

// The whole program with a random player: no options, moves for either side.
TEST(Zufallsprogramm, SpieltUndKuendigtNichtsAn) {
    // No "quit": it would silence a "bestmove" that has not been printed yet.
    const Lauf_t lauf = Starte("uci\nposition startpos moves e2e4\ngo wtime 1000 btime 1000\nisready\n",
                               {"--RndMate"});
    const auto zeilen = Zeilen(lauf.aus);
    ASSERT_GE(zeilen.size(), 4u) << lauf.aus;
    EXPECT_EQ(zeilen[0], "id name Kelvaran 2017-01-01");
    EXPECT_EQ(zeilen[2], "uciok");
    // "isready" does not wait for the search: both lines come, in either order.
    const std::string rest = zeilen[3] + "|" + (zeilen.size() > 4 ? zeilen[4] : "");
    EXPECT_NE(rest.find("readyok"), std::string::npos) << lauf.aus;
    EXPECT_NE(rest.find("bestmove "), std::string::npos) << lauf.aus;
    EXPECT_EQ(lauf.status, 0);
}

TEST(Zufallsprogramm, QuitWaehrendPonderDruecktNichtsMehr) {
    const Lauf_t lauf = Starte("uci\nposition startpos\ngo ponder\nisready\nquit\n", {"--Rnd"});
    const auto zeilen = Zeilen(lauf.aus);
    ASSERT_EQ(zeilen.size(), 4u) << lauf.aus;
    EXPECT_EQ(zeilen[3], "readyok");
    EXPECT_EQ(lauf.status, 0);
}

TEST(Zufallsprogramm, StopBeendetPonderMitZug) {
    const Lauf_t lauf = Starte("uci\nposition startpos\ngo ponder\nstop\nquit\n", {"--Rnd"});
    const auto zeilen = Zeilen(lauf.aus);
    ASSERT_EQ(zeilen.size(), 4u) << lauf.aus;
    EXPECT_EQ(zeilen[3].rfind("bestmove ", 0), 0u);
}

TEST(Zufallsprogramm, EingabeEndeWaehrendPonderEndetSauber) {
    const Lauf_t lauf = Starte("uci\nposition startpos\ngo infinite ponder\n", {"--Rnd"});
    EXPECT_EQ(lauf.status, 0);
}

TEST(Zufallsprogramm, SearchmovesSchraenktEin) {
    for (int i = 0; i < 10; ++i) {
        const Lauf_t lauf = Starte("uci\nposition startpos\ngo searchmoves g1f3 zz99 e2e4\nisready\n", {"--Rnd"});
        EXPECT_TRUE(lauf.aus.find("bestmove g1f3") != std::string::npos ||
                    lauf.aus.find("bestmove e2e4") != std::string::npos)
            << lauf.aus;
    }
    const Lauf_t lauf = Starte(
        "uci\nposition startpos\ngo excludemoves a2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 f2f4 g2g3 "
        "g2g4 h2h3 h2h4 b1a3 b1c3 g1h3\nisready\n",
        {"--Rnd"});
    EXPECT_NE(lauf.aus.find("bestmove g1f3"), std::string::npos) << lauf.aus;
}

TEST(Zufallsprogramm, GoMitUnsinnZahlen) {
    const Lauf_t lauf = Starte(
        "uci\nposition startpos\ngo wtime -5 btime abc movestogo 99999999999999999999 depth x nodes -\nisready\n",
        {"--Rnd"});
    EXPECT_NE(lauf.aus.find("bestmove "), std::string::npos) << lauf.aus;
    EXPECT_EQ(lauf.status, 0);
}

}  // namespace
