// Making and taking back moves, incremental keys, legality, the game history and the draw rules.
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

// Starts for the random games: standard, tactical, Chess960 and promotion-heavy positions.
const char* const Anfaenge[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1",
    "1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1",
    "2rk3r/pppppppp/8/8/8/8/PPPPPPPP/2RK3R b KQkq - 0 1",
    "rk4r1/pp1ppppp/8/2p5/8/8/PPPPPPPP/RK4R1 w KQkq - 0 1",
    "6kr/8/8/8/8/8/8/6KR w Kk - 0 1",
    "r3k2r/1P6/8/8/8/8/6p1/R3K2R b KQkq - 0 1",
    "2n1k3/1P6/8/8/5b2/8/8/2B1K3 w - - 0 1",
};

// The attacks of side s piece by piece from the bitboards; the engine walks its square lists,
// so a list out of step with the boards shows up here too. Threats are left out.
Angriffe_t Referenz(const Stellung_t& st, Bitboard belegt, unsigned s) {
    Angriffe_t a{};
    for (unsigned t = Bauer; t <= Koenig; ++t) {
        for (Bitboard b = st.seite[s].brett[t]; b;) {
            const Feld f = NimmFeld(b);
            const Bitboard x = t == Bauer ? BauernAngriffe(s, Bit(f)) : t == Springer ? SpringerFelder[f]
                             : t == Laeufer ? LaeuferAngriffe(f, belegt) : t == Turm ? TurmAngriffe(f, belegt)
                             : t == Dame ? DameAngriffe(f, belegt) : KoenigFelder[f];
            a.doppelt |= a.alle & x;
            a.alle |= x;
            a.figur[t] |= x;
        }
    }
    a.bauern = a.figur[Bauer];
    return a;
}

}  // namespace

// Seeded random games. Every position reached has the attacks of the reference; each of its
// pseudo-legal moves is made and taken back: the incremental keys must equal a recomputation,
// undo must restore every byte, and both legality tests must agree. At the end the whole game
// is taken back.
TEST(ZugMachen, ExaktZurueckUndSchluesselWieFrischBerechnet) {
    constexpr int Halbzuege = 300;
    uint64_t x = 0x9e3779b97f4a7c15ULL;
    for (const char* fen : Anfaenge) {
        for (int partie = 0; partie < 3; ++partie) {
            Brett b(fen);
            ASSERT_TRUE(b.ok) << fen;
            const auto start = std::make_unique<Stellung_t>(*b.st);
            std::vector<Stellungsdaten_t> daten(Halbzuege + 1, b.d);
            std::vector<Rueckzug_t> rueck(Halbzuege);
            int ply = 0;
            for (; ply < Halbzuege; ++ply) {
                const Stellungsdaten_t& alt = daten[ply];
                for (unsigned s = 0; s < 2; ++s) {
                    Angriffe_t ref = Referenz(*b.st, alt.belegt, s ^ 1);  // record [s] holds the attacks on s
                    ref.bedroht = alt.angriffe[s].bedroht;
                    ASSERT_EQ(std::memcmp(&ref, &alt.angriffe[s], sizeof ref), 0) << fen << " ply " << ply;
                }
                const auto vorher = std::make_unique<Stellung_t>(*b.st);
                std::vector<Zug_t> legal;
                for (Zug_t z : Pseudolegal(*b.st, alt)) {
                    const std::string wo = std::string(fen) + " ply " + std::to_string(ply) + " " + Text(*b.st, z);
                    Stellungsdaten_t neu, frisch;
                    Rueckzug_t r = Muell();
                    ZugMachen(*b.st, z, neu, alt, r);
                    BerechneStellungsdaten(*b.st, frisch);
                    std::memcpy(neu.angriffe, frisch.angriffe, sizeof neu.angriffe);  // left to the caller
                    ASSERT_EQ(std::memcmp(&neu, &frisch, sizeof neu), 0) << "keys after " << wo;
                    // An en-passant square no pawn can use would split one position into two keys.
                    const Stellung_t& st = *b.st;
                    ASSERT_TRUE(!st.ep || (BauernAngriffe(st.amZug ^ 1, Bit(st.ep)) & st.seite[st.amZug].brett[Bauer]))
                        << wo;
                    r.Zuruecknehmen();
                    ASSERT_TRUE(Gleich(*vorher, *b.st)) << "undo of " << wo;

                    Rueckzug_t r2 = Muell(), r3 = Muell();
                    const bool ok = ZugLegal(*b.st, z, alt, neu, r2);
                    if (ok) r2.Zuruecknehmen();
                    ASSERT_EQ(ZugMachenLegal(*b.st, z, alt, neu, r3), ok) << wo;
                    if (ok) {
                        // The attack records built after the move are those of a fresh set-up.
                        ASSERT_EQ(std::memcmp(&neu, &frisch, sizeof neu), 0) << wo;
                        r3.Zuruecknehmen();
                        legal.push_back(z);
                    }
                    ASSERT_TRUE(Gleich(*vorher, *b.st)) << wo;
                }
                if (legal.empty()) break;
                x ^= x << 13;
                x ^= x >> 7;
                x ^= x << 17;
                rueck[ply] = Muell();
                ASSERT_TRUE(ZugMachenLegal(*b.st, legal[x % legal.size()], alt, daten[ply + 1], rueck[ply]));
            }
            while (ply > 0) rueck[--ply].Zuruecknehmen();
            ASSERT_TRUE(Gleich(*start, *b.st)) << fen << " game " << partie;
        }
    }
}

TEST(Spielzug, FuenfzigZuegeUndWiederholung) {
    // Shuffling pieces: the key history grows to its cap of 101, the fifty-move draw
    // comes with the hundredth move, the third repetition with the eighth.
    Brett b("4k3/8/8/8/8/8/8/4K1N1 w - - 0 1");
    const Zug_t folge[4] = {Z("g1", "f3", Springer), Z("e8", "d8", Koenig), Z("f3", "g1", Springer),
                            Z("d8", "e8", Koenig)};
    for (unsigned i = 1; i <= 110; ++i) {
        Rueckzug_t r = Muell();
        ASSERT_TRUE(SpielzugMachen(*b.st, folge[(i - 1) % 4], r, b.d)) << i;
        ASSERT_EQ(b.st->historieAnzahl, std::min(i + 1, 101u)) << i;
        EXPECT_TRUE(i > 100 || b.st->Historie[i] == b.d.schluessel) << i;
        EXPECT_EQ(FuenfzigZuegeRemis(*b.st), i >= 100) << i;
        EXPECT_EQ(WiederholungsRemis(*b.st), i >= 8) << i;
    }

    // Pawn moves, captures, promotions and en passant start the history afresh; castling does not.
    const std::tuple<const char*, Zug_t, unsigned> faelle[] = {
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("a2", "a4", BauernZug), 1},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("h1", "h8", Turm), 1},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("h1", "h7", Turm), 7},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("e1", "g1", Rochade), 7},
        {"4k3/1P6/8/8/8/8/8/4K3 w - - 9 40", Z("b7", "b8", UmwandlungDame), 1},
        {"4k3/8/8/2PpP3/8/8/8/4K3 w - d6 9 40", Z("e5", "d6", EnPassant), 1},
    };
    for (const auto& [fen, zug, anzahl] : faelle) {
        Brett c(fen);
        Rueckzug_t r = Muell();
        ASSERT_TRUE(SpielzugMachen(*c.st, zug, r, c.d)) << fen;
        EXPECT_EQ(c.st->historieAnzahl, anzahl) << fen << " " << Text(*c.st, zug);
        EXPECT_EQ(c.st->Historie[c.st->historieAnzahl - 1], c.d.schluessel) << fen;
    }
}

TEST(Spielende, MattPattUndMaterial) {
    constexpr int Weiter = 99;  // SpielEnde leaves the result alone while moves remain
    const std::tuple<const char*, int, int> faelle[] = {
        {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3", -1, 0},
        {"R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", +1, 0},
        {"8/8/8/8/8/8/5k2/6qK w - - 0 1", -1, 0},
        {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 0, 0},
        {"k7/8/1K6/8/8/8/8/7R b - - 0 1", Weiter, 0},
        {"8/8/8/8/8/8/5k2/6nK w - - 0 1", Weiter, 10},
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", Weiter, 10},
        {"4k3/8/8/8/8/8/8/4KB2 w - - 0 1", Weiter, 10},
        {"2b1k3/8/8/8/8/8/8/4KB2 w - - 0 1", Weiter, 10},  // c8 and f1 both light
        {"4k3/8/8/8/8/8/8/2B1KB2 w - - 0 1", Weiter, 0},   // c1 dark, f1 light
        {"2b1k3/8/8/8/8/8/6B1/4KB2 w - - 0 1", Weiter, 10},
        {"2b1kb2/8/8/8/8/8/6B1/4KB2 w - - 0 1", Weiter, 0},
        {"4k3/8/8/8/8/8/8/4KNN1 w - - 0 1", Weiter, 0},
        {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", Weiter, 0},
    };
    for (const auto& [fen, ergebnis, remis] : faelle) {
        Brett b(fen);
        const auto vorher = std::make_unique<Stellung_t>(*b.st);
        int e = Weiter;
        EXPECT_EQ(SpielEnde(*b.st, b.d, &e), ergebnis != Weiter) << fen;
        EXPECT_EQ(e, ergebnis) << fen;
        EXPECT_EQ(SpielEnde(*b.st, b.d, nullptr), ergebnis != Weiter) << fen;
        EXPECT_TRUE(Gleich(*vorher, *b.st)) << fen;
        EXPECT_EQ(Materialremis(*b.st), remis) << fen;
    }
}

TEST(Spielzug, IllegalerZugBleibtUngemacht) {
    const std::pair<const char*, Zug_t> faelle[] = {
        {"4k3/4r3/8/8/8/8/4N3/4K3 w - - 3 30", Z("e2", "c3", Springer)},  // pinned
        {"4k3/8/8/8/8/8/3r4/4K3 w - - 3 30", Z("e1", "e2", Koenig)},     // onto the rook's rank
        {"8/8/8/8/8/3k4/8/4K3 w - - 3 30", Z("e1", "e2", Koenig)},       // next to the other king
        {"4k3/8/8/8/1b6/8/8/4K3 w - - 3 30", Z("e1", "d2", Koenig)},     // along the checking diagonal
    };
    for (const auto& [fen, zug] : faelle) {
        Brett b(fen);
        const auto vorher = std::make_unique<Stellung_t>(*b.st);
        const Stellungsdaten_t daten = b.d;
        Rueckzug_t r = Muell();
        EXPECT_FALSE(IstLegal(*b.st, zug, b.d)) << fen;
        EXPECT_FALSE(SpielzugMachen(*b.st, zug, r, b.d)) << fen;
        EXPECT_TRUE(Gleich(*vorher, *b.st)) << fen;
        EXPECT_EQ(std::memcmp(&daten, &b.d, sizeof daten), 0) << fen;
    }
    Brett start(nullptr);
    EXPECT_TRUE(IstLegal(*start.st, Z("e2", "e4", BauernZug), start.d));
    EXPECT_FALSE(IstLegal(*start.st, Z("e2", "e4", Springer), start.d)) << "the kind is part of the move";
}
