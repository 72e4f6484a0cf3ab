#include "timing/zeitlog.h"

#include <cctype>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <sstream>

std::string ZeitlogZeile(const Iterationsdaten_t& d) {
    char puffer[160];
    std::snprintf(puffer, sizeof puffer, "Z %" PRId64 " %" PRId32 " %" PRId64 " %" PRId64 " %" PRId64 " %" PRId32
                                         " %" PRIu32 " %d",
                  d.start, d.tiefenindex, d.verstrichen, d.ziel, d.knoten, d.wertung, d.besterZug,
                  d.besterZugGewechselt ? 1 : 0);
    std::string zeile = puffer;
    for (double x : ZeitFiguren(d)) {
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
    for (double& x : e.figuren) {
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
