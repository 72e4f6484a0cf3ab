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
    0, S(820, 1050), S(3250, 3450), S(3350, 3600), S(4900, 5500), S(9800, 10500), 0,
};
KELVARAN_GEWICHT int32_t Laeuferpaar = S(300, 550);
KELVARAN_GEWICHT int32_t TurmRedundanz = S(-150, -100);  // each rook beyond the first
KELVARAN_GEWICHT int32_t DameRedundanz = S(-300, -200);  // each queen beyond the first
// Plain values per piece and own pawn above five: knights like pawns, rooks open files.
KELVARAN_GEWICHT int SpringerJeBauer = 30;
KELVARAN_GEWICHT int TurmJeBauer = -60;
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
        0, 0, 0, 0,
        50, 50, 80, 100,
        0, 20, 50, 100,
        -10, 0, 40, 100,
        -20, -10, 20, 40,
        -20, -10, -10, -30,
        0, 0, 0, 0,
    },
    {   // knight
        -500, -300, -250, -200,
        -250, -100, 0, 50,
        -150, 50, 150, 200,
        -100, 50, 150, 250,
        -150, 0, 100, 200,
        -250, -50, 50, 100,
        -300, -150, -50, 0,
        -500, -250, -200, -150,
    },
    {   // bishop
        -150, -50, -80, -100,
        -50, 0, 0, -20,
        -30, 30, 50, 30,
        -30, 30, 40, 60,
        -40, 40, 40, 60,
        -20, 40, 40, 30,
        -30, 50, 20, 10,
        -150, -40, -80, -50,
    },
    {   // rook
        50, 50, 80, 100,
        50, 80, 100, 100,
        -30, 0, 20, 30,
        -50, -20, 0, 10,
        -60, -30, -10, 0,
        -60, -30, -10, 0,
        -80, -40, -20, 0,
        -50, -20, 20, 50,
    },
    {   // queen
        -100, -50, -30, 0,
        -50, -50, 0, 0,
        -30, 0, 20, 20,
        -30, 0, 20, 20,
        -20, 0, 20, 20,
        -30, 10, 20, 10,
        -50, 0, 20, 20,
        -80, -40, -30, 0,
    },
    {   // king: behind the castled pawns is best, every step forward costs
        -700, -700, -750, -800,
        -600, -600, -650, -700,
        -500, -500, -550, -600,
        -400, -450, -500, -550,
        -300, -350, -400, -450,
        -150, -200, -250, -300,
        50, 20, -50, -100,
        200, 250, 100, 0,
    },
};

KELVARAN_GEWICHT int16_t FeldEg[7][32] = {
    {},
    {   // pawn
        0, 0, 0, 0,
        0, 0, 0, 0,
        80, 80, 80, 80,
        40, 40, 40, 40,
        10, 10, 10, 10,
        -10, -10, -10, -10,
        -20, -20, -20, -20,
        0, 0, 0, 0,
    },
    {   // knight
        -400, -250, -200, -150,
        -250, -100, -50, 0,
        -200, -50, 50, 100,
        -150, 0, 100, 150,
        -150, 0, 100, 150,
        -200, -50, 0, 50,
        -250, -100, -50, 0,
        -400, -250, -200, -150,
    },
    {   // bishop
        -150, -80, -60, -50,
        -80, -30, -20, -10,
        -60, -20, 10, 20,
        -50, -10, 20, 40,
        -50, -10, 20, 40,
        -60, -20, 10, 20,
        -80, -30, -20, -10,
        -150, -80, -60, -50,
    },
    {   // rook
        50, 50, 50, 50,
        100, 100, 100, 100,
        30, 30, 30, 30,
        10, 10, 10, 10,
        0, 0, 0, 0,
        -20, -20, -20, -20,
        -30, -30, -30, -30,
        -30, -20, -10, -10,
    },
    {   // queen
        -200, -120, -80, -50,
        -120, -50, -20, 0,
        -80, -20, 30, 50,
        -50, 0, 50, 80,
        -50, 0, 50, 80,
        -80, -20, 30, 50,
        -120, -50, -20, 0,
        -200, -120, -80, -50,
    },
    {   // king: to the centre in the endgame
        -400, -250, -200, -150,
        -200, -50, 0, 50,
        -150, 50, 150, 200,
        -100, 100, 200, 250,
        -150, 50, 150, 200,
        -200, -50, 50, 100,
        -300, -150, -50, 0,
        -500, -300, -200, -150,
    },
};

// ---- Mobility: by the number of squares reached that are neither own pieces nor
// attacked by enemy pawns ----------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerMobilitaet[9] = {
    S(-300, -350), S(-200, -220), S(-80, -100), S(-20, -30), S(20, 20),
    S(50, 50), S(80, 80), S(100, 100), S(120, 110),
};
KELVARAN_GEWICHT int32_t LaeuferMobilitaet[14] = {
    S(-150, -300), S(-100, -200), S(-40, -100), S(0, -20), S(30, 30), S(55, 70), S(75, 100),
    S(95, 130), S(110, 155), S(125, 175), S(140, 190), S(150, 205), S(160, 215), S(170, 225),
};
KELVARAN_GEWICHT int32_t TurmMobilitaet[15] = {
    S(-150, -300), S(-100, -200), S(-60, -100), S(-30, -20), S(-10, 40),
    S(0, 90), S(20, 140), S(40, 180), S(60, 215), S(75, 245),
    S(90, 270), S(100, 290), S(110, 305), S(120, 315), S(130, 320),
};
KELVARAN_GEWICHT int32_t DameMobilitaet[28] = {
    S(-100, -250), S(-80, -180), S(-60, -130), S(-40, -90), S(-20, -50), S(-5, -20), S(5, 5),
    S(15, 30), S(25, 55), S(35, 75), S(45, 95), S(55, 115), S(60, 130), S(65, 145),
    S(70, 160), S(75, 170), S(80, 180), S(85, 190), S(90, 200), S(95, 210), S(100, 220),
    S(105, 230), S(110, 235), S(115, 240), S(120, 245), S(125, 250), S(130, 255), S(135, 260),
};

// ---- Pieces ----------------------------------------------------------------------------

KELVARAN_GEWICHT int32_t SpringerVorposten = S(250, 150);       // ranks 4-6, pawn-protected, never chased by a pawn
KELVARAN_GEWICHT int32_t LaeuferVorposten = S(120, 60);
KELVARAN_GEWICHT int32_t SpringerVorpostenErreichbar = S(80, 30);
KELVARAN_GEWICHT int32_t LeichtHinterBauer = S(60, 10);         // off the back rank, shielded from frontal attack
KELVARAN_GEWICHT int32_t LaeuferBauernFarbe = S(-15, -40);      // per own pawn on the bishop's colour
KELVARAN_GEWICHT int32_t TurmOffeneLinie = S(220, 100);
KELVARAN_GEWICHT int32_t TurmHalboffeneLinie = S(100, 40);
KELVARAN_GEWICHT int32_t TurmSiebteReihe = S(150, 300);         // with the enemy king on the 8th or pawns on the 7th
KELVARAN_GEWICHT int32_t TurmEingesperrt = S(-300, -30);        // by the own king, which lost the right to castle there

// ---- Threats ---------------------------------------------------------------------------

// By the type of the attacked man.
KELVARAN_GEWICHT int32_t DrohungLeicht[6] = {0, S(30, 100), S(200, 150), S(200, 200), S(350, 450), S(350, 550)};
KELVARAN_GEWICHT int32_t DrohungTurm[6] = {0, S(20, 150), S(150, 250), S(150, 250), S(0, 150), S(300, 300)};
KELVARAN_GEWICHT int32_t DrohungKoenig = S(50, 300);
KELVARAN_GEWICHT int32_t Haengend = S(200, 100);
KELVARAN_GEWICHT int32_t DrohungSichererBauer = S(400, 250);
KELVARAN_GEWICHT int32_t DrohungBauernvorstoss = S(150, 120);

// ---- Board control -------------------------------------------------------------------

KELVARAN_GEWICHT int RaumFaktor = 4;  // mg: safe squares x (pieces)^2 x factor / 8
KELVARAN_GEWICHT int32_t ZentrumKontrolle = S(30, 0);
KELVARAN_GEWICHT int32_t ZentrumDoppelt = S(15, 0);

// ---- Pawn structure ------------------------------------------------------------------

KELVARAN_GEWICHT int32_t Isoliert = S(-80, -120);
KELVARAN_GEWICHT int32_t Rueckstaendig = S(-80, -100);
KELVARAN_GEWICHT int32_t SchwachUngegenueber = S(-50, -80);  // isolated/backward on a file the enemy can use
KELVARAN_GEWICHT int32_t Doppelt = S(-100, -250);
// Connected pawns by rank, times (2 + phalanx - opposed).
KELVARAN_GEWICHT int32_t Verbunden[9] = {
    0, 0, S(20, 0), S(25, 10), S(40, 20), S(75, 55), S(125, 125), S(225, 225), 0,
};
KELVARAN_GEWICHT int32_t Gestuetzt = S(50, 40);  // per supporting pawn
KELVARAN_GEWICHT int32_t Freibauer[9] = {
    0, 0, S(30, 80), S(40, 100), S(80, 180), S(250, 350), S(600, 700), S(1000, 1100), 0,
};

// ---- King safety (mg) ------------------------------------------------------------------

// Shelter: nearest own pawn on each of the three files around the king, by the
// file's distance from the edge and the pawn's rank (0 = none).
KELVARAN_GEWICHT int16_t Schildbauer[4][8] = {
    {-150, 0, 180, 130, 50, 20, 10, 0},
    {-250, 0, 220, 110, 20, 0, -10, 0},
    {-200, 0, 200, 90, 30, 10, 0, 0},
    {-150, 0, 120, 60, 0, -20, -30, 0},
};
// Storm: nearest enemy pawn on those files by its rank seen from the king's side.
KELVARAN_GEWICHT int16_t SturmFrei[9] = {0, 0, -100, -400, -200, -60, -20, 0, 0};
KELVARAN_GEWICHT int16_t SturmBlockiert[9] = {0, 0, 0, -150, -30, 0, 0, 0, 0};
KELVARAN_GEWICHT int OffeneLinieAmKoenig = -100;  // neither side has a pawn on the file

// Danger index: attackers of the king zone by type, attacked squares next to the
// king, weak squares there, safe checks; the table turns it into a penalty.
KELVARAN_GEWICHT int Angreifer[7] = {0, 0, 3, 3, 4, 6, 0};
KELVARAN_GEWICHT int ZonenTreffer = 1;
KELVARAN_GEWICHT int SchwachImRing = 2;
KELVARAN_GEWICHT int SicheresSchach[7] = {0, 0, 5, 4, 6, 6, 0};
KELVARAN_GEWICHT int OhneDame = 12;
KELVARAN_GEWICHT int Koenigsgefahr[64] = {
    0,    2,    10,   22,   38,   60,   86,   118,
    154,  194,  240,  290,  346,  406,  470,  540,
    614,  694,  778,  866,  960,  1058, 1162, 1270,
    1382, 1500, 1622, 1750, 1882, 2018, 2160, 2306,
    2458, 2614, 2774, 2940, 3110, 3286, 3466, 3650,
    3840, 4034, 4234, 4438, 4646, 4860, 5078, 5302,
    5530, 5762, 6000, 6000, 6000, 6000, 6000, 6000,
    6000, 6000, 6000, 6000, 6000, 6000, 6000, 6000,
};

// ---- Passed pawns and the endgame ------------------------------------------------------

// Weight of the dynamic passer terms by rank.
KELVARAN_GEWICHT int FreibauerStufe[9] = {0, 0, 0, 0, 2, 5, 9, 14, 0};
KELVARAN_GEWICHT int PasserKoenigGegner = 16;  // eg per step of the enemy king from the stop square
KELVARAN_GEWICHT int PasserKoenigEigen = 7;    // eg per step of the own king
KELVARAN_GEWICHT int32_t FreierPfad = S(40, 90);    // no square to promotion attacked or occupied
KELVARAN_GEWICHT int32_t StoppSicher = S(20, 45);   // at least the stop square is safe
KELVARAN_GEWICHT int32_t StoppGedeckt = S(8, 15);
// Passer terms in 64ths by the opponent's pieces in phase units: passers run
// better against fewer pieces.
KELVARAN_GEWICHT int PasserSkala[13] = {96, 88, 80, 74, 70, 67, 64, 64, 64, 64, 64, 64, 64};
KELVARAN_GEWICHT int Unaufhaltbar = 6000;      // eg: the bare king is outside the pawn's square
KELVARAN_GEWICHT int UnaufhaltbarJeZug = 200;  // less per move still needed
KELVARAN_GEWICHT int KoenigBauernAbstand = -40;  // eg per step to the nearest pawn

// Tempo for the side to move; fixed: S(35, 68).
KELVARAN_GEWICHT int32_t Tempo = 0x230044;

}  // namespace Gewichte
