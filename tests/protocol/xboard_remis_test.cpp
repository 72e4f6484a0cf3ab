// Draw offers and resignation from the engine's last four scores.
#include <gtest/gtest.h>

#include "protocol/xboard_remis.h"

namespace {

TEST(XBoardRemis, EigenesAngebotNurBeiToterNull) {
    XBoardRemis_t r;
    // Twenty moves of dead 0: not yet; the 21st: offer, then the count starts again.
    for (int i = 1; i <= 20; ++i) EXPECT_FALSE(r.Angebot(0, 30, i % 2 ? 1 : -1, 2 * i)) << i;
    EXPECT_TRUE(r.Angebot(0, 30, 0, 42));
    for (int i = 1; i <= 20; ++i) EXPECT_FALSE(r.Angebot(0, 30, 0, 42 + 2 * i)) << i;
    EXPECT_TRUE(r.Angebot(0, 30, 0, 84));
    // Any of the newest three outside -1..1 prevents it.
    XBoardRemis_t s;
    for (int i = 1; i <= 20; ++i) EXPECT_FALSE(s.Angebot(0, 30, 0, 2 * i)) << i;
    EXPECT_FALSE(s.Angebot(0, 30, 2, 42));
    EXPECT_FALSE(s.Angebot(0, 30, 0, 44));
    EXPECT_FALSE(s.Angebot(0, 30, 0, 46));
    EXPECT_TRUE(s.Angebot(0, 30, 0, 48));
    // Forced moves store no score: four scores are needed.
    XBoardRemis_t t;
    for (int i = 1; i <= 30; ++i) EXPECT_FALSE(t.Angebot(0, i % 10 == 0 ? 2 : 1, 0, 2 * i)) << i;
    EXPECT_TRUE(t.Angebot(0, 5, 0, 62));
}

TEST(XBoardRemis, GegnerangebotWirdAngenommenWennNichtGewonnen) {
    XBoardRemis_t r;
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(r.Angebot(1, 30, -300, 10 + 2 * i));
    r.gegnerBietet = true;
    EXPECT_TRUE(r.Angebot(1, 30, -200, 16));  // losing slightly: accepted at once
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(r.Angebot(1, 30, 400, 18 + 2 * i));
    r.gegnerBietet = true;
    EXPECT_FALSE(r.Angebot(1, 30, 400, 24));  // winning: declined, and the offer is gone
    EXPECT_FALSE(r.Angebot(1, 30, 0, 26));
    // Too few scores: declined even when losing.
    XBoardRemis_t s;
    s.gegnerBietet = true;
    EXPECT_FALSE(s.Angebot(0, 30, -5000, 2));
    // Another side for the engine forgets the old scores.
    XBoardRemis_t t;
    for (int i = 0; i < 4; ++i) t.Angebot(0, 30, 0, 2 * i);
    t.gegnerBietet = true;
    EXPECT_FALSE(t.Angebot(1, 30, 0, 9));
}

TEST(XBoardRemis, Aufgeben) {
    // Default "Resign" 700: four searches at or below -7000 that do not improve.
    XBoardRemis_t r;
    const int werte[] = {-7000, -7500, -9000, -9000};
    for (int w : werte) {
        EXPECT_FALSE(r.Aufgeben(700));
        r.Angebot(0, 30, w, 40);
    }
    EXPECT_TRUE(r.Aufgeben(700));
    EXPECT_FALSE(r.Aufgeben(800));  // -8000 is the bound now; -7000 and -7500 lie above it
    r.Angebot(0, 30, -7000, 42);     // better than the one before: not yet
    EXPECT_FALSE(r.Aufgeben(700));
    r.Angebot(0, 30, -6999, 44);
    EXPECT_FALSE(r.Aufgeben(700));
    // Never a softer bound than -20000, whatever the option says; mate scores are below it.
    XBoardRemis_t m;
    for (int i = 0; i < 4; ++i) m.Angebot(0, 30, -499990 + i, 40);
    EXPECT_FALSE(m.Aufgeben(700));  // the newest (-499987) is better than the one before
    XBoardRemis_t n;
    for (int i = 0; i < 4; ++i) n.Angebot(0, 30, -25000 - i, 40);
    EXPECT_TRUE(n.Aufgeben(2000));
    EXPECT_TRUE(n.Aufgeben(450000));  // no "Resign" row: the bound is -20000
    // "No score yet" (500000) never resigns.
    XBoardRemis_t k;
    for (int i = 0; i < 4; ++i) k.Angebot(0, 30, 500000, 40);
    EXPECT_FALSE(k.Aufgeben(700));
}

}  // namespace
