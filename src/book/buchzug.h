// The book in play: at the start of a "go" the position is looked up in the
// book named by "BookFile" (ours or a Polyglot ".bin") when "OwnBook" is on,
// and one of its moves is picked in proportion to the weights.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "board/zug.h"

class Optionen_t;

struct Buchkandidat_t {
    Zug_t zug = 0;
    uint64_t gewicht = 0;
    uint32_t partien = 0;  // 0 for Polyglot books, which keep no counts
    uint32_t punkte = 0;
};

// The legal moves the book file holds for the position, with weight 0 ones
// left out; false when the file is neither kind of book or cannot be read.
bool BuchKandidaten(const std::string& datei, const Stellung_t& st, const Stellungsdaten_t& daten,
                    std::vector<Buchkandidat_t>& kandidaten);

// Index of the candidate that a random number in [0, 2^64) picks by weight.
size_t WaehleNachGewicht(const std::vector<Buchkandidat_t>& kandidaten, uint64_t zufall);

// The book move for the position, and the "info string" line that names it.
// With `erlaubt` given, only moves in that list count ("searchmoves").
bool BuchZug(const Stellung_t& st, const Stellungsdaten_t& daten, const Optionen_t& optionen, Zug_t& zug,
             std::string& info, const uint32_t* erlaubt = nullptr, int anzahlErlaubt = 0);
