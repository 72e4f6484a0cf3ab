// Helpers for the bitbase tests: a private directory per test and raw files.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <unistd.h>

namespace bitbase_test {

using Bytes = std::vector<uint8_t>;

// A fresh directory, removed again at the end of the test.
struct TestVerzeichnis {
    std::filesystem::path pfad;
    TestVerzeichnis() {
        const auto* t = testing::UnitTest::GetInstance()->current_test_info();
        pfad = std::filesystem::temp_directory_path() /
               (std::string("kelvaran_bb_") + t->test_suite_name() + "_" + t->name() + "_" + std::to_string(::getpid()));
        std::filesystem::remove_all(pfad);
        std::filesystem::create_directories(pfad);
    }
    ~TestVerzeichnis() { std::filesystem::remove_all(pfad); }
    std::string operator/(const std::string& name) const { return (pfad / name).string(); }
};

inline void SchreibeDatei(const std::string& name, const Bytes& inhalt) {
    std::ofstream aus(name, std::ios::binary);
    aus.write(reinterpret_cast<const char*>(inhalt.data()), static_cast<std::streamsize>(inhalt.size()));
}

inline Bytes LeseDatei(const std::string& name) {
    std::ifstream ein(name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(ein), std::istreambuf_iterator<char>());
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
