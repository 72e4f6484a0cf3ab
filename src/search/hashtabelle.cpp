#include "search/hashtabelle.h"

#include <new>

namespace {

constexpr uint64_t GenerationMaske = 15;
constexpr uint64_t Ersetzungsmaske = 0x0FFFF7F0;  // depth, bound, reserved bit, 127 - nonPvPlies

int TtWert(int wert, int ply) {
    if (wert < -MattGrenze + 1) wert -= ply;
    if (wert >= MattGrenze) wert += ply;
    return wert;
}

}  // namespace

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
    for (uint64_t i = 0; i < indexbereich + 4; ++i) {
        eintraege[i].schluessel.store(0, std::memory_order_relaxed);
        eintraege[i].daten.store(0, std::memory_order_relaxed);
    }
}

bool Hashtabelle_t::probe(uint64_t schluessel, int ply, TtDaten_t& aus) {
    Eintrag_t* e = &eintraege[Bucket(schluessel)];
    for (int i = 0; i < 4; ++i, ++e) {
        if (e->schluessel.load(std::memory_order_relaxed) != schluessel) continue;
        const uint64_t wort = e->daten.load(std::memory_order_relaxed);
        aus = EntpackeTt(wort, ply);
        // A hit makes an old entry current again.
        if ((wort & GenerationMaske) != generation)
            e->daten.store((wort & ~GenerationMaske) | generation, std::memory_order_relaxed);
        return true;
    }
    return false;
}

void Hashtabelle_t::store(uint64_t schluessel, int ply, const TtDaten_t& d) {
    const uint64_t wort = PackeTt(d, ply, generation);
    Eintrag_t* bucket = &eintraege[Bucket(schluessel)];
    Eintrag_t* ziel = nullptr;
    for (int i = 0; i < 4; ++i) {
        if (bucket[i].schluessel.load(std::memory_order_relaxed) == schluessel) {
            ziel = &bucket[i];
            break;
        }
    }
    if (ziel == nullptr) {
        // An entry of an earlier search goes first; among current ones the shallowest,
        // weakest bound and farthest from the principal variation (the later on a tie).
        uint64_t kleinster = ~uint64_t{0};
        for (int i = 0; i < 4; ++i) {
            const uint64_t w = bucket[i].daten.load(std::memory_order_relaxed);
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
    ziel->schluessel.store(schluessel, std::memory_order_relaxed);
    ziel->daten.store(wort, std::memory_order_relaxed);
}

int Hashtabelle_t::hashfull() const {
    if (!eintraege) return 0;
    uint64_t von = 0, bis = indexbereich;
    if (indexbereich > 2200) von = 4, bis = 2004;  // a fixed sample; the first four are skipped
    uint64_t zaehler = 0;
    for (uint64_t i = von; i < bis; ++i)
        zaehler += (eintraege[i].daten.load(std::memory_order_relaxed) & GenerationMaske) == generation;
    return static_cast<int>(zaehler * 1000 / (bis - von));
}

void Hashtabelle_t::resize(uint64_t bytes) {
    if (bytes == angefordert) return;
    eintraege.reset();
    angefordert = bytes;
    uint64_t groesse = bytes < 1600 ? 1600 : bytes;
    for (;;) {
        indexbereich = groesse / 16 - 4;
        // Value-initialised: every key and data word starts at 0.
        eintraege.reset(new (std::nothrow) Eintrag_t[indexbereich + 4]);
        if (eintraege) break;
        groesse -= groesse / 16;  // shrink by a sixteenth until it fits
        if (groesse < 16001) {
            indexbereich = 0;
            return;
        }
    }
    generation = 1;
}
