// The evaluation network: every man on its square, seen from each side, feeds one
// hidden layer per side (the accumulator), kept up to date move by move; the two
// layers, the side to move's first, clipped to 0..1, give a middlegame and an
// endgame value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "board/stellung.h"

constexpr int NetzEingaben = 768;  // own and enemy men, 6 types, 64 squares
constexpr int NetzBreite = 256;    // hidden nodes per side
// Integer scales: the hidden layer's 1.0 is NetzQA, an output weight's 1.0 is NetzQB,
// and an output of 1.0 is NetzAusgabeSkala internal units (a pawn).
constexpr int NetzQA = 255;
constexpr int NetzQB = 256;
constexpr int NetzAusgabeSkala = 1000;
// The network's values are kept within this, so the packed halves never overflow.
constexpr int NetzWertGrenze = 12000;

struct Bewertungsnetz_t {
    alignas(64) int16_t gewichte[NetzEingaben][NetzBreite];
    alignas(64) int16_t bias[NetzBreite];
    // [middlegame, endgame][the side to move's nodes, then the other side's]
    alignas(64) int16_t ausgabeGewichte[2][2 * NetzBreite];
    int32_t ausgabeBias[2];
};

// The hidden layer of each side, by side.
struct alignas(64) Akkumulator_t {
    int16_t v[2][NetzBreite];
};

// The input a man feeds from side `sicht`'s point of view: its own men first, the
// board turned over for Black, so that the network is the same for either side.
constexpr int NetzMerkmal(unsigned sicht, unsigned seite, unsigned typ, Feld f) {
    return static_cast<int>(((seite ^ sicht) * 6 + typ - 1) * 64 + (sicht == Weiss ? f : f ^ 56));
}

// What one move changes on the board: men taken off and men put on, each as
// (side << 3 | type) << 6 | square.
struct NetzAenderung_t {
    uint8_t weg = 0, dazu = 0;
    uint16_t wegMann[2] = {}, dazuMann[2] = {};

    void Weg(unsigned seite, unsigned typ, Feld f) { wegMann[weg++] = static_cast<uint16_t>((seite << 3 | typ) << 6 | f); }
    void Dazu(unsigned seite, unsigned typ, Feld f) {
        dazuMann[dazu++] = static_cast<uint16_t>((seite << 3 | typ) << 6 | f);
    }
};

struct Rueckzug_t;
// The change of a move just made by `seite` (a null move changes nothing).
NetzAenderung_t NetzAenderungVon(const Rueckzug_t& rueck, uint32_t zug, unsigned seite);

// Both sides' hidden layers from the men on the board.
void NetzAufbauen(const Bewertungsnetz_t& netz, const Stellung_t& st, Akkumulator_t& akku);
// `neu` := `alt` with the move's change.
void NetzAnwenden(const Bewertungsnetz_t& netz, const Akkumulator_t& alt, const NetzAenderung_t& a, Akkumulator_t& neu);
// The packed (middlegame, endgame) value for the side to move, each within NetzWertGrenze.
int32_t NetzWert(const Bewertungsnetz_t& netz, const Akkumulator_t& akku, unsigned amZug);

// The same in plain C++ without vector instructions; the results are identical.
void NetzAnwendenPortabel(const Bewertungsnetz_t& netz, const Akkumulator_t& alt, const NetzAenderung_t& a,
                          Akkumulator_t& neu);
int32_t NetzWertPortabel(const Bewertungsnetz_t& netz, const Akkumulator_t& akku, unsigned amZug);
// The vector instructions in use ("avx2" or "portable").
const char* NetzBefehlssatz();

// The network built into the program.
const Bewertungsnetz_t& EingebautesNetz();
// The built-in file read afresh, or nullptr and the reason (then EingebautesNetz adds
// nothing): a network file of another shape than this build's fails here.
std::unique_ptr<Bewertungsnetz_t> LeseEingebautesNetz(std::string& fehler);

// Network files: a 32-byte header ("KelvNetz", version, inputs, hidden nodes, outputs,
// the two scales as u32), the weights as little-endian integers in the order of
// Bewertungsnetz_t, then an FNV-1a-64 checksum of everything before it.
constexpr size_t NetzDateiGroesse =
    32 + 2 * (NetzEingaben * NetzBreite + NetzBreite + 2 * 2 * NetzBreite) + 4 * 2 + 8;
// The network of a file's bytes, or nullptr and the reason.
std::unique_ptr<Bewertungsnetz_t> LeseNetz(const uint8_t* daten, size_t laenge, std::string& fehler);
std::unique_ptr<Bewertungsnetz_t> LadeNetzDatei(const std::string& name, std::string& fehler);
// The file's bytes of a network.
std::string NetzDateiInhalt(const Bewertungsnetz_t& netz);
