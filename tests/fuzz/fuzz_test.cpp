// Every committed fuzz case, seeds and past findings alike, through its target:
// a finding that comes back crashes or aborts this test.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz_ziele.h"

namespace {

namespace fs = std::filesystem;

TEST(Fuzzfaelle, JedesZielUeberSeineFaelle) {
    const fs::path korpus = fs::path(__FILE__).parent_path() / "korpus";
    for (const FuzzZiel_t* ziel = FuzzZiele; ziel->name != nullptr; ++ziel) {
        const fs::path ordner = korpus / ziel->name;
        ASSERT_TRUE(fs::is_directory(ordner)) << ordner;
        std::vector<fs::path> faelle;
        for (const auto& e : fs::directory_iterator(ordner))
            if (e.is_regular_file()) faelle.push_back(e.path());
        std::sort(faelle.begin(), faelle.end());
        EXPECT_FALSE(faelle.empty()) << ziel->name << " has no cases";
        for (const fs::path& fall : faelle) {
            SCOPED_TRACE(fall.string());
            std::ifstream ein(fall, std::ios::binary);
            const std::vector<uint8_t> daten((std::istreambuf_iterator<char>(ein)), std::istreambuf_iterator<char>());
            EXPECT_EQ(ziel->lauf(daten.data(), daten.size()), 0);
        }
    }
}

}  // namespace
