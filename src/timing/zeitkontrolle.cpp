#include "timing/zeitkontrolle.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

double Zeitkontrolle_t::EffektiveZuege(int32_t g, bool flacheKurve) {
    // tanh written out through exp, as the allocation has always computed it.
    if (flacheKurve) return (2.0 / (std::exp(-1.6 * g / 36.0) + 1.0) - 1.0) * 36.0 + 0.6;
    return (2.0 / (std::exp(-2.1 * g / 55.0) + 1.0) - 1.0) * 55.0 + 0.5;
}

void Zeitkontrolle_t::setzen(int64_t eigeneZeit, int64_t inkrement, int32_t zuegeBisKontrolle, int32_t tiefe,
                             int64_t knoten, int32_t matt, int64_t zugzeit, bool unendlich, bool mitZaehlmodus) {
    start = jetzt();
    zaehlmodus = mitZaehlmodus ? 1 : 0;
    ziel = iterationsgrenze = harteGrenze = ZeitUnbegrenzt;
    knotengrenze = KnotenUnbegrenzt;
    tiefengrenze = TiefeUnbegrenzt;
    // harteKnotengrenze stays: a "nodes" limit outlives its own "go".
    if (unendlich) return;
    // 2m + 3 in 64 bits: an absurd mate count must not overflow.
    const int32_t mattTiefe = static_cast<int32_t>(std::min<int64_t>(2LL * matt + 3, INT32_MAX));
    if (tiefe >= 1) {
        tiefengrenze = matt > 0 ? mattTiefe : tiefe - 1;
        return;
    }
    if (matt > 0) {
        tiefengrenze = mattTiefe;
        return;
    }
    if (zugzeit > 0) {
        harteGrenze = zugzeit;
        return;
    }
    if (knoten >= 1) {
        knotengrenze = std::max<int64_t>(knoten, 200);
        harteKnotengrenze = 10 * std::min(knotengrenze, INT64_MAX / 10);
        return;
    }
    const int32_t g = (zuegeBisKontrolle < 1 || zuegeBisKontrolle > 99) ? 99 : zuegeBisKontrolle;
    // Clamped first so that no garbage clock value overflows the arithmetic below.
    eigeneZeit = std::clamp<int64_t>(eigeneZeit, -ZeitUnbegrenzt, ZeitUnbegrenzt);
    inkrement = std::clamp<int64_t>(inkrement, -ZeitUnbegrenzt, ZeitUnbegrenzt);
    const int64_t t = std::max<int64_t>(eigeneZeit - 200, 50);
    const int64_t i = std::max<int64_t>(inkrement - 100, 0);
    const double d = EffektiveZuege(g, kurve != 0);
    const double p = std::pow(1.6, 1.0 - d);
    const double td = static_cast<double>(t);
    const double id = static_cast<double>(i);
    ziel = static_cast<int64_t>(td / d + id);
    iterationsgrenze = static_cast<int64_t>(((1.0 - p) / 10.0 + p) * td + 3.0 * id);
    harteGrenze = std::min(static_cast<int64_t>(((1.0 - p) / 7.0 + p) * td + 4.0 * id), t);
    if (1.2 * static_cast<double>(iterationsgrenze) > static_cast<double>(harteGrenze))
        iterationsgrenze = static_cast<int64_t>(static_cast<double>(harteGrenze) / 1.2);
    if (2 * ziel > iterationsgrenze) ziel = iterationsgrenze / 2;
    iterationsgrenze = std::min(4 * ziel, iterationsgrenze);
}

int64_t Zeitkontrolle_t::jetzt() { return Millisekunden(); }

int64_t Zeitkontrolle_t::verstrichen() const { return jetzt() - start; }

bool Zeitkontrolle_t::weiterIterieren(int64_t knoten, int32_t tiefenindex, double x) const {
    if (tiefenindex > tiefengrenze || knoten >= knotengrenze) return false;
    int64_t e = zaehlmodus ? knoten : verstrichen();
    if (e >= iterationsgrenze) return false;
    if (!zaehlmodus) e = verstrichen();
    const double ed = static_cast<double>(e);
    if (2.2 * ed > static_cast<double>(iterationsgrenze)) return false;
    // A target of 0 ms (tiny clock, no increment) allows nothing more.
    if (ziel <= 0) return false;
    return (std::max(x, 0.0) + 17.0) / (1.2 * ed + 0.001) > 25.0 / static_cast<double>(ziel);
}

bool Zeitkontrolle_t::sofortStoppen(int64_t knoten) const {
    if (knoten >= harteKnotengrenze) return true;
    return (zaehlmodus ? knoten : verstrichen()) >= harteGrenze;
}

bool Zeitkontrolle_t::zeitUeberschritten(int64_t zaehler) const {
    return (zaehlmodus ? zaehler : verstrichen()) >= iterationsgrenze;
}
