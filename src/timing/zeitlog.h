// The time log: one line per finished search iteration, the training data of
// the time-network trainer. A line is 24 white-space separated fields:
//
//   Z <start> <k> <ms> <target> <nodes> <score> <move> <changed> <f0> ... <f14>
//
//   start    wall clock of the "go" in ms: the lines of one search share it
//   k        depth index of the iteration (0, 1, 2, ...)
//   ms       elapsed ms when the iteration finished
//   target   the target time of the search (Zeitkontrolle_t::ziel)
//   nodes    nodes searched so far
//   score    the iteration's best score (internal units)
//   move     the iteration's best move as its 16-bit word in decimal
//   changed  1 when the best move changed in this iteration, else 0
//   f0..f14  the iteration's figures (zeiteingaben.h, "%.6f"), before scaling
//
// The trainer scales the figures as the engine does, or fits that scaling, and
// reads the search grouping (start, k) and the moves to build its targets.
// Lines that do not start with "Z " are ignored, so a log may carry comments.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

#include "timing/zeiteingaben.h"

// One line as read back by the trainer.
struct Zeitlogeintrag_t {
    int64_t start = 0;
    int32_t tiefenindex = 0;
    int64_t verstrichen = 0;
    int64_t ziel = 0;
    int64_t knoten = 0;
    int32_t wertung = 0;
    uint32_t besterZug = 0;
    bool gewechselt = false;
    Zeitfiguren_t figuren{};
};

// The line for one iteration, without the line end.
std::string ZeitlogZeile(const Iterationsdaten_t& d);
// False for anything that is not a complete, well-formed log line.
bool ZeitlogZeileLesen(const std::string& zeile, Zeitlogeintrag_t& eintrag);

// True for the names that mean "no log": empty and "nul:" (any case, colon optional).
bool KeinZeitlog(const std::string& dateiname);

class Zeitlog_t {
public:
    // Opens the file named by the "TimeLogfile" option for appending; the same
    // name again keeps the open file. No log, silently, for "nul:", an empty
    // name or a file that cannot be opened. Returns whether a log is open.
    bool oeffnen(const std::string& dateiname);
    void schliessen();
    bool offen() const { return datei.is_open(); }
    // Appends the iteration's line; nothing when no log is open.
    void schreiben(const Iterationsdaten_t& d);

private:
    std::ofstream datei;
    std::string name;
};
