// The UCI interpreter: "position" with its moves, FEN, Chess960 and error reports;
// the clock of "go".
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>

#include "protokoll_hilfen.h"
#include "protocol/uci.h"
#include "search/suche_zufall.h"
#include "timing/zeitkontrolle.h"

namespace {

std::ostringstream verworfen;

struct Fall_t {
    const char* befehl;
    const char* fen;  // what the interpreter must hold afterwards
    const char* fehler;
};

const char* const Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const char* const NachE4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1";
const char* const NachE4E5 = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2";
const char* const Lang = "2kr1bnr/pppqpppp/2n5/3p1b2/3P1B2/2N5/PPPQPPPP/2KR1BNR w - - 8 6";

// Every case starts from 1.e4, so a command that keeps the old position is told from one that resets it.
const Fall_t Faelle[] = {
    {"position startpos moves e2e4 e7e5", NachE4E5, ""},
    {"position startpos moves e2e4 e7e5 e2e5 g1f3", NachE4E5, "position: illegal move: e2e5|"},
    {"position startpos moves e2e4 xyz", NachE4, "position: illegal move: xyz|"},
    {"position fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e4 e8d7", "8/3k4/8/8/4P3/8/8/4K3 w - - 0 2", ""},
    {"position fen xyz/8 w - - 0 1 moves e2e4", Start, "position: Illegal FEN string: xyz/8 w - - 0 1 moves e2e4|"},
    // Which FENs the reader refuses is fen_test.cpp's; here the report and the fallback.
    // Without the en-passant field no FEN; without the clocks one.
    {"position fen 4k3/8/8/8/8/8/8/4K3 w -", Start, "position: Illegal FEN string: 4k3/8/8/8/8/8/8/4K3 w -|"},
    {"position fen 4k3/8/8/8/8/8/8/4K3 b - - moves e8d7", "8/3k4/8/8/8/8/8/4K3 w - - 0 1", ""},
    {"position", NachE4, "'position' without 'startpos' and without 'fen'|"},
    // Eleven knights: beyond the piece limits.
    {"position fen NNNNNNNN/NNN2k2/8/8/8/8/8/4K3 w - - 0 1", Start,
     "position: Illegal FEN string: NNNNNNNN/NNN2k2/8/8/8/8/8/4K3 w - - 0 1|"},
    {"position Chess960", NachE4, "'position Chess960' without number|"},
    {"position Chess960 518", Start, ""},
    {"position Chess960 0 moves e2e4", "bbqnnrkr/pppppppp/8/8/4P3/8/PPPP1PPP/BBQNNRKR b KQkq - 0 1", ""},
    {"position Chess960 960", "bbqnnrkr/pppppppp/8/8/8/8/PPPPPPPP/BBQNNRKR w KQkq - 0 1", ""},
    {"position startpos moves e2e4 e7e5 g1f3 b8c6 f1c4 g8f6 O-O",
     "r1bqkb1r/pppp1ppp/2n2n2/4p3/2B1P3/5N2/PPPP1PPP/RNBQ1RK1 b kq - 5 4", ""},
    {"position startpos moves d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 O-O-O O-O-O", Lang, ""},
    {"position startpos moves d2d4 d7d5 b1c3 b8c6 c1f4 c8f5 d1d2 d8d7 e1c1 e8c8", Lang, ""},
    {"position fen 8/P6k/8/8/8/8/8/K7 w - - 0 1 moves a7a8n h7g6", "N7/8/6k1/8/8/8/8/K7 w - - 1 2", ""},
    {"position fen 8/P6k/8/8/8/8/8/K7 w - - 0 1 moves a7a8", "8/P6k/8/8/8/8/8/K7 w - - 0 1",
     "position: illegal move: a7a8|"},
};

TEST(UciPosition, Faelle) {
    for (const Fall_t& f : Faelle) {
        SCOPED_TRACE(f.befehl);
        Zeitkontrolle_t zk;
        Fehlermitschrift_t ausgabe(verworfen);
        UciInterface_t uci(Optionstabelle, &zk, &ausgabe);
        uci.befehl("position startpos moves e2e4");
        uci.befehl(f.befehl);
        EXPECT_EQ(ausgabe.text, f.fehler);
        // The key covers pieces, side to move, castling rights and en passant.
        Stellung_t soll{};
        Stellungsdaten_t daten{};
        ASSERT_TRUE(SetzeStellung(soll, daten, f.fen));
        EXPECT_EQ(uci.Daten().schluessel, daten.schluessel);
        EXPECT_EQ(uci.Stellung().chess960, soll.chess960);
    }
}

TEST(UciGo, ZuegeBisZurKontrolle) {
    // Moves to go absent, 0, 99 and 150 all allocate as 99: nothing in the protocol
    // chooses the flatter curve.
    Zeitkontrolle_t zk;
    Fehlermitschrift_t ausgabe(verworfen);
    SucheZufall_t sucher(true);
    UciInterface_t uci(Optionstabelle, &zk, &ausgabe, &sucher);
    for (const char* zuege : {"", " movestogo 0", " movestogo 99", " movestogo 150"}) {
        uci.befehl((std::string("go wtime 10200 btime 10200 winc 100 binc 100") + zuege).c_str());
        sucher.WarteBisUntaetig();
        EXPECT_EQ(std::tuple(zk.kurve, zk.ziel, zk.iterationsgrenze, zk.harteGrenze), std::tuple(0, 188, 752, 1428))
            << zuege;  // T = 10000, D = 55 tanh(1.89) + 0.5
    }
}

}  // namespace
