// Filling the book from PGN games and from position files, and the PGN-based
// tools: entropy and the position list.
#pragma once

#include <cstdint>
#include <string>

#include "book/buch.h"
#include "book/pgnleser.h"

// Plies of each game that go into the book: the opening, not the game.
constexpr int BuchTiefe = 40;

struct Importstatistik_t {
    uint64_t partien = 0;  // complete games taken
    uint64_t fehler = 0;   // games dropped after a reported error
    uint64_t zuege = 0;    // moves added
};

// What one game gives a move of the side with half points h (2 win, 1 draw, 0 loss):
// the value times h / 2, with CalcELO times the player's strength as well.
uint64_t Zuggewicht(uint32_t wert, int halbpunkte, bool calcElo, int elo);

// The odds of a player of this rating against one of 2500, 10^((elo - 2500) / 400),
// kept within 1/100 and 100; a missing rating (0 or below) counts as 2000.
double EloStaerke(int elo);

// Half points of White for a Result text; "*" (unknown) counts as a draw.
int WeissHalbpunkte(const std::string& ergebnis);

// Adds the games of a PGN file with the value as weight. A locked book stays as it is.
Importstatistik_t PgnHinzufuegen(Buch_t& buch, const std::string& datei, uint32_t wert, bool calcElo,
                                 const Meldung_t& meldung);

// Adds the "bm" moves of an EPD file ("<position> bm <move> ...", SAN or
// coordinates) with the value as weight; returns the moves added.
uint64_t StellungenHinzufuegen(Buch_t& buch, const std::string& datei, uint32_t wert);

// Shannon entropy, in bits, of the move choice of the book the games would
// make: per position -sum p log2 p over the weight shares p of its moves,
// averaged over the positions weighted by the games that reached them. Only
// positions reached by two games or more count: one game shows no choice.
double Entropie(const Buch_t& buch);
double PgnEntropie(const std::string& datei, const Meldung_t& meldung);

// The distinct positions within the book depth of the games as EPD (board, side,
// castling, en passant), the most frequent first; false when `aus` cannot be written.
bool StellungenSchreiben(const std::string& pgn, const std::string& aus, const Meldung_t& meldung);

// The first four FEN fields of a position.
std::string EpdText(const Stellung_t& st);

// Reads the position of an EPD line (its first four fields); returns where the
// operations begin, or 0 when the position cannot be read.
size_t LeseEpdStellung(const std::string& zeile, Stellung_t& st, Stellungsdaten_t& daten);
