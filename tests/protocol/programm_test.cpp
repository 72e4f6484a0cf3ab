// The program entry: command line, protocol choice and the input loop, on scripted input.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "protokoll_hilfen.h"

namespace {

std::string Falsch(int i, const char* arg) {
    return "illegal command line argument argv[" + std::to_string(i) + "] = \"" + arg + "\"\n";
}

TEST(Programm, Skripte) {
    const std::string keinProtokoll = "'uci' or 'xboard' expected\n";
    // Arguments, input, output lines, error output.
    using Skript_t = std::tuple<std::vector<std::string>, std::string, std::vector<std::string>, std::string>;
    const Skript_t skripte[] = {
        {{}, "uci\nisready\nquit\n", Plus(Handshake, {"readyok"}), ""},
        // The protocol word is case-sensitive; the GUI may still choose with a later line.
        {{}, "UCI\n\n   \nhello world\nisready\nuci\nisready\nquit\n", Plus(Handshake, {"readyok"}),
         keinProtokoll + keinProtokoll + keinProtokoll},
        {{}, "uci \t\r\nisready  \r\nquit\r\n", Plus(Handshake, {"readyok"}), ""},
        {{}, "ucitest\nisready\nquit\n", {"readyok"}, ""},
        // XBoard speaks through the adapter: UCI words are unknown commands there.
        {{}, "xboard\nposition fen bad\nusermove e2e5\nping 1\nquit\nping 2\n",
         {"Error (unknown command): position fen bad", "Illegal move: e2e5", "pong 1"}, ""},
        // Protocol version 1 ends the program: nothing is answered after it.
        {{}, "xboard\nprotover 1\nping 1\nnew\n", {"Error (protocol version 2 required): 1"}, ""},
        {{}, "uci\nquit\nisready\nperft depth 1\n", Handshake, ""},
        // Unknown words are ignored; the input ends without "quit".
        {{}, "uci\nfoo bar\nISREADY\nisready_now\nuci\nucinewgame\nsetoption name X value 1\nposition startpos\nisready",
         Plus(Handshake, {"readyok"}), ""},
        // Lines beyond the 40000-character buffer arrive in pieces: the tail is a line of its own.
        {{}, "uci\n" + std::string(39999, 'a') + "isready\n" + std::string(100000, 'b') + "\nquit\n",
         Plus(Handshake, {"readyok"}), ""},
        {{}, "uci\nisready" + std::string(39992, ' ') + "\nisready\nquit\n", Plus(Handshake, {"readyok", "readyok"}), ""},
        {{}, "uci\ntime add /nicht/da.log\ntime learn\ntime write /nicht/da/netz.txt\nquit\n",
         Plus(Handshake, {"info string file not found:/nicht/da.log", "info string nothing to learn",
                          "info string error writing file: /nicht/da/netz.txt"}),
         ""},
        // Bad arguments never keep the engine from playing.
        {{"foo", "--rnd", "two words"}, "uci\nquit\n", Handshake,
         Falsch(1, "foo") + Falsch(2, "--rnd") + Falsch(3, "two words")},
        {{"--RndMate", "extra", "--Rnd"}, "uci\nquit\n", HandshakeOhneOptionen, Falsch(2, "extra")},
    };
    for (const auto& [argumente, eingabe, aus, fehler] : skripte) {
        SCOPED_TRACE(eingabe.substr(0, 80));
        const Lauf_t l = Starte(eingabe, argumente);
        EXPECT_EQ(l.status, 0);
        EXPECT_EQ(l.aus, aus);
        EXPECT_EQ(l.fehler, fehler);
    }
}

// The input ends without "quit": a search with a limit still answers with the move it
// found (a mate in three, which the first iteration does not see); one that only "stop"
// would end is stopped and answers too.
TEST(Programm, EndeDerEingabe) {
    const std::string matt = "r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1\n";
    const auto Enthaelt = [](const Lauf_t& l, const std::string& zeile) {
        return std::find(l.aus.begin(), l.aus.end(), zeile) != l.aus.end();
    };
    const Lauf_t uci = Starte("uci\nposition fen " + matt + "go depth 10\n");
    EXPECT_EQ(uci.status, 0);
    ASSERT_FALSE(uci.aus.empty());
    EXPECT_TRUE(std::regex_match(uci.aus.back(), std::regex("bestmove f6a6( ponder [a-h][1-8][a-h][1-8])?")))
        << uci.aus.back();
    EXPECT_TRUE(std::regex_match(uci.aus[uci.aus.size() - 2], std::regex("info depth .* score mate 3 .*")));

    const Lauf_t xboard = Starte("xboard\nprotover 2\nsd 10\nsetboard " + matt + "go\n");
    EXPECT_EQ(xboard.status, 0);
    EXPECT_TRUE(Enthaelt(xboard, "move f6a6"));

    for (const char* go : {"go infinite", "go ponder wtime 100000 btime 100000"}) {
        const Lauf_t l = Starte(std::string("uci\nposition fen ") + matt + go + "\n");
        EXPECT_EQ(l.status, 0) << go;
        ASSERT_FALSE(l.aus.empty()) << go;
        EXPECT_EQ(l.aus.back().rfind("bestmove ", 0), 0u) << go;
    }
    // Analysis, and a ponder search that the adapter starts after its move, end as well.
    for (const char* skript : {"analyze\n", "hard\nlevel 40 0:05 0\ngo\n"}) {
        const Lauf_t l = Starte("xboard\nprotover 2\nsetboard " + matt + skript);
        EXPECT_EQ(l.status, 0) << skript;
    }
}

// The largest "Hash" is more than this machine holds: the table shrinks to what fits
// and the engine answers, also after "Clear Hash".
TEST(Programm, GroessterHashAntwortet) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the thread sanitizer's allocator writes every page of a zeroed block";
#endif
    const Lauf_t l = Starte(
        "uci\nsetoption name Hash value 32000\nposition startpos\ngo depth 6\nisready\n"
        "setoption name Clear Hash\ngo depth 6\n");
    EXPECT_EQ(l.status, 0);
    int antworten = 0;
    for (const std::string& zeile : l.aus) antworten += zeile.rfind("bestmove ", 0) == 0;
    EXPECT_EQ(antworten, 2);
}

TEST(Programm, PerftAufDerAktuellenStellung) {
    const Lauf_t l = Starte("uci\nposition startpos moves e2e4\nperft depth 1\nperft\nposition startpos\nperft depth 3\n");
    ASSERT_EQ(l.aus.size(), Handshake.size() + 3);
    EXPECT_TRUE(std::regex_match(l.aus[14], std::regex("info depth 1 time [0-9]+ nodes 20"))) << l.aus[14];
    EXPECT_EQ(l.aus[15], "info string perft without depth");
    EXPECT_TRUE(std::regex_match(l.aus[16], std::regex("info depth 3 time [0-9]+ nodes 8902"))) << l.aus[16];
}

}  // namespace

TEST(Programm, SuchwerkzeugeTestposUndCsvn) {
    // Two test positions: a mate in one that is found, and a "best move" that is not one.
    const std::string epd = testing::TempDir() + "kelvaran_test.epd";
    const std::string csv = testing::TempDir() + "kelvaran_test.csvn";
    {
        std::ofstream f(epd);
        f << "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - bm Ra8#; id \"matt\";\n"
          << "kein fen\n"
          << "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - bm h3 g3; id \"falsch\";\n";
    }
    // The hard limit holds from the first node on, clearing the table included: the time
    // must leave room for a slow (sanitizer) build. The mate ends each search long before.
    setenv("KELVARAN_TESTZEIT", "2000", 1);
    const Lauf_t t = Starte("", {"--Testpos", epd});
    EXPECT_EQ(t.aus, (std::vector<std::string>{"6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - bm Ra8#",
                                               "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - bm Ra8# (not found)",
                                               "solved 1 of 2"}));
    const Lauf_t c = Starte("", {"--CSVN", epd, csv});
    EXPECT_TRUE(c.aus.empty());
    std::ifstream f(csv);
    std::vector<std::string> zeilen;
    for (std::string z; std::getline(f, z);) zeilen.push_back(z);
    EXPECT_EQ(zeilen, (std::vector<std::string>(2, "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - bm Ra8#")));
    // A missing file is reported, never a crash.
    EXPECT_EQ(Starte("", {"--Testpos", "/nicht/da.epd"}).aus,
              (std::vector<std::string>{"info string cannot open /nicht/da.epd"}));
    unsetenv("KELVARAN_TESTZEIT");
}
