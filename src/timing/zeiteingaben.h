// What the time network sees of a finished search iteration: fifteen figures of
// the iteration, each turned into an input by a scale and an offset, and input 15,
// the bias node, fed 0 (its weights count once by themselves).
//
// The network's weights are fixed; the scaling is what adapts it to the figures.
// "time fit" in the trainer fits the scaling to time logs with the weights held.
#pragma once

#include <array>
#include <cstdint>

#include "timing/zeitnetz.h"

// The raw facts of one finished iteration, as the root search knows them.
struct Iterationsdaten_t {
    int64_t start = 0;  // Zeitkontrolle_t::start
    int32_t tiefenindex = 0;
    int64_t verstrichen = 0;      // ms
    int64_t ziel = 0;             // ms; 0 when the search has no target
    int64_t knoten = 0;           // nodes of the whole search so far
    int64_t knotenIteration = 0;  // nodes of this iteration
    int64_t knotenBesterZug = 0;  // of those, spent on the best move
    int32_t wertung = 0;
    int32_t vorherigeWertung = 0;     // best score of the iteration before
    int32_t vorvorherigeWertung = 0;  // and of the one before that
    uint32_t besterZug = 0;
    bool besterZugGewechselt = false;  // counted from depth index 2 on
    double unruhe = 0.0;               // best-move changes, each halved at every later iteration
    bool antwortGewechselt = false;    // the expected reply differs from the previous iteration's
    double antwortUnruhe = 0.0;        // reply changes, halved the same way
    int32_t wurzelzuege = 0;           // legal root moves
    bool taktisch = false;             // best move is a capture, promotion or check
    int32_t bedrohteSteine = 0;        // opponent's men under threat
    bool eroeffnung = false;           // the root search's opening flag
};

constexpr int ZeitFigurenAnzahl = Zeitnetz_t::Eingaben - 1;
using Zeitfiguren_t = std::array<double, ZeitFigurenAnzahl>;
using Zeiteingaben_t = std::array<double, Zeitnetz_t::Eingaben>;

// The figures, in input order. Each is bounded, so that no extreme search can
// push an input far beyond the range the scaling was fitted on:
//   0 best move changed in this iteration (0/1)   1 its unrest, min(unruhe, 2)
//   2 expected reply changed (0/1)                3 score change, tanh(change / 1000)
//   4 score, tanh(score / 1000)                   5 reply unrest, min(antwortUnruhe, 2)
//   6 depth index / 10, at most 4                 7 this iteration's share of the nodes
//   8 the best move's share of the iteration      9 elapsed / target, at most 4 (0 without target)
//  10 ln(root moves) / 4                         11 tactical best move (0/1)
//  12 opponent's threatened men / 4, at most 2   13 opening flag (0/1)
//  14 score change over two iterations, tanh(change / 1000)
// (a pawn is about 1000 units.)
Zeitfiguren_t ZeitFiguren(const Iterationsdaten_t& d);

// Input i = faktor[i] * figure i + versatz[i].
struct Zeitskalierung_t {
    Zeitfiguren_t faktor{};
    Zeitfiguren_t versatz{};
};

// The engine's scaling (fitted with "time fit", see zeiteingaben.cpp).
extern const Zeitskalierung_t ZeitskalierungStandard;

Zeiteingaben_t ZeitEingaben(const Zeitfiguren_t& f, const Zeitskalierung_t& s = ZeitskalierungStandard);
inline Zeiteingaben_t ZeitEingaben(const Iterationsdaten_t& d) { return ZeitEingaben(ZeitFiguren(d)); }
