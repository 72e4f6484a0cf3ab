#include "search/material.h"

// A pawn is about 1000 units. The first pawn is worth a little more than the
// later ones (the last pawn is the one that can still win); the second bishop
// brings the pair.
const int32_t MaterialTabelle[7][MaterialAnzahlen] = {
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
    {0, 1083, 2123, 3140, 4145, 5140, 6125, 7100, 8065, 9025, 9985},
    {0, 3200, 6350, 9500, 12650, 15800, 18950, 22100, 25250, 28400, 31550},
    {0, 3300, 7050, 10350, 13650, 16950, 20250, 23550, 26850, 30150, 33450},
    {0, 5000, 9900, 14800, 19700, 24600, 29500, 34400, 39300, 44200, 49100},
    {0, 9800, 19300, 28800, 38300, 47800, 57300, 66800, 76300, 85800, 95300},
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
};
