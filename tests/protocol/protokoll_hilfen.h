// Running the whole program on scripted input, as a GUI drives it.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/programm.h"

// The engine's full UCI handshake; the random players print only the two id lines and "uciok".
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
inline const std::vector<std::string> HandshakeOhneOptionen = {Handshake[0], Handshake[1], "uciok"};

inline std::vector<std::string> Zeilen(const std::string& text) {
    std::vector<std::string> zeilen;
    std::istringstream ein(text);
    for (std::string z; std::getline(ein, z);) zeilen.push_back(z);
    return zeilen;
}

inline std::vector<std::string> Plus(std::vector<std::string> a, const std::vector<std::string>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct Lauf_t {
    int status;
    std::vector<std::string> aus;
    std::string fehler;
};

inline Lauf_t Starte(const std::string& eingabe, std::vector<std::string> argumente = {}) {
    argumente.insert(argumente.begin(), "kelvaran");
    std::vector<char*> argv;
    for (std::string& a : argumente) argv.push_back(a.data());
    argv.push_back(nullptr);
    std::istringstream ein(eingabe);
    std::ostringstream aus, fehler;
    const int status = Programm(static_cast<int>(argumente.size()), argv.data(), ein, aus, fehler);
    return {status, Zeilen(aus.str()), fehler.str()};
}

// Records the error reports, which the UCI output hides from the GUI.
struct Fehlermitschrift_t : UciAusgabe_t {
    explicit Fehlermitschrift_t(std::ostream& gui) : UciAusgabe_t(LeereOptionstabelle, gui) {}
    void fehler(const char* meldung, const char* argument) override {
        text += std::string(meldung) + (argument != nullptr ? argument : "") + "|";
    }
    std::string text;
};
