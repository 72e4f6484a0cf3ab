#include <gtest/gtest.h>

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
    d.wertung = -350;
    d.besterZug = 0x1234;
    d.besterZugGewechselt = true;
    d.unruhe = 1.5;
    return d;
}

}  // namespace

TEST(Zeitlog, ZeileHinUndZurueck) {
    const Iterationsdaten_t d = Beispiel();
    const std::string zeile = ZeitlogZeile(d);
    // Logs of older builds must stay readable: the field order is fixed.
    EXPECT_EQ(zeile.rfind("Z 1483228800000 6 750 1500 400000 -350 4660 1 0.031000 -6.001000 -0.906000 ", 0), 0u);
    Zeitlogeintrag_t e;
    ASSERT_TRUE(ZeitlogZeileLesen(zeile, e));
    EXPECT_EQ(std::tuple(e.start, e.tiefenindex, e.verstrichen, e.ziel, e.knoten, e.wertung, e.besterZug, e.gewechselt),
              std::tuple(d.start, 6, 750, 1500, 400000, -350, 0x1234u, true));
    const auto eingaben = ZeitEingaben(d);
    for (size_t i = 0; i < eingaben.size(); ++i) EXPECT_NEAR(e.eingaben[i], eingaben[i], 5e-7) << i;
    // Cut short, overlong, untagged or with a move beyond 16 bits: not a line.
    std::string zug = zeile;
    zug.replace(zug.find(" 4660 "), 6, " 70000 ");
    for (const std::string& kaputt : {zeile.substr(0, zeile.size() - 9), zeile + " 0.5", zeile.substr(2), zug})
        EXPECT_FALSE(ZeitlogZeileLesen(kaputt, e)) << kaputt;
}

TEST(Zeitlog, UnruheVerlaengertDieSuche) {
    // The bound of weiterIterieren, as a share of the target: (x + 17) / 30. A quiet
    // search stops near the target; a best move that keeps changing, or a falling
    // score, pushes the bound out. Fed badly, the network saturates and every search
    // runs to the iteration limit.
    Zeitnetz_t netz;
    const auto anteil = [&](double unruhe, int aenderung) {
        Iterationsdaten_t d;
        d.unruhe = unruhe;
        d.wertung = 200 + aenderung;
        d.vorherigeWertung = 200;
        Zeitwert_t w;
        w.nachIteration(netz.bewerten(ZeitEingaben(d)), false);
        return (w.x() + 17) / 30;
    };
    EXPECT_NEAR(anteil(0, 0), 1.0, 0.1);
    EXPECT_GT(anteil(1, 0), 1.7);
    EXPECT_GT(anteil(0, -500), anteil(0, 0) + 0.1);
    EXPECT_LT(anteil(0, 500), anteil(0, 0));
    for (double u = 0; u < 2; u += 0.25) EXPECT_LT(anteil(u, 0), anteil(u + 0.25, 0)) << u;
}

