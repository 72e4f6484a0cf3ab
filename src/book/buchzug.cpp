#include "book/buchzug.h"

#include <algorithm>
#include <chrono>

#include "board/zugmachen.h"
#include "book/buchdatei.h"
#include "book/polyglot.h"
#include "protocol/optionen.h"

bool BuchKandidaten(const std::string& datei, const Stellung_t& st, const Stellungsdaten_t& daten,
                    std::vector<Buchkandidat_t>& kandidaten) {
    kandidaten.clear();
    Stellung_t kopie = st;
    if (Buchdatei::IstBuchdatei(datei)) {
        std::vector<Buchzug_t> zuege;
        if (Buchdatei::Suchen(datei, daten.schluessel, zuege) != Buchdatei::Status::Ok) return false;
        for (const Buchzug_t& z : zuege)
            // A key collision or a damaged record must never reach the GUI as a move.
            if (z.gewicht > 0 && IstLegal(kopie, z.zug, daten)) kandidaten.push_back({z.zug, z.gewicht, z.partien, z.punkte});
        return true;
    }
    // Polyglot keys know no Chess960 castling.
    if (st.chess960) return false;
    std::vector<PolyglotEintrag_t> eintraege;
    if (!PolyglotSuchen(datei, PolyglotSchluessel(st), eintraege)) return false;
    for (const PolyglotEintrag_t& e : eintraege) {
        const Zug_t zug = PolyglotZugAus(kopie, daten, e.zug);
        if (zug != 0 && e.gewicht > 0) kandidaten.push_back({zug, e.gewicht, 0, 0});
    }
    return true;
}

size_t WaehleNachGewicht(const std::vector<Buchkandidat_t>& kandidaten, uint64_t zufall) {
    long double summe = 0;
    for (const Buchkandidat_t& k : kandidaten) summe += static_cast<long double>(k.gewicht);
    // zufall / 2^64 of the way through the weights.
    long double ziel = summe * (static_cast<long double>(zufall) / 18446744073709551616.0L);
    for (size_t i = 0; i < kandidaten.size(); ++i) {
        ziel -= static_cast<long double>(kandidaten[i].gewicht);
        if (ziel < 0) return i;
    }
    return kandidaten.empty() ? 0 : kandidaten.size() - 1;
}

bool BuchZug(const Stellung_t& st, const Stellungsdaten_t& daten, const Optionen_t& optionen, Zug_t& zug,
             std::string& info, const uint32_t* erlaubt, int anzahlErlaubt) {
    const int eigenesBuch = optionen.Index("OwnBook");
    const int datei = optionen.Index("BookFile");
    if (eigenesBuch < 0 || datei < 0 || !optionen.Wahr(eigenesBuch)) return false;
    std::vector<Buchkandidat_t> kandidaten;
    if (!BuchKandidaten(optionen.Text(datei), st, daten, kandidaten)) return false;
    if (erlaubt != nullptr)
        std::erase_if(kandidaten, [&](const Buchkandidat_t& k) {
            return std::find(erlaubt, erlaubt + anzahlErlaubt, uint32_t{k.zug}) == erlaubt + anzahlErlaubt;
        });
    if (kandidaten.empty()) return false;

    // Each "go" draws afresh: the clock mixed with the position.
    uint64_t zufall = static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
                      daten.schluessel;
    zufall ^= zufall >> 33;
    zufall *= 0xff51afd7ed558ccdULL;
    zufall ^= zufall >> 33;
    zufall *= 0xc4ceb9fe1a85ec53ULL;
    zufall ^= zufall >> 33;
    const Buchkandidat_t& k = kandidaten[WaehleNachGewicht(kandidaten, zufall)];
    zug = k.zug;

    long double summe = 0;
    for (const Buchkandidat_t& c : kandidaten) summe += static_cast<long double>(c.gewicht);
    char text[8];
    ZugText(st, zug, text);
    char zeile[160];
    const int anteil = static_cast<int>(100.0L * static_cast<long double>(k.gewicht) / summe + 0.5L);
    // A damaged record may claim more points than its games can give: two half points a game at most.
    const double punkte = std::min(static_cast<double>(k.punkte), 2.0 * k.partien);
    if (k.partien > 0)
        std::snprintf(zeile, sizeof zeile, "info string book move %s (weight %d%%, %u games, score %d%%)", text,
                      anteil, k.partien, static_cast<int>(50.0 * punkte / k.partien + 0.5));
    else
        std::snprintf(zeile, sizeof zeile, "info string book move %s (weight %d%%)", text, anteil);
    info = zeile;
    return true;
}
