// The XBoard adapter on scripted sessions: exact GUI lines and the UCI lines behind them.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "../test_dateien.h"
#include "xboard_hilfen.h"

namespace {

using Zeilen_t = std::vector<std::string>;

const Zeilen_t Merkmale = {
    "feature done=0",       "feature myname=\"Kelvaran 2017-01-01\"", "feature ping=1",
    "feature setboard=1",   "feature playother=1",
    "feature usermove=1",   "feature sigint=0",
    "feature variants=\"normal,fischerandom\"",
    "feature colors=0",     "feature ics=0",
    "feature name=1",       "feature memory=1",
    "feature smp=1",
};
const Zeilen_t NeuesSpiel = {"position startpos", "setoption name UCI_Chess960 value false",
                             "setoption name Clear Hash value true", "ucinewgame"};
const Zeilen_t LeiseStop = {"setoption name NoOutput value true", "stop", "setoption name NoOutput value false"};

TEST(XBoard, ProtoverMitUndOhneEinstellungsdatei) {
    XBoardSitzung_t ohne;
    ohne("protover 2");
    EXPECT_EQ(ohne.Gui(), Plus(Merkmale, {"Error (file 'Kelvaran.ini' not found): protover", "feature done=1"}));
    EXPECT_EQ(ohne.Uci(), Zeilen_t{});

    // Only "setoption " lines are handed on, as they stand.
    const TempDatei ini(".ini");
    ini.schreiben("setoption name Hash value 64\n# a comment\nsetoption name Resign value 900\r\n"
                  "Hash 5\n  setoption name MultiPV value 3\nsetoptionname Hash value 2\n");
    XBoardSitzung_t mit(ini.name);
    mit("protover 3");
    EXPECT_EQ(mit.Gui(), Plus(Merkmale, {"feature done=1"}));
    EXPECT_EQ(mit.Uci(), (Zeilen_t{"setoption name Hash value 64", "setoption name Resign value 900"}));
    EXPECT_EQ(mit.optionen.Zahl(mit.optionen.Index("Hash")), 64);
    EXPECT_EQ(mit.optionen.Resign(), 900);
}

TEST(XBoard, ProtokollVersionEinsBeendet) {
    for (const char* befehl : {"protover 1", "protover", "protover zwei", "protover -5"}) {
        XBoardSitzung_t s;
        s(befehl);
        const std::string argument = std::string(befehl).size() > 9 ? std::string(befehl).substr(9) : "";
        EXPECT_EQ(s.Gui(), Zeilen_t{"Error (protocol version 2 required): " + argument}) << befehl;
        EXPECT_EQ(s.Uci(), Zeilen_t{"quit"});
    }
}

TEST(XBoard, AntwortenOhneSuche) {
    XBoardSitzung_t s;
    s("xboard\nbk\naccepted usermove\nrejected foo\nrandom\nrating 2000 1800\ncomputer\nhint\nplayother\n");
    EXPECT_EQ(s.Gui(), (Zeilen_t{"", ""}));
    EXPECT_EQ(s.Uci(), Zeilen_t{});

    s("memory 256\ncores 2\nname Deep Thought\nvariant fischerandom\nvariant normal\nvariant");
    EXPECT_EQ(s.Uci(), (Zeilen_t{"setoption name Hash value 256", "setoption name NumberOfProcessors value 2",
                                 "setoption name Opponent value Deep Thought",
                                 "setoption name UCI_Chess960 value true", "setoption name UCI_Chess960 value false",
                                 "setoption name UCI_Chess960 value false"}));
    EXPECT_EQ(s.optionen.Zahl(s.optionen.Index("Hash")), 256);
    // There is no option "Opponent": the opponent's name changes nothing.
    EXPECT_STREQ(s.optionen.Text(s.optionen.Index("UCI_Opponent")), "none none human none");

    s("foo bar\nusermovex e2e4\nUSERMOVE e2e4\n  level 40 5\nlevel\nlevel 40 5 0 1\nst\nst x\nsd -1\ntime abc\n"
      "otim\nmemory lots\ncores\nping 5\nping 123456789012345678901234567890\nusermove e2e5\nusermove\n"
      "usermove e7e5\nusermove e2e4e2e4e2e4\nsetboard xyz\nsetboard\nexit\n");
    EXPECT_EQ(s.Gui(), (Zeilen_t{"Error (unknown command): foo bar",
                                 "Error (unknown command): usermovex e2e4",
                                 "Error (unknown command): USERMOVE e2e4",
                                 "Error (bad parameters): level 40 5",
                                 "Error (bad parameters): level",
                                 "Error (bad parameters): level 40 5 0 1",
                                 "Error (bad parameters): st",
                                 "Error (bad parameters): st x",
                                 "Error (bad parameters): sd -1",
                                 "Error (bad parameters): time abc",
                                 "Error (bad parameters): otim",
                                 "Error (bad parameters): memory lots",
                                 "Error (bad parameters): cores",
                                 "pong 5",
                                 "pong 1234567890123456789012345",
                                 "Illegal move: e2e5",
                                 "Illegal move: ",
                                 "Illegal move: e7e5",
                                 "Illegal move: e2e4e2",
                                 "Illegal position",
                                 "Illegal position"}));
    EXPECT_EQ(s.Uci(), Zeilen_t{});
    EXPECT_EQ(s.xboard.Partie().Halbzuege(), 0);

    s("quit");
    EXPECT_EQ(s.Uci(), (Zeilen_t{"setoption name NoOutput value true", "quit"}));
    s("foo");  // silenced: nothing follows "quit"
    EXPECT_EQ(s.Gui(), Zeilen_t{});
}

TEST(XBoard, SpielMitUhrUndZuegenBisZurKontrolle) {
    XBoardSitzung_t s;
    s("new\nlevel 40 5 0\ntime 30000\notim 29000\nusermove e2e4");
    EXPECT_EQ(s.Uci(), Plus(NeuesSpiel, {"position startpos moves e2e4",
                                         "go wtime 300000 btime 300000 winc 0 binc 0 movestogo 40"}));
    s.Antwort("e7e5", "g1f3", -30);
    EXPECT_EQ(s.Gui(), Zeilen_t{"move e7e5"});
    EXPECT_EQ(s.Uci(), Zeilen_t{});  // "easy" is the default: no pondering
    s("hint\nforce\nhint");
    EXPECT_EQ(s.Gui(), Zeilen_t{"Hint: g1f3"});
    EXPECT_EQ(s.Uci(), Zeilen_t{});
    // The move of a search the GUI no longer waits for is not printed.
    s.Antwort("g1f3");
    EXPECT_EQ(s.Gui(), Zeilen_t{});
    EXPECT_EQ(s.xboard.Partie().Halbzuege(), 2);

    // After 45 moves of the engine, 35 to go to the second control.
    XBoardSitzung_t t;
    t("new\nlevel 40 5 0\nforce");
    for (const std::string& zug : Zufallspartie(90, 7)) t("usermove " + zug);
    t.Uci();
    ASSERT_EQ(t.xboard.Partie().Halbzuege(), 90);
    t("time 12345\ngo");
    const Zeilen_t uci = t.Uci();
    ASSERT_EQ(uci.size(), 2u);
    EXPECT_EQ(uci[0].rfind("position startpos moves ", 0), 0u);
    EXPECT_EQ(uci[1], "go wtime 123450 btime 123450 winc 0 binc 0 movestogo 35");
    // Playing Black after 44 of its moves and the opponent's 45th: 36 to go.
    t("force\nundo\ngo");
    EXPECT_EQ(t.Uci().back(), "go wtime 123450 btime 123450 winc 0 binc 0 movestogo 36");
    t("force\nremove\nplayother\nusermove " + std::string("a2a3"));
}

TEST(XBoard, FesteZeitUndTiefe) {
    XBoardSitzung_t s;
    s("new\nhard\nst 5\ngo");
    // The seconds become milliseconds twice over: the engine has always read "st" so.
    EXPECT_EQ(s.Uci(), Plus(NeuesSpiel, {"position startpos", "go movetime 5000000"}));
    s.Antwort("e2e4", "e7e5");
    EXPECT_EQ(s.Gui(), Zeilen_t{"move e2e4"});
    EXPECT_EQ(s.Uci(), Zeilen_t{});  // no pondering with a fixed time per move
    s("sd 3\nusermove e7e5");
    EXPECT_EQ(s.Uci(), (Zeilen_t{"position startpos moves e2e4 e7e5", "go depth 3"}));
    s("st 0.25\nforce\ngo");
    EXPECT_EQ(s.Uci(), Plus(LeiseStop, {"position startpos moves e2e4 e7e5", "go movetime 250000"}));
    // "new" clears the depth but not the time per move.
    s("new\ngo");
    EXPECT_EQ(s.Uci(), Plus(Plus(LeiseStop, NeuesSpiel), {"position startpos", "go movetime 250000"}));
}

TEST(XBoard, PondernTrefferUndFehlgriff) {
    XBoardSitzung_t s;
    s("new\nhard\nlevel 0 1 0\ntime 6000\nusermove e2e4");
    EXPECT_EQ(s.Uci(), Plus(NeuesSpiel, {"position startpos moves e2e4", "go wtime 60000 btime 60000 winc 0 binc 0"}));
    s.Antwort("e7e5", "g1f3", -20);
    EXPECT_EQ(s.Gui(), Zeilen_t{"move e7e5"});
    Zeilen_t uci = s.Uci();
    ASSERT_EQ(uci.size(), 2u);
    EXPECT_EQ(uci[0], "position startpos moves e2e4 e7e5 g1f3");
    // The clock lost the few milliseconds the answer took.
    std::smatch m;
    ASSERT_TRUE(std::regex_match(uci[1], m, std::regex("go wtime ([0-9]+) btime \\1 winc 0 binc 0 ponder")));
    EXPECT_GE(std::stol(m[1]), 59000);
    EXPECT_LE(std::stol(m[1]), 60000);

    // A ping while pondering is answered after the move.
    s("ping 4\ntime 5900\nusermove g1f3");
    EXPECT_EQ(s.Gui(), Zeilen_t{});
    EXPECT_EQ(s.Uci(), Zeilen_t{"ponderhit"});
    s("?");  // the ponder search is now the search for the move
    EXPECT_EQ(s.Uci(), Zeilen_t{"stop"});
    s.Antwort("b8c6", "f1c4", -10);
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move b8c6", "pong 4"}));
    uci = s.Uci();
    ASSERT_EQ(uci.size(), 2u);
    EXPECT_EQ(uci[0], "position startpos moves e2e4 e7e5 g1f3 b8c6 f1c4");

    // "?" while pondering is ignored; another move than expected stops the ponder search silently.
    s("?\ntime 5800\nusermove d2d4");
    EXPECT_EQ(s.Uci(), Plus(LeiseStop, {"position startpos moves e2e4 e7e5 g1f3 b8c6 d2d4",
                                        "go wtime 58000 btime 58000 winc 0 binc 0"}));
    s.Antwort("e5d4", "f3d4");
    EXPECT_EQ(s.Gui(), Zeilen_t{"move e5d4"});
    EXPECT_EQ(s.Uci().size(), 2u);
    // "easy" ends pondering; a held-back ping is then answered at once.
    s("ping 5\neasy");
    EXPECT_EQ(s.Uci(), LeiseStop);
    EXPECT_EQ(s.Gui(), Zeilen_t{"pong 5"});
    s("ping 6");
    EXPECT_EQ(s.Gui(), Zeilen_t{"pong 6"});
}

TEST(XBoard, ErgebnisseNachDenZuegen) {
    XBoardSitzung_t s;
    s("new\nsetboard 6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1\ngo");
    EXPECT_EQ(s.Uci(), Plus(NeuesSpiel, {"position fen 6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1",
                                         "go wtime 300000 btime 300000 winc 0 binc 0"}));
    s.Antwort("a1a8", "g8h7");
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move a1a8", "1-0 {White mates}"}));
    EXPECT_EQ(s.Uci(), Zeilen_t{});
    s("hint\ngo");  // nothing to think about in a finished game
    EXPECT_EQ(s.Gui(), Zeilen_t{"1-0 {White mates}"});
    EXPECT_EQ(s.Uci(), Zeilen_t{});

    // The opponent's move ends the game: announced, no search.
    s("setboard 6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1\nusermove a1a8");
    EXPECT_EQ(s.Gui(), Zeilen_t{"1-0 {White mates}"});
    EXPECT_EQ(s.Uci(), Zeilen_t{});
    s("setboard 7k/8/6Q1/8/8/8/8/K7 w - - 0 1\nforce\nusermove g6f7");
    EXPECT_EQ(s.Gui(), Zeilen_t{});  // in force mode the GUI keeps the score
    // The engine's move repeats the position a third time.
    s("setboard 7k/8/5Q2/8/8/8/8/K7 b - - 0 1\nusermove h8h7\ngo");
    s.Antwort("f6f5");
    s("usermove h7h8\n");
    s.Antwort("f5f6");
    s("usermove h8h7\n");
    s.Antwort("f6f5");
    s("usermove h7h8\n");
    s.Antwort("f5f6");
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move f6f5", "move f5f6", "move f6f5", "move f5f6", "1/2-1/2 {Draw by repetition}"}));
    s("setboard 4k3/8/8/8/8/8/7r/R3K3 w - - 99 80\ngo");
    s.Antwort("a1a2");
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move a1a2", "1/2-1/2 {Draw by 50 move rule}"}));
    s("setboard 4k3/3Q4/8/8/8/8/8/4K3 b - - 0 1\ngo");
    s.Antwort("e8d7");
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move e8d7", "1/2-1/2 {Insufficient material}"}));
}

TEST(XBoard, RemisangebotUndAufgabe) {
    // The opponent offers a draw in an equal position: accepted with the next move.
    XBoardSitzung_t s;
    s("new");
    const char* zuege[][2] = {{"e2e4", "e7e5"}, {"g1f3", "b8c6"}, {"f1c4", "g8f6"}, {"d2d3", "f8c5"}};
    for (int i = 0; i < 4; ++i) {
        s(std::string(i == 3 ? "draw\n" : "") + "usermove " + zuege[i][0]);
        s.Antwort(zuege[i][1], nullptr, i == 3 ? -20 : 0);
    }
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move e7e5", "move b8c6", "move g8f6", "offer draw", "move f8c5"}));
    // Declined while winning.
    s("draw\nusermove c2c3");
    s.Antwort("d7d6", nullptr, 350);
    EXPECT_EQ(s.Gui(), Zeilen_t{"move d7d6"});

    // Four hopeless searches that do not improve: resign after the fourth move, unless
    // a higher "Resign" value waits longer.
    const char* zuege2[][2] = {{"e2e4", "f7f6"}, {"d2d4", "g7g5"}, {"b1c3", "h7h6"}, {"f1e2", "a7a6"}};
    for (const char* resign : {"700", "900"}) {
        XBoardSitzung_t t;
        t("new");
        t.optionen.SetzeOption((std::string("setoption name Resign value ") + resign).c_str());
        for (int i = 0; i < 4; ++i) {
            t("usermove " + std::string(zuege2[i][0]));
            t.Antwort(zuege2[i][1], "d1h5", -8000 - 100 * i);
        }
        Zeilen_t soll = {"move f7f6", "move g7g5", "move h7h6", "move a7a6"};
        if (std::string(resign) == "700") soll.push_back("resign");
        EXPECT_EQ(t.Gui(), soll) << resign;
    }
}

TEST(XBoard, Analyse) {
    XBoardSitzung_t s;
    s("new\npost\nanalyze");
    EXPECT_EQ(s.Uci(), Plus(NeuesSpiel, {"position startpos", "go infinite"}));
    s("usermove e2e4");
    EXPECT_EQ(s.Uci(), Plus(LeiseStop, {"position startpos moves e2e4", "go infinite"}));
    s("undo");
    EXPECT_EQ(s.Uci(), Plus(LeiseStop, {"position startpos", "go infinite"}));
    // Thinking lines; the first move of a variation is the next line's hint; no move line.
    s.Antwort("e2e4", nullptr, 20);
    s.Antwort("d2d4", nullptr, 499990);
    auto st = std::make_unique<Stellung_t>(s.xboard.Partie().Stellung());
    s.ausgabe.aktuellerZug(*st, LeseKoordinatenZug(*st, "g1f3"), 3, 0);
    s(".");
    const Zeilen_t gui = s.Gui();
    ASSERT_EQ(gui.size(), 3u);
    EXPECT_EQ(gui[0], "5 2 10 1000 e2e4");
    EXPECT_EQ(gui[1], "5 32757 10 1000 (e2e4) d2d4");
    EXPECT_TRUE(std::regex_match(gui[2], std::regex("stat01: [0-9]+ 1000 5 17 20 g1f3"))) << gui[2];
    s("setboard 4k3/8/8/8/8/8/8/4K2R w K - 0 1");
    EXPECT_EQ(s.Uci(), Plus(LeiseStop, {"position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1", "go infinite"}));
    s("exit\nexit");
    EXPECT_EQ(s.Uci(), Plus(LeiseStop, {"setoption name Clear Hash value true"}));
    EXPECT_EQ(s.ausgabe.analyse, 0);
    s("nopost\ngo");
    s.Antwort("h1h8", nullptr, 30);
    EXPECT_EQ(s.Gui(), (Zeilen_t{"move h1h8"}));
}

}  // namespace
