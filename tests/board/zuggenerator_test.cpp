// Move generation: order, en passant, promotions, castling rules and check evasions.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "brett_hilfe.h"

using namespace brett_test;

namespace {

std::string Liste(const char* fen) {
    auto b = Aufstellen(fen);
    std::string s = Texte(*b->st, Pseudolegal(*b->st, *b->d));
    if (!s.empty()) s.pop_back();
    return s;
}

std::vector<Zug_t> Zuege(const char* fen) {
    auto b = Aufstellen(fen);
    return Pseudolegal(*b->st, *b->d);
}

std::vector<Zug_t> Rochaden(const char* fen) {
    std::vector<Zug_t> v;
    for (Zug_t z : Zuege(fen))
        if (Art(z) == Rochade) v.push_back(z);
    return v;
}

}  // namespace

TEST(Zuggenerator, GrundstellungInGenerationsreihenfolge) {
    EXPECT_EQ(Liste("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
              "a2a4 b2b4 c2c4 d2d4 e2e4 f2f4 g2g4 h2h4 a2a3 b2b3 c2c3 d2d3 e2e3 f2f3 g2g3 h2h3 "
              "b1a3 b1c3 g1f3 g1h3");
    EXPECT_EQ(Liste("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"),
              "a7a5 b7b5 c7c5 d7d5 e7e5 f7f5 g7g5 h7h5 a7a6 b7b6 c7c6 d7d6 e7e6 f7f6 g7g6 h7h6 "
              "b8a6 b8c6 g8f6 g8h6");
}

TEST(Zuggenerator, BauerngruppenUndKoenig) {
    // Captures toward the a-file side, then toward the h-file side, then double
    // pushes, then single pushes; the king only onto squares no pawn covers.
    EXPECT_EQ(Liste("4k3/8/8/8/8/3p1p2/PP2P1PP/4K3 w - - 0 1"),
              "e2d3 g2f3 e2f3 a2a4 b2b4 e2e4 g2g4 h2h4 a2a3 b2b3 e2e3 g2g3 h2h3 e1d2 e1f2 e1d1 e1f1");
    EXPECT_EQ(Liste("4k3/pp1p1p1p/2P1P3/8/8/8/8/4K3 b - - 0 1"),
              "d7c6 f7e6 b7c6 d7e6 a7a5 b7b5 d7d5 f7f5 h7h5 a7a6 b7b6 d7d6 f7f6 h7h6 e8d8 e8f8 e8e7");
}

TEST(Zuggenerator, FigurenInListenUndZielreihenfolge) {
    // Knights, bishops, rooks, queens, king; each piece's targets ascending.
    EXPECT_EQ(Liste("k7/8/8/8/8/8/8/KNBRQ3 w - - 0 1"),
              "b1a3 b1c3 b1d2 c1h6 c1g5 c1f4 c1a3 c1e3 c1b2 c1d2 d1d8 d1d7 d1d6 d1d5 d1d4 d1d3 d1d2 "
              "e1e8 e1e7 e1e6 e1a5 e1e5 e1b4 e1e4 e1h4 e1c3 e1e3 e1g3 e1d2 e1e2 e1f2 e1f1 e1g1 e1h1 "
              "a1a2 a1b2");
}

TEST(Zuggenerator, UmwandlungenDameTurmLaeuferSpringer) {
    EXPECT_EQ(Liste("r1r1k3/1P6/8/8/8/8/8/4K3 w - - 0 1").substr(0, 12 * 6 - 1),
              "b7a8q b7a8r b7a8b b7a8n b7c8q b7c8r b7c8b b7c8n b7b8q b7b8r b7b8b b7b8n");
    EXPECT_EQ(Liste("4k3/8/8/8/8/8/1p6/R1R1K3 b - - 0 1").substr(0, 12 * 6 - 1),
              "b2a1q b2a1r b2a1b b2a1n b2c1q b2c1r b2c1b b2c1n b2b1q b2b1r b2b1b b2b1n");
    EXPECT_EQ(Liste("1n2k3/P7/8/8/8/8/6p1/4K2R b - - 0 1").substr(0, 47),
              "g2h1q g2h1r g2h1b g2h1n g2g1q g2g1r g2g1b g2g1n");
    // Promoting captures before the plain captures of the same diagonal, even
    // though Black's promotion squares are the higher ones.
    EXPECT_EQ(Liste("4k3/8/8/8/6p1/7N/6p1/4K2R b - - 0 1").substr(0, 57),
              "g2h1q g2h1r g2h1b g2h1n g4h3 g2g1q g2g1r g2g1b g2g1n g4g3");
    for (Zug_t z : Zuege("r1r1k3/1P6/8/8/8/8/8/4K3 w - - 0 1"))
        if (Von(z) == F("b7")) {
            EXPECT_TRUE(IstUmwandlung(z)) << "a pawn on the seventh only moves by promoting";
        }
}

TEST(Zuggenerator, EnPassantNachDenBauernzuegen) {
    EXPECT_EQ(Liste("4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1"), "c5c6 e5e6 e5d6 c5d6 e1d2 e1e2 e1f2 e1d1 e1f1");
    const std::vector<Zug_t> v = Zuege("4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1");
    EXPECT_TRUE(Enthaelt(v, Z("e5", "d6", EnPassant)));
    EXPECT_TRUE(Enthaelt(v, Z("c5", "d6", EnPassant)));
    EXPECT_EQ(Liste("4k3/8/8/8/3PpP2/8/8/4K3 b - d3 0 1"), "e4e3 e4d3 e8d8 e8f8 e8d7 e8e7 e8f7");
    EXPECT_EQ(Art(Zuege("4k3/8/8/8/3PpP2/8/8/4K3 b - d3 0 1")[1]), static_cast<unsigned>(EnPassant));
}

TEST(Zuggenerator, RochadeNurUeberFreieUnbedrohteFelder) {
    const char* beide = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
    EXPECT_EQ(Rochaden(beide), (std::vector<Zug_t>{Z("e1", "g1", Rochade), Z("e1", "c1", Rochade)}))
        << "short before long";
    EXPECT_EQ(Rochaden("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1"),
              (std::vector<Zug_t>{Z("e8", "g8", Rochade), Z("e8", "c8", Rochade)}));
    const std::vector<Zug_t> alle = Zuege(beide);
    EXPECT_EQ(alle[alle.size() - 2], Z("e1", "g1", Rochade)) << "castling comes last";
    EXPECT_EQ(alle.back(), Z("e1", "c1", Rochade));

    const std::vector<Zug_t> keine;
    const std::vector<Zug_t> kurz{Z("e1", "g1", Rochade)};
    const std::vector<Zug_t> lang{Z("e1", "c1", Rochade)};
    // In check.
    EXPECT_EQ(Rochaden("4r1k1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), keine);
    EXPECT_EQ(Rochaden("6k1/8/8/8/1b6/8/8/R3K2R w KQ - 0 1"), keine);
    // The king passes over f1 / d1.
    EXPECT_EQ(Rochaden("5rk1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), lang);
    EXPECT_EQ(Rochaden("3r2k1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), kurz);
    // The king lands on g1 / c1.
    EXPECT_EQ(Rochaden("6rk/8/8/8/8/8/8/R3K2R w KQ - 0 1"), lang);
    EXPECT_EQ(Rochaden("2r3k1/8/8/8/8/8/8/R3K2R w KQ - 0 1"), kurz);
    // b1 is crossed only by the rook, and an attacked rook does not matter either.
    EXPECT_EQ(Rochaden("1r4k1/8/8/8/8/8/8/R3K2R w KQ - 0 1").size(), 2u);
    EXPECT_EQ(Rochaden("r5k1/8/8/8/8/8/8/R3K2R w KQ - 0 1").size(), 2u);
    // Knight and pawn attacks count like slider attacks.
    EXPECT_EQ(Rochaden("6k1/8/8/8/8/4n3/8/R3K2R w KQ - 0 1"), keine);
    EXPECT_EQ(Rochaden("6k1/8/8/8/8/8/6p1/R3K2R w KQ - 0 1"), lang);
    // Occupied squares on either path block.
    EXPECT_EQ(Rochaden("6k1/8/8/8/8/8/8/RN2K2R w KQ - 0 1"), kurz);
    EXPECT_EQ(Rochaden("6k1/8/8/8/8/8/8/R3K1nR w KQ - 0 1"), lang);
    EXPECT_EQ(Rochaden("6k1/8/8/8/8/8/8/R3KB1R w KQ - 0 1"), lang);
    // Rights, not just rooks, decide.
    EXPECT_EQ(Rochaden("6k1/8/8/8/8/8/8/R3K2R w Q - 0 1"), lang);
    EXPECT_EQ(Rochaden("r3k2r/8/8/8/8/8/8/R3K2R w kq - 0 1"), keine);
    EXPECT_EQ(Rochaden("r3k2r/8/8/8/8/8/8/R3K2R b Kq - 0 1"), std::vector<Zug_t>{Z("e8", "c8", Rochade)});
}

TEST(Zuggenerator, Chess960Rochaden) {
    // King f1, short rook g1: only g1 has to be free of other men.
    EXPECT_EQ(Rochaden("1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1"),
              (std::vector<Zug_t>{Z("f1", "g1", Rochade), Z("f1", "c1", Rochade)}));
    EXPECT_EQ(Rochaden("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1"),
              std::vector<Zug_t>{Z("f1", "g1", Rochade)});
    EXPECT_EQ(Rochaden("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN b KQkq - 0 1"),
              std::vector<Zug_t>{Z("f8", "g8", Rochade)});
    // Long castling from f1 with the b1 rook needs e1, d1, c1; a man on h1 does not matter.
    EXPECT_EQ(Rochaden("1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R2BKRN w GBgb - 0 1"),
              std::vector<Zug_t>{Z("f1", "g1", Rochade)});
    // A rook on the king's target and the king on the rook's target: they swap.
    EXPECT_EQ(Rochaden("2rk3r/pppppppp/8/8/8/8/PPPPPPPP/2RK3R w KQkq - 0 1"),
              (std::vector<Zug_t>{Z("d1", "g1", Rochade), Z("d1", "c1", Rochade)}));
    // King b1: an attacked d1 stops the king's long way to g1 but not the rook's hop to d1.
    EXPECT_EQ(Rochaden("rk1r4/8/8/8/8/8/8/RK4R1 w KQ - 0 1"), std::vector<Zug_t>{Z("b1", "c1", Rochade)});
    EXPECT_EQ(Rochaden("rk6/8/8/8/8/8/8/RK4R1 w KQ - 0 1"),
              (std::vector<Zug_t>{Z("b1", "g1", Rochade), Z("b1", "c1", Rochade)}));
    // A man on d1 is in both ways.
    EXPECT_EQ(Rochaden("rk6/8/8/8/8/8/8/RK1N2R1 w KQ - 0 1"), std::vector<Zug_t>{});
    EXPECT_EQ(Rochaden("rk2r3/8/8/8/8/8/8/RK4R1 w KQ - 0 1"), std::vector<Zug_t>{Z("b1", "c1", Rochade)});
    // King already on g1 with the rook on h1: castling only moves the rook.
    EXPECT_EQ(Rochaden("6kr/8/8/8/8/8/8/6KR w K - 0 1"), std::vector<Zug_t>{Z("g1", "g1", Rochade)});
}

TEST(Zuggenerator, DoppelschachNurKoenigszuege) {
    const char* fen = "4r1k1/8/8/8/8/3n4/8/R3K2Q w Q - 0 1";
    const std::vector<Zug_t> v = Zuege(fen);
    ASSERT_FALSE(v.empty());
    for (Zug_t z : v) {
        EXPECT_EQ(Von(z), F("e1"));
        EXPECT_EQ(Art(z), static_cast<unsigned>(Koenig));
    }
    auto b = Aufstellen(fen);
    EXPECT_EQ(Texte(*b->st, Legal(*b->st, *b->d)), "e1d2 e1d1 e1f1 ");
}

TEST(Zuggenerator, AusweichenHinterDemKoenigIstKeinFluchtfeld) {
    // A slider's ray goes on through the king's square once the king steps off it.
    const std::vector<Zug_t> turm = Zuege("4k3/8/8/8/8/8/8/r3K3 w - - 0 1");
    EXPECT_FALSE(Enthaelt(turm, Z("e1", "f1", Koenig)));
    EXPECT_FALSE(Enthaelt(turm, Z("e1", "d1", Koenig)));
    EXPECT_TRUE(Enthaelt(turm, Z("e1", "e2", Koenig)));
    const std::vector<Zug_t> laeufer = Zuege("6k1/8/8/8/2b5/8/4K3/8 w - - 0 1");
    EXPECT_FALSE(Enthaelt(laeufer, Z("e2", "f1", Koenig)));
    EXPECT_TRUE(Enthaelt(laeufer, Z("e2", "e1", Koenig)));
    const std::vector<Zug_t> dame = Zuege("4q1k1/8/8/8/8/8/4K3/8 w - - 0 1");
    EXPECT_FALSE(Enthaelt(dame, Z("e2", "e1", Koenig)));
    EXPECT_TRUE(Enthaelt(dame, Z("e2", "d1", Koenig)));
}

TEST(Zuggenerator, AusweichenDurchBlockenSchlagenUndEnPassant) {
    // Rook check along the rank: block on b1..d1, take on a1, or step away.
    auto b = Aufstellen("4k3/8/8/8/8/8/1N3N2/r3K3 w - - 0 1");
    const std::vector<Zug_t> v = Pseudolegal(*b->st, *b->d);
    for (Zug_t z : v) {
        if (Art(z) == Koenig) continue;
        EXPECT_TRUE(Nach(z) == F("a1") || Nach(z) == F("b1") || Nach(z) == F("c1") || Nach(z) == F("d1"))
            << Text(*b->st, z);
    }
    EXPECT_TRUE(Enthaelt(v, Z("b2", "d1", Springer)));
    EXPECT_TRUE(Enthaelt(v, Z("f2", "d1", Springer)));
    Zugliste_t aus;
    const uint32_t* ende = ErzeugeAusweichzuege(*b->st, *b->d, aus);
    std::vector<Zug_t> ausweich;
    for (const uint32_t* p = aus; p != ende; ++p) ausweich.push_back(static_cast<Zug_t>(*p));
    EXPECT_EQ(ausweich, v) << "in check the generator is the evasion generator";

    // Evasion order: king first, then pawns, knights, bishops, queens as bishops, rooks, queens as rooks.
    EXPECT_EQ(Liste("7k/8/4r3/1B1P1P2/R7/2N5/6Q1/4K3 w - - 0 1"),
              "e1d2 e1f2 e1d1 e1f1 f5e6 d5e6 c3e4 c3e2 b5e2 g2e4 a4e4 g2e2");

    // A pawn that has just made a double step with check can be taken en passant.
    const std::vector<Zug_t> ep = Zuege("8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1");
    EXPECT_TRUE(Enthaelt(ep, Z("e4", "d3", EnPassant)));
    EXPECT_TRUE(Enthaelt(ep, Z("c5", "d4", Koenig)));
}

// The attack records the generator relies on, against square-by-square sets.
TEST(Angriffsdaten, StimmenMitLangsamenAngriffen) {
    uint64_t saat = 100;
    for (const char* fen : Partieanfaenge()) {
        ZufallsPartie(fen, 120, saat++, [&](const Stellung_t& st, const Stellungsdaten_t& d) {
            const Bitboard belegt = st.seite[0].brett[0] | st.seite[1].brett[0];
            for (unsigned seite = 0; seite < 2; ++seite) {
                Bitboard alle = 0, doppelt = 0, figur[7] = {};
                for (unsigned t = Bauer; t <= Koenig; ++t) {
                    Bitboard b = st.seite[seite].brett[t];
                    while (b) {
                        const Bitboard a = LangsameAngriffe(seite, t, NimmFeld(b), belegt);
                        doppelt |= alle & a;
                        alle |= a;
                        figur[t] |= a;
                    }
                }
                // Record [s] holds what the other side attacks.
                const Angriffe_t& r = d.angriffe[seite ^ 1];
                ASSERT_EQ(r.alle, alle) << fen << " side " << seite;
                ASSERT_EQ(r.doppelt, doppelt) << fen << " side " << seite;
                ASSERT_EQ(r.bauern, figur[Bauer]) << fen << " side " << seite;
                for (unsigned t = Bauer; t <= Koenig; ++t) ASSERT_EQ(r.figur[t], figur[t]) << fen << " type " << t;
                for (Feld f = 0; f < 64; ++f)
                    ASSERT_EQ(FeldAngegriffen(st, f, seite, belegt), (alle & Bit(f)) != 0) << fen << " square " << f;
            }
        });
    }
}

TEST(Angriffsdaten, FeldAngegriffenVonJederFigurenart) {
    struct Fall {
        const char* fen;
        const char* feld;
        bool angegriffen;
    };
    // Always asked about Black's attacks.
    const Fall faelle[] = {
        {"8/8/8/8/8/3k4/8/4K3 w - - 0 1", "e2", true},     // king
        {"8/8/8/8/8/3k4/8/4K3 w - - 0 1", "e1", false},
        {"4k3/8/8/8/8/5n2/8/4K3 w - - 0 1", "e1", true},   // knight
        {"4k3/8/8/8/8/8/3p4/4K3 w - - 0 1", "e1", true},   // pawn, capturing downwards
        {"4k3/8/8/8/8/8/4p3/4K3 w - - 0 1", "e1", false},  // pawns do not attack straight ahead
        {"4k3/8/8/8/8/3p4/8/4K3 w - - 0 1", "e2", true},
        {"4k3/8/8/8/8/8/8/r3K3 w - - 0 1", "e1", true},    // rook
        {"4k3/8/8/8/8/8/8/r1N1K3 w - - 0 1", "e1", false}, // blocked
        {"4k3/8/8/8/1b6/8/8/4K3 w - - 0 1", "e1", true},   // bishop
        {"4k3/8/8/8/1b6/2P5/8/4K3 w - - 0 1", "e1", false},
        {"4k3/4q3/8/8/8/8/8/4K3 w - - 0 1", "e1", true},   // queen
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        const Bitboard belegt = b->st->seite[0].brett[0] | b->st->seite[1].brett[0];
        EXPECT_EQ(FeldAngegriffen(*b->st, F(f.feld), Schwarz, belegt), f.angegriffen) << f.fen << " " << f.feld;
    }
}

// Whatever the position, every generated word names an own piece of its kind,
// never lands on an own man, appears once, and king steps avoid attacked squares.
TEST(Zuggenerator, ZuegeZufallspartienSindWohlgeformt) {
    uint64_t saat = 7;
    for (const char* fen : Partieanfaenge()) {
        ZufallsPartie(fen, 200, saat++, [&](const Stellung_t& st, const Stellungsdaten_t& d) {
            const unsigned seite = st.amZug;
            const Seite_t& eigene = st.seite[seite];
            const std::vector<Zug_t> zuege = Pseudolegal(st, d);
            ASSERT_EQ(std::set<Zug_t>(zuege.begin(), zuege.end()).size(), zuege.size()) << "duplicates in " << fen;
            for (Zug_t z : zuege) {
                const unsigned art = Art(z);
                const std::string wo = Text(st, z) + " after " + fen;
                ASSERT_TRUE(art >= BauernZug && art <= EnPassant) << wo;
                const unsigned typ = art <= Koenig ? art : art == Rochade ? static_cast<unsigned>(Koenig) : Bauer;
                ASSERT_TRUE(eigene.brett[typ] & Bit(Von(z))) << wo;
                if (art == Rochade) {
                    const Feld grundreihe = seite == Weiss ? 56 : 0;
                    ASSERT_TRUE(Nach(z) == grundreihe + 6 || Nach(z) == grundreihe + 2) << wo;
                    continue;
                }
                ASSERT_FALSE(eigene.brett[0] & Bit(Nach(z))) << wo;
                ASSERT_FALSE(st.seite[seite ^ 1].brett[Koenig] & Bit(Nach(z))) << "captures the king: " << wo;
                if (art == Koenig) {
                    const Bitboard ohneKoenig = d.belegt & ~Bit(Von(z));
                    ASSERT_FALSE(FeldAngegriffen(st, Nach(z), seite ^ 1, ohneKoenig)) << "king steps into attack: " << wo;
                }
                if (art == EnPassant) {
                    ASSERT_EQ(Nach(z), st.ep) << wo;
                }
                if (IstUmwandlung(z)) {
                    ASSERT_EQ(ReiheVon(Nach(z)), seite == Weiss ? 8u : 1u) << wo;
                }
            }
        });
    }
}
