#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <sstream>
#include <string>

#include "timing/neuronetz.h"

namespace {

bool Lies(NeuroNetz_t& netz, const std::string& text) {
    std::istringstream ein(text);
    return netz.lesen(ein);
}

double Rechne(NeuroNetz_t& netz, std::initializer_list<double> eingaben) {
    netz.summenLoeschen();
    int i = 0;
    for (double x : eingaben) netz.eingeben(i++, x);
    netz.rechnen();
    return netz.ausgabe();
}

// 2 inputs (x and the bias), 1 hidden, 1 output; bias also feeds the output.
// Structure: 3 layers, 3 pairs, 4 connections: 1 + 6 + 16 = 23 integers.
const char* const EinKnotenNetz =
    "23\n"
    "3 0 2 1 1 2 1\n"
    "0 0 1 0\n0 1 1 0\n0 1 2 0\n1 0 2 0\n"
    "%W1 %B1 %B2\n"
    "%W2\n";

std::string EinKnoten(double w1, double b1, double b2, double w2) {
    std::string t = EinKnotenNetz;
    auto ersetze = [&t](const std::string& platz, double x) {
        std::ostringstream s;
        s.precision(17);
        s << x;
        t.replace(t.find(platz), platz.size(), s.str());
    };
    ersetze("%W1", w1);
    ersetze("%B1", b1);
    ersetze("%B2", b2);
    ersetze("%W2", w2);
    return t;
}

}  // namespace

// ---------------------------------------------------------------- the grammar

TEST(NeuroNetzLesen, EinfachesNetzWirdGelesen) {
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(0.5, 0.25, 0.0, 2.0)));
    EXPECT_TRUE(netz.brauchbar());
    EXPECT_EQ(netz.anzahlEingaben(), 2);
    EXPECT_EQ(netz.anzahlAusgaben(), 1);
    ASSERT_EQ(netz.innenschichten().size(), 1u);
    EXPECT_EQ(netz.innenschichten()[0].size(), 1u);
}

TEST(NeuroNetzLesen, ZweiSchichtenAbgelehnt) {
    NeuroNetz_t netz;
    // Structure: 2 layers, 2 pairs, one connection = 9 integers.
    EXPECT_FALSE(Lies(netz, "9\n2 0 2 1 1\n0 0 1 0\n0.5\n"));
    EXPECT_FALSE(netz.brauchbar());
}

TEST(NeuroNetzLesen, StrukturzahlEinsZuGrossAbgelehnt) {
    NeuroNetz_t netz;
    std::string text = EinKnoten(0.5, 0.25, 0.1, 2.0);
    ASSERT_TRUE(Lies(netz, text));
    text.replace(0, 2, "24");
    EXPECT_FALSE(Lies(netz, text));
    EXPECT_FALSE(netz.brauchbar());
}

TEST(NeuroNetzLesen, StrukturzahlEinsZuKleinAbgelehnt) {
    NeuroNetz_t netz;
    std::string text = EinKnoten(0.5, 0.25, 0.1, 2.0);
    text.replace(0, 2, "22");
    EXPECT_FALSE(Lies(netz, text));
}

TEST(NeuroNetzLesen, FehlerfaelleDerStruktur) {
    NeuroNetz_t netz;
    EXPECT_FALSE(Lies(netz, ""));                         // no structure at all
    EXPECT_FALSE(Lies(netz, "   \n"));
    EXPECT_FALSE(Lies(netz, "0\n"));                      // empty structure
    EXPECT_FALSE(Lies(netz, "-7 3 0 1 1 1 2 1"));
    EXPECT_FALSE(Lies(netz, "abc"));
    EXPECT_FALSE(Lies(netz, "5 3 0 1 1 1"));              // layer pairs beyond the 5 integers
    EXPECT_FALSE(Lies(netz, "7 3 0 1 1 1 2"));            // stream ends inside the pairs
    EXPECT_FALSE(Lies(netz, "9 3 0 1 1 1 2 1 0 0"));      // half a connection group
    EXPECT_FALSE(Lies(netz, "11 3 0 1 1 1 2 1 0 0 1"));       // stream ends inside a group
    EXPECT_FALSE(Lies(netz, "12 3 0 1 1 1 2 1 0 0 1 0 0.5"));  // groups leave one integer over
    EXPECT_FALSE(Lies(netz, "15 3 0 1 1 1 2 1 0 0 1 0 0.5"));  // a weight read as a group
    EXPECT_FALSE(Lies(netz, "11 3 0 1 1 1 2 1 0 0 1 0 "));     // weight missing
    EXPECT_TRUE(Lies(netz, "11 3 0 1 1 1 2 1 0 0 1 0 0.5"));
}

TEST(NeuroNetzLesen, UngueltigeIndizesAbgelehnt) {
    NeuroNetz_t netz;
    const std::string kopf = "11 3 0 2 1 1 2 1 ";
    EXPECT_TRUE(Lies(netz, kopf + "0 0 1 0 0.5"));
    EXPECT_FALSE(Lies(netz, kopf + "0 2 1 0 0.5"));   // input node 2 of 2
    EXPECT_FALSE(Lies(netz, kopf + "0 0 1 1 0.5"));   // hidden node 1 of 1
    EXPECT_FALSE(Lies(netz, kopf + "0 -1 1 0 0.5"));
    EXPECT_FALSE(Lies(netz, kopf + "1 0 1 0 0.5"));   // into its own layer
    EXPECT_FALSE(Lies(netz, kopf + "1 0 0 0 0.5"));   // backwards
    EXPECT_FALSE(Lies(netz, kopf + "2 0 1 0 0.5"));   // from the output layer
    EXPECT_FALSE(Lies(netz, kopf + "0 0 3 0 0.5"));   // no such layer
    EXPECT_FALSE(Lies(netz, "11 3 0 2 0 1 2 1 0 0 1 0 0.5"));  // layer 0 twice, layer 1 missing
    EXPECT_FALSE(Lies(netz, "11 3 0 2 5 1 2 1 0 0 1 0 0.5"));  // layer 5 of 3
    EXPECT_FALSE(Lies(netz, "11 3 0 0 1 1 2 1 0 0 1 0 0.5"));  // empty layer
    EXPECT_FALSE(Lies(netz, "11 3 0 -4 1 1 2 1 0 0 1 0 0.5"));
    EXPECT_FALSE(Lies(netz, "11 3 0 2000000000 1 1 2 1 0 0 1 0 0.5"));       // huge layer
    EXPECT_FALSE(Lies(netz, "11 3 0 99999999999 1 1 2 1 0 0 1 0 0.5"));      // beyond 32 bits
    EXPECT_FALSE(Lies(netz, "9223372036854775807 3 0 1 1 1 2 1 0 0 1 0"));  // huge count, short text
    EXPECT_FALSE(Lies(netz, "2000000001 1000000000 0 1"));                   // huge layer count
}

TEST(NeuroNetzLesen, TrainingsteilOptional) {
    NeuroNetz_t netz;
    const std::string basis = EinKnoten(0.5, 0.25, 0.1, 2.0);
    EXPECT_TRUE(Lies(netz, basis));
    EXPECT_TRUE(Lies(netz, basis + "0\n"));
    EXPECT_TRUE(Lies(netz, basis + "0 whatever follows is not read"));
    // A real where the flag stands reads as the integer 0.
    EXPECT_TRUE(Lies(netz, basis + "0.02515350503 -0.26"));
    // Flag set: one pair per incoming connection, 2 for the hidden node, 2 for the output.
    ASSERT_TRUE(Lies(netz, basis + "1  7 0.5 8 0.75  1 1.5 2 2.5\n"));
    ASSERT_EQ(netz.innenschichten()[0][0].trainingsdaten.size(), 2u);
    EXPECT_EQ(netz.innenschichten()[0][0].trainingsdaten[1].first, 8);
    EXPECT_DOUBLE_EQ(netz.innenschichten()[0][0].trainingsdaten[1].second, 0.75);
    EXPECT_FALSE(Lies(netz, basis + "1  7 0.5 8 0.75  1 1.5\n"));  // the output's list is short
    EXPECT_FALSE(Lies(netz, basis + "1  x"));
}

// ---------------------------------------------------------------- the forward pass

TEST(NeuroNetzRechnen, AlleGewichteNullGebenNull) {
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(0.0, 0.0, 0.0, 0.0)));
    EXPECT_EQ(Rechne(netz, {0.7}), 0.0);
    EXPECT_EQ(Rechne(netz, {-3.0}), 0.0);
}

TEST(NeuroNetzRechnen, EinInnenknoten) {
    const double w1 = 0.8, b1 = -0.3, b2 = 0.125, w2 = 1.75;
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(w1, b1, b2, w2)));
    for (double x : {-2.0, -0.5, 0.0, 0.3, 1.0, 4.0}) {
        EXPECT_NEAR(Rechne(netz, {x}), std::tanh(w1 * x + b1) * w2 + b2, 1e-15) << x;
    }
    // Without the bias feeding the output it is tanh(w1 x + b1) w2 alone.
    NeuroNetz_t ohne;
    ASSERT_TRUE(Lies(ohne, EinKnoten(w1, b1, 0.0, w2)));
    EXPECT_NEAR(Rechne(ohne, {0.3}), std::tanh(w1 * 0.3 + b1) * w2, 1e-15);
}

TEST(NeuroNetzRechnen, BiasKnotenZaehltZusaetzlichEins) {
    // What is fed to the bias node counts on top of its implicit 1.
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(0.0, 0.5, 0.0, 1.0)));
    netz.summenLoeschen();
    netz.eingeben(0, 0.0);
    netz.eingeben(1, 1.0);
    netz.rechnen();
    EXPECT_NEAR(netz.ausgabe(), std::tanh(2 * 0.5), 1e-15);
}

TEST(NeuroNetzRechnen, SummenWerdenGeloescht) {
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(0.8, -0.3, 0.125, 1.75)));
    const double einmal = Rechne(netz, {0.4});
    EXPECT_EQ(Rechne(netz, {0.4}), einmal);
}

TEST(NeuroNetzRechnen, LeeresNetzGibtNull) {
    NeuroNetz_t netz;
    netz.summenLoeschen();
    netz.eingeben(0, 1.0);
    netz.rechnen();
    EXPECT_EQ(netz.ausgabe(), 0.0);
    EXPECT_EQ(netz.ausgabe(3), 0.0);
}

TEST(NeuroNetzRechnen, ZweiInnenschichtenUndDirekteVerbindung) {
    // 2 inputs, hidden 1, hidden 1, 1 output; input 0 also feeds the output directly.
    NeuroNetz_t netz;
    ASSERT_TRUE(netz.anlegen(4, true));
    ASSERT_TRUE(netz.schichtAnlegen(0, 2));
    ASSERT_TRUE(netz.schichtAnlegen(1, 1));
    ASSERT_TRUE(netz.schichtAnlegen(2, 1));
    ASSERT_TRUE(netz.schichtAnlegen(3, 1));
    ASSERT_TRUE(netz.verbinden(0, 0, 1, 0, 0.5));
    ASSERT_TRUE(netz.verbinden(0, 0, 3, 0, -0.25));
    ASSERT_TRUE(netz.verbinden(0, 1, 2, 0, 0.1));
    ASSERT_TRUE(netz.verbinden(1, 0, 2, 0, 1.5));
    ASSERT_TRUE(netz.verbinden(2, 0, 3, 0, 2.0));
    const double x = 0.6;
    const double h1 = std::tanh(0.5 * x);
    const double h2 = std::tanh(1.5 * h1 + 0.1);
    EXPECT_NEAR(Rechne(netz, {x}), 2.0 * h2 - 0.25 * x, 1e-15);
}

TEST(NeuroNetzAufbau, FalscheAufrufeAbgelehnt) {
    NeuroNetz_t netz;
    EXPECT_FALSE(netz.schichtAnlegen(0, 2));  // before anlegen
    EXPECT_FALSE(netz.anlegen(2, true));
    ASSERT_TRUE(netz.anlegen(3, false));
    EXPECT_TRUE(netz.schichtAnlegen(0, 2));
    EXPECT_FALSE(netz.schichtAnlegen(0, 2));  // twice
    EXPECT_FALSE(netz.schichtAnlegen(1, 0));
    EXPECT_FALSE(netz.schichtAnlegen(3, 1));
    EXPECT_TRUE(netz.schichtAnlegen(1, 1));
    EXPECT_FALSE(netz.brauchbar());  // no output layer yet
    EXPECT_TRUE(netz.schichtAnlegen(2, 1));
    EXPECT_TRUE(netz.brauchbar());
    EXPECT_FALSE(netz.verbinden(0, 2, 1, 0, 1.0));
    EXPECT_FALSE(netz.verbinden(1, 0, 1, 0, 1.0));
    // Without recording nothing can be written back.
    std::ostringstream aus;
    EXPECT_FALSE(netz.schreiben(aus));
}

// ---------------------------------------------------------------- writing

TEST(NeuroNetzSchreiben, RundreiseGibtGleicheAusgaben) {
    NeuroNetz_t netz;
    ASSERT_TRUE(netz.anlegen(4, true));
    ASSERT_TRUE(netz.schichtAnlegen(0, 4));
    ASSERT_TRUE(netz.schichtAnlegen(1, 3));
    ASSERT_TRUE(netz.schichtAnlegen(2, 2));
    ASSERT_TRUE(netz.schichtAnlegen(3, 1));
    std::mt19937 zufall(42);
    auto gewicht = [&zufall]() { return static_cast<double>(zufall()) / 4294967296.0 * 2.0 - 1.0; };
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j) ASSERT_TRUE(netz.verbinden(0, i, 1, j, gewicht() / 3.0));
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j) ASSERT_TRUE(netz.verbinden(1, i, 2, j, gewicht()));
    for (int j = 0; j < 2; ++j) ASSERT_TRUE(netz.verbinden(2, j, 3, 0, gewicht() * 7.0));
    ASSERT_TRUE(netz.verbinden(0, 3, 3, 0, 0.1 / 3.0));

    std::ostringstream aus;
    ASSERT_TRUE(netz.schreiben(aus));
    NeuroNetz_t zurueck;
    ASSERT_TRUE(Lies(zurueck, aus.str()));
    std::ostringstream nochmal;
    ASSERT_TRUE(zurueck.schreiben(nochmal));
    EXPECT_EQ(aus.str(), nochmal.str());
    for (double x : {-1.0, -0.3, 0.0, 0.123456789, 0.9}) {
        EXPECT_EQ(Rechne(netz, {x, 0.5 - x, x * x}), Rechne(zurueck, {x, 0.5 - x, x * x})) << x;
    }
}

TEST(NeuroNetzSchreiben, GelesenesNetzWirdGleichGeschrieben) {
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(0.8, -0.3, 0.125, 1.75)));
    std::ostringstream aus;
    ASSERT_TRUE(netz.schreiben(aus));
    EXPECT_EQ(aus.str(), "23\n3 0 2 1 1 2 1\n0 0 1 0\n0 1 1 0\n0 1 2 0\n1 0 2 0\n0.80000000000000004\n"
                         "-0.29999999999999999 0.125\n1.75\n0\n");
}

// ---------------------------------------------------------------- garbage

TEST(NeuroNetzMuell, ZufaelligeTexteStuerzenNichtAb) {
    std::mt19937 zufall(7);
    const std::string gueltig = EinKnoten(0.8, -0.3, 0.125, 1.75) + "1 3 0.5 4 0.75 1 1.5 2 2.5\n";
    const std::string zeichen = "0123456789 -+.\neE";
    int gelesen = 0;
    for (int runde = 0; runde < 3000; ++runde) {
        std::string text = gueltig;
        const int aenderungen = 1 + static_cast<int>(zufall() % 4);
        for (int a = 0; a < aenderungen; ++a) {
            const size_t pos = zufall() % text.size();
            switch (zufall() % 3) {
                case 0: text[pos] = zeichen[zufall() % zeichen.size()]; break;
                case 1: text.erase(pos, 1 + zufall() % 3); break;
                default: text.insert(pos, 1, zeichen[zufall() % zeichen.size()]); break;
            }
            if (text.empty()) text.push_back('1');
        }
        NeuroNetz_t netz;
        if (Lies(netz, text)) {
            ++gelesen;
            EXPECT_TRUE(netz.brauchbar());
            Rechne(netz, {0.5, 0.25});
        } else {
            EXPECT_FALSE(netz.brauchbar());
        }
    }
    EXPECT_GT(gelesen, 0);
    // Random integers as a whole description.
    for (int runde = 0; runde < 2000; ++runde) {
        std::ostringstream text;
        const int n = static_cast<int>(zufall() % 40);
        for (int i = 0; i < n; ++i) text << static_cast<int>(zufall() % 9) - 2 << ' ';
        NeuroNetz_t netz;
        if (Lies(netz, text.str())) Rechne(netz, {1.0, -1.0});
    }
}
