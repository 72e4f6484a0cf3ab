// The output objects: exact lines of both protocols, errors and thinking included.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/xboard_ausgabe.h"
#include "protokoll_hilfen.h"

namespace {

// Move texts need the position only for Chess960 castling.
const Stellung_t Leer{};
const Zug_t E2E4 = MachZug(FeldAus(4, 2), FeldAus(4, 4), BauernZug);
const Zug_t E7E5 = MachZug(FeldAus(4, 7), FeldAus(4, 5), BauernZug);
const Zug_t G1F3 = MachZug(FeldAus(6, 1), FeldAus(5, 3), Springer);

// Scores are tenths of a centipawn: rounded away from zero, beyond 450000 mates in moves.
TEST(Ausgabe, Wertangaben) {
    const int a = -1000000, b = 1000000;
    const std::tuple<int, int, int, const char*> faelle[] = {
        {2, a, b, "cp 1"},          {-2, a, b, "cp -1"},        {1, a, b, "cp 0"},
        {-1, a, b, "cp 0"},         {11, a, b, "cp 2"},         {-11, a, b, "cp -2"},
        {450000, a, b, "cp 45000"}, {499999, a, b, "mate 1"},   {499998, a, b, "mate 1"},
        {499997, a, b, "mate 2"},   {-499998, a, b, "mate -1"}, {-499996, a, b, "mate -2"},
        {100, 0, 100, "cp 10 lowerbound"}, {0, 0, 100, "cp 0 upperbound"}, {50, 0, 100, "cp 5"},
        {499999, 0, 100, "mate 1 lowerbound"},
    };
    for (const auto& [wert, alpha, beta, text] : faelle)
        EXPECT_EQ(UciWertText(wert, alpha, beta), std::string(" score ") + text);
    const int xboard[][2] = {{499999, 32766}, {-499998, -32765}, {150, 15}, {-2, -1}, {1, 0}, {-1, 0}};
    for (const auto& x : xboard) EXPECT_EQ(XBoardWert(x[0]), x[1]) << x[0];
}

TEST(Ausgabe, UciZeilen) {
    std::ostringstream aus;
    UciAusgabe_t a(LeereOptionstabelle, aus);
    const Zug_t pv[] = {E2E4, E7E5, G1F3};
    a.statistik(4, 9, 2000, 1000000, 17, 0);
    a.statistik(4, 2, 0, 12345, 0, 3);
    a.bestzug(Leer, E2E4, E7E5);
    a.bestzug(Leer, E2E4, 0);
    a.bestzug(Leer, E2E4, static_cast<Zug_t>(E7E5 & 0x0fff));  // squares without a kind are no ponder move
    a.aktuellerZug(Leer, G1F3, 3, 250);
    a.variante(Leer, pv, 3, 130, -1000000, 1000000, 6, 11, 1500, 3000000, 42, 0, false);
    a.variante(Leer, pv, 1, 499999, -1000000, 1000000, 0, 0, 0, 1000, 0, 5, false);
    a.variante(Leer, pv, 1, 40, 50, 60, 0, 0, 9, 10, 0, 0, false);
    a.variante(Leer, pv, 1, 40, 50, 60, 0, 0, 9, 10, 0, 0, true);
    a.multiPv(Leer, pv, 2, 2, 130, 5);
    a.multiPv(Leer, pv, 0, 3, -499998, 5);
    a.fehler("position: illegal move: ", "e2e5");
    a.schweigen = true;  // set by "quit"
    a.bestzug(Leer, E2E4, E7E5);
    a.zeile("readyok");
    // Time 0 is shown as 1 ms; the variation divides by one millisecond more than the statistics.
    EXPECT_EQ(Zeilen(aus.str()),
              Plus(HandshakeOhneOptionen,
                   {"info depth 5 seldepth 9 time 2000 nodes 1000000 nps 500000 hashfull 17",
                    "info depth 5 seldepth 5 time 1 nodes 12345 nps 12345000 hashfull 0 tbhits 3",
                    "bestmove e2e4 ponder e7e5", "bestmove e2e4", "bestmove e2e4",
                    "info currmove g1f3 currmovenumber 3 hashfull 250",
                    "info depth 7 seldepth 11 score cp 13 time 1500 nodes 3000000 nps 1998667 hashfull 42 pv e2e4 e7e5 g1f3",
                    "info depth 1 seldepth 1 score mate 1 time 1 nodes 1000 nps 500000 hashfull 0 tbhits 5 pv e2e4",
                    "info depth 1 seldepth 1 score cp 4 upperbound time 9 nodes 10 nps 1000 hashfull 0 pv e2e4",
                    "info multipv 2 depth 6 score cp 13 pv e2e4 e7e5", "info multipv 3 depth 6 score mate -1 pv"}));
}

// GUIs choke on lines of 1000 characters or more.
TEST(Ausgabe, LangeVarianteEndetMitGanzemZug) {
    std::ostringstream aus;
    UciAusgabe_t uci(LeereOptionstabelle, aus);
    const std::vector<Zug_t> pv(400, G1F3);
    uci.variante(Leer, pv.data(), 400, 0, -1, 1, 0, 0, 5, 5, 0, 0, false);
    uci.multiPv(Leer, pv.data(), 400, 1, 0, 0);
    const std::vector<std::string> z = Zeilen(aus.str());
    ASSERT_EQ(z.size(), 5u);
    for (size_t i = 3; i < z.size(); ++i) {
        EXPECT_LT(z[i].size(), 1000u);
        EXPECT_GE(z[i].size() + 5, 1000u) << "another move would still fit";
        EXPECT_EQ(z[i].substr(z[i].size() - 5), " g1f3");
    }
}

TEST(XBoardAusgabe, Zeilen) {
    std::ostringstream aus;
    Optionen_t optionen(Optionstabelle);
    XBoardAusgabe_t a(nullptr, aus);
    const Zug_t pv[] = {E2E4, E7E5};
    a.optionen = &optionen;  // "NoOutput" is off by default
    a.schweigen = true;      // only "NoOutput" silences XBoard
    a.fehler("position: illegal move: ", "e2e5");
    a.warnung("'position Chess960' without number", nullptr);
    // Thinking needs "post", but the score is kept for the draw and resign decisions.
    a.variante(Leer, pv, 2, -700, -1, 1, 3, 5, 1234, 5000, 0, 0, false);
    EXPECT_EQ(a.Stand().letzterWert, -700);
    a.post = 1;
    a.variante(Leer, pv, 2, 150, -1, 1, 3, 5, 1234, 5000, 0, 0, false);
    a.variante(Leer, pv, 1, 499999, -1, 1, 7, 5, 9, 1, 0, 0, false);
    a.variante(Leer, pv, 1, 0, -1, 1, 7, 5, 9, 1, 0, 0, true);  // suppressed, score kept
    EXPECT_EQ(a.Stand().letzterWert, 0);
    a.bestzug(Leer, E2E4, E7E5);  // without an adapter the move is printed as it is
    // Analysing: the hint goes in brackets, the first move becomes the next hint, no move line.
    a.NeueSuche(20, "d2d4");
    EXPECT_EQ(a.Stand().letzterWert, 500000);
    EXPECT_EQ(a.Stand().zuegeGesamt, 20);
    a.analyse = 1;
    a.variante(Leer, pv, 2, -499998, -1, 1, 2, 2, 100, 7, 0, 0, false);
    EXPECT_STREQ(a.Stand().hinweis, "e2e4");
    a.aktuellerZug(Leer, G1F3, 4, 0);
    EXPECT_EQ(a.Stand().zugNummer, 4);
    EXPECT_STREQ(a.Stand().zugText, "g1f3");
    a.bestzug(Leer, G1F3, 0);
    a.analyse = 0;
    optionen.SetzeOption("setoption name NoOutput value true");
    a.bestzug(Leer, G1F3, 0);
    a.fehler("unknown command", "x");
    EXPECT_EQ(Zeilen(aus.str()), (std::vector<std::string>{"Error (position: illegal move: ): e2e5",
                                                          "Error ('position Chess960' without number): internal error",
                                                          "3 15 123 5000 e2e4 e7e5", "7 32766 0 1 e2e4", "move e2e4",
                                                          "2 -32765 10 7 (d2d4) e2e4 e7e5"}));
}

}  // namespace
