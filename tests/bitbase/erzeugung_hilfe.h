// Shared by the bitbase tests: a directory with the small bitbases, made once
// per test process (KK, KDK, KTK, KBK and their twins take well under a second).
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

#include "bitbase/erzeugung.h"

namespace erzeugung_test {

inline std::string NeuesVerzeichnis(const char* name) {
    const std::filesystem::path p =
        std::filesystem::temp_directory_path() / ("kelvaran_" + std::string(name) + "_" + std::to_string(getpid()));
    std::filesystem::remove_all(p);
    std::filesystem::create_directories(p);
    return p.string();
}

// Removed again when the test process ends.
struct Verzeichnis_t {
    std::string pfad;
    explicit Verzeichnis_t(const char* name) : pfad(NeuesVerzeichnis(name)) {}
    ~Verzeichnis_t() {
        std::error_code fehler;
        std::filesystem::remove_all(pfad, fehler);
    }
};

inline const std::string& KleineBitbasen() {
    static Verzeichnis_t verzeichnis("bitbasen");
    static const bool fertig = [] {
        bool ok = true;
        for (const char* name : {"KDK", "KTK", "KBK"})
            ok &= ErzeugeBitbase(name, 2, verzeichnis.pfad, [](const std::string&) {});
        return ok;
    }();
    EXPECT_TRUE(fertig);
    return verzeichnis.pfad;
}

// "e4" -> square number (a8 = 0, h1 = 63).
constexpr int F(const char* name) { return (name[0] - 'a') + 8 * ('8' - name[1]); }

}  // namespace erzeugung_test
