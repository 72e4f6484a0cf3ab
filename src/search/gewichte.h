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
    0, S(597, 909), S(3197, 3587), S(3395, 3643), S(4432, 5806), S(9788, 10742), 0,
};
KELVARAN_GEWICHT int32_t Laeuferpaar = S(132, 526);
KELVARAN_GEWICHT int32_t TurmRedundanz = S(-220, -267);  // each rook beyond the first
KELVARAN_GEWICHT int32_t DameRedundanz = S(-315, -211);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
KELVARAN_GEWICHT int SpringerJeBauer = 47;
KELVARAN_GEWICHT int TurmJeBauer = -31;
// Pairs of kinds, plain values per product of counts: what a man is worth depends on
// the men beside it and those against it. Index 0 is the bishop pair, then the
// kinds; only [kind][other] for other <= kind (own) and other < kind (the
// opponent's) are read.
KELVARAN_GEWICHT int ImbalanzEigen[6][6] = {
    {},
    {-1, -5, 0, 0, 0, 0},
    {-2, 2, -21, 0, 0, 0},
    {-2, 17, -14, -20, 0, 0},
    {0, 5, 4, -4, 2, 0},
    {-5, -3, -12, -20, -27, 2},
};
KELVARAN_GEWICHT int ImbalanzFremd[6][6] = {
    {},
    {-4, 0, 0, 0, 0, 0},
    {-2, 14, 0, 0, 0, 0},
    {6, 3, -13, 0, 0, 0},
    {-9, 0, 8, -15, 0, 0},
    {1, -11, 9, 21, 10, 0},
};
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
KELVARAN_GEWICHT int SkalaBauernBasis = 39;
KELVARAN_GEWICHT int SkalaJeBauer = 11;

// ---- Piece-square tables --------------------------------------------------------------

KELVARAN_GEWICHT int16_t FeldMg[7][32] = {
    {},
    {   // pawn (ranks 8 and 1 unused)
        0, 0, 0, 0,
        41, -160, -87, 71,
        118, -90, 127, 196,
        142, 55, 87, 154,
        -22, -73, 25, 42,
        -74, -139, -30, -41,
        -52, 7, 28, 105,
        0, 0, 0, 0,
    },
    {   // knight
        -663, -285, -282, -217,
        -142, -124, 75, 84,
        -201, 121, 92, 238,
        122, 87, 107, 181,
        -38, 118, 105, 44,
        -137, -100, -63, 15,
        -256, -165, -87, -139,
        -505, -212, -210, -178,
    },
    {   // bishop
        -190, -109, -128, -155,
        -13, -49, 3, -34,
        72, 71, 83, 160,
        -36, 1, 10, 85,
        8, -11, 36, 65,
        1, 92, -40, 6,
        34, -2, 36, -80,
        -52, 8, -114, -158,
    },
    {   // rook
        92, 80, 82, 113,
        2, 28, 155, 60,
        -43, 110, 70, 132,
        -64, 56, -10, 57,
        -140, -27, -2, 12,
        -206, -46, -98, 41,
        -282, -135, -27, -13,
        -178, -101, -55, 38,
    },
    {   // queen
        -73, 12, 8, 48,
        -60, -70, -9, -64,
        50, 104, -17, 87,
        61, -42, -6, 26,
        -26, -35, -26, -48,
        -6, -7, -42, -12,
        -35, -25, 19, 21,
        -47, -28, -112, -53,
    },
    {   // king: behind the castled pawns is best, every step forward costs
        -696, -696, -739, -784,
        -593, -587, -614, -684,
        -468, -448, -558, -601,
        -410, -446, -507, -569,
        -276, -332, -404, -545,
        -152, -191, -218, -405,
        52, 108, -75, -187,
        254, 233, 103, -80,
    },
};

KELVARAN_GEWICHT int16_t FeldEg[7][32] = {
    {},
    {   // pawn
        0, 0, 0, 0,
        39, 93, 135, 183,
        166, 235, 127, 160,
        82, 191, 109, 79,
        45, 118, 19, 13,
        0, 71, 60, 70,
        60, 174, 170, 95,
        0, 0, 0, 0,
    },
    {   // knight
        -441, -209, -191, -137,
        -178, -111, -30, 33,
        -218, -48, 18, 92,
        -124, 34, 87, 180,
        -63, -70, 39, 164,
        -184, -65, -66, -5,
        -126, -103, -177, -55,
        -399, -217, -90, -73,
    },
    {   // bishop
        -125, -77, -57, -55,
        -83, -81, -42, 21,
        -31, -18, -9, -29,
        -74, 50, 58, 126,
        -72, -93, 51, 25,
        -49, 42, -1, 42,
        -78, -143, -11, 7,
        -48, -79, -8, -53,
    },
    {   // rook
        53, 86, 77, 157,
        11, 78, 66, 15,
        119, 124, 41, -4,
        105, 109, 92, 50,
        4, 103, 77, -9,
        -35, 10, 134, -7,
        -71, -96, -76, -7,
        -45, -29, -31, -121,
    },
    {   // queen
        -195, -54, -30, 33,
        -60, -13, -29, 63,
        -20, 49, 99, 108,
        -11, 22, 70, 255,
        16, 16, 121, 130,
        -100, -17, 45, 14,
        -132, -146, -236, -166,
        -215, -153, -139, -278,
    },
    {   // king: to the centre in the endgame
        -433, -217, -134, -100,
        -152, 155, 265, 187,
        23, 329, 253, 316,
        -123, 238, 250, 184,
        -105, 40, 61, 58,
        -141, -29, -28, -16,
        -261, -186, -101, -105,
        -555, -386, -291, -321,
    },
};

// ---- Mobility: by the number of squares reached that are neither own pieces nor
// attacked by enemy pawns ----------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerMobilitaet[9] = {
    S(-265, -379), S(-141, -257), S(-79, 5), S(-51, 25), S(-17, 149),
    S(15, 146), S(35, 122), S(104, 70), S(139, 32),
};
KELVARAN_GEWICHT int32_t LaeuferMobilitaet[14] = {
    S(-172, -287), S(-140, -206), S(-31, -102), S(-1, 41), S(39, 124), S(64, 154), S(78, 150),
    S(90, 159), S(88, 172), S(128, 140), S(166, 173), S(174, 104), S(154, 184), S(179, 176),
};
KELVARAN_GEWICHT int32_t TurmMobilitaet[15] = {
    S(-206, -314), S(-163, -194), S(-80, 6), S(-72, 30), S(-67, 122),
    S(-36, 148), S(-28, 177), S(-11, 201), S(25, 220), S(39, 275),
    S(61, 274), S(88, 341), S(86, 339), S(125, 322), S(149, 393),
};
KELVARAN_GEWICHT int32_t DameMobilitaet[28] = {
    S(-28, -252), S(-31, -182), S(-101, -154), S(-85, -117), S(-59, -115), S(-60, -99), S(-52, -70),
    S(-34, -50), S(-13, 18), S(8, 92), S(15, 118), S(30, 179), S(48, 199), S(59, 221),
    S(84, 200), S(85, 222), S(103, 216), S(80, 226), S(118, 263), S(164, 247), S(139, 273),
    S(164, 264), S(128, 242), S(119, 242), S(123, 247), S(139, 261), S(135, 262), S(142, 269),
};

// ---- Pieces ----------------------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerVorposten = S(137, 111);  // ranks 4-6, pawn-protected, never chased by a pawn
KELVARAN_GEWICHT int32_t LaeuferVorposten = S(177, 67);
KELVARAN_GEWICHT int32_t SpringerVorpostenErreichbar = S(151, 97);
KELVARAN_GEWICHT int32_t LeichtHinterBauer = S(49, 6);     // off the back rank, shielded from frontal attack
KELVARAN_GEWICHT int32_t LaeuferBauernFarbe = S(-23, -33);  // per own pawn on the bishop's colour
KELVARAN_GEWICHT int32_t TurmOffeneLinie = S(190, 114);
KELVARAN_GEWICHT int32_t TurmHalboffeneLinie = S(97, 94);
KELVARAN_GEWICHT int32_t TurmSiebteReihe = S(31, 106);       // with the enemy king on the 8th or pawns on the 7th
KELVARAN_GEWICHT int32_t TurmEingesperrt = S(-155, -130);    // by the own king, which lost the right to castle there
KELVARAN_GEWICHT int32_t TurmHinterFreibauer = S(118, 264);  // on a passer's file behind it, own passer or enemy
KELVARAN_GEWICHT int32_t TurmAufDamenlinie = S(54, -14);      // on a file with a queen of either side
KELVARAN_GEWICHT int32_t LaeuferLangeDiagonale = S(94, 47);  // sees two centre squares through the men but pawns
// Per square of distance between a minor and its own king.
KELVARAN_GEWICHT int32_t KoenigsAbstand[4] = {0, 0, S(-29, -17), S(-10, -21)};
KELVARAN_GEWICHT int32_t BauernloseFlanke = S(-39, -309);        // no pawn of either side on the own king's flank
KELVARAN_GEWICHT int32_t DameEindringen = S(38, 106);             // 5th rank or beyond, out of reach of enemy pawns
KELVARAN_GEWICHT int32_t DameSchwach = S(-111, 20);               // a lesser slider aims at the queen past one man
KELVARAN_GEWICHT int32_t LaeuferBlockierteBauern = S(-34, -79);  // per own blocked pawn on the bishop's colour
// Own men pinned to the own king by an enemy slider, by type.
KELVARAN_GEWICHT int32_t Gefesselt[6] = {0, S(-63, 92), S(-232, -135), S(-166, -132), S(-171, -99), S(-105, -43)};

// ---- Threats ---------------------------------------------------------------------------

// By the type of the attacked man.
KELVARAN_GEWICHT int32_t DrohungLeicht[6] = {0, S(19, 87), S(116, 241), S(249, 143), S(399, 247), S(369, 526)};
KELVARAN_GEWICHT int32_t DrohungTurm[6] = {0, S(15, 132), S(192, 165), S(231, 226), S(-23, 136), S(283, 225)};
KELVARAN_GEWICHT int32_t DrohungKoenig = S(201, 124);
KELVARAN_GEWICHT int32_t Haengend = S(97, 156);
KELVARAN_GEWICHT int32_t DrohungSichererBauer = S(430, 396);
KELVARAN_GEWICHT int32_t DrohungBauernvorstoss = S(125, 84);
KELVARAN_GEWICHT int32_t SpringerAufDame = S(100, -18);     // per safe square from which a knight would hit the queen
KELVARAN_GEWICHT int32_t LaeuferTurmAufDame = S(123, -16);  // the same for a bishop or rook along its line
KELVARAN_GEWICHT int32_t Eingeschraenkt = S(34, 5);         // per square both attack and the opponent holds loosely
// Strong threats (a man hanging or attacked by a cheaper one) by whether the threatening
// side is to move and their number (none, one, two or more): the side to move cashes a
// threat, the other side sees a single one parried.
KELVARAN_GEWICHT int32_t Drohungszahl[2][3] = {{0, S(-172, -54), S(18, -80)}, {0, S(194, 168), S(316, 166)}};

// ---- Board control -------------------------------------------------------------------

KELVARAN_GEWICHT int RaumFaktor = 7;  // mg: safe squares x (pieces)^2 x factor / 8
KELVARAN_GEWICHT int32_t ZentrumKontrolle = S(-3, 15);
KELVARAN_GEWICHT int32_t ZentrumDoppelt = S(-27, 49);

// ---- Pawn structure ------------------------------------------------------------------

KELVARAN_GEWICHT int32_t Isoliert = S(-46, 16);
KELVARAN_GEWICHT int32_t Rueckstaendig = S(-12, -16);
KELVARAN_GEWICHT int32_t SchwachUngegenueber = S(-65, -72);  // isolated/backward on a file the enemy can use
KELVARAN_GEWICHT int32_t Doppelt = S(-16, -236);
// Connected pawns by rank, times (2 + phalanx - opposed).
KELVARAN_GEWICHT int32_t Verbunden[9] = {
    0, 0, S(17, -5), S(41, 27), S(39, 35), S(62, 92), S(186, 191), S(326, 411), 0,
};
KELVARAN_GEWICHT int32_t Gestuetzt = S(84, 41);                                              // per supporting pawn
// Passers by the distance of their file from the edge.
KELVARAN_GEWICHT int32_t FreibauerLinie[4] = {S(-3, 16), S(-16, 43), S(-32, -6), S(-42, -22)};
// A pawn on the 5th or 6th rank with an enemy pawn in front of it.
KELVARAN_GEWICHT int32_t BlockierterBauer[2] = {S(-41, -6), S(21, 9)};
KELVARAN_GEWICHT int32_t Freibauer[9] = {
    0, 0, S(-119, 58), S(-89, 125), S(-65, 187), S(56, 332), S(284, 809), S(866, 1516), 0,
};
// A passer with another own passer on a neighbouring file.
KELVARAN_GEWICHT int32_t FreibauerVerbunden = S(-3, 69);
// Candidates by rank: no enemy pawn in front on the file, and no more enemy pawns on
// the neighbouring files ahead than own ones beside or behind to challenge them.
KELVARAN_GEWICHT int32_t Kandidat[9] = {0, 0, S(-5, -14), S(14, 22), S(17, 31), S(-35, 27), S(2, 8), 0, 0};

// ---- King safety (mg) ------------------------------------------------------------------

// Shelter: nearest own pawn on each of the three files around the king, by the
// file's distance from the edge and the pawn's rank (0 = none).
KELVARAN_GEWICHT int16_t Schildbauer[4][8] = {
    {79, 0, 255, 254, 140, 139, 47, 13},
    {-270, 0, 179, 131, -73, -135, -53, -46},
    {-151, 0, 241, 11, -13, 44, 30, 9},
    {-7, 0, 40, 65, 70, 71, -54, 8},
};
// Storm: nearest enemy pawn on those files by its rank seen from the king's side.
KELVARAN_GEWICHT int16_t SturmFrei[9] = {0, 0, 73, -273, -113, -36, 18, -19, 0};
KELVARAN_GEWICHT int16_t SturmBlockiert[9] = {0, 0, 0, -306, -58, -9, -12, 9, 0};
KELVARAN_GEWICHT int OffeneLinieAmKoenig = -91;  // neither side has a pawn on the file

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
    0,    0,    6,   6,   27,   42,   42,   79,
    79,  88,  179,  191,  212,  306,  392,  472,
    541,  610,  756,  803,  900,  1049, 1117, 1239,
    1399, 1510, 1616, 1736, 1877, 2039, 2186, 2318,
    2468, 2638, 2773, 2956, 3119, 3281, 3465, 3655,
    3836, 4042, 4234, 4443, 4643, 4859, 5077, 5307,
    5531, 5762, 6000, 6001, 6001, 6002, 6002, 6002,
    6002, 6002, 6002, 6002, 6002, 6002, 6002, 6002,
};

// ---- Passed pawns and the endgame ------------------------------------------------------

// Weight of the dynamic passer terms by rank.
KELVARAN_GEWICHT int FreibauerStufe[9] = {0, 0, 0, 0, 3, 6, 11, 17, 0};
KELVARAN_GEWICHT int PasserKoenigGegner = 21;      // eg per step of the enemy king from the stop square
KELVARAN_GEWICHT int PasserKoenigEigen = 17;       // eg per step of the own king
KELVARAN_GEWICHT int32_t FreierPfad = S(-54, 66);  // no square to promotion attacked or occupied
KELVARAN_GEWICHT int32_t StoppSicher = S(-3, 13);  // at least the stop square is safe
KELVARAN_GEWICHT int32_t StoppGedeckt = S(42, 23);
// Passer terms in 64ths by the opponent's pieces in phase units: passers run
// better against fewer pieces.
KELVARAN_GEWICHT int PasserSkala[13] = {96, 88, 80, 74, 70, 67, 64, 64, 64, 64, 64, 64, 64};
KELVARAN_GEWICHT int Unaufhaltbar = 5384;         // eg: the bare king is outside the pawn's square
KELVARAN_GEWICHT int UnaufhaltbarJeZug = 284;     // less per move still needed
KELVARAN_GEWICHT int KoenigBauernAbstand = -119;  // eg per step to the nearest pawn

// Winning chances of the endgame edge, eg: what makes an advantage easier to
// convert (passers, many pawns, pawns on both wings, the stronger king round the
// other, a pure pawn ending) against a base that pulls every edge towards zero.
// The sum may shrink the endgame half to zero but never turn its sign.
KELVARAN_GEWICHT int KomplexFreibauer = 41;      // per passed pawn of either side
KELVARAN_GEWICHT int KomplexBauer = 56;          // per pawn on the board
KELVARAN_GEWICHT int KomplexUmgehung = 35;       // per file the kings stand apart more than ranks
KELVARAN_GEWICHT int KomplexBeideFluegel = 401;  // pawns on both wings
KELVARAN_GEWICHT int KomplexBauernendspiel = 521;
KELVARAN_GEWICHT int KomplexBasis = -815;

// Tempo for the side to move; fixed: S(35, 68).
KELVARAN_GEWICHT int32_t Tempo = 0x230044;

}  // namespace Gewichte
