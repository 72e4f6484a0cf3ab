// The alpha-beta searcher: principal-variation search with a capture search
// beneath it, driven by iterative deepening at the root.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <semaphore>
#include <vector>

#include "bitbase/bitbasecache.h"
#include "search/bewertung.h"
#include "search/hashtabelle.h"
#include "search/suchrahmen.h"
#include "search/sucher.h"
#include "search/teilung.h"
#include "search/zugwahl.h"
#include "timing/zeitlog.h"
#include "timing/zeitnetz.h"

// One legal root move and what its last search gave.
struct Wurzelzug_t {
    uint32_t zug;
    int32_t wert;
    int32_t tiefe;     // half plies
    int32_t schranke;  // SchrankeOben / SchrankeUnten / SchrankeExakt
    uint64_t knoten;   // spent on it in the last iteration
};

class Suche_t : public Sucher_t {
public:
    Suche_t();
    ~Suche_t() override;

    // Main searcher: runs a "go". Further searcher: serves split points.
    void Threadkoerper() override;

    void ponderhit() override;
    // One "go": prepare the table, iterate, report, answer with the best move.
    void suchen() override;

    // Figures of the last search, read after it has ended.
    uint64_t Knoten() const { return knoten; }
    Zug_t BesterZug() const { return besterZug; }
    int BesterWert() const { return besterWert; }
    Hashtabelle_t& Tabelle() { return tabelle; }
    // Search threads, this one included (1 to 32); made and ended between searches.
    void SetzeThreads(int anzahl);
    void RichteBitbasesEin(bool neuerPfad);
    int Threads() const { return 1 + static_cast<int>(weitere.size()); }
    uint64_t Teilungen() const { return teilungen.load(std::memory_order_relaxed); }
    // Bitbase probes that gave a result in this search, all threads.
    uint64_t TbTreffer() const {
        return (bitbaseCache ? bitbaseCache->Treffer() : 0) + tbTrefferWeitere.load(std::memory_order_relaxed);
    }

protected:
    void Uebernehmen() override;

private:
    friend class Teilungspool_t;
    // A further searcher of `haupt`, sharing its table and split points.
    Suche_t(Suche_t* haupt, int id);

    int Suche(int alpha, int beta, Suchrahmen_t* r, int tiefe, int nonPv);
    // remisGeprueft: the caller has just found the game's draw rules not to apply here.
    int Ruhesuche(int alpha, int beta, Suchrahmen_t* r, int qtiefe, bool remisGeprueft = false);
    int Wurzelsuche(int tiefe, int vorherigerWert);
    int StatischeBewertung(Suchrahmen_t* r);
    // The node's hidden layers, from the nearest frame above that has them.
    void NetzNachziehen(Suchrahmen_t* r);
    // Makes the file's network the one in use, or the built-in one ("internal", empty or refused).
    void LadeNetz(const std::string& datei);
    // The bitbases' verdict on the position (+1 White wins, -1 Black wins, 0 neither);
    // false when no bitbase knows it. Only without castling rights and with few men.
    bool BitbaseAbfrage(bool nurImCache, int& ergebnis);
    bool Remis() const;
    bool Gestoppt();
    // The main searcher's clock says stop (checked by it alone).
    bool UhrAbgelaufen();
    // Stop, or a cut or stop at the split point worked under or any above it.
    bool Abbruch() const {
        if (stopZeiger->load(std::memory_order_relaxed)) return true;
        for (const Teilungspunkt_t* p = aktuellerTp; p != nullptr; p = p->eltern)
            if (p->abbruch.load(std::memory_order_relaxed)) return true;
        return false;
    }
    void Bereite(const Stellung_t& st);
    void SortiereWurzel(int anzahl);
    // The line from a root move on, read back from the table.
    int Hauptvariante(uint32_t erster, Zug_t* zuege, int max);
    void MeldeVariante(uint32_t zug, int wert, int alpha, int beta, int tiefenindex, bool unterdruecken);
    // A capture, promotion or check: the time network weighs such a best move differently.
    bool IstTaktisch(uint32_t zug);

    // Move-order aids before the move loop: they set the frame's hash move.
    void Vorpruefung(Suchrahmen_t* r, int beta, int tiefe);
    void ErstenZugRaten(Suchrahmen_t* r);

    // What making a move changes beyond the position, for taking it back.
    struct Sicherung_t {
        uint32_t irreversibel;
        uint32_t fuenfzig;
    };
    void MacheZug(Suchrahmen_t* kind, uint32_t zug, Sicherung_t& s);
    void NimmZurueck(Suchrahmen_t* kind, const Sicherung_t& s);

    // One move of the move loop, already made legally into the child frame.
    struct Zugzaehler_t {
        int32_t gemacht, schlaege;  // moves and captures counted with this one
        bool erstesKind;            // no child searched yet
        bool killer;
    };
    static constexpr int Beschnitten = -2 * Matt;  // the move was pruned, not searched
    int ZugSuchen(Suchrahmen_t* r, uint32_t zug, const Knotenlage_t& lage, const Zugzaehler_t& z, int a, int b,
                  int beta, int tiefe, int nonPv);

    // Parallel search: offer the rest of the node's moves; true when the split
    // searched them (the node's results are then updated).
    bool Teilen(Suchrahmen_t* r, const Knotenlage_t& lage, int& a, int beta, int& best, int32_t& schranke,
                bool& beschnitten, int tiefe, int nonPv);
    // The shared move loop of a split point; r is this searcher's frame of the node.
    void Teilsuche(Teilungspunkt_t* sp, Suchrahmen_t* r);
    // Joins a split point with work left, runs its loop and leaves; false when it had none.
    // A helping owner passes the least ply its frames allow and the searchers it may help.
    bool Mitarbeiten(Teilungspunkt_t* sp, int mindestPly = 0, uint32_t besitzer = ~0u);
    // The owner, its own moves done: help its workers until the last has left.
    void WarteAufArbeiter(Teilungspunkt_t* sp);
    void DienerKoerper();
    bool SucheArbeit();

    // Key history: the game's keys, then one per ply of the current line.
    void Schiebe(uint64_t schluessel) { stellung.Historie[stellung.historieAnzahl++] = schluessel; }
    void Hole() { --stellung.historieAnzahl; }

    Stellung_t stellung{};
    Suche_t* const haupt = this;
    const int id = 0;
    Hashtabelle_t* tt = &tabelle;
    std::atomic<bool>* stopZeiger = &stop;  // the main searcher's flag
    Teilungspool_t* pool = nullptr;         // set while further searchers exist
    Teilungspunkt_t* aktuellerTp = nullptr;
    std::counting_semaphore<100> angebotSemaphor{0};
    std::atomic<Teilungspunkt_t*> angebot{nullptr};
    std::unique_ptr<Stellung_t> pvStellung = std::make_unique<Stellung_t>();  // scratch for reading lines
    std::unique_ptr<Suchrahmen_t[]> rahmen;
    Hashtabelle_t tabelle;
    std::unique_ptr<Bauerncache_t> bauerncache;
    std::unique_ptr<Materialcache_t> materialcache;
    Historie_t historie;
    // The evaluation network: the built-in one, or a file named by "EvalFile".
    const Bewertungsnetz_t* netz = &EingebautesNetz();
    std::unique_ptr<Bewertungsnetz_t> geladenesNetz;
    std::string netzDatei;

    uint64_t knoten = 0;
    int selTiefe = 0;
    uint32_t wurzelIndex = 0;        // history index of the root key
    uint32_t letzteIrreversibel = 0; // no repetition reaches behind this history index
    uint32_t fuenfzigBasis = 0;      // history index of the last capture or pawn move
    bool zeitPruefen = false;

    Wurzelzug_t wurzel[MaxZuege]{};
    int anzahlWurzel = 0;
    int multiPv = 1;
    int multiPvMarge = 0;
    int vorherigerWert = 0;
    Zug_t vorherigerZug = 0;
    Zug_t besterZug = 0;
    int besterWert = 0;
    bool unendlich = false;
    bool eroeffnung = false;
    bool hashLoeschen = false;
    int hashMb = 3;
    std::string logName;
    Zug_t buchzug = 0;     // the book's answer to this "go", 0 when it has none
    std::string buchInfo;  // the "info string" line that names it

    Zeitkontrolle_t* zeit = nullptr;
    Ausgabe_t* ausgabe = nullptr;
    Zeitnetz_t zeitnetz;
    Zeitlog_t zeitlog;

    std::atomic<uint64_t> teilungen{0};  // split points made in this search, by all threads
    // Bitbase blocks: one cache per thread, filled through the main searcher's
    // shared cache, which reads the files.
    std::unique_ptr<BitbaseCache_t> gemeinsamerCache;
    std::unique_ptr<BitbaseCache_t> bitbaseCache;
    std::atomic<uint64_t> tbTrefferWeitere{0};  // hits of the further searchers, added as they leave
    uint64_t bitbaseMb = 0;
    std::string bitbasePfad = ".";

    std::unique_ptr<Teilungspool_t> eigenerPool;
    std::vector<std::unique_ptr<Suche_t>> weitere;
};
