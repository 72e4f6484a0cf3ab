// The output objects: everything the engine tells the GUI goes through one of them.
//
// Slot order of the virtual operations is fixed: stumm, destructor, zeile,
// fehler, warnung, statistik, bestzug, aktuellerZug, variante, multiPv.
// Scores are in tenths of a centipawn; beyond +-450000 they are mate scores.
#pragma once

#include <atomic>
#include <cstdint>
#include <iostream>
#include <mutex>
#include <string>
#include <string_view>

#include "board/zug.h"

struct Option_t;
class Optionen_t;
struct Zeitkontrolle_t;

class Ausgabe_t {
public:
    explicit Ausgabe_t(std::ostream& aus = std::cout);

    virtual bool stumm() const;  // 0
    virtual ~Ausgabe_t();        // 1
    // 2: one whole line under the lock, flushed; nothing while stumm().
    virtual void zeile(std::string_view text);
    // 3, 4: a message and an optional argument (null when there is none).
    virtual void fehler(const char* meldung, const char* argument) = 0;
    virtual void warnung(const char* meldung, const char* argument) = 0;
    // 5: depth index, selective depth, milliseconds, nodes, hash fill in permille, bitbase hits.
    virtual void statistik(int tiefe, int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll,
                           int64_t bitbaseTreffer);
    // 6: the search result; a ponder move without kind bits means "none".
    virtual void bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) = 0;
    // 7: the root move now searched and its number among the root moves.
    virtual void aktuellerZug(const Stellung_t& st, Zug_t zug, int nummer, int hashvoll);
    // 8: a principal variation.
    virtual void variante(const Stellung_t& st, const Zug_t* zuege, int anzahl, int wert, int alpha, int beta,
                          int tiefe, int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll,
                          int64_t bitbaseTreffer, bool unterdruecken) = 0;
    // 9: one line of a multi-variation report.
    virtual void multiPv(const Stellung_t& st, const Zug_t* zuege, int anzahl, int nummer, int wert, int tiefe);

    std::atomic<bool> schweigen{false};  // set by "quit": no line may follow it
    uint8_t zweitesFlag = 0;

protected:
    std::mutex sperre;
    std::ostream& aus;
};

// Blanks in runs become one blank, so wide printf fields reach the GUI without their fill.
void QuetscheLeerzeichen(std::string& text);

// " score cp N" or " score mate N", then " lowerbound" / " upperbound" against the bounds.
std::string UciWertText(int wert, int alpha, int beta);

// Mate scores as 32767 - plies, others in centipawns.
int XBoardWert(int wert);

// Appends " move" for each move while the line stays below 1000 characters.
void HaengeZuegeAn(std::string& zeile, const Stellung_t& st, const Zug_t* zuege, int anzahl);

class UciAusgabe_t : public Ausgabe_t {
public:
    // Prints the identification, the announced options and "uciok".
    explicit UciAusgabe_t(const Option_t* tabelle, std::ostream& aus = std::cout);

    void fehler(const char*, const char*) override {}
    void warnung(const char*, const char*) override {}
    void statistik(int tiefe, int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll,
                   int64_t bitbaseTreffer) override;
    void bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) override;
    void aktuellerZug(const Stellung_t& st, Zug_t zug, int nummer, int hashvoll) override;
    void variante(const Stellung_t& st, const Zug_t* zuege, int anzahl, int wert, int alpha, int beta, int tiefe,
                  int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll, int64_t bitbaseTreffer,
                  bool unterdruecken) override;
    void multiPv(const Stellung_t& st, const Zug_t* zuege, int anzahl, int nummer, int wert, int tiefe) override;
};

// Test-suite runs: one timing line per search instead of "bestmove", no identification.
class UciTestausgabe_t : public Ausgabe_t {
public:
    explicit UciTestausgabe_t(Zeitkontrolle_t* zeitkontrolle, std::ostream& aus = std::cout);

    void fehler(const char*, const char*) override {}
    void warnung(const char*, const char*) override {}
    void bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) override;
    void variante(const Stellung_t&, const Zug_t*, int, int, int, int, int, int, int64_t, uint64_t, int, int64_t,
                  bool) override {}

    int32_t ergebnisse = 0;
    double sekundenGesamt = 0.0;
    double logSumme = 0.0;  // natural logarithms of the seconds, for the geometric mean
    Zeitkontrolle_t* zeitkontrolle;
};

// Silent: only records what the search found (used by the tools).
class TestAusgabe_t : public Ausgabe_t {
public:
    TestAusgabe_t() = default;

    void zeile(std::string_view) override {}
    void fehler(const char*, const char*) override {}
    void warnung(const char*, const char*) override {}
    void bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) override;
    void variante(const Stellung_t& st, const Zug_t* zuege, int anzahl, int wert, int alpha, int beta, int tiefe,
                  int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll, int64_t bitbaseTreffer,
                  bool unterdruecken) override;

    Zug_t besterZug = 0;
    Zug_t ersterZug = 0;  // first move of the last variation, 0 for an empty one
    int wert = 0;
};

// XBoardAusgabe_t, the XBoard output, lives in protocol/xboard_ausgabe.h.
