// The searcher thread wrapper shared by every kind of searcher.
//
// Each searcher runs on a thread of its own, so the input thread stays free to
// read "stop" and "ponderhit" while the engine thinks. A "go" wakes the thread
// through the start semaphore, the thread acknowledges, and the idle semaphore
// is held for as long as the search runs.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <pthread.h>
#include <semaphore>

#include "board/stellung.h"
#include "board/zug.h"

class Ausgabe_t;
class Optionen_t;
struct Zeitkontrolle_t;

// Start flags of a search.
enum : unsigned { StartPonder = 1, StartZweiterModus = 2, StartDebug = 4 };

// Everything one "go" hands to the searcher.
struct Suchauftrag_t {
    Stellung_t stellung;            // with the key history of the game
    Optionen_t* optionen = nullptr;
    unsigned flags = 0;
    bool unendlich = false;    // "infinite": no answer before "stop"
    Zeitkontrolle_t* zeit = nullptr;
    Ausgabe_t* ausgabe = nullptr;
    uint32_t wurzelzuege[MaxZuege];  // the legal root moves, after searchmoves/excludemoves
    int anzahlWurzelzuege = 0;
};

class Sucher_t {
public:
    Sucher_t();
    // Slot 0: wait for a start, search, signal idle; until told to terminate.
    virtual void Threadkoerper();
    // Slot 1. A derived searcher shuts the thread down in its own destructor.
    virtual ~Sucher_t();
    // Slot 2: the end of pondering.
    virtual void ponderhit();
    // Slot 3: one search, run on the searcher's thread once per "go".
    virtual void suchen() = 0;

    // Creates the thread with a stack of 1,024,000 bytes.
    bool Starten();
    // Hands over the input, wakes the thread and returns once it has taken the start.
    void Go(const Suchauftrag_t& auftrag);
    // Ends a running search and returns when it has ended.
    void Stop();
    // Returns when no search is running.
    void WarteBisUntaetig();
    // A search runs (or is about to start) right now.
    bool Sucht();
    // The running search ends only on "stop": it ponders or is infinite.
    bool EndetNurAufStop() const {
        return ponder.load(std::memory_order_relaxed) || ohneEnde.load(std::memory_order_relaxed);
    }
    // Stops and ends the thread; true when it ended normally.
    bool Herunterfahren();

    std::atomic<bool> stop{false};
    std::atomic<bool> ponder{false};
    std::atomic<bool> terminieren{false};
    uint8_t weiteresFlag = 0;

protected:
    // Runs on the caller's thread inside Go, after the input is handed over and
    // before the search thread wakes: the place to read the options without racing
    // a later "setoption".
    virtual void Uebernehmen() {}
    // Sleeps in steps of 20 ms while the ponder flag is set.
    void WarteWaehrendPonder();

    std::unique_ptr<Suchauftrag_t> auftrag;

private:
    static void* Einstieg(void* sucher);

    std::atomic<bool> ohneEnde{false};  // the last "go" was infinite
    std::counting_semaphore<100> startSemaphor{0};
    std::counting_semaphore<100> quittungSemaphor{0};
    std::counting_semaphore<100> untaetigSemaphor{1};
    pthread_t thread{};
    bool laeuft = false;
};
