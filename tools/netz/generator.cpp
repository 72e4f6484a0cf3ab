#include "netz/generator.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>
#include <thread>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "netz/datensatz.h"
#include "protocol/suchwerkzeuge.h"
#include "search/hashtabelle.h"
#include "search/netz.h"
#include "search/zufallsgenerator.h"

namespace {

// Games end early once the search is sure of them: a win after this many plies in a
// row beyond AufgabeWert for the same side, a draw after RemisPlies within RemisWert
// from RemisAbPly on. Past MaxPlies a game counts as drawn.
constexpr int AufgabeWert = 4000;
constexpr int AufgabePlies = 8;
constexpr int RemisWert = 150;
constexpr int RemisPlies = 12;
constexpr int RemisAbPly = 80;
constexpr int MaxPlies = 400;

constexpr uint32_t StandVersion = 1;

uint64_t Mische(uint64_t x) {  // splitmix64's finaliser
    x += 0x9e3779b97f4a7c15ULL;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

// The first four fields of each line that reads as a position.
bool LeseEroeffnungen(const std::vector<std::string>& dateien, std::vector<std::string>& stellungen,
                      std::ostream& bericht) {
    for (const std::string& name : dateien) {
        std::ifstream ein(name);
        if (!ein) {
            bericht << "info string cannot read " << name << '\n';
            return false;
        }
        std::string zeile;
        while (std::getline(ein, zeile)) {
            std::istringstream felder(zeile);
            std::string f[4];
            if (!(felder >> f[0] >> f[1] >> f[2] >> f[3])) continue;
            const std::string fen = f[0] + ' ' + f[1] + ' ' + f[2] + ' ' + f[3] + " 0 1";
            Stellung_t st;
            Stellungsdaten_t daten;
            if (SetzeStellung(st, daten, fen.c_str())) stellungen.push_back(fen);
        }
    }
    if (stellungen.empty()) bericht << "info string no opening positions\n";
    return !stellungen.empty();
}

bool IstSchlag(const Stellung_t& st, Zug_t zug) {
    return Art(zug) == EnPassant || ((st.seite[st.amZug ^ 1].brett[0] >> Nach(zug)) & 1);
}

// One game: its kept positions, results filled in.
std::vector<Datensatz_t> SpieleSpiel(const Generatorauftrag_t& a, const std::vector<std::string>& eroeffnungen,
                                     uint64_t spiel) {
    const uint64_t h = Mische(Mische(a.saat) ^ spiel);
    Zufallsgenerator_t zufall(static_cast<uint32_t>(h ^ (h >> 32)));
    Stellung_t st;
    Stellungsdaten_t daten;
    SetzeStellung(st, daten, eroeffnungen[zufall.Ziehe() % eroeffnungen.size()].c_str());
    Rueckzug_t r;
    for (int n = static_cast<int>(zufall.Ziehe() % static_cast<uint32_t>(a.zufallsPlies + 1)); n > 0; --n) {
        Zugliste_t liste;
        Zug_t legal[MaxZuege];
        int anzahl = 0;
        for (const uint32_t* z = liste, *ende = ErzeugeZuege(st, daten, liste); z != ende; ++z)
            if (IstLegal(st, static_cast<Zug_t>(*z), daten)) legal[anzahl++] = static_cast<Zug_t>(*z);
        if (anzahl == 0) break;
        SpielzugMachen(st, legal[zufall.Ziehe() % anzahl], r, daten);
    }

    Werkzeugsuche_t suche;
    suche.Setze(("setoption name Hash value " + std::to_string(a.hashMb)).c_str());
    if (!a.netz.empty()) suche.Setze(("setoption name EvalFile value " + a.netz).c_str());
    std::vector<Datensatz_t> saetze;
    int ergebnisWeiss = 0, sicher = 0, ruhig = 0;
    for (int ply = 0;; ++ply) {
        int matt;
        if (SpielEnde(st, daten, &matt)) {
            ergebnisWeiss = matt;
            break;
        }
        if (FuenfzigZuegeRemis(st) || WiederholungsRemis(st) || Materialremis(st) || ply >= MaxPlies) break;
        const Zug_t zug = suche.Suche(st, 0, 0, 0, a.knoten);
        const int wert = suche.Wert();
        if (zug == 0) break;
        if (!ImSchach(st, daten) && !IstSchlag(st, zug) && !IstUmwandlung(zug) && std::abs(wert) < MattGrenze)
            saetze.push_back(Packe(st, wert, 0, ply));

        const int wertWeiss = st.amZug == Weiss ? wert : -wert;
        sicher = wertWeiss >= AufgabeWert ? (sicher > 0 ? sicher + 1 : 1)
                 : wertWeiss <= -AufgabeWert ? (sicher < 0 ? sicher - 1 : -1)
                                             : 0;
        ruhig = ply >= RemisAbPly && std::abs(wert) <= RemisWert ? ruhig + 1 : 0;
        if (std::abs(sicher) >= AufgabePlies) {
            ergebnisWeiss = sicher > 0 ? 1 : -1;
            break;
        }
        if (ruhig >= RemisPlies) break;
        if (!SpielzugMachen(st, zug, r, daten)) break;  // never: the search plays legal moves
    }
    for (Datensatz_t& d : saetze) d.ergebnis = static_cast<int8_t>(d.amZug == Weiss ? ergebnisWeiss : -ergebnisWeiss);
    return saetze;
}

struct Stand_t {
    uint64_t spiele = 0, stellungen = 0;
};

std::string StandText(const Generatorauftrag_t& a, const Stand_t& s) {
    std::ostringstream t;
    t << "kelvaran-daten " << StandVersion << "\nsaat " << a.saat << "\nknoten " << a.knoten << "\nzufallsplies "
      << a.zufallsPlies << "\nspiele " << s.spiele << "\nstellungen " << s.stellungen << '\n';
    return t.str();
}

// The progress file of an earlier run with the same settings, or a fresh start.
bool LeseStand(const Generatorauftrag_t& a, Stand_t& s, std::ostream& bericht) {
    std::ifstream ein(a.datei + ".stand");
    if (!ein) {
        s = {};
        return true;
    }
    std::string wort;
    uint32_t version = 0;
    Generatorauftrag_t alt;
    ein >> wort >> version;
    ein >> wort >> alt.saat >> wort >> alt.knoten >> wort >> alt.zufallsPlies >> wort >> s.spiele >> wort >>
        s.stellungen;
    if (!ein || version != StandVersion) {
        bericht << "info string unreadable progress file " << a.datei << ".stand\n";
        return false;
    }
    if (alt.saat != a.saat || alt.knoten != a.knoten || alt.zufallsPlies != a.zufallsPlies) {
        bericht << "info string " << a.datei << " was made with seed " << alt.saat << ", nodes " << alt.knoten
                << ", random plies " << alt.zufallsPlies << ": resume with the same settings\n";
        return false;
    }
    return true;
}

bool SchreibeStand(const Generatorauftrag_t& a, const Stand_t& s) {
    const std::string name = a.datei + ".stand", neu = name + ".neu";
    {
        std::ofstream aus(neu, std::ios::trunc);
        aus << StandText(a, s);
        if (!aus.flush()) return false;
    }
    std::error_code fehler;
    std::filesystem::rename(neu, name, fehler);
    return !fehler;
}

}  // namespace

int ErzeugeDaten(const Generatorauftrag_t& a, std::ostream& bericht) {
    std::vector<std::string> eroeffnungen;
    if (a.threads < 1 || a.knoten < 1 || a.zufallsPlies < 0 || !LeseEroeffnungen(a.eroeffnungen, eroeffnungen, bericht))
        return 1;
    Stand_t stand;
    if (!LeseStand(a, stand, bericht)) return 1;
    std::string fehler;
    if (!a.netz.empty() && !LadeNetzDatei(a.netz, fehler)) {
        bericht << "info string " << a.netz << ": " << fehler << '\n';
        return 1;
    }

    // Whatever an interrupted run wrote beyond its last recorded game goes.
    std::error_code dateifehler;
    const uint64_t laenge = stand.stellungen * sizeof(Datensatz_t);
    if (!std::filesystem::exists(a.datei)) std::ofstream(a.datei, std::ios::binary);
    if (std::filesystem::file_size(a.datei, dateifehler) < laenge || dateifehler) {
        bericht << "info string " << a.datei << " is shorter than its progress file says\n";
        return 1;
    }
    std::filesystem::resize_file(a.datei, laenge, dateifehler);
    std::ofstream aus(a.datei, std::ios::binary | std::ios::app);
    if (dateifehler || !aus) {
        bericht << "info string cannot write " << a.datei << '\n';
        return 1;
    }

    std::mutex sperre;
    std::map<uint64_t, std::vector<Datensatz_t>> fertig;  // played, waiting for the games before them
    std::atomic<uint64_t> naechstes{stand.spiele};
    bool schreibfehler = false;
    const uint64_t startStellungen = stand.stellungen;
    const auto start = std::chrono::steady_clock::now();
    auto letzterBericht = start;

    auto arbeiter = [&] {
        for (uint64_t spiel; (spiel = naechstes.fetch_add(1)) < a.spiele;) {
            std::vector<Datensatz_t> saetze = SpieleSpiel(a, eroeffnungen, spiel);
            std::lock_guard<std::mutex> lock(sperre);
            fertig.emplace(spiel, std::move(saetze));
            for (auto it = fertig.begin(); it != fertig.end() && it->first == stand.spiele; it = fertig.erase(it)) {
                aus.write(reinterpret_cast<const char*>(it->second.data()),
                          static_cast<std::streamsize>(it->second.size() * sizeof(Datensatz_t)));
                stand.spiele++;
                stand.stellungen += it->second.size();
            }
            if (!aus.flush() || !SchreibeStand(a, stand)) schreibfehler = true;
            const auto jetzt = std::chrono::steady_clock::now();
            if (jetzt - letzterBericht >= std::chrono::seconds(10) || stand.spiele == a.spiele) {
                letzterBericht = jetzt;
                const double s = std::chrono::duration<double>(jetzt - start).count();
                char zeile[160];
                std::snprintf(zeile, sizeof zeile, "info string games %llu positions %llu (%.0f positions/s)\n",
                              static_cast<unsigned long long>(stand.spiele),
                              static_cast<unsigned long long>(stand.stellungen),
                              static_cast<double>(stand.stellungen - startStellungen) / (s > 0 ? s : 1));
                bericht << zeile << std::flush;
            }
            if (schreibfehler) return;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < a.threads; ++i) threads.emplace_back(arbeiter);
    for (std::thread& t : threads) t.join();
    if (schreibfehler) {
        bericht << "info string cannot write " << a.datei << '\n';
        return 1;
    }
    return 0;
}
