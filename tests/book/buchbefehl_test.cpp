// The "book" command family, through the function and through the interpreter
// and the command line: keywords, defaults, the life of the in-memory book and
// bad input.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "book/buchaufbau.h"
#include "book/buchbefehl.h"
#include "book/buchdatei.h"
#include "book/buchrechnung.h"
#include "buch_hilfe.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/uci.h"
#include "../protocol/protokoll_hilfen.h"

namespace {

struct Befehl {
    std::unique_ptr<Buch_t> buch;
    std::vector<std::string> zeilen;
    void operator()(const std::string& rest) {
        BuchBefehl(buch, rest.c_str(), [this](const std::string& z) { zeilen.push_back(z); });
    }
};

// Two games from the start: 1.e4 won by White, 1.d4 lost by White, then 1...e5 drawn.
const std::string ZweiPartien = Partie("1. e4 e5 2. Nf3", "1-0") + Partie("1. d4 d5", "0-1") +
                                Partie("1. e4 e5 2. Nc3", "1/2-1/2");

// The book's record of a move (in SAN) from the start position.
const Buchzug_t* AmStart(const Buch_t& buch, const char* san) {
    Stellung_t st;
    Stellungsdaten_t daten;
    SetzeStellung(st, daten, nullptr);
    return buch.Finde(Buchdatei::Schluesselsignatur(), LeseSanZug(st, san, daten));
}

}  // namespace

TEST(BuchBefehl, AddWritememReadmemGibtDasselbeBuch) {
    TempDatei pgn("_pgn.pgn"), a("_a.opn"), b("_b.opn");
    pgn.schreiben(ZweiPartien);
    Befehl befehl;
    befehl(" add " + pgn.name);
    ASSERT_TRUE(befehl.buch);
    EXPECT_TRUE(befehl.zeilen.empty());
    // Start: e4 in two games (a win and a draw), d4 in one loss.
    const Buchzug_t* e4 = AmStart(*befehl.buch, "e4");
    ASSERT_NE(e4, nullptr);
    EXPECT_EQ(e4->partien, 2u);
    EXPECT_EQ(e4->punkte, 3u);
    EXPECT_EQ(e4->gewicht, 1500u);
    EXPECT_EQ(AmStart(*befehl.buch, "d4")->gewicht, 0u);
    EXPECT_EQ(befehl.buch->Anzahl(), 6u);

    befehl(" writemem " + a.name);
    ASSERT_TRUE(befehl.buch);
    befehl(" delete");
    EXPECT_FALSE(befehl.buch);
    befehl(" readmem " + a.name);
    befehl(" writemem " + b.name);
    EXPECT_EQ(a.lesen(), b.lesen());

    // value and CalcELO: the weights follow, the counts do not.
    befehl(" delete");
    befehl(" add " + pgn.name + " value 10 CalcELO");
    EXPECT_EQ(AmStart(*befehl.buch, "e4")->gewicht, 1u);  // 10 * 1.5 * 0.056
    EXPECT_EQ(AmStart(*befehl.buch, "e4")->partien, 2u);
}

TEST(BuchBefehl, DeleteNurAlsGanzesWort) {
    TempDatei pgn("_pgn.pgn");
    pgn.schreiben(ZweiPartien);
    Befehl befehl;
    befehl(" add " + pgn.name);
    befehl(" deleted");
    EXPECT_TRUE(befehl.buch);
    befehl(" delete\r");
    EXPECT_FALSE(befehl.buch);
    befehl(" add " + pgn.name);
    befehl(" delete now");
    EXPECT_FALSE(befehl.buch);
}

TEST(BuchBefehl, WriteMitSchwelleUndBreiteZerstoertDasBuch) {
    TempDatei pgn("_pgn.pgn"), f("_f.opn"), g("_g.opn"), h("_h.opn");
    pgn.schreiben(ZweiPartien);
    Befehl befehl;
    befehl(" write " + g.name);  // no book: nothing
    EXPECT_FALSE(g.da());

    befehl(" add " + pgn.name);
    befehl(" writemem " + f.name);
    befehl(" delete");
    befehl(" readmem " + f.name);
    befehl(" write " + g.name + " threshold 5000 width 10");
    EXPECT_FALSE(befehl.buch);
    std::vector<Buchzug_t> saetze;
    uint16_t flags = 0;
    ASSERT_EQ(Buchdatei::Lesen(g.name, saetze, flags), Buchdatei::Status::Ok);
    EXPECT_EQ(flags, Buchdatei::FlagAuswahl);
    // The lost 1.d4 (weight 0) is gone.
    EXPECT_EQ(saetze.size(), 5u);
    for (const Buchzug_t& z : saetze) EXPECT_GT(z.gewicht, 0u);

    // Width 1 keeps one move a position; writeEPD is write.
    befehl(" readmem " + f.name);
    befehl(" writeEPD " + h.name + " width 1");
    ASSERT_EQ(Buchdatei::Lesen(h.name, saetze, flags), Buchdatei::Status::Ok);
    EXPECT_EQ(saetze.size(), 4u);

    // write960 writes nothing and still destroys the book; "writex" is no command.
    std::remove(g.name.c_str());
    befehl(" readmem " + f.name);
    befehl(" writex " + g.name);
    EXPECT_TRUE(befehl.buch);
    befehl(" write960 " + g.name);
    EXPECT_FALSE(g.da());
    EXPECT_FALSE(befehl.buch);
}

TEST(BuchBefehl, SperreGiltUndStehtInDerDatei) {
    TempDatei pgn("_pgn.pgn"), f("_f.opn");
    pgn.schreiben(ZweiPartien);
    Befehl befehl;
    befehl(" lock");  // no book: nothing
    EXPECT_FALSE(befehl.buch);
    befehl(" add " + pgn.name);
    befehl(" lock");
    befehl(" writemem " + f.name);
    befehl(" delete");
    befehl(" readmem " + f.name);
    ASSERT_TRUE(befehl.buch);
    EXPECT_TRUE(befehl.buch->gesperrt);
    const size_t vorher = befehl.buch->Anzahl();
    befehl(" add " + pgn.name);
    TempDatei epd("_epd.epd");
    epd.schreiben("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm c4;\n");
    befehl(" addpos " + epd.name);
    EXPECT_EQ(befehl.buch->Anzahl(), vorher);
    befehl(" unlock");
    befehl(" addpos " + epd.name);
    EXPECT_EQ(befehl.buch->Anzahl(), vorher + 1);
}

TEST(BuchBefehl, SchlechteEingabeLaesstDasBuchHeil) {
    TempDatei pgn("_pgn.pgn"), f("_f.opn"), kaputt("_kaputt.opn"), fehlt("_fehlt.pgn"), falsch("_falsch.pgn");
    pgn.schreiben(ZweiPartien);
    Befehl befehl;
    befehl(" add " + pgn.name);
    befehl(" writemem " + f.name);
    const std::string vorher = f.lesen();

    // A missing PGN: the reader's report, nothing else changes.
    befehl(" add " + fehlt.name);
    EXPECT_EQ(befehl.zeilen, std::vector<std::string>{"info string PGN-Parser: file " + fehlt.name +
                                                      " line 1 char 1: Cannot open file"});
    // A cut book file and a missing one: silent, the book unchanged.
    kaputt.schreiben(vorher.substr(0, vorher.size() - 3));
    befehl(" readmem " + kaputt.name);
    befehl(" readmem " + fehlt.name);
    befehl(" readmem ");
    befehl(" add ");
    befehl(" writemem " + f.name);
    EXPECT_EQ(f.lesen(), vorher);
    EXPECT_EQ(befehl.zeilen.size(), 1u);

    // An illegal move and a bad FEN tag: reported, the good game after them still taken.
    befehl.zeilen.clear();
    falsch.schreiben(Partie("1. e4 e5 2. Ke3", "*") + Partie("1. e4", "*", "[FEN \"8/8/8 w - -\"]\n") +
                     Partie("1. c4", "1-0"));
    befehl(" add " + falsch.name);
    ASSERT_EQ(befehl.zeilen.size(), 2u);
    EXPECT_EQ(befehl.zeilen[0], "info string PGN-Parser: file " + falsch.name + " line 5 char 13: illegal move Ke3");
    EXPECT_EQ(befehl.zeilen[1],
              "info string PGN-Parser: file " + falsch.name + " line 10 char 6: illegal FEN 8/8/8 w - -");
    EXPECT_NE(AmStart(*befehl.buch, "c4"), nullptr);
}

TEST(BuchBefehl, Entropie) {
    TempDatei pgn("_pgn.pgn");
    // Two equally weighted first moves: one bit; the positions after them, one game each, do not count.
    pgn.schreiben(Partie("1. e4 e5", "1-0") + Partie("1. d4 d5", "1-0"));
    Befehl befehl;
    befehl(" entropy " + pgn.name);
    EXPECT_EQ(befehl.zeilen, std::vector<std::string>{"info book entropy 1.00"});
    EXPECT_FALSE(befehl.buch);

    // Four moves in eight games, weights 4:2:1:1 -> 1.75 bits at the start; 1.e4 e5 / c5 in
    // four games at one bit. (8 * 1.75 + 4 * 1) / 12 = 1.5.
    std::string acht;
    const std::string r = "1/2-1/2";
    for (int i = 0; i < 2; ++i) acht += Partie("1. e4 e5", r) + Partie("1. e4 c5", r);
    acht += Partie("1. d4", r) + Partie("1. d4", r) + Partie("1. c4", r) + Partie("1. Nf3", r);
    pgn.schreiben(acht);
    befehl.zeilen.clear();
    befehl(" entropy " + pgn.name);
    EXPECT_EQ(befehl.zeilen, std::vector<std::string>{"info book entropy 1.50"});
}

TEST(BuchBefehl, PositionsMakeposAddpos) {
    TempDatei pgn("_pgn.pgn"), epd("_epd.epd"), bm("_bm.epd"), rechnung("_rechnung.bin");
    pgn.schreiben(ZweiPartien);
    Befehl befehl;
    befehl(" positions " + pgn.name + " out " + epd.name);
    const std::vector<std::string> zeilen = Zeilen(epd.lesen());
    // The positions before the moves: start (3 games), after 1.e4 (2), after 1.e4 e5 (2), after 1.d4 (1).
    ASSERT_EQ(zeilen.size(), 4u);
    EXPECT_EQ(zeilen[0], "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
    EXPECT_EQ(zeilen[1], "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq -");

    // Searched with few nodes; a second run takes everything from the calculation file.
    epd.schreiben(zeilen[0] + "\n" + zeilen[1] + "\n6k1/5ppp/8/8/8/8/8/R6K w - -\n");
    Rechenstatistik_t s;
    ASSERT_TRUE(StellungenBerechnen(epd.name, bm.name, 3000, 1, rechnung.name, s));
    EXPECT_EQ(s.stellungen, 3u);
    EXPECT_EQ(s.gesucht, 3u);
    const std::string ergebnis = bm.lesen();
    ASSERT_TRUE(StellungenBerechnen(epd.name, bm.name, 3000, 1, rechnung.name, s));
    EXPECT_EQ(s.gesucht, 0u);
    EXPECT_EQ(bm.lesen(), ergebnis);
    // A record cut short by a broken-off run is searched again, the others are not.
    const std::string r = rechnung.lesen();
    rechnung.schreiben(r.substr(0, r.size() - 7));
    ASSERT_TRUE(StellungenBerechnen(epd.name, bm.name, 3000, 1, rechnung.name, s));
    EXPECT_EQ(s.gesucht, 1u);
    EXPECT_EQ(rechnung.lesen().size(), r.size());
    EXPECT_NE(ergebnis.find("6k1/5ppp/8/8/8/8/8/R6K w - - bm Ra8"), std::string::npos) << ergebnis;

    // addpos takes the bm moves, in SAN or coordinates, with its value.
    bm.schreiben(zeilen[0] + " bm Nf3 d2d4; c0 \"x\";\n" + zeilen[1] + " bm e5\nnonsense bm e4\n" + zeilen[0] +
                 " ce 10;\n");
    befehl(" addpos " + bm.name + " value 70");
    ASSERT_TRUE(befehl.buch);
    EXPECT_EQ(befehl.buch->Anzahl(), 3u);
    for (const Buchzug_t& z : befehl.buch->Sortiert()) EXPECT_EQ(z.gewicht, 70u);
}

TEST(BuchBefehl, UeberInterpreterUndKommandozeile) {
    TempDatei pgn("_pgn.pgn"), f("_f.opn");
    pgn.schreiben(Partie("1. e4 e5", "1-0") + Partie("1. d4 d5", "1-0"));
    std::ostringstream aus;
    UciAusgabe_t ausgabe(LeereOptionstabelle, aus);
    UciInterface_t uci(LeereOptionstabelle, nullptr, &ausgabe);
    aus.str("");
    uci.befehl(("book entropy " + pgn.name).c_str());
    uci.befehl(("book add " + pgn.name).c_str());
    uci.befehl(("book writemem " + f.name).c_str());
    EXPECT_EQ(aus.str(), "info book entropy 1.00\n");
    EXPECT_TRUE(f.da());

    const Lauf_t lauf = Starte("", {"--book", "readmem " + f.name, "entropy " + pgn.name, "write " + f.name});
    EXPECT_EQ(lauf.status, 0);
    ASSERT_EQ(lauf.aus.size(), 3u);
    EXPECT_EQ(lauf.aus[0], "info string readmem " + f.name + ": ok, book 4 moves");
    EXPECT_EQ(lauf.aus[1], "info book entropy 1.00");
    EXPECT_EQ(lauf.aus[2].rfind("info string write " + f.name + ": 2 of 4 moves", 0), 0u) << lauf.aus[2];
}
