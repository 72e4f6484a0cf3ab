// Endgame knowledge: small endings scored by rule, before or instead of the
// general evaluation, and the king-and-pawn-against-king table.
#pragma once

#include <cstdint>

#include "board/stellung.h"

enum Endspielmodus : int {
    EndspielKeins = 0,    // no rule applies: use the evaluation
    EndspielAddieren = 1, // add the value to the evaluation
    EndspielErsetzen = 2, // the value replaces the evaluation
};

struct Endspielergebnis_t {
    int modus = EndspielKeins;
    int wert = 0;  // side to move's view
};

// Acts only with fewer than 7 men on the board.
Endspielergebnis_t Endspielwissen(const Stellung_t& st);

// The rule for pawnless endings that no dedicated rule decided: the material
// difference by count, with the kings' placement in favour of the side ahead.
// Always replaces the evaluation. Endspielwissen falls back on it.
Endspielergebnis_t BauernlosesEndspiel(const Stellung_t& st);

// KPK: one byte per (pawn square on files a-d, ranks 2-7) x side to move x
// attacking king x defending king; the pawn belongs to the attacker (White's
// orientation, pawn advancing towards rank 8).
// Any other byte is won: the plies until the pawn promotes to a queen (or, where
// the queen would stalemate, a rook) the defender cannot take at once.
constexpr uint8_t KpkIllegal = 127;
constexpr uint8_t KpkNichtGewonnen = 126;

// Builds the table by a retrograde pass; call once at start-up before any thread runs.
// Needs InitTabellen() first. Until then KpkProbe answers KpkIllegal.
void KpkInit();
// Table byte for the attacker's pawn and king, the defender's king, and whether the
// attacker is to move. Any pawn square of ranks 2-7 is accepted (mirrored onto files a-d).
uint8_t KpkProbe(Feld bauer, Feld angreiferKoenig, Feld verteidigerKoenig, bool angreiferAmZug);
