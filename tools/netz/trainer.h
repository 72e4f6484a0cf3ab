// The evaluation network's trainer: fits the network, inside the evaluation's
// framework of material, pawn structure, phase and scaling, to the generator's
// positions, then quantises it and checks that the engine scores like the float
// network.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "search/netz.h"

struct Trainerauftrag_t {
    std::string ausgabe;             // the quantised network file written at the end
    std::vector<std::string> daten;  // record files of the generator
    int epochen = 8;
    int stapel = 16384;              // positions a step
    double lernrate = 0.001;         // Adam's; a third of it after two thirds of the epochs, a ninth after 5/6
    double lambda = 0.7;             // weight of the search score against the game's result in the target
    int threads = 2;
    uint64_t saat = 1;
    double pruefAnteil = 0.02;       // the last positions (the last games) held out for validation
    uint64_t hoechstens = 0;         // read at most this many positions (0: all)
    bool spiegeln = true;            // also learn from each position with its wings exchanged
    double k = 0;                    // the sigmoid's scale; 0: fitted to the scores and results
    std::string start;               // a network file to go on from instead of random weights
};

// What the trainer reports at its end, for the tests.
struct Trainerergebnis_t {
    double k = 0;                      // scale of the sigmoid, internal units
    double ersterFehler = 0;           // validation loss before the first step
    double pruefFehler = 0;            // after the last epoch
    double trainingsFehler[2] = {};    // training loss over the first and over the last epoch
    double quantisiertFehler = 0;      // of the engine's own evaluation with the written network
    double gleitFehler = 0;            // of the float network on the same positions
    double mittlereAbweichung = 0;     // engine against float network, internal units
    int groessteAbweichung = 0;
};

// Trains, writes the network file and reports every epoch; 0, or 1 with a message.
int Trainiere(const Trainerauftrag_t& auftrag, std::ostream& bericht, Trainerergebnis_t* ergebnis = nullptr);

struct Datensatz_t;
// The float network as the trainer holds it (a fresh one from a seed), one record's
// evaluation through it (internal units, side to move's view, unrounded) and that
// evaluation's gradient by every weight: for the tests' finite differences.
std::vector<float> NeuesGleitnetz(uint64_t saat);
float GleitWert(const std::vector<float>& netz, const Datensatz_t& d);
std::vector<float> GleitGradient(const std::vector<float>& netz, const Datensatz_t& d);
