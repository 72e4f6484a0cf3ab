#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>
#include <tuple>
#include <utility>

#include "timing/zeitlog.h"
#include "timing/zeittrainer.h"
#include "../test_dateien.h"

namespace {

// Searches of 8 iterations whose best move settles at a random one; until then
// it changes each time, which the unrest input reports.
std::string SynthetischesLog(int suchen) {
    std::mt19937 zufall(3);
    std::string log = "# synthetic\n";
    for (int s = 0; s < suchen; ++s) {
        const uint32_t fest = zufall() % 8;
        double unruhe = 0.0;
        for (uint32_t k = 0; k < 8; ++k) {
            Iterationsdaten_t d;
            d.start = s;
            d.tiefenindex = static_cast<int32_t>(k);
            d.besterZug = k < fest ? 200 + k : 100;
            d.besterZugGewechselt = k < fest;
            unruhe = unruhe / 2 + (k < fest ? 1.0 : 0.0);
            d.unruhe = unruhe;
            log += ZeitlogZeile(d) + "\n";
        }
    }
    return log;
}

struct Befehl {
    std::unique_ptr<Zeittrainer_t> trainer;
    std::vector<std::string> zeilen;
    void operator()(const std::string& rest) {
        ZeitBefehl(trainer, rest.c_str(), [this](const std::string& z) { zeilen.push_back(z); });
    }
};

}  // namespace

TEST(Zeittrainer, ZieleAusDemLog) {
    // A search is labelled by the move of its last line. Start 43 begins a second
    // search; 43 again with a depth index that does not rise, a third. Foreign lines
    // and CR LF line ends, as logs copied from Windows have, must not disturb this.
    constexpr double R = Zeittrainer_t::ZielRuhig, U = Zeittrainer_t::ZielUnruhig;
    const std::tuple<int64_t, int32_t, uint32_t, double> zeilen[] = {
        {42, 0, 5, R}, {42, 1, 5, R}, {42, 2, 7, U}, {42, 3, 7, U}, {42, 4, 5, R}, {43, 0, 1, U}, {43, 1, 2, R},
        {43, 0, 9, R}};
    std::string log = "garbage\n";
    for (auto [start, k, zug, ziel] : zeilen) {
        Iterationsdaten_t d;
        std::tie(d.start, d.tiefenindex, d.besterZug) = std::tie(start, k, zug);
        log += ZeitlogZeile(d) + "\r\n";
    }
    std::istringstream ein(log);
    const auto b = Zeittrainer_t::BeispieleAusLog(ein);
    ASSERT_EQ(b.size(), std::size(zeilen));
    for (size_t i = 0; i < b.size(); ++i) EXPECT_EQ(b[i].ziel, std::get<3>(zeilen[i])) << i;
}

TEST(Zeittrainer, LerntUndSpeichert) {
    TempDatei log(".log"), netz(".txt");
    log.schreiben(SynthetischesLog(60));
    Befehl zeit;
    zeit(" init 5");
    zeit(" add " + log.name);
    // " learn 0" makes no pass: the untrained error comes first.
    double vorher = 1e9;
    for (const char* befehl : {" learn 0", " learn 1", " learn 9", " learn 60"}) {
        zeit(befehl);
        const std::string kopf = "info string Mittlerer Fehler ";
        ASSERT_EQ(zeit.zeilen.back().rfind(kopf, 0), 0u) << zeit.zeilen.back();
        const double fehler = std::atof(zeit.zeilen.back().c_str() + kopf.size());
        EXPECT_LT(fehler, vorher) << befehl;
        vorher = fehler;
    }
    zeit(" write " + netz.name);
    std::array<double, 16> x{};
    x[0] = 1.0;
    x[8] = 0.4;
    const double ausgabe = zeit.trainer->netz().bewerten(x);
    zeit(" init 2");
    zeit(" read " + netz.name);
    EXPECT_EQ(zeit.trainer->netz().bewerten(x), ausgabe);
    EXPECT_EQ(zeit.zeilen.size(), 4u);  // add, write and read went through silently
}

TEST(Zeittrainer, PasstDieSkalierungAn) {
    // The weights stay as they are; the scaling of the inputs moves, and the error falls.
    TempDatei log(".log");
    log.schreiben(SynthetischesLog(60));
    Befehl zeit;
    zeit(" add " + log.name);
    const Zeiteingaben_t x = ZeitEingaben(Zeitfiguren_t{1.0, 0.5});
    const double vorher = zeit.trainer->netz().bewerten(x);
    zeit(" fit 300");
    ASSERT_EQ(zeit.zeilen.size(), 1u + ZeitFigurenAnzahl);
    double fehler = 0, davor = 0;
    ASSERT_EQ(std::sscanf(zeit.zeilen[0].c_str(), "info string Mittlerer Fehler %lf (before %lf)", &fehler, &davor), 2)
        << zeit.zeilen[0];
    EXPECT_LT(fehler, 0.8 * davor);
    EXPECT_EQ(zeit.trainer->netz().bewerten(x), vorher);
    // The reported scaling is the trainer's, in input order.
    const Zeitskalierung_t& s = zeit.trainer->skalierung();
    char soll[96];
    std::snprintf(soll, sizeof soll, "info string input 1 scale %.4f offset %.4f", s.faktor[1], s.versatz[1]);
    EXPECT_EQ(zeit.zeilen[2], soll);
    EXPECT_NE(s.faktor[1], ZeitskalierungStandard.faktor[1]);
}

TEST(ZeitBefehl, Meldungen) {
    const std::string weg = "/nonexistent-directory-for-kelvaran/x";
    TempDatei fremd(".txt");
    fremd.schreiben("11 3 0 1 1 1 2 1 0 0 1 0 0.5\n");  // a sound network, but not 16 inputs
    const std::pair<std::string, std::string> faelle[] = {
        {" learn", "info string nothing to learn"},
        {" fit", "info string nothing to learn"},
        {" write " + weg, "info string error writing file: " + weg},  // no trainer yet
        {" add " + weg, "info string file not found:" + weg},
        {" learn 10", "info string nothing to learn"},
        {" read " + weg, "info string error reading file: " + weg},
        {" read " + fremd.name, "info string error reading file: " + fremd.name},
        {" write " + weg + " \t", "info string error writing file: " + weg},  // trailing blanks dropped
    };
    Befehl zeit;
    for (const auto& [befehl, meldung] : faelle) {
        zeit.zeilen.clear();
        zeit(befehl);
        EXPECT_EQ(zeit.zeilen, std::vector<std::string>{meldung}) << befehl;
    }
}

TEST(ZeitBefehl, Loeschen) {
    Befehl zeit;
    // " delete" only as a word, but looked for before every other subcommand.
    for (auto [befehl, da] : {std::pair{" init", true}, {" deleted", true}, {" delete", false}, {" init", true},
                              {" learn delete", false}, {" delete", false}}) {
        zeit(befehl);
        EXPECT_EQ(zeit.trainer != nullptr, da) << befehl;
    }
    EXPECT_TRUE(zeit.zeilen.empty());
}
