#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "timing/zeitlog.h"
#include "zeit_hilfe.h"

namespace {

Iterationsdaten_t Beispiel() {
    Iterationsdaten_t d;
    d.start = 1483228800000;
    d.tiefenindex = 6;
    d.verstrichen = 750;
    d.ziel = 1500;
    d.knoten = 400000;
    d.knotenIteration = 300000;
    d.knotenBesterZug = 240000;
    d.wertung = 350;
    d.vorherigeWertung = -150;
    d.besterZug = 0x1234;
    d.besterZugGewechselt = true;
    d.wechselAnzahl = 2;
    d.antwortGewechselt = false;
    d.wurzelzuege = 30;
    d.taktisch = true;
    d.bedrohteSteine = 1;
    d.eroeffnung = false;
    return d;
}

}  // namespace

TEST(ZeitEingaben, Skalierung) {
    const auto e = ZeitEingaben(Beispiel());
    EXPECT_EQ(e[0], 1.0);
    EXPECT_EQ(e[1], 0.5);
    EXPECT_EQ(e[2], 0.0);
    EXPECT_DOUBLE_EQ(e[3], std::tanh(0.5));
    EXPECT_DOUBLE_EQ(e[4], std::tanh(350.0 / 3000.0));
    EXPECT_EQ(e[5], 0.0);
    EXPECT_DOUBLE_EQ(e[6], 6.0 / 32.0);
    EXPECT_DOUBLE_EQ(e[7], 0.25);
    EXPECT_DOUBLE_EQ(e[8], 0.8);
    EXPECT_DOUBLE_EQ(e[9], 0.6);
    EXPECT_EQ(e[10], 1.0);
    EXPECT_EQ(e[11], 0.25);
    EXPECT_EQ(e[12], 0.0);
    EXPECT_DOUBLE_EQ(e[13], std::tanh(0.15));
    EXPECT_DOUBLE_EQ(e[14], 0.75);
    EXPECT_EQ(e[15], 0.0);
}

TEST(ZeitEingaben, GrenzfaelleBleibenImBereich) {
    Iterationsdaten_t d;  // all zero: no target, no nodes
    auto e = ZeitEingaben(d);
    EXPECT_EQ(e[7], 1.0);
    EXPECT_EQ(e[8], 0.0);
    EXPECT_EQ(e[14], 0.0);
    d.wertung = 499990;
    d.vorherigeWertung = -499990;
    d.wechselAnzahl = 50;
    d.tiefenindex = 90;
    d.verstrichen = 1000000;
    d.ziel = 10;
    d.wurzelzuege = 218;
    d.bedrohteSteine = 15;
    d.knotenBesterZug = 5;
    d.knotenIteration = 2;
    d.knoten = 1;
    e = ZeitEingaben(d);
    for (double x : e) {
        EXPECT_GE(x, -1.0);
        EXPECT_LE(x, 1.0);
    }
    EXPECT_EQ(e[5], 1.0);
}

// ---------------------------------------------------------------- the line

TEST(ZeitlogZeile, FormatUndRueckweg) {
    const Iterationsdaten_t d = Beispiel();
    const std::string zeile = ZeitlogZeile(d);
    EXPECT_EQ(zeile.rfind("Z 1483228800000 6 750 1500 400000 350 4660 1 1.000000 0.500000 0.000000 ", 0), 0u)
        << zeile;
    EXPECT_EQ(zeile.find('\n'), std::string::npos);
    std::istringstream felder(zeile);
    std::string wort;
    int anzahl = 0;
    while (felder >> wort) ++anzahl;
    EXPECT_EQ(anzahl, 25);

    Zeitlogeintrag_t e;
    ASSERT_TRUE(ZeitlogZeileLesen(zeile, e));
    EXPECT_EQ(e.start, d.start);
    EXPECT_EQ(e.tiefenindex, 6);
    EXPECT_EQ(e.verstrichen, 750);
    EXPECT_EQ(e.ziel, 1500);
    EXPECT_EQ(e.knoten, 400000);
    EXPECT_EQ(e.wertung, 350);
    EXPECT_EQ(e.besterZug, 0x1234u);
    EXPECT_TRUE(e.gewechselt);
    const auto eingaben = ZeitEingaben(d);
    for (size_t i = 0; i < eingaben.size(); ++i) EXPECT_NEAR(e.eingaben[i], eingaben[i], 5e-7) << i;
}

TEST(ZeitlogZeile, KaputteZeilenWerdenAbgelehnt) {
    const std::string gut = ZeitlogZeile(Beispiel());
    Zeitlogeintrag_t e;
    EXPECT_TRUE(ZeitlogZeileLesen(gut, e));
    EXPECT_FALSE(ZeitlogZeileLesen("", e));
    EXPECT_FALSE(ZeitlogZeileLesen("# a comment", e));
    EXPECT_FALSE(ZeitlogZeileLesen("Z", e));
    EXPECT_FALSE(ZeitlogZeileLesen(gut.substr(0, gut.size() - 9), e));  // last input missing
    EXPECT_FALSE(ZeitlogZeileLesen(gut + " 0.5", e));                   // one too many
    std::string kopf = gut;
    kopf[0] = 'X';
    EXPECT_FALSE(ZeitlogZeileLesen(kopf, e));
    std::string zug = gut;
    zug.replace(zug.find(" 4660 "), 6, " 70000 ");
    EXPECT_FALSE(ZeitlogZeileLesen(zug, e));
}

// ---------------------------------------------------------------- the writer

TEST(Zeitlog, KeinLogFuerNul) {
    EXPECT_TRUE(KeinZeitlog(""));
    EXPECT_TRUE(KeinZeitlog("nul:"));
    EXPECT_TRUE(KeinZeitlog("NUL:"));
    EXPECT_TRUE(KeinZeitlog("nul"));
    EXPECT_FALSE(KeinZeitlog("zeit.log"));
    Zeitlog_t log;
    EXPECT_FALSE(log.oeffnen("nul:"));
    EXPECT_FALSE(log.offen());
    log.schreiben(Beispiel());  // nothing happens
    EXPECT_FALSE(log.oeffnen(""));
}

TEST(Zeitlog, UnoeffnbareDateiHeisstKeinLog) {
    Zeitlog_t log;
    EXPECT_FALSE(log.oeffnen("/nonexistent-directory-for-kelvaran/zeit.log"));
    EXPECT_FALSE(log.offen());
    log.schreiben(Beispiel());
}

TEST(Zeitlog, HaengtZeilenAn) {
    TempDatei datei(".log");
    datei.schreiben("# earlier lines stay\n");
    Iterationsdaten_t d = Beispiel();
    {
        Zeitlog_t log;
        ASSERT_TRUE(log.oeffnen(datei.name()));
        ASSERT_TRUE(log.oeffnen(datei.name()));  // the same name keeps the file
        log.schreiben(d);
        d.tiefenindex = 7;
        log.schreiben(d);
        // Written through at once: readable while the log is open.
        EXPECT_EQ(datei.lesen(), "# earlier lines stay\n" + ZeitlogZeile(Beispiel()) + "\n" + ZeitlogZeile(d) + "\n");
        log.oeffnen("nul:");
        EXPECT_FALSE(log.offen());
        log.schreiben(d);
    }
    Zeitlog_t wieder;
    ASSERT_TRUE(wieder.oeffnen(datei.name()));
    wieder.schreiben(d);
    wieder.schliessen();
    std::istringstream ein(datei.lesen());
    std::string zeile;
    int zeilen = 0;
    while (std::getline(ein, zeile)) ++zeilen;
    EXPECT_EQ(zeilen, 4);
}
