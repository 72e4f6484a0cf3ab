// The static evaluation: the packed-score and quantising arithmetic, colour
// symmetry, the tempo, orderings any sound evaluation must keep, the
// drawish-material scaling and the caches.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "search/bewertung.h"
#include "such_hilfe.h"

namespace {

using such_test::Spiegele;

struct Caches_t {
    std::unique_ptr<Bauerncache_t> bauern = std::make_unique<Bauerncache_t>();
    std::unique_ptr<Materialcache_t> material = std::make_unique<Materialcache_t>();
    explicit Caches_t(int fuellung = 0) {
        std::memset(static_cast<void*>(bauern.get()), fuellung, sizeof(Bauerncache_t));
        std::memset(static_cast<void*>(material.get()), fuellung, sizeof(Materialcache_t));
    }
};

int Wert(const std::string& fen, Caches_t& c) {
    Stellung_t st;
    Stellungsdaten_t d;
    EXPECT_TRUE(SetzeStellung(st, d, fen.c_str())) << fen;
    return Bewerte(st, d, *c.bauern, *c.material);
}
int Wert(const std::string& fen) {
    Caches_t c;
    return Wert(fen, c);
}

bool AufDemRaster(int r) {
    if (r >= -1 && r <= 1) return true;
    return r > 0 ? (r - 8) % 16 == 0 : (r + 8) % 16 == 0;
}

// Positions of every kind: openings, middlegames, endings, en passant,
// castling rights, pawnless and huge material.
const std::vector<std::string> Stellungen = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3",
    "r1bq1rk1/pp2ppbp/2np1np1/8/3NP3/2N1BP2/PPPQ2PP/R3KB1R w KQ - 0 9",
    "r2q1rk1/1b2bppp/p2p1n2/1p2p3/3NP3/1BN5/PPP2PPP/R2Q1RK1 w - - 0 12",
    "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
    "r1b2rk1/ppq2ppp/2n1p3/3pP3/3P4/P1PB1N2/5PPP/R2QK2R b KQ - 0 12",
    "r4rk1/pp3ppp/2p5/4q3/2B5/2P1Q3/P4PPP/R4RK1 w - - 0 1",
    "r5k1/5ppp/8/6N1/7Q/8/5PPP/6K1 w - - 0 1",
    "6k1/pp4pp/8/3N4/8/8/PP4PP/6K1 b - - 0 1",
    "8/5p2/4k3/4bp2/8/3BP3/4KP2/8 w - - 0 1",
    "8/8/4k3/4b3/8/8/4K3/5R2 w - - 0 1",
    "7k/8/8/P7/8/8/8/K7 b - - 0 1",
    "k7/8/8/P7/8/8/8/7K w - - 0 1",
    "8/1P6/8/8/5k2/8/6K1/8 b - - 0 1",
    "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1",
    "r3k2r/8/8/8/8/8/8/R3K2R w KQk - 0 1",
    "4k3/8/8/8/8/8/8/R3K1N1 w - - 0 1",
    "4k3/8/8/8/8/8/8/4K3 w - - 0 1",
    "4k3/8/8/8/8/8/QQQQ4/QQQQQ1K1 w - - 0 1",
    // Pins on the king, a fork, a rook behind a passer, a knight and a rook eyeing the queen.
    "r3k2r/ppp2ppp/2n5/1B1q4/3P4/2N1bN2/PPP3PP/R2QK2R w KQkq - 0 10",
    "2r1k3/pp3ppp/8/2P1N3/8/3q4/P4PPP/2R1Q1K1 b - - 0 1",
    "6k1/2R2ppp/8/8/1P6/8/5PPP/6K1 w - - 0 1",
    // A bishop on the long diagonal, a rook on the queen's file, a queen behind a single
    // man on a bishop's line, blocked pawns on a bishop's colour, a king without pawns on its wing.
    "r1b1k2r/pp3ppp/8/3q4/2n5/1B3N2/PB3PPP/3R1RK1 w kq - 0 12",
    "4k3/8/3p4/2pP4/2P1B3/8/8/4K3 b - - 0 1",
    "8/5k2/8/8/8/8/PPP5/1K6 w - - 0 1",
};

TEST(Bewertung, Quantisiere) {
    const struct {
        int ein, aus;
    } faelle[] = {
        {9, 8},   {16, 24},  {-2, -8},   {1, 1},     {-1, -1},    {0, 0},
        {2, 8},   {15, 8},   {31, 24},   {-16, -24}, {-17, -24},  {1000, 1000},
    };
    for (const auto& f : faelle) EXPECT_EQ(Quantisiere(f.ein), f.aus) << f.ein;
}

TEST(Bewertung, PackenUndAddieren) {
    const struct {
        int mg, eg;
    } faelle[] = {{0, 0}, {35, 68}, {-35, -68}, {1, -1}, {-1, 1}, {20000, -20000}, {-32000, 32000}, {0, -32768}};
    for (const auto& a : faelle) {
        EXPECT_EQ(MgWert(S(a.mg, a.eg)), a.mg) << a.mg << "," << a.eg;
        EXPECT_EQ(EgWert(S(a.mg, a.eg)), a.eg) << a.mg << "," << a.eg;
        // Sums whose halves stay in range unpack to the sums of the halves.
        for (const auto& b : faelle) {
            const int mg = a.mg + b.mg, eg = a.eg + b.eg;
            if (mg < -32768 || mg > 32767 || eg < -32768 || eg > 32767) continue;
            const auto summe =
                static_cast<int32_t>(static_cast<uint32_t>(S(a.mg, a.eg)) + static_cast<uint32_t>(S(b.mg, b.eg)));
            EXPECT_EQ(MgWert(summe), mg);
            EXPECT_EQ(EgWert(summe), eg);
        }
    }
}

// Both colours score alike, on the quantising grid and below the mate range.
TEST(Bewertung, FarbsymmetrieUndRaster) {
    EXPECT_EQ(Spiegele("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3"),
              "rnbqkbnr/pppp1ppp/8/8/3PpP2/8/PPP1P1PP/RNBQKBNR b kqKQ f3 0 3");
    for (const std::string& fen : Stellungen) {
        const int w = Wert(fen);
        EXPECT_EQ(w, Wert(Spiegele(fen))) << fen;
        EXPECT_EQ(Spiegele(Spiegele(fen)), fen);
        EXPECT_TRUE(AufDemRaster(w)) << w << " " << fen;
        EXPECT_LT(w < 0 ? -w : w, 450000) << fen;
    }
}

TEST(Bewertung, TempoInDerGrundstellung) {
    const int weiss = Wert("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    // Black to move is its colour mirror, checked above.
    // A small edge for the side to move: under half a pawn.
    EXPECT_GT(weiss, 0);
    EXPECT_LT(weiss, 500);
}

TEST(Bewertung, Materialvorteil) {
    // White is ahead; the score must pass the bound for White to move and its negative for Black.
    const struct {
        const char* fen;  // without the side to move and what follows
        int mindestens;
    } faelle[] = {
        {"4k3/ppp2ppp/8/8/8/8/PPP1PPPP/4K3", 500},
        {"rnbqkbnr/ppppppp1/8/8/8/8/PPPPPPPP/RNBQKBNR", 50},  // the open h-file frees Black's rook
        {"r1bqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 2000},
        {"rn1qkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 2000},
        {"1nbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 3000},
        {"rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", 7000},
        {"4k3/8/8/8/8/8/QQQQ4/QQQQ1K2", 40000},  // beyond the range of a packed half, even scaled down without pawns
    };
    for (const auto& f : faelle) {
        EXPECT_GT(Wert(std::string(f.fen) + " w - - 0 1"), f.mindestens) << f.fen;
        EXPECT_LT(Wert(std::string(f.fen) + " b - - 0 1"), -f.mindestens) << f.fen;
    }
    // Each extra queen counts, also beyond that range.
    EXPECT_GT(Wert("4k3/8/8/8/8/8/QQQQ4/QQQQQ1K1 w - - 0 1"), Wert("4k3/8/8/8/8/8/QQQQ4/QQQQ2K1 w - - 0 1"));
}

TEST(Bewertung, Vergleiche) {
    // The first position is better for the side to move than the second.
    const struct {
        const char* was;
        const char* besser;
        const char* schlechter;
    } faelle[] = {
        {"passer on the 7th, not the 3rd",  //
         "4k3/1P6/8/8/8/8/6r1/R3K3 w - - 0 1", "4k3/8/8/8/8/1P6/6r1/R3K3 w - - 0 1"},
        {"no doubled, isolated pawns",  //
         "4k3/ppp5/8/8/8/8/PPP5/4K3 w - - 0 1", "4k3/ppp5/8/8/8/P7/P1P5/4K3 w - - 0 1"},
        {"pawns shelter the king",  //
         "r2q1rk1/ppp2ppp/8/8/8/8/PPP2PPP/R2Q1RK1 w - - 0 1", "r2q1rk1/ppp2ppp/8/8/8/8/PPPPPP2/R2Q1RK1 w - - 0 1"},
        {"bishop pair",  //
         "2b1k1n1/ppp5/8/8/8/8/PPP5/2B1KB2 w - - 0 1", "2b1k1n1/ppp5/8/8/8/8/PPP5/2B1K1N1 w - - 0 1"},
        {"the king is outside the pawn's square",  //
         "8/8/8/P7/8/8/3k4/7K w - - 0 1", "8/8/3k4/P7/8/8/8/7K w - - 0 1"},
    };
    for (const auto& f : faelle) EXPECT_GT(Wert(f.besser), Wert(f.schlechter)) << f.was;
}

TEST(Bewertung, RemisMaterial) {
    // Material that does not win scores at most this much for either side to move.
    const struct {
        const char* fen;
        int hoechstens;
    } faelle[] = {
        {"8/8/4k3/8/8/8/4K3/5NN1 w - - 0 1", 0},        // two knights
        {"8/8/4k3/8/8/8/4K3/5B2 w - - 0 1", 0},         // a lone minor
        {"k7/8/8/P7/8/8/8/7K w - - 0 1", 0},            // rook pawn, defending king in the corner
        {"7k/8/6K1/7P/8/8/4B3/8 w - - 0 1", 0},         // rook pawn and the wrong bishop
        {"8/8/4k3/4b3/8/8/4K3/5R2 w - - 0 1", 400},     // rook against bishop
    };
    for (const auto& f : faelle) {
        for (const std::string& fen : {std::string(f.fen), Spiegele(f.fen)}) {
            const int w = Wert(fen);
            EXPECT_LE(w < 0 ? -w : w, f.hoechstens) << fen;
        }
    }
    // What does win is left alone: the right bishop, two rooks against a knight.
    EXPECT_GT(Wert("7k/8/6K1/7P/8/8/3B4/8 w - - 0 1"), 2000);
    EXPECT_GT(Wert("8/8/3nk3/8/8/8/3RK3/5R2 w - - 0 1"), 3000);
}

TEST(Bewertung, CachesAendernNichts) {
    // Fresh caches per position are the reference.
    std::vector<std::string> alle;
    for (const std::string& fen : Stellungen) {
        alle.push_back(fen);
        alle.push_back(Spiegele(fen));
    }
    // Same pawns and material, other king squares and rights.
    alle.push_back("r2q1rk1/ppp2ppp/8/8/8/8/PPP2PPP/R2Q1RK1 w - - 0 1");
    alle.push_back("r2q1r1k/ppp2ppp/8/8/8/8/PPP2PPP/R2Q1R1K w - - 0 1");
    alle.push_back("r2qk2r/ppp2ppp/8/8/8/8/PPP2PPP/R2QK2R w KQkq - 0 1");
    alle.push_back("r2qk2r/ppp2ppp/8/8/8/8/PPP2PPP/R2QK2R w Qk - 0 1");
    std::vector<int> referenz;
    for (const std::string& fen : alle) referenz.push_back(Wert(fen));

    // A zeroed cache and one full of ones: no slot may pass for a real entry.
    for (int fuellung : {0, 0xff}) {
        Caches_t c(fuellung);
        for (int runde = 0; runde < 2; ++runde) {  // cold, then warm
            for (size_t i = 0; i < alle.size(); ++i) EXPECT_EQ(Wert(alle[i], c), referenz[i]) << alle[i];
        }
        for (size_t i = alle.size(); i-- > 0;) EXPECT_EQ(Wert(alle[i], c), referenz[i]) << alle[i];
    }
}

}  // namespace
