// The output object under XBoard: moves as "move e2e4", thinking as
// "depth score centiseconds nodes variation", errors as "Error (message): argument".
// When a search ends it hands the move to the adapter, which keeps the game.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "protocol/ausgabe.h"

class Optionen_t;
class XBoardInterface_t;
struct Zeitkontrolle_t;

// What the searcher reported of the search now running; read by the adapter
// ("stat01", the draw and resign decisions).
struct XBoardSuchstand_t {
    int zugNummer = 0;         // the root move now searched
    char zugText[8] = {};
    int letzterWert = 500000;  // 500000: no score yet
    char hinweis[8] = {};      // shown in brackets before the variation
    int zuegeGesamt = 0;       // legal moves of the root position
    int tiefe = 0;             // depth index of the last variation
    uint64_t knoten = 0;
    int64_t suchstart = 0;     // wall clock, ms
};

class XBoardAusgabe_t : public Ausgabe_t {
public:
    explicit XBoardAusgabe_t(Zeitkontrolle_t* zeitkontrolle, std::ostream& aus = std::cout);

    // Reads "NoOutput" only; the silent flag of the base is not consulted.
    bool stumm() const override;
    void fehler(const char* meldung, const char* argument) override;
    void warnung(const char* meldung, const char* argument) override;
    void bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) override;
    void aktuellerZug(const Stellung_t& st, Zug_t zug, int nummer, int hashvoll) override;
    void variante(const Stellung_t& st, const Zug_t* zuege, int anzahl, int wert, int alpha, int beta, int tiefe,
                  int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll, int64_t bitbaseTreffer,
                  bool unterdruecken) override;

    // Before a search: its legal moves and the hint to show; no score, no move yet.
    void NeueSuche(int zuegeGesamt, const char* hinweis);
    XBoardSuchstand_t Stand() const;

    // Held while the option set changes, and while this thread of the search reads it.
    std::mutex& Optionssperre() const { return optionenSperre; }

    const Optionen_t* optionen = nullptr;  // the interpreter's option set, given after construction
    XBoardInterface_t* xboard = nullptr;   // back-pointer to the adapter, given after construction
    Zeitkontrolle_t* zeitkontrolle;
    std::atomic<uint8_t> post{0};     // thinking output on ("post") or off ("nopost")
    std::atomic<uint8_t> analyse{0};  // analyse mode: no "move" lines, the first variation move becomes the hint

private:
    mutable std::mutex standSperre;
    XBoardSuchstand_t stand;
    mutable std::mutex optionenSperre;
};
