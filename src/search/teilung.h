// Split points of the parallel search.
//
// A node whose first move has been searched may hand its remaining moves to idle
// searchers: it fills a split point, wakes the waiting searchers, and every
// searcher that joins takes the next move under the split point's lock, searches
// it on its own copy of the position and merges the score back. The owner takes
// part itself and, when its moves run out, helps at the split points of its own
// workers until the last of them has left.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <semaphore>
#include <thread>

#include "board/stellung.h"
#include "board/zug.h"

class Suche_t;
struct Suchrahmen_t;

constexpr int MaxSucher = 32;           // threads of one search, the main searcher included
constexpr int AnzahlTeilungspunkte = 20;
constexpr int MaxArbeiter = 8;          // searchers at one split point, the owner included

// What every move searched from a node needs to know of it.
struct Knotenlage_t {
    bool imSchach;
    int32_t eval;
    Bitboard unsereAngriffe;  // squares the side to move attacks
    Bitboard ihreAngriffe;    // squares the opponent attacks
};

struct Teilungspunkt_t {
    std::mutex sperre;
    // Read without the lock by the pool's choice and by the abort test.
    std::atomic<bool> fertig{true};  // free to be taken
    std::atomic<bool> abbruch{false};
    std::atomic<bool> erschoepft{false};  // its move picker has given the last move
    std::atomic<int> arbeiter{0};    // searchers inside its move loop
    std::atomic<int> tiefe{0};
    std::atomic<int> ply{0};
    std::atomic<int> besitzerId{0};  // the owner, by searcher id
    std::atomic<uint32_t> arbeiterMaske{0};  // every searcher that joined, by id

    // Guarded by the lock.
    Suchrahmen_t* rahmen = nullptr;  // the owner's frame: its move picker is shared
    Teilungspunkt_t* eltern = nullptr;
    Knotenlage_t lage{};
    int32_t alpha = 0, beta = 0, best = 0, schranke = 0, nonPv = 0;
    uint32_t besterZug = 0;
    bool beschnitten = false;
    int32_t zuegeGemacht = 0, schlaegeGemacht = 0, kinderGesucht = 0;
    uint64_t knoten = 0;  // of the workers
    int32_t selTiefe = 0;

    // The node's position and the line state a joining searcher copies.
    Stellung_t stellung;
    uint32_t wurzelIndex = 0, letzteIrreversibel = 0, fuenfzigBasis = 0;

    // The owner waits here for the last worker.
    std::counting_semaphore<100> alleFertig{0};
};

class Teilungspool_t {
public:
    // A split point for a node of this depth (half plies), or nullptr when the
    // pool's rules say no split is worth it. The one taken is cleared.
    Teilungspunkt_t* Nehmen(int tiefe);
    // Hands the split point to every waiting searcher and wakes them.
    void WeckeAlle(Teilungspunkt_t* sp);
    // Registers the searcher as waiting; it then blocks on its own semaphore. False
    // for a searcher that is being ended: it must not wait any more.
    bool Anmelden(Suche_t* sucher);
    // Marks the searcher as ending and removes it from the waiting table (before it
    // is shut down); under the same lock as Anmelden, so it cannot register after this.
    void Abmelden(Suche_t* sucher);

    Teilungspunkt_t punkte[AnzahlTeilungspunkte];

private:
    std::mutex sperre;
    Suche_t* wartende[MaxSucher]{};
    int anzahlWartende = 0;
};

// One step of a spin wait: tells the core that this thread only waits.
inline void Verschnaufen() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#else
    std::this_thread::yield();
#endif
}

// Copies a position with only the used part of its key history.
void KopiereStellung(Stellung_t& ziel, const Stellung_t& quelle);
