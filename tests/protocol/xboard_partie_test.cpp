// The game the XBoard adapter keeps: moves as GUIs write them, results, take-backs.
#include <gtest/gtest.h>

#include <string>

#include "protocol/xboard_partie.h"

namespace {

void Spiele(XBoardPartie_t& p, std::initializer_list<const char*> zuege) {
    for (const char* z : zuege) {
        const Zug_t zug = p.Finde(z);
        ASSERT_NE(zug, 0) << z;
        ASSERT_TRUE(p.Mache(zug)) << z;
    }
}

TEST(XBoardPartie, ZuegeUndPositionszeile) {
    XBoardPartie_t p;
    EXPECT_EQ(p.PositionsZeile(), "position startpos");
    Spiele(p, {"e2e4", "e7e5", "g1f3", "b8c6", "f1c4", "g8f6"});
    // Castling as xboard writes it in standard chess, and as "O-O".
    Spiele(p, {"e1g1"});
    EXPECT_EQ(p.Protokoll(), "e2e4  e7e5  g1f3  b8c6  f1c4  g8f6  e1g1  ");
    EXPECT_EQ(p.PositionsZeile(), "position startpos moves e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 e1g1");
    EXPECT_EQ(p.PositionsZeile(p.Finde("f8c5")), "position startpos moves e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 e1g1 f8c5");
    ASSERT_TRUE(p.NimmZurueck(1));
    EXPECT_NE(p.Finde("O-O"), 0);
    // Illegal, garbled and over-long texts name no move.
    for (const char* text : {"e1e3", "e2e4", "", "zz", "e7e8q", "h1h8", "e1g1xxxxxxxx", "e1g1x", "O-O-O", "0000", "O-O-Ox"})
        EXPECT_EQ(p.Finde(text), 0) << text;
    EXPECT_FALSE(p.NimmZurueck(7));
    ASSERT_TRUE(p.NimmZurueck(6));
    EXPECT_EQ(p.PositionsZeile(), "position startpos");
    EXPECT_EQ(p.LegaleZuege(), 20);
    EXPECT_EQ(p.LegaleZuegeNach(p.Finde("e2e4")), 20);
    EXPECT_EQ(p.Halbzuege(), 0);
}

TEST(XBoardPartie, UmwandlungUndFen) {
    XBoardPartie_t p;
    ASSERT_TRUE(p.Beginne("4k3/1P6/8/8/8/8/8/4K3 w - - 0 60"));
    EXPECT_EQ(p.Finde("b7b8"), 0);  // a promotion needs its piece
    const Zug_t dame = p.Finde("b7b8q");
    ASSERT_NE(dame, 0);
    EXPECT_EQ(p.Finde("b7b8Q"), dame);
    EXPECT_NE(p.Finde("b7b8n"), dame);
    ASSERT_TRUE(p.Mache(p.Finde("b7b8n")));
    EXPECT_EQ(p.PositionsZeile(), "position fen 4k3/1P6/8/8/8/8/8/4K3 w - - 0 60 moves b7b8n");
    // Words after the clocks never reach the "position" line.
    ASSERT_TRUE(p.Beginne("4k3/8/8/8/8/8/8/4K2R w K - 3 9 moves e1g1"));
    EXPECT_EQ(p.PositionsZeile(), "position fen 4k3/8/8/8/8/8/8/4K2R w K - 3 9");
    ASSERT_TRUE(p.Beginne("4k3/8/8/8/8/8/8/4K2R w K -"));
    EXPECT_EQ(p.PositionsZeile(), "position fen 4k3/8/8/8/8/8/8/4K2R w K -");
    // Unreadable or impossible positions leave the game as it was.
    for (const char* fen : {"", "rubbish", "8/8/8/8/8/8/8/8 w - - 0 1", "4k3/8/8/8/8/8/8/4K2R x K - 0 1",
                            "4k3/4Q3/8/8/8/8/8/4K3 w - - 0 1", "P3k3/8/8/8/8/8/8/4K3 w - - 0 1",
                            "4k3/8/8/8/8/8/8/4K2p b - - 0 1", "4k3/8/8/8/8/8/8/4KK2 w - - 0 1"})
        EXPECT_FALSE(p.Beginne(fen)) << fen;
    EXPECT_EQ(p.PositionsZeile(), "position fen 4k3/8/8/8/8/8/8/4K2R w K -");
}

TEST(XBoardPartie, Chess960Rochade) {
    XBoardPartie_t p;
    ASSERT_TRUE(p.Beginne("bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w KQkq - 0 1"));
    Spiele(p, {"g2g3", "g7g6"});
    const Zug_t rochade = p.Finde("O-O");
    ASSERT_NE(rochade, 0);
    EXPECT_EQ(p.Text(rochade), "O-O");
    ASSERT_TRUE(p.Mache(rochade));
    EXPECT_EQ(p.PositionsZeile(),
              "position fen bqnbrkrn/pppppppp/8/8/8/8/PPPPPPPP/BQNBRKRN w KQkq - 0 1 moves g2g3 g7g6 O-O");
}

TEST(XBoardPartie, Ergebnisse) {
    struct Fall {
        const char* fen;
        std::initializer_list<const char*> zuege;
        const char* ergebnis;
    };
    const Fall faelle[] = {
        {nullptr, {"f2f3", "e7e5", "g2g4", "d8h4"}, "0-1 {Black mates}"},
        {"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1", {"a1a8"}, "1-0 {White mates}"},
        {"7k/8/6Q1/8/8/8/8/K7 w - - 0 1", {"g6e6"}, nullptr},
        {"7k/8/6Q1/8/8/8/8/K7 w - - 0 1", {"g6f7"}, "1/2-1/2 {Stalemate}"},
        {"4k3/3Q4/8/8/8/8/8/4K3 b - - 0 1", {"e8d7"}, "1/2-1/2 {Insufficient material}"},
        {"4k3/8/8/8/8/8/4p3/2N1K3 w - - 0 1", {"c1e2"}, "1/2-1/2 {Insufficient material}"},
        {"4k3/8/3b4/8/8/8/4p3/2B1K3 w - - 0 1", {"e1e2"}, "1/2-1/2 {Dead position}"},
        {"4k3/8/8/1b6/8/8/8/2B1K3 w - - 0 1", {"c1f4"}, nullptr},
        {"4k3/8/8/8/8/8/8/2NNK3 w - - 0 1", {"c1e2"}, nullptr},
        {"4k3/8/8/8/8/8/7r/R3K3 w - - 99 80", {"a1a2"}, "1/2-1/2 {Draw by 50 move rule}"},
        {"4k3/8/8/8/8/8/7r/R3K3 w - - 98 80", {"a1a2"}, nullptr},
        // Mate on the hundredth quiet half-move is mate.
        {"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 99 80", {"a1a8"}, "1-0 {White mates}"},
        {nullptr, {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1"}, nullptr},
        {nullptr, {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6", "f3g1", "f6g8"}, "1/2-1/2 {Draw by repetition}"},
    };
    for (const Fall& f : faelle) {
        SCOPED_TRACE(f.fen != nullptr ? f.fen : "startpos");
        XBoardPartie_t p;
        ASSERT_TRUE(p.Beginne(f.fen));
        EXPECT_EQ(p.Ergebnis(), nullptr);
        Spiele(p, f.zuege);
        const char* e = p.Ergebnis();
        EXPECT_EQ(std::string(e != nullptr ? e : "-"), std::string(f.ergebnis != nullptr ? f.ergebnis : "-"));
    }
}

}  // namespace
