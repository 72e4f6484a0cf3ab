// The output classes: exact line formats of every protocol.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protokoll_hilfen.h"
#include "timing/zeitkontrolle.h"

namespace {

const Zug_t E2E4 = Koordinaten("e2", "e4", BauernZug);
const Zug_t E7E5 = Koordinaten("e7", "e5", BauernZug);
const Zug_t G1F3 = Koordinaten("g1", "f3", Springer);

// ---- score text

TEST(UciWert, CentipawnsRoundAwayFromZero) {
    const int a = -1000000, b = 1000000;
    EXPECT_EQ(UciWertText(2, a, b), " score cp 1");
    EXPECT_EQ(UciWertText(-2, a, b), " score cp -1");
    EXPECT_EQ(UciWertText(1, a, b), " score cp 0");
    EXPECT_EQ(UciWertText(-1, a, b), " score cp 0");
    EXPECT_EQ(UciWertText(0, a, b), " score cp 0");
    EXPECT_EQ(UciWertText(10, a, b), " score cp 1");
    EXPECT_EQ(UciWertText(11, a, b), " score cp 2");
    EXPECT_EQ(UciWertText(-10, a, b), " score cp -1");
    EXPECT_EQ(UciWertText(-11, a, b), " score cp -2");
    EXPECT_EQ(UciWertText(450000, a, b), " score cp 45000");
    EXPECT_EQ(UciWertText(-450000, a, b), " score cp -45000");
}

TEST(UciWert, MateInMovesForBothSides) {
    const int a = -1000000, b = 1000000;
    EXPECT_EQ(UciWertText(499999, a, b), " score mate 1");
    EXPECT_EQ(UciWertText(499998, a, b), " score mate 1");
    EXPECT_EQ(UciWertText(499997, a, b), " score mate 2");
    EXPECT_EQ(UciWertText(-499998, a, b), " score mate -1");
    EXPECT_EQ(UciWertText(-499996, a, b), " score mate -2");
}

TEST(UciWert, BoundsAgainstTheWindow) {
    EXPECT_EQ(UciWertText(100, 0, 100), " score cp 10 lowerbound");
    EXPECT_EQ(UciWertText(0, 0, 100), " score cp 0 upperbound");
    EXPECT_EQ(UciWertText(-50, 0, 100), " score cp -5 upperbound");
    EXPECT_EQ(UciWertText(50, 0, 100), " score cp 5");
    EXPECT_EQ(UciWertText(499999, 0, 100), " score mate 1 lowerbound");
}

TEST(XBoardWertTest, MatesCountFrom32767) {
    EXPECT_EQ(XBoardWert(499999), 32766);
    EXPECT_EQ(XBoardWert(-499998), -32765);
    EXPECT_EQ(XBoardWert(150), 15);
    EXPECT_EQ(XBoardWert(-2), -1);
    EXPECT_EQ(XBoardWert(1), 0);
    EXPECT_EQ(XBoardWert(-1), 0);
}

TEST(Quetschen, RunsOfBlanksBecomeOne) {
    std::string s = "info  time       12 nodes   3  ";
    QuetscheLeerzeichen(s);
    EXPECT_EQ(s, "info time 12 nodes 3 ");
}

// ---- UCI

class UciAusgabeTest : public ::testing::Test {
protected:
    Startstellung_t start;
    std::ostringstream aus;
    UciAusgabe_t ausgabe{LeereOptionstabelle, aus};
    // What was printed after the identification.
    std::vector<std::string> Neu() {
        std::vector<std::string> z = Zeilen(aus.str());
        return std::vector<std::string>(z.begin() + 3, z.end());
    }
};

TEST_F(UciAusgabeTest, HandshakeWithoutOptions) {
    EXPECT_EQ(aus.str(), "id name Kelvaran 2017-01-01\nid author the Kelvaran developers\nuciok\n");
}

TEST_F(UciAusgabeTest, StatisticsLine) {
    ausgabe.statistik(4, 9, 2000, 1000000, 17, 0);
    ausgabe.statistik(4, 2, 0, 12345, 0, 3);
    EXPECT_EQ(Neu(), (std::vector<std::string>{
                         "info depth 5 seldepth 9 time 2000 nodes 1000000 nps 500000 hashfull 17",
                         "info depth 5 seldepth 5 time 1 nodes 12345 nps 12345000 hashfull 0 tbhits 3"}));
}

TEST_F(UciAusgabeTest, BestMoveWithAndWithoutPonder) {
    ausgabe.bestzug(start.st, E2E4, E7E5);
    ausgabe.bestzug(start.st, E2E4, 0);
    // Squares without a kind are no ponder move.
    ausgabe.bestzug(start.st, E2E4, static_cast<Zug_t>(E7E5 & 0x0fff));
    EXPECT_EQ(Neu(), (std::vector<std::string>{"bestmove e2e4 ponder e7e5", "bestmove e2e4", "bestmove e2e4"}));
}

TEST_F(UciAusgabeTest, CurrentMoveLine) {
    ausgabe.aktuellerZug(start.st, G1F3, 3, 250);
    EXPECT_EQ(Neu(), std::vector<std::string>{"info currmove g1f3 currmovenumber 3 hashfull 250"});
}

TEST_F(UciAusgabeTest, VariationLine) {
    const Zug_t pv[] = {E2E4, E7E5, G1F3};
    ausgabe.variante(start.st, pv, 3, 130, -1000000, 1000000, 6, 11, 1500, 3000000, 42, 0, false);
    EXPECT_EQ(Neu(), std::vector<std::string>{"info depth 7 seldepth 11 score cp 13 time 1500 nodes 3000000 nps "
                                              "1998667 hashfull 42 pv e2e4 e7e5 g1f3"});
}

TEST_F(UciAusgabeTest, VariationAtTimeZeroShowsOneMillisecond) {
    const Zug_t pv[] = {E2E4};
    ausgabe.variante(start.st, pv, 1, 499999, -1000000, 1000000, 0, 0, 0, 1000, 0, 5, false);
    EXPECT_EQ(Neu(), std::vector<std::string>{
                         "info depth 1 seldepth 1 score mate 1 time 1 nodes 1000 nps 500000 hashfull 0 tbhits 5 pv e2e4"});
}

TEST_F(UciAusgabeTest, VariationWithBoundAndSuppression) {
    const Zug_t pv[] = {E2E4};
    ausgabe.variante(start.st, pv, 1, 40, 50, 60, 0, 0, 9, 10, 0, 0, false);
    ausgabe.variante(start.st, pv, 1, 40, 0, 60, 0, 0, 9, 10, 0, 0, true);
    EXPECT_EQ(Neu(), std::vector<std::string>{
                         "info depth 1 seldepth 1 score cp 4 upperbound time 9 nodes 10 nps 1000 hashfull 0 pv e2e4"});
}

TEST_F(UciAusgabeTest, LongVariationIsCutAtAWholeMove) {
    std::vector<Zug_t> pv(400, G1F3);
    ausgabe.variante(start.st, pv.data(), 400, 0, -1, 1, 0, 0, 5, 5, 0, 0, false);
    ausgabe.multiPv(start.st, pv.data(), 400, 1, 0, 0);
    for (const std::string& z : Neu()) {
        EXPECT_LT(z.size(), 1000u);
        EXPECT_GE(z.size() + 5, 1000u) << "another move would still fit";
        EXPECT_EQ(z.substr(z.size() - 5), " g1f3");
    }
}

TEST_F(UciAusgabeTest, MultiPvLineIsNeverABound) {
    const Zug_t pv[] = {E2E4, E7E5};
    ausgabe.multiPv(start.st, pv, 2, 2, 130, 5);
    ausgabe.multiPv(start.st, pv, 0, 3, -499998, 5);
    EXPECT_EQ(Neu(), (std::vector<std::string>{"info multipv 2 depth 6 score cp 13 pv e2e4 e7e5",
                                               "info multipv 3 depth 6 score mate -1 pv"}));
}

TEST_F(UciAusgabeTest, ErrorsAreNotShownToUciGuis) {
    ausgabe.fehler("position: illegal move: ", "e2e5");
    ausgabe.warnung("something", nullptr);
    EXPECT_TRUE(Neu().empty());
}

TEST_F(UciAusgabeTest, SilentFlagStopsEveryLine) {
    ausgabe.schweigen = true;
    ausgabe.bestzug(start.st, E2E4, E7E5);
    ausgabe.zeile("readyok");
    EXPECT_TRUE(Neu().empty());
}

TEST(UciAusgabeHandshake, AnnouncesVisibleOptionsInTableOrder) {
    std::ostringstream aus;
    UciAusgabe_t ausgabe(Optionstabelle, aus);
    EXPECT_EQ(Zeilen(aus.str()), Handshake);
}

TEST(UciAusgabeHandshake, ComboIsAnnouncedWithItsList) {
    const Option_t tabelle[] = {
        {OptionCombo, 1, "Stil", "normal", 0, 0, "solide var normal"},
        {0, 0, nullptr, nullptr, 0, 0, nullptr},
    };
    std::ostringstream aus;
    UciAusgabe_t ausgabe(tabelle, aus);
    EXPECT_EQ(Zeilen(aus.str())[2], "option name Stil type check default normal solide var normal");
}

// ---- UCI test runs

TEST(UciTestausgabe, PrintsCountTimesAndGeometricMean) {
    Startstellung_t start;
    Zeitkontrolle_t zk;
    std::ostringstream aus;
    UciTestausgabe_t ausgabe(&zk, aus);
    zk.start = Millisekunden() - 2000;
    ausgabe.bestzug(start.st, E2E4, 0);
    zk.start = Millisekunden() - 8000;
    ausgabe.bestzug(start.st, E2E4, 0);
    const std::vector<std::string> z = Zeilen(aus.str());
    ASSERT_EQ(z.size(), 2u);
    EXPECT_EQ(z[0].size(), 3u + 3 * 13);
    EXPECT_EQ(z[0].substr(0, 4), "  1 ");
    int n = 0;
    double s = 0, gesamt = 0, mittel = 0;
    ASSERT_EQ(std::sscanf(z[1].c_str(), "%d %lf %lf %lf", &n, &s, &gesamt, &mittel), 4);
    EXPECT_EQ(n, 2);
    EXPECT_NEAR(s, 8.0, 0.5);
    EXPECT_NEAR(gesamt, 10.0, 0.5);
    EXPECT_NEAR(mittel, 4.0, 0.3);
}

TEST(UciTestausgabe, ShortSearchCountsAsTenMilliseconds) {
    Startstellung_t start;
    Zeitkontrolle_t zk;
    zk.start = Millisekunden() + 60000;  // a clock step backwards must not give a negative time
    std::ostringstream aus;
    UciTestausgabe_t ausgabe(&zk, aus);
    ausgabe.bestzug(start.st, E2E4, 0);
    EXPECT_EQ(aus.str(), "  1        0.010        0.010        0.010\n");
}

// ---- silent test output

TEST(TestAusgabeTest, RecordsResultsAndPrintsNothing) {
    Startstellung_t start;
    TestAusgabe_t ausgabe;
    const Zug_t pv[] = {E7E5, G1F3};
    ausgabe.variante(start.st, pv, 2, -35, 0, 0, 0, 0, 0, 0, 0, 0, true);
    ausgabe.bestzug(start.st, E2E4, E7E5);
    ausgabe.zeile("not shown");
    EXPECT_EQ(ausgabe.besterZug, E2E4);
    EXPECT_EQ(ausgabe.ersterZug, E7E5);
    EXPECT_EQ(ausgabe.wert, -35);
    ausgabe.variante(start.st, pv, 0, 12, 0, 0, 0, 0, 0, 0, 0, 0, false);
    EXPECT_EQ(ausgabe.ersterZug, 0);
    EXPECT_EQ(ausgabe.wert, 12);
}

// ---- XBoard

class XBoardAusgabeTest : public ::testing::Test {
protected:
    Startstellung_t start;
    Zeitkontrolle_t zk;
    Optionen_t optionen{Optionstabelle};
    std::ostringstream aus;
    XBoardAusgabe_t ausgabe{&zk, aus};
    std::vector<std::string> Z() { return Zeilen(aus.str()); }
};

TEST_F(XBoardAusgabeTest, ErrorLines) {
    ausgabe.fehler("position: illegal move: ", "e2e5");
    ausgabe.warnung("'position Chess960' without number", nullptr);
    EXPECT_EQ(Z(), (std::vector<std::string>{"Error (position: illegal move: ): e2e5",
                                             "Error ('position Chess960' without number): internal error"}));
}

TEST_F(XBoardAusgabeTest, MoveLineUnlessAnalysingOrSilenced) {
    ausgabe.bestzug(start.st, E2E4, E7E5);
    ausgabe.analyse = 1;
    ausgabe.bestzug(start.st, G1F3, 0);
    ausgabe.analyse = 0;
    ausgabe.optionen = &optionen;
    optionen.SetzeOption("setoption name NoOutput value true");
    ausgabe.bestzug(start.st, G1F3, 0);
    EXPECT_EQ(Z(), std::vector<std::string>{"move e2e4"});
}

TEST_F(XBoardAusgabeTest, OnlyNoOutputSilencesIt) {
    ausgabe.schweigen = true;
    EXPECT_FALSE(ausgabe.stumm());
    ausgabe.optionen = &optionen;
    EXPECT_FALSE(ausgabe.stumm());
    optionen.SetzeOption("setoption name NoOutput value true");
    EXPECT_TRUE(ausgabe.stumm());
}

TEST_F(XBoardAusgabeTest, ThinkingOnlyWithPostButScoreAlwaysKept) {
    const Zug_t pv[] = {E2E4, E7E5};
    ausgabe.variante(start.st, pv, 2, 150, -1000000, 1000000, 3, 5, 1234, 5000, 0, 0, false);
    EXPECT_EQ(ausgabe.letzterWert, 150);
    EXPECT_TRUE(Z().empty());
    ausgabe.post = 1;
    ausgabe.variante(start.st, pv, 2, -499998, -1000000, 1000000, 3, 5, 1234, 5000, 0, 0, true);
    EXPECT_EQ(ausgabe.letzterWert, -499998);
    EXPECT_TRUE(Z().empty());
    ausgabe.variante(start.st, pv, 2, 150, -1000000, 1000000, 3, 5, 1234, 5000, 0, 0, false);
    ausgabe.variante(start.st, pv, 1, 499999, -1000000, 1000000, 7, 5, 9, 1, 0, 0, false);
    EXPECT_EQ(Z(), (std::vector<std::string>{"3 15 123 5000 e2e4 e7e5", "7 32766 0 1 e2e4"}));
}

TEST_F(XBoardAusgabeTest, HintInBracketsAndAnalyseKeepsTheFirstMove) {
    const Zug_t pv[] = {E2E4, E7E5};
    ausgabe.post = 1;
    std::snprintf(ausgabe.hinweis, sizeof ausgabe.hinweis, "%s", "d2d4");
    ausgabe.variante(start.st, pv, 2, 0, -1, 1, 2, 2, 100, 7, 0, 0, false);
    EXPECT_STREQ(ausgabe.hinweis, "d2d4");
    ausgabe.analyse = 1;
    ausgabe.variante(start.st, pv, 2, 0, -1, 1, 2, 2, 100, 7, 0, 0, false);
    EXPECT_STREQ(ausgabe.hinweis, "e2e4");
    EXPECT_EQ(Z()[0], "2 0 10 7 (d2d4) e2e4 e7e5");
}

TEST_F(XBoardAusgabeTest, CurrentMoveIsStoredNotPrinted) {
    ausgabe.aktuellerZug(start.st, G1F3, 4, 100);
    EXPECT_EQ(ausgabe.zugNummer, 4);
    EXPECT_STREQ(ausgabe.zugText, "g1f3");
    EXPECT_TRUE(Z().empty());
}

TEST_F(XBoardAusgabeTest, LongVariationIsCut) {
    std::vector<Zug_t> pv(400, G1F3);
    ausgabe.post = 1;
    ausgabe.variante(start.st, pv.data(), 400, 0, -1, 1, 0, 0, 5, 5, 0, 0, false);
    const std::string z = Z().at(0);
    EXPECT_LT(z.size(), 1000u);
    EXPECT_GE(z.size() + 5, 1000u);
}

}  // namespace
