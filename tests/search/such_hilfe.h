// Small helpers shared by the search tests.
#pragma once

#include <gtest/gtest.h>

#include "board/stellung.h"

namespace such_test {

inline Stellung_t Fen(const char* fen) {
    Stellung_t st;
    Stellungsdaten_t daten;
    EXPECT_TRUE(SetzeStellung(st, daten, fen)) << fen;
    return st;
}

}  // namespace such_test
