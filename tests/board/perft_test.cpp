// Perft node counts against published numbers and an independent engine's counts,
// the perft table, and the perft/divide command output.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "board/perft.h"
#include "brett_hilfe.h"

using namespace brett_test;

namespace {

struct PerftFall {
    const char* name;
    const char* fen;
    int tiefe;
    uint64_t knoten;
};

void PrintTo(const PerftFall& f, std::ostream* os) { *os << f.fen << " depth " << f.tiefe; }

// Public results; the Chess960 counts come from stockfish with UCI_Chess960.
const PerftFall Bekannte[] = {
    {"Start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 5, 4865609},
    {"Kiwipete", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 4, 4085603},
    {"Position3", "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 6, 11030083},
    {"Position4", "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 5, 15833292},
    {"Position4Gespiegelt", "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1", 5, 15833292},
    {"Position5", "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 4, 2103487},
    {"Position6", "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 4, 3894594},
    // the deep runs, a few seconds each
    {"StartTief", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 6, 119060324},
    {"KiwipeteTief", "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 5, 193690690},
    {"Position5Tief", "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 5, 89941194},
    {"Position6Tief", "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 5, 164075551},
    // en passant that would expose the own king, or give check
    {"IllegalesEp1", "3k4/3p4/8/K1P4r/8/8/8/8 b - - 0 1", 6, 1134888},
    {"IllegalesEp2", "8/8/4k3/8/2p5/8/B2P2K1/8 w - - 0 1", 6, 1015133},
    {"EpGibtSchach", "8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1", 6, 1440467},
    {"KurzeRochadeGibtSchach", "5k2/8/8/8/8/8/8/4K2R w K - 0 1", 6, 661072},
    {"LangeRochadeGibtSchach", "3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", 6, 803711},
    {"Rochaderechte", "r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq - 0 1", 4, 1274206},
    {"RochadeVerhindert", "r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq - 0 1", 4, 1720476},
    {"UmwandlungAusSchach", "2K2r2/4P3/8/8/8/8/8/3k4 w - - 0 1", 6, 3821001},
    {"Abzugsschach", "8/8/1P2K3/8/2n5/1q6/8/5k2 b - - 0 1", 5, 1004658},
    {"UmwandlungMitSchach", "4k3/1P6/8/8/8/8/K7/8 w - - 0 1", 6, 217342},
    {"UnterverwandlungMitSchach", "8/P1k5/K7/8/8/8/8/8 w - - 0 1", 6, 92683},
    {"SelbstPatt", "K1k5/8/P7/8/8/8/8/8 w - - 0 1", 6, 2217},
    {"PattUndMatt", "8/k1P5/8/1K6/8/8/8/8 w - - 0 1", 7, 567584},
    {"DameUndSpringer", "8/8/2k5/5q2/5n2/8/5K2/8 b - - 0 1", 4, 23527},
    // Chess960 middlegames
    {"C960a", "bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9", 5, 8146062},
    {"C960b", "2nnrbkr/p1qppppp/8/1ppb4/6PP/3PP3/PPP2P2/BQNNRBKR w HEhe - 1 9", 5, 16253601},
    {"C960c", "b1q1rrkb/pppppppp/3nn3/8/P7/1PPP4/4PPPP/BQNNRKRB w GE - 1 9", 5, 6417013},
    {"C960d", "qbbnnrkr/2pp2pp/p7/1p2pp2/8/P3PP2/1PPP1KPP/QBBNNR1R w hf - 0 9", 4, 382958},
    {"C960e", "1nbbnrkr/p1p1ppp1/3p4/1p3P1p/3Pq2P/8/PPP1P1P1/QNBBNRKR w HFhf - 0 9", 4, 1171749},
    {"C960f", "qnbnr1kr/ppp1b1pp/4p3/3p1p2/8/2NPP3/PPP1BPPP/QNB1R1KR w HEhe - 1 9", 4, 824055},
    {"C960g", "q1bnrkr1/ppppp2p/2n2p2/4b1p1/2NP4/8/PPP1PPPP/QNB1RRKB w ge - 1 9", 4, 732757},
    {"C960h", "qbn1brkr/ppp1p1p1/2n4p/3p1p2/P7/6PP/QPPPPP2/1BNNBRKR w HFhf - 0 9", 4, 465806},
    {"C960i", "qnnbbrkr/1p2ppp1/2pp3p/p7/1P5P/2NP4/P1P1PPP1/Q1NBBRKR w HFhf - 0 9", 4, 384260},
    {"C960j", "qn1rbbkr/ppp2p1p/1n1pp1p1/8/3P4/P6P/1PP1PPPK/QNNRBB1R w hd - 2 9", 4, 679699},
};

class PerftBekannt : public ::testing::TestWithParam<PerftFall> {};

TEST_P(PerftBekannt, Knotenzahl) {
    const PerftFall& f = GetParam();
    auto b = Aufstellen(f.fen);
    EXPECT_EQ(Perft(*b->st, f.tiefe, 0), f.knoten) << f.fen;
}

INSTANTIATE_TEST_SUITE_P(Stellungen, PerftBekannt, ::testing::ValuesIn(Bekannte),
                         [](const ::testing::TestParamInfo<PerftFall>& i) { return std::string(i.param.name); });

struct Chess960Fall {
    unsigned nummer;
    int tiefe;
    uint64_t knoten;
};

TEST(Perft, Chess960Startstellungen) {
    const Chess960Fall faelle[] = {
        {0, 5, 4975808}, {1, 4, 198393},  {42, 4, 164390},  {100, 4, 201178}, {200, 4, 200496},
        {357, 4, 136775}, {518, 4, 197281}, {731, 4, 202821}, {888, 4, 163799}, {959, 5, 4973573},
    };
    for (const Chess960Fall& f : faelle) {
        Brett b;
        ASSERT_TRUE(Chess960Start(*b.st, f.nummer)) << f.nummer;
        EXPECT_EQ(Perft(*b.st, f.tiefe, 0), f.knoten) << "Chess960 start " << f.nummer;
    }
}

TEST(Perft, TiefeEinsUndZweiAusDerGrundstellung) {
    auto b = Aufstellen(nullptr);
    EXPECT_EQ(Perft(*b->st, 1, 0), 20u);
    EXPECT_EQ(Perft(*b->st, 2, 0), 400u);
    EXPECT_EQ(Perft(*b->st, 3, 0), 8902u);
    EXPECT_EQ(Perft(*b->st, 4, 0), 197281u);
    EXPECT_EQ(Perft(*b->st, 3, 1), 8902u);
}

TEST(Perft, TabelleAendertNichtsAmErgebnis) {
    auto kiwi = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    EXPECT_EQ(Perft(*kiwi->st, 4, 16), 4085603u);
    // One megabyte is small enough that entries get replaced during the run.
    EXPECT_EQ(Perft(*kiwi->st, 4, 1), 4085603u);
    auto start = Aufstellen(nullptr);
    EXPECT_EQ(Perft(*start->st, 5, 16), 4865609u);
    auto p3 = Aufstellen("8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1");
    EXPECT_EQ(Perft(*p3->st, 6, 16), 11030083u);
    auto c960 = Aufstellen("bqnb1rkr/pp3ppp/3ppn2/2p5/5P2/P2P4/NPP1P1PP/BQ1BNRKR w HFhf - 2 9");
    EXPECT_EQ(Perft(*c960->st, 4, 2), 326672u);
}

TEST(Perft, LaesstDieStellungUnveraendert) {
    auto b = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    auto vorher = std::make_unique<Stellung_t>();
    std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
    Perft(*b->st, 3, 1);
    EXPECT_EQ(Unterschied(*vorher, *b->st), "");
}

// --- reference data made by tools/perft-referenz.sh --------------------------

std::filesystem::path Datenordner() { return std::filesystem::path(__FILE__).parent_path() / "data"; }

std::vector<std::vector<std::string>> LeseDaten(const char* name) {
    std::ifstream ein(Datenordner() / name);
    std::vector<std::vector<std::string>> zeilen;
    std::string zeile;
    while (std::getline(ein, zeile)) {
        if (zeile.empty() || zeile[0] == '#') continue;
        std::vector<std::string> felder;
        std::stringstream s(zeile);
        std::string feld;
        while (std::getline(s, feld, ';')) felder.push_back(feld);
        zeilen.push_back(felder);
    }
    return zeilen;
}

TEST(PerftReferenz, StellungenAusEroeffnungenUndPartien) {
    const auto daten = LeseDaten("perft_stellungen.txt");
    ASSERT_GE(daten.size(), 300u) << "missing " << (Datenordner() / "perft_stellungen.txt");
    int fehler = 0;
    for (const auto& d : daten) {
        ASSERT_EQ(d.size(), 3u);
        auto b = Aufstellen(d[0].c_str());
        const uint64_t erwartet = std::stoull(d[2]);
        const uint64_t n = Perft(*b->st, std::stoi(d[1]), 0);
        EXPECT_EQ(n, erwartet) << d[0] << " depth " << d[1];
        if (n != erwartet && ++fehler >= 10) return;
    }
}

TEST(PerftReferenz, AlleChess960Startstellungen) {
    const auto daten = LeseDaten("chess960_start.txt");
    ASSERT_EQ(daten.size(), 960u) << "missing " << (Datenordner() / "chess960_start.txt");
    int fehler = 0;
    for (const auto& d : daten) {
        ASSERT_EQ(d.size(), 4u);
        const unsigned nummer = static_cast<unsigned>(std::stoul(d[0]));
        Brett nachNummer, nachFen;
        ASSERT_TRUE(Chess960Start(*nachNummer.st, nummer)) << nummer;
        ASSERT_TRUE(nachFen.Setze(d[1].c_str())) << d[1];
        for (unsigned s = 0; s < 2; ++s)
            for (unsigned t = 0; t <= Koenig; ++t)
                EXPECT_EQ(nachNummer.st->seite[s].brett[t], nachFen.st->seite[s].brett[t]) << "start " << nummer;
        EXPECT_EQ(nachNummer.st->rochaden, 15) << nummer;
        // Only the king's and rooks' files make a set-up non-standard.
        const std::string weiss = d[1].substr(d[1].rfind('/') + 1, 8);
        const bool standard = weiss[0] == 'R' && weiss[4] == 'K' && weiss[7] == 'R';
        EXPECT_EQ(nachNummer.st->chess960, standard ? 0 : 1) << nummer;
        const uint64_t erwartet = std::stoull(d[3]);
        const uint64_t n = Perft(*nachNummer.st, std::stoi(d[2]), 0);
        EXPECT_EQ(n, erwartet) << "start " << nummer << " " << d[1];
        if (n != erwartet && ++fehler >= 10) return;
    }
}

// --- the perft command -------------------------------------------------------

std::vector<std::string> Befehl(const Stellung_t& st, const char* text) {
    std::vector<std::string> zeilen;
    PerftBefehl(st, text, [&](const std::string& z) {
        // Runs of blanks from the fixed-width number fields count as one.
        std::string s;
        for (char c : z)
            if (!(c == ' ' && !s.empty() && s.back() == ' ')) s += c;
        while (!s.empty() && (s.back() == '\n' || s.back() == '\r' || s.back() == ' ')) s.pop_back();
        zeilen.push_back(s);
    });
    return zeilen;
}

uint64_t Knoten(const std::string& zeile) {
    std::smatch m;
    if (!std::regex_search(zeile, m, std::regex(" nodes (\\d+)$"))) return ~uint64_t{0};
    return std::stoull(m[1]);
}

TEST(PerftBefehl, Ausgabezeile) {
    auto b = Aufstellen(nullptr);
    const auto z = Befehl(*b->st, "depth 3");
    ASSERT_EQ(z.size(), 1u);
    EXPECT_TRUE(std::regex_match(z[0], std::regex("info depth 3 time \\d+ nodes 8902"))) << z[0];
    const auto h = Befehl(*b->st, "Hash 16 depth 4");
    ASSERT_EQ(h.size(), 1u);
    EXPECT_TRUE(std::regex_match(h[0], std::regex("info depth 4 time \\d+ nodes 197281"))) << h[0];
    const auto n = Befehl(*b->st, "depth 0");
    ASSERT_EQ(n.size(), 1u);
    EXPECT_TRUE(std::regex_match(n[0], std::regex("info depth 0 time \\d+ nodes 0"))) << n[0];
}

TEST(PerftBefehl, OhneTiefe) {
    auto b = Aufstellen(nullptr);
    for (const char* text : {"", "depth", "depth x", "Hash 16", "divide"}) {
        const auto z = Befehl(*b->st, text);
        ASSERT_EQ(z.size(), 1u) << '"' << text << '"';
        EXPECT_EQ(z[0], "info string perft without depth") << '"' << text << '"';
    }
}

TEST(PerftBefehl, DivideTiefeEins) {
    auto b = Aufstellen(nullptr);
    const auto z = Befehl(*b->st, "depth 1 divide");
    ASSERT_EQ(z.size(), 21u);
    const std::vector<Zug_t> zuege = Legal(*b->st, *b->d);
    for (size_t i = 0; i < 20; ++i)
        EXPECT_TRUE(std::regex_match(z[i], std::regex("info move " + Text(*b->st, zuege[i]) + " depth 0 time \\d+ nodes 0")))
            << z[i];
    EXPECT_TRUE(std::regex_match(z[20], std::regex("info depth 1 time \\d+ nodes 20"))) << z[20];
}

TEST(PerftBefehl, DivideSummeUndReihenfolge) {
    const char* fen = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
    auto b = Aufstellen(fen);
    for (const char* text : {"divide depth 3", "depth 3 Hash 1 divide"}) {
        const auto z = Befehl(*b->st, text);
        const std::vector<Zug_t> zuege = Legal(*b->st, *b->d);
        ASSERT_EQ(z.size(), zuege.size() + 1) << text;
        uint64_t summe = 0;
        for (size_t i = 0; i < zuege.size(); ++i) {
            const std::regex form("info move " + Text(*b->st, zuege[i]) + " depth 2 time \\d+ nodes \\d+");
            EXPECT_TRUE(std::regex_match(z[i], form)) << z[i];
            // Each line's count is the perft of the position after that move.
            Brett kind;
            std::memcpy(kind.st.get(), b->st.get(), sizeof(Stellung_t));
            Stellungsdaten_t neu;
            Rueckzug_t r = Muell();
            ASSERT_TRUE(ZugLegal(*kind.st, zuege[i], *b->d, neu, r));
            EXPECT_EQ(Knoten(z[i]), Perft(*kind.st, 2, 0)) << z[i];
            summe += Knoten(z[i]);
        }
        EXPECT_EQ(summe, 97862u);
        EXPECT_TRUE(std::regex_match(z.back(), std::regex("info depth 3 time \\d+ nodes 97862"))) << z.back();
    }
}

TEST(PerftBefehl, Chess960RochadeImDivide) {
    // Castling is printed as the position's convention asks.
    auto x = Aufstellen("1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w KQkq - 0 1");
    const auto z = Befehl(*x->st, "depth 1 divide");
    ASSERT_FALSE(z.empty());
    EXPECT_TRUE(std::regex_match(z[z.size() - 3], std::regex("info move O-O depth 0 time \\d+ nodes 0"))) << z[z.size() - 3];
    EXPECT_TRUE(std::regex_match(z[z.size() - 2], std::regex("info move O-O-O depth 0 time \\d+ nodes 0")))
        << z[z.size() - 2];
    auto s = Aufstellen("1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1");
    const auto zs = Befehl(*s->st, "depth 2 divide");
    ASSERT_GE(zs.size(), 3u);
    EXPECT_EQ(zs[zs.size() - 3].substr(0, 15), "info move f1g1 ");
    EXPECT_EQ(zs[zs.size() - 2].substr(0, 15), "info move f1b1 ");
}

}  // namespace
