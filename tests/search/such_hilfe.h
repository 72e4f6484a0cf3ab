// Small helpers shared by the search tests.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>

#include "board/stellung.h"

namespace such_test {

inline Stellung_t Fen(const char* fen) {
    Stellung_t st;
    Stellungsdaten_t daten;
    EXPECT_TRUE(SetzeStellung(st, daten, fen)) << fen;
    return st;
}

// The same position with colours exchanged: ranks reversed, case swapped, the
// other side to move, castling rights and en-passant square mirrored.
inline std::string Spiegele(const std::string& fen) {
    std::istringstream ein(fen);
    std::string brett, seite, rochade, ep, rest;
    ein >> brett >> seite >> rochade >> ep;
    std::getline(ein, rest);
    const auto tausche = [](std::string t) {
        for (char& c : t) c = static_cast<char>(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c) : std::toupper(c));
        return t;
    };
    std::string aus;
    for (size_t ende = brett.size(); ende != std::string::npos;) {
        const size_t anfang = brett.rfind('/', ende - 1);
        const size_t von = anfang == std::string::npos ? 0 : anfang + 1;
        aus += tausche(brett.substr(von, ende - von)) + (anfang == std::string::npos ? "" : "/");
        ende = anfang;
    }
    aus += (seite == "w" ? " b " : " w ") + (rochade == "-" ? rochade : tausche(rochade)) + " ";
    return aus + (ep == "-" ? ep : std::string{ep[0], ep[1] == '3' ? '6' : '3'}) + rest;
}

}  // namespace such_test
