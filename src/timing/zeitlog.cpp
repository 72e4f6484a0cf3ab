#include "timing/zeitlog.h"

#include <algorithm>
#include <cctype>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <sstream>

namespace {

double Anteil(int64_t teil, int64_t ganz) {
    if (ganz <= 0) return 0.0;
    return std::clamp(static_cast<double>(teil) / static_cast<double>(ganz), 0.0, 1.0);
}

double Begrenzt(int64_t n, int64_t grenze) {
    return static_cast<double>(std::clamp<int64_t>(n, 0, grenze)) / static_cast<double>(grenze);
}

constexpr int32_t MattWertung = 450000;

}  // namespace

std::array<double, Zeitnetz_t::Eingaben> ZeitEingaben(const Iterationsdaten_t& d) {
    std::array<double, Zeitnetz_t::Eingaben> e{};
    const double wertung = d.wertung;
    const double aenderung = static_cast<double>(d.wertung) - static_cast<double>(d.vorherigeWertung);
    e[0] = d.besterZugGewechselt ? 1.0 : 0.0;
    e[1] = Begrenzt(d.wechselAnzahl, 4);
    e[2] = d.antwortGewechselt ? 1.0 : 0.0;
    e[3] = std::tanh(aenderung / 1000.0);
    e[4] = std::tanh(wertung / 3000.0);
    e[5] = (d.wertung > MattWertung || d.wertung < -MattWertung) ? 1.0 : 0.0;
    e[6] = Begrenzt(d.tiefenindex, 32);
    // No target (0 ms) counts as fully used up.
    e[7] = d.ziel > 0 ? std::min(static_cast<double>(std::max<int64_t>(d.verstrichen, 0)) /
                                     static_cast<double>(d.ziel), 2.0) / 2.0
                      : 1.0;
    e[8] = Anteil(d.knotenBesterZug, d.knotenIteration);
    e[9] = Begrenzt(d.wurzelzuege, 50);
    e[10] = d.taktisch ? 1.0 : 0.0;
    e[11] = Begrenzt(d.bedrohteSteine, 4);
    e[12] = d.eroeffnung ? 1.0 : 0.0;
    e[13] = std::tanh(static_cast<double>(std::max<int64_t>(d.ziel, 0)) / 10000.0);
    e[14] = Anteil(d.knotenIteration, d.knoten);
    e[15] = 0.0;
    return e;
}

std::string ZeitlogZeile(const Iterationsdaten_t& d) {
    char puffer[160];
    std::snprintf(puffer, sizeof puffer, "Z %" PRId64 " %" PRId32 " %" PRId64 " %" PRId64 " %" PRId64 " %" PRId32
                                         " %" PRIu32 " %d",
                  d.start, d.tiefenindex, d.verstrichen, d.ziel, d.knoten, d.wertung, d.besterZug,
                  d.besterZugGewechselt ? 1 : 0);
    std::string zeile = puffer;
    for (double x : ZeitEingaben(d)) {
        std::snprintf(puffer, sizeof puffer, " %.6f", x);
        zeile += puffer;
    }
    return zeile;
}

bool ZeitlogZeileLesen(const std::string& zeile, Zeitlogeintrag_t& eintrag) {
    if (zeile.size() < 2 || zeile[0] != 'Z' || zeile[1] != ' ') return false;
    std::istringstream ein(zeile.substr(2));
    Zeitlogeintrag_t e;
    int gewechselt = 0;
    long long zug = 0;
    if (!(ein >> e.start >> e.tiefenindex >> e.verstrichen >> e.ziel >> e.knoten >> e.wertung >> zug >> gewechselt))
        return false;
    if (zug < 0 || zug > 0xFFFF || (gewechselt != 0 && gewechselt != 1)) return false;
    for (double& x : e.eingaben) {
        if (!(ein >> x) || !std::isfinite(x)) return false;
    }
    std::string ueberzaehlig;
    if (ein >> ueberzaehlig) return false;
    e.besterZug = static_cast<uint32_t>(zug);
    e.gewechselt = gewechselt != 0;
    eintrag = e;
    return true;
}

bool KeinZeitlog(const std::string& dateiname) {
    std::string klein;
    for (char c : dateiname) klein += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return klein.empty() || klein == "nul:" || klein == "nul";
}

bool Zeitlog_t::oeffnen(const std::string& dateiname) {
    if (datei.is_open() && dateiname == name) return true;
    schliessen();
    if (KeinZeitlog(dateiname)) return false;
    datei.open(dateiname, std::ios::out | std::ios::app);
    if (!datei.is_open()) {
        datei.clear();
        return false;
    }
    name = dateiname;
    return true;
}

void Zeitlog_t::schliessen() {
    if (datei.is_open()) datei.close();
    datei.clear();
    name.clear();
}

void Zeitlog_t::schreiben(const Iterationsdaten_t& d) {
    if (!datei.is_open()) return;
    // Flushed line by line: a log cut off by a crash still holds whole lines.
    datei << ZeitlogZeile(d) << '\n';
    datei.flush();
}
