// One environment for the whole test binary: the attack tables and the KPK table
// are built once per process, before any test sets up a position.
#include <gtest/gtest.h>

#include "board/tabellen.h"
#include "search/endspiel.h"

namespace {

class TabellenUmgebung : public ::testing::Environment {
public:
    void SetUp() override {
        InitTabellen();
        KpkInit();
    }
};

// Registered during static initialisation, so gtest_main picks it up.
[[maybe_unused]] ::testing::Environment* const umgebung =
    ::testing::AddGlobalTestEnvironment(new TabellenUmgebung);

}  // namespace
