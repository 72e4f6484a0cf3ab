// The time-control record: "go" turns the clock values at once into fixed
// limits; the root search asks after each iteration whether to go on and
// inside the search whether to stop at once.
#pragma once

#include <cstdint>

struct Zeitkontrolle_t {
    static constexpr int64_t ZeitUnbegrenzt = 0x007F0000FFFF0000LL;
    static constexpr int64_t KnotenUnbegrenzt = 0x7FFF0000FFFF0000LL;
    static constexpr int32_t TiefeUnbegrenzt = 1000;

    int64_t start = 0;                          // wall clock of the "go", ms
    int64_t ziel = ZeitUnbegrenzt;              // target time, ms
    int64_t iterationsgrenze = ZeitUnbegrenzt;  // no new iteration after this, ms
    int64_t harteGrenze = ZeitUnbegrenzt;       // stop at once, ms
    int64_t knotengrenze = KnotenUnbegrenzt;    // no new iteration after this many nodes
    int64_t harteKnotengrenze = KnotenUnbegrenzt;  // stop at once; only "nodes" writes it
    int32_t tiefengrenze = TiefeUnbegrenzt;     // largest depth index
    uint8_t kurve = 0;       // the flatter allocation curve; no command sets it
    uint8_t zaehlmodus = 0;  // the caller's counter stands in for elapsed time

    // All values 0 when absent. The first case that applies decides:
    // infinite, depth, mate, move time, nodes, clock.
    void setzen(int64_t eigeneZeit, int64_t inkrement, int32_t zuegeBisKontrolle, int32_t tiefe, int64_t knoten,
                int32_t matt, int64_t zugzeit, bool unendlich, bool mitZaehlmodus);

    static int64_t jetzt();
    int64_t verstrichen() const;

    // After a finished iteration: nodes so far, depth index just done, network value x.
    bool weiterIterieren(int64_t knoten, int32_t tiefenindex, double x) const;
    bool sofortStoppen(int64_t knoten) const;
    bool zeitUeberschritten(int64_t zaehler) const;

    // The effective number of moves for g moves to go (g already within 1..99).
    static double EffektiveZuege(int32_t g, bool flacheKurve);
};

// Wall-clock time in milliseconds.
int64_t Millisekunden();
