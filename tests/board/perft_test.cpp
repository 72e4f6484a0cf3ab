// Perft node counts against published numbers and reference files, the perft table, and the perft command.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "board/perft.h"
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

uint64_t PerftVon(const char* fen, int tiefe, unsigned tabelleMb = 0) {
    Brett b(fen);
    EXPECT_TRUE(b.ok) << fen;
    return Perft(*b.st, tiefe, tabelleMb);
}

// The command's lines with runs of blanks squeezed and the times masked.
std::vector<std::string> Befehl(const char* text) {
    Brett b(nullptr);
    std::vector<std::string> zeilen;
    PerftBefehl(*b.st, text, [&](const std::string& z) {
        const std::string s = std::regex_replace(z, std::regex(" +"), " ");
        zeilen.push_back(std::regex_replace(s, std::regex("time \\d+ nodes"), "time T nodes"));
    });
    return zeilen;
}

}  // namespace

// Published counts; the Chess960 ones come from stockfish with UCI_Chess960.
TEST(Perft, BekannteStellungen) {
    const std::tuple<const char*, int, uint64_t> faelle[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 5, 4865609},
        {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 4, 4085603},
        {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 6, 11030083},
        {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 5, 15833292},
        {"r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1", 5, 15833292},
        {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 4, 2103487},
        {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 4, 3894594},
        // en passant that would expose the own king or give check, castling into check, promotions
        {"3k4/3p4/8/K1P4r/8/8/8/8 b - - 0 1", 6, 1134888},
        {"8/8/4k3/8/2p5/8/B2P2K1/8 w - - 0 1", 6, 1015133},
        {"8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1", 6, 1440467},
        {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", 6, 661072},
        {"3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", 6, 803711},
        {"r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq - 0 1", 4, 1274206},
        {"r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq - 0 1", 4, 1720476},
        {"2K2r2/4P3/8/8/8/8/8/3k4 w - - 0 1", 6, 3821001},
        {"8/8/1P2K3/8/2n5/1q6/8/5k2 b - - 0 1", 5, 1004658},
        {"4k3/1P6/8/8/8/8/K7/8 w - - 0 1", 6, 217342},
        {"8/P1k5/K7/8/8/8/8/8 w - - 0 1", 6, 92683},
        {"K1k5/8/P7/8/8/8/8/8 w - - 0 1", 6, 2217},
        {"8/k1P5/8/1K6/8/8/8/8 w - - 0 1", 7, 567584},
        {"8/8/2k5/5q2/5n2/8/5K2/8 b - - 0 1", 4, 23527},
        {"bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9", 5, 8146062},
        {"2nnrbkr/p1qppppp/8/1ppb4/6PP/3PP3/PPP2P2/BQNNRBKR w HEhe - 1 9", 5, 16253601},
        {"b1q1rrkb/pppppppp/3nn3/8/P7/1PPP4/4PPPP/BQNNRKRB w GE - 1 9", 5, 6417013},
        {"qbbnnrkr/2pp2pp/p7/1p2pp2/8/P3PP2/1PPP1KPP/QBBNNR1R w hf - 0 9", 4, 382958},
        {"qnbnr1kr/ppp1b1pp/4p3/3p1p2/8/2NPP3/PPP1BPPP/QNB1R1KR w HEhe - 1 9", 4, 824055},
        {"q1bnrkr1/ppppp2p/2n2p2/4b1p1/2NP4/8/PPP1PPPP/QNB1RRKB w ge - 1 9", 4, 732757},
        {"qn1rbbkr/ppp2p1p/1n1pp1p1/8/3P4/P6P/1PP1PPPK/QNNRBB1R w hd - 2 9", 4, 679699},
    };
    for (const auto& [fen, tiefe, knoten] : faelle) EXPECT_EQ(PerftVon(fen, tiefe), knoten) << fen;
}

// Files from tools/perft-referenz.sh: "fen;depth;count", Chess960 starts with their number in front.
TEST(Perft, Referenzdateien) {
    for (const char* name : {"perft_stellungen.txt", "chess960_start.txt"}) {
        std::ifstream ein(std::filesystem::path(__FILE__).parent_path() / "data" / name);
        int zeilen = 0, fehler = 0;
        for (std::string zeile; std::getline(ein, zeile);) {
            if (zeile.empty() || zeile[0] == '#') continue;
            std::vector<std::string> f;
            std::stringstream s(zeile);
            for (std::string feld; std::getline(s, feld, ';');) f.push_back(feld);
            ASSERT_GE(f.size(), 3u) << zeile;
            Brett b(f[f.size() - 3].c_str());
            ASSERT_TRUE(b.ok) << zeile;
            if (f.size() == 4) {
                // The numbered start sets up what the FEN names, down to rights and flags.
                Brett n(nullptr);
                ASSERT_TRUE(Chess960Start(*n.st, static_cast<unsigned>(std::stoul(f[0]))));
                EXPECT_EQ(std::memcmp(n.st.get(), b.st.get(), offsetof(Stellung_t, historieAnzahl)), 0) << zeile;
            }
            ++zeilen;
            const uint64_t knoten = Perft(*b.st, std::stoi(f[f.size() - 2]), 0);
            EXPECT_EQ(knoten, std::stoull(f.back())) << zeile;
            if (knoten != std::stoull(f.back()) && ++fehler == 10) return;
        }
        EXPECT_GE(zeilen, 300) << "missing or short: " << name;
    }
}

TEST(Perft, KleineTabelleAendertNichts) {
    // One megabyte is small enough that entries get replaced during the run.
    for (const char* fen : {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
                            "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
                            "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9"})
        EXPECT_EQ(PerftVon(fen, 4, 1), PerftVon(fen, 4, 0)) << fen;
    // The deepest run here, with the table to keep it quick.
    EXPECT_EQ(PerftVon("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 5, 16), 193690690u);
}

TEST(PerftBefehl, Ausgabezeilen) {
    using Zeilen = std::vector<std::string>;
    EXPECT_EQ(Befehl("depth 3"), Zeilen{"info depth 3 time T nodes 8902"});
    EXPECT_EQ(Befehl("Hash 16 depth 4"), Zeilen{"info depth 4 time T nodes 197281"});
    EXPECT_EQ(Befehl("depth 0"), Zeilen{"info depth 0 time T nodes 0"});
    for (const char* text : {"", "depth", "depth x", "Hash 16", "divide"})
        EXPECT_EQ(Befehl(text), Zeilen{"info string perft without depth"}) << '"' << text << '"';
    // Divide: one line per legal move (all 20 generated ones) in generation order, then the
    // total. At depth 1 the move lines say 0 while the total counts the moves.
    Brett b(nullptr);
    for (int tiefe : {1, 2}) {
        Zeilen erwartet;
        for (Zug_t z : Pseudolegal(*b.st, b.d))
            erwartet.push_back("info move " + Text(*b.st, z) + " depth " + std::to_string(tiefe - 1) +
                               " time T nodes " + (tiefe == 1 ? "0" : "20"));
        erwartet.push_back(tiefe == 1 ? "info depth 1 time T nodes 20" : "info depth 2 time T nodes 400");
        EXPECT_EQ(Befehl(tiefe == 1 ? "depth 1 divide" : "divide depth 2 Hash 1"), erwartet);
    }
}
