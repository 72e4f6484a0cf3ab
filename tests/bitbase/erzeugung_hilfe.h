// Shared by the bitbase tests: a directory with the small bitbases, made once
// per test process (KK, KDK, KTK, KBK and their twins take well under a second).
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "../test_dateien.h"
#include "bitbase/erzeugung.h"

namespace erzeugung_test {

using Verzeichnis_t = test_dateien::Verzeichnis_t;

inline const std::string& KleineBitbasen() {
    static const Verzeichnis_t verzeichnis("bitbasen");
    static const std::string pfad = verzeichnis.pfad.string();
    static const bool fertig = [] {
        bool ok = true;
        for (const char* name : {"KDK", "KTK", "KBK"})
            ok &= ErzeugeBitbase(name, 2, pfad, [](const std::string&) {});
        return ok;
    }();
    EXPECT_TRUE(fertig);
    return pfad;
}

// "e4" -> square number (a8 = 0, h1 = 63).
constexpr int F(const char* name) { return (name[0] - 'a') + 8 * ('8' - name[1]); }

}  // namespace erzeugung_test
