#include "protocol/xboard_zeit.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "protocol/ausgabe.h"

namespace {

// The white-space separated words of a text.
std::vector<std::string> Woerter(const char* text) {
    std::vector<std::string> woerter;
    const char* p = text;
    for (;;) {
        while (*p != '\0' && std::isspace(static_cast<unsigned char>(*p))) ++p;
        if (*p == '\0') return woerter;
        const char* anfang = p;
        while (*p != '\0' && !std::isspace(static_cast<unsigned char>(*p))) ++p;
        woerter.emplace_back(anfang, p);
    }
}

// A whole word as a number that is neither negative nor absurd.
bool LeseNichtnegativ(const std::string& wort, double& wert) {
    char* ende = nullptr;
    wert = std::strtod(wort.c_str(), &ende);
    return ende != wort.c_str() && *ende == '\0' && wert >= 0.0 && wert < 1e9;
}

// Minutes, or minutes:seconds as xboard writes a base time that is not whole minutes.
bool LeseBasis(const std::string& wort, int64_t& ms) {
    if (wort.find(':') != std::string::npos) {
        long minuten = 0, sekunden = 0;
        int gelesen = 0;
        if (std::sscanf(wort.c_str(), "%ld:%ld%n", &minuten, &sekunden, &gelesen) != 2) return false;
        if (static_cast<size_t>(gelesen) != wort.size() || minuten < 0 || sekunden < 0) return false;
        if (minuten > 10000000 || sekunden > 10000000) return false;
        ms = (static_cast<int64_t>(minuten) * 60 + sekunden) * 1000;
        return true;
    }
    double minuten = 0;
    if (!LeseNichtnegativ(wort, minuten)) return false;
    ms = static_cast<int64_t>(minuten * 60000.0);
    return true;
}

}  // namespace

XBoardZeit_t::XBoardZeit_t() : perioden{}, anzahlPerioden(1), eigeneUhrMs(300000), gegnerUhrMs(300000) {
    // Until the GUI says otherwise: five minutes for the game.
    perioden[0] = {0, 300000, 0};
}

bool XBoardZeit_t::LeseLevel(const char* text) {
    const std::vector<std::string> w = Woerter(text);
    if (w.empty() || w.size() % 3 != 0 || w.size() > 3 * MaxPerioden) return false;
    XBoardPeriode_t neu[MaxPerioden] = {};
    const int anzahl = static_cast<int>(w.size() / 3);
    for (int i = 0; i < anzahl; ++i) {
        double zuege = 0, inkrement = 0;
        if (!LeseNichtnegativ(w[3 * i], zuege) || zuege != static_cast<int32_t>(zuege)) return false;
        if (!LeseBasis(w[3 * i + 1], neu[i].basisMs)) return false;
        if (!LeseNichtnegativ(w[3 * i + 2], inkrement)) return false;
        neu[i].zuege = static_cast<int32_t>(zuege);
        neu[i].inkrementMs = static_cast<int64_t>(inkrement * 1000.0);
    }
    std::copy(neu, neu + MaxPerioden, perioden);
    anzahlPerioden = anzahl;
    eigeneUhrMs = gegnerUhrMs = perioden[0].basisMs;
    return true;
}

XBoardZeit_t::Lage_t XBoardZeit_t::Lage(int gespielteZuege) const {
    int rest = std::max(gespielteZuege, 0);
    for (int p = 0; p < anzahlPerioden; ++p) {
        const int32_t zuege = perioden[p].zuege;
        if (zuege <= 0) return {p, 0};
        if (p == anzahlPerioden - 1) return {p, zuege - rest % zuege};
        if (rest < zuege) return {p, zuege - rest};
        rest -= zuege;
    }
    return {0, 0};
}

std::string XBoardZeit_t::GoZeile(int gespielteZuege, bool ponder) const {
    char puffer[256];
    if (tiefe > 0) {
        std::snprintf(puffer, sizeof puffer, "go depth %ld", tiefe);
    } else if (zugzeit >= 0) {
        // "st" was stored in milliseconds already; multiplying once more is how the
        // engine has always answered "st", and GUIs that rely on it expect it.
        std::snprintf(puffer, sizeof puffer, "go movetime %10.0f", static_cast<double>(zugzeit) * 1000.0);
    } else {
        const Lage_t lage = Lage(gespielteZuege);
        const double uhr = static_cast<double>(eigeneUhrMs);
        const double inkrement = static_cast<double>(perioden[lage.periode].inkrementMs);
        // Both clocks carry the engine's own: the searcher reads only the side to move.
        int n = std::snprintf(puffer, sizeof puffer, "go wtime %16.0f btime %16.0f winc %16.0f binc %16.0f", uhr, uhr,
                              inkrement, inkrement);
        if (lage.zuegeBisKontrolle > 0 && n > 0 && static_cast<size_t>(n) < sizeof puffer)
            n += std::snprintf(puffer + n, sizeof puffer - static_cast<size_t>(n), " movestogo %d",
                               static_cast<int>(lage.zuegeBisKontrolle));
        if (ponder && n > 0 && static_cast<size_t>(n) < sizeof puffer)
            std::snprintf(puffer + n, sizeof puffer - static_cast<size_t>(n), " ponder");
    }
    std::string zeile = puffer;
    QuetscheLeerzeichen(zeile);
    return zeile;
}

void XBoardZeit_t::NachZug(int gespielteZuegeVorher, int64_t verbrauchtMs) {
    const Lage_t lage = Lage(gespielteZuegeVorher);
    int64_t gutschrift = perioden[lage.periode].inkrementMs;
    // The move that completes a period brings the time of the next one (or the same, repeated).
    if (lage.zuegeBisKontrolle == 1) gutschrift += perioden[Lage(gespielteZuegeVorher + 1).periode].basisMs;
    eigeneUhrMs = std::max(eigeneUhrMs - std::max<int64_t>(verbrauchtMs, 0) + gutschrift, MindestUhrMs);
}
