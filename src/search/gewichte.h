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
    0, S(579, 955), S(3224, 3542), S(3486, 3615), S(4575, 5727), S(9819, 10677), 0,
};
KELVARAN_GEWICHT int32_t Laeuferpaar = S(173, 499);
KELVARAN_GEWICHT int32_t TurmRedundanz = S(-234, -210);  // each rook beyond the first
KELVARAN_GEWICHT int32_t DameRedundanz = S(-308, -206);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
KELVARAN_GEWICHT int SpringerJeBauer = 43;
KELVARAN_GEWICHT int TurmJeBauer = -35;
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
        28, -114, -54, 55,
        105, -76, 121, 168,
        122, 55, 67, 162,
        -10, -58, 35, 53,
        -75, -142, -41, -56,
        -59, -7, 3, 97,
        0, 0, 0, 0,
    },
    {   // knight
        -622, -294, -272, -212,
        -183, -128, 43, 67,
        -192, 98, 93, 223,
        64, 54, 105, 182,
        -71, 88, 121, 90,
        -181, -90, -42, 76,
        -232, -166, -69, -60,
        -502, -221, -180, -140,
    },
    {   // bishop
        -183, -93, -118, -136,
        -27, -32, -10, -33,
        55, 53, 85, 126,
        -44, 28, 4, 79,
        -7, -13, 34, 46,
        -23, 70, 26, 11,
        31, 70, 37, -37,
        -44, -6, -107, -131,
    },
    {   // rook
        82, 72, 89, 116,
        10, 38, 137, 58,
        -35, 86, 46, 121,
        -53, 44, 6, 53,
        -120, -16, 12, 31,
        -199, -45, -75, 50,
        -299, -125, -33, 1,
        -172, -73, -30, 76,
    },
    {   // queen
        -82, -10, 2, 35,
        -51, -73, -3, -38,
        49, 79, -17, 66,
        69, -25, -5, 34,
        -35, -26, -17, -40,
        -32, -23, -52, -14,
        -26, -16, 36, 33,
        -50, -24, -77, -36,
    },
    {   // king: behind the castled pawns is best, every step forward costs
        -699, -699, -744, -793,
        -596, -593, -624, -690,
        -477, -466, -553, -598,
        -404, -437, -503, -565,
        -282, -331, -403, -514,
        -144, -168, -232, -373,
        51, 106, -66, -162,
        234, 212, 83, -94,
    },
};

KELVARAN_GEWICHT int16_t FeldEg[7][32] = {
    {},
    {   // pawn
        0, 0, 0, 0,
        16, 79, 111, 145,
        146, 216, 110, 114,
        38, 149, 71, 7,
        9, 93, -30, -58,
        -35, 31, 17, 22,
        26, 142, 119, 49,
        0, 0, 0, 0,
    },
    {   // knight
        -435, -226, -195, -141,
        -206, -114, -40, 19,
        -212, -44, 19, 86,
        -132, 36, 86, 178,
        -87, -49, 58, 160,
        -193, -66, -55, 5,
        -144, -104, -141, -45,
        -398, -228, -112, -80,
    },
    {   // bishop
        -134, -86, -60, -50,
        -78, -72, -49, -10,
        -53, -27, 6, -21,
        -78, 25, 47, 101,
        -63, -89, 34, 15,
        -66, 30, 31, 59,
        -85, -123, -18, 2,
        -57, -75, 14, -69,
    },
    {   // rook
        59, 75, 75, 135,
        1, 61, 68, 17,
        105, 113, 35, 11,
        89, 103, 84, 54,
        -10, 84, 73, 3,
        -43, -10, 101, -1,
        -78, -99, -67, -3,
        -50, -42, -24, -114,
    },
    {   // queen
        -203, -76, -37, 9,
        -83, -21, -23, 43,
        -27, 30, 75, 92,
        -12, 19, 65, 224,
        -1, 5, 102, 115,
        -95, -22, 31, 28,
        -122, -119, -202, -129,
        -205, -139, -117, -226,
    },
    {   // king: to the centre in the endgame
        -430, -226, -156, -123,
        -170, 95, 199, 153,
        -14, 261, 237, 298,
        -111, 230, 245, 200,
        -112, 55, 76, 72,
        -136, -27, -19, -17,
        -265, -186, -94, -99,
        -552, -384, -288, -327,
    },
};

// ---- Mobility: by the number of squares reached that are neither own pieces nor
// attacked by enemy pawns ----------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerMobilitaet[9] = {
    S(-244, -358), S(-106, -244), S(-59, -17), S(-31, 27), S(-8, 159),
    S(17, 129), S(23, 70), S(85, 58), S(112, 35),
};
KELVARAN_GEWICHT int32_t LaeuferMobilitaet[14] = {
    S(-155, -268), S(-78, -188), S(-29, -89), S(24, 10), S(44, 129), S(62, 135), S(82, 120),
    S(95, 102), S(121, 154), S(108, 130), S(168, 163), S(159, 126), S(159, 194), S(176, 196),
};
KELVARAN_GEWICHT int32_t TurmMobilitaet[15] = {
    S(-179, -304), S(-116, -168), S(-78, -3), S(-56, 42), S(-60, 100),
    S(-40, 126), S(1, 117), S(-1, 174), S(20, 216), S(20, 282),
    S(83, 247), S(99, 316), S(79, 333), S(135, 324), S(152, 375),
};
KELVARAN_GEWICHT int32_t DameMobilitaet[28] = {
    S(-24, -249), S(-71, -185), S(-83, -149), S(-51, -110), S(-37, -100), S(-35, -72), S(-29, -57),
    S(-22, -9), S(-3, 38), S(19, 90), S(30, 118), S(40, 149), S(22, 173), S(75, 210),
    S(71, 182), S(79, 199), S(95, 205), S(55, 207), S(133, 257), S(139, 236), S(136, 266),
    S(136, 244), S(123, 244), S(112, 235), S(126, 250), S(134, 257), S(132, 257), S(139, 266),
};

// ---- Pieces ----------------------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerVorposten = S(141, 111);       // ranks 4-6, pawn-protected, never chased by a pawn
KELVARAN_GEWICHT int32_t LaeuferVorposten = S(170, 51);
KELVARAN_GEWICHT int32_t SpringerVorpostenErreichbar = S(161, 77);
KELVARAN_GEWICHT int32_t LeichtHinterBauer = S(56, 23);         // off the back rank, shielded from frontal attack
KELVARAN_GEWICHT int32_t LaeuferBauernFarbe = S(-36, -53);      // per own pawn on the bishop's colour
KELVARAN_GEWICHT int32_t TurmOffeneLinie = S(201, 74);
KELVARAN_GEWICHT int32_t TurmHalboffeneLinie = S(100, 83);
KELVARAN_GEWICHT int32_t TurmSiebteReihe = S(34, 106);         // with the enemy king on the 8th or pawns on the 7th
KELVARAN_GEWICHT int32_t TurmEingesperrt = S(-181, -98);        // by the own king, which lost the right to castle there
KELVARAN_GEWICHT int32_t TurmHinterFreibauer = S(124, 215);     // on a passer's file behind it, own passer or enemy
// Own men pinned to the own king by an enemy slider, by type.
KELVARAN_GEWICHT int32_t Gefesselt[6] = {0, S(-33, 46), S(-149, -75), S(-93, -68), S(-78, -50), S(-50, -20)};

// ---- Threats ---------------------------------------------------------------------------

// By the type of the attacked man.
KELVARAN_GEWICHT int32_t DrohungLeicht[6] = {0, S(21, 69), S(124, 228), S(234, 160), S(358, 260), S(314, 528)};
KELVARAN_GEWICHT int32_t DrohungTurm[6] = {0, S(3, 136), S(183, 198), S(208, 245), S(-20, 136), S(274, 242)};
KELVARAN_GEWICHT int32_t DrohungKoenig = S(168, 142);
KELVARAN_GEWICHT int32_t Haengend = S(115, 172);
KELVARAN_GEWICHT int32_t DrohungSichererBauer = S(435, 372);
KELVARAN_GEWICHT int32_t DrohungBauernvorstoss = S(133, 74);
KELVARAN_GEWICHT int32_t SpringerAufDame = S(90, -1);     // per safe square from which a knight would hit the queen
KELVARAN_GEWICHT int32_t LaeuferTurmAufDame = S(102, -4);  // the same for a bishop or rook along its line
KELVARAN_GEWICHT int32_t Eingeschraenkt = S(36, -1);       // per square both attack and the opponent holds loosely
// Strong threats (a man hanging or attacked by a cheaper one) by whether the threatening
// side is to move and their number (none, one, two or more): the side to move cashes a
// threat, the other side sees a single one parried.
KELVARAN_GEWICHT int32_t Drohungszahl[2][3] = {{0, S(-173, -74), S(3, -53)}, {0, S(186, 145), S(194, 92)}};

// ---- Board control -------------------------------------------------------------------

KELVARAN_GEWICHT int RaumFaktor = 7;  // mg: safe squares x (pieces)^2 x factor / 8
KELVARAN_GEWICHT int32_t ZentrumKontrolle = S(8, 8);
KELVARAN_GEWICHT int32_t ZentrumDoppelt = S(-16, 45);

// ---- Pawn structure ------------------------------------------------------------------

KELVARAN_GEWICHT int32_t Isoliert = S(-44, 30);
KELVARAN_GEWICHT int32_t Rueckstaendig = S(-18, 4);
KELVARAN_GEWICHT int32_t SchwachUngegenueber = S(-75, -87);  // isolated/backward on a file the enemy can use
KELVARAN_GEWICHT int32_t Doppelt = S(-33, -259);
// Connected pawns by rank, times (2 + phalanx - opposed).
KELVARAN_GEWICHT int32_t Verbunden[9] = {
    0, 0, S(18, -6), S(41, 30), S(40, 42), S(56, 93), S(185, 190), S(307, 373), 0,
};
KELVARAN_GEWICHT int32_t Gestuetzt = S(89, 41);  // per supporting pawn
KELVARAN_GEWICHT int32_t Freibauer[9] = {
    0, 0, S(-91, 77), S(-84, 143), S(-77, 188), S(83, 323), S(357, 771), S(925, 1417), 0,
};

// ---- King safety (mg) ------------------------------------------------------------------

// Shelter: nearest own pawn on each of the three files around the king, by the
// file's distance from the edge and the pawn's rank (0 = none).
KELVARAN_GEWICHT int16_t Schildbauer[4][8] = {
    {41, 0, 225, 228, 110, 122, 44, 7},
    {-282, 0, 184, 145, -67, -108, -35, -25},
    {-157, 0, 250, 3, -15, 47, 20, 17},
    {-16, 0, 22, 56, 68, 52, -56, 11},
};
// Storm: nearest enemy pawn on those files by its rank seen from the king's side.
KELVARAN_GEWICHT int16_t SturmFrei[9] = {0, 0, 23, -281, -148, -45, 20, -26, 0};
KELVARAN_GEWICHT int16_t SturmBlockiert[9] = {0, 0, 0, -290, -61, -14, -17, 15, 0};
KELVARAN_GEWICHT int OffeneLinieAmKoenig = -102;  // neither side has a pawn on the file

// Danger index: attackers of the king zone by type, attacked squares next to the
// king, weak squares there, safe checks; the table turns it into a penalty.
KELVARAN_GEWICHT int Angreifer[7] = {0, 0, 3, 3, 4, 3, 0};
KELVARAN_GEWICHT int ZonenTreffer = 2;
KELVARAN_GEWICHT int SchwachImRing = 2;
KELVARAN_GEWICHT int SicheresSchach[7] = {0, 0, 7, 4, 6, 6, 0};
// Per attack (and again per double attack) on the king's flank in the defender's camp.
KELVARAN_GEWICHT int FlankenAngriff = -18;
KELVARAN_GEWICHT int OhneDame = 12;
KELVARAN_GEWICHT int Koenigsgefahr[64] = {
    0,    0,    14,   16,   30,   59,   63,   77,
    85,  110,  157,  198,  242,  306,  372,  451,
    544,  642,  736,  806,  910,  1054, 1126, 1252,
    1384, 1506, 1615, 1743, 1868, 2044, 2177, 2312,
    2461, 2632, 2779, 2951, 3114, 3278, 3468, 3650,
    3838, 4039, 4237, 4440, 4646, 4860, 5078, 5304,
    5531, 5762, 6001, 6001, 6001, 6001, 6001, 6001,
    6002, 6002, 6002, 6002, 6002, 6002, 6002, 6002,
};

// ---- Passed pawns and the endgame ------------------------------------------------------

// Weight of the dynamic passer terms by rank.
KELVARAN_GEWICHT int FreibauerStufe[9] = {0, 0, 0, 0, 3, 6, 11, 17, 0};
KELVARAN_GEWICHT int PasserKoenigGegner = 22;  // eg per step of the enemy king from the stop square
KELVARAN_GEWICHT int PasserKoenigEigen = 17;    // eg per step of the own king
KELVARAN_GEWICHT int32_t FreierPfad = S(-68, 70);    // no square to promotion attacked or occupied
KELVARAN_GEWICHT int32_t StoppSicher = S(-7, 14);   // at least the stop square is safe
KELVARAN_GEWICHT int32_t StoppGedeckt = S(42, 26);
// Passer terms in 64ths by the opponent's pieces in phase units: passers run
// better against fewer pieces.
KELVARAN_GEWICHT int PasserSkala[13] = {96, 88, 80, 74, 70, 67, 64, 64, 64, 64, 64, 64, 64};
KELVARAN_GEWICHT int Unaufhaltbar = 5580;      // eg: the bare king is outside the pawn's square
KELVARAN_GEWICHT int UnaufhaltbarJeZug = 260;  // less per move still needed
KELVARAN_GEWICHT int KoenigBauernAbstand = -122;  // eg per step to the nearest pawn

// Winning chances of the endgame edge, eg: what makes an advantage easier to
// convert (passers, many pawns, pawns on both wings, the stronger king round the
// other, a pure pawn ending) against a base that pulls every edge towards zero.
// The sum may shrink the endgame half to zero but never turn its sign.
KELVARAN_GEWICHT int KomplexFreibauer = 45;      // per passed pawn of either side
KELVARAN_GEWICHT int KomplexBauer = 64;          // per pawn on the board
KELVARAN_GEWICHT int KomplexUmgehung = 37;       // per file the kings stand apart more than ranks
KELVARAN_GEWICHT int KomplexBeideFluegel = 354;  // pawns on both wings
KELVARAN_GEWICHT int KomplexBauernendspiel = 470;
KELVARAN_GEWICHT int KomplexBasis = -789;

// Tempo for the side to move; fixed: S(35, 68).
KELVARAN_GEWICHT int32_t Tempo = 0x230044;

}  // namespace Gewichte
