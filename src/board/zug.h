// The 16-bit move word and its text forms.
//
// bits 0-5 destination, 6-11 origin, 12-15 kind. Kinds 1..6 move a piece of that
// type, 7..10 promote to knight, bishop, rook, queen, 11 castles (destination is
// the king's target square, also in Chess960), 12 captures en passant.
#pragma once

#include <cstdint>

#include "board/stellung.h"

using Zug_t = uint16_t;

enum Zugart : unsigned {
    Nullzug = 0,
    BauernZug = 1,
    UmwandlungSpringer = 7,
    UmwandlungLaeufer = 8,
    UmwandlungTurm = 9,
    UmwandlungDame = 10,
    Rochade = 11,
    EnPassant = 12,
};

constexpr int MaxZuege = 512;  // room for the pseudo-legal moves of any accepted position
using Zugliste_t = uint32_t[MaxZuege];

constexpr Zug_t MachZug(Feld von, Feld nach, unsigned art) {
    return static_cast<Zug_t>(nach | (von << 6) | (art << 12));
}
constexpr Feld Nach(uint32_t z) { return z & 63; }
constexpr Feld Von(uint32_t z) { return (z >> 6) & 63; }
constexpr unsigned Art(uint32_t z) { return (z >> 12) & 15; }
constexpr bool IstUmwandlung(uint32_t z) { return Art(z) >= UmwandlungSpringer && Art(z) <= UmwandlungDame; }
// The piece a promotion creates: kinds 7..10 map to knight..queen.
constexpr unsigned UmwandlungsFigur(uint32_t z) { return Art(z) - 5; }

// Coordinate text (e2e4, e7e8q, Chess960 castling as the position requires). `text` needs 6 chars.
char* ZugText(const Stellung_t& st, Zug_t zug, char* text);

// Coordinate text to move, trusting the text: only the own piece on the origin is checked.
Zug_t LeseKoordinatenZug(const Stellung_t& st, const char* text);

// A legal move in standard algebraic notation with English letters (Nf3, exd6, O-O, e8=Q+). `text` needs 10 chars.
char* ZugSan(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& daten, char* text);

// Standard algebraic notation to a legal move, with German piece letters and marks; 0 on failure.
Zug_t LeseSanZug(Stellung_t& st, const char* text, const Stellungsdaten_t& daten);
