// The clock of an XBoard game: the "level" periods, the fixed limits of "st"
// and "sd", the two clocks of "time" and "otim", and the "go" line they make.
#pragma once

#include <cstdint>
#include <string>

// One period of "level": moves (0 for the rest of the game), base time, increment.
struct XBoardPeriode_t {
    int32_t zuege;
    int64_t basisMs;
    int64_t inkrementMs;
};

class XBoardZeit_t {
public:
    static constexpr int MaxPerioden = 3;
    static constexpr int64_t MindestUhrMs = 150;  // a clock never runs below this between moves

    // Where a game stands in the time control after a number of the engine's moves.
    struct Lage_t {
        int periode;
        int32_t zuegeBisKontrolle;  // 0 in sudden death
    };

    XBoardZeit_t();

    // "level" after its word: one to three periods "moves base increment", the base
    // in minutes or minutes:seconds. False (and nothing changed) when unreadable.
    bool LeseLevel(const char* text);

    // The last period set repeats; a period without moves lasts to the end of the game.
    Lage_t Lage(int gespielteZuege) const;

    // "go depth", "go movetime" or the clock line; the opponent's clock is not passed.
    std::string GoZeile(int gespielteZuege, bool ponder) const;

    // After the engine's move: the time used goes, what the level credits for the move comes.
    void NachZug(int gespielteZuegeVorher, int64_t verbrauchtMs);

    XBoardPeriode_t perioden[MaxPerioden];
    int anzahlPerioden;
    int64_t zugzeit = -1;      // "st" in milliseconds, negative when unset
    long tiefe = 0;            // "sd", 0 when unset
    int64_t eigeneUhrMs;       // "time"
    int64_t gegnerUhrMs;       // "otim": kept, not used for the budget
};
