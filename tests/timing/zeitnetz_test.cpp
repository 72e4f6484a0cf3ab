#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>

#include "timing/zeitnetz.h"

namespace {

// The weights as our tables list them: input i to hidden j, then hidden j to the output.
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

}  // namespace

TEST(Zeitnetz, EingebautesNetz) {
    EXPECT_EQ(std::strlen(ZeitnetzBeschreibung), 1942u);
    Zeitnetz_t netz;
    std::array<double, 16> x{};
    for (size_t i = 0; i < x.size(); ++i) x[i] = 0.5 * static_cast<double>(i % 3) - 0.5 + 0.05 * i;
    double soll = 0.0;
    for (size_t j = 0; j < 5; ++j) {
        double summe = Eingangsgewichte[15][j];  // input 15 is the bias: it counts once more
        for (size_t i = 0; i < 16; ++i) summe += x[i] * Eingangsgewichte[i][j];
        soll += std::tanh(summe) * Ausgangsgewichte[j];
    }
    // Twice: a pass must clear the sums of the one before.
    EXPECT_NEAR(netz.bewerten(x), soll, 1e-12);
    EXPECT_NEAR(netz.bewerten(x), soll, 1e-12);
}
