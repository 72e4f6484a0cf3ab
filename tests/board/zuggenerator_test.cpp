// Move generation: the order moves come out in, castling rules and double check.
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

// Origin and destination squares only, so that castling reads the same in every convention.
std::string Roh(Zug_t z) {
    return {static_cast<char>('a' + LinieVon(Von(z))), static_cast<char>('0' + ReiheVon(Von(z))),
            static_cast<char>('a' + LinieVon(Nach(z))), static_cast<char>('0' + ReiheVon(Nach(z)))};
}

// The generated moves as text; only castling moves when `nurRochaden`.
std::string Liste(const char* fen, bool nurRochaden = false) {
    Brett b(fen);
    EXPECT_TRUE(b.ok) << fen;
    std::string s;
    for (Zug_t z : Pseudolegal(*b.st, b.d)) {
        if (nurRochaden && Art(z) != Rochade) continue;
        if (!s.empty()) s += ' ';
        s += nurRochaden ? Roh(z) : Text(*b.st, z);
    }
    return s;
}

}  // namespace

TEST(Zuggenerator, Reihenfolge) {
    // Double pushes before single pushes, then pieces; for a promotion Q, R, B, N, and
    // promoting captures before the plain moves of the same pawn group.
    EXPECT_EQ(Liste("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
              "a2a4 b2b4 c2c4 d2d4 e2e4 f2f4 g2g4 h2h4 a2a3 b2b3 c2c3 d2d3 e2e3 f2f3 g2g3 h2h3 "
              "b1a3 b1c3 g1f3 g1h3");
    EXPECT_EQ(Liste("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"),
              "a7a5 b7b5 c7c5 d7d5 e7e5 f7f5 g7g5 h7h5 a7a6 b7b6 c7c6 d7d6 e7e6 f7f6 g7g6 h7h6 "
              "b8a6 b8c6 g8f6 g8h6");
    EXPECT_EQ(Liste("r1r1k3/1P6/8/8/8/8/8/4K3 w - - 0 1").substr(0, 71),
              "b7a8q b7a8r b7a8b b7a8n b7c8q b7c8r b7c8b b7c8n b7b8q b7b8r b7b8b b7b8n");
    EXPECT_EQ(Liste("4k3/8/8/8/6p1/7N/6p1/4K2R b - - 0 1").substr(0, 57),
              "g2h1q g2h1r g2h1b g2h1n g4h3 g2g1q g2g1r g2g1b g2g1n g4g3");
}

TEST(Zuggenerator, Rochaden) {
    const std::pair<const char*, const char*> faelle[] = {
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1g1 e1c1"},  // short before long
        {"r3k2r/8/8/8/8/8/8/R3K2R b Kq - 0 1", "e8c8"},        // rights decide, not rooks
        {"4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", ""},            // in check
        {"5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1"},         // the king crosses f1
        {"6rk/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1"},          // the king lands on g1
        {"2r3k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1"},
        {"1r4k1/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1 e1c1"},   // only the attacked rook crosses b1
        {"6k1/8/8/8/8/4n3/8/R3K2R w KQ - 0 1", ""},            // knight attacks count too
        {"6k1/8/8/8/8/8/6p1/R3K2R w KQ - 0 1", "e1c1"},        // and pawn attacks
        {"6k1/8/8/8/8/8/8/RN2K2R w KQ - 0 1", "e1g1"},
        {"6k1/8/8/8/8/8/8/R3KB1R w KQ - 0 1", "e1c1"},
        // Chess960: the ways of king and rook both have to be free of other men.
        {"1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1", "f1g1 f1c1"},
        {"nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1", "f1g1"},
        {"1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R2BKRN w GBgb - 0 1", "f1g1"},
        {"2rk3r/pppppppp/8/8/8/8/PPPPPPPP/2RK3R w KQkq - 0 1", "d1g1 d1c1"},  // king and rook swap
        {"rk1r4/8/8/8/8/8/8/RK4R1 w KQ - 0 1", "b1c1"},  // attacked d1 stops only the king's long way
        {"rk6/8/8/8/8/8/8/RK1N2R1 w KQ - 0 1", ""},
        {"6kr/8/8/8/8/8/8/6KR w K - 0 1", "g1g1"},  // only the rook moves
    };
    for (const auto& [fen, erwartet] : faelle) EXPECT_EQ(Liste(fen, true), erwartet) << fen;
}

TEST(Zuggenerator, DoppelschachNurKoenigszuege) {
    // King steps go only to unattacked squares, so here the list is the legal one.
    EXPECT_EQ(Liste("4r1k1/8/8/8/8/3n4/8/R3K2Q w Q - 0 1"), "e1d2 e1d1 e1f1");
}
