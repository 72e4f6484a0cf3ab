// The book in play: Polyglot keys and moves, lookups in both kinds of book
// file, and the choice by weight.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../board/brett_hilfe.h"
#include "book/buchbefehl.h"
#include "book/buchdatei.h"
#include "book/buchzug.h"
#include "book/polyglot.h"
#include "buch_hilfe.h"
#include "protocol/optionen.h"

namespace {

// The position after coordinate moves from the start.
Stellung_t Nach(const std::vector<const char*>& zuege, Stellungsdaten_t& daten) {
    Stellung_t st;
    SetzeStellung(st, daten, nullptr);
    for (const char* z : zuege) {
        Rueckzug_t r;
        EXPECT_TRUE(SpielzugMachen(st, LeseKoordinatenZug(st, z), r, daten)) << z;
    }
    return st;
}

std::string BigEndian(uint64_t wert, int bytes) {
    std::string s;
    for (int i = bytes - 1; i >= 0; --i) s += static_cast<char>((wert >> (8 * i)) & 0xff);
    return s;
}

std::string PolyglotEintrag(uint64_t schluessel, uint16_t zug, uint16_t gewicht) {
    return BigEndian(schluessel, 8) + BigEndian(zug, 2) + BigEndian(gewicht, 2) + BigEndian(0, 4);
}

using brett_test::Text;

}  // namespace

TEST(Polyglot, SchluesselBekannterStellungen) {
    // The examples of the format's description.
    struct Fall_t {
        std::vector<const char*> zuege;
        uint64_t schluessel;
    };
    const Fall_t faelle[] = {
        {{}, 0x463b96181691fc9cULL},
        {{"e2e4"}, 0x823c9b50fd114196ULL},
        {{"e2e4", "d7d5"}, 0x0756b94461c50fb0ULL},
        {{"e2e4", "d7d5", "e4e5"}, 0x662fafb965db29d4ULL},
        {{"e2e4", "d7d5", "e4e5", "f7f5"}, 0x22a48b5a8e47ff78ULL},  // en passant possible
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2"}, 0x652a607ca3f242c1ULL},
        {{"e2e4", "d7d5", "e4e5", "f7f5", "e1e2", "e8f7"}, 0x00fdd303c946bdd9ULL},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4"}, 0x3c8123ea7b067637ULL},
        {{"a2a4", "b7b5", "h2h4", "b5b4", "c2c4", "b4c3", "a1a3"}, 0x5c3f9b829b279560ULL},
    };
    for (const Fall_t& f : faelle) {
        Stellungsdaten_t daten;
        EXPECT_EQ(PolyglotSchluessel(Nach(f.zuege, daten)), f.schluessel) << f.zuege.size();
    }
    // From a FEN with an en-passant square that no pawn can use: no en-passant key.
    Stellung_t st;
    Stellungsdaten_t daten;
    ASSERT_TRUE(SetzeStellung(st, daten, "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"));
    EXPECT_EQ(PolyglotSchluessel(st), 0x823c9b50fd114196ULL);
}

TEST(Polyglot, ZugwoerterHinUndZurueck) {
    const char* fens[] = {"r3k2r/pPp2ppp/8/3pP3/8/8/PPP2PPP/R3K2R w KQkq d6 0 1",
                          "r3k2r/pppq1ppp/8/8/8/8/PPP3pP/R3K2R b KQkq - 0 1"};
    for (const char* fen : fens) {
        Stellung_t st;
        Stellungsdaten_t daten;
        ASSERT_TRUE(SetzeStellung(st, daten, fen));
        for (Zug_t zug : brett_test::Legal(st, daten))
            EXPECT_EQ(PolyglotZugAus(st, daten, PolyglotZugWort(st, zug)), zug) << Text(st, zug);
    }
    // Castling is the king taking its rook: e1h1 and e1a1; a promotion carries its piece.
    Stellung_t st;
    Stellungsdaten_t daten;
    SetzeStellung(st, daten, fens[0]);
    EXPECT_EQ(Text(st, PolyglotZugAus(st, daten, 4 << 6 | 7)), "e1g1");
    EXPECT_EQ(Text(st, PolyglotZugAus(st, daten, 4 << 6 | 0)), "e1c1");
    EXPECT_EQ(Text(st, PolyglotZugAus(st, daten, (1 << 6 | 6 << 9) | (7 << 3 | 0) | 2 << 12)), "b7a8b");
    EXPECT_EQ(PolyglotZugAus(st, daten, 4 << 6 | 6), 0);  // e1g1 is no Polyglot word
}

TEST(Buchzug, WahlNachGewicht) {
    const std::vector<Buchkandidat_t> k = {{1, 1, 0, 0}, {2, 3, 0, 0}};
    EXPECT_EQ(WaehleNachGewicht(k, 0), 0u);
    EXPECT_EQ(WaehleNachGewicht(k, (uint64_t{1} << 62) - 1), 0u);
    EXPECT_EQ(WaehleNachGewicht(k, uint64_t{1} << 62), 1u);
    EXPECT_EQ(WaehleNachGewicht(k, ~uint64_t{0}), 1u);
    int erster = 0;
    for (uint64_t i = 0; i < 4000; ++i) erster += WaehleNachGewicht(k, i * (~uint64_t{0} / 4000) + (~uint64_t{0} / 8000)) == 0;
    EXPECT_EQ(erster, 1000);
}

TEST(Buchzug, AusPolyglotBuch) {
    TempDatei bin(".bin");
    Stellungsdaten_t daten;
    const Stellung_t start = Nach({}, daten);
    // e2e4 weight 3, d2d4 weight 1, a word for no legal move, a weight of 0; and a later key.
    const uint64_t k = PolyglotSchluessel(start);
    bin.schreiben(PolyglotEintrag(k - 1, 1, 1) + PolyglotEintrag(k, 4 << 6 | 1 << 9 | 4 | 3 << 3, 3) +
                  PolyglotEintrag(k, 3 << 6 | 1 << 9 | 3 | 3 << 3, 1) + PolyglotEintrag(k, 0, 5) +
                  PolyglotEintrag(k, 2 << 6 | 1 << 9 | 2 | 3 << 3, 0) + PolyglotEintrag(k + 1, 1, 1));
    std::vector<Buchkandidat_t> kandidaten;
    ASSERT_TRUE(BuchKandidaten(bin.name, start, daten, kandidaten));
    ASSERT_EQ(kandidaten.size(), 2u);
    EXPECT_EQ(Text(start, kandidaten[0].zug), "e2e4");
    EXPECT_EQ(kandidaten[0].gewicht, 3u);
    EXPECT_EQ(Text(start, kandidaten[1].zug), "d2d4");

    Optionen_t optionen(Optionstabelle);
    ASSERT_TRUE(optionen.SetzeOption(("setoption name BookFile value " + bin.name).c_str()));
    Zug_t zug = 0;
    std::string info;
    ASSERT_TRUE(BuchZug(start, daten, optionen, zug, info));
    EXPECT_TRUE(info == "info string book move e2e4 (weight 75%)" || info == "info string book move d2d4 (weight 25%)")
        << info;
    // searchmoves d2d4 leaves one move; OwnBook off, or a position the book lacks: no book move.
    const uint32_t nurD4[] = {kandidaten[1].zug};
    ASSERT_TRUE(BuchZug(start, daten, optionen, zug, info, nurD4, 1));
    EXPECT_EQ(info, "info string book move d2d4 (weight 100%)");
    Stellungsdaten_t nachE4;
    EXPECT_FALSE(BuchZug(Nach({"e2e4"}, nachE4), nachE4, optionen, zug, info));
    optionen.SetzeOption("setoption name OwnBook value false");
    EXPECT_FALSE(BuchZug(start, daten, optionen, zug, info));
}

TEST(Buchzug, AusEigenemBuchUndSchlechteDateien) {
    TempDatei pgn(".pgn"), opn(".opn");
    pgn.schreiben(Partie("1. e4 e5", "1-0") + Partie("1. e4 c5", "1/2-1/2") + Partie("1. d4 d5", "0-1"));
    std::unique_ptr<Buch_t> buch;
    BuchBefehl(buch, (" add " + pgn.name).c_str(), nullptr);
    BuchBefehl(buch, (" writemem " + opn.name).c_str(), nullptr);

    Optionen_t optionen(Optionstabelle);
    optionen.SetzeOption(("setoption name BookFile value " + opn.name).c_str());
    Stellungsdaten_t daten;
    const Stellung_t start = Nach({}, daten);
    Zug_t zug = 0;
    std::string info;
    // 1.d4 lost and weighs nothing: 1.e4 every time.
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(BuchZug(start, daten, optionen, zug, info));
        EXPECT_EQ(info, "info string book move e2e4 (weight 100%, 2 games, score 75%)");
    }
    Stellungsdaten_t nachE4;
    const Stellung_t e4 = Nach({"e2e4"}, nachE4);
    ASSERT_TRUE(BuchZug(e4, nachE4, optionen, zug, info));
    EXPECT_EQ(info, "info string book move c7c5 (weight 100%, 1 games, score 50%)");

    // A cut file, a missing one, an empty name: no book move, no crash.
    const std::string inhalt = opn.lesen();
    opn.schreiben(inhalt.substr(0, inhalt.size() - 1));
    EXPECT_FALSE(BuchZug(start, daten, optionen, zug, info));
    std::remove(opn.name.c_str());
    EXPECT_FALSE(BuchZug(start, daten, optionen, zug, info));
    optionen.SetzeOption("setoption name BookFile value ");
    EXPECT_FALSE(BuchZug(start, daten, optionen, zug, info));

    // A record claiming more points than its games can give is read as all won.
    Buchzug_t kaputt;
    kaputt.schluessel = daten.schluessel;
    kaputt.zug = LeseKoordinatenZug(start, "e2e4");
    kaputt.gewicht = 10;
    kaputt.partien = 1;
    kaputt.punkte = 4000000000u;
    ASSERT_EQ(Buchdatei::Schreiben(opn.name, {kaputt}, 0), Buchdatei::Status::Ok);
    optionen.SetzeOption(("setoption name BookFile value " + opn.name).c_str());
    ASSERT_TRUE(BuchZug(start, daten, optionen, zug, info));
    EXPECT_EQ(info, "info string book move e2e4 (weight 100%, 1 games, score 100%)");
}
