#include "book/buchrechnung.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <utility>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "book/buchaufbau.h"
#include "protocol/suchwerkzeuge.h"

namespace {

constexpr char RechenKennung[8] = {'K', 'e', 'l', 'v', 'R', 'e', 'c', 'h'};
constexpr size_t RechenKopf = 10;
constexpr size_t RechenSatz = 20;

struct DateiZu {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using Datei_t = std::unique_ptr<std::FILE, DateiZu>;
using Ergebnisse_t = std::map<std::pair<uint64_t, uint64_t>, Zug_t>;

uint64_t Lies(const unsigned char* p, int bytes) {
    uint64_t wert = 0;
    for (int i = bytes - 1; i >= 0; --i) wert = (wert << 8) | p[i];
    return wert;
}

void Schreibe(unsigned char* p, uint64_t wert, int bytes) {
    for (int i = 0; i < bytes; ++i) p[i] = static_cast<unsigned char>(wert >> (8 * i));
}

// The results of earlier runs; a file of another kind is left alone (and not written to).
bool LiesErgebnisse(const std::string& datei, Ergebnisse_t& ergebnisse, bool& vorhanden) {
    Datei_t f(std::fopen(datei.c_str(), "rb"));
    vorhanden = f != nullptr;
    if (!f) return true;
    unsigned char kopf[RechenKopf];
    if (std::fread(kopf, 1, RechenKopf, f.get()) != RechenKopf) return true;  // empty or cut: rewritten
    if (std::memcmp(kopf, RechenKennung, 8) != 0 || Lies(kopf + 8, 2) != 1) return false;
    unsigned char s[RechenSatz];
    uint64_t saetze = 0;
    while (std::fread(s, 1, RechenSatz, f.get()) == RechenSatz) {
        ergebnisse[{Lies(s, 8), Lies(s + 8, 8)}] = static_cast<Zug_t>(Lies(s + 16, 2));
        ++saetze;
    }
    f.reset();
    // A record cut short is dropped, so the next ones land on the record grid again.
    std::error_code fehler;
    const uint64_t laenge = RechenKopf + saetze * RechenSatz;
    if (std::filesystem::file_size(datei, fehler) != laenge && !fehler) std::filesystem::resize_file(datei, laenge, fehler);
    return true;
}

}  // namespace

bool StellungenBerechnen(const std::string& eingabe, const std::string& ausgabe, int64_t knoten, int hashMb,
                         const std::string& rechendatei, Rechenstatistik_t& statistik) {
    statistik = {};
    std::ifstream ein(eingabe);
    if (!ein) return false;
    std::ofstream aus(ausgabe);
    if (!aus) return false;
    if (knoten < 1) knoten = 1;

    Ergebnisse_t ergebnisse;
    bool vorhanden = false;
    const bool eigene = LiesErgebnisse(rechendatei, ergebnisse, vorhanden);
    Datei_t rechnung;
    if (eigene) {
        // A file cut inside its header starts afresh; records cut short stay unread.
        const bool neu = !vorhanden || ergebnisse.empty();
        rechnung.reset(std::fopen(rechendatei.c_str(), neu ? "wb" : "ab"));
        if (rechnung && neu) {
            unsigned char kopf[RechenKopf];
            std::memcpy(kopf, RechenKennung, 8);
            Schreibe(kopf + 8, 1, 2);
            std::fwrite(kopf, 1, RechenKopf, rechnung.get());
            std::fflush(rechnung.get());
        }
    }

    std::unique_ptr<Werkzeugsuche_t> werkzeug;
    std::string zeile;
    while (std::getline(ein, zeile)) {
        Stellung_t st;
        Stellungsdaten_t daten;
        if (LeseEpdStellung(zeile, st, daten) == 0) continue;
        if (ZaehleLegaleZuege(st, daten) == 0) continue;  // mate or stalemate: nothing to choose

        Zug_t zug = 0;
        const auto gefunden = ergebnisse.find({daten.schluessel, static_cast<uint64_t>(knoten)});
        if (gefunden != ergebnisse.end() && IstLegal(st, gefunden->second, daten)) {
            zug = gefunden->second;
        } else {
            if (!werkzeug) {
                werkzeug = std::make_unique<Werkzeugsuche_t>();
                werkzeug->Setze(("setoption name Hash value " + std::to_string(hashMb)).c_str());
            }
            // Each position from an empty table: the result does not depend on the order.
            werkzeug->NeuesSpiel();
            zug = werkzeug->Suche(st, 0, 0, 0, knoten);
            if (zug == 0) continue;
            ++statistik.gesucht;
            if (rechnung) {
                unsigned char s[RechenSatz] = {};
                Schreibe(s, daten.schluessel, 8);
                Schreibe(s + 8, static_cast<uint64_t>(knoten), 8);
                Schreibe(s + 16, zug, 2);
                std::fwrite(s, 1, RechenSatz, rechnung.get());
                std::fflush(rechnung.get());
            }
        }
        char san[16];
        ZugSan(st, zug, daten, san);
        aus << EpdText(st) << " bm " << san << '\n';
        ++statistik.stellungen;
    }
    return static_cast<bool>(aus.flush());
}
