// The weights of the hand-written evaluation terms: material and phase, drawish
// material, pawn structure and tempo; the network does the rest. Units: a pawn is
// about 1000 (ten times centipawns). Packed pairs are S(middlegame, endgame);
// tables of squares are half boards (files a-d, the other wing mirrored), row 0 =
// rank 8 ... row 7 = rank 1, seen from White.
#pragma once

#include <cstdint>

#include "search/bewertung.h"

namespace Gewichte {

// ---- Material and phase -------------------------------------------------------------

inline constexpr int32_t Materialwert[7] = {
    0, S(569, 920), S(3228, 3572), S(3448, 3630), S(4477, 5773), S(9802, 10718), 0,
};
inline constexpr int32_t Laeuferpaar = S(144, 517);
inline constexpr int32_t TurmRedundanz = S(-235, -248);  // each rook beyond the first
inline constexpr int32_t DameRedundanz = S(-313, -209);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
inline constexpr int SpringerJeBauer = 45;
inline constexpr int TurmJeBauer = -35;
// Game phase: units per piece; the full set of pieces is PhaseVoll.
inline constexpr int Phaseneinheit[7] = {0, 0, 1, 1, 2, 4, 0};
inline constexpr int PhaseVoll = 24;

// ---- Drawish material (scale in 64ths for the side ahead) ---------------------------

inline constexpr int SkalaOhneBauernRemis = 0;           // ahead by at most a minor, less than a rook
inline constexpr int SkalaOhneBauernGegenLeicht = 4;     // e.g. rook against minor
inline constexpr int SkalaOhneBauernSonst = 14;          // e.g. rook and minor against rook
inline constexpr int SkalaEinBauer = 48;                 // one pawn, at most a minor ahead
inline constexpr int SkalaUngleicheLaeuferBasis = 12;    // only opposite bishops left
inline constexpr int SkalaUngleicheLaeuferJeBauer = 8;   // per pawn ahead
inline constexpr int SkalaUngleicheLaeuferFiguren = 50;  // opposite bishops and more pieces
// Otherwise at most SkalaBauernBasis + SkalaJeBauer per own pawn of the side ahead.
inline constexpr int SkalaBauernBasis = 40;
inline constexpr int SkalaJeBauer = 10;

// ---- Pawns on their squares ----------------------------------------------------------

// Ranks 8 and 1 unused.
inline constexpr int16_t BauerFeldMg[32] = {
    0, 0, 0, 0,
    35, -139, -72, 64,
    117, -85, 123, 180,
    139, 51, 76, 144,
    -19, -73, 27, 46,
    -74, -143, -33, -42,
    -55, 6, 24, 103,
    0, 0, 0, 0,
};
inline constexpr int16_t BauerFeldEg[32] = {
    0, 0, 0, 0,
    28, 90, 125, 166,
    162, 230, 121, 140,
    66, 175, 89, 46,
    25, 115, -3, -18,
    -14, 59, 49, 45,
    44, 160, 155, 71,
    0, 0, 0, 0,
};

// ---- Pawn structure ------------------------------------------------------------------

inline constexpr int32_t Isoliert = S(-41, 21);
inline constexpr int32_t Rueckstaendig = S(-14, -8);
inline constexpr int32_t SchwachUngegenueber = S(-69, -90);  // isolated/backward on a file the enemy can use
inline constexpr int32_t Doppelt = S(-21, -254);
// Connected pawns by rank, times (2 + phalanx - opposed).
inline constexpr int32_t Verbunden[9] = {
    0, 0, S(17, -8), S(42, 25), S(39, 39), S(58, 98), S(181, 209), S(320, 398), 0,
};
inline constexpr int32_t Gestuetzt = S(86, 39);                                              // per supporting pawn
// Passers by the distance of their file from the edge.
inline constexpr int32_t FreibauerLinie[4] = {S(-2, 7), S(-4, 37), S(-17, 2), S(-24, -17)};
// A pawn on the 5th or 6th rank with an enemy pawn in front of it.
inline constexpr int32_t BlockierterBauer[2] = {S(-24, -7), S(9, 6)};
inline constexpr int32_t Freibauer[9] = {
    0, 0, S(-109, 80), S(-87, 137), S(-76, 193), S(62, 345), S(302, 795), S(889, 1480), 0,
};

// Tempo for the side to move; fixed: S(35, 68).
inline constexpr int32_t Tempo = 0x230044;

}  // namespace Gewichte
