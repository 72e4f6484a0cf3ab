#include "timing/zeiteingaben.h"

#include <algorithm>
#include <cmath>

Zeitfiguren_t ZeitFiguren(const Iterationsdaten_t& d) {
    const auto anteil = [](int64_t teil, int64_t ganzes) {
        return ganzes > 0 ? std::clamp(static_cast<double>(teil) / static_cast<double>(ganzes), 0.0, 1.0) : 0.0;
    };
    const auto aenderung = [](int32_t neu, int32_t alt) {
        return std::tanh((static_cast<double>(neu) - static_cast<double>(alt)) / 1000.0);
    };
    const bool mitZiel = d.ziel > 0 && d.ziel < (int64_t{1} << 40);  // unlimited is no target
    return {
        d.besterZugGewechselt ? 1.0 : 0.0,
        std::clamp(d.unruhe, 0.0, 2.0),
        d.antwortGewechselt ? 1.0 : 0.0,
        aenderung(d.wertung, d.vorherigeWertung),
        std::tanh(static_cast<double>(d.wertung) / 1000.0),
        std::clamp(d.antwortUnruhe, 0.0, 2.0),
        std::min(d.tiefenindex / 10.0, 4.0),
        anteil(d.knotenIteration, d.knoten),
        anteil(d.knotenBesterZug, d.knotenIteration),
        mitZiel ? std::clamp(static_cast<double>(d.verstrichen) / static_cast<double>(d.ziel), 0.0, 4.0) : 0.0,
        std::log(static_cast<double>(std::max(d.wurzelzuege, 1))) / 4.0,
        d.taktisch ? 1.0 : 0.0,
        std::min(d.bedrohteSteine / 4.0, 2.0),
        d.eroeffnung ? 1.0 : 0.0,
        aenderung(d.wertung, d.vorvorherigeWertung),
    };
}

Zeiteingaben_t ZeitEingaben(const Zeitfiguren_t& f, const Zeitskalierung_t& s) {
    Zeiteingaben_t e{};  // input 15, the bias node, stays 0
    for (size_t i = 0; i < f.size(); ++i) e[i] = s.faktor[i] * (std::isfinite(f[i]) ? f[i] : 0.0) + s.versatz[i];
    return e;
}

// Fitted with "time fit" to the logs of 3553 searches in 24 self-play games at 10+0.1
// (tools/timing/zeitnetz-eichen.sh): mean error 0.0164 before, 0.0151 after.
const Zeitskalierung_t ZeitskalierungStandard = {
    .faktor = {2.9989, -1.1875, 0.8281, -0.1417, -0.2808, 0.9640, -1.7331, 1.3992, -0.5095, 6.0298, 3.4787, -0.5145, -1.9498, -0.2564, 0.0468},
    .versatz = {-0.1239, -1.9498, 0.2089, 7.2758, -1.7605, 1.9625, -0.4013, -0.4893, -1.3439, -12.5611, -3.0356, 0.5600, -0.0438, 4.4967, 1.3459},
};
