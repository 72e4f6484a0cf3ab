// The alpha-beta searcher: principal-variation search with a capture search
// beneath it, driven by iterative deepening at the root.
#pragma once

#include <cstdint>
#include <memory>

#include "search/bewertung.h"
#include "search/hashtabelle.h"
#include "search/suchrahmen.h"
#include "search/sucher.h"
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

    void ponderhit() override;
    // One "go": prepare the table, iterate, report, answer with the best move.
    void suchen() override;

    // Figures of the last search, read after it has ended.
    uint64_t Knoten() const { return knoten; }
    Zug_t BesterZug() const { return besterZug; }
    int BesterWert() const { return besterWert; }
    Hashtabelle_t& Tabelle() { return tabelle; }

protected:
    void Uebernehmen() override;

private:
    int Suche(int alpha, int beta, Suchrahmen_t* r, int tiefe, int nonPv);
    // remisGeprueft: the caller has just found the game's draw rules not to apply here.
    int Ruhesuche(int alpha, int beta, Suchrahmen_t* r, int qtiefe, bool remisGeprueft = false);
    int Wurzelsuche(int tiefe, int vorherigerWert);
    int StatischeBewertung(Suchrahmen_t* r);
    bool Remis() const;
    bool Gestoppt();
    void Bereite(const Stellung_t& st);
    void SortiereWurzel(int anzahl);
    // The line from a root move on, read back from the table.
    int Hauptvariante(uint32_t erster, Zug_t* zuege, int max);
    void MeldeVariante(uint32_t zug, int wert, int alpha, int beta, int tiefenindex, bool unterdruecken);
    // A capture, promotion or check: the time network weighs such a best move differently.
    bool IstTaktisch(uint32_t zug);

    // Move picker.
    uint32_t NaechsterZug(Suchrahmen_t* r);
    void SortiereZuege(Suchrahmen_t* r);
    void Vorpruefung(Suchrahmen_t* r, int beta, int tiefe);

    // What making a move changes beyond the position, for taking it back.
    struct Sicherung_t {
        uint32_t irreversibel;
        uint32_t fuenfzig;
    };
    void MacheZug(Suchrahmen_t* kind, uint32_t zug, Sicherung_t& s);
    void NimmZurueck(Suchrahmen_t* kind, const Sicherung_t& s);
    // A quiet move that cut: its history grows with the depth.
    void LobeZug(uint32_t zug, int tiefe);

    // Key history: the game's keys, then one per ply of the current line.
    void Schiebe(uint64_t schluessel) { stellung.Historie[stellung.historieAnzahl++] = schluessel; }
    void Hole() { --stellung.historieAnzahl; }

    Stellung_t stellung{};
    std::unique_ptr<Stellung_t> pvStellung = std::make_unique<Stellung_t>();  // scratch for reading lines
    std::unique_ptr<Suchrahmen_t[]> rahmen;
    Hashtabelle_t tabelle;
    std::unique_ptr<Bauerncache_t> bauerncache;
    std::unique_ptr<Materialcache_t> materialcache;
    int32_t historie[16][64]{};

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

    Zeitkontrolle_t* zeit = nullptr;
    Ausgabe_t* ausgabe = nullptr;
    Zeitnetz_t zeitnetz;
    Zeitlog_t zeitlog;
};
