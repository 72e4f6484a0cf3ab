// Every weight of the static evaluation, in one place so that a tuner can reach
// them all. Units: a pawn is about 1000 (ten times centipawns). Packed pairs are
// S(middlegame, endgame); tables of squares are half boards (files a-d, the
// other wing mirrored), row 0 = rank 8 ... row 7 = rank 1, seen from White.
//
// The engine build keeps the weights compile-time constants. A tuning build
// defines KELVARAN_TUNER, which turns them into writable variables; nothing is
// derived from them at start-up, so a changed weight acts once the material and
// pawn caches are cleared.
#pragma once

#include <cstdint>

#include "search/bewertung.h"

#ifdef KELVARAN_TUNER
#define KELVARAN_GEWICHT inline
#else
#define KELVARAN_GEWICHT inline constexpr
#endif

namespace Gewichte {

// ---- Material and phase -------------------------------------------------------------

KELVARAN_GEWICHT int32_t Materialwert[7] = {
    0, S(720, 1106), S(3356, 3425), S(3419, 3665), S(4805, 5581), S(9818, 10507), 0,
};
KELVARAN_GEWICHT int32_t Laeuferpaar = S(321, 522);
KELVARAN_GEWICHT int32_t TurmRedundanz = S(-185, -55);  // each rook beyond the first
KELVARAN_GEWICHT int32_t DameRedundanz = S(-300, -200);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
KELVARAN_GEWICHT int SpringerJeBauer = 34;
KELVARAN_GEWICHT int TurmJeBauer = -57;
// Game phase: units per piece; the full set of pieces is PhaseVoll.
KELVARAN_GEWICHT int Phaseneinheit[7] = {0, 0, 1, 1, 2, 4, 0};
KELVARAN_GEWICHT int PhaseVoll = 24;

// ---- Drawish material (scale in 64ths for the side ahead) ---------------------------

KELVARAN_GEWICHT int SkalaOhneBauernRemis = 0;           // ahead by at most a minor, less than a rook
KELVARAN_GEWICHT int SkalaOhneBauernGegenLeicht = 4;     // e.g. rook against minor
KELVARAN_GEWICHT int SkalaOhneBauernSonst = 14;          // e.g. rook and minor against rook
KELVARAN_GEWICHT int SkalaEinBauer = 48;                 // one pawn, at most a minor ahead
KELVARAN_GEWICHT int SkalaUngleicheLaeuferBasis = 12;    // only opposite bishops left
KELVARAN_GEWICHT int SkalaUngleicheLaeuferJeBauer = 8;   // per pawn ahead
KELVARAN_GEWICHT int SkalaUngleicheLaeuferFiguren = 50;  // opposite bishops and more pieces

// ---- Piece-square tables --------------------------------------------------------------

KELVARAN_GEWICHT int16_t FeldMg[7][32] = {
    {},
    {   // pawn (ranks 8 and 1 unused)
        0, 0, 0, 0,
        7, -5, 4, 22,
        74, 31, 88, 168,
        65, 62, -3, 132,
        -58, -28, 6, 55,
        -115, -44, -11, 21,
        -60, -16, -12, 65,
        0, 0, 0, 0,
    },
    {   // knight
        -517, -302, -253, -203,
        -238, -115, 12, 51,
        -163, 54, 132, 210,
        -79, 42, 175, 230,
        -40, 15, 93, 142,
        -159, -78, -8, 202,
        -275, -158, -93, -28,
        -497, -201, -217, -120,
    },
    {   // bishop
        -167, -65, -93, -106,
        -32, -11, 1, -29,
        -9, 27, 52, 49,
        -28, 57, 35, 86,
        -32, -19, 74, -24,
        -26, 66, 21, 61,
        30, 41, 38, -24,
        -132, -30, -63, -68,
    },
    {   // rook
        63, 62, 88, 101,
        36, 65, 102, 70,
        -39, 15, 1, 106,
        -49, 1, 13, 17,
        -76, -20, 5, 16,
        -138, -45, -35, 25,
        -180, -42, -35, 40,
        -102, -17, -4, 102,
    },
    {   // queen
        -109, -51, -20, 10,
        -61, -30, -1, 9,
        -1, 20, -1, 35,
        75, 22, -12, 55,
        -33, -5, -22, 9,
        -55, 9, -2, -98,
        -39, -7, 10, 25,
        -73, -55, -15, 17,
    },
    {   // king: behind the castled pawns is best, every step forward costs
        -703, -701, -750, -803,
        -600, -600, -645, -697,
        -493, -498, -550, -599,
        -397, -434, -500, -556,
        -302, -335, -392, -453,
        -153, -156, -234, -323,
        50, 35, -47, -154,
        218, 283, 95, -107,
    },
};

KELVARAN_GEWICHT int16_t FeldEg[7][32] = {
    {},
    {   // pawn
        0, 0, 0, 0,
        -24, 56, 10, 17,
        75, 187, 71, 53,
        -40, 201, 51, -77,
        -75, 65, -94, -94,
        -39, -53, 9, 72,
        -47, 69, 9, -4,
        0, 0, 0, 0,
    },
    {   // knight
        -415, -255, -200, -146,
        -245, -108, -34, -3,
        -192, -46, 63, 97,
        -142, -28, 96, 138,
        -159, -21, 75, 169,
        -202, -70, -25, 93,
        -214, -110, -51, -13,
        -399, -255, -194, -124,
    },
    {   // bishop
        -147, -84, -52, -34,
        -65, -47, -3, -30,
        -49, -24, 2, 24,
        -47, 24, 41, 51,
        -45, -74, 75, 20,
        -80, 6, -9, 15,
        -77, -89, -13, -36,
        -111, -75, 12, -71,
    },
    {   // rook
        63, 74, 75, 48,
        15, 59, 72, 45,
        45, 51, 4, 47,
        52, 80, 40, 22,
        -11, 27, 0, -7,
        -21, -21, 1, -2,
        -43, -20, -38, 18,
        -64, -52, -5, -3,
    },
    {   // queen
        -219, -120, -69, -35,
        -120, -37, -22, 12,
        -63, -8, 37, 67,
        -28, 21, 36, 138,
        -34, -15, 39, 88,
        -88, -20, 19, 35,
        -115, -71, -71, -27,
        -205, -119, -83, -73,
    },
    {   // king: to the centre in the endgame
        -427, -238, -190, -165,
        -197, -30, 50, 74,
        -104, 70, 186, 223,
        -85, 184, 199, 236,
        -149, 82, 156, 175,
        -183, -33, 80, 5,
        -346, -153, -73, 0,
        -527, -395, -215, -240,
    },
};

// ---- Mobility: by the number of squares reached that are neither own pieces nor
// attacked by enemy pawns ----------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerMobilitaet[9] = {
    S(-317, -348), S(-114, -254), S(-4, -92), S(17, 15), S(28, 39),
    S(53, -2), S(41, 77), S(105, 105), S(130, 90),
};
KELVARAN_GEWICHT int32_t LaeuferMobilitaet[14] = {
    S(-144, -302), S(-122, -186), S(-31, -148), S(8, 38), S(54, 59), S(69, 88), S(72, 118),
    S(117, 133), S(100, 136), S(123, 165), S(145, 181), S(149, 196), S(165, 220), S(176, 234),
};
KELVARAN_GEWICHT int32_t TurmMobilitaet[15] = {
    S(-163, -310), S(-88, -196), S(-85, -94), S(-65, -40), S(-76, 69),
    S(-4, 107), S(7, 69), S(20, 199), S(96, 221), S(85, 268),
    S(76, 243), S(125, 294), S(104, 359), S(136, 342), S(129, 322),
};
KELVARAN_GEWICHT int32_t DameMobilitaet[28] = {
    S(-83, -250), S(-74, -180), S(-71, -130), S(-54, -93), S(-46, -54), S(-17, -34), S(-36, -8),
    S(-15, 6), S(48, 45), S(50, 66), S(51, 94), S(86, 115), S(71, 126), S(77, 163),
    S(55, 155), S(96, 190), S(56, 169), S(77, 185), S(110, 219), S(110, 225), S(108, 234),
    S(112, 244), S(113, 239), S(117, 242), S(120, 244), S(128, 251), S(130, 255), S(135, 260),
};

// ---- Pieces ----------------------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerVorposten = S(151, 105);       // ranks 4-6, pawn-protected, never chased by a pawn
KELVARAN_GEWICHT int32_t LaeuferVorposten = S(168, 43);
KELVARAN_GEWICHT int32_t SpringerVorpostenErreichbar = S(178, 67);
KELVARAN_GEWICHT int32_t LeichtHinterBauer = S(75, 6);         // off the back rank, shielded from frontal attack
KELVARAN_GEWICHT int32_t LaeuferBauernFarbe = S(-2, -81);      // per own pawn on the bishop's colour
KELVARAN_GEWICHT int32_t TurmOffeneLinie = S(163, 74);
KELVARAN_GEWICHT int32_t TurmHalboffeneLinie = S(61, 131);
KELVARAN_GEWICHT int32_t TurmSiebteReihe = S(107, 187);         // with the enemy king on the 8th or pawns on the 7th
KELVARAN_GEWICHT int32_t TurmEingesperrt = S(-255, -27);        // by the own king, which lost the right to castle there

// ---- Threats ---------------------------------------------------------------------------

// By the type of the attacked man.
KELVARAN_GEWICHT int32_t DrohungLeicht[6] = {0, S(33, 92), S(118, 193), S(210, 212), S(287, 376), S(349, 540)};
KELVARAN_GEWICHT int32_t DrohungTurm[6] = {0, S(16, 233), S(144, 247), S(146, 243), S(-1, 152), S(260, 279)};
KELVARAN_GEWICHT int32_t DrohungKoenig = S(96, 288);
KELVARAN_GEWICHT int32_t Haengend = S(122, 81);
KELVARAN_GEWICHT int32_t DrohungSichererBauer = S(412, 294);
KELVARAN_GEWICHT int32_t DrohungBauernvorstoss = S(108, 98);

// ---- Board control -------------------------------------------------------------------

KELVARAN_GEWICHT int RaumFaktor = 7;  // mg: safe squares x (pieces)^2 x factor / 8
KELVARAN_GEWICHT int32_t ZentrumKontrolle = S(5, 12);
KELVARAN_GEWICHT int32_t ZentrumDoppelt = S(3, 25);

// ---- Pawn structure ------------------------------------------------------------------

KELVARAN_GEWICHT int32_t Isoliert = S(-7, 14);
KELVARAN_GEWICHT int32_t Rueckstaendig = S(0, -94);
KELVARAN_GEWICHT int32_t SchwachUngegenueber = S(-106, -150);  // isolated/backward on a file the enemy can use
KELVARAN_GEWICHT int32_t Doppelt = S(-88, -241);
// Connected pawns by rank, times (2 + phalanx - opposed).
KELVARAN_GEWICHT int32_t Verbunden[9] = {
    0, 0, S(25, -7), S(29, 6), S(61, 8), S(106, 61), S(205, 198), S(268, 256), 0,
};
KELVARAN_GEWICHT int32_t Gestuetzt = S(70, 15);  // per supporting pawn
KELVARAN_GEWICHT int32_t Freibauer[9] = {
    0, 0, S(55, 103), S(-30, 173), S(-3, 218), S(212, 280), S(568, 707), S(1028, 1157), 0,
};

// ---- King safety (mg) ------------------------------------------------------------------

// Shelter: nearest own pawn on each of the three files around the king, by the
// file's distance from the edge and the pawn's rank (0 = none).
KELVARAN_GEWICHT int16_t Schildbauer[4][8] = {
    {-86, 0, 166, 248, 27, 8, 25, 0},
    {-252, 0, 204, 198, -87, 40, -11, 7},
    {-201, 0, 237, 107, 6, -11, -12, 15},
    {-152, 0, 128, -1, 50, 5, -47, 7},
};
// Storm: nearest enemy pawn on those files by its rank seen from the king's side.
KELVARAN_GEWICHT int16_t SturmFrei[9] = {0, 0, -79, -315, -224, -52, -2, -59, 0};
KELVARAN_GEWICHT int16_t SturmBlockiert[9] = {0, 0, 0, -204, -43, 21, 6, 2, 0};
KELVARAN_GEWICHT int OffeneLinieAmKoenig = -73;  // neither side has a pawn on the file

// Danger index: attackers of the king zone by type, attacked squares next to the
// king, weak squares there, safe checks; the table turns it into a penalty.
KELVARAN_GEWICHT int Angreifer[7] = {0, 0, 3, 3, 4, 6, 0};
KELVARAN_GEWICHT int ZonenTreffer = 1;
KELVARAN_GEWICHT int SchwachImRing = 2;
KELVARAN_GEWICHT int SicheresSchach[7] = {0, 0, 5, 4, 6, 6, 0};
KELVARAN_GEWICHT int OhneDame = 12;
KELVARAN_GEWICHT int Koenigsgefahr[64] = {
    0,    0,    0,   21,   24,   63,   72,   124,
    144,  176,  176,  268,  268,  413,  467,  525,
    617,  708,  780,  856,  952,  1045, 1150, 1275,
    1394, 1517, 1616, 1738, 1873, 2028, 2165, 2306,
    2455, 2620, 2773, 2942, 3110, 3280, 3466, 3650,
    3837, 4034, 4234, 4438, 4646, 4860, 5078, 5302,
    5530, 5762, 6000, 6000, 6000, 6000, 6000, 6000,
    6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000,
};

// ---- Passed pawns and the endgame ------------------------------------------------------

// Weight of the dynamic passer terms by rank.
KELVARAN_GEWICHT int FreibauerStufe[9] = {0, 0, 0, 0, 3, 7, 11, 16, 0};
KELVARAN_GEWICHT int PasserKoenigGegner = 22;  // eg per step of the enemy king from the stop square
KELVARAN_GEWICHT int PasserKoenigEigen = 14;    // eg per step of the own king
KELVARAN_GEWICHT int32_t FreierPfad = S(-65, 73);    // no square to promotion attacked or occupied
KELVARAN_GEWICHT int32_t StoppSicher = S(-9, 7);   // at least the stop square is safe
KELVARAN_GEWICHT int32_t StoppGedeckt = S(11, 19);
// Passer terms in 64ths by the opponent's pieces in phase units: passers run
// better against fewer pieces.
KELVARAN_GEWICHT int PasserSkala[13] = {96, 88, 80, 74, 70, 67, 64, 64, 64, 64, 64, 64, 64};
KELVARAN_GEWICHT int Unaufhaltbar = 5880;      // eg: the bare king is outside the pawn's square
KELVARAN_GEWICHT int UnaufhaltbarJeZug = 220;  // less per move still needed
KELVARAN_GEWICHT int KoenigBauernAbstand = -73;  // eg per step to the nearest pawn

// Tempo for the side to move; fixed: S(35, 68).
KELVARAN_GEWICHT int32_t Tempo = 0x230044;

}  // namespace Gewichte
