// The move picker: hash move, recapture, then the sorted keys; the pawn-ending key;
// the killers and history a cut leaves behind.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "board/zug.h"
#include "board/zuggenerator.h"
#include "search/zugwahl.h"
#include "such_hilfe.h"

namespace {

using such_test::Fen;

// A node two frames deep (its parent's move is `vorzug`) with every move generated.
struct Knoten_t {
    std::unique_ptr<Suchrahmen_t[]> rahmen = std::make_unique<Suchrahmen_t[]>(2);
    Suchrahmen_t* r = &rahmen[1];
    Stellung_t st;

    Knoten_t(const char* fen, uint32_t vorzug) : st(Fen(fen)) {
        rahmen[0].zug = static_cast<Zug_t>(vorzug);
        BerechneStellungsdaten(st, r->daten);
        r->aktuell = r->liste;
        r->ende = ErzeugeZuege(st, r->daten, r->liste);
        r->stufe = StufeHashzug;
        r->tt = TtDaten_t{};
        r->killer[0] = r->killer[1] = 0;
    }
    uint32_t Zug(const char* text) { return LeseKoordinatenZug(st, text); }
    // The moves in the order the picker gives them, as text.
    std::vector<std::string> Reihenfolge(const Historie_t& h, size_t anzahl) {
        std::vector<std::string> zuege;
        char text[8];
        for (uint32_t z; zuege.size() < anzahl && (z = NaechsterZug(r, st, h)) != 0;)
            zuege.emplace_back(ZugText(st, static_cast<Zug_t>(z), text));
        return zuege;
    }
};

namespace P = Suchparameter;

TEST(Zugwahl, HashzugRueckschlagDannSchluessel) {
    if (P::SchlagzuegeNachOpferwert) GTEST_SKIP() << "captures sorted by the victim's value";
    // Black's knight has just come to d5. Four men can take it, a rook can take the
    // queen (guarded by b6) and g2 can take an unguarded pawn.
    Knoten_t k("6k1/8/1p6/q2n4/2P1P3/2N4p/6P1/R2Q3K w - - 0 1", MachZug(21, 27, Springer));
    Historie_t h;
    h.Leeren();
    k.r->tt.zug = static_cast<int32_t>(k.Zug("d1b3"));
    k.r->killer[0] = static_cast<Zug_t>(k.Zug("d1e2"));
    k.r->killer[1] = static_cast<Zug_t>(k.Zug("c3b5"));
    // The recapture: e4xd5 comes first in the list but, taking away from the h-file,
    // drops to rank 9; c4xd5 then outranks it. Among the captures an unguarded victim
    // leads, then those on the last move's square (the smaller move word first), and
    // the guarded queen last: the victim's value does not count. Then the killers.
    const std::vector<std::string> erwartet = {"d1b3", "c4d5", "g2h3", "e4d5", "c3d5", "d1d5", "a1a5", "d1e2", "c3b5"};
    EXPECT_EQ(k.Reihenfolge(h, erwartet.size()), erwartet);

    // After a null move there is no recapture stage and no last move's square: the
    // guarded captures tie and come by move word.
    Knoten_t ohne("6k1/8/1p6/q2n4/2P1P3/2N4p/6P1/R2Q3K w - - 0 1", 0);
    const std::vector<std::string> schlaege = {"g2h3", "c4d5", "e4d5", "c3d5", "a1a5", "d1d5"};
    EXPECT_EQ(ohne.Reihenfolge(h, schlaege.size()), schlaege);

    // A first candidate taking from files a-c towards the h-file is raised to 11: the
    // plain rank 10 of the later en-passant capture does not replace it.
    Knoten_t links("6k1/8/8/3pP3/2P5/8/8/7K w - d6 0 1", MachZug(11, 27, BauernZug));
    EXPECT_EQ(links.Reihenfolge(h, 2), (std::vector<std::string>{"c4d5", "e5d6"}));
}

TEST(Zugwahl, Bauernendspiel) {
    if (P::BauernendspielAllgemeinSortieren || P::HistorieFeinUndGealtert) GTEST_SKIP() << "general key or fine history";
    // Only kings and pawns: queening first, then the capture of the pawn that has come
    // furthest (f3 before d5), then history; the general key would put both captures first.
    Knoten_t k("7k/1P6/8/3p4/4P3/5p2/6P1/K7 w - - 0 1", 0);
    Historie_t h;
    h.Leeren();
    for (int i = 0; i < 3; ++i) h.Loben(k.Zug("a1a2"), 200);  // 3 x 102: two steps of 128
    const std::vector<std::string> erwartet = {"b7b8q", "g2f3", "e4d5", "b7b8n", "a1a2"};
    EXPECT_EQ(k.Reihenfolge(h, erwartet.size()), erwartet);
}

TEST(Zugwahl, KillerUndHistorieNachSchnitt) {
    if (P::NurRuhigeZuegeMerken || P::HistorieFeinUndGealtert) GTEST_SKIP() << "quiet killers or fine history";
    // Black's last move was d7-d5; White's moves cut.
    Knoten_t k("4k3/8/8/3pP2n/8/8/8/4K2R w - d6 0 1", MachZug(11, 27, BauernZug));
    Suchrahmen_t* r = k.r;
    Historie_t h;
    h.Leeren();
    const uint32_t ep = MachZug(28, 19, EnPassant);
    const uint32_t ecke = MachZug(63, 7, Turm);
    const uint32_t schlag = MachZug(63, 31, Turm);
    const uint32_t ruhig = MachZug(60, 51, Koenig);
    zugwahl::NachSchnitt(r, ep, true, 3, 10, h);
    zugwahl::NachSchnitt(r, ecke, false, 3, 10, h);
    EXPECT_EQ(r->killer[0], 0);  // en passant and a corner square never become killers
    EXPECT_EQ(h.Wert(Art(ep), Nach(ep)), 7);  // but both gain history: 10 / 2 + 2
    EXPECT_EQ(h.Wert(Art(ecke), Nach(ecke)), 7);

    zugwahl::NachSchnitt(r, schlag, true, 1, 10, h);  // a capture does; cutting first teaches no history
    EXPECT_EQ(r->killer[0], schlag);
    EXPECT_EQ(h.Wert(Art(schlag), Nach(schlag)), 0);
    zugwahl::NachSchnitt(r, ruhig, false, 2, 4, h);
    zugwahl::NachSchnitt(r, ruhig, false, 2, 4, h);  // already killer 1: no shift
    EXPECT_EQ(r->killer[0], ruhig);
    EXPECT_EQ(r->killer[1], schlag);
    EXPECT_EQ(h.Wert(Art(ruhig), Nach(ruhig)), 8);

    // A move onto the square the opponent just moved to is left to the recapture stage.
    zugwahl::NachSchnitt(r, MachZug(31, 27, Springer), true, 2, 4, h);
    EXPECT_EQ(r->killer[0], ruhig);
}

TEST(Zugwahl, HistorieBehaeltBereichUndOrdnung) {
    if (P::HistorieFeinUndGealtert) GTEST_SKIP() << "fine history";
    Historie_t h;
    h.Leeren();
    const uint32_t a = MachZug(57, 42, Springer), b = MachZug(62, 45, Springer);
    for (int i = 0; i < 4000; ++i) h.Loben(a, 200);  // 408,000 raw
    for (int i = 0; i < 1000; ++i) h.Loben(b, 200);  // 102,000 raw
    EXPECT_LE(h.Wert(Art(a), Nach(a)), 0xffff);
    EXPECT_GT(h.Wert(Art(a), Nach(a)), 0x7fff);
    EXPECT_EQ(h.Wert(Art(a), Nach(a)) / 4, h.Wert(Art(b), Nach(b)));
    h.Leeren();
    EXPECT_EQ(h.Wert(Art(a), Nach(a)), 0);
}

}  // namespace
