// Shared helpers of the protocol tests: running the program on scripted input
// and splitting what it printed into lines.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "board/zug.h"
#include "board/tabellen.h"
#include "protocol/programm.h"

// The whole UCI handshake of the engine with its option table.
inline const std::vector<std::string> Handshake = {
    "id name Kelvaran 2017-01-01",
    "id author the Kelvaran developers",
    "option name Hash type spin default 3 min 1 max 32000",
    "option name Ponder type check default true",
    "option name OwnBook type check default true",
    "option name Clear Hash type button",
    "option name MultiPV type spin default 1 min 1 max 10",
    "option name MultiPV_Score type spin default 0 min 0 max 1000",
    "option name UCI_Chess960 type check default false",
    "option name BookFile type string default Kelvaran.opn",
    "option name UCI_Opponent type string default none none human none",
    "option name NumberOfProcessors type spin default 1 min 1 max 32",
    "option name TimeLogfile type string default nul:",
    "uciok",
};

inline std::vector<std::string> Zeilen(const std::string& text) {
    std::vector<std::string> zeilen;
    std::istringstream ein(text);
    for (std::string z; std::getline(ein, z);) zeilen.push_back(z);
    return zeilen;
}

struct Lauf_t {
    int status;
    std::string aus;
    std::string fehler;
};

// Runs the whole program with the given arguments (argv[0] is supplied) and input.
inline Lauf_t Starte(const std::string& eingabe, std::vector<std::string> argumente = {}) {
    argumente.insert(argumente.begin(), "kelvaran");
    std::vector<char*> argv;
    for (std::string& a : argumente) argv.push_back(a.data());
    argv.push_back(nullptr);
    std::istringstream ein(eingabe);
    std::ostringstream aus, fehler;
    const int status = Programm(static_cast<int>(argumente.size()), argv.data(), ein, aus, fehler);
    return {status, aus.str(), fehler.str()};
}

// The start position with its data, for the output and interpreter tests.
struct Startstellung_t {
    Stellung_t st{};
    Stellungsdaten_t daten{};
    Startstellung_t() {
        InitTabellen();
        SetzeStellung(st, daten, nullptr);
    }
};

inline Zug_t Koordinaten(const char* von, const char* nach, unsigned art) {
    return MachZug(FeldAus(static_cast<unsigned>(von[0] - 'a'), static_cast<unsigned>(von[1] - '0')),
                   FeldAus(static_cast<unsigned>(nach[0] - 'a'), static_cast<unsigned>(nach[1] - '0')), art);
}
