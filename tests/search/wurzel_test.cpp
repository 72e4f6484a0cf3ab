// The root through the interpreter, with a real searcher: lines read back from the
// table are legal whatever the table holds, and several lines still report the best.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "../board/brett_hilfe.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/uci.h"
#include "search/suche.h"
#include "timing/zeitkontrolle.h"

namespace {

// Records what the searcher reports, suppressed lines included.
class Protokoll_t : public Ausgabe_t {
public:
    struct Linie_t {
        std::vector<Zug_t> zuege;
        int nummer;  // 0 for a best line, else the multipv number
        int wert;
        int tiefe;
        int64_t zeit;
        uint64_t knoten;
    };
    Protokoll_t() : Ausgabe_t(verworfen) {}
    void fehler(const char*, const char*) override {}
    void warnung(const char*, const char*) override {}
    void bestzug(const Stellung_t&, Zug_t zug, Zug_t p) override {
        besterZug = zug;
        ponder = p;
    }
    void variante(const Stellung_t&, const Zug_t* zuege, int anzahl, int wert, int, int, int tiefe, int, int64_t zeitMs,
                  uint64_t knoten, int, int64_t, bool) override {
        linien.push_back({std::vector<Zug_t>(zuege, zuege + anzahl), 0, wert, tiefe, zeitMs, knoten});
    }
    void multiPv(const Stellung_t&, const Zug_t* zuege, int anzahl, int nummer, int wert, int tiefe) override {
        linien.push_back({std::vector<Zug_t>(zuege, zuege + anzahl), nummer, wert, tiefe, 0, 0});
    }

    std::ostringstream verworfen;
    std::vector<Linie_t> linien;
    Zug_t besterZug = 0, ponder = 0;
};

struct Sitzung_t {
    Sitzung_t() { uci.befehl("setoption name OwnBook value false"); }
    void operator()(const char* befehl) {
        uci.befehl(befehl);
        suche.WarteBisUntaetig();
    }
    Suche_t suche;
    Protokoll_t aus;
    Zeitkontrolle_t zk;
    UciInterface_t uci{Optionstabelle, &zk, &aus, &suche};
};

using Nach_t = brett_test::Brett;

// Every move of the line legal in turn.
bool LegaleFolge(const char* fen, const std::vector<Zug_t>& zuege) {
    Nach_t n(fen);
    for (Zug_t zug : zuege) {
        Rueckzug_t r;
        if (!IstLegal(*n.st, zug, n.d) || !SpielzugMachen(*n.st, zug, r, n.d)) return false;
    }
    return true;
}

TtDaten_t Eintrag(Zug_t zug) {
    TtDaten_t d;
    d.wert = 0;
    d.tiefe = 8191;  // deep enough to answer every iteration at the root
    d.schranke = SchrankeExakt;
    d.zug = zug;
    return d;
}

TEST(Wurzel, ZuegeAusDerTabelleNurWennLegal) {
    const char* const start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
    const Nach_t wurzel(start, {}), nachE4(start, {"e2e4"});
    // Move words a collision could bring to the position after 1.e4: a queen from an
    // empty square, White's own pawn, castling through pieces, an unknown kind.
    const Zug_t falsche[] = {MachZug(35, 27, 5), MachZug(36, 28, BauernZug), MachZug(4, 6, Rochade),
                             static_cast<Zug_t>(MachZug(12, 28, 0) | 0xF000)};
    for (Zug_t falsch : falsche) {
        SCOPED_TRACE(falsch);
        ASSERT_FALSE(IstLegal(*nachE4.st, falsch, nachE4.d));
        Sitzung_t s;
        s.suche.Tabelle().store(wurzel.d.schluessel, 0, Eintrag(wurzel.Zug("e2e4")));
        s.suche.Tabelle().store(nachE4.d.schluessel, 0, Eintrag(falsch));
        s("position startpos");
        s("go depth 4");
        EXPECT_EQ(s.aus.besterZug, wurzel.Zug("e2e4"));
        EXPECT_EQ(s.aus.ponder, 0) << "no ponder move rather than an illegal one";
        s("go depth 2");  // the interpreter's position is untouched
        EXPECT_EQ(s.aus.besterZug, wurzel.Zug("e2e4"));
    }

    // A single legal move reports its line at once: it stops before the forged move.
    const char* const einzig = "k7/8/8/8/8/8/1q6/K7 w - - 0 1";
    const Nach_t e(einzig, {}), nachKxb2(einzig, {"a1b2"}), nachKb8(einzig, {"a1b2", "a8b8"});
    Sitzung_t s;
    s.suche.Tabelle().store(e.d.schluessel, 0, Eintrag(e.Zug("a1b2")));
    s.suche.Tabelle().store(nachKxb2.d.schluessel, 0, Eintrag(nachKxb2.Zug("a8b8")));
    s.suche.Tabelle().store(nachKb8.d.schluessel, 0, Eintrag(MachZug(49, 33, 6)));  // king b2-b4
    s(("position fen " + std::string(einzig)).c_str());
    s("go depth 3");
    ASSERT_FALSE(s.aus.linien.empty());
    for (const Protokoll_t::Linie_t& l : s.aus.linien) {
        EXPECT_TRUE(LegaleFolge(einzig, l.zuege));
        EXPECT_EQ(l.zuege, (std::vector<Zug_t>{e.Zug("a1b2"), nachKxb2.Zug("a8b8")}));
    }
}

TEST(Wurzel, MehrereLinienMeldenDenBestenWieEine) {
    // White takes the queen; three lines are kept.
    const char* const fen = "4k3/pp6/8/3q4/8/8/PP1R4/4K3 w - - 0 1";
    const Nach_t p(fen);
    Sitzung_t s;
    s("setoption name MultiPV value 3");
    s(("position fen " + std::string(fen)).c_str());
    s("go depth 6");
    ASSERT_EQ(s.aus.besterZug, p.Zug("d2d5"));

    // New best lines come through the best-line slot, with the figures the GUI shows.
    const Protokoll_t::Linie_t* letzteBeste = nullptr;
    int letzteTiefe = -1;
    for (const Protokoll_t::Linie_t& l : s.aus.linien) {
        EXPECT_TRUE(LegaleFolge(fen, l.zuege));
        if (l.nummer == 0) {
            letzteBeste = &l;
            EXPECT_GT(l.knoten, 0u);
        }
        letzteTiefe = std::max(letzteTiefe, l.tiefe);
    }
    ASSERT_NE(letzteBeste, nullptr);
    EXPECT_EQ(letzteBeste->zuege.front(), p.Zug("d2d5"));
    EXPECT_GT(letzteBeste->wert, 5000);

    // The last iteration's three multipv lines, numbered, the best first.
    std::vector<int> nummern;
    for (const Protokoll_t::Linie_t& l : s.aus.linien)
        if (l.nummer > 0 && l.tiefe == letzteTiefe) nummern.push_back(l.nummer);
    EXPECT_EQ(nummern, (std::vector<int>{1, 2, 3}));
    for (const Protokoll_t::Linie_t& l : s.aus.linien) {
        if (l.nummer == 1 && l.tiefe == letzteTiefe) {
            EXPECT_EQ(l.zuege.front(), p.Zug("d2d5"));
        }
    }
}

}  // namespace
