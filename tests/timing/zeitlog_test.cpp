#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

#include "timing/zeitlog.h"

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
    d.wertung = -350;
    d.vorherigeWertung = 150;
    d.vorvorherigeWertung = 650;
    d.besterZug = 0x1234;
    d.besterZugGewechselt = true;
    d.unruhe = 1.5;
    d.antwortGewechselt = true;
    d.antwortUnruhe = 2.75;
    d.wurzelzuege = 20;
    d.taktisch = true;
    d.bedrohteSteine = 3;
    d.eroeffnung = true;
    return d;
}

}  // namespace

TEST(Zeitlog, FigurenEinerIteration) {
    const Zeitfiguren_t f = ZeitFiguren(Beispiel());
    const Zeitfiguren_t soll = {1.0,  1.5,  1.0,  std::tanh(-0.5), std::tanh(-0.35), 2.0,  0.6, 0.75,
                                0.8,  0.5,  std::log(20.0) / 4, 1.0, 0.75, 1.0, std::tanh(-1.0)};
    for (size_t i = 0; i < f.size(); ++i) EXPECT_DOUBLE_EQ(f[i], soll[i]) << i;
    // Bounded however wild the search: no target, no nodes, a mate score, a huge depth.
    Iterationsdaten_t w;
    w.tiefenindex = 500;
    w.wertung = 500000;
    w.ziel = 0x007F0000FFFF0000LL;
    w.verstrichen = 1000000;
    const Zeitfiguren_t g = ZeitFiguren(w);
    EXPECT_EQ(std::tuple(g[4], g[6], g[7], g[8], g[9], g[10]), std::tuple(1.0, 4.0, 0.0, 0.0, 0.0, 0.0));
    // The inputs are the scaled figures; the bias node is fed nothing.
    Zeitskalierung_t s;
    for (size_t i = 0; i < s.faktor.size(); ++i) std::tie(s.faktor[i], s.versatz[i]) = std::tuple(i + 1.0, -0.5);
    const Zeiteingaben_t e = ZeitEingaben(f, s);
    for (size_t i = 0; i < f.size(); ++i) EXPECT_DOUBLE_EQ(e[i], (i + 1.0) * f[i] - 0.5) << i;
    EXPECT_EQ(e[15], 0.0);
}

TEST(Zeitlog, ZeileHinUndZurueck) {
    const Iterationsdaten_t d = Beispiel();
    const std::string zeile = ZeitlogZeile(d);
    EXPECT_EQ(zeile.rfind("Z 1483228800000 6 750 1500 400000 -350 4660 1 1.000000 1.500000 1.000000 -0.462117 ", 0),
              0u);
    Zeitlogeintrag_t e;
    ASSERT_TRUE(ZeitlogZeileLesen(zeile, e));
    EXPECT_EQ(std::tuple(e.start, e.tiefenindex, e.verstrichen, e.ziel, e.knoten, e.wertung, e.besterZug, e.gewechselt),
              std::tuple(d.start, 6, 750, 1500, 400000, -350, 0x1234u, true));
    const Zeitfiguren_t f = ZeitFiguren(d);
    for (size_t i = 0; i < f.size(); ++i) EXPECT_NEAR(e.figuren[i], f[i], 5e-7) << i;
    // Cut short, overlong (as the lines of older builds, which held 16 inputs), untagged
    // or with a move beyond 16 bits: not a line.
    std::string zug = zeile;
    zug.replace(zug.find(" 4660 "), 6, " 70000 ");
    for (const std::string& kaputt : {zeile.substr(0, zeile.size() - 9), zeile + " 0.5", zeile.substr(2), zug})
        EXPECT_FALSE(ZeitlogZeileLesen(kaputt, e)) << kaputt;
}

TEST(Zeitlog, UnruheVerlaengertDieSuche) {
    // The built-in network with the engine's scaling: x = 100 v from 2 up, a quiet
    // search near 8 (a new iteration may start until (x + 17) / 30 of the target), an
    // unsettled one higher. Fed badly, the network saturates and every search runs to
    // the iteration limit, or none passes the floor.
    Zeitnetz_t netz;
    const auto x = [&](const Iterationsdaten_t& d) {
        Zeitwert_t w;
        w.nachIteration(netz.bewerten(ZeitEingaben(d)), false);
        return w.x();
    };
    Iterationsdaten_t ruhig;
    ruhig.tiefenindex = 9;
    ruhig.ziel = 300;
    ruhig.verstrichen = 150;
    ruhig.knoten = 1500000;
    ruhig.knotenIteration = 800000;
    ruhig.knotenBesterZug = 700000;
    ruhig.wertung = ruhig.vorherigeWertung = ruhig.vorvorherigeWertung = 200;
    ruhig.wurzelzuege = 35;
    ruhig.bedrohteSteine = 1;
    EXPECT_GT(x(ruhig), 5.0);
    EXPECT_LT(x(ruhig), 13.0);
    Iterationsdaten_t unruhig = ruhig;
    unruhig.besterZugGewechselt = unruhig.antwortGewechselt = true;
    unruhig.unruhe = unruhig.antwortUnruhe = 1.25;
    unruhig.knotenBesterZug = 300000;
    unruhig.wertung = -100;
    EXPECT_GT(x(unruhig), x(ruhig) + 3.0);
}
