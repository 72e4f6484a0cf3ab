// "go" through the whole program: what the GUI sees while the engine thinks.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "protokoll_hilfen.h"

namespace {

// The output after the handshake; "position startpos" at the end waits for the search.
std::vector<std::string> Denke(const std::string& befehle) {
    const Lauf_t l = Starte("uci\n" + befehle + "position startpos\n");
    EXPECT_EQ(l.status, 0);
    return std::vector<std::string>(l.aus.begin() + static_cast<long>(Handshake.size()), l.aus.end());
}

bool Enthaelt(const std::vector<std::string>& zeilen, const std::string& muster) {
    const std::regex r(muster);
    for (const std::string& z : zeilen)
        if (std::regex_match(z, r)) return true;
    return false;
}

TEST(Go, AntwortenAnDieGui) {
    struct Fall {
        std::string befehle;
        std::vector<std::string> muster;  // each matched by some line
        std::string letzte;               // the last line exactly
    };
    const std::string zahl = "[0-9]+";
    const Fall faelle[] = {
        // A mate is reported at every depth (other lines may stay quiet while nothing changes).
        {"position fen k7/8/2K5/8/8/8/8/7R w - - 0 1\ngo depth 4\n",
         {"info depth 4 seldepth " + zahl + " score mate 2 time " + zahl + " nodes " + zahl + " nps " + zahl +
          " hashfull " + zahl + " pv( [a-h][1-8][a-h][1-8])+"},
         ""},
        {"position startpos moves e2e4\ngo depth 3 searchmoves e7e5 c7c5\n", {}, "bestmove (e7e5|c7c5) ponder [a-h][1-8][a-h][1-8]"},
        {"position startpos moves e2e4\ngo depth 3 searchmoves a2a3\n", {}, "bestmove [a-h][1-8][a-h][1-8].*"},
        {"setoption name MultiPV value 3\ngo depth 3\n",
         {"info multipv 1 depth 3 score cp -?[0-9]+ pv .*", "info multipv 2 depth 3 score .*",
          "info multipv 3 depth 3 score .*"},
         ""},
        {"position fen 7k/6Q1/6K1/8/8/8/8/8 b - - 0 1\ngo depth 5\n", {}, "bestmove 0000"},
        {"position fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1\ngo mate 2\n", {}, "bestmove 0000"},
        {"position fen 4k3/4R3/8/8/8/8/8/4K3 w - - 0 1\ngo depth 3\n", {}, "bestmove 0000"},
        {"position fen 6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1\ngo mate 1\n", {"info depth .* score mate 1 .* pv a1a8"},
         "bestmove a1a8"},
        {"position fen 6k1/5ppp/8/8/8/8/5PPP/R5K1 b - - 0 1\ngo depth 2\n", {}, "bestmove [a-h][1-8][a-h][1-8].*"},
        // Sensible answers to odd limits: depth 0 searches briefly, an infinite search waits for "stop".
        {"go depth 0\n", {}, "bestmove [a-h][1-8][a-h][1-8].*"},
        {"go infinite\nisready\nstop\n", {"readyok"}, "bestmove [a-h][1-8][a-h][1-8].*"},
        {"go ponder movetime 50\nponderhit\n", {}, "bestmove [a-h][1-8][a-h][1-8].*"},
        {"go nodes 5000\n", {}, "bestmove [a-h][1-8][a-h][1-8].*"},
        {"go wtime 1000 btime 1000 winc 10 binc 10\n", {}, "bestmove [a-h][1-8][a-h][1-8].*"},
    };
    for (const Fall& f : faelle) {
        SCOPED_TRACE(f.befehle);
        const std::vector<std::string> aus = Denke(f.befehle);
        ASSERT_FALSE(aus.empty());
        for (const std::string& m : f.muster) EXPECT_TRUE(Enthaelt(aus, m)) << m;
        EXPECT_TRUE(std::regex_match(aus.back(), std::regex(f.letzte.empty() ? "bestmove .*" : f.letzte))) << aus.back();
        int bestmoves = 0;
        for (const std::string& z : aus) bestmoves += z.rfind("bestmove", 0) == 0;
        EXPECT_EQ(bestmoves, 1);
    }
}

TEST(Go, QuitSchweigtSofort) {
    // Nothing follows "quit", not even the best move of the search it ends.
    const Lauf_t l = Starte("uci\ngo infinite\nquit\n");
    for (const std::string& z : l.aus) EXPECT_NE(z.rfind("bestmove", 0), 0u) << z;
}

}  // namespace
