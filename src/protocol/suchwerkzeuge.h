// The search tools of the command line: the fixed-depth benchmark, the
// test-position runner and the best-move writer.
#pragma once

#include <cstdint>
#include <memory>
#include <ostream>

#include "board/zug.h"
#include "protocol/ausgabe.h"
#include "timing/zeitkontrolle.h"

class Suche_t;
class Optionen_t;

// One search at a time on a private searcher with silent output, for the tools
// and the tests: the caller waits for the result.
class Werkzeugsuche_t {
public:
    Werkzeugsuche_t();
    ~Werkzeugsuche_t();

    // Depth, milliseconds, mate or nodes as "go" takes them (0 when absent); the best move.
    Zug_t Suche(const Stellung_t& st, int tiefe, int64_t millisekunden, int matt, int64_t knoten = 0);
    // The same without waiting; Stoppe ends the search and gives its move.
    void Starte(const Stellung_t& st, int tiefe, int64_t millisekunden, int matt, int64_t knoten = 0);
    Zug_t Stoppe();
    // Split points the last search made (0 on one thread).
    uint64_t Teilungen() const;
    // Bitbase probes with a result in the last search.
    uint64_t TbTreffer() const;
    int Wert() const { return ausgabe.wert; }
    uint64_t Knoten() const;
    // Clears the table at the next search.
    void NeuesSpiel();
    // A "setoption" line.
    void Setze(const char* befehl);

private:
    std::unique_ptr<Suche_t> suche;
    std::unique_ptr<Optionen_t> optionen;
    Zeitkontrolle_t zeit;
    TestAusgabe_t ausgabe;
};

// "bench": a fixed list of positions to a fixed depth on one thread; the last
// line is "N nodes M nps". The node count is the signature of the search.
// "bench DEPTH THREADS" times the parallel search (its node count varies).
constexpr int BenchTiefe = 11;
int Bench(std::ostream& aus, int tiefe = BenchTiefe, int threads = 1);

// "--Testpos file": each EPD position with its "bm" moves is searched; one line
// "<position> bm <move>" each (" (not found)" when the move is not among them),
// then the number solved. KELVARAN_TESTZEIT sets the milliseconds per position.
int Testpos(const char* datei, std::ostream& aus);

// "--CSVN in out": every position of `in` is written to `out` with the engine's
// best move as "<position> bm <move>".
int Csvn(const char* eingabe, const char* ausgabe, std::ostream& aus);
