// The XBoard output object on its own: errors, thinking lines, the move line.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "protocol/optionen.h"
#include "protocol/xboard_ausgabe.h"
#include "protokoll_hilfen.h"

namespace {

const Stellung_t Leer{};
const Zug_t E2E4 = MachZug(FeldAus(4, 2), FeldAus(4, 4), BauernZug);
const Zug_t E7E5 = MachZug(FeldAus(4, 7), FeldAus(4, 5), BauernZug);
const Zug_t G1F3 = MachZug(FeldAus(6, 1), FeldAus(5, 3), Springer);

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
