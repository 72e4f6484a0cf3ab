// Position set-up: the FEN reader, the start positions and the clocks.
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

const char* const StartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

}  // namespace

TEST(Fen, StartFenGleichGrundstellung) {
    Brett fen(StartFen), ohneText(nullptr);
    ASSERT_TRUE(fen.ok);
    EXPECT_TRUE(Gleich(*fen.st, *ohneText.st));
    EXPECT_EQ(std::memcmp(&fen.d, &ohneText.d, sizeof fen.d), 0);
}

TEST(Fen, AnnehmenOderAblehnen) {
    const std::pair<const char*, bool> faelle[] = {
        // eight pawns and at most ten of a kind fit the square lists, sixteen men a side
        {"4k3/8/8/8/8/8/PPPPPPPP/4K3 w - - 0 1", true},
        {"4k3/8/8/8/8/8/PPPPPPPP/P3K3 w - - 0 1", false},
        {"4k3/8/8/8/8/NN6/NNNNNNNN/4K3 w - - 0 1", true},
        {"4k3/8/8/8/8/NNN5/NNNNNNNN/4K3 w - - 0 1", false},
        {"4k3/8/8/8/8/NN6/PPPPPPPP/RNBQKBNR w - - 0 1", false},
        {"4k3/8/8/8/8/8/8/3KK3 w - - 0 1", false},
        {"4k3/8/8/8/8/8/8/8 w - - 0 1", false},
        // pawns on the back ranks, and a side not to move in check, are let through
        {"P2Rk3/8/8/8/8/8/8/p3K3 w - - 0 1", true},
        // castling: both kings on one file when both sides castle, and a rook of the own colour
        {"r3k2r/8/8/8/8/8/8/R4K1R w KQkq - 0 1", false},
        {"r6r/4k3/8/8/8/8/8/R3K2R w KQkq - 0 1", false},
        {"4k3/8/8/8/8/8/7R/4K3 w K - 0 1", false},
        {"4k3/8/8/8/8/8/8/4K2r w K - 0 1", false},
        {"nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w Hh - 0 1", false},
        {"nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w F - 0 1", false},
        // en passant on the rank the side to move captures onto, any case for the side letter
        {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR W KQkq F6 0 3", true},
        {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f3 0 3", false},
        {"rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq i3 0 1", false},
        {"4k3/8/8/8/8/8/8/4K w - - 0 1", true},  // the last rank may stop short
        {"", false},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/P w - - 0 1", false},
        {"rnbqkbnr/ppppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", false},
        {"rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", false},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", false},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkx - 0 1", false},
        // castling and en passant must both be there; the clocks may be left out
        {"4k3/8/8/8/8/8/8/4K3 w -", false},
        {"4k3/8/8/8/8/8/8/4K3 b - ", false},
        {"4k3/8/8/8/8/8/8/4K3 w", false},
        {"4k3/8/8/8/8/8/8/4K3 w - -", true},
    };
    for (const auto& [fen, gut] : faelle) EXPECT_EQ(Brett(fen).ok, gut) << '"' << fen << '"';
}

TEST(Fen, EnPassantNurMitSchlagendemBauern) {
    // A square no pawn can take on would split one position into two keys.
    Brett leer("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    Brett ohne("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(leer.st->ep, 0);
    EXPECT_EQ(leer.d.schluessel, ohne.d.schluessel);
    Brett echt("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    Brett echtOhne("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(echt.st->ep, F("e3"));
    EXPECT_EQ(echt.d.schluessel, echtOhne.d.schluessel ^ ZobristEp[F("e3")]);
    // Without the pawn that made the double step, taking en passant would remove nothing.
    EXPECT_EQ(Brett("rnbqkbnr/ppp1pppp/8/8/3p4/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1").st->ep, 0);
}

TEST(Fen, HalbzugzaehlerFuelltDieHistorie) {
    // Out of range or missing clocks leave just the position itself.
    const std::pair<const char*, unsigned> faelle[] = {{"150 80", 1}, {"-1 80", 1}, {"100 80", 1},
                                                       {"99 80", 100}, {"7 30", 8},  {"", 1}};
    for (const auto& [uhr, anzahl] : faelle) {
        Brett b((std::string("4k3/8/8/8/8/8/8/4K2R w K - ") + uhr).c_str());
        ASSERT_EQ(b.st->historieAnzahl, anzahl) << uhr;
        EXPECT_EQ(b.st->Historie[anzahl - 1], b.d.schluessel) << uhr;
        for (unsigned i = 0; i + 1 < anzahl; ++i) EXPECT_EQ(b.st->Historie[i], 0u) << uhr;
    }
}

TEST(Fen, Chess960Rochadeformen) {
    struct Fall {
        const char* fen;
        unsigned rechte, chess960, buchstaben;
        const char *kurz, *lang;  // White's castling rooks
    };
    const Fall faelle[] = {
        {StartFen, 15, 0, 0, "h1", "a1"},
        {"4k3/8/8/8/8/8/8/1R3K1R w KQ - 0 1", WeissKurz | WeissLang, 1, 0, "h1", "b1"},
        {"4k3/8/8/8/8/8/8/R4K1R w KQ - 0 1", WeissKurz | WeissLang, 1, 0, "h1", "a1"},  // king off e1
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w HAha - 0 1", 15, 1, 1, "h1", "a1"},
        {"nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w GBgb - 0 1", 15, 1, 1, "g1", "b1"},
        {"nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1", 15, 1, 0, "g1", "b1"},
    };
    for (const Fall& f : faelle) {
        Brett b(f.fen);
        ASSERT_TRUE(b.ok) << f.fen;
        EXPECT_EQ(b.st->rochaden, f.rechte) << f.fen;
        EXPECT_EQ(b.st->chess960, f.chess960) << f.fen;
        EXPECT_EQ(b.st->dateibuchstaben, f.buchstaben) << f.fen;
        EXPECT_EQ(b.st->seite[Weiss].kurzerTurm, F(f.kurz)) << f.fen;
        EXPECT_EQ(b.st->seite[Weiss].langerTurm, F(f.lang)) << f.fen;
    }
    // How the rights were written does not change the key.
    EXPECT_EQ(Brett(faelle[3].fen).d.schluessel, Brett(StartFen).d.schluessel);
    EXPECT_EQ(Brett(faelle[4].fen).d.schluessel, Brett(faelle[5].fen).d.schluessel);
    // Only a side that holds a right has its king's file looked at.
    EXPECT_EQ(Brett("r3k2r/8/8/8/8/8/8/R4K1R b kq - 0 1").st->chess960, 0);
}

TEST(Fen, UngleicheLaeuferImMaterialschluessel) {
    Brett gleich("4k3/8/8/8/3b4/8/8/2B1K3 w - - 0 1");    // c1 and d4 both dark
    Brett ungleich("4k3/8/8/8/2b5/8/8/2B1K3 w - - 0 1");  // c4 light
    EXPECT_EQ(ungleich.d.Materialschluessel - gleich.d.Materialschluessel, UngleicheLaeufer);
}
