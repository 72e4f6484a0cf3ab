// The program entry: command line, protocol choice and the input loop, run on
// scripted input exactly as a GUI would drive the engine.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "protokoll_hilfen.h"

namespace {

const std::vector<std::string> HandshakeOhneOptionen = {
    "id name Kelvaran 2017-01-01",
    "id author the Kelvaran developers",
    "uciok",
};

std::vector<std::string> Plus(std::vector<std::string> a, const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// ---- protocol choice

TEST(ProgrammProtokoll, UciHandshakeThenCommands) {
    const Lauf_t l = Starte("uci\nisready\nquit\n");
    EXPECT_EQ(l.status, 0);
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok"}));
    EXPECT_EQ(l.fehler, "");
}

TEST(ProgrammProtokoll, NothingIsPrintedBeforeTheFirstLine) {
    const Lauf_t l = Starte("");
    EXPECT_EQ(l.status, 0);
    EXPECT_EQ(l.aus, "");
    EXPECT_EQ(l.fehler, "");
}

TEST(ProgrammProtokoll, OtherFirstWordsAreRejectedUntilAValidOne) {
    const Lauf_t l = Starte("UCI\n\n   \nhello world\nisready\nuci\nisready\nquit\n");
    EXPECT_EQ(l.fehler,
              "'uci' or 'xboard' expected\n'uci' or 'xboard' expected\n'uci' or 'xboard' expected\n");
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok"}));
}

TEST(ProgrammProtokoll, TrailingWhiteSpaceIsStripped) {
    const Lauf_t l = Starte("uci \t\r\nisready  \r\nquit\r\n");
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok"}));
    EXPECT_EQ(l.fehler, "");
}

TEST(ProgrammProtokoll, UcitestPrintsNoIdentification) {
    const Lauf_t l = Starte("ucitest\nisready\nquit\n");
    EXPECT_EQ(l.aus, "readyok\n");
}

TEST(ProgrammProtokoll, XboardReportsErrorsInItsOwnForm) {
    const Lauf_t l = Starte("xboard\nposition fen bad\nposition startpos moves e2e5\nisready\nquit\n");
    EXPECT_EQ(Zeilen(l.aus), (std::vector<std::string>{"Error (position: Illegal FEN string: ): bad",
                                                       "Error (position: illegal move: ): e2e5", "readyok"}));
}

// ---- input loop

TEST(ProgrammEingabe, NothingFollowsQuit) {
    const Lauf_t l = Starte("uci\nquit\nisready\nperft depth 1\n");
    EXPECT_EQ(l.status, 0);
    EXPECT_EQ(Zeilen(l.aus), Handshake);
}

TEST(ProgrammEingabe, EndOfInputWithoutQuitEndsCleanly) {
    const Lauf_t l = Starte("uci\nposition startpos moves e2e4\nisready");
    EXPECT_EQ(l.status, 0);
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok"}));
    EXPECT_EQ(l.fehler, "");
}

TEST(ProgrammEingabe, OverlongLineArrivesInPieces) {
    // The first 39999 characters are one unknown word; the tail is read as a line of its own.
    const std::string lang = std::string(39999, 'a') + "isready";
    const Lauf_t l = Starte("uci\n" + lang + "\n" + std::string(100000, 'b') + "\nquit\n");
    EXPECT_EQ(l.status, 0);
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok"}));
}

TEST(ProgrammEingabe, LineOfExactlyTheBufferFits) {
    const std::string genau = "isready" + std::string(39992, ' ');
    ASSERT_EQ(genau.size(), 39999u);
    const Lauf_t l = Starte("uci\n" + genau + "\nisready\nquit\n");
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok", "readyok"}));
}

TEST(ProgrammEingabe, OverlongSetoptionDoesNoHarm) {
    const Lauf_t l =
        Starte("uci\nsetoption name BookFile value " + std::string(50000, 'x') + "\nisready\nquit\n");
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"readyok"}));
}

TEST(ProgrammEingabe, PerftFromTheCommandLoop) {
    const Lauf_t l = Starte("uci\nperft depth 3\nquit\n");
    const std::vector<std::string> z = Zeilen(l.aus);
    ASSERT_EQ(z.size(), Handshake.size() + 1);
    EXPECT_TRUE(std::regex_match(z.back(), std::regex("info depth 3 time [0-9]+ nodes 8902"))) << z.back();
}

// ---- command line

TEST(ProgrammArgumente, IllegalArgumentsAreReportedWithTheirPosition) {
    const Lauf_t l = Starte("uci\nquit\n", {"foo", "--rnd", "two words"});
    EXPECT_EQ(l.status, 0);
    EXPECT_EQ(l.fehler,
              "illegal command line argument argv[1] = \"foo\"\n"
              "illegal command line argument argv[2] = \"--rnd\"\n"
              "illegal command line argument argv[3] = \"two words\"\n");
    EXPECT_EQ(Zeilen(l.aus), Handshake);
}

TEST(ProgrammArgumente, RandomPlayerAnnouncesNoOptions) {
    const Lauf_t l = Starte("uci\nquit\n", {"--Rnd", "extra"});
    EXPECT_EQ(l.fehler, "illegal command line argument argv[2] = \"extra\"\n");
    EXPECT_EQ(Zeilen(l.aus), HandshakeOhneOptionen);
}

TEST(ProgrammArgumente, BothRandomSwitchesMayRepeat) {
    const Lauf_t l = Starte("uci\nquit\n", {"--RndMate", "--Rnd"});
    EXPECT_EQ(l.fehler, "");
    EXPECT_EQ(Zeilen(l.aus), HandshakeOhneOptionen);
}

TEST(ProgrammArgumente, BitbaseSwitchWithoutThreadsFallsThrough) {
    const Lauf_t l = Starte("uci\nquit\n", {"--CreateBitbase", "a", "b", "c"});
    EXPECT_EQ(l.fehler,
              "illegal command line argument argv[1] = \"--CreateBitbase\"\n"
              "illegal command line argument argv[2] = \"a\"\n"
              "illegal command line argument argv[3] = \"b\"\n"
              "illegal command line argument argv[4] = \"c\"\n");
    EXPECT_EQ(Zeilen(l.aus), Handshake);
}

}  // namespace

namespace {

// The trainer's commands reach it through the interpreter, with their exact reports.
TEST(ProgrammProtokoll, TimeBefehleErreichenDenTrainer) {
    const Lauf_t l = Starte("uci\ntime add /nicht/da.log\ntime learn\ntime write /nicht/da/netz.txt\nquit\n");
    EXPECT_EQ(Zeilen(l.aus), Plus(Handshake, {"info string file not found:/nicht/da.log",
                                              "info string nothing to learn",
                                              "info string error writing file: /nicht/da/netz.txt"}));
}

}  // namespace
