// The bitbase switches of the command line and the "bitbase probe fen" command.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "../protocol/protokoll_hilfen.h"
#include "bitbase/index.h"
#include "erzeugung_hilfe.h"
#include "protocol/uci.h"
#include "timing/zeitkontrolle.h"

namespace {

bool Enthaelt(const std::vector<std::string>& zeilen, const std::string& teil) {
    for (const std::string& z : zeilen)
        if (z.find(teil) != std::string::npos) return true;
    return false;
}

std::string Index(const std::vector<int>& wt, const std::vector<int>& st, const std::vector<int>& wf,
                  const std::vector<int>& sf, int amZug) {
    Bitbase_t b;
    EXPECT_TRUE(b.SetzeSteine(wt.data(), st.data(), wf.data(), sf.data(), amZug, 0));
    return std::to_string(b.Index());
}

TEST(BitbaseWerkzeug, Kommandozeile) {
    erzeugung_test::Verzeichnis_t v("werkzeug");
    Lauf_t lauf = Starte("", {"--CreateBitbase", v / "KDK"});
    EXPECT_EQ(lauf.status, 0);
    EXPECT_TRUE(lauf.fehler.empty());
    ASSERT_GE(lauf.aus.size(), 4u);
    EXPECT_EQ(lauf.aus[0].rfind("info string Bitbase KK: 1280 Positionen", 0), 0u) << lauf.aus[0];
    EXPECT_TRUE(Enthaelt(lauf.aus, "info string Bitbase KDK: 81920 Positionen, 46137 legal, Weiss gewinnt 43241, "
                                   "Schwarz gewinnt 0, 21 Durchlaeufe, 1 Threads"));
    for (const char* name : {"KK", "KDK", "KKD"}) EXPECT_TRUE(std::filesystem::exists(BitbaseDatei(v.pfad, name)));

    lauf = Starte("", {"--CreateBitbase", "Threads=2", v / "KSK"});
    EXPECT_TRUE(Enthaelt(lauf.aus, "info string Bitbase KSK: 81920 Positionen, 53806 legal, Weiss gewinnt 0, "
                                   "Schwarz gewinnt 0, 1 Durchlaeufe, 2 Threads"));
    EXPECT_FALSE(Enthaelt(lauf.aus, "Bitbase KK:"));  // already there
    lauf = Starte("", {"--CreateBitbaseParallel", v / "KLK"});
    EXPECT_TRUE(Enthaelt(lauf.aus, "8 Threads"));
    lauf = Starte("", {"--CheckBitbase", v / "KDK"});
    EXPECT_TRUE(Enthaelt(lauf.aus, "info string Pruefung KDK: 46137 Positionen, 0 Fehler"));

    EXPECT_EQ(Starte("", {"--CreateBitbase", "KXK"}).aus,
              std::vector<std::string>{"info string Bitbase KXK: keine Signatur (K, Steine aus DTLSB, K, Steine)"});
    EXPECT_EQ(Starte("", {"--CreateBitbase", "KSDK"}).aus,
              std::vector<std::string>{"info string Bitbase KSDK: Steine nach fallendem Wert ordnen (KDSK)"});
    EXPECT_EQ(Starte("", {"--CreateBitbase", "KDDDKD"}).aus,
              std::vector<std::string>{"info string Bitbase KDDDKD: mehr als fuenf Steine werden nicht erzeugt"});
    // Three arguments without "Threads=": no tool, every argument reported, the engine runs.
    lauf = Starte("", {"--CreateBitbase", "x", v / "KTK"});
    EXPECT_EQ(lauf.status, 0);
    EXPECT_NE(lauf.fehler.find("illegal command line argument argv[1] = \"--CreateBitbase\""), std::string::npos);
    EXPECT_NE(lauf.fehler.find("illegal command line argument argv[3]"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(BitbaseDatei(v.pfad, "KTK")));
}

TEST(BitbaseWerkzeug, ProbeBefehl) {
    const std::string pfad = erzeugung_test::KleineBitbasen();
    using erzeugung_test::F;
    const std::string kopf = "uci\nsetoption name BitbaseCache value 1\nsetoption name BitbasePath value " + pfad + "\n";
    const Lauf_t lauf = Starte(kopf +
                               "bitbase probe fen 8/8/8/8/8/2k5/1Q6/7K w - - 0 1\n"
                               "bitbase probe fen 8/8/8/8/8/2k5/1Q6/7K b - - 0 1\n"
                               "bitbase probe fen 7K/8/8/8/8/8/1q6/k7 w - - 0 1\n"
                               "bitbase   probe   fen   8/8/8/8/8/2k5/rQ6/7K b - - 0 1\n"
                               "quit\n");
    const std::vector<std::string> soll = {
        "info string bitbase KDK index " + Index({6, 5, 0}, {6, 0}, {F("h1"), F("b2"), 0}, {F("c3"), 0}, 0) +
            " bit 1 result 1",
        "info string bitbase KDK index " + Index({6, 5, 0}, {6, 0}, {F("h1"), F("b2"), 0}, {F("c3"), 0}, 1) +
            " bit 0 result 0",
        "info string bitbase KKD index " + Index({6, 0}, {6, 5, 0}, {F("h8"), 0}, {F("a1"), F("b2"), 0}, 0) +
            " bit 0 result -1",
        "info string bitbase KDKT index " + Index({6, 5, 0}, {6, 4, 0}, {F("h1"), F("b2"), 0}, {F("c3"), F("a2"), 0}, 1) +
            " bit -1 result unknown",  // not in the directory
    };
    EXPECT_EQ(lauf.aus, Plus(Handshake, soll));

    // Without cache memory nothing is looked up.
    const Lauf_t ohne = Starte("uci\nsetoption name BitbasePath value " + pfad +
                               "\nbitbase probe fen 8/8/8/8/8/2k5/1Q6/7K w - - 0 1\nquit\n");
    EXPECT_EQ(ohne.aus.back(), "info string bitbase KDK index " +
                                   Index({6, 5, 0}, {6, 0}, {F("h1"), F("b2"), 0}, {F("c3"), 0}, 0) +
                                   " bit -1 result unknown");
}

// Bad input goes to the error slot, as "position" reports it (silent under UCI).
TEST(BitbaseWerkzeug, ProbeFehler) {
    std::ostringstream verworfen;
    Fehlermitschrift_t ausgabe(verworfen);
    Zeitkontrolle_t zk;
    UciInterface_t uci(Optionstabelle, &zk, &ausgabe);
    uci.befehl("bitbase");
    uci.befehl("bitbase probe");
    uci.befehl("bitbase probe fen xyz/8 w - - 0 1");
    uci.befehl("bitbase probe fen r3k3/8/8/8/8/8/8/4K3 b q - 0 1");
    uci.befehl("bitbase probe fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1");
    EXPECT_EQ(ausgabe.text,
              "'bitbase' without 'probe fen'|'bitbase' without 'probe fen'|"
              "bitbase: Illegal FEN string: xyz/8 w - - 0 1|"
              "bitbase: no bitbase for this position: r3k3/8/8/8/8/8/8/4K3 b q - 0 1|"
              "bitbase: no bitbase for this position: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1|");
    EXPECT_EQ(verworfen.str().find("bitbase"), std::string::npos);
}

}  // namespace
