#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <sstream>
#include <string>

#include "timing/zeitnetz.h"

namespace {

// The weights as the tables list them: input i to hidden j, then hidden j to the output.
const double Eingangsgewichte[16][5] = {
    {0.6275836333, -19.9999999, -0.06253105923, -0.3596320257, -19.9999999},
    {0.06278561951, -19.9999999, -0.2112403939, 0.6793484627, 0.1183560699},
    {-0.09292266371, -1.019498095, -0.1202933758, 1.002051817, -0.5531408118},
    {-0.2221900195, -0.004265942641, 0.1231033914, 0.4824774848, -0.7481742957},
    {-0.2226497031, 0.06008965641, 0.1410587495, -1.098301066, 1.364427184},
    {-0.1381748152, -0.06547544066, 0.1712910475, 0.01164627651, -2.435462881},
    {-0.4153831943, -0.4209207458, 0.2483441281, 0.2665671449, 1.100473094},
    {-0.2477733206, -0.353823439, 0.2963732792, -1.178037474, 1.17724237},
    {-0.1107771975, -0.05985023601, 0.1682390036, -1.181033505, 1.631218473},
    {0.2133896946, -0.2661337463, -0.02348280633, -1.436029735, 0.6870926396},
    {-0.1616738614, -0.05762153231, 0.1382989887, -1.747358655, 2.289928079},
    {-0.4449287887, -0.2108336523, 0.3289296576, -0.04253281253, -1.312139489},
    {1.527321521, -0.3084476567, 0.1979119986, -1.886759747, 2.922405041},
    {1.936030688, 0.2005538985, -0.4337328556, 0.5349696547, 1.784540245},
    {0.3580909435, 0.6250239354, -0.3257086194, 1.683590574, 7.10233402},
    {-0.3270687619, -0.1687356685, 0.2147139257, 10.97684069, -13.22039679},
};
const double Ausgangsgewichte[5] = {-2.229986814, -0.4655993964, 0.4488665032, 1.47863138, -1.707457195};

// The forward pass worked out by hand: input 15 counts once more as the bias.
double Erwartet(const std::array<double, 16>& x) {
    double aus = 0.0;
    for (int j = 0; j < 5; ++j) {
        double summe = Eingangsgewichte[15][j];
        for (int i = 0; i < 16; ++i) summe += x[static_cast<size_t>(i)] * Eingangsgewichte[i][j];
        aus += std::tanh(summe) * Ausgangsgewichte[j];
    }
    return aus;
}

}  // namespace

TEST(Zeitnetz, BeschreibungHat1942Zeichen) { EXPECT_EQ(std::strlen(ZeitnetzBeschreibung), 1942u); }

TEST(Zeitnetz, BeschreibungHatDieErwarteteForm) {
    std::istringstream ein(ZeitnetzBeschreibung);
    long long n = 0;
    ein >> n;
    EXPECT_EQ(n, 347);
    std::string wort;
    int zahlen = 0;
    while (ein >> wort) ++zahlen;
    EXPECT_EQ(zahlen, 347 + 91);
}

TEST(Zeitnetz, EingebautesNetzWirdGelesen) {
    Zeitnetz_t netz;
    ASSERT_TRUE(netz.brauchbar());
    EXPECT_EQ(netz.anzahlEingaben(), 16);
    ASSERT_EQ(netz.innenschichten().size(), 1u);
    EXPECT_EQ(netz.innenschichten()[0].size(), 5u);
    EXPECT_EQ(netz.anzahlAusgaben(), 1);
    for (int i = 0; i < 16; ++i) {
        const auto& v = netz.eingabeschicht()[static_cast<size_t>(i)].verbindungen;
        ASSERT_EQ(v.size(), 5u);
        for (int j = 0; j < 5; ++j) EXPECT_EQ(v[static_cast<size_t>(j)].gewicht, Eingangsgewichte[i][j]);
    }
    for (int j = 0; j < 5; ++j) {
        const auto& v = netz.innenschichten()[0][static_cast<size_t>(j)].verbindungen;
        ASSERT_EQ(v.size(), 1u);
        EXPECT_EQ(v[0].gewicht, Ausgangsgewichte[j]);
        // The trailing numbers are no training data.
        EXPECT_TRUE(netz.innenschichten()[0][static_cast<size_t>(j)].trainingsdaten.empty());
    }
}

TEST(Zeitnetz, AusgabeFuerBekannteEingaben) {
    Zeitnetz_t netz;
    std::array<double, 16> null{};
    EXPECT_NEAR(netz.bewerten(null), Erwartet(null), 1e-12);
    // Only the bias: about 4.06.
    EXPECT_NEAR(netz.bewerten(null), 4.0632564, 1e-6);
    std::array<double, 16> x{};
    for (int i = 0; i < 15; ++i) x[static_cast<size_t>(i)] = 0.5 * ((i % 3) - 1) + 0.05 * i;
    EXPECT_NEAR(netz.bewerten(x), Erwartet(x), 1e-12);
    x[15] = 0.25;
    EXPECT_NEAR(netz.bewerten(x), Erwartet(x), 1e-12);
    // The same again: the sums are cleared each time.
    EXPECT_NEAR(netz.bewerten(x), Erwartet(x), 1e-12);
}

TEST(Zeitnetz, UntrainiertesNetz) {
    Zeitnetz_t netz(7);
    ASSERT_TRUE(netz.brauchbar());
    EXPECT_EQ(netz.anzahlEingaben(), 16);
    ASSERT_EQ(netz.innenschichten().size(), 1u);
    EXPECT_EQ(netz.innenschichten()[0].size(), 7u);
    for (const auto& k : netz.eingabeschicht()) {
        ASSERT_EQ(k.verbindungen.size(), 7u);
        for (const auto& v : k.verbindungen) EXPECT_EQ(v.gewicht, 0.0);
    }
    std::array<double, 16> x{};
    x.fill(0.7);
    EXPECT_EQ(netz.bewerten(x), 0.0);
    // Its description: 1 + 6 + (16 * 7 + 7) * 4 structure integers.
    std::ostringstream aus;
    ASSERT_TRUE(netz.schreiben(aus));
    std::istringstream ein(aus.str());
    long long n = 0;
    ein >> n;
    EXPECT_EQ(n, 1 + 6 + (16 * 7 + 7) * 4);
}

TEST(Zeitnetz, UntrainiertesNetzOhneKnotenIstLeer) {
    Zeitnetz_t netz(0);
    EXPECT_FALSE(netz.brauchbar());
    std::array<double, 16> x{};
    EXPECT_EQ(netz.bewerten(x), 0.0);
}

TEST(Zeitnetz, EingebautesNetzRundreise) {
    Zeitnetz_t netz;
    std::ostringstream aus;
    ASSERT_TRUE(netz.schreiben(aus));
    Zeitnetz_t zurueck(0);
    std::istringstream ein(aus.str());
    ASSERT_TRUE(zurueck.lesen(ein));
    std::array<double, 16> x{};
    for (int i = 0; i < 16; ++i) x[static_cast<size_t>(i)] = std::sin(i + 1.0);
    EXPECT_EQ(netz.bewerten(x), zurueck.bewerten(x));
}

TEST(Zeitwert, Regel) {
    Zeitwert_t w;
    EXPECT_DOUBLE_EQ(w.v, 0.08);
    EXPECT_DOUBLE_EQ(w.x(), 8.0);
    w.nachIteration(0.5, false);
    EXPECT_DOUBLE_EQ(w.x(), 50.0);
    w.nachIteration(0.5, true);
    EXPECT_DOUBLE_EQ(w.v, 0.57);
    w.nachIteration(-3.0, false);
    EXPECT_DOUBLE_EQ(w.v, 0.02);
    EXPECT_DOUBLE_EQ(w.x(), 2.0);
    w.nachIteration(-0.06, true);  // 0.01 after the bonus: still raised to the floor
    EXPECT_DOUBLE_EQ(w.v, 0.02);
    w.nachIteration(std::nan(""), false);
    EXPECT_DOUBLE_EQ(w.v, 0.02);
}
