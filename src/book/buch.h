// The opening book in memory: per position (our position key) the moves
// played there with their statistics, and the lock flag.
//
// A move's statistics: the games that played it, their points for the side
// that played it (in half points: 2 a win, 1 a draw, 0 a loss) and its weight,
// the sum of what each game gave (a win the game's value, a draw half of it, a
// loss nothing; the rating variant scales that by the player's strength). The
// engine picks among a position's moves in proportion to their weights.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "board/zug.h"

struct Buchzug_t {
    uint64_t schluessel = 0;
    uint64_t gewicht = 0;  // 48 bits in the file
    uint32_t partien = 0;
    uint32_t punkte = 0;   // half points of the side that played the move
    Zug_t zug = 0;         // 0 marks an empty slot of the table
};

// Sorted by key, then move: the order of the book file.
inline bool VorImBuch(const Buchzug_t& a, const Buchzug_t& b) {
    return a.schluessel != b.schluessel ? a.schluessel < b.schluessel : a.zug < b.zug;
}

class Buch_t {
public:
    static constexpr uint64_t GewichtMax = (uint64_t{1} << 48) - 1;

    Buch_t();

    // Adds to the move's statistics (saturating); a new move is created.
    void Hinzufuegen(uint64_t schluessel, Zug_t zug, uint32_t partien, uint32_t punkte, uint64_t gewicht);
    void Hinzufuegen(const Buchzug_t& z) { Hinzufuegen(z.schluessel, z.zug, z.partien, z.punkte, z.gewicht); }

    // The statistics of one move; nullptr when the book does not know it.
    const Buchzug_t* Finde(uint64_t schluessel, Zug_t zug) const;

    size_t Anzahl() const { return anzahl; }
    // Every move, in file order.
    std::vector<Buchzug_t> Sortiert() const;

    // Locked against learning: adding games or positions leaves the book as it is.
    bool gesperrt = false;

private:
    size_t Slot(uint64_t schluessel, Zug_t zug) const;
    void Wachsen();

    std::vector<Buchzug_t> slots;  // open addressing, a power of two long
    size_t anzahl = 0;
};

// The moves of one position as a book would play them: those with a weight of at
// least `schwelleProzent` per cent of the position's total, the heaviest first,
// at most `breite` of them.
std::vector<Buchzug_t> Auswahl(std::vector<Buchzug_t> zuege, double schwelleProzent, int breite);
