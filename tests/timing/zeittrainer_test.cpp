#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "timing/zeitlog.h"
#include "timing/zeittrainer.h"
#include "zeit_hilfe.h"

namespace {

// A log of searches of 8 iterations whose best move settles at a random
// iteration; while it is unsettled the best move gets a small share of the
// nodes, so the inputs carry what the target needs.
std::string SynthetischesLog(int suchen, unsigned saat) {
    std::mt19937 zufall(saat);
    std::string log = "# synthetic\n";
    for (int s = 0; s < suchen; ++s) {
        const int wechsel = static_cast<int>(zufall() % 8);
        int wechselBisher = 0;
        for (int k = 0; k < 8; ++k) {
            Iterationsdaten_t d;
            d.start = 1000000 + s;
            d.tiefenindex = k;
            d.verstrichen = 10 * (1 << k);
            d.ziel = 2000;
            d.knoten = 1000LL << k;
            d.knotenIteration = d.knoten / 2;
            const bool ruhig = k >= wechsel;
            d.knotenBesterZug = d.knotenIteration * (ruhig ? 85 : 30 + static_cast<int>(zufall() % 20)) / 100;
            d.besterZug = ruhig ? 100u : 200u + static_cast<uint32_t>(k % 2);
            d.besterZugGewechselt = k >= 2 && (k == wechsel || !ruhig);
            if (d.besterZugGewechselt) ++wechselBisher;
            d.wechselAnzahl = wechselBisher;
            d.wertung = static_cast<int32_t>(zufall() % 400) - 200;
            d.vorherigeWertung = d.wertung + (ruhig ? 0 : static_cast<int32_t>(zufall() % 300) - 150);
            d.wurzelzuege = 20 + static_cast<int32_t>(zufall() % 20);
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
    std::string letzte() const { return zeilen.empty() ? std::string() : zeilen.back(); }
};

double Fehler(const std::string& zeile) {
    const std::string kopf = "info string Mittlerer Fehler ";
    EXPECT_EQ(zeile.rfind(kopf, 0), 0u) << zeile;
    return std::atof(zeile.c_str() + kopf.size());
}

}  // namespace

// ---------------------------------------------------------------- targets

TEST(ZeittrainerZiele, AusDemLog) {
    Iterationsdaten_t d;
    std::string log;
    const uint32_t zuege[] = {5, 5, 7, 7, 5};  // the search ends on move 5
    for (int k = 0; k < 5; ++k) {
        d.start = 42;
        d.tiefenindex = k;
        d.besterZug = zuege[k];
        log += ZeitlogZeile(d) + "\n";
    }
    // A second search with its own start; then a third one with the same start, depth restarting.
    for (int k = 0; k < 2; ++k) {
        d.start = 43;
        d.tiefenindex = k;
        d.besterZug = k == 0 ? 1 : 2;
        log += ZeitlogZeile(d) + "\r\n";
    }
    log += "garbage line\n";
    d.tiefenindex = 0;
    d.besterZug = 9;
    log += ZeitlogZeile(d) + "\n";
    std::istringstream ein(log);
    const auto b = Zeittrainer_t::BeispieleAusLog(ein);
    ASSERT_EQ(b.size(), 8u);
    const double R = Zeittrainer_t::ZielRuhig, U = Zeittrainer_t::ZielUnruhig;
    const double erwartet[] = {R, R, U, U, R, U, R, R};
    for (size_t i = 0; i < b.size(); ++i) EXPECT_EQ(b[i].ziel, erwartet[i]) << i;
}

// ---------------------------------------------------------------- learning

TEST(ZeittrainerLernen, FehlerSinkt) {
    std::istringstream ein(SynthetischesLog(60, 3));
    Zeittrainer_t trainer;
    trainer.neuesNetz(5);
    ASSERT_EQ(trainer.hinzufuegen(ein), 480u);
    const double anfang = trainer.mittlererFehler();
    const double nachEinem = trainer.lernen(1);
    const double nachZehn = trainer.lernen(9);
    const double nachVielen = trainer.lernen(60);
    EXPECT_LT(nachEinem, anfang);
    EXPECT_LT(nachZehn, nachEinem);
    EXPECT_LT(nachVielen, nachZehn);
    // Far better than always answering the mean target.
    double mittel = 0.0;
    std::istringstream nochmal(SynthetischesLog(60, 3));
    const auto b = Zeittrainer_t::BeispieleAusLog(nochmal);
    for (const auto& x : b) mittel += x.ziel;
    mittel /= static_cast<double>(b.size());
    double streuung = 0.0;
    for (const auto& x : b) streuung += (x.ziel - mittel) * (x.ziel - mittel);
    streuung /= static_cast<double>(b.size());
    EXPECT_LT(nachVielen, 0.3 * streuung);
}

TEST(ZeittrainerLernen, EingebautesNetzLaesstSichVerfeinern) {
    std::istringstream ein(SynthetischesLog(30, 5));
    Zeittrainer_t trainer;
    trainer.hinzufuegen(ein);
    const double anfang = trainer.mittlererFehler();
    EXPECT_LT(trainer.lernen(20), anfang);
}

TEST(ZeittrainerLernen, WiederholbarBeiGleichenDaten) {
    const std::string log = SynthetischesLog(10, 9);
    double fehler[2];
    for (double& f : fehler) {
        std::istringstream ein(log);
        Zeittrainer_t trainer;
        trainer.neuesNetz(4);
        trainer.hinzufuegen(ein);
        f = trainer.lernen(5);
    }
    EXPECT_EQ(fehler[0], fehler[1]);
}

// ---------------------------------------------------------------- the "time" command

TEST(ZeitBefehl, NichtsZuLernen) {
    Befehl zeit;
    zeit(" learn");
    EXPECT_EQ(zeit.letzte(), "info string nothing to learn");
    EXPECT_FALSE(zeit.trainer);
    zeit(" init");
    ASSERT_TRUE(zeit.trainer);
    zeit(" learn 10");
    EXPECT_EQ(zeit.letzte(), "info string nothing to learn");
    EXPECT_EQ(zeit.zeilen.size(), 2u);
}

TEST(ZeitBefehl, DateiFehlt) {
    Befehl zeit;
    zeit(" add /nonexistent-directory-for-kelvaran/zeit.log");
    EXPECT_EQ(zeit.letzte(), "info string file not found:/nonexistent-directory-for-kelvaran/zeit.log");
    EXPECT_TRUE(zeit.trainer);  // created all the same
}

TEST(ZeitBefehl, LesenUndSchreibenFehler) {
    Befehl zeit;
    zeit(" write /nonexistent-directory-for-kelvaran/netz.txt");
    EXPECT_EQ(zeit.letzte(), "info string error writing file: /nonexistent-directory-for-kelvaran/netz.txt");
    zeit(" read /nonexistent-directory-for-kelvaran/netz.txt");
    EXPECT_EQ(zeit.letzte(), "info string error reading file: /nonexistent-directory-for-kelvaran/netz.txt");
    zeit(" write /nonexistent-directory-for-kelvaran/netz.txt");
    EXPECT_EQ(zeit.letzte(), "info string error writing file: /nonexistent-directory-for-kelvaran/netz.txt");

    TempDatei kaputt(".txt");
    kaputt.schreiben("9 2 0 2 1 1 0 0 1 0 0.5\n");  // two layers
    zeit(" read " + kaputt.name());
    EXPECT_EQ(zeit.letzte(), "info string error reading file: " + kaputt.name());
    // A valid network of the wrong shape for the time network.
    kaputt.schreiben("11 3 0 1 1 1 2 1 0 0 1 0 0.5\n");
    zeit(" read " + kaputt.name());
    EXPECT_EQ(zeit.letzte(), "info string error reading file: " + kaputt.name());
    EXPECT_EQ(zeit.zeilen.size(), 5u);
}

TEST(ZeitBefehl, SchreibenUndLesen) {
    TempDatei datei(".txt");
    Befehl zeit;
    zeit(" init 3");
    zeit(" write " + datei.name() + "  \t ");  // trailing white space is not part of the name
    EXPECT_TRUE(zeit.zeilen.empty()) << zeit.letzte();
    std::istringstream ein(datei.lesen());
    long long n = 0;
    ein >> n;
    EXPECT_EQ(n, 1 + 6 + (16 * 3 + 3) * 4);

    // The built-in network written by a fresh trainer reads back to the same outputs.
    Befehl andere;
    andere(" add /nonexistent-directory-for-kelvaran/x");
    andere.zeilen.clear();
    andere(" write " + datei.name());
    EXPECT_TRUE(andere.zeilen.empty());
    zeit(" read " + datei.name());
    EXPECT_TRUE(zeit.zeilen.empty()) << zeit.letzte();
    Zeitnetz_t eingebaut;
    std::array<double, 16> x{};
    for (size_t i = 0; i < x.size(); ++i) x[i] = 0.1 * static_cast<double>(i) - 0.7;
    EXPECT_EQ(zeit.trainer->netz().bewerten(x), eingebaut.bewerten(x));
}

TEST(ZeitBefehl, LernenUeberDenBefehl) {
    TempDatei log(".log");
    log.schreiben(SynthetischesLog(40, 11));
    TempDatei netz(".txt");
    Befehl zeit;
    zeit(" init 6");
    zeit(" add " + log.name());
    EXPECT_TRUE(zeit.zeilen.empty()) << zeit.letzte();
    zeit(" learn 1");
    const double erst = Fehler(zeit.letzte());
    zeit(" learn 40");
    const double dann = Fehler(zeit.letzte());
    EXPECT_LT(dann, erst);
    zeit(" learn 0");  // no pass: just the error again
    EXPECT_NEAR(Fehler(zeit.letzte()), dann, 1e-6);
    // Saved and loaded again, the network answers the same.
    zeit(" write " + netz.name());
    std::array<double, 16> x{};
    x[0] = 1.0;
    x[8] = 0.4;
    const double vorher = zeit.trainer->netz().bewerten(x);
    zeit(" init 2");
    zeit(" read " + netz.name());
    EXPECT_EQ(zeit.trainer->netz().bewerten(x), vorher);
    EXPECT_EQ(zeit.zeilen.size(), 3u);
}

TEST(ZeitBefehl, Loeschen) {
    Befehl zeit;
    zeit(" init");
    ASSERT_TRUE(zeit.trainer);
    zeit(" deleted");  // not the word " delete"
    EXPECT_TRUE(zeit.trainer);
    zeit(" delete");
    EXPECT_FALSE(zeit.trainer);
    zeit(" init");
    zeit(" delete now");
    EXPECT_FALSE(zeit.trainer);
    zeit(" delete");  // nothing to destroy
    EXPECT_FALSE(zeit.trainer);
    EXPECT_TRUE(zeit.zeilen.empty());
}

TEST(ZeitBefehl, ReihenfolgeDerSuche) {
    Befehl zeit;
    // " delete" is looked for first, wherever it stands.
    zeit(" init");
    zeit(" learn delete");
    EXPECT_FALSE(zeit.trainer);
    EXPECT_TRUE(zeit.zeilen.empty());
    // " add " comes before " read ": the rest is the file name.
    zeit(" add /nonexistent-directory-for-kelvaran/read me");
    EXPECT_EQ(zeit.letzte(), "info string file not found:/nonexistent-directory-for-kelvaran/read me");
    // Unknown or empty subcommands do nothing.
    zeit("");
    zeit(" help");
    ZeitBefehl(zeit.trainer, nullptr, [&zeit](const std::string& z) { zeit.zeilen.push_back(z); });
    EXPECT_EQ(zeit.zeilen.size(), 1u);
}

TEST(ZeitBefehl, LangeDateinamenWerdenGekuerzt) {
    Befehl zeit;
    const std::string name = "/nonexistent-directory-for-kelvaran/" + std::string(1100, 'a');
    zeit(" add " + name);
    EXPECT_EQ(zeit.letzte(), "info string file not found:" + name.substr(0, 1024));
}

TEST(ZeitBefehl, InitMitAnzahl) {
    Befehl zeit;
    zeit(" init 9");
    ASSERT_TRUE(zeit.trainer);
    ASSERT_EQ(zeit.trainer->netz().innenschichten().size(), 1u);
    EXPECT_EQ(zeit.trainer->netz().innenschichten()[0].size(), 9u);
    zeit(" init");
    EXPECT_EQ(zeit.trainer->netz().innenschichten()[0].size(), 5u);
    zeit(" init 0");
    EXPECT_EQ(zeit.trainer->netz().innenschichten()[0].size(), 1u);
    zeit(" init 99999999999999999999");
    EXPECT_EQ(zeit.trainer->netz().innenschichten()[0].size(),
              static_cast<size_t>(Zeittrainer_t::MaxInnenKnoten));
    // A fresh network is all zeros until it learns.
    for (const auto& k : zeit.trainer->netz().eingabeschicht())
        for (const auto& v : k.verbindungen) EXPECT_EQ(v.gewicht, 0.0);
}
