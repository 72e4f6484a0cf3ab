// Helpers for the bitbase tests: a private directory per test and raw files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "../test_dateien.h"

namespace bitbase_test {

using Bytes = std::vector<uint8_t>;
using TestVerzeichnis = test_dateien::Verzeichnis_t;

inline void SchreibeDatei(const std::string& name, const Bytes& inhalt) {
    test_dateien::Schreibe(name, std::string(inhalt.begin(), inhalt.end()));
}

inline Bytes LeseDatei(const std::string& name) {
    const std::string s = test_dateien::Lies(name);
    return Bytes(s.begin(), s.end());
}

// A file of `bloecke` index entries (all fill 00 unless set) followed by data.
struct Bitbasedatei {
    Bytes index, daten;
    explicit Bitbasedatei(int bloecke) : index(static_cast<size_t>(bloecke) * 5, 0) {
        for (int k = 0; k < bloecke; ++k) Fuellung(k, 0x00);
    }
    void Fuellung(int k, uint8_t wert, uint8_t byte4 = 0) {
        uint8_t* e = &index[static_cast<size_t>(k) * 5];
        e[0] = wert, e[1] = e[2] = e[3] = 0xFF, e[4] = byte4;
    }
    void Verweis(int k, uint32_t offset, uint8_t l) {
        uint8_t* e = &index[static_cast<size_t>(k) * 5];
        for (int i = 0; i < 4; ++i) e[i] = static_cast<uint8_t>(offset >> (8 * i));
        e[4] = l;
    }
    // Appends data and points block k at it; returns the offset.
    uint32_t Daten(int k, const Bytes& d, uint8_t l) {
        const uint32_t offset = static_cast<uint32_t>(index.size() + daten.size());
        daten.insert(daten.end(), d.begin(), d.end());
        Verweis(k, offset, l);
        return offset;
    }
    Bytes Alles() const {
        Bytes b = index;
        b.insert(b.end(), daten.begin(), daten.end());
        return b;
    }
};

}  // namespace bitbase_test
