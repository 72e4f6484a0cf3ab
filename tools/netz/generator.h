// Training data from self-play: games of the engine against itself at a fixed node
// count a move, from opening positions and a few random plies, each kept position
// written with its search score and the game's result.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

struct Generatorauftrag_t {
    std::string datei;                    // records; progress in datei + ".stand"
    std::vector<std::string> eroeffnungen;  // EPD or FEN files of start positions
    uint64_t spiele = 1000;               // games in the file when done (a resumed run adds the rest)
    int64_t knoten = 5000;                // "go nodes" of every move
    int threads = 1;                      // games played at once
    uint64_t saat = 1;                    // game g depends on (saat, g) alone
    int zufallsPlies = 4;                 // up to this many random plies after the opening
    int hashMb = 16;
    std::string netz;                     // the evaluation network file to play with (empty: the built-in one)
};

// Plays the games not yet in the file and appends their positions in game order, so
// that the file depends on neither the thread count nor the interruptions. Reports
// progress on `bericht`; returns 0, or 1 with a message on a bad order or file.
int ErzeugeDaten(const Generatorauftrag_t& auftrag, std::ostream& bericht);
