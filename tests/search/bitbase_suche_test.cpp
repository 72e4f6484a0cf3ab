// The search with bitbases: probes only with a cache and files, the verdict
// carried from the root, and missing files that change nothing.
#include <gtest/gtest.h>

#include <string>

#include "../bitbase/erzeugung_hilfe.h"
#include "board/zugmachen.h"
#include "protocol/suchwerkzeuge.h"
#include "search/hashtabelle.h"
#include "such_hilfe.h"

namespace {

using such_test::Fen;

void Bitbasen(Werkzeugsuche_t& suche, int mb, const std::string& pfad) {
    suche.Setze(("setoption name BitbaseCache value " + std::to_string(mb)).c_str());
    suche.Setze(("setoption name BitbasePath value " + pfad).c_str());
}

const char* const DameGegenKoenig = "8/8/8/4k3/8/8/8/K2Q4 w - - 0 1";

TEST(BitbaseSuche, ProbtNurMitCacheUndDateien) {
    const std::string pfad = erzeugung_test::KleineBitbasen();
    Werkzeugsuche_t suche;
    const Stellung_t st = Fen(DameGegenKoenig);

    suche.Suche(st, 8, 0, 0);
    EXPECT_EQ(suche.TbTreffer(), 0u);  // the cache is off by default

    Bitbasen(suche, 4, pfad);
    suche.NeuesSpiel();
    suche.Suche(st, 8, 0, 0);
    EXPECT_GT(suche.TbTreffer(), 0u);
    EXPECT_GT(suche.Wert(), 0);

    // Files that are not there: no hits, and the search plays on as without them.
    Bitbasen(suche, 4, pfad + "/fehlt");
    suche.NeuesSpiel();
    const Zug_t ohne = suche.Suche(st, 8, 0, 0);
    EXPECT_EQ(suche.TbTreffer(), 0u);
    Bitbasen(suche, 0, ".");
    suche.NeuesSpiel();
    EXPECT_EQ(suche.Suche(st, 8, 0, 0), ohne);
}

TEST(BitbaseSuche, SchlagzugInsBekannteEndspiel) {
    // Rxb3 leaves rook against king: a probe after the capture knows it is won.
    const std::string pfad = erzeugung_test::KleineBitbasen();
    Werkzeugsuche_t suche;
    Bitbasen(suche, 4, pfad);
    for (int threads : {1, 2}) {
        suche.Setze(("setoption name NumberOfProcessors value " + std::to_string(threads)).c_str());
        suche.NeuesSpiel();
        const Stellung_t st = Fen("8/8/4k3/8/8/1n6/8/KR6 w - - 0 1");
        const Zug_t zug = suche.Suche(st, 10, 0, 0);
        char text[8];
        EXPECT_STREQ(ZugText(st, zug, text), "b1b3") << threads;
        EXPECT_GT(suche.TbTreffer(), 0u) << threads;
    }
}

}  // namespace
