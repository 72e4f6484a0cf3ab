// The PGN reader: tokens, skipped text, every error report with its line and
// column, and going on after a broken game.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "board/zugmachen.h"
#include "book/pgnleser.h"
#include "buch_hilfe.h"

namespace {

const std::string Kopf = "[White \"a\"]\n[Black \"b\"]\n[Result \"*\"]\n";  // three lines

struct Lauf_t {
    std::vector<std::string> meldungen;
    std::vector<std::vector<Zug_t>> partien;
    std::vector<PgnTags_t> tags;
};

// Reads every game as the book import does: after an error, on to the next game.
Lauf_t LiesAlle(const std::string& pgn) {
    Lauf_t lauf;
    PgnLeser_t leser([&lauf](const std::string& z) { lauf.meldungen.push_back(z); });
    leser.OeffneText(pgn, "t.pgn");
    std::vector<Zug_t> zuege;
    PgnTags_t tags;
    for (int sicherung = 0; sicherung < 1000; ++sicherung) {
        const uint64_t vorher = leser.Fehleranzahl();
        if (leser.LiesPartie(zuege, tags)) {
            lauf.partien.push_back(zuege);
            lauf.tags.push_back(tags);
            continue;
        }
        if (leser.Fehleranzahl() == vorher || leser.AmEnde()) break;
        leser.ZurNaechstenPartie();
    }
    return lauf;
}

std::string Meldung(int zeile, int spalte, const std::string& text) {
    return "info string PGN-Parser: file t.pgn line " + std::to_string(zeile) + " char " + std::to_string(spalte) +
           ": " + text;
}

}  // namespace

TEST(PgnLeser, Tokenarten) {
    PgnLeser_t leser(nullptr);
    leser.OeffneText("\"a\\\"b\" 12 . * ( ) [ ] $5 Nf3+ 1/2-1/2 !? %x", "t.pgn");
    const int erwartet[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 9, 8, 9, 10};
    std::vector<std::string> texte;
    for (int art : erwartet) {
        EXPECT_EQ(leser.NaechstesToken(), art);
        texte.push_back(leser.TokenText());
    }
    EXPECT_EQ(texte[0], "a\"b");
    EXPECT_EQ(texte[8], "5");
    EXPECT_EQ(texte[10], "1/2-1/2");
    EXPECT_EQ(texte[12], "%x");  // a '%' inside a line is no escape
}

TEST(PgnLeser, JedeFehlermeldungMitZeileUndSpalte) {
    struct Fall_t {
        std::string pgn;
        std::string meldung;
    };
    const Fall_t faelle[] = {
        {"[Event \"x\"]\n*\n", Meldung(2, 1, "'White' missing (in game above current line)")},
        {"[White \"a\"]\n*\n", Meldung(2, 1, "'Black' missing (in game above current line)")},
        {"[White \"a\"]\n[Black \"b\"]\n1. e4 *\n", Meldung(3, 7, "'Result' missing (in game above current line)")},
        {"[White \"a\"][Black \"b\"][Result \"1-0\"]\n1. e4 0-1\n",
         Meldung(2, 7, "Game termination marker different from Result")},
        {"[White \"a\"][Black \"b\"][Result \"1-0\"]\n1. e4 *\n",
         Meldung(2, 7, "Game termination marker different from Result")},
        {Kopf + "1. e4 (1. d4 (1. c4) d5\n", Meldung(5, 1, "unexpected end of file")},
        {Kopf + "1. e4\n)\n", Meldung(5, 1, "unexpected ')'")},
        {Kopf + "1. e4 \"hallo\" *", Meldung(4, 7, "unexpected string hallo")},
        {Kopf + "1. e4 ] *", Meldung(4, 7, "unexpected ']'")},
        {"[ \"x\" ]\n", Meldung(1, 3, "symbol expected")},
        {"[White Kasparov]\n", Meldung(1, 8, "String erwartet")},
        {"[White \"a\" \"b\"]\n", Meldung(1, 12, "']' expected")},
        {Kopf + "1. e4 e5 2. Ke3 *", Meldung(4, 13, "illegal move Ke3")},
        {Kopf + "%x Kxx\n1. e4 %\n", Meldung(5, 7, "illegal move %")},
        {"[FEN \"xyz w - - 0 1\"]\n", Meldung(1, 6, "illegal FEN xyz w - - 0 1")},
        {"{a comment\nover lines} [White \"a\"]\n\t1. e4 e5 Kxx", Meldung(3, 11, "illegal move Kxx")},
    };
    for (const Fall_t& f : faelle) {
        std::vector<std::string> meldungen;
        PgnLeser_t l([&](const std::string& z) { meldungen.push_back(z); });
        l.OeffneText(f.pgn, "t.pgn");
        std::vector<Zug_t> zuege;
        PgnTags_t tags;
        EXPECT_FALSE(l.LiesPartie(zuege, tags)) << f.pgn;
        EXPECT_FALSE(l.Ok()) << f.pgn;
        EXPECT_EQ(meldungen, std::vector<std::string>{f.meldung}) << f.pgn;
    }
}

TEST(PgnLeser, DateiFehltUndDateiendeZwischenPartien) {
    std::vector<std::string> meldungen;
    PgnLeser_t leser([&](const std::string& z) { meldungen.push_back(z); });
    EXPECT_FALSE(leser.Oeffnen("/kein/verzeichnis/x.pgn"));
    EXPECT_EQ(meldungen, std::vector<std::string>{
                             "info string PGN-Parser: file /kein/verzeichnis/x.pgn line 1 char 1: Cannot open file"});
    std::vector<Zug_t> zuege;
    PgnTags_t tags;
    EXPECT_FALSE(leser.LiesPartie(zuege, tags));
    EXPECT_EQ(meldungen.size(), 1u);

    // White space, comments and escape lines after the last game: a quiet end.
    const Lauf_t lauf = LiesAlle(Kopf + "1. e4 *\n\n; nothing\n% more\n{ end }\n");
    EXPECT_TRUE(lauf.meldungen.empty());
    EXPECT_EQ(lauf.partien.size(), 1u);
}

TEST(PgnLeser, WirklicheSchreibweisen) {
    // Comments, NAGs, marks, nested variations, black move numbers, escaped quotes,
    // castling, en passant, a promotion with check, CR LF line ends and a FEN tag.
    const std::string pgn =
        "\xEF\xBB\xBF[Event \"a \\\"quoted\\\" b\"]\r\n[White \"w\"]\r\n[Black \"s\"]\r\n[Result \"1-0\"]\r\n\r\n"
        "1. e4 {Best by test} e5 $1 2. Nf3 Nc6!? (2... d6 3. d4 (3. Bc4 Be7) exd4) 3. Bc4 Nf6 4. O-O Bc5\r\n"
        "5. d4 exd4 6. e5 d5 7. exd6 ; en passant\r\n"
        "7... O-O 8. dxc7 Bd7 9. cxd8=Q Raxd8?? 10. Nxd4 1-0\r\n\r\n"
        "[White \"w\"]\n[Black \"s\"]\n[Result \"0-1\"]\n[SetUp \"1\"]\n"
        "[FEN \"4k3/8/8/8/8/8/4p3/6K1 b - - 0 1\"]\n\n1... e1=Q+ 2. Kg2 Qe2+ 0-1\n";
    const Lauf_t lauf = LiesAlle(pgn);
    ASSERT_TRUE(lauf.meldungen.empty()) << lauf.meldungen[0];
    ASSERT_EQ(lauf.partien.size(), 2u);
    EXPECT_EQ(lauf.partien[0].size(), 19u);
    EXPECT_EQ(lauf.tags[0].at("Event"), "a \"quoted\" b");
    EXPECT_EQ(Art(lauf.partien[0][6]), unsigned{Rochade});
    EXPECT_EQ(Art(lauf.partien[0][12]), unsigned{EnPassant});
    EXPECT_EQ(Art(lauf.partien[0][16]), unsigned{UmwandlungDame});
    EXPECT_EQ(lauf.partien[1].size(), 3u);
    EXPECT_EQ(lauf.tags[1].at("FEN"), "4k3/8/8/8/8/8/4p3/6K1 b - - 0 1");
}

TEST(PgnLeser, NachEinemFehlerWeiterMitDerNaechstenPartie) {
    const std::string gut = Kopf + "1. d4 d5 *\n\n";
    // An illegal move early in a game, a bad tag, a game cut off without its marker:
    // each is reported once, and the game after it is read.
    const std::string pgn = gut + Kopf + "1. e4 e5 2. Ke3 Nc6 3. Nf3 Nf6 4. Bc4 *\n\n" + gut +
                            "[White Kasparov]\n[Black \"b\"]\n[Result \"*\"]\n1. e4 e5 2. Ke3 *\n\n" + gut + Kopf +
                            "1. e4 Kxx 2. d4\n\n" + gut + Kopf + "1. e4 e5\n(2. Nf3\n";
    const Lauf_t lauf = LiesAlle(pgn);
    EXPECT_EQ(lauf.partien.size(), 4u);
    ASSERT_EQ(lauf.meldungen.size(), 4u);
    EXPECT_NE(lauf.meldungen[0].find("line 9 char 13: illegal move Ke3"), std::string::npos) << lauf.meldungen[0];
    EXPECT_NE(lauf.meldungen[1].find("line 16 char 8: String erwartet"), std::string::npos) << lauf.meldungen[1];
    EXPECT_NE(lauf.meldungen[2].find("illegal move Kxx"), std::string::npos);
    EXPECT_NE(lauf.meldungen[3].find("unexpected end of file"), std::string::npos);
    for (const auto& p : lauf.partien) EXPECT_EQ(p.size(), 2u);
}

TEST(PgnLeser, SchluesselVorJedemZug) {
    PgnLeser_t leser(nullptr);
    leser.OeffneText(Kopf + "1. Nf3 Nf6 2. Ng1 Ng8 *", "t.pgn");
    std::vector<Zug_t> zuege;
    PgnTags_t tags;
    ASSERT_TRUE(leser.LiesPartie(zuege, tags));
    ASSERT_EQ(leser.Schluessel().size(), 4u);
    Stellung_t st;
    Stellungsdaten_t daten;
    SetzeStellung(st, daten, nullptr);
    EXPECT_EQ(leser.Schluessel()[0], daten.schluessel);
    EXPECT_NE(leser.Schluessel()[1], daten.schluessel);
}

TEST(PgnLeser, DateiUeberVielePuffer) {
    // 1000 games of 6 lines, about 250 kB: tokens cross the reader's 64 kB buffers.
    std::string pgn;
    for (int i = 0; i < 1000; ++i)
        pgn += Kopf + "1. e4 {" + std::string(200, 'x') + "} e5 2. Nf3 Nc6 *\n\n" + (i % 2 ? "%\n" : ";\n");
    pgn += Kopf + "1. e4 e5 2. Ke2 Ke7 3. Kd3 Kd6 4. Kc4 Kc5 *\n";
    const TempDatei datei(".pgn");
    datei.schreiben(pgn);

    std::vector<std::string> meldungen;
    PgnLeser_t leser([&](const std::string& z) { meldungen.push_back(z); });
    ASSERT_TRUE(leser.Oeffnen(datei.name));
    std::vector<Zug_t> zuege;
    PgnTags_t tags;
    int partien = 0;
    while (leser.LiesPartie(zuege, tags)) ++partien;
    EXPECT_EQ(partien, 1000);
    // The eighth move of the last game, a king walking next to the other, on line 6004.
    EXPECT_EQ(meldungen, std::vector<std::string>{"info string PGN-Parser: file " + datei.name +
                                                  " line 6004 char 39: illegal move Kc5"});
}
