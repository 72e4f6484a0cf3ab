// The transposition table: per position key one packed 64-bit record of the
// last search result, in buckets of four entries shared by all search threads
// without locks.
//
// Data word, bit 0 lowest:
//   0-3 generation, 4-10 127 - nonPvPlies, 11 mate threat, 12 reserved (0),
//   13-14 bound (0 upper, 1 lower, 2 exact), 15-27 depth in half plies,
//   28-43 move, 44-63 score + 500000 (mate scores relative to the node).
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

constexpr int Matt = 500000;
constexpr int MattGrenze = 450000;  // at or beyond this, a score is a mate score

enum Schranke : int32_t { SchrankeOben = 0, SchrankeUnten = 8192, SchrankeExakt = 16384 };
constexpr int32_t DrohungsBit = 2048;

struct TtDaten_t {
    int32_t wert = 0;
    int32_t tiefe = 0;
    int32_t nonPvPlies = 0;
    int32_t schranke = SchrankeOben;  // 0, 8192, 16384
    int32_t zug = 0;
    int32_t drohung = 0;              // 0 or 2048
};

// Mate scores travel relative to the node: packing adds the distance from the
// root, unpacking takes it off again.
uint64_t PackeTt(const TtDaten_t& d, int ply, unsigned generation);
TtDaten_t EntpackeTt(uint64_t wort, int ply);

class Hashtabelle_t {
public:
    struct Eintrag_t {
        std::atomic<uint64_t> schluessel{0};
        std::atomic<uint64_t> daten{0};
    };

    Hashtabelle_t() = default;
    Hashtabelle_t(const Hashtabelle_t&) = delete;
    Hashtabelle_t& operator=(const Hashtabelle_t&) = delete;

    bool Vorhanden() const { return eintraege != nullptr; }
    uint64_t Indexbereich() const { return indexbereich; }

    void clear();
    void nextGeneration() { generation = (generation + 1) & 15; }
    bool probe(uint64_t schluessel, int ply, TtDaten_t& aus);
    void store(uint64_t schluessel, int ply, const TtDaten_t& d);
    int hashfull() const;
    // Same byte count as last time: nothing happens, the contents stay.
    void resize(uint64_t bytes);

    // Bucket start: the key's high half scaled onto the index range.
    uint64_t Bucket(uint64_t schluessel) const { return ((schluessel >> 32) * indexbereich) >> 32; }
    void Vorladen(uint64_t schluessel) const { __builtin_prefetch(&eintraege[Bucket(schluessel)]); }

private:
    std::unique_ptr<Eintrag_t[]> eintraege;
    uint64_t indexbereich = 0;       // entries - 4
    uint64_t angefordert = 0;        // bytes last asked for
    uint32_t generation = 1;
};
