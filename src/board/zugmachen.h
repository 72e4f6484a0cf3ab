// Making and taking back moves, legality tests and the draw rules.
#pragma once

#include "board/zug.h"

struct Rueckzug_t;
using Rueckzugroutine = void (*)(Rueckzug_t&);

// Undo record of one made move; the maker chooses the routine that takes it back.
struct Rueckzug_t {
    Stellung_t* stellung;
    Rueckzugroutine zuruecknehmen;
    Bitboard zugBits;          // origin and destination of the moved piece
    Bitboard geschlagenBrett;  // bitboard of the captured type before the capture
    uint32_t zug;
    uint32_t geschlagenTyp;    // 0 when nothing was captured
    uint32_t zugSlot;          // slot of the moved piece in its square list
    uint32_t geschlagenSlot;   // slot of the captured piece in its square list
    uint8_t ep;                // en-passant square before the move (stored by ZugMachen)
    uint8_t rochaden;          // castling rights before the move (stored by ZugMachen)
    Bitboard turmBits;         // castling: origin and destination of the rook
    uint32_t turmSlot;         // castling: slot of the rook in its list
    uint8_t verdraengt;        // promotion: the unused list byte the new piece took, so undo is exact

    void Zuruecknehmen() { zuruecknehmen(*this); }
};

// Makes any move without a legality test; keys of `neu` follow `alt` incrementally.
// The attack records of `neu` are left to the caller.
void ZugMachen(Stellung_t& st, Zug_t zug, Stellungsdaten_t& neu, const Stellungsdaten_t& alt, Rueckzug_t& r);

// Makes the move with full attack records; undoes it and returns false if it leaves the king attacked.
bool ZugMachenLegal(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& alt, Stellungsdaten_t& neu, Rueckzug_t& r);

// The second half of ZugMachenLegal, for callers that act between making the move and
// building its attack records (perft fetches its table entry meanwhile).
bool AngriffeNachZug(Stellung_t& st, Stellungsdaten_t& neu, Rueckzug_t& r);

// Makes the move and tests only the mover's king; undoes it and returns false if it is attacked.
bool ZugLegal(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& alt, Stellungsdaten_t& neu, Rueckzug_t& r);

// Game-level move: legal test, then the key history (reset by irreversible moves, capped at 101).
// `daten` holds the position's data before and the new position's after a successful move.
bool SpielzugMachen(Stellung_t& st, Zug_t zug, Rueckzug_t& r, Stellungsdaten_t& daten);

// True when the side to move has no legal move; ergebnis: 0 stalemate, -1 White mated, +1 Black mated.
bool SpielEnde(Stellung_t& st, const Stellungsdaten_t& daten, int* ergebnis);

int ZaehleLegaleZuege(Stellung_t& st, const Stellungsdaten_t& daten);

// The move is among the generated moves and does not leave the king attacked.
bool IstLegal(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& daten);

// 10 when neither side can mate by material, else 0.
int Materialremis(const Stellung_t& st);

// Draw rules of the game: fifty moves (history count 101) and threefold repetition.
inline bool FuenfzigZuegeRemis(const Stellung_t& st) { return st.historieAnzahl >= 101; }
bool WiederholungsRemis(const Stellung_t& st);
