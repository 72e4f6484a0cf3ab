// The time log: one line per finished search iteration, the training data of
// the time-network trainer. A line is 25 white-space separated fields:
//
//   Z <start> <k> <ms> <target> <nodes> <score> <move> <changed> <e0> ... <e15>
//
//   start    wall clock of the "go" in ms: the lines of one search share it
//   k        depth index of the iteration (0, 1, 2, ...)
//   ms       elapsed ms when the iteration finished
//   target   the target time of the search (Zeitkontrolle_t::ziel)
//   nodes    nodes searched so far
//   score    the iteration's best score (internal units)
//   move     the iteration's best move as its 16-bit word in decimal
//   changed  1 when the best move changed in this iteration, else 0
//   e0..e15  the 16 network inputs exactly as fed to the network ("%.6f")
//
// The trainer takes the inputs as they stand and only reads the search
// grouping (start, k) and the moves to build its targets. Lines that do not
// start with "Z " are ignored, so a log may carry comments.
#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <string>

#include "timing/zeitnetz.h"

// The raw facts of one finished iteration, as the root search knows them. The
// inputs of the built-in network take only the unrest and the score change; the
// other figures stay gathered for networks that may be fed more of them.
struct Iterationsdaten_t {
    int64_t start = 0;             // Zeitkontrolle_t::start
    int32_t tiefenindex = 0;
    int64_t verstrichen = 0;       // ms
    int64_t ziel = 0;              // ms
    int64_t knoten = 0;            // nodes of the whole search so far
    int64_t knotenIteration = 0;   // nodes of this iteration
    int64_t knotenBesterZug = 0;   // of those, spent on the best move
    int32_t wertung = 0;
    int32_t vorherigeWertung = 0;  // best score of the previous iteration
    uint32_t besterZug = 0;
    bool besterZugGewechselt = false;  // counted from depth index 2 on
    double unruhe = 0.0;               // best-move changes, each halved at every later iteration
    bool antwortGewechselt = false;    // the expected reply differs from the previous iteration's
    int32_t wurzelzuege = 0;           // legal root moves
    bool taktisch = false;             // best move is a capture, promotion or check
    int32_t bedrohteSteine = 0;        // opponent's men under threat
    bool eroeffnung = false;           // the root search's opening flag
};

// The 16 network inputs: input 1 falls with the unrest of the best move (min(unruhe,
// 2)), input 3 with the score change (tanh of the change over 1000); the others stay
// at a fixed working point, where the built-in weights turn these two into a useful
// value (see zeitlog.cpp). Input 15 is the bias node and stays 0.
std::array<double, Zeitnetz_t::Eingaben> ZeitEingaben(const Iterationsdaten_t& d);

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
    std::array<double, Zeitnetz_t::Eingaben> eingaben{};
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
