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

// The bytes a table may take on this machine: its physical memory less a margin for
// everything else (a quarter, at least 512 MB, at most half); no limit when the system
// does not say.
uint64_t SpeicherObergrenze();

class Hashtabelle_t {
public:
    // Plain words read and written through atomic_ref: the array can then come zeroed
    // from the system, page by page as it is first touched, instead of being cleared by hand.
    struct Eintrag_t {
        uint64_t schluessel;
        uint64_t daten;
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
    // Same byte count as last time: nothing happens, the contents stay. A size beyond
    // `obergrenze` fails like an allocation the system refuses: the table shrinks.
    void resize(uint64_t bytes, uint64_t obergrenze = SpeicherObergrenze());

    // Bucket start: the key's high half scaled onto the index range.
    uint64_t Bucket(uint64_t schluessel) const { return ((schluessel >> 32) * indexbereich) >> 32; }
    void Vorladen(uint64_t schluessel) const { __builtin_prefetch(&eintraege[Bucket(schluessel)]); }

private:
    struct Freigabe_t {
        void operator()(Eintrag_t* p) const;
    };
    std::unique_ptr<Eintrag_t[], Freigabe_t> eintraege;
    uint64_t indexbereich = 0;       // entries - 4
    uint64_t angefordert = 0;        // bytes last asked for
    uint32_t generation = 1;
};
