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
