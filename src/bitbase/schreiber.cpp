#include "bitbase/schreiber.h"

#include <cstdio>
#include <cstring>
#include <unordered_map>

#include "bitbase/blockformat.h"
#include "bitbase/kompressor.h"

namespace {

struct DateiZu_t {
    std::FILE* f = nullptr;
    ~DateiZu_t() {
        if (f != nullptr) std::fclose(f);
    }
};

// The block's bits and mask; bits past the last position do not matter.
void HoleBlock(const uint8_t* bits, const uint8_t* egal, uint64_t positionen, uint64_t block, uint8_t* b,
               uint8_t* m) {
    const uint64_t bytes = (positionen + 7) / 8;
    const uint64_t anfang = block * BlockBytes;
    const uint64_t n = bytes - anfang < BlockBytes ? bytes - anfang : BlockBytes;
    std::memcpy(b, bits + anfang, n);
    std::memset(b + n, 0, BlockBytes - n);
    if (egal != nullptr) {
        std::memcpy(m, egal + anfang, n);
    } else {
        std::memset(m, 0, n);
    }
    std::memset(m + n, 0xFF, BlockBytes - n);
    if (anfang + n == bytes && (positionen & 7) != 0) m[n - 1] |= static_cast<uint8_t>(0xFF << (positionen & 7));
}

// Two independent 64-bit hashes: equal contents are shared only when both agree.
struct Fingerabdruck_t {
    uint64_t a, b;
    bool operator==(const Fingerabdruck_t&) const = default;
};
Fingerabdruck_t Abdruck(const uint8_t* d) {
    uint64_t a = 0x9E3779B97F4A7C15ull, b = 0xC2B2AE3D27D4EB4Full;
    for (int i = 0; i < BlockBytes; i += 8) {
        uint64_t w;
        std::memcpy(&w, d + i, 8);
        a = (a ^ w) * 0x100000001B3ull;
        a ^= a >> 29;
        b = (b + w) * 0xFF51AFD7ED558CCDull;
        b ^= b >> 31;
    }
    return {a, b};
}

struct Gespeichert_t {
    Fingerabdruck_t abdruck;
    uint32_t offset;
    uint8_t laengenCode;
};

bool Passt(const uint8_t* inhalt, const uint8_t* b, const uint8_t* m) {
    for (int i = 0; i < BlockBytes; ++i)
        if (((inhalt[i] ^ b[i]) & ~m[i]) != 0) return false;
    return true;
}

void Eintrag(uint8_t* e, uint32_t offset, uint8_t l) {
    e[0] = static_cast<uint8_t>(offset), e[1] = static_cast<uint8_t>(offset >> 8);
    e[2] = static_cast<uint8_t>(offset >> 16), e[3] = static_cast<uint8_t>(offset >> 24);
    e[4] = l;
}

bool SchreibeDaten(const std::string& tmp, const uint8_t* bits, const uint8_t* egal, uint64_t positionen,
                   uint64_t& dateigroesse) {
    DateiZu_t datei;
    datei.f = std::fopen(tmp.c_str(), "wb");
    if (datei.f == nullptr) return false;
    const uint64_t bloecke = (positionen + BlockPositionen - 1) / BlockPositionen;
    std::vector<uint8_t> index(bloecke * IndexEintragBytes, 0);
    if (std::fwrite(index.data(), 1, index.size(), datei.f) != index.size()) return false;

    uint64_t offset = index.size();
    uint64_t lesEnde = offset;  // the reader takes up to 2 bytes past short data
    std::unordered_multimap<uint64_t, Gespeichert_t> gespeichert;
    // The last few stored blocks, also matched under the mask.
    constexpr int Ring = 8;
    struct Letzter_t {
        uint8_t inhalt[BlockBytes];
        uint32_t offset;
        uint8_t laengenCode;
    };
    std::vector<Letzter_t> letzte(Ring);
    int letzteAnzahl = 0, letzteNaechster = 0;

    uint8_t b[BlockBytes], m[BlockBytes];
    GepackterBlock_t p;
    for (uint64_t k = 0; k < bloecke; ++k) {
        uint8_t* e = &index[k * IndexEintragBytes];
        HoleBlock(bits, egal, positionen, k, b, m);
        bool geteilt = false;
        for (int i = 0; i < letzteAnzahl && !geteilt; ++i) {
            const Letzter_t& l = letzte[(letzteNaechster + Ring - 1 - i) % Ring];
            if (!Passt(l.inhalt, b, m)) continue;
            // Unless the block is a fill block anyway.
            bool fuell0 = true, fuell1 = true;
            for (int j = 0; j < BlockBytes; ++j) {
                fuell0 &= (b[j] & ~m[j]) == 0;
                fuell1 &= (b[j] | m[j]) == 0xFF;
            }
            if (fuell0 || fuell1) break;
            Eintrag(e, l.offset, l.laengenCode);
            geteilt = true;
        }
        if (geteilt) continue;

        BlockPacken(b, m, p);
        if (p.art == GepackterBlock_t::Fuellung) {
            e[0] = p.fuellbyte, e[1] = e[2] = e[3] = 0xFF, e[4] = 0;
            continue;
        }
        const uint8_t l = p.art == GepackterBlock_t::Roh ? 0 : static_cast<uint8_t>(LaengenCode(p.laenge));
        const Fingerabdruck_t abdruck = Abdruck(p.inhalt);
        const auto [von, bis] = gespeichert.equal_range(abdruck.a);
        for (auto it = von; it != bis && !geteilt; ++it) {
            if (!(it->second.abdruck == abdruck)) continue;
            Eintrag(e, it->second.offset, it->second.laengenCode);
            geteilt = true;
        }
        if (!geteilt) {
            // Offsets are 32-bit, and FF FF FF in their upper bytes would read as a fill block.
            if (offset + static_cast<uint64_t>(p.laenge) + 2 > 0xFFFFFF00ull) return false;
            if (std::fwrite(p.daten, 1, static_cast<size_t>(p.laenge), datei.f) != static_cast<size_t>(p.laenge)) {
                return false;
            }
            Eintrag(e, static_cast<uint32_t>(offset), l);
            gespeichert.emplace(abdruck.a, Gespeichert_t{abdruck, static_cast<uint32_t>(offset), l});
            if (offset + static_cast<uint64_t>(LeseLaenge(l)) > lesEnde) lesEnde = offset + static_cast<uint64_t>(LeseLaenge(l));
            offset += static_cast<uint64_t>(p.laenge);
        }
        Letzter_t& neu = letzte[letzteNaechster];
        std::memcpy(neu.inhalt, p.inhalt, BlockBytes);
        neu.offset = EintragOffset(e);
        neu.laengenCode = e[4];
        letzteNaechster = (letzteNaechster + 1) % Ring;
        if (letzteAnzahl < Ring) ++letzteAnzahl;
    }
    // The reader of the last block may take a byte or two past its data.
    while (offset < lesEnde) {
        if (std::fputc(0, datei.f) == EOF) return false;
        ++offset;
    }
    if (std::fseek(datei.f, 0, SEEK_SET) != 0) return false;
    if (std::fwrite(index.data(), 1, index.size(), datei.f) != index.size()) return false;
    const int fehler = std::fclose(datei.f);
    datei.f = nullptr;
    dateigroesse = offset;
    return fehler == 0;
}

}  // namespace

bool SchreibeBitbase(const std::string& dateiname, const uint8_t* bits, const uint8_t* egal, uint64_t positionen,
                     uint64_t* groesse) {
    if (positionen == 0) return false;
    // Readers never see a half-written file: it gets its name only when complete.
    const std::string tmp = dateiname + ".tmp";
    uint64_t n = 0;
    if (!SchreibeDaten(tmp, bits, egal, positionen, n) || std::rename(tmp.c_str(), dateiname.c_str()) != 0) {
        std::remove(tmp.c_str());
        return false;
    }
    if (groesse != nullptr) *groesse = n;
    return true;
}

bool LeseBitbase(const std::string& dateiname, uint64_t positionen, std::vector<uint8_t>& bits) {
    DateiZu_t datei;
    datei.f = std::fopen(dateiname.c_str(), "rb");
    if (datei.f == nullptr || positionen == 0) return false;
    if (std::fseek(datei.f, 0, SEEK_END) != 0) return false;
    const long ende = std::ftell(datei.f);
    if (ende < 0) return false;
    const uint64_t dateigroesse = static_cast<uint64_t>(ende);
    const uint64_t bloecke = (positionen + BlockPositionen - 1) / BlockPositionen;
    const uint64_t bytes = (positionen + 7) / 8;
    std::vector<uint8_t> index(bloecke * IndexEintragBytes);
    if (std::fseek(datei.f, 0, SEEK_SET) != 0 || std::fread(index.data(), 1, index.size(), datei.f) != index.size()) {
        return false;
    }
    bits.assign(bytes, 0);
    uint8_t daten[BlockBytes], block[BlockBytes];
    for (uint64_t k = 0; k < bloecke; ++k) {
        const uint8_t* e = &index[k * IndexEintragBytes];
        if (IstFuellEintrag(e)) {
            std::memset(block, e[0], BlockBytes);
        } else {
            const uint64_t offset = EintragOffset(e);
            const size_t n = static_cast<size_t>(LeseLaenge(e[4]));
            if (offset + n > dateigroesse || std::fseek(datei.f, static_cast<long>(offset), SEEK_SET) != 0 ||
                std::fread(daten, 1, n, datei.f) != n) {
                return false;
            }
            if (e[4] == 0) {
                std::memcpy(block, daten, BlockBytes);
            } else if (!BlockEntpacken(daten, n, block)) {
                return false;
            }
        }
        const uint64_t anfang = k * BlockBytes;
        std::memcpy(bits.data() + anfang, block, bytes - anfang < BlockBytes ? bytes - anfang : BlockBytes);
    }
    if ((positionen & 7) != 0) bits.back() &= static_cast<uint8_t>((1u << (positionen & 7)) - 1);
    return true;
}
