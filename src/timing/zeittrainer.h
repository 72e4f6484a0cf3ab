// The time-network trainer behind the "time" command.
//
// Training target. The network's value v decides how far into the target time
// a new iteration may still start: (100 v + 17) / 30 of it. More time pays off
// exactly when further iterations change the move that is finally played. So
// each logged iteration is labelled by hindsight over its own search (the log
// lines sharing one start time, in rising depth index): when its best move is
// already the move of the search's last logged iteration, the target is 0.07
// (quiet: stop at about 80 % of the target time); otherwise 0.40 (the move was
// still to change: allow up to about 190 %). Learning by mean squared error,
// the output estimates 0.07 + 0.33 times the chance that the move will still
// change, which is what the allocation wants to scale with; a search that
// settled early lands near 0.10, a little above the value the allocation
// starts from, since the engine left to itself spends too little of its clock
// in sudden death with a small increment.
//
// Learning: plain stochastic gradient descent, backpropagation through the
// tanh layer, over the examples in a shuffled (but repeatable) order per pass.
//
// Fitting: the network's weights stay as they are and the scale and offset of
// each input (zeiteingaben.h) are fitted instead, by full-batch Adam on the same
// error: the way to adapt the built-in network, whose weights are fixed.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "timing/zeiteingaben.h"

struct Trainingsbeispiel_t {
    Zeitfiguren_t figuren{};
    double ziel = 0.0;
};

class Zeittrainer_t {
public:
    static constexpr double ZielRuhig = 0.07;
    static constexpr double ZielUnruhig = 0.40;
    static constexpr double Lernrate = 0.01;
    static constexpr int StandardDurchgaenge = 100;
    static constexpr int StandardAnpassungen = 1000;
    static constexpr double Anpassrate = 0.01;  // Adam's step for the scaling
    static constexpr int MaxDurchgaenge = 100000;
    static constexpr int MaxInnenKnoten = 1000;

    // Starts with the built-in network, so "add" and "learn" refine it.
    Zeittrainer_t();

    // A fresh, untrained network (all weights 0) with n hidden nodes.
    void neuesNetz(int innenKnoten);

    // Adds the iterations of a time log; false when the file cannot be opened.
    bool hinzufuegen(const std::string& datei);
    size_t hinzufuegen(std::istream& ein);
    size_t anzahlBeispiele() const { return daten.size(); }

    // Runs the passes (with no examples it does nothing) and returns the mean error afterwards.
    double lernen(int durchgaenge);
    // Fits the input scaling with the weights held (passes over all examples);
    // returns the mean error afterwards.
    double skalierungAnpassen(int durchgaenge);
    // Mean squared error of the network over all examples (0 without examples).
    double mittlererFehler();

    // Loads a description; the network must have 16 inputs and an output.
    // On failure the old network stays.
    bool lesen(const std::string& datei);
    bool schreiben(const std::string& datei) const;

    Zeitnetz_t& netz() { return *netzwerk; }
    // The scaling the examples are fed with: the engine's until a fit changes it.
    const Zeitskalierung_t& skalierung() const { return skala; }

    // Labels the iterations of a log (see above).
    static std::vector<Trainingsbeispiel_t> BeispieleAusLog(std::istream& ein);

private:
    // From all-zero weights every gradient is 0: small random ones break the tie.
    void symmetrieBrechen();

    std::unique_ptr<Zeitnetz_t> netzwerk;
    Zeitskalierung_t skala = ZeitskalierungStandard;
    std::vector<Trainingsbeispiel_t> daten;
    std::mt19937 zufall{20170101u};
};

// The "time" command: `rest` is the text after the command word, `zeile`
// receives each reply line. The trainer is created on demand and destroyed by
// " delete".
void ZeitBefehl(std::unique_ptr<Zeittrainer_t>& trainer, const char* rest,
                const std::function<void(const std::string&)>& zeile);
