// The network trainer on a few hundred positions: its gradient agrees with finite
// differences, training lowers the loss, and the written network, run through the
// engine's own evaluation, scores like the float network it came from.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "../test_dateien.h"

#include "netz/datensatz.h"
#include "netz/generator.h"
#include "netz/trainer.h"

namespace {

// A few self-play games at 200 nodes a move, made once per test process.
struct Spiele_t {
    test_dateien::Verzeichnis_t ordner{"netztrainer"};
    std::string datei = ordner / "daten.bin";
    std::vector<Datensatz_t> saetze;
    Spiele_t() {
        std::ofstream(ordner / "start.epd") << "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -\n"
                                               "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq -\n";
        Generatorauftrag_t a;
        a.datei = datei;
        a.eroeffnungen = {ordner / "start.epd"};
        a.spiele = 8;
        a.knoten = 200;
        a.threads = 2;
        a.zufallsPlies = 6;
        a.hashMb = 1;
        std::ostringstream bericht;
        EXPECT_EQ(ErzeugeDaten(a, bericht), 0) << bericht.str();
        std::ifstream ein(datei, std::ios::binary);
        Datensatz_t d;
        while (ein.read(reinterpret_cast<char*>(&d), sizeof d)) saetze.push_back(d);
    }
};
const Spiele_t& Spiele() {
    static Spiele_t spiele;
    return spiele;
}

TEST(NetzTrainer, GradientWieDifferenzen) {
    const auto& saetze = Spiele().saetze;
    ASSERT_GT(saetze.size(), 200u);
    std::vector<float> netz = NeuesGleitnetz(11);
    std::mt19937 zufall(5);
    int verglichen = 0, knicke = 0;
    for (int n = 0; n < 12; ++n) {
        const Datensatz_t& d = saetze[zufall() % saetze.size()];
        const std::vector<float> g = GleitGradient(netz, d);
        // Every weight the position moves, a sample of each kind (inputs, biases, outputs).
        std::vector<size_t> bewegt;
        for (size_t i = 0; i < g.size(); ++i)
            if (g[i] != 0.0f) bewegt.push_back(i);
        ASSERT_GT(bewegt.size(), 1000u);
        for (int k = 0; k < 25; ++k) {
            const size_t i = k < 2 ? g.size() - 1 - k : bewegt[zufall() % bewegt.size()];
            const float alt = netz[i], h = 0.01f;
            const double mitte = GleitWert(netz, d);
            netz[i] = alt + h;
            const double plus = (GleitWert(netz, d) - mitte) / h;
            netz[i] = alt - h;
            const double minus = (mitte - GleitWert(netz, d)) / h;
            netz[i] = alt;
            // A hidden node clipped within the step has no single slope there.
            if (std::abs(plus - minus) > 0.02 * std::abs(plus) + 0.5) {
                ++knicke;
                continue;
            }
            EXPECT_NEAR(g[i], (plus + minus) / 2, 0.02 * std::abs(plus) + 0.5) << "weight " << i;
            ++verglichen;
        }
    }
    EXPECT_GT(verglichen, 270);
    EXPECT_EQ(verglichen + knicke, 300);
}

TEST(NetzTrainer, LerntUndQuantisiertTreu) {
    const Spiele_t& spiele = Spiele();
    Trainerauftrag_t a;
    a.ausgabe = spiele.ordner / "netz.knn";
    a.daten = {spiele.datei};
    a.epochen = 6;
    a.stapel = 32;
    a.lernrate = 0.003;
    a.pruefAnteil = 0.3;
    std::ostringstream bericht;
    Trainerergebnis_t e;
    ASSERT_EQ(Trainiere(a, bericht, &e), 0) << bericht.str();
    EXPECT_NE(bericht.str().find("info string epoch 6 "), std::string::npos) << bericht.str();
    EXPECT_GT(e.k, 200);
    EXPECT_LT(e.trainingsFehler[1], 0.9 * e.trainingsFehler[0]);
    // Integer weights and the evaluation's rounding to odd multiples of 8 cost a few units.
    EXPECT_LT(e.mittlereAbweichung, 15.0);
    EXPECT_LT(e.groessteAbweichung, 80);
    EXPECT_NEAR(e.quantisiertFehler, e.gleitFehler, 0.002);
    std::string fehler;
    EXPECT_NE(LadeNetzDatei(a.ausgabe, fehler), nullptr) << fehler;

    // Going on from the written network starts where the engine's scores left off.
    Trainerauftrag_t weiter = a;
    weiter.start = a.ausgabe;
    weiter.ausgabe = spiele.ordner / "weiter.knn";
    weiter.epochen = 0;
    Trainerergebnis_t w;
    ASSERT_EQ(Trainiere(weiter, bericht, &w), 0) << bericht.str();
    EXPECT_NEAR(w.ersterFehler, e.quantisiertFehler, 0.0005);
    weiter.start = spiele.ordner / "missing.knn";
    EXPECT_EQ(Trainiere(weiter, bericht), 1);
    EXPECT_NE(bericht.str().find("cannot open"), std::string::npos);

    // Nothing to learn from: refused with a report.
    a.daten = {spiele.ordner / "missing.bin"};
    EXPECT_EQ(Trainiere(a, bericht), 1);
    std::ofstream(spiele.ordner / "kaputt.bin", std::ios::binary) << std::string(64, '\xff');
    a.daten = {spiele.ordner / "kaputt.bin"};
    a.pruefAnteil = 0.5;
    EXPECT_EQ(Trainiere(a, bericht), 1);
    EXPECT_NE(bericht.str().find("records are not positions"), std::string::npos);
}

}  // namespace
