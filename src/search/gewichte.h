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
    0, S(569, 920), S(3228, 3572), S(3448, 3630), S(4477, 5773), S(9802, 10718), 0,
};
KELVARAN_GEWICHT int32_t Laeuferpaar = S(144, 517);
KELVARAN_GEWICHT int32_t TurmRedundanz = S(-235, -248);  // each rook beyond the first
KELVARAN_GEWICHT int32_t DameRedundanz = S(-313, -209);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
KELVARAN_GEWICHT int SpringerJeBauer = 45;
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
// Otherwise at most SkalaBauernBasis + SkalaJeBauer per own pawn of the side ahead.
KELVARAN_GEWICHT int SkalaBauernBasis = 40;
KELVARAN_GEWICHT int SkalaJeBauer = 10;

// ---- Piece-square tables --------------------------------------------------------------

KELVARAN_GEWICHT int16_t FeldMg[7][32] = {
    {},
    {   // pawn (ranks 8 and 1 unused)
        0, 0, 0, 0,
        35, -139, -72, 64,
        117, -85, 123, 180,
        139, 51, 76, 144,
        -19, -73, 27, 46,
        -74, -143, -33, -42,
        -55, 6, 24, 103,
        0, 0, 0, 0,
    },
    {   // knight
        -645, -289, -278, -215,
        -160, -126, 61, 76,
        -197, 114, 92, 234,
        102, 84, 108, 187,
        -45, 104, 113, 58,
        -139, -93, -53, 35,
        -246, -166, -79, -129,
        -503, -215, -197, -164,
    },
    {   // bishop
        -188, -103, -124, -147,
        -19, -41, -3, -34,
        70, 67, 85, 146,
        -38, 14, 8, 83,
        4, -10, 44, 64,
        0, 85, -25, 11,
        34, 6, 38, -73,
        -47, 4, -110, -149,
    },
    {   // rook
        88, 76, 84, 115,
        6, 32, 149, 60,
        -39, 102, 62, 128,
        -59, 51, -4, 56,
        -135, -23, 3, 19,
        -206, -46, -90, 45,
        -288, -130, -31, -8,
        -175, -95, -49, 47,
    },
    {   // queen
        -76, 5, 7, 44,
        -52, -67, -5, -52,
        56, 97, -13, 83,
        66, -35, -2, 33,
        -35, -35, -24, -48,
        -20, -10, -47, -14,
        -31, -25, 20, 21,
        -48, -28, -102, -55,
    },
    {   // king: behind the castled pawns is best, every step forward costs
        -698, -698, -741, -788,
        -595, -589, -618, -686,
        -472, -456, -556, -599,
        -408, -442, -506, -569,
        -278, -332, -403, -532,
        -149, -183, -224, -390,
        49, 107, -74, -178,
        247, 230, 93, -81,
    },
};

KELVARAN_GEWICHT int16_t FeldEg[7][32] = {
    {},
    {   // pawn
        0, 0, 0, 0,
        28, 90, 125, 166,
        162, 230, 121, 140,
        66, 175, 89, 46,
        25, 115, -3, -18,
        -14, 59, 49, 45,
        44, 160, 155, 71,
        0, 0, 0, 0,
    },
    {   // knight
        -440, -217, -193, -139,
        -189, -114, -34, 29,
        -216, -44, 18, 89,
        -126, 35, 88, 181,
        -72, -65, 42, 161,
        -185, -65, -60, -2,
        -132, -103, -161, -54,
        -397, -220, -99, -77,
    },
    {   // bishop
        -129, -81, -61, -54,
        -82, -77, -47, 5,
        -43, -23, -5, -28,
        -77, 40, 56, 119,
        -69, -91, 46, 19,
        -53, 40, 12, 49,
        -81, -134, -10, 8,
        -51, -80, -2, -63,
    },
    {   // rook
        55, 77, 73, 151,
        6, 69, 68, 15,
        115, 120, 41, -2,
        101, 110, 90, 52,
        -1, 97, 77, -5,
        -38, 5, 118, -8,
        -73, -99, -72, -5,
        -46, -36, -33, -122,
    },
    {   // queen
        -198, -61, -31, 25,
        -67, -14, -25, 56,
        -19, 43, 92, 104,
        -10, 21, 72, 241,
        9, 10, 113, 123,
        -98, -20, 40, 20,
        -128, -135, -227, -155,
        -211, -147, -133, -261,
    },
    {   // king: to the centre in the endgame
        -431, -221, -142, -108,
        -160, 133, 243, 173,
        6, 307, 248, 310,
        -120, 238, 253, 190,
        -109, 44, 59, 67,
        -139, -30, -24, -17,
        -266, -187, -95, -106,
        -552, -384, -291, -319,
    },
};

// ---- Mobility: by the number of squares reached that are neither own pieces nor
// attacked by enemy pawns ----------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerMobilitaet[9] = {
    S(-251, -368), S(-128, -253), S(-70, -2), S(-45, 27), S(-13, 146),
    S(19, 140), S(38, 114), S(104, 63), S(126, 29),
};
KELVARAN_GEWICHT int32_t LaeuferMobilitaet[14] = {
    S(-167, -274), S(-136, -198), S(-24, -97), S(7, 28), S(45, 123), S(71, 146), S(85, 139),
    S(98, 144), S(100, 165), S(122, 136), S(168, 171), S(168, 108), S(156, 188), S(177, 182),
};
KELVARAN_GEWICHT int32_t TurmMobilitaet[15] = {
    S(-188, -308), S(-158, -179), S(-79, 3), S(-71, 35), S(-66, 112),
    S(-34, 145), S(-24, 156), S(-8, 186), S(25, 216), S(34, 273),
    S(66, 260), S(92, 331), S(82, 336), S(127, 319), S(151, 383),
};
KELVARAN_GEWICHT int32_t DameMobilitaet[28] = {
    S(-26, -250), S(-49, -184), S(-95, -152), S(-73, -114), S(-54, -110), S(-55, -87), S(-49, -65),
    S(-30, -33), S(-11, 24), S(12, 89), S(18, 117), S(35, 166), S(45, 190), S(64, 217),
    S(84, 196), S(85, 213), S(103, 212), S(67, 219), S(126, 263), S(155, 242), S(139, 271),
    S(150, 255), S(126, 242), S(115, 238), S(125, 249), S(137, 260), S(133, 260), S(140, 267),
};

// ---- Pieces ----------------------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerVorposten = S(142, 110);  // ranks 4-6, pawn-protected, never chased by a pawn
KELVARAN_GEWICHT int32_t LaeuferVorposten = S(180, 60);
KELVARAN_GEWICHT int32_t SpringerVorpostenErreichbar = S(156, 90);
KELVARAN_GEWICHT int32_t LeichtHinterBauer = S(48, 14);     // off the back rank, shielded from frontal attack
KELVARAN_GEWICHT int32_t LaeuferBauernFarbe = S(-21, -30);  // per own pawn on the bishop's colour
KELVARAN_GEWICHT int32_t TurmOffeneLinie = S(198, 102);
KELVARAN_GEWICHT int32_t TurmHalboffeneLinie = S(100, 96);
KELVARAN_GEWICHT int32_t TurmSiebteReihe = S(33, 103);       // with the enemy king on the 8th or pawns on the 7th
KELVARAN_GEWICHT int32_t TurmEingesperrt = S(-165, -118);    // by the own king, which lost the right to castle there
KELVARAN_GEWICHT int32_t TurmHinterFreibauer = S(118, 251);  // on a passer's file behind it, own passer or enemy
KELVARAN_GEWICHT int32_t TurmAufDamenlinie = S(57, -4);      // on a file with a queen of either side
KELVARAN_GEWICHT int32_t LaeuferLangeDiagonale = S(92, 36);  // sees two centre squares through the men but pawns
// Per square of distance between a minor and its own king.
KELVARAN_GEWICHT int32_t KoenigsAbstand[4] = {0, 0, S(-26, -14), S(-10, -14)};
KELVARAN_GEWICHT int32_t BauernloseFlanke = S(-30, -214);        // no pawn of either side on the own king's flank
KELVARAN_GEWICHT int32_t DameEindringen = S(34, 43);             // 5th rank or beyond, out of reach of enemy pawns
KELVARAN_GEWICHT int32_t DameSchwach = S(-100, 5);               // a lesser slider aims at the queen past one man
KELVARAN_GEWICHT int32_t LaeuferBlockierteBauern = S(-36, -66);  // per own blocked pawn on the bishop's colour
// Own men pinned to the own king by an enemy slider, by type.
KELVARAN_GEWICHT int32_t Gefesselt[6] = {0, S(-57, 76), S(-211, -115), S(-144, -112), S(-141, -80), S(-83, -35)};

// ---- Threats ---------------------------------------------------------------------------

// By the type of the attacked man.
KELVARAN_GEWICHT int32_t DrohungLeicht[6] = {0, S(21, 85), S(120, 233), S(249, 145), S(389, 254), S(353, 528)};
KELVARAN_GEWICHT int32_t DrohungTurm[6] = {0, S(18, 137), S(190, 175), S(222, 234), S(-21, 134), S(278, 232)};
KELVARAN_GEWICHT int32_t DrohungKoenig = S(189, 126);
KELVARAN_GEWICHT int32_t Haengend = S(105, 156);
KELVARAN_GEWICHT int32_t DrohungSichererBauer = S(433, 387);
KELVARAN_GEWICHT int32_t DrohungBauernvorstoss = S(127, 78);
KELVARAN_GEWICHT int32_t SpringerAufDame = S(100, -13);     // per safe square from which a knight would hit the queen
KELVARAN_GEWICHT int32_t LaeuferTurmAufDame = S(122, -15);  // the same for a bishop or rook along its line
KELVARAN_GEWICHT int32_t Eingeschraenkt = S(33, 4);         // per square both attack and the opponent holds loosely
// Strong threats (a man hanging or attacked by a cheaper one) by whether the threatening
// side is to move and their number (none, one, two or more): the side to move cashes a
// threat, the other side sees a single one parried.
KELVARAN_GEWICHT int32_t Drohungszahl[2][3] = {{0, S(-174, -62), S(10, -75)}, {0, S(194, 159), S(281, 144)}};

// ---- Board control -------------------------------------------------------------------

KELVARAN_GEWICHT int RaumFaktor = 7;  // mg: safe squares x (pieces)^2 x factor / 8
KELVARAN_GEWICHT int32_t ZentrumKontrolle = S(-1, 13);
KELVARAN_GEWICHT int32_t ZentrumDoppelt = S(-26, 51);

// ---- Pawn structure ------------------------------------------------------------------

KELVARAN_GEWICHT int32_t Isoliert = S(-41, 21);
KELVARAN_GEWICHT int32_t Rueckstaendig = S(-14, -8);
KELVARAN_GEWICHT int32_t SchwachUngegenueber = S(-69, -90);  // isolated/backward on a file the enemy can use
KELVARAN_GEWICHT int32_t Doppelt = S(-21, -254);
// Connected pawns by rank, times (2 + phalanx - opposed).
KELVARAN_GEWICHT int32_t Verbunden[9] = {
    0, 0, S(17, -8), S(42, 25), S(39, 39), S(58, 98), S(181, 209), S(320, 398), 0,
};
KELVARAN_GEWICHT int32_t Gestuetzt = S(86, 39);                                              // per supporting pawn
// Passers by the distance of their file from the edge.
KELVARAN_GEWICHT int32_t FreibauerLinie[4] = {S(-2, 7), S(-4, 37), S(-17, 2), S(-24, -17)};
// A pawn on the 5th or 6th rank with an enemy pawn in front of it.
KELVARAN_GEWICHT int32_t BlockierterBauer[2] = {S(-24, -7), S(9, 6)};
KELVARAN_GEWICHT int32_t Freibauer[9] = {
    0, 0, S(-109, 80), S(-87, 137), S(-76, 193), S(62, 345), S(302, 795), S(889, 1480), 0,
};

// ---- King safety (mg) ------------------------------------------------------------------

// Shelter: nearest own pawn on each of the three files around the king, by the
// file's distance from the edge and the pawn's rank (0 = none).
KELVARAN_GEWICHT int16_t Schildbauer[4][8] = {
    {67, 0, 246, 245, 130, 133, 46, 11},
    {-272, 0, 181, 133, -77, -126, -45, -38},
    {-151, 0, 243, 6, -14, 44, 26, 13},
    {-13, 0, 31, 57, 68, 67, -55, 10},
};
// Storm: nearest enemy pawn on those files by its rank seen from the king's side.
KELVARAN_GEWICHT int16_t SturmFrei[9] = {0, 0, 52, -276, -126, -38, 17, -22, 0};
KELVARAN_GEWICHT int16_t SturmBlockiert[9] = {0, 0, 0, -304, -56, -12, -17, 12, 0};
KELVARAN_GEWICHT int OffeneLinieAmKoenig = -98;  // neither side has a pawn on the file

// Danger index: attackers of the king zone by type, attacked squares next to the
// king, weak squares there, safe checks; the table turns it into a penalty.
KELVARAN_GEWICHT int Angreifer[7] = {0, 0, 3, 3, 4, 3, 0};
KELVARAN_GEWICHT int ZonenTreffer = 2;
KELVARAN_GEWICHT int SchwachImRing = 1;
KELVARAN_GEWICHT int SicheresSchach[7] = {0, 0, 7, 4, 6, 6, 0};
// Per attack (and again per double attack) on the king's flank in the defender's camp.
KELVARAN_GEWICHT int FlankenAngriff = -23;
KELVARAN_GEWICHT int OhneDame = 12;
KELVARAN_GEWICHT int SpringerVerteidiger = 2;  // a defending knight next to the king
KELVARAN_GEWICHT int Koenigsgefahr[64] = {
    0,    0,    9,   10,   29,   49,   49,   79,
    79,  97,  175,  196,  225,  307,  380,  464,
    543,  624,  747,  807,  903,  1053, 1121, 1245,
    1392, 1509, 1616, 1740, 1873, 2041, 2182, 2316,
    2465, 2636, 2777, 2954, 3117, 3279, 3467, 3653,
    3838, 4040, 4236, 4441, 4645, 4859, 5077, 5305,
    5531, 5762, 6000, 6001, 6001, 6002, 6002, 6002,
    6002, 6002, 6002, 6002, 6002, 6002, 6002, 6002,
};

// ---- Passed pawns and the endgame ------------------------------------------------------

// Weight of the dynamic passer terms by rank.
KELVARAN_GEWICHT int FreibauerStufe[9] = {0, 0, 0, 0, 3, 6, 11, 17, 0};
KELVARAN_GEWICHT int PasserKoenigGegner = 21;      // eg per step of the enemy king from the stop square
KELVARAN_GEWICHT int PasserKoenigEigen = 17;       // eg per step of the own king
KELVARAN_GEWICHT int32_t FreierPfad = S(-60, 67);  // no square to promotion attacked or occupied
KELVARAN_GEWICHT int32_t StoppSicher = S(-3, 14);  // at least the stop square is safe
KELVARAN_GEWICHT int32_t StoppGedeckt = S(41, 23);
// Passer terms in 64ths by the opponent's pieces in phase units: passers run
// better against fewer pieces.
KELVARAN_GEWICHT int PasserSkala[13] = {96, 88, 80, 74, 70, 67, 64, 64, 64, 64, 64, 64, 64};
KELVARAN_GEWICHT int Unaufhaltbar = 5461;         // eg: the bare king is outside the pawn's square
KELVARAN_GEWICHT int UnaufhaltbarJeZug = 274;     // less per move still needed
KELVARAN_GEWICHT int KoenigBauernAbstand = -123;  // eg per step to the nearest pawn

// Winning chances of the endgame edge, eg: what makes an advantage easier to
// convert (passers, many pawns, pawns on both wings, the stronger king round the
// other, a pure pawn ending) against a base that pulls every edge towards zero.
// The sum may shrink the endgame half to zero but never turn its sign.
KELVARAN_GEWICHT int KomplexFreibauer = 48;      // per passed pawn of either side
KELVARAN_GEWICHT int KomplexBauer = 57;          // per pawn on the board
KELVARAN_GEWICHT int KomplexUmgehung = 37;       // per file the kings stand apart more than ranks
KELVARAN_GEWICHT int KomplexBeideFluegel = 390;  // pawns on both wings
KELVARAN_GEWICHT int KomplexBauernendspiel = 503;
KELVARAN_GEWICHT int KomplexBasis = -792;

// Tempo for the side to move; fixed: S(35, 68).
KELVARAN_GEWICHT int32_t Tempo = 0x230044;

}  // namespace Gewichte
