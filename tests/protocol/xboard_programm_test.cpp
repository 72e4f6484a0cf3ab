// XBoard through the whole program: protocol choice, real and random searchers,
// complete games and input that makes no sense.
#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "protocol/uci.h"
#include "search/suche.h"
#include "search/suche_zufall.h"
#include "timing/zeitkontrolle.h"
#include "../test_dateien.h"
#include "xboard_hilfen.h"

namespace {

using Zeilen_t = std::vector<std::string>;

// The lines after the feature list ("feature done=1"), whether or not a settings file was found.
Zeilen_t NachDenMerkmalen(const Zeilen_t& aus) {
    for (size_t i = 0; i < aus.size(); ++i)
        if (aus[i] == "feature done=1") return Zeilen_t(aus.begin() + static_cast<long>(i) + 1, aus.end());
    return aus;
}

const std::regex Zugzeile("move [a-h][1-8][a-h][1-8][nbrq]?");

TEST(XBoardProgramm, AnalyseDruecktKeinenZug) {
    // Thinking lines and their format are xboard_test.cpp's; analysis prints no move,
    // not even when "quit" ends it.
    const Lauf_t a = Starte("xboard\nprotover 2\nnew\npost\nanalyze\nusermove e2e4\nexit\nanalyze\nquit\n", {});
    EXPECT_EQ(a.status, 0);
    for (const std::string& zeile : NachDenMerkmalen(a.aus)) EXPECT_EQ(zeile.rfind("move", 0), std::string::npos) << zeile;
}

TEST(XBoardProgramm, VollstaendigeZufallspartie) {
    // The engine plays both sides with "go" until it announces the result; every move it
    // printed must be legal and its result the one the rules give.
    std::ostringstream aus;
    Zeitkontrolle_t zk{};
    XBoardAusgabe_t ausgabe(&zk, aus);
    SucheZufall_t sucher(true);
    UciInterface_t uci(LeereOptionstabelle, &zk, &ausgabe, &sucher);
    ausgabe.optionen = &uci.Optionen();
    XBoardInterface_t xboard(&uci, &uci.Optionen(), &ausgabe, "/nicht/da/Kelvaran.ini");
    ausgabe.xboard = &xboard;
    xboard.befehl("new");
    xboard.befehl("level 0 1 0");
    std::string ergebnis;
    for (int i = 0; i < 3000 && ergebnis.empty(); ++i) {
        xboard.befehl("go");
        sucher.WarteBisUntaetig();
        const Zeilen_t z = Zeilen(aus.str());
        if (!z.empty() && z.back().rfind("move", 0) != 0) ergebnis = z.back();
    }
    xboard.befehl("quit");
    ASSERT_FALSE(ergebnis.empty());

    XBoardPartie_t partie;
    int zuege = 0;
    for (const std::string& zeile : Zeilen(aus.str())) {
        if (zeile == ergebnis) break;
        ASSERT_TRUE(std::regex_match(zeile, Zugzeile)) << zeile;
        ASSERT_TRUE(partie.Mache(partie.Finde(zeile.c_str() + 5))) << zeile;
        ++zuege;
    }
    ASSERT_NE(partie.Ergebnis(), nullptr);
    EXPECT_EQ(ergebnis, partie.Ergebnis());
    EXPECT_EQ(zuege, partie.Halbzuege());
}

TEST(XBoardProgramm, DenkausgabeUndWertMitMehrerenLinien) {
    // MultiPV from the settings file: thinking lines and the score that the draw and
    // resign decisions read still come from the best line.
    const TempDatei ini(".ini");
    ini.schreiben("setoption name MultiPV value 3\nsetoption name OwnBook value false\n");
    std::ostringstream aus;
    Zeitkontrolle_t zk{};
    XBoardAusgabe_t ausgabe(&zk, aus);
    Suche_t sucher;
    UciInterface_t uci(Optionstabelle, &zk, &ausgabe, &sucher);
    ausgabe.optionen = &uci.Optionen();
    XBoardInterface_t xboard(&uci, &uci.Optionen(), &ausgabe, ini.name);
    ausgabe.xboard = &xboard;
    for (const char* befehl : {"xboard", "protover 2", "post", "sd 6", "setboard 4k3/pp6/8/3q4/8/8/PP1R4/4K3 w - - 0 1", "go"})
        xboard.befehl(befehl);
    sucher.WarteBisUntaetig();
    EXPECT_EQ(uci.Optionen().Zahl(uci.Optionen().Index("MultiPV")), 3);
    const Zeilen_t z = NachDenMerkmalen(Zeilen(aus.str()));
    ASSERT_FALSE(z.empty());
    EXPECT_EQ(z.back(), "move d2d5");
    bool denken = false;
    for (const std::string& zeile : z) denken |= std::regex_match(zeile, std::regex("[0-9]+ [0-9]+ [0-9]+ [0-9]+ d2d5.*"));
    EXPECT_TRUE(denken);
    EXPECT_GT(ausgabe.Stand().letzterWert, 5000);
    EXPECT_LT(ausgabe.Stand().letzterWert, 450000);
    xboard.befehl("quit");
}

TEST(XBoardProgramm, UnsinnigeEingabenSindHarmlos) {
    // Commands with random arguments and random bytes: the engine answers, never crashes or hangs.
    const char* const woerter[] = {"usermove", "setboard", "level", "time", "otim", "st", "sd", "ping", "memory",
                                   "cores", "variant", "go", "force", "new", "undo", "remove", "?", "draw",
                                   "result", "hint", ".", "analyze", "exit", "post", "nopost", "playother",
                                   "name", "bk", "easy", "xboard", "quit1", "\x01\x7f"};
    const char* const argumente[] = {"", "e2e4", "e7e5", "g1f3", "O-O", "e1g1", "a7a8q", "0", "-1", "40 5 0",
                                     "0:30", "1e308", "nan", "99999999999999999999999", "rnbqkbnr/pppppppp/8/8",
                                     "8/8/8/8/8/8/8/8 w - - 0 1", "4k3/8/8/8/8/8/8/4K2R w K - 0 1", "fischerandom",
                                     "\xff\xfe", "    ", "1 2 3 4 5 6 7 8 9"};
    std::mt19937 zufall(2017);
    std::string eingabe = "xboard\nprotover 2\n";
    for (int i = 0; i < 600; ++i) {
        const auto w = zufall() % (sizeof woerter / sizeof *woerter);
        const auto a = zufall() % (sizeof argumente / sizeof *argumente);
        eingabe += std::string(woerter[w]) + " " + argumente[a] + "\n";
        if (i % 50 == 0) {
            for (int k = 0; k < 60; ++k) eingabe += static_cast<char>(1 + zufall() % 255);
            eingabe += "\n";
        }
    }
    const Lauf_t l = Starte(eingabe, {"--Rnd"});
    EXPECT_EQ(l.status, 0);
    EXPECT_GT(l.aus.size(), 100u);
}

}  // namespace
