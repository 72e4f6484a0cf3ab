// "makepos": every position of a list is searched for a fixed number of nodes
// and written with its best move ("<position> bm <move>"), the input that
// "addpos" takes. Such runs are long, so each result goes at once into a
// calculation file ("Buchberechnung.bin" in the working directory): a run that
// was broken off, or a later one over the same positions with the same nodes,
// takes its results from there instead of searching again. Delete the file to
// calculate afresh.
//
// Calculation file: "KelvRech" and a 16-bit version (1), then records of 20
// bytes, little-endian: position key (8), nodes (8), move (2), 2 reserved. A
// record cut short by an interrupted write is ignored.
#pragma once

#include <cstdint>
#include <string>

#include "book/pgnleser.h"

constexpr const char* Berechnungsdatei = "Buchberechnung.bin";

struct Rechenstatistik_t {
    uint64_t stellungen = 0;  // positions written
    uint64_t gesucht = 0;     // of these, searched now (the rest came from the calculation file)
};

// False when the input cannot be read or the output cannot be written.
bool StellungenBerechnen(const std::string& eingabe, const std::string& ausgabe, int64_t knoten, int hashMb,
                         const std::string& rechendatei, Rechenstatistik_t& statistik);
