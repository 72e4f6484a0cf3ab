// The bitbase block cache: decompressed 512-byte blocks in a hash table of
// chains kept in most-recently-used order, all entries made when the cache is
// sized so that lookups never allocate. A miss loads the block through the
// `Blockquelle` (the cache itself, or the shared cache that reads the files for
// every search thread).
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "bitbase/blockformat.h"

struct BitbaseBlock_t {
    uint64_t schluessel;          // block number · 512: the byte index of the block's first byte
    BitbaseBlock_t* naechster;    // next entry of the chain, or of the free list
    uint32_t stempel;             // use counter at the last use
    char name[7];                 // signature, zero-terminated
    uint8_t daten[BlockBytes];
};
static_assert(sizeof(BitbaseBlock_t) == 544, "an entry is budgeted at 544 bytes");

class BitbaseCache_t {
public:
    explicit BitbaseCache_t(uint64_t groesse, BitbaseCache_t* blockquelle = nullptr);
    virtual ~BitbaseCache_t();
    BitbaseCache_t(const BitbaseCache_t&) = delete;
    BitbaseCache_t& operator=(const BitbaseCache_t&) = delete;

    // Fills the entry's data from the file named by its signature along the path.
    virtual bool LadeBlock(BitbaseBlock_t& eintrag);
    // The position probe. Type lists are zero-terminated piece type codes
    // (1 pawn .. 6 king), king first; square lists parallel; epFeld < 1 = none.
    // ergebnis: +1 white wins, -1 black wins, 0 neither. True when found.
    virtual bool Abfrage(const int* weissTypen, const int* schwarzTypen, const int* weissFelder,
                         const int* schwarzFelder, int amZug, int epFeld, bool nurImCache, int& ergebnis);

    // Same size: nothing happens. Else all blocks go; 1..1704 count as 1704.
    void SetzeGroesse(uint64_t groesse);
    // Bit `index` of the signature `name`: 1, 0, or -1 when not known.
    int HoleBit(const char* name, uint64_t index, bool nurImCache);
    void SetzePfad(const std::string& neuerPfad) { pfad = neuerPfad; }
    const std::string& Pfad() const { return pfad; }

    int MaxSteine() const { return maxSteine.load(std::memory_order_relaxed); }
    uint32_t Treffer() const { return treffer; }
    void ZaehleTreffer() { ++treffer; }
    void SetzeTreffer(uint32_t n) { treffer = n; }
    uint64_t Groesse() const { return groesse; }
    uint64_t Eintraege() const { return eintragAnzahl; }
    uint64_t Buckets() const { return bucketAnzahl; }
    BitbaseCache_t* Blockquelle() { return quelle; }

    // For tests: the entry first in the chain of this block, or nullptr.
    const BitbaseBlock_t* ErsterImBucket(const char* name, uint64_t index) const;

private:
    BitbaseBlock_t* Nehmen(uint64_t heim);
    int Verpasst(const char* name, uint64_t schluessel, uint64_t heim, uint64_t index, bool nurImCache);

    std::unique_ptr<BitbaseBlock_t*[]> buckets;
    std::unique_ptr<BitbaseBlock_t[]> eintraege;
    BitbaseBlock_t* frei = nullptr;
    uint64_t groesse = 0;
    uint64_t bucketAnzahl = 0;
    uint64_t eintragAnzahl = 0;
    uint32_t treffer = 0;
    // Lowered by the loads of every thread that uses this cache as its source.
    std::atomic<int32_t> maxSteine{0};
    uint32_t zaehler = 0;
    std::string pfad = ".";
    BitbaseCache_t* quelle;
};

// Sizes of the shared cache and of each search thread's own cache from the
// "BitbaseCache" option (MB) and the number of search threads.
struct BitbaseCacheGroessen_t {
    uint64_t gemeinsam, jeThread;
};
BitbaseCacheGroessen_t BitbaseCacheGroessen(uint64_t megabytes, int threads);
