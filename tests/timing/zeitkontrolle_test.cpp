#include <gtest/gtest.h>

#include <cstdint>
#include <tuple>
#include <utility>

#include "timing/zeitkontrolle.h"

namespace {

constexpr int64_t ZU = Zeitkontrolle_t::ZeitUnbegrenzt;
constexpr int64_t KU = Zeitkontrolle_t::KnotenUnbegrenzt;

struct Go {
    int64_t eigen = 0, ink = 0, knoten = 0, zugzeit = 0;
    int32_t zuege = 0, tiefe = 0, matt = 0;
    bool unendlich = false;
    uint8_t kurve = 0;
};

void Setze(Zeitkontrolle_t& zk, const Go& g, bool zaehlen) {
    zk.kurve = g.kurve;
    zk.setzen(g.eigen, g.ink, g.zuege, g.tiefe, g.knoten, g.matt, g.zugzeit, g.unendlich, zaehlen);
}

struct Soll {
    int64_t ziel = ZU, iter = ZU, hart = ZU, knoten = KU, hartKnoten = KU;
    int32_t tiefe = Zeitkontrolle_t::TiefeUnbegrenzt;
};

}  // namespace

TEST(Zeitkontrolle, Setzen) {
    // Clock rows worked out by hand: T = own - 200 (at least 50), I = inc - 100,
    // D = 55 tanh(1.05 g / 55) + 0.5, e.g. 53.0455 for g = 99 and 35.8768 for g = 40.
    const std::pair<Go, Soll> faelle[] = {
        {{.eigen = 60000, .zugzeit = 1000, .tiefe = 5, .unendlich = true}, {}},  // infinite beats all
        {{.eigen = 60000, .tiefe = 1}, {.tiefe = 0}},
        {{.eigen = 60000, .matt = 3}, {.tiefe = 9}},
        {{.tiefe = 4, .matt = 2}, {.tiefe = 7}},  // with both, mate decides
        {{.tiefe = 4, .matt = -1}, {.tiefe = 3}},
        {{.matt = 2000000000}, {.tiefe = INT32_MAX}},  // 2m + 3 must not overflow
        {{.eigen = 60000, .knoten = 100, .zugzeit = 5000}, {.hart = 5000}},  // move time before nodes
        {{.eigen = 100}, {0, 0, 7}},  // T = 50: a target of 0, never negative
        {{.eigen = -5000}, {0, 0, 7}},
        {{.eigen = 60000}, {1127, 4508, 8542}},  // 0 moves to go counts as 99
        {{.eigen = 60000, .zuege = 150}, {1127, 4508, 8542}},
        {{.eigen = 60000, .zuege = 40}, {1666, 5980, 8542}},
        {{.eigen = 60000, .zuege = 40, .kurve = 1}, {2283, 5980, 8543}},  // flat curve: D = 26.1904
        {{.eigen = 60000, .zuege = 1}, {20052, 40105, 48126}},
        {{.eigen = 300000, .ink = 5000}, {10551, 42204, 62428}},
        {{.eigen = 60000, .knoten = 10}, {.knoten = 200, .hartKnoten = 2000}},
        // The hard node limit outlives its own go; only another "nodes" rewrites it.
        {{.eigen = 60000}, {1127, 4508, 8542, KU, 2000}},
        {{.zugzeit = 100}, {.hart = 100, .hartKnoten = 2000}},
        {{.knoten = 5000}, {.knoten = 5000, .hartKnoten = 50000}},
        {{.knoten = INT64_MAX}, {.knoten = INT64_MAX, .hartKnoten = 9223372036854775800}},
    };
    // One record throughout: every go must clear what the one before set.
    Zeitkontrolle_t zk;
    int zeile = 0;
    for (const auto& [go, s] : faelle) {
        Setze(zk, go, false);
        EXPECT_EQ(std::tuple(zk.ziel, zk.iterationsgrenze, zk.harteGrenze, zk.knotengrenze, zk.harteKnotengrenze,
                             zk.tiefengrenze),
                  std::tuple(s.ziel, s.iter, s.hart, s.knoten, s.hartKnoten, s.tiefe))
            << "row " << zeile;
        ++zeile;
    }
}

TEST(Zeitkontrolle, Zaehlmodus) {
    struct Frage { Go go; int64_t knoten; int32_t k; double x; bool weiter, stopp; };
    const Frage fragen[] = {
        {{.knoten = 10}, 199, 5, 8.0, true, false},
        {{.knoten = 10}, 1999, 5, 8.0, false, false},  // past the soft limit of 200
        {{.knoten = 10}, 2000, 0, 8.0, false, true},
        {{.tiefe = 4}, 1000000, 3, 2.0, true, false},
        {{.tiefe = 4}, 0, 4, 2.0, false, false},
        {{.zugzeit = 5000}, 4999, 20, 2.0, true, false},  // only the hard limit ends a move-time search
        {{.zugzeit = 5000}, 5000, 20, 2.0, true, true},
        {{.eigen = 100}, 6, 1, 1000.0, false, false},  // a target of 0 allows no new iteration
        {{.eigen = 100}, 7, 1, 1000.0, false, true},
    };
    for (const Frage& f : fragen) {
        Zeitkontrolle_t zk;
        Setze(zk, f.go, true);
        EXPECT_EQ(zk.weiterIterieren(f.knoten, f.k, f.x), f.weiter) << f.knoten;
        EXPECT_EQ(zk.sofortStoppen(f.knoten), f.stopp) << f.knoten;
    }
}

TEST(Zeitkontrolle, NetzwertVerschiebtDieGrenze) {
    Zeitkontrolle_t zk;
    zk.zaehlmodus = 1;
    zk.ziel = 3000;
    zk.iterationsgrenze = 12000;
    // Go on while (max(x, 0) + 17) / 1.2 e > 25 / 3000, i.e. e < 100 (x + 17),
    // and while 2.2 e stays within the iteration limit (e < 5455).
    for (auto [x, grenze] : {std::pair{2.0, 1900}, {8.0, 2500}, {-5.0, 1700}, {25.0, 4200}, {1000.0, 5455}}) {
        int64_t e = 0;
        while (zk.weiterIterieren(e, 1, x)) ++e;
        EXPECT_EQ(e, grenze) << x;
    }
    EXPECT_FALSE(zk.zeitUeberschritten(11999));
    EXPECT_TRUE(zk.zeitUeberschritten(12000));
}
