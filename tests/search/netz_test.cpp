// The evaluation network: accumulators kept move by move equal a full rebuild,
// the vector and the portable code agree to the bit, and network files are read
// back exactly or refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <random>
#include <string>

#include "../board/brett_hilfe.h"
#include "../protocol/protokoll_hilfen.h"
#include "../test_dateien.h"

#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "search/netz.h"

namespace {

// A network of random weights, large enough that every wrong row shows.
std::unique_ptr<Bewertungsnetz_t> ZufallsNetz(uint32_t saat, int grenze = 64) {
    std::mt19937 zufall(saat);
    std::uniform_int_distribution<int> w(-grenze, grenze), a(-127, 127);
    auto netz = std::make_unique<Bewertungsnetz_t>();
    for (auto& zeile : netz->gewichte)
        for (int16_t& x : zeile) x = static_cast<int16_t>(w(zufall));
    for (int16_t& x : netz->bias) x = static_cast<int16_t>(w(zufall) + 60);
    for (auto& zeile : netz->ausgabeGewichte)
        for (int16_t& x : zeile) x = static_cast<int16_t>(a(zufall));
    netz->ausgabeBias[0] = 12345;
    netz->ausgabeBias[1] = -6789;
    return netz;
}

bool Gleich(const Akkumulator_t& a, const Akkumulator_t& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Random games from positions rich in castling (standard and Chess960), en passant
// and promotions, with null moves: after every move the updated accumulator equals
// the rebuilt one, and the vector and portable updates agree.
TEST(Netz, SchrittweiseGleichNeuAufgebaut) {
    const auto netz = ZufallsNetz(1);
    const char* fens[] = {
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "r3k2r/1P4P1/8/2pP4/5pP1/8/1p4p1/R3K2R w KQkq c6 0 1",
        "1rk4r/pppppppp/8/8/8/8/PPPPPPPP/1RK4R w HBhb - 0 1",  // the king may castle without moving
        "5kr1/pppppppp/8/8/8/8/PPPPPPPP/5KR1 w Gg - 0 1",  // king and rook swap squares
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    };
    std::mt19937 zufall(7);
    int geprueft = 0, besondere = 0, nullzuege = 0;
    for (const char* fen : fens) {
        for (int spiel = 0; spiel < 6; ++spiel) {
            auto st = std::make_unique<Stellung_t>();
            Stellungsdaten_t d;
            ASSERT_TRUE(SetzeStellung(*st, d, fen)) << fen;
            Akkumulator_t akku;
            NetzAufbauen(*netz, *st, akku);
            for (int ply = 0; ply < 120; ++ply) {
                const std::vector<Zug_t> legal = brett_test::Legal(*st, d);
                std::vector<Zug_t> besonders;
                for (Zug_t zug : legal)
                    if (Art(zug) >= UmwandlungSpringer || (st->seite[st->amZug ^ 1].brett[0] & Bit(Nach(zug))))
                        besonders.push_back(zug);
                if (legal.empty()) break;
                Zug_t zug;
                if (!ImSchach(*st, d) && zufall() % 10 == 0) {
                    zug = 0;
                    ++nullzuege;
                } else if (!besonders.empty() && zufall() % 2 == 0) {
                    zug = besonders[zufall() % besonders.size()];
                    ++besondere;
                } else {
                    zug = legal[zufall() % legal.size()];
                }
                const unsigned seite = st->amZug;
                Stellungsdaten_t neu;
                Rueckzug_t r;
                if (zug == 0) {
                    ZugMachen(*st, 0, neu, d, r);
                    BerechneAngriffe(*st, neu);
                } else {
                    ASSERT_TRUE(ZugMachenLegal(*st, zug, d, neu, r));
                }
                d = neu;
                const NetzAenderung_t a = NetzAenderungVon(r, zug, seite);
                Akkumulator_t schritt, portabel, frisch;
                NetzAnwenden(*netz, akku, a, schritt);
                NetzAnwendenPortabel(*netz, akku, a, portabel);
                NetzAufbauen(*netz, *st, frisch);
                ASSERT_TRUE(Gleich(schritt, frisch)) << fen << " ply " << ply << " move " << zug;
                ASSERT_TRUE(Gleich(portabel, frisch));
                akku = schritt;
                ++geprueft;
            }
        }
    }
    EXPECT_GT(geprueft, 2000);
    EXPECT_GT(besondere, 300);
    EXPECT_GT(nullzuege, 100);
}

// The output's clipping, its 32-bit sums and the final bound, on accumulators far
// beyond any real position's: both codes give the same bits.
TEST(Netz, VektorUndPortabelGleich) {
    std::mt19937 zufall(3);
    for (int grenze : {8, 200, 32767}) {
        const auto netz = ZufallsNetz(grenze, grenze);
        std::uniform_int_distribution<int> v(-32768, 32767), w(-32768, 32767);
        for (auto& zeile : netz->ausgabeGewichte)
            for (int16_t& x : zeile) x = static_cast<int16_t>(grenze == 32767 ? w(zufall) : x);
        for (int i = 0; i < 200; ++i) {
            Akkumulator_t akku;
            for (auto& seite : akku.v)
                for (int16_t& x : seite) x = static_cast<int16_t>(i % 2 ? v(zufall) : v(zufall) % 300);
            for (unsigned amZug = 0; amZug < 2; ++amZug)
                ASSERT_EQ(NetzWert(*netz, akku, amZug), NetzWertPortabel(*netz, akku, amZug));
        }
    }
}

// With one side's nodes at 1.0 and output weights of 1.0 the value is the bias plus
// that half's weights, in internal units; the side to move's half comes first.
TEST(Netz, AusgabeSkala) {
    auto netz = std::make_unique<Bewertungsnetz_t>();
    netz->ausgabeGewichte[0][0] = NetzQB;                  // middlegame, the side to move's node 0
    netz->ausgabeGewichte[1][NetzBreite + 1] = -2 * NetzQB;  // endgame, the other side's node 1
    Akkumulator_t akku{};
    akku.v[Weiss][0] = 1000;  // clipped to 1.0
    akku.v[Schwarz][1] = NetzQA / 5;
    EXPECT_EQ(NetzWert(*netz, akku, Weiss), static_cast<int32_t>(static_cast<uint32_t>(1000) << 16) - 400);
    EXPECT_EQ(NetzWert(*netz, akku, Schwarz), 0);
    netz->ausgabeBias[0] = NetzQA * NetzQB * 100;  // 100 pawns: held at the bound
    EXPECT_EQ(NetzWert(*netz, akku, Schwarz), static_cast<int32_t>(static_cast<uint32_t>(NetzWertGrenze) << 16));
}

// The file built in fits this build's shape (a network trained for another width or
// version would leave the engine without its evaluation) and is not empty.
TEST(Netz, EingebautesNetzPasst) {
    std::string fehler;
    const auto netz = LeseEingebautesNetz(fehler);
    ASSERT_NE(netz, nullptr) << fehler;
    EXPECT_EQ(std::memcmp(netz.get(), &EingebautesNetz(), sizeof(Bewertungsnetz_t)), 0);
    EXPECT_TRUE(std::any_of(std::begin(netz->ausgabeGewichte[0]), std::end(netz->ausgabeGewichte[0]),
                            [](int16_t w) { return w != 0; }));
}

TEST(Netz, DateiHinUndZurueck) {
    const auto netz = ZufallsNetz(5);
    const std::string inhalt = NetzDateiInhalt(*netz);
    ASSERT_EQ(inhalt.size(), NetzDateiGroesse);
    const auto* bytes = reinterpret_cast<const uint8_t*>(inhalt.data());
    std::string fehler;
    const auto zurueck = LeseNetz(bytes, inhalt.size(), fehler);
    ASSERT_NE(zurueck, nullptr) << fehler;
    EXPECT_EQ(std::memcmp(zurueck.get(), netz.get(), sizeof(Bewertungsnetz_t)), 0);

    // Truncated, overlong, foreign, of another shape, or with a changed byte: refused.
    std::string lang = inhalt + '\0', fremd = inhalt, form = inhalt, kaputt = inhalt;
    fremd[0] = 'X';
    form[16] ^= 1;  // the hidden layer's width
    kaputt[1000] ^= 0x40;
    const std::string faelle[] = {inhalt.substr(0, inhalt.size() - 1), inhalt.substr(0, 20), lang, fremd, form,
                                  kaputt, std::string()};
    for (const std::string& f : faelle) {
        fehler.clear();
        EXPECT_EQ(LeseNetz(reinterpret_cast<const uint8_t*>(f.data()), f.size(), fehler), nullptr);
        EXPECT_FALSE(fehler.empty());
    }
    EXPECT_EQ(LadeNetzDatei("/nonexistent/netz.knn", fehler), nullptr);
}

// "EvalFile" names another network: a good file is used, a bad one is refused with a
// report and the built-in network plays on, also after the next "go".
TEST(Netz, EvalFile) {
    const test_dateien::Verzeichnis_t ordner;
    const std::string gut = ordner / "gut.knn", kurz = ordner / "kurz.knn";
    const std::string inhalt = NetzDateiInhalt(EingebautesNetz());
    test_dateien::Schreibe(gut, inhalt);
    test_dateien::Schreibe(kurz, inhalt.substr(0, 5000));
    // Each search from an empty table and history, so equal networks search equal trees.
    const std::string go = "setoption name Clear Hash\nposition startpos moves e2e4\ngo depth 5\n";
    const Lauf_t lauf = Starte("uci\nsetoption name EvalFile value " + kurz + "\n" + go + go +
                               "setoption name EvalFile value " + gut + "\n" + go +
                               "setoption name EvalFile value /nonexistent/x.knn\n" + go);
    auto zaehle = [&](const std::string& text) {
        return std::count(lauf.aus.begin(), lauf.aus.end(), text);
    };
    EXPECT_EQ(zaehle("info string EvalFile " + kurz +
                     " refused (truncated or overlong network file): the built-in network stays in use"),
              1);
    EXPECT_EQ(zaehle("info string EvalFile " + gut + " loaded"), 1);
    EXPECT_EQ(zaehle("info string EvalFile /nonexistent/x.knn refused (cannot open /nonexistent/x.knn): the "
                     "built-in network stays in use"),
              1);
    // The same network from the file searches the same tree.
    std::vector<std::string> antworten;
    for (const std::string& z : lauf.aus)
        if (z.rfind("bestmove", 0) == 0) antworten.push_back(z);
    ASSERT_EQ(antworten.size(), 4u);
    EXPECT_EQ(std::count(antworten.begin(), antworten.end(), antworten[0]), 4);
}

}  // namespace
