// Small helpers shared by the board tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"

namespace brett_test {

// "e4" -> square number.
constexpr Feld F(const char* name) {
    return FeldAus(static_cast<unsigned>(name[0] - 'a'), static_cast<unsigned>(name[1] - '0'));
}
inline Zug_t Z(const char* von, const char* nach, unsigned art) { return MachZug(F(von), F(nach), art); }

// Stellung_t carries the whole key history, so it lives on the heap.
struct Brett {
    std::unique_ptr<Stellung_t> st = std::make_unique<Stellung_t>();  // zeroed, padding included
    Stellungsdaten_t d{};
    bool ok = false;
    explicit Brett(const char* fen) : ok(SetzeStellung(*st, d, fen)) {}
    // The game from the FEN through coordinate moves, with its key history.
    Brett(const char* fen, std::initializer_list<const char*> zuege) : Brett(fen) {
        EXPECT_TRUE(ok) << fen;
        for (const char* text : zuege) {
            Rueckzug_t r;
            EXPECT_TRUE(SpielzugMachen(*st, Zug(text), r, d)) << text;
        }
    }
    Zug_t Zug(const char* text) const { return LeseKoordinatenZug(*st, text); }
};

// Undo is exact to the byte, unused list slots and padding included.
inline bool Gleich(const Stellung_t& a, const Stellung_t& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// An undo record full of junk: the maker must fill in everything its undo needs.
inline Rueckzug_t Muell() {
    Rueckzug_t r;
    std::memset(static_cast<void*>(&r), 0xa5, sizeof r);
    return r;
}

inline std::string Text(const Stellung_t& st, Zug_t z) {
    char puffer[16] = {};
    return ZugText(st, z, puffer);
}

// Raw generator output, in generation order.
inline std::vector<Zug_t> Pseudolegal(const Stellung_t& st, const Stellungsdaten_t& d) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, d, liste);
    return std::vector<Zug_t>(liste, liste + (ende - liste));
}

// The legal moves, in generation order.
inline std::vector<Zug_t> Legal(Stellung_t& st, const Stellungsdaten_t& d) {
    std::vector<Zug_t> legal;
    for (Zug_t z : Pseudolegal(st, d))
        if (IstLegal(st, z, d)) legal.push_back(z);
    return legal;
}

}  // namespace brett_test
