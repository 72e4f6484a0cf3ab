#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "timing/zeitkontrolle.h"

namespace {

constexpr int64_t ZU = Zeitkontrolle_t::ZeitUnbegrenzt;
constexpr int64_t KU = Zeitkontrolle_t::KnotenUnbegrenzt;

struct Uhr {
    int64_t eigen = 0, inkrement = 0, zuege = 0, tiefe = 0, knoten = 0, matt = 0, zugzeit = 0;
    bool unendlich = false, zaehlen = false;
};

void Setze(Zeitkontrolle_t& zk, const Uhr& u) {
    zk.setzen(u.eigen, u.inkrement, static_cast<int32_t>(u.zuege), static_cast<int32_t>(u.tiefe), u.knoten,
              static_cast<int32_t>(u.matt), u.zugzeit, u.unendlich, u.zaehlen);
}

// The clock allocation worked out again from the tanh form of the curves.
struct Erwartung {
    double d;
    int64_t ziel, iterationsgrenze, harteGrenze;
};

Erwartung Rechne(int64_t eigen, int64_t inkrement, int g, bool kurve) {
    if (g < 1 || g > 99) g = 99;
    const double t = static_cast<double>(std::max<int64_t>(eigen - 200, 50));
    const double i = static_cast<double>(std::max<int64_t>(inkrement - 100, 0));
    const double d = kurve ? 36.0 * std::tanh(0.8 * g / 36.0) + 0.6 : 55.0 * std::tanh(1.05 * g / 55.0) + 0.5;
    const double p = std::pow(1.6, 1.0 - d);
    Erwartung e{d, 0, 0, 0};
    e.ziel = static_cast<int64_t>(t / d + i);
    e.iterationsgrenze = static_cast<int64_t>(((1.0 - p) / 10.0 + p) * t + 3.0 * i);
    e.harteGrenze = std::min(static_cast<int64_t>(((1.0 - p) / 7.0 + p) * t + 4.0 * i), static_cast<int64_t>(t));
    if (1.2 * static_cast<double>(e.iterationsgrenze) > static_cast<double>(e.harteGrenze))
        e.iterationsgrenze = static_cast<int64_t>(static_cast<double>(e.harteGrenze) / 1.2);
    if (2 * e.ziel > e.iterationsgrenze) e.ziel = e.iterationsgrenze / 2;
    e.iterationsgrenze = std::min(4 * e.ziel, e.iterationsgrenze);
    return e;
}

void PruefeUhr(int64_t eigen, int64_t inkrement, int g, bool kurve) {
    Zeitkontrolle_t zk;
    zk.kurve = kurve ? 1 : 0;
    Uhr u;
    u.eigen = eigen;
    u.inkrement = inkrement;
    u.zuege = g;
    Setze(zk, u);
    const Erwartung e = Rechne(eigen, inkrement, g, kurve);
    const int gg = (g < 1 || g > 99) ? 99 : g;
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(gg, kurve), e.d, 1e-12);
    // The exp form and the tanh form may part in the last bit: one millisecond of slack.
    EXPECT_NEAR(static_cast<double>(zk.ziel), static_cast<double>(e.ziel), 1.0);
    EXPECT_NEAR(static_cast<double>(zk.iterationsgrenze), static_cast<double>(e.iterationsgrenze), 1.0);
    EXPECT_NEAR(static_cast<double>(zk.harteGrenze), static_cast<double>(e.harteGrenze), 1.0);
    EXPECT_EQ(zk.knotengrenze, KU);
    EXPECT_EQ(zk.tiefengrenze, 1000);
}

}  // namespace

// ---------------------------------------------------------------- construction

TEST(ZeitkontrolleAnfang, Konstruktion) {
    Zeitkontrolle_t zk;
    EXPECT_EQ(zk.start, 0);
    EXPECT_EQ(zk.ziel, 0x007F0000FFFF0000LL);
    EXPECT_EQ(zk.iterationsgrenze, ZU);
    EXPECT_EQ(zk.harteGrenze, ZU);
    EXPECT_EQ(zk.knotengrenze, 0x7FFF0000FFFF0000LL);
    EXPECT_EQ(zk.harteKnotengrenze, KU);
    EXPECT_EQ(zk.tiefengrenze, 1000);
    EXPECT_EQ(zk.kurve, 0);
    EXPECT_EQ(zk.zaehlmodus, 0);
}

TEST(ZeitkontrolleAnfang, StartIstDieUhr) {
    Zeitkontrolle_t zk;
    const int64_t vorher = Millisekunden();
    zk.setzen(0, 0, 0, 0, 0, 0, 0, true, false);
    EXPECT_GE(zk.start, vorher);
    EXPECT_LE(zk.start, Zeitkontrolle_t::jetzt());
    EXPECT_GE(zk.verstrichen(), 0);
    EXPECT_LT(zk.verstrichen(), 60000);
}

// ---------------------------------------------------------------- setzen, case by case

TEST(ZeitkontrolleSetzen, Unendlich) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.unendlich = true;
    u.eigen = 60000;
    u.tiefe = 5;
    u.zugzeit = 1000;
    Setze(zk, u);
    EXPECT_EQ(zk.tiefengrenze, 1000);
    EXPECT_EQ(zk.ziel, ZU);
    EXPECT_EQ(zk.iterationsgrenze, ZU);
    EXPECT_EQ(zk.harteGrenze, ZU);
    EXPECT_EQ(zk.knotengrenze, KU);
}

TEST(ZeitkontrolleSetzen, TiefeEins) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.tiefe = 1;
    u.eigen = 60000;
    Setze(zk, u);
    EXPECT_EQ(zk.tiefengrenze, 0);
    EXPECT_EQ(zk.ziel, ZU);
    EXPECT_EQ(zk.iterationsgrenze, ZU);
    EXPECT_EQ(zk.harteGrenze, ZU);
    EXPECT_EQ(zk.knotengrenze, KU);
}

TEST(ZeitkontrolleSetzen, MattDrei) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.matt = 3;
    u.eigen = 60000;
    Setze(zk, u);
    EXPECT_EQ(zk.tiefengrenze, 9);
    EXPECT_EQ(zk.harteGrenze, ZU);
    EXPECT_EQ(zk.knotengrenze, KU);
}

TEST(ZeitkontrolleSetzen, TiefeUndMatt) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.tiefe = 4;
    u.matt = 2;
    Setze(zk, u);
    EXPECT_EQ(zk.tiefengrenze, 7);
    u.matt = 0;
    Setze(zk, u);
    EXPECT_EQ(zk.tiefengrenze, 3);
    u.matt = -1;  // not above 0: the depth decides
    Setze(zk, u);
    EXPECT_EQ(zk.tiefengrenze, 3);
}

TEST(ZeitkontrolleSetzen, Zugzeit) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.zugzeit = 5000;
    u.eigen = 60000;
    u.knoten = 100;  // move time comes first
    Setze(zk, u);
    EXPECT_EQ(zk.harteGrenze, 5000);
    EXPECT_EQ(zk.ziel, ZU);
    EXPECT_EQ(zk.iterationsgrenze, ZU);
    EXPECT_EQ(zk.knotengrenze, KU);
    EXPECT_EQ(zk.harteKnotengrenze, KU);
    EXPECT_EQ(zk.tiefengrenze, 1000);
}

TEST(ZeitkontrolleSetzen, KnotenZehn) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.knoten = 10;
    u.eigen = 60000;
    Setze(zk, u);
    EXPECT_EQ(zk.knotengrenze, 200);
    EXPECT_EQ(zk.harteKnotengrenze, 2000);
    EXPECT_EQ(zk.ziel, ZU);
    EXPECT_EQ(zk.iterationsgrenze, ZU);
    EXPECT_EQ(zk.harteGrenze, ZU);
    EXPECT_EQ(zk.tiefengrenze, 1000);
    u.knoten = 5000;
    Setze(zk, u);
    EXPECT_EQ(zk.knotengrenze, 5000);
    EXPECT_EQ(zk.harteKnotengrenze, 50000);
}

TEST(ZeitkontrolleSetzen, HarteKnotengrenzeBleibt) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.knoten = 10;
    Setze(zk, u);
    ASSERT_EQ(zk.harteKnotengrenze, 2000);
    // Every later "go" keeps it; only another "nodes" rewrites it.
    Uhr spaeter;
    spaeter.eigen = 60000;
    Setze(zk, spaeter);
    EXPECT_EQ(zk.harteKnotengrenze, 2000);
    EXPECT_EQ(zk.knotengrenze, KU);
    spaeter = Uhr{};
    spaeter.unendlich = true;
    Setze(zk, spaeter);
    EXPECT_EQ(zk.harteKnotengrenze, 2000);
    spaeter = Uhr{};
    spaeter.tiefe = 3;
    Setze(zk, spaeter);
    EXPECT_EQ(zk.harteKnotengrenze, 2000);
    spaeter = Uhr{};
    spaeter.zugzeit = 100;
    Setze(zk, spaeter);
    EXPECT_EQ(zk.harteKnotengrenze, 2000);
    EXPECT_TRUE(zk.sofortStoppen(2000));
    spaeter = Uhr{};
    spaeter.knoten = 1000;
    Setze(zk, spaeter);
    EXPECT_EQ(zk.harteKnotengrenze, 10000);
}

TEST(ZeitkontrolleSetzen, WenigZeitGibtUntergrenze) {
    // Own time 100: T = 50, 99 moves to go, D = 53.0455...: a target of 0 ms, never negative.
    Zeitkontrolle_t zk;
    Uhr u;
    u.eigen = 100;
    Setze(zk, u);
    EXPECT_EQ(zk.ziel, 0);
    EXPECT_EQ(zk.iterationsgrenze, 0);
    EXPECT_EQ(zk.harteGrenze, 7);
    EXPECT_EQ(zk.knotengrenze, KU);
    EXPECT_EQ(zk.tiefengrenze, 1000);
    // Even a negative clock gives the same floor.
    u.eigen = -5000;
    Setze(zk, u);
    EXPECT_EQ(zk.harteGrenze, 7);
    EXPECT_GE(zk.ziel, 0);
    PruefeUhr(100, 0, 0, false);
}

TEST(ZeitkontrolleSetzen, ZuegeNullUnd150WieNeunundneunzig) {
    Zeitkontrolle_t a, b, c;
    Uhr u;
    u.eigen = 60000;
    u.zuege = 99;
    Setze(a, u);
    u.zuege = 0;
    Setze(b, u);
    u.zuege = 150;
    Setze(c, u);
    // 60000 ms, no increment: T = 59800, D = 53.0455...
    EXPECT_EQ(a.ziel, 1127);
    EXPECT_EQ(a.iterationsgrenze, 4508);
    EXPECT_EQ(a.harteGrenze, 8542);
    for (const Zeitkontrolle_t* zk : {&b, &c}) {
        EXPECT_EQ(zk->ziel, a.ziel);
        EXPECT_EQ(zk->iterationsgrenze, a.iterationsgrenze);
        EXPECT_EQ(zk->harteGrenze, a.harteGrenze);
    }
    u.zuege = -3;
    Setze(b, u);
    EXPECT_EQ(b.ziel, a.ziel);
}

TEST(ZeitkontrolleSetzen, KurvenFuerEinsVierzigNeunundneunzig) {
    for (bool kurve : {false, true})
        for (int g : {1, 40, 99}) {
            SCOPED_TRACE(testing::Message() << "kurve " << kurve << " g " << g);
            PruefeUhr(60000, 0, g, kurve);
            PruefeUhr(300000, 5000, g, kurve);
            PruefeUhr(1000, 0, g, kurve);
        }
}

TEST(ZeitkontrolleSetzen, KurvenHandgerechnet) {
    // D for 40 moves: 55 tanh(0.7636...) + 0.5 = 35.8768; flat curve 36 tanh(0.8889) + 0.6 = 26.1904.
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(40, false), 35.876762, 1e-6);
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(40, true), 26.190402, 1e-6);
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(1, false), 1.549872, 1e-6);
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(1, true), 1.399868, 1e-6);
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(99, false), 53.045522, 1e-6);
    EXPECT_NEAR(Zeitkontrolle_t::EffektiveZuege(99, true), 35.726753, 1e-6);

    Zeitkontrolle_t zk;
    Uhr u;
    u.eigen = 60000;
    u.zuege = 40;
    Setze(zk, u);
    EXPECT_EQ(zk.ziel, 1666);
    EXPECT_EQ(zk.iterationsgrenze, 5980);
    EXPECT_EQ(zk.harteGrenze, 8542);
    zk.kurve = 1;
    Setze(zk, u);
    EXPECT_EQ(zk.ziel, 2283);
    EXPECT_EQ(zk.iterationsgrenze, 5980);
    EXPECT_EQ(zk.harteGrenze, 8543);
    u.zuege = 1;
    zk.kurve = 0;
    Setze(zk, u);
    EXPECT_EQ(zk.ziel, 20052);
    EXPECT_EQ(zk.iterationsgrenze, 40105);
    EXPECT_EQ(zk.harteGrenze, 48126);
    // With increment: 300 s + 5 s, T = 299800, I = 4900.
    u = Uhr{};
    u.eigen = 300000;
    u.inkrement = 5000;
    Setze(zk, u);
    EXPECT_EQ(zk.ziel, 10551);
    EXPECT_EQ(zk.iterationsgrenze, 42204);
    EXPECT_EQ(zk.harteGrenze, 62428);
}

TEST(ZeitkontrolleSetzen, ZaehlmodusWirdUebernommen) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.eigen = 60000;
    u.zaehlen = true;
    Setze(zk, u);
    EXPECT_EQ(zk.zaehlmodus, 1);
    u.zaehlen = false;
    Setze(zk, u);
    EXPECT_EQ(zk.zaehlmodus, 0);
}

TEST(ZeitkontrolleSetzen, UnsinnigeWerteLaufenNichtUeber) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.matt = 2000000000;
    Setze(zk, u);
    EXPECT_GT(zk.tiefengrenze, 1000);
    u = Uhr{};
    u.knoten = INT64_MAX;
    Setze(zk, u);
    EXPECT_GT(zk.harteKnotengrenze, 0);
    u = Uhr{};
    u.eigen = INT64_MAX;
    u.inkrement = INT64_MAX;
    Setze(zk, u);
    EXPECT_GT(zk.ziel, 0);
    EXPECT_LE(zk.ziel, zk.iterationsgrenze);
    u.eigen = INT64_MIN;
    u.inkrement = INT64_MIN;
    Setze(zk, u);
    EXPECT_GE(zk.ziel, 0);
}

// ---------------------------------------------------------------- questions, in counting mode

TEST(ZeitkontrolleZaehlmodus, WeiterIterierenMitKnotengrenze) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.knoten = 10;
    u.zaehlen = true;
    Setze(zk, u);
    EXPECT_TRUE(zk.weiterIterieren(0, 1, 8.0));
    EXPECT_TRUE(zk.weiterIterieren(199, 5, 8.0));
    EXPECT_FALSE(zk.weiterIterieren(200, 5, 8.0));
    EXPECT_FALSE(zk.sofortStoppen(1999));
    EXPECT_TRUE(zk.sofortStoppen(2000));
}

TEST(ZeitkontrolleZaehlmodus, Tiefengrenze) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.tiefe = 4;
    u.zaehlen = true;
    Setze(zk, u);
    EXPECT_TRUE(zk.weiterIterieren(1000000, 3, 2.0));
    EXPECT_FALSE(zk.weiterIterieren(0, 4, 2.0));
}

TEST(ZeitkontrolleZaehlmodus, ZugzeitStopptSofort) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.zugzeit = 5000;
    u.zaehlen = true;
    Setze(zk, u);
    EXPECT_FALSE(zk.sofortStoppen(4999));
    EXPECT_TRUE(zk.sofortStoppen(5000));
    // Iterations are not limited: only the hard limit ends the search.
    EXPECT_TRUE(zk.weiterIterieren(4999, 20, 2.0));
    EXPECT_FALSE(zk.zeitUeberschritten(4999));
}

TEST(ZeitkontrolleZaehlmodus, NetzwertVerschiebtDieGrenze) {
    Zeitkontrolle_t zk;
    zk.zaehlmodus = 1;
    zk.ziel = 3000;
    zk.iterationsgrenze = 12000;
    zk.harteGrenze = 20000;
    // Go on while (max(x, 0) + 17) / (1.2 e + 0.001) > 25 / 3000, i.e. e < 100 (x + 17) - a hair.
    auto grenze = [&zk](double x) {
        int64_t e = 0;
        while (zk.weiterIterieren(e, 1, x)) ++e;
        return e;
    };
    EXPECT_EQ(grenze(2.0), 1900);   // 63 % of the target
    EXPECT_EQ(grenze(8.0), 2500);   // 83 %
    EXPECT_EQ(grenze(-5.0), 1700);  // negative values count as 0
    EXPECT_EQ(grenze(25.0), 4200);
    // A huge value meets the 2.2 e limit: 2.2 e > 12000 from e = 5455 on.
    EXPECT_EQ(grenze(1000.0), 5455);
}

TEST(ZeitkontrolleZaehlmodus, Iterationsgrenze) {
    Zeitkontrolle_t zk;
    zk.zaehlmodus = 1;
    zk.ziel = 1000000;
    zk.iterationsgrenze = 1000;
    EXPECT_FALSE(zk.zeitUeberschritten(999));
    EXPECT_TRUE(zk.zeitUeberschritten(1000));
    EXPECT_TRUE(zk.weiterIterieren(454, 1, 8.0));
    EXPECT_FALSE(zk.weiterIterieren(455, 1, 8.0));  // 2.2 * 455 > 1000
}

TEST(ZeitkontrolleZaehlmodus, ZielNullErlaubtNichts) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.eigen = 100;
    u.zaehlen = true;
    Setze(zk, u);
    EXPECT_FALSE(zk.weiterIterieren(0, 1, 1000.0));
    EXPECT_FALSE(zk.sofortStoppen(6));
    EXPECT_TRUE(zk.sofortStoppen(7));
}

TEST(ZeitkontrolleUhr, WandUhrOhneZaehlmodus) {
    Zeitkontrolle_t zk;
    Uhr u;
    u.zugzeit = 100000;
    Setze(zk, u);
    EXPECT_FALSE(zk.sofortStoppen(1LL << 40));  // nodes do not count as time
    zk.start = Zeitkontrolle_t::jetzt() - 200000;
    EXPECT_TRUE(zk.sofortStoppen(0));
    EXPECT_GE(zk.verstrichen(), 200000);
}
