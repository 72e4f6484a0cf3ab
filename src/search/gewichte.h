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
    0, S(622, 988), S(3276, 3520), S(3486, 3622), S(4652, 5672), S(9834, 10619), 0,
};
KELVARAN_GEWICHT int32_t Laeuferpaar = S(207, 487);
KELVARAN_GEWICHT int32_t TurmRedundanz = S(-252, -172);  // each rook beyond the first
KELVARAN_GEWICHT int32_t DameRedundanz = S(-304, -204);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
KELVARAN_GEWICHT int SpringerJeBauer = 38;
KELVARAN_GEWICHT int TurmJeBauer = -45;
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
        20, -68, -22, 38,
        87, -53, 106, 158,
        102, 60, 59, 183,
        -19, -38, 38, 71,
        -87, -126, -37, -51,
        -72, -1, -10, 86,
        0, 0, 0, 0,
    },
    {   // knight
        -575, -298, -263, -207,
        -211, -120, 27, 61,
        -179, 81, 110, 221,
        18, 65, 127, 186,
        -64, 61, 117, 96,
        -163, -90, -21, 93,
        -239, -160, -77, -47,
        -501, -208, -190, -132,
    },
    {   // bishop
        -175, -78, -106, -121,
        -31, -24, -8, -32,
        29, 40, 71, 94,
        -38, 41, 14, 83,
        -13, -15, 25, 24,
        -29, 82, 31, 11,
        28, 75, 41, -26,
        -63, -18, -92, -104,
    },
    {   // rook
        74, 66, 91, 114,
        19, 48, 118, 58,
        -31, 59, 25, 113,
        -46, 28, 15, 42,
        -97, -12, 16, 35,
        -179, -44, -50, 46,
        -287, -106, -27, 19,
        -169, -65, -26, 82,
    },
    {   // queen
        -94, -28, -7, 23,
        -55, -65, -5, -16,
        31, 51, -13, 46,
        70, -12, -10, 37,
        -24, -22, -23, -45,
        -42, -15, -46, -28,
        -27, -8, 56, 53,
        -59, -33, -55, -1,
    },
    {   // king: behind the castled pawns is best, every step forward costs
        -700, -700, -746, -798,
        -597, -596, -633, -693,
        -485, -482, -552, -597,
        -401, -434, -500, -560,
        -290, -332, -402, -487,
        -141, -159, -241, -348,
        69, 95, -78, -163,
        257, 215, 79, -115,
    },
};

KELVARAN_GEWICHT int16_t FeldEg[7][32] = {
    {},
    {   // pawn
        0, 0, 0, 0,
        4, 69, 81, 99,
        112, 188, 92, 77,
        15, 122, 54, -26,
        -13, 59, -49, -73,
        -47, 3, -3, 3,
        2, 116, 93, 17,
        0, 0, 0, 0,
    },
    {   // knight
        -427, -241, -196, -142,
        -226, -108, -35, 9,
        -202, -40, 28, 85,
        -131, 27, 87, 165,
        -105, -25, 63, 163,
        -198, -61, -63, 23,
        -170, -106, -100, -42,
        -399, -238, -143, -92,
    },
    {   // bishop
        -139, -87, -56, -42,
        -76, -62, -39, -20,
        -44, -19, 6, 0,
        -66, 21, 43, 80,
        -49, -84, 45, 25,
        -74, 19, 22, 52,
        -80, -110, -23, -15,
        -76, -75, 11, -71,
    },
    {   // rook
        59, 77, 83, 113,
        0, 54, 70, 26,
        91, 94, 20, 24,
        75, 91, 77, 42,
        -14, 66, 51, 15,
        -39, -14, 64, 8,
        -67, -77, -62, 13,
        -49, -53, -12, -89,
    },
    {   // queen
        -208, -95, -52, -12,
        -101, -29, -26, 25,
        -47, 13, 53, 80,
        -22, 17, 51, 187,
        -20, -6, 72, 96,
        -87, -18, 26, 37,
        -116, -91, -140, -86,
        -203, -129, -97, -164,
    },
    {   // king: to the centre in the endgame
        -429, -233, -172, -146,
        -184, 41, 139, 119,
        -56, 186, 214, 273,
        -98, 205, 230, 214,
        -124, 69, 91, 77,
        -138, -27, -1, -16,
        -265, -157, -99, -83,
        -531, -373, -268, -304,
    },
};

// ---- Mobility: by the number of squares reached that are neither own pieces nor
// attacked by enemy pawns ----------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerMobilitaet[9] = {
    S(-265, -351), S(-116, -245), S(-61, -42), S(-32, 39), S(2, 128),
    S(36, 102), S(47, 63), S(105, 58), S(118, 54),
};
KELVARAN_GEWICHT int32_t LaeuferMobilitaet[14] = {
    S(-152, -289), S(-78, -187), S(-30, -102), S(20, 15), S(46, 112), S(66, 119), S(83, 111),
    S(102, 108), S(123, 148), S(112, 141), S(159, 174), S(153, 156), S(161, 207), S(177, 216),
};
KELVARAN_GEWICHT int32_t TurmMobilitaet[15] = {
    S(-181, -305), S(-113, -184), S(-80, -33), S(-58, 19), S(-66, 70),
    S(-41, 129), S(8, 104), S(3, 171), S(32, 215), S(40, 274),
    S(93, 255), S(122, 321), S(93, 340), S(139, 334), S(142, 367),
};
KELVARAN_GEWICHT int32_t DameMobilitaet[28] = {
    S(-35, -248), S(-63, -183), S(-70, -140), S(-40, -102), S(-25, -83), S(-22, -53), S(-19, -32),
    S(-13, 1), S(6, 43), S(23, 80), S(32, 112), S(43, 127), S(22, 150), S(74, 190),
    S(67, 167), S(82, 195), S(75, 191), S(65, 196), S(123, 241), S(125, 235), S(122, 253),
    S(125, 247), S(118, 243), S(114, 238), S(124, 248), S(132, 255), S(131, 256), S(138, 264),
};

// ---- Pieces ----------------------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerVorposten = S(135, 100);       // ranks 4-6, pawn-protected, never chased by a pawn
KELVARAN_GEWICHT int32_t LaeuferVorposten = S(170, 51);
KELVARAN_GEWICHT int32_t SpringerVorpostenErreichbar = S(185, 72);
KELVARAN_GEWICHT int32_t LeichtHinterBauer = S(58, 15);         // off the back rank, shielded from frontal attack
KELVARAN_GEWICHT int32_t LaeuferBauernFarbe = S(-31, -59);      // per own pawn on the bishop's colour
KELVARAN_GEWICHT int32_t TurmOffeneLinie = S(181, 48);
KELVARAN_GEWICHT int32_t TurmHalboffeneLinie = S(70, 74);
KELVARAN_GEWICHT int32_t TurmSiebteReihe = S(48, 119);         // with the enemy king on the 8th or pawns on the 7th
KELVARAN_GEWICHT int32_t TurmEingesperrt = S(-190, -62);        // by the own king, which lost the right to castle there

// ---- Threats ---------------------------------------------------------------------------

// By the type of the attacked man.
KELVARAN_GEWICHT int32_t DrohungLeicht[6] = {0, S(27, 72), S(126, 215), S(203, 180), S(294, 279), S(250, 526)};
KELVARAN_GEWICHT int32_t DrohungTurm[6] = {0, S(6, 155), S(167, 218), S(175, 241), S(-15, 141), S(251, 255)};
KELVARAN_GEWICHT int32_t DrohungKoenig = S(130, 168);
KELVARAN_GEWICHT int32_t Haengend = S(98, 152);
KELVARAN_GEWICHT int32_t DrohungSichererBauer = S(345, 327);
KELVARAN_GEWICHT int32_t DrohungBauernvorstoss = S(142, 86);

// ---- Board control -------------------------------------------------------------------

KELVARAN_GEWICHT int RaumFaktor = 7;  // mg: safe squares x (pieces)^2 x factor / 8
KELVARAN_GEWICHT int32_t ZentrumKontrolle = S(-3, 9);
KELVARAN_GEWICHT int32_t ZentrumDoppelt = S(0, 49);

// ---- Pawn structure ------------------------------------------------------------------

KELVARAN_GEWICHT int32_t Isoliert = S(-34, 20);
KELVARAN_GEWICHT int32_t Rueckstaendig = S(-26, -9);
KELVARAN_GEWICHT int32_t SchwachUngegenueber = S(-82, -82);  // isolated/backward on a file the enemy can use
KELVARAN_GEWICHT int32_t Doppelt = S(-42, -258);
// Connected pawns by rank, times (2 + phalanx - opposed).
KELVARAN_GEWICHT int32_t Verbunden[9] = {
    0, 0, S(17, -4), S(43, 27), S(44, 37), S(64, 90), S(194, 172), S(289, 329), 0,
};
KELVARAN_GEWICHT int32_t Gestuetzt = S(86, 36);  // per supporting pawn
KELVARAN_GEWICHT int32_t Freibauer[9] = {
    0, 0, S(-50, 80), S(-67, 137), S(-53, 178), S(130, 295), S(426, 736), S(978, 1325), 0,
};

// ---- King safety (mg) ------------------------------------------------------------------

// Shelter: nearest own pawn on each of the three files around the king, by the
// file's distance from the edge and the pawn's rank (0 = none).
KELVARAN_GEWICHT int16_t Schildbauer[4][8] = {
    {15, 0, 204, 215, 87, 85, 34, 4},
    {-272, 0, 205, 174, -60, -71, -24, -10},
    {-162, 0, 255, 16, -8, 43, 6, 19},
    {-41, 0, 26, 60, 55, 29, -54, 10},
};
// Storm: nearest enemy pawn on those files by its rank seen from the king's side.
KELVARAN_GEWICHT int16_t SturmFrei[9] = {0, 0, -24, -284, -165, -47, 26, -9, 0};
KELVARAN_GEWICHT int16_t SturmBlockiert[9] = {0, 0, 0, -250, -75, -6, 0, 12, 0};
KELVARAN_GEWICHT int OffeneLinieAmKoenig = -101;  // neither side has a pawn on the file

// Danger index: attackers of the king zone by type, attacked squares next to the
// king, weak squares there, safe checks; the table turns it into a penalty.
KELVARAN_GEWICHT int Angreifer[7] = {0, 0, 3, 3, 4, 6, 0};
KELVARAN_GEWICHT int ZonenTreffer = 1;
KELVARAN_GEWICHT int SchwachImRing = 2;
KELVARAN_GEWICHT int SicheresSchach[7] = {0, 0, 5, 4, 6, 6, 0};
KELVARAN_GEWICHT int OhneDame = 12;
KELVARAN_GEWICHT int Koenigsgefahr[64] = {
    0,    3,    3,   23,   30,   67,   81,   83,
    148,  148,  148,  222,  222,  313,  393,  463,
    556,  673,  758,  804,  933,  1061, 1134, 1255,
    1389, 1522, 1620, 1742, 1869, 2042, 2178, 2309,
    2458, 2625, 2777, 2946, 3114, 3277, 3467, 3652,
    3836, 4034, 4238, 4439, 4645, 4860, 5079, 5303,
    5530, 5762, 6000, 6001, 6001, 6001, 6001, 6001,
    6002, 6002, 6002, 6002, 6002, 6002, 6002, 6002,
};

// ---- Passed pawns and the endgame ------------------------------------------------------

// Weight of the dynamic passer terms by rank.
KELVARAN_GEWICHT int FreibauerStufe[9] = {0, 0, 0, 0, 3, 6, 11, 17, 0};
KELVARAN_GEWICHT int PasserKoenigGegner = 22;  // eg per step of the enemy king from the stop square
KELVARAN_GEWICHT int PasserKoenigEigen = 16;    // eg per step of the own king
KELVARAN_GEWICHT int32_t FreierPfad = S(-87, 68);    // no square to promotion attacked or occupied
KELVARAN_GEWICHT int32_t StoppSicher = S(-10, 14);   // at least the stop square is safe
KELVARAN_GEWICHT int32_t StoppGedeckt = S(43, 27);
// Passer terms in 64ths by the opponent's pieces in phase units: passers run
// better against fewer pieces.
KELVARAN_GEWICHT int PasserSkala[13] = {96, 88, 80, 74, 70, 67, 64, 64, 64, 64, 64, 64, 64};
KELVARAN_GEWICHT int Unaufhaltbar = 5707;      // eg: the bare king is outside the pawn's square
KELVARAN_GEWICHT int UnaufhaltbarJeZug = 240;  // less per move still needed
KELVARAN_GEWICHT int KoenigBauernAbstand = -105;  // eg per step to the nearest pawn

// Winning chances of the endgame edge, eg: what makes an advantage easier to
// convert (passers, many pawns, pawns on both wings, the stronger king round the
// other, a pure pawn ending) against a base that pulls every edge towards zero.
// The sum may shrink the endgame half to zero but never turn its sign.
KELVARAN_GEWICHT int KomplexFreibauer = 49;      // per passed pawn of either side
KELVARAN_GEWICHT int KomplexBauer = 68;          // per pawn on the board
KELVARAN_GEWICHT int KomplexUmgehung = 38;       // per file the kings stand apart more than ranks
KELVARAN_GEWICHT int KomplexBeideFluegel = 246;  // pawns on both wings
KELVARAN_GEWICHT int KomplexBauernendspiel = 396;
KELVARAN_GEWICHT int KomplexBasis = -693;

// Tempo for the side to move; fixed: S(35, 68).
KELVARAN_GEWICHT int32_t Tempo = 0x230044;

}  // namespace Gewichte
