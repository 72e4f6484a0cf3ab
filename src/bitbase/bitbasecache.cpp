#include "bitbase/bitbasecache.h"

#include <cstdio>
#include <cstring>
#include <new>

namespace {

constexpr uint64_t MindestGroesse = 1704;  // three entries, two buckets
constexpr uint64_t BytesJeEintrag = 568;   // 544 for the entry, room for half a bucket pointer
constexpr int GanzeSteine = 6;

// Length of a signature name that fits an entry, or -1.
inline int NamensLaenge(const char* name) {
    int n = 0;
    while (name[n] != '\0') {
        if (++n > 6) return -1;
    }
    return n;
}

inline uint64_t Streuwert(const char* name, uint64_t block) {
    static constexpr uint64_t Gewicht[8] = {290557, 179573, 110989, 68597, 42391, 26203, 16193, 10007};
    uint64_t h = block * 470131;
    for (int i = 0; name[i] != '\0'; ++i) h += static_cast<uint64_t>(static_cast<int64_t>(static_cast<int8_t>(name[i]))) * Gewicht[i];
    return h;
}

// Closes the file on every way out of a load.
struct Datei_t {
    std::FILE* f = nullptr;
    ~Datei_t() {
        if (f != nullptr) std::fclose(f);
    }
    bool Lies(uint64_t offset, uint8_t* ziel, size_t n) const {
        return std::fseek(f, static_cast<long>(offset), SEEK_SET) == 0 && std::fread(ziel, 1, n, f) == n;
    }
};

}  // namespace

BitbaseCache_t::BitbaseCache_t(uint64_t neueGroesse, BitbaseCache_t* blockquelle)
    : quelle(blockquelle != nullptr ? blockquelle : this) {
    SetzeGroesse(neueGroesse);
}

BitbaseCache_t::~BitbaseCache_t() = default;

void BitbaseCache_t::SetzeGroesse(uint64_t neueGroesse) {
    if (neueGroesse > 0 && neueGroesse < MindestGroesse) neueGroesse = MindestGroesse;
    if (neueGroesse == groesse) return;
    buckets.reset();
    eintraege.reset();
    frei = nullptr;
    groesse = 0;
    bucketAnzahl = eintragAnzahl = 0;
    maxSteine.store(0, std::memory_order_relaxed);
    if (neueGroesse == 0) return;

    const uint64_t anzahl = neueGroesse / BytesJeEintrag;
    uint64_t b = 1;
    while (b <= neueGroesse / (2 * BytesJeEintrag)) b <<= 1;
    // Too big for memory: the cache stays without storage and answers "not known".
    eintraege.reset(new (std::nothrow) BitbaseBlock_t[anzahl]);
    buckets.reset(new (std::nothrow) BitbaseBlock_t*[b]());
    if (eintraege == nullptr || buckets == nullptr) {
        eintraege.reset();
        buckets.reset();
        return;
    }
    groesse = neueGroesse;
    eintragAnzahl = anzahl;
    bucketAnzahl = b;
    for (uint64_t i = anzahl; i-- > 0;) {
        eintraege[i].naechster = frei;
        frei = &eintraege[i];
    }
    maxSteine.store(GanzeSteine, std::memory_order_relaxed);
}

int BitbaseCache_t::HoleBit(const char* name, uint64_t index, bool nurImCache) {
    if (eintragAnzahl == 0 || NamensLaenge(name) <= 0) return -1;
    const uint64_t block = index >> 12;
    const uint64_t schluessel = block * BlockBytes;
    const uint64_t heim = Streuwert(name, block) & (bucketAnzahl - 1);
    BitbaseBlock_t* vorgaenger = nullptr;
    for (BitbaseBlock_t* e = buckets[heim]; e != nullptr; vorgaenger = e, e = e->naechster) {
        if (e->schluessel != schluessel || std::strcmp(e->name, name) != 0) continue;
        // Most recently used first: the chain end is the eviction candidate.
        if (vorgaenger != nullptr) {
            vorgaenger->naechster = e->naechster;
            e->naechster = buckets[heim];
            buckets[heim] = e;
        }
        e->stempel = ++zaehler;
        return (e->daten[(index >> 3) - schluessel] >> (index & 7)) & 1;
    }
    return Verpasst(name, schluessel, heim, index, nurImCache);
}

int BitbaseCache_t::Verpasst(const char* name, uint64_t schluessel, uint64_t heim, uint64_t index, bool nurImCache) {
    if (nurImCache) return -1;
    BitbaseBlock_t* e = Nehmen(heim);
    std::strcpy(e->name, name);
    e->schluessel = schluessel;
    e->naechster = nullptr;
    if (!quelle->LadeBlock(*e)) {
        e->naechster = frei;
        frei = e;
        return -1;
    }
    e->naechster = buckets[heim];
    buckets[heim] = e;
    e->stempel = ++zaehler;
    return (e->daten[(index >> 3) - schluessel] >> (index & 7)) & 1;
}

BitbaseBlock_t* BitbaseCache_t::Nehmen(uint64_t heim) {
    if (frei != nullptr) {
        BitbaseBlock_t* e = frei;
        frei = e->naechster;
        return e;
    }
    // The oldest of the chain ends of the next seven non-empty buckets (the
    // home bucket comes last); all entries are in chains, so one exists.
    const uint64_t maske = bucketAnzahl - 1;
    uint64_t besterBucket = 0;
    BitbaseBlock_t* bester = nullptr;
    BitbaseBlock_t* besterVorgaenger = nullptr;
    uint32_t besteAlter = 0;
    int gesehen = 0;
    for (uint64_t i = 1; i <= bucketAnzahl && gesehen < 7; ++i) {
        const uint64_t b = (heim + i) & maske;
        BitbaseBlock_t* e = buckets[b];
        if (e == nullptr) continue;
        ++gesehen;
        BitbaseBlock_t* vorgaenger = nullptr;
        while (e->naechster != nullptr) vorgaenger = e, e = e->naechster;
        const uint32_t alter = zaehler - e->stempel;
        if (bester == nullptr || alter > besteAlter) {
            bester = e, besterVorgaenger = vorgaenger, besterBucket = b, besteAlter = alter;
        }
    }
    if (besterVorgaenger != nullptr) {
        besterVorgaenger->naechster = nullptr;
    } else {
        buckets[besterBucket] = nullptr;
    }
    return bester;
}

const BitbaseBlock_t* BitbaseCache_t::ErsterImBucket(const char* name, uint64_t index) const {
    if (eintragAnzahl == 0) return nullptr;
    return buckets[Streuwert(name, index >> 12) & (bucketAnzahl - 1)];
}

bool BitbaseCache_t::LadeBlock(BitbaseBlock_t& eintrag) {
    // The first directory of the path that holds the file; nothing stays open.
    Datei_t datei;
    char pfadname[4096];
    const size_t nameLaenge = std::strlen(eintrag.name);
    size_t anfang = 0;
    while (datei.f == nullptr) {
        size_t ende = pfad.find(';', anfang);
        if (ende == std::string::npos) ende = pfad.size();
        const size_t laenge = ende - anfang;
        if (laenge + nameLaenge + 6 <= sizeof pfadname) {
            std::memcpy(pfadname, pfad.data() + anfang, laenge);
            pfadname[laenge] = '/';
            std::memcpy(pfadname + laenge + 1, eintrag.name, nameLaenge);
            std::memcpy(pfadname + laenge + 1 + nameLaenge, ".kbb", 5);
            datei.f = std::fopen(pfadname, "rb");
        }
        if (ende == pfad.size()) break;
        anfang = ende + 1;
    }
    if (datei.f == nullptr) {
        // Probes of this many men are pointless until the next resize.
        const int32_t steine = static_cast<int32_t>(nameLaenge) - 1;
        if (steine < maxSteine.load(std::memory_order_relaxed)) maxSteine.store(steine, std::memory_order_relaxed);
        return false;
    }
    std::setvbuf(datei.f, nullptr, _IONBF, 0);

    const uint64_t block = eintrag.schluessel / BlockBytes;
    uint8_t e[IndexEintragBytes];
    if (!datei.Lies(block * IndexEintragBytes, e, IndexEintragBytes)) return false;
    if (IstFuellEintrag(e)) {
        std::memset(eintrag.daten, e[0], BlockBytes);
        return true;
    }
    const int l = e[4];
    if (l == 0) return datei.Lies(EintragOffset(e), eintrag.daten, BlockBytes);
    uint8_t puffer[3 * 255 - 248];
    const size_t n = static_cast<size_t>(LeseLaenge(l));
    return datei.Lies(EintragOffset(e), puffer, n) && BlockEntpacken(puffer, n, eintrag.daten);
}

BitbaseCacheGroessen_t BitbaseCacheGroessen(uint64_t megabytes, int threads) {
    const uint64_t gesamt = megabytes << 20;
    const uint64_t t = threads > 32 ? 32 : (threads < 1 ? 1 : static_cast<uint64_t>(threads));
    if (gesamt == 0) return {0, 0};
    if (t <= 1) return {MindestGroesse, gesamt >= 2 * MindestGroesse ? gesamt - MindestGroesse : MindestGroesse};
    uint64_t jeThread = gesamt / (t + 3);
    const uint64_t obergrenze = gesamt / (10 * t - 3) + 56800;
    if (obergrenze < jeThread) jeThread = obergrenze;
    uint64_t gemeinsam = gesamt - t * jeThread;
    if (gemeinsam < MindestGroesse) gemeinsam = MindestGroesse;
    if (jeThread < MindestGroesse) jeThread = MindestGroesse;
    return {gemeinsam, jeThread};
}
