// Bitbase files as the cache loads them and the dump explains them, and single
// compressed blocks as the decoder reads them.
#include <algorithm>
#include <cstring>
#include <string>

#include "bitbase/bitbasecache.h"
#include "bitbase/blockformat.h"
#include "bitbase/erklaeren.h"
#include "bitbase/index.h"
#include "bitbase/kompressor.h"
#include "fuzz_hilfen.h"
#include "fuzz_ziele.h"

namespace {

// Small signatures, so that the index and the blocks lie within a short input.
const char* const Signaturen[] = {"KDK", "KTK", "KBK", "KLSK"};
constexpr int MaxBloecke = 24;
constexpr uint64_t CacheBytes = 4 * 1704;  // a few entries, so that eviction happens too

}  // namespace

// Byte 0 chooses the signature, the rest is its file.
int FuzzBitbase(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    if (groesse < 1) return 0;
    fuzz::Leeren();
    const char* name = Signaturen[daten[0] % (sizeof Signaturen / sizeof Signaturen[0])];
    fuzz::Datei(std::string(name) + ".kbb", daten + 1, groesse - 1);

    BitbaseCache_t cache(CacheBytes);
    cache.SetzePfad(fuzz::Verzeichnis());
    const uint64_t positionen = AnzahlPositionen(name);
    const uint64_t bloecke = (positionen + 4095) / 4096;
    for (uint64_t k = 0; k < bloecke && k < MaxBloecke; ++k) {
        const uint64_t index = std::min(positionen - 1, k * 4096 + (k * 1237) % 4096);
        const int bit = cache.HoleBit(name, index, false);
        FUZZ_PRUEFEN(bit >= -1 && bit <= 1);
        // A block just loaded is the first of its chain: asked again it answers alike.
        if (bit >= 0) FUZZ_PRUEFEN(cache.HoleBit(name, index, true) == bit);
    }
    ErklaereBitbase((fuzz::Verzeichnis() + "/" + name).c_str());
    return 0;
}

// One stored block: decoded, explained code by code, and what it decodes to
// packed again and decoded back.
int FuzzBlock(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    uint8_t aus[BlockBytes];
    size_t verbraucht = 0;
    const bool ok = BlockEntpacken(daten, groesse, aus, &verbraucht);
    std::string text;
    FUZZ_PRUEFEN(BlockErklaeren(daten, groesse, text) == ok);
    if (!ok) return 0;
    FUZZ_PRUEFEN(verbraucht <= groesse);
    GepackterBlock_t gepackt;
    BlockPacken(aus, nullptr, gepackt);
    FUZZ_PRUEFEN(std::memcmp(gepackt.inhalt, aus, BlockBytes) == 0);
    if (gepackt.art == GepackterBlock_t::Komprimiert) {
        uint8_t zurueck[BlockBytes];
        FUZZ_PRUEFEN(BlockEntpacken(gepackt.daten, static_cast<size_t>(gepackt.laenge), zurueck));
        FUZZ_PRUEFEN(std::memcmp(zurueck, aus, BlockBytes) == 0);
    }
    return 0;
}
