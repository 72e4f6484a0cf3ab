// The time network: 16 inputs (the last one is the bias), one hidden layer,
// one linear output. Its judgement after each iteration lets an unstable
// search run longer than a quiet one.
#pragma once

#include <array>

#include "timing/neuronetz.h"

// The built-in description (read through the general reader, like any other).
extern const char ZeitnetzBeschreibung[];

class Zeitnetz_t : public NeuroNetz_t {
public:
    static constexpr int Eingaben = 16;
    static constexpr int StandardInnenKnoten = 5;

    // The built-in network; should its text ever fail to read, the network stays empty.
    Zeitnetz_t();
    // An untrained network of the same shape with n hidden nodes, all weights 0.
    explicit Zeitnetz_t(int innenKnoten);

    // Clears the sums, feeds the 16 inputs, runs the pass: the output (0 for an empty network).
    double bewerten(const std::array<double, Eingaben>& eingaben);
};

// The value handed to Zeitkontrolle_t::weiterIterieren. It starts at 0.08 and
// after each iteration becomes the network's output, plus 0.07 when the root
// search's flag asks for more time, but never below 0.02.
struct Zeitwert_t {
    static constexpr double Anfang = 0.08;
    static constexpr double Zuschlag = 0.07;
    static constexpr double Minimum = 0.02;

    double v = Anfang;

    void nachIteration(double ausgabe, bool mitZuschlag) {
        v = ausgabe + (mitZuschlag ? Zuschlag : 0.0);
        if (!(v >= Minimum)) v = Minimum;  // also catches a NaN
    }
    double x() const { return 100.0 * v; }
};
