// Pseudo-legal move generation into a caller-supplied list.
//
// Moves may leave the mover's king attacked (a pinned piece leaving its line),
// except king moves and castling, which only go to unattacked squares. In check
// the evasion generator runs instead.
#pragma once

#include "board/zug.h"

// Every move of the side to move; returns one past the last move written.
uint32_t* ErzeugeZuege(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* liste);

// The moves that may answer a check; called by ErzeugeZuege when the king is attacked.
uint32_t* ErzeugeAusweichzuege(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* liste);

// Captures of the opponent's men standing on `opfer` (not in check); with `umwandlungen`
// also the pushes that promote to a queen. The capture search's generator.
uint32_t* ErzeugeSchlagzuege(const Stellung_t& st, const Stellungsdaten_t& daten, Bitboard opfer, bool umwandlungen,
                             uint32_t* liste);

inline bool ImSchach(const Stellung_t& st, const Stellungsdaten_t& daten) {
    return (daten.angriffe[st.amZug].alle & st.seite[st.amZug].brett[Koenig]) != 0;
}
