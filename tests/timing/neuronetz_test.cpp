#include <gtest/gtest.h>

#include <cmath>
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

// Input x and the bias, one hidden node, one output; the bias also feeds the
// output: 1 + 3 * 2 + 4 * 4 = 23 structure integers.
std::string EinKnoten(double w1, double b1, double b2, double w2) {
    std::ostringstream s;
    s.precision(17);
    s << "23\n3 0 2 1 1 2 1\n0 0 1 0\n0 1 1 0\n0 1 2 0\n1 0 2 0\n";
    s << w1 << ' ' << b1 << ' ' << b2 << '\n' << w2 << '\n';
    return s.str();
}

}  // namespace

TEST(NeuroNetz, KaputteBeschreibungenAbgelehnt) {
    const std::string gut = EinKnoten(0.5, 0.25, 0.1, 2.0);
    const std::string faelle[] = {
        "9\n2 0 2 1 1\n0 0 1 0\n0.5\n",  // two layers
        "24" + gut.substr(2),            // structure count one too large
        "22" + gut.substr(2),            // and one too small
        "", "abc", "-7 3 0 1 1 1 2 1",  // nothing, no number, a negative count
        "9 3 0 1 1 1 2 1 0 0",           // half a connection
        "11 3 0 2 1 1 2 1 0 2 1 0 0.5",  // input node 2 of 2
        "11 3 0 2 1 1 2 1 1 0 0 0 0.5",  // backwards
        "11 3 0 2 0 1 2 1 0 0 1 0 0.5",  // layer 0 twice
        "11 3 0 99999999999 1 1 2 1 0 0 1 0 0.5",  // beyond 32 bits
        "9223372036854775807 3 0 1 1 1 2 1 0 0 1 0",
        gut + "1  7 0.5 8 0.75  1 1.5\n",  // training section: the output's list is short
    };
    for (const auto& text : faelle) {
        NeuroNetz_t netz;
        EXPECT_FALSE(Lies(netz, text)) << text;
        EXPECT_FALSE(netz.brauchbar()) << text;
    }
    NeuroNetz_t netz;
    EXPECT_TRUE(Lies(netz, gut + "1  7 0.5 8 0.75  1 1.5 2 2.5\n"));
}

TEST(NeuroNetz, VerstuemmelteTexteStuerzenNichtAb) {
    std::mt19937 zufall(7);
    const std::string zeichen = "0123456789 -+.\neE";
    for (int runde = 0; runde < 2000; ++runde) {
        std::string text = EinKnoten(0.8, -0.3, 0.125, 1.75);
        for (int a = 0; a < 3; ++a) text[zufall() % text.size()] = zeichen[zufall() % zeichen.size()];
        NeuroNetz_t netz;
        // Read or not, the network must be consistent and usable for a pass.
        const bool gelesen = Lies(netz, text);
        EXPECT_EQ(netz.brauchbar(), gelesen);
        Rechne(netz, {0.5, 0.25});
    }
}

TEST(NeuroNetz, EinInnenknoten) {
    const double w1 = 0.8, b1 = -0.3, b2 = 0.125, w2 = 1.75;
    NeuroNetz_t netz;
    ASSERT_TRUE(Lies(netz, EinKnoten(w1, b1, b2, w2)));
    for (double x : {-2.0, 0.0, 0.3, 4.0}) EXPECT_NEAR(Rechne(netz, {x}), std::tanh(w1 * x + b1) * w2 + b2, 1e-15);
}

TEST(NeuroNetz, RundreiseGibtGleicheAusgaben) {
    // Four layers and a connection that skips two, with weights that need all 17 digits.
    NeuroNetz_t netz;
    ASSERT_TRUE(netz.anlegen(4, true));
    for (int s = 0; s < 4; ++s) ASSERT_TRUE(netz.schichtAnlegen(s, 4 - s));
    std::mt19937 zufall(42);
    auto w = [&zufall]() { return static_cast<double>(zufall()) / 3e9 - 0.7; };
    for (int s = 0; s < 3; ++s)
        for (int i = 0; i < 4 - s; ++i)
            for (int j = 0; j < 3 - s; ++j) ASSERT_TRUE(netz.verbinden(s, i, s + 1, j, w()));
    ASSERT_TRUE(netz.verbinden(0, 3, 3, 0, 0.1 / 3.0));
    std::ostringstream aus, nochmal;
    ASSERT_TRUE(netz.schreiben(aus));
    NeuroNetz_t zurueck;
    ASSERT_TRUE(Lies(zurueck, aus.str()));
    ASSERT_TRUE(zurueck.schreiben(nochmal));
    EXPECT_EQ(aus.str(), nochmal.str());
    for (double x : {-1.0, 0.123456789, 0.9})
        EXPECT_EQ(Rechne(netz, {x, 0.5 - x, x * x}), Rechne(zurueck, {x, 0.5 - x, x * x})) << x;
}
