// Move words and their text forms: coordinate output, coordinate input and SAN input.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "brett_hilfe.h"

using namespace brett_test;

namespace {

Zug_t Koordinate(const char* fen, const char* text) {
    auto b = Aufstellen(fen);
    return LeseKoordinatenZug(*b->st, text);
}

// Reads SAN and checks that reading leaves the position untouched.
Zug_t San(const char* fen, const char* text) {
    auto b = Aufstellen(fen);
    auto vorher = std::make_unique<Stellung_t>();
    std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
    const Zug_t z = LeseSanZug(*b->st, text, *b->d);
    EXPECT_EQ(Unterschied(*vorher, *b->st), "") << "SAN reading changed the position: " << text;
    return z;
}

const char* const Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const char* const Rochaden = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
const char* const Umwandlung = "k7/4P3/8/8/8/8/8/4K3 w - - 0 1";

}  // namespace

TEST(ZugWort, Felder) {
    const Zug_t z = MachZug(F("e2"), F("e4"), BauernZug);
    EXPECT_EQ(Von(z), F("e2"));
    EXPECT_EQ(Nach(z), F("e4"));
    EXPECT_EQ(Art(z), BauernZug);
    EXPECT_EQ(z, F("e4") | (F("e2") << 6) | (1u << 12));
    EXPECT_EQ(UmwandlungsFigur(MachZug(F("e7"), F("e8"), UmwandlungDame)), static_cast<unsigned>(Dame));
    EXPECT_EQ(UmwandlungsFigur(MachZug(F("e7"), F("e8"), UmwandlungSpringer)), static_cast<unsigned>(Springer));
    EXPECT_TRUE(IstUmwandlung(MachZug(F("e7"), F("e8"), UmwandlungTurm)));
    EXPECT_FALSE(IstUmwandlung(MachZug(F("e1"), F("g1"), Rochade)));
}

TEST(ZugText, GewoehnlicheZuegeUndUmwandlungen) {
    auto b = Aufstellen(Start);
    EXPECT_EQ(Text(*b->st, 0), "0000");
    EXPECT_EQ(Text(*b->st, MachZug(F("e2"), F("e4"), 0)), "0000");
    EXPECT_EQ(Text(*b->st, Z("e2", "e4", BauernZug)), "e2e4");
    EXPECT_EQ(Text(*b->st, Z("g1", "f3", Springer)), "g1f3");
    EXPECT_EQ(Text(*b->st, Z("a8", "h1", Dame)), "a8h1");
    EXPECT_EQ(Text(*b->st, Z("e7", "e8", UmwandlungDame)), "e7e8q");
    EXPECT_EQ(Text(*b->st, Z("e7", "d8", UmwandlungTurm)), "e7d8r");
    EXPECT_EQ(Text(*b->st, Z("b2", "a1", UmwandlungLaeufer)), "b2a1b");
    EXPECT_EQ(Text(*b->st, Z("h2", "h1", UmwandlungSpringer)), "h2h1n");
    EXPECT_EQ(Text(*b->st, Z("e5", "d6", EnPassant)), "e5d6");
    char puffer[8];
    EXPECT_EQ(ZugText(*b->st, Z("e2", "e4", BauernZug), puffer), puffer) << "returns the buffer it wrote";
}

TEST(ZugText, RochadeNachStellungsart) {
    auto standard = Aufstellen(Rochaden);
    EXPECT_EQ(Text(*standard->st, Z("e1", "g1", Rochade)), "e1g1");
    EXPECT_EQ(Text(*standard->st, Z("e1", "c1", Rochade)), "e1c1");
    EXPECT_EQ(Text(*standard->st, Z("e8", "g8", Rochade)), "e8g8");
    EXPECT_EQ(Text(*standard->st, Z("e8", "c8", Rochade)), "e8c8");

    auto x = Aufstellen("1r3kr1/8/8/8/8/8/8/1R3KR1 w KQkq - 0 1");
    ASSERT_EQ(x->st->chess960, 1);
    EXPECT_EQ(Text(*x->st, Z("f1", "g1", Rochade)), "O-O");
    EXPECT_EQ(Text(*x->st, Z("f1", "c1", Rochade)), "O-O-O");

    auto shredder = Aufstellen("1r3kr1/8/8/8/8/8/8/1R3KR1 w GBgb - 0 1");
    ASSERT_EQ(shredder->st->dateibuchstaben, 1);
    EXPECT_EQ(Text(*shredder->st, Z("f1", "g1", Rochade)), "f1g1");
    EXPECT_EQ(Text(*shredder->st, Z("f1", "c1", Rochade)), "f1b1");
    auto shredderSchwarz = Aufstellen("1r3kr1/8/8/8/8/8/8/1R3KR1 b GBgb - 0 1");
    EXPECT_EQ(Text(*shredderSchwarz->st, Z("f8", "g8", Rochade)), "f8g8");
    EXPECT_EQ(Text(*shredderSchwarz->st, Z("f8", "c8", Rochade)), "f8b8");
}

TEST(KoordinatenText, GewoehnlicheZuege) {
    EXPECT_EQ(Koordinate(Start, "e2e4"), Z("e2", "e4", BauernZug));
    EXPECT_EQ(Koordinate(Start, "  g1f3"), Z("g1", "f3", Springer));
    EXPECT_EQ(Koordinate(Start, "e2e4 e7e5"), Z("e2", "e4", BauernZug));
    // The reader trusts the text: only the origin piece is checked.
    EXPECT_EQ(Koordinate(Start, "d1h5"), Z("d1", "h5", Dame));
    EXPECT_EQ(Koordinate(Start, "e3e4"), 0) << "empty origin";
    EXPECT_EQ(Koordinate(Start, "e7e5"), 0) << "opponent's piece";
    EXPECT_EQ(Koordinate(Start, "i2i4"), 0);
    EXPECT_EQ(Koordinate(Start, "e9e4"), 0);
    EXPECT_EQ(Koordinate(Start, "e2e0"), 0);
    EXPECT_EQ(Koordinate(Start, "e2"), 0);
    EXPECT_EQ(Koordinate(Start, ""), 0);
    EXPECT_EQ(Koordinate(Start, "0000"), 0);
    const char* schwarz = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1";
    EXPECT_EQ(Koordinate(schwarz, "e7e5"), Z("e7", "e5", BauernZug));
    EXPECT_EQ(Koordinate(schwarz, "e2e4"), 0);
}

TEST(KoordinatenText, Umwandlungen) {
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8q"), Z("e7", "e8", UmwandlungDame));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8Q"), Z("e7", "e8", UmwandlungDame));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8D"), Z("e7", "e8", UmwandlungDame));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8d"), Z("e7", "e8", UmwandlungDame));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8S"), Z("e7", "e8", UmwandlungSpringer));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8n"), Z("e7", "e8", UmwandlungSpringer));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8L"), Z("e7", "e8", UmwandlungLaeufer));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8b"), Z("e7", "e8", UmwandlungLaeufer));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8T"), Z("e7", "e8", UmwandlungTurm));
    EXPECT_EQ(Koordinate(Umwandlung, "e7e8r"), Z("e7", "e8", UmwandlungTurm));
    EXPECT_EQ(Koordinate("4k3/8/8/8/8/8/p7/4K3 b - - 0 1", "a2a1q"), Z("a2", "a1", UmwandlungDame));
}

TEST(KoordinatenText, DiagonalAufLeeresFeldIstEnPassant) {
    // No en-passant square is set: the text alone decides.
    const char* fen = "4k3/8/8/3pP3/8/8/8/4K3 w - - 0 1";
    EXPECT_EQ(Koordinate(fen, "e5d6"), Z("e5", "d6", EnPassant));
    EXPECT_EQ(Koordinate(fen, "e5e6"), Z("e5", "e6", BauernZug));
    EXPECT_EQ(Koordinate("4k3/8/3n4/4P3/8/8/8/4K3 w - - 0 1", "e5d6"), Z("e5", "d6", BauernZug));
    EXPECT_EQ(Koordinate("4k3/8/8/8/3Pp3/8/8/4K3 b - d3 0 1", "e4d3"), Z("e4", "d3", EnPassant));
}

TEST(KoordinatenText, RochadeImStandardschach) {
    for (const char* text : {"O-O", "0-0", "o-o", "e1g1"}) EXPECT_EQ(Koordinate(Rochaden, text), Z("e1", "g1", Rochade)) << text;
    for (const char* text : {"O-O-O", "0-0-0", "o-o-o", "e1c1"})
        EXPECT_EQ(Koordinate(Rochaden, text), Z("e1", "c1", Rochade)) << text;
    const char* schwarz = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1";
    EXPECT_EQ(Koordinate(schwarz, "O-O"), Z("e8", "g8", Rochade));
    EXPECT_EQ(Koordinate(schwarz, "e8c8"), Z("e8", "c8", Rochade));
    // Without the right e1g1 is a plain (if impossible) king move; the castling words do not look at rights.
    const char* ohne = "r3k2r/8/8/8/8/8/8/R3K2R w kq - 0 1";
    EXPECT_EQ(Koordinate(ohne, "e1g1"), Z("e1", "g1", Koenig));
    EXPECT_EQ(Koordinate(ohne, "O-O"), Z("e1", "g1", Rochade));
    EXPECT_EQ(Koordinate(ohne, "e1f1"), Z("e1", "f1", Koenig));
    // King takes own rook is castling too.
    EXPECT_EQ(Koordinate(Rochaden, "e1h1"), Z("e1", "g1", Rochade));
    EXPECT_EQ(Koordinate(Rochaden, "e1a1"), Z("e1", "c1", Rochade));
}

TEST(KoordinatenText, RochadeInChess960) {
    const char* shredder = "1r3kr1/8/8/8/8/8/8/1R3KR1 w GBgb - 0 1";
    EXPECT_EQ(Koordinate(shredder, "f1g1"), Z("f1", "g1", Rochade));
    EXPECT_EQ(Koordinate(shredder, "f1b1"), Z("f1", "c1", Rochade));
    EXPECT_EQ(Koordinate(shredder, "O-O"), Z("f1", "g1", Rochade));
    EXPECT_EQ(Koordinate(shredder, "O-O-O"), Z("f1", "c1", Rochade));
    EXPECT_EQ(Koordinate(shredder, "f1e1"), Z("f1", "e1", Koenig));
    const char* schwarz = "1r3kr1/8/8/8/8/8/8/1R3KR1 b GBgb - 0 1";
    EXPECT_EQ(Koordinate(schwarz, "f8b8"), Z("f8", "c8", Rochade));
    EXPECT_EQ(Koordinate(schwarz, "f8g8"), Z("f8", "g8", Rochade));

    // King on e1 with the right kept: e1g1 is castling even though the rook is elsewhere.
    const char* eLinie = "1r2k1r1/8/8/8/8/8/8/1R2K1R1 w KQkq - 0 1";
    EXPECT_EQ(Koordinate(eLinie, "e1g1"), Z("e1", "g1", Rochade));
    EXPECT_EQ(Koordinate(eLinie, "e1c1"), Z("e1", "c1", Rochade));
    EXPECT_EQ(Koordinate(eLinie, "e1b1"), Z("e1", "c1", Rochade));
}

TEST(San, BauernUndFiguren) {
    EXPECT_EQ(San(Start, "e4"), Z("e2", "e4", BauernZug));
    EXPECT_EQ(San(Start, "e3"), Z("e2", "e3", BauernZug));
    EXPECT_EQ(San(Start, "e5"), 0);
    EXPECT_EQ(San(Start, "Nf3"), Z("g1", "f3", Springer));
    EXPECT_EQ(San(Start, "Sf3"), Z("g1", "f3", Springer));
    EXPECT_EQ(San(Start, "Ng1-f3"), Z("g1", "f3", Springer));
    EXPECT_EQ(San(Start, "  Nc3"), Z("b1", "c3", Springer));
    EXPECT_EQ(San(Start, "Nd2"), 0) << "square occupied by own pawn";
    EXPECT_EQ(San(Start, "Ne4"), 0);
    EXPECT_EQ(San(Start, "Xf3"), 0);
    EXPECT_EQ(San(Start, "N"), 0);
    EXPECT_EQ(San(Start, ""), 0);
    EXPECT_EQ(San(Start, "Nxf3"), 0) << "x onto an empty square";
    const char* offen = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2";
    EXPECT_EQ(San(offen, "Bc4"), Z("f1", "c4", Laeufer));
    EXPECT_EQ(San(offen, "Lc4"), Z("f1", "c4", Laeufer));
    EXPECT_EQ(San(offen, "Qh5"), Z("d1", "h5", Dame));
    EXPECT_EQ(San(offen, "Dh5"), Z("d1", "h5", Dame));
    EXPECT_EQ(San(offen, "Ke2"), Z("e1", "e2", Koenig));
    EXPECT_EQ(San(offen, "Qh6"), 0) << "no queen reaches h6";
    EXPECT_EQ(San(Rochaden, "Rb1"), Z("a1", "b1", Turm));
    EXPECT_EQ(San(Rochaden, "Tb1"), Z("a1", "b1", Turm));
    EXPECT_EQ(San(Rochaden, "Rxa8"), Z("a1", "a8", Turm));
    EXPECT_EQ(San(Rochaden, "Ra8"), 0) << "capture without x";
}

TEST(San, Bauernschlaege) {
    const char* fen = "rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2";
    EXPECT_EQ(San(fen, "exd5"), Z("e4", "d5", BauernZug));
    EXPECT_EQ(San(fen, "ed5"), 0);
    EXPECT_EQ(San(fen, "d5"), 0);
    EXPECT_EQ(San(fen, "exd5+"), 0);
    EXPECT_EQ(San(fen, "e5"), Z("e4", "e5", BauernZug));
    EXPECT_EQ(San(fen, "e2-e4"), 0) << "no pawn on e2";
    EXPECT_EQ(San(Start, "e2-e4"), Z("e2", "e4", BauernZug));
}

TEST(San, Mehrdeutigkeit) {
    const char* bf = "4k3/8/8/8/8/5N2/8/1N2K3 w - - 0 1";
    EXPECT_EQ(San(bf, "Nd2"), 0);
    EXPECT_EQ(San(bf, "Nbd2"), Z("b1", "d2", Springer));
    EXPECT_EQ(San(bf, "Sbd2"), Z("b1", "d2", Springer));
    EXPECT_EQ(San(bf, "Nfd2"), Z("f3", "d2", Springer));
    EXPECT_EQ(San(bf, "N1d2"), Z("b1", "d2", Springer));
    EXPECT_EQ(San(bf, "N3d2"), Z("f3", "d2", Springer));
    EXPECT_EQ(San(bf, "Ncd2"), 0);

    const char* bb = "4k3/8/8/8/8/1N6/8/1N2K3 w - - 0 1";
    EXPECT_EQ(San(bb, "Nbd2"), 0);
    EXPECT_EQ(San(bb, "N1d2"), Z("b1", "d2", Springer));
    EXPECT_EQ(San(bb, "N3d2"), Z("b3", "d2", Springer));
    EXPECT_EQ(San(bb, "Nb1d2"), Z("b1", "d2", Springer));

    const char* gd = "4k3/8/8/8/8/8/3N4/4K1N1 w - - 0 1";
    EXPECT_EQ(San(gd, "Nf3"), 0);
    EXPECT_EQ(San(gd, "Ngf3"), Z("g1", "f3", Springer));
    EXPECT_EQ(San(gd, "Ndf3"), Z("d2", "f3", Springer));

    // Two knights reach d2 but b3 is pinned against b1: the plain form is unambiguous.
    const char* fessel = "1r2k3/8/8/8/8/1N3N2/8/1K6 w - - 0 1";
    EXPECT_EQ(San(fessel, "Nd2"), Z("f3", "d2", Springer));
    EXPECT_EQ(San(fessel, "Nbd2"), 0);
}

TEST(San, EnPassant) {
    const char* fen = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";
    for (const char* text : {"exd6", "exd6 e.p.", "exd6e.p.", "exd6ep", "exd6 ep", "exd6 e. p."})
        EXPECT_EQ(San(fen, text), Z("e5", "d6", EnPassant)) << text;
    EXPECT_EQ(San(fen, "ed6"), 0);
    EXPECT_EQ(San(fen, "e6 e.p."), 0) << "mark on a move that is no en-passant capture";
    EXPECT_EQ(San(fen, "Kd2ep"), 0);
    EXPECT_EQ(San(fen, "exd6epep"), 0) << "mark given twice";
}

TEST(San, SchachUndMattzeichen) {
    const char* offen = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2";
    EXPECT_EQ(San(offen, "Qh5+"), 0);
    EXPECT_EQ(San(offen, "Qh5#"), 0);

    const char* narr = "rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2";
    for (const char* text : {"Qh4#", "Qh4++", "Qh4+", "Qh4", "Dh4#"}) EXPECT_EQ(San(narr, text), Z("d8", "h4", Dame)) << text;
    EXPECT_EQ(San(narr, "Qh4+#"), 0);
    EXPECT_EQ(San(narr, "Qh4#+"), 0);

    const char* schaefer = "r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4";
    EXPECT_EQ(San(schaefer, "Qxf7#"), Z("h5", "f7", Dame));
    const char* ohneLaeufer = "r1bqkbnr/pppp1ppp/2n5/4p2Q/4P3/8/PPPP1PPP/RNB1KBNR w KQkq - 2 3";
    EXPECT_EQ(San(ohneLaeufer, "Qxf7#"), 0) << "the king can take back";
    EXPECT_EQ(San(ohneLaeufer, "Qxf7+"), Z("h5", "f7", Dame));
    EXPECT_EQ(San(ohneLaeufer, "Qf7+"), 0);

    // Stalemating with a mate mark fails; the real mate next door is read.
    const char* patt = "7k/8/6K1/8/8/8/8/5Q2 w - - 0 1";
    EXPECT_EQ(San(patt, "Qf7#"), 0);
    EXPECT_EQ(San(patt, "Qf7"), Z("f1", "f7", Dame));
    EXPECT_EQ(San(patt, "Qf8#"), Z("f1", "f8", Dame));
}

TEST(San, Umwandlungen) {
    for (const char* text : {"e8=Q", "e8/Q", "e8Q", "e8D", "e8=D", "e8=Q+"})
        EXPECT_EQ(San(Umwandlung, text), Z("e7", "e8", UmwandlungDame)) << text;
    for (const char* text : {"e8=N", "e8N", "e8S"}) EXPECT_EQ(San(Umwandlung, text), Z("e7", "e8", UmwandlungSpringer)) << text;
    for (const char* text : {"e8=R", "e8T"}) EXPECT_EQ(San(Umwandlung, text), Z("e7", "e8", UmwandlungTurm)) << text;
    for (const char* text : {"e8=B", "e8L"}) EXPECT_EQ(San(Umwandlung, text), Z("e7", "e8", UmwandlungLaeufer)) << text;
    EXPECT_EQ(San(Umwandlung, "e8"), 0) << "a pawn reaching the last rank must promote";
    EXPECT_EQ(San(Umwandlung, "e8=K"), 0);
    const char* schlag = "k2r4/4P3/8/8/8/8/8/4K3 w - - 0 1";
    EXPECT_EQ(San(schlag, "exd8=Q"), Z("e7", "d8", UmwandlungDame));
    EXPECT_EQ(San(schlag, "exd8N"), Z("e7", "d8", UmwandlungSpringer));
    EXPECT_EQ(San(schlag, "ed8=Q"), 0);
}

TEST(San, Anmerkungen) {
    for (const char* text : {"Nf3 !", "Nf3!?", "Nf3!!", "Nf3??", "Nf3?!", "Nf3 ?", "Nf3 !!", "Nf3 "})
        EXPECT_EQ(San(Start, text), Z("g1", "f3", Springer)) << '"' << text << '"';
    // A single mark takes the character before it along, here the rank digit.
    EXPECT_EQ(San(Start, "Nf3!"), 0);
    EXPECT_EQ(San(Start, "Nf3?"), 0);
    EXPECT_EQ(San(Start, "Nf3!!??"), 0) << "only one annotation";
}

TEST(San, Rochade) {
    EXPECT_EQ(San(Rochaden, "O-O"), Z("e1", "g1", Rochade));
    EXPECT_EQ(San(Rochaden, "0-0"), Z("e1", "g1", Rochade));
    EXPECT_EQ(San(Rochaden, "O-O-O"), Z("e1", "c1", Rochade));
    EXPECT_EQ(San(Rochaden, "0-0-0"), Z("e1", "c1", Rochade));
    EXPECT_EQ(San(Rochaden, "o-o"), 0);
    EXPECT_EQ(San("r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1", "O-O"), 0);
    EXPECT_EQ(San("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "O-O-O"), Z("e8", "c8", Rochade));
    EXPECT_EQ(San("1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1", "O-O"), Z("f1", "g1", Rochade));
}
