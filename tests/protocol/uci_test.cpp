// The UCI interpreter: dispatch, "position", "setoption", "perft", "quit".
#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "protocol/ausgabe.h"
#include "protocol/uci.h"
#include "protokoll_hilfen.h"
#include "timing/zeitkontrolle.h"

namespace {

// Prints like any output object and also records the error reports.
class MitschriftAusgabe_t : public Ausgabe_t {
public:
    explicit MitschriftAusgabe_t(std::ostream& a) : Ausgabe_t(a) {}
    void fehler(const char* meldung, const char* argument) override {
        fehlerListe.emplace_back(meldung, argument != nullptr ? argument : "<none>");
    }
    void warnung(const char*, const char*) override {}
    void bestzug(const Stellung_t&, Zug_t, Zug_t) override {}
    void variante(const Stellung_t&, const Zug_t*, int, int, int, int, int, int, int64_t, uint64_t, int, int64_t,
                  bool) override {}
    std::vector<std::pair<std::string, std::string>> fehlerListe;
};

class UciTest : public ::testing::Test {
protected:
    UciTest() { InitTabellen(); }
    Zeitkontrolle_t zk;
    std::ostringstream aus;
    MitschriftAusgabe_t ausgabe{aus};
    std::unique_ptr<UciInterface_t> uci = std::make_unique<UciInterface_t>(Optionstabelle, &zk, &ausgabe);

    void Befehl(const char* zeile) { uci->befehl(zeile); }
    std::vector<std::string> Z() { return Zeilen(aus.str()); }

    // The interpreter's position must be the one this FEN describes.
    void ErwarteStellung(const char* fen) {
        Stellung_t soll{};
        Stellungsdaten_t sollDaten{};
        ASSERT_TRUE(SetzeStellung(soll, sollDaten, fen)) << fen;
        const Stellung_t& ist = uci->Stellung();
        EXPECT_EQ(ist.amZug, soll.amZug);
        EXPECT_EQ(ist.ep, soll.ep);
        EXPECT_EQ(ist.rochaden, soll.rochaden);
        EXPECT_EQ(ist.chess960, soll.chess960);
        for (int s = 0; s < 2; ++s) {
            for (int t = 0; t < 7; ++t) EXPECT_EQ(ist.seite[s].brett[t], soll.seite[s].brett[t]) << s << t;
        }
        EXPECT_EQ(uci->Daten().schluessel, sollDaten.schluessel);
    }
    void ErwarteFehler(const std::string& meldung, const std::string& argument) {
        ASSERT_EQ(ausgabe.fehlerListe.size(), 1u);
        EXPECT_EQ(ausgabe.fehlerListe[0].first, meldung);
        EXPECT_EQ(ausgabe.fehlerListe[0].second, argument);
    }
};

const char* const Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const char* const NachE4E5 = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2";

// ---- dispatch

TEST_F(UciTest, IsreadyAnswersReadyok) {
    Befehl("isready");
    Befehl("  isready");
    EXPECT_EQ(Z(), (std::vector<std::string>{"readyok", "readyok"}));
}

TEST_F(UciTest, UnknownWordsAndBlankLinesAreIgnored) {
    Befehl("");
    Befehl("   \t ");
    Befehl("foo bar");
    Befehl("ISREADY");
    Befehl("isready_now");
    Befehl("uci");
    Befehl("ucinewgame");
    EXPECT_TRUE(Z().empty());
    EXPECT_TRUE(ausgabe.fehlerListe.empty());
    ErwarteStellung(Start);
}

TEST_F(UciTest, DebugFollowsTheWordOn) {
    EXPECT_FALSE(uci->Debug());
    Befehl("debug on");
    EXPECT_TRUE(uci->Debug());
    Befehl("debug off");
    EXPECT_FALSE(uci->Debug());
    Befehl("debug");
    EXPECT_FALSE(uci->Debug());
}

TEST_F(UciTest, SetoptionChangesTheSetSilently) {
    Befehl("setoption name MultiPV value 50");
    Befehl("setoption name Hash value");
    Befehl("setoption name Nonsense value 1");
    EXPECT_EQ(uci->Optionen().Zahl(uci->Optionen().Index("MultiPV")), 10);
    EXPECT_EQ(uci->Optionen().Zahl(uci->Optionen().Index("Hash")), 3);
    EXPECT_TRUE(Z().empty());
}

TEST_F(UciTest, QuitSilencesTheOutputAndSetsTheFlag) {
    EXPECT_FALSE(uci->Beendet());
    Befehl("quit");
    EXPECT_TRUE(uci->Beendet());
    Befehl("isready");
    EXPECT_TRUE(Z().empty());
}

// ---- position

TEST_F(UciTest, StartposWithMoves) {
    Befehl("position startpos moves e2e4 e7e5");
    ErwarteStellung(NachE4E5);
    EXPECT_TRUE(ausgabe.fehlerListe.empty());
}

TEST_F(UciTest, IllegalMoveStopsTheListKeepingEarlierMoves) {
    Befehl("position startpos moves e2e4 e7e5 e2e5 g1f3");
    ErwarteStellung(NachE4E5);
    ErwarteFehler("position: illegal move: ", "e2e5");
}

TEST_F(UciTest, UnreadableMoveTextIsReported) {
    Befehl("position startpos moves e2e4 xyz");
    ErwarteFehler("position: illegal move: ", "xyz");
    ErwarteStellung("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
}

TEST_F(UciTest, NewPositionCommandStartsAfresh) {
    Befehl("position startpos moves e2e4");
    Befehl("position startpos moves d2d4");
    ErwarteStellung("rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b KQkq - 0 1");
}

TEST_F(UciTest, FenWithMoves) {
    Befehl("position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e4 e8d7");
    ErwarteStellung("8/3k4/8/8/4P3/8/8/4K3 w - - 0 2");
}

TEST_F(UciTest, BadFenGivesTheStartPosition) {
    Befehl("position startpos moves e2e4");
    Befehl("position fen xyz/8 w - - 0 1 moves e2e4");
    ErwarteStellung(Start);
    ErwarteFehler("position: Illegal FEN string: ", "xyz/8 w - - 0 1 moves e2e4");
}

TEST_F(UciTest, FensBeyondThePieceLimitsAreRefused) {
    const char* zuViele[] = {
        "NNNNNNNN/NNN2k2/8/8/8/8/8/4K3 w - - 0 1",  // eleven white knights
        "4k3/8/8/8/8/P7/PPPPPPPP/4K3 w - - 0 1",    // nine white pawns
        "4k3/8/8/8/8/8/8/3KK3 w - - 0 1",           // two white kings
    };
    for (const char* fen : zuViele) {
        ausgabe.fehlerListe.clear();
        Befehl("position fen 8/8/8/8/8/8/k7/K7 w - - 0 1");
        Befehl((std::string("position fen ") + fen).c_str());
        ErwarteStellung(Start);
        ErwarteFehler("position: Illegal FEN string: ", fen);
    }
    // Ten knights are still a position.
    ausgabe.fehlerListe.clear();
    Befehl("position fen NNNNNNNN/NN3k2/8/8/8/8/8/4K3 w - - 0 1");
    EXPECT_TRUE(ausgabe.fehlerListe.empty());
    ErwarteStellung("NNNNNNNN/NN3k2/8/8/8/8/8/4K3 w - - 0 1");
}

TEST_F(UciTest, PositionWithoutStartposOrFen) {
    Befehl("position startpos moves e2e4");
    Befehl("position");
    ErwarteFehler("'position' without 'startpos' and without 'fen'", "<none>");
    ErwarteStellung("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
}

TEST_F(UciTest, Chess960Positions) {
    Befehl("position Chess960");
    ErwarteFehler("'position Chess960' without number", "<none>");
    ErwarteStellung(Start);

    Befehl("position Chess960 518");
    ErwarteStellung(Start);
    EXPECT_EQ(uci->Stellung().chess960, 0);

    Befehl("position Chess960 0 moves e2e4");
    ErwarteStellung("bbqnnrkr/pppppppp/8/8/4P3/8/PPPP1PPP/BBQNNRKR b KQkq - 0 1");
    EXPECT_EQ(uci->Stellung().chess960, 1);
    Befehl("position Chess960 960");
    ErwarteStellung("bbqnnrkr/pppppppp/8/8/8/8/PPPPPPPP/BBQNNRKR w KQkq - 0 1");
    EXPECT_EQ(uci->Stellung().historieAnzahl, 1u);
}

TEST_F(UciTest, CastlingTokens) {
    Befehl("position startpos moves e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 O-O");
    ErwarteStellung("r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQ1RK1 b kq - 5 4");
    Befehl("position startpos moves d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 O-O-O O-O-O");
    ErwarteStellung("2kr1bnr/pppqpppp/2n5/3p1b2/3P1B2/2N5/PPPQPPPP/2KR1BNR w - - 8 6");
    Befehl("position startpos moves d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 e1c1 e8c8");
    ErwarteStellung("2kr1bnr/pppqpppp/2n5/3p1b2/3P1B2/2N5/PPPQPPPP/2KR1BNR w - - 8 6");
    EXPECT_TRUE(ausgabe.fehlerListe.empty());
}

TEST_F(UciTest, PromotionNeedsItsLetter) {
    Befehl("position fen 8/P6k/8/8/8/8/8/K7 w - - 0 1 moves a7a8q");
    ErwarteStellung("Q7/7k/8/8/8/8/8/K7 b - - 0 1");
    Befehl("position fen 8/P6k/8/8/8/8/8/K7 w - - 0 1 moves a7a8n h7g6");
    ErwarteStellung("N7/8/6k1/8/8/8/8/K7 w - - 1 2");
    EXPECT_TRUE(ausgabe.fehlerListe.empty());
    Befehl("position fen 8/P6k/8/8/8/8/8/K7 w - - 0 1 moves a7a8");
    ErwarteFehler("position: illegal move: ", "a7a8");
}

TEST_F(UciTest, MovesKeepTheKeyHistory) {
    Befehl("position startpos moves g1f3 g8f6 f3g1 f6g8");
    const Stellung_t& st = uci->Stellung();
    ASSERT_EQ(st.historieAnzahl, 5u);
    EXPECT_EQ(st.Historie[4], st.Historie[0]);
    EXPECT_EQ(st.Historie[4], uci->Daten().schluessel);
    Befehl("position startpos moves g1f3 g8f6 e2e4");
    EXPECT_EQ(uci->Stellung().historieAnzahl, 1u);
}

// ---- perft

TEST_F(UciTest, PerftThroughTheInterpreter) {
    Befehl("perft depth 3");
    const std::vector<std::string> z = Z();
    ASSERT_EQ(z.size(), 1u);
    EXPECT_TRUE(std::regex_match(z[0], std::regex("info depth 3 time [0-9]+ nodes 8902"))) << z[0];
}

TEST_F(UciTest, PerftCountsTheCurrentPositionAndLeavesItAlone) {
    Befehl("position startpos moves e2e4");
    Befehl("perft depth 1");
    Befehl("perft");
    const std::vector<std::string> z = Z();
    ASSERT_EQ(z.size(), 2u);
    EXPECT_TRUE(std::regex_match(z[0], std::regex("info depth 1 time [0-9]+ nodes 20"))) << z[0];
    EXPECT_EQ(z[1], "info string perft without depth");
    ErwarteStellung("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
}

}  // namespace
