// Material by count: the value of n men of one type together, so that a second
// bishop or a ninth pawn need not be worth the same as the first. The capture
// search reads the gain of one capture from it, and the endgame rules the
// material difference of small pawnless endings.
#pragma once

#include <cstdint>

#include "board/stellung.h"

constexpr int MaterialAnzahlen = 11;  // 0..10 men of a type (promotions included)

// [type][count]: total value of that many men of the type; kings are 0.
extern const int32_t MaterialTabelle[7][MaterialAnzahlen];

// What capturing one man of `typ` gains when the side holds `anzahl` of them.
inline int32_t MaterialGewinn(unsigned typ, unsigned anzahl) {
    if (anzahl == 0) return 0;
    if (anzahl >= MaterialAnzahlen) anzahl = MaterialAnzahlen - 1;
    return MaterialTabelle[typ][anzahl] - MaterialTabelle[typ][anzahl - 1];
}

inline int32_t MaterialSumme(const Seite_t& s) {
    int32_t summe = 0;
    for (unsigned t = Bauer; t <= Dame; ++t) {
        const unsigned n = s.anzahl[t] < MaterialAnzahlen ? s.anzahl[t] : MaterialAnzahlen - 1;
        summe += MaterialTabelle[t][n];
    }
    return summe;
}
