#include "timing/zeitlog.h"

#include <algorithm>
#include <cctype>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <sstream>

std::array<double, Zeitnetz_t::Eingaben> ZeitEingaben(const Iterationsdaten_t& d) {
    // Fed with plainly scaled figures, the built-in weights drive every hidden node
    // into saturation and the network answers about 3.5 whatever the search did: the
    // longest thinking every time. So two inputs carry the search's unrest and the
    // others stay at a working point. Both were fitted to the time logs of 10+0.1
    // games (tools/timing/zeitnetz-eichen.py) so that the bound of weiterIterieren
    // lies near the target for a quiet search, about 0.85 of it further out per recent
    // change of the best move, and a little further when the score fell.
    static constexpr std::array<double, Zeitnetz_t::Eingaben> Arbeitspunkt = {
        0.031, -0.094, -0.906, 5.719, 0.0, 1.0, -1.0, 0.0, 0.0, -1.188, 0.0, 0.0, 0.0, 4.0, 1.0, 0.0};
    std::array<double, Zeitnetz_t::Eingaben> e = Arbeitspunkt;
    const double aenderung = static_cast<double>(d.wertung) - static_cast<double>(d.vorherigeWertung);
    e[1] -= 3.938 * std::clamp(d.unruhe, 0.0, 2.0);
    e[3] -= 4.781 * std::tanh(aenderung / 1000.0);
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
