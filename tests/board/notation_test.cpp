// Move text: coordinate output, coordinate input and SAN input.
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

const char* const Start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const char* const Rochaden = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
const char* const Umwandlung = "k7/4P3/8/8/8/8/8/4K3 w - - 0 1";
const char* const Shredder = "1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1";

// One case per line: `texte` holds alternatives separated by '|' that all read as `zug` (0: refused).
struct Fall {
    const char* fen;
    const char* texte;
    Zug_t zug;
};

template <class Lesen>
void Pruefe(const std::vector<Fall>& faelle, Lesen lesen) {
    for (const Fall& f : faelle) {
        Brett b(f.fen);
        ASSERT_TRUE(b.ok) << f.fen;
        const std::string alle(f.texte);
        for (size_t a = 0, e; a <= alle.size(); a = e + 1) {
            e = std::min(alle.find('|', a), alle.size());
            const std::string text = alle.substr(a, e - a);
            EXPECT_EQ(lesen(b, text.c_str()), f.zug) << '"' << text << "\" in " << f.fen;
        }
    }
}

}  // namespace

TEST(ZugText, UmwandlungenUndRochadeformen) {
    const std::tuple<const char*, Zug_t, const char*> faelle[] = {
        {Start, 0, "0000"},
        {Start, Z("e7", "d8", UmwandlungTurm), "e7d8r"},
        {Rochaden, Z("e1", "c1", Rochade), "e1c1"},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", Z("e8", "g8", Rochade), "e8g8"},
        // X-FEN rights give the castling words, Shredder letters king takes rook.
        {"1r3kr1/8/8/8/8/8/8/1R3KR1 w KQkq - 0 1", Z("f1", "g1", Rochade), "O-O"},
        {"1r3kr1/8/8/8/8/8/8/1R3KR1 w KQkq - 0 1", Z("f1", "c1", Rochade), "O-O-O"},
        {Shredder, Z("f1", "g1", Rochade), "f1g1"},
        {Shredder, Z("f1", "c1", Rochade), "f1b1"},
        {"1r3kr1/8/8/8/8/8/8/1R3KR1 b GBgb - 0 1", Z("f8", "c8", Rochade), "f8b8"},
    };
    for (const auto& [fen, zug, text] : faelle) EXPECT_EQ(Text(*Brett(fen).st, zug), text) << fen;
}

TEST(KoordinatenText, Randfaelle) {
    const char* eLinie = "1r2k1r1/8/8/8/8/8/8/1R2K1R1 w KQkq - 0 1";
    Pruefe({
               {Start, "e2e4|  e2e4|e2e4 e7e5", Z("e2", "e4", BauernZug)},
               {Start, "d1h5", Z("d1", "h5", Dame)},  // trusted: only the origin piece is checked
               {Start, "e3e4|e7e5|i2i4|e9e4|e2e0|e2||0000", 0},
               {Umwandlung, "e7e8q|e7e8Q|e7e8D|e7e8d", Z("e7", "e8", UmwandlungDame)},
               {Umwandlung, "e7e8n|e7e8S", Z("e7", "e8", UmwandlungSpringer)},
               {Umwandlung, "e7e8b|e7e8L", Z("e7", "e8", UmwandlungLaeufer)},
               {Umwandlung, "e7e8r|e7e8T", Z("e7", "e8", UmwandlungTurm)},
               // a pawn going diagonally onto an empty square takes en passant, ep square or not
               {"4k3/8/8/3pP3/8/8/8/4K3 w - - 0 1", "e5d6", Z("e5", "d6", EnPassant)},
               {"4k3/8/3n4/4P3/8/8/8/4K3 w - - 0 1", "e5d6", Z("e5", "d6", BauernZug)},
               {Rochaden, "O-O|0-0|o-o|e1g1|e1h1", Z("e1", "g1", Rochade)},
               {Rochaden, "O-O-O|0-0-0|o-o-o|e1c1|e1a1", Z("e1", "c1", Rochade)},
               {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "O-O|e8g8", Z("e8", "g8", Rochade)},
               // without the right e1g1 is a plain king move; the castling words ignore rights
               {"r3k2r/8/8/8/8/8/8/R3K2R w kq - 0 1", "e1g1", Z("e1", "g1", Koenig)},
               {"r3k2r/8/8/8/8/8/8/R3K2R w kq - 0 1", "O-O", Z("e1", "g1", Rochade)},
               {Shredder, "f1g1|O-O", Z("f1", "g1", Rochade)},
               {Shredder, "f1b1|O-O-O", Z("f1", "c1", Rochade)},
               {Shredder, "f1e1", Z("f1", "e1", Koenig)},
               {"1r3kr1/8/8/8/8/8/8/1R3KR1 b GBgb - 0 1", "f8b8", Z("f8", "c8", Rochade)},
               // king on e1 with the rooks elsewhere: the GUI may send either form
               {eLinie, "e1g1", Z("e1", "g1", Rochade)},
               {eLinie, "e1c1|e1b1", Z("e1", "c1", Rochade)},
           },
           [](Brett& b, const char* text) { return LeseKoordinatenZug(*b.st, text); });
}

TEST(San, Randfaelle) {
    const char* offen = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 2";
    const char* d5 = "rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2";
    const char* zweiLinien = "4k3/8/8/8/8/5N2/8/1N2K3 w - - 0 1";
    const char* eineLinie = "4k3/8/8/8/8/1N6/8/1N2K3 w - - 0 1";
    const char* gefesselt = "1r2k3/8/8/8/8/1N3N2/8/1K6 w - - 0 1";  // b3 pinned against b1
    const char* ep = "4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1";
    const char* narr = "rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2";
    const char* schach = "r1bqkbnr/pppp1ppp/2n5/4p2Q/4P3/8/PPPP1PPP/RNB1KBNR w KQkq - 2 3";
    const char* patt = "7k/8/6K1/8/8/8/8/5Q2 w - - 0 1";
    Pruefe({
               {Start, "e4|e2-e4", Z("e2", "e4", BauernZug)},
               {Start, "Nf3|Sf3|Ng1-f3|Nf3 |Nf3!?|Nf3 !|Nf3??|Nf3 !!", Z("g1", "f3", Springer)},
               // occupied, unreachable, no such piece, x onto nothing; a lone mark eats the digit
               {Start, "e5|Nd2|Ne4|Xf3|N||Nxf3|Nf3!|Nf3!!??", 0},
               {offen, "Bc4|Lc4", Z("f1", "c4", Laeufer)},
               {offen, "Qh6|Qh5+|Qh5#", 0},
               {Rochaden, "Rxa8|Txa8", Z("a1", "a8", Turm)},
               {Rochaden, "Ra8|o-o", 0},
               {d5, "exd5", Z("e4", "d5", BauernZug)},
               {d5, "ed5|d5|exd5+|e2-e4", 0},
               {zweiLinien, "Nbd2|Sbd2|N1d2", Z("b1", "d2", Springer)},
               {zweiLinien, "Nfd2|N3d2", Z("f3", "d2", Springer)},
               {zweiLinien, "Nd2|Ncd2", 0},
               {eineLinie, "N1d2|Nb1d2", Z("b1", "d2", Springer)},
               {eineLinie, "Nbd2", 0},
               {gefesselt, "Nd2", Z("f3", "d2", Springer)},
               {gefesselt, "Nbd2", 0},
               {ep, "exd6|exd6 e.p.|exd6e.p.|exd6ep|exd6 e. p.", Z("e5", "d6", EnPassant)},
               {ep, "ed6|e6 e.p.|Kd2ep|exd6epep", 0},
               {narr, "Qh4#|Qh4++|Qh4+|Qh4|Dh4#", Z("d8", "h4", Dame)},
               {narr, "Qh4+#|Qh4#+", 0},
               {schach, "Qxf7+", Z("h5", "f7", Dame)},
               {schach, "Qxf7#|Qf7+", 0},  // the king can take back
               {patt, "Qf7", Z("f1", "f7", Dame)},
               {patt, "Qf7#", 0},  // stalemate is no mate
               {patt, "Qf8#", Z("f1", "f8", Dame)},
               {Umwandlung, "e8=Q|e8/Q|e8Q|e8D|e8=D|e8=Q+", Z("e7", "e8", UmwandlungDame)},
               {Umwandlung, "e8=N|e8N|e8S", Z("e7", "e8", UmwandlungSpringer)},
               {Umwandlung, "e8=R|e8T", Z("e7", "e8", UmwandlungTurm)},
               {Umwandlung, "e8=B|e8L", Z("e7", "e8", UmwandlungLaeufer)},
               {Umwandlung, "e8|e8=K", 0},
               {"k2r4/4P3/8/8/8/8/8/4K3 w - - 0 1", "exd8=Q", Z("e7", "d8", UmwandlungDame)},
               {"k2r4/4P3/8/8/8/8/8/4K3 w - - 0 1", "ed8=Q", 0},
               {Rochaden, "O-O|0-0", Z("e1", "g1", Rochade)},
               {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "O-O-O", Z("e8", "c8", Rochade)},
               {"r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1", "O-O", 0},
               {Shredder, "O-O", Z("f1", "g1", Rochade)},
               // A pawn push onto the mover's own back rank has no square behind it.
               {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", "a1|h1", 0},
               {"4k3/8/8/8/8/8/8/4K3 b - - 0 1", "a8|h8", 0},
           },
           [](Brett& b, const char* text) {
               // Reading tries moves on the board; it must leave the position as it found it.
               const auto vorher = std::make_unique<Stellung_t>(*b.st);
               const Zug_t z = LeseSanZug(*b.st, text, b.d);
               EXPECT_TRUE(Gleich(*vorher, *b.st)) << text;
               return z;
           });
}
