#include "search/hashtabelle.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace {

constexpr uint64_t GenerationMaske = 15;
constexpr uint64_t Ersetzungsmaske = 0x0FFFF7F0;  // depth, bound, reserved bit, 127 - nonPvPlies
constexpr uint64_t Mindestrand = 512ull << 20;

// Every thread reads and writes the words without a lock; a torn pair of key and data
// is accepted (the search checks a table move before it plays it).
uint64_t Lade(uint64_t& wort) { return std::atomic_ref<uint64_t>(wort).load(std::memory_order_relaxed); }
void Schreibe(uint64_t& wort, uint64_t wert) { std::atomic_ref<uint64_t>(wort).store(wert, std::memory_order_relaxed); }

// Zeroed memory: large blocks come straight from the system, whose pages are zero and
// cost nothing until they are touched.
Hashtabelle_t::Eintrag_t* NeuesFeld(uint64_t eintraege) {
    return static_cast<Hashtabelle_t::Eintrag_t*>(std::calloc(eintraege, sizeof(Hashtabelle_t::Eintrag_t)));
}

int TtWert(int wert, int ply) {
    if (wert < -MattGrenze + 1) wert -= ply;
    if (wert >= MattGrenze) wert += ply;
    return wert;
}

}  // namespace

uint64_t SpeicherObergrenze() {
    const long seiten = sysconf(_SC_PHYS_PAGES), seite = sysconf(_SC_PAGE_SIZE);
    if (seiten <= 0 || seite <= 0) return ~uint64_t{0};
    const uint64_t physisch = static_cast<uint64_t>(seiten) * static_cast<uint64_t>(seite);
    const uint64_t rand = std::min(std::max(physisch / 4, Mindestrand), physisch / 2);
    return physisch - rand;
}

void Hashtabelle_t::Freigabe_t::operator()(Eintrag_t* p) const { std::free(p); }

uint64_t PackeTt(const TtDaten_t& d, int ply, unsigned generation) {
    int wert = TtWert(d.wert, ply) + Matt;
    if (wert < 0) wert = 0;
    if (wert > 0xFFFFF) wert = 0xFFFFF;
    int tiefe = d.tiefe < 0 ? 0 : (d.tiefe > 8191 ? 8191 : d.tiefe);
    int abstand = d.nonPvPlies < 0 ? 0 : (d.nonPvPlies > 127 ? 127 : d.nonPvPlies);
    return (generation & GenerationMaske) | static_cast<uint64_t>(127 - abstand) << 4 |
           static_cast<uint64_t>(d.drohung & DrohungsBit) | static_cast<uint64_t>(d.schranke & 0x6000) |
           static_cast<uint64_t>(tiefe) << 15 | static_cast<uint64_t>(d.zug & 0xffff) << 28 |
           static_cast<uint64_t>(wert) << 44;
}

TtDaten_t EntpackeTt(uint64_t wort, int ply) {
    TtDaten_t d;
    int wert = static_cast<int>(wort >> 44) - Matt;
    if (wert < -MattGrenze + 1) wert += ply;
    if (wert >= MattGrenze) wert -= ply;
    d.wert = wert;
    d.tiefe = static_cast<int32_t>((wort >> 15) & 8191);
    d.nonPvPlies = 127 - static_cast<int32_t>((wort >> 4) & 127);
    d.schranke = static_cast<int32_t>(wort & 0x6000);
    d.zug = static_cast<int32_t>((wort >> 28) & 0xffff);
    d.drohung = static_cast<int32_t>(wort & DrohungsBit);
    return d;
}

void Hashtabelle_t::clear() {
    generation = 1;
    if (!eintraege) return;
    // A fresh zeroed array instead of writing zeros over every page of the old one.
    if (Eintrag_t* frisch = NeuesFeld(indexbereich + 4)) {
        eintraege.reset(frisch);
        return;
    }
    std::memset(static_cast<void*>(eintraege.get()), 0, (indexbereich + 4) * sizeof(Eintrag_t));
}

bool Hashtabelle_t::probe(uint64_t schluessel, int ply, TtDaten_t& aus) {
    Eintrag_t* e = &eintraege[Bucket(schluessel)];
    for (int i = 0; i < 4; ++i, ++e) {
        if (Lade(e->schluessel) != schluessel) continue;
        const uint64_t wort = Lade(e->daten);
        aus = EntpackeTt(wort, ply);
        // A hit makes an old entry current again.
        if ((wort & GenerationMaske) != generation)
            Schreibe(e->daten, (wort & ~GenerationMaske) | generation);
        return true;
    }
    return false;
}

void Hashtabelle_t::store(uint64_t schluessel, int ply, const TtDaten_t& d) {
    const uint64_t wort = PackeTt(d, ply, generation);
    Eintrag_t* bucket = &eintraege[Bucket(schluessel)];
    Eintrag_t* ziel = nullptr;
    for (int i = 0; i < 4; ++i) {
        if (Lade(bucket[i].schluessel) == schluessel) {
            ziel = &bucket[i];
            break;
        }
    }
    if (ziel == nullptr) {
        // An entry of an earlier search goes first; among current ones the shallowest,
        // weakest bound and farthest from the principal variation (the later on a tie).
        uint64_t kleinster = ~uint64_t{0};
        for (int i = 0; i < 4; ++i) {
            const uint64_t w = Lade(bucket[i].daten);
            if ((w & GenerationMaske) != generation) {
                ziel = &bucket[i];
                break;
            }
            const uint64_t rang = w & Ersetzungsmaske;
            if (rang <= kleinster) {
                kleinster = rang;
                ziel = &bucket[i];
            }
        }
    }
    Schreibe(ziel->schluessel, schluessel);
    Schreibe(ziel->daten, wort);
}

int Hashtabelle_t::hashfull() const {
    if (!eintraege) return 0;
    uint64_t von = 0, bis = indexbereich;
    if (indexbereich > 2200) von = 4, bis = 2004;  // a fixed sample; the first four are skipped
    uint64_t zaehler = 0;
    for (uint64_t i = von; i < bis; ++i)
        zaehler += (Lade(eintraege[i].daten) & GenerationMaske) == generation;
    return static_cast<int>(zaehler * 1000 / (bis - von));
}

void Hashtabelle_t::resize(uint64_t bytes, uint64_t obergrenze) {
    if (bytes == angefordert) return;
    eintraege.reset();
    indexbereich = 0;
    angefordert = bytes;
    uint64_t groesse = bytes < 1600 ? 1600 : bytes;
    for (;;) {
        // More than the machine can hold would be granted by an overcommitting system
        // and fail only when the pages are touched: it is refused here instead.
        if (groesse <= obergrenze) {
            indexbereich = groesse / 16 - 4;
            eintraege.reset(NeuesFeld(indexbereich + 4));
            if (eintraege) break;
        }
        groesse -= groesse / 16;  // shrink by a sixteenth until it fits
        if (groesse < 16001) {
            indexbereich = 0;
            return;
        }
    }
    generation = 1;
}
