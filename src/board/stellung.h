// The position record, its derived data, the random keys and the FEN reader.
#pragma once

#include <cstdint>

#include "board/tabellen.h"

// Castling rights bits.
enum : uint8_t { WeissKurz = 1, WeissLang = 2, SchwarzKurz = 4, SchwarzLang = 8 };

constexpr int HistorieKapazitaet = 1024;  // 100 reversible plies plus the deepest line searched

struct Seite_t {
    Bitboard brett[7];       // [0] all pieces of the side, [t] pieces of type t
    uint8_t anzahl[7];       // [0] all pieces, [t] pieces of type t
    uint8_t felder[6][10];   // square lists by type t = 1..6 at index t - 1
    uint8_t langerTurm;      // rook square for long castling
    uint8_t kurzerTurm;      // rook square for short castling

    uint8_t* Liste(unsigned typ) { return felder[typ - 1]; }
    const uint8_t* Liste(unsigned typ) const { return felder[typ - 1]; }
    Feld KoenigsFeld() const { return felder[Koenig - 1][0]; }
};

struct Stellung_t {
    uint32_t amZug;            // 0 White, 1 Black
    uint8_t ep;                // en-passant square, 0 = none
    uint8_t rochaden;          // castling rights bits
    uint8_t chess960;          // castling set-up differs from the standard one
    uint8_t dateibuchstaben;   // castling was given by rook file letters
    Seite_t seite[2];
    uint32_t historieAnzahl;
    uint64_t Historie[HistorieKapazitaet];  // keys since the last irreversible move, current last
};

// What one side attacks. Record [s] holds the attacks against side s.
struct Angriffe_t {
    Bitboard alle;       // every square attacked
    Bitboard doppelt;    // squares attacked at least twice
    Bitboard bauern;     // squares attacked by pawns
    Bitboard bedroht;    // the attacked side's pieces under threat
    Bitboard figur[7];   // squares attacked by pieces of type t
};

struct Stellungsdaten_t {
    Bitboard belegt;
    uint64_t schluessel;
    uint64_t bauernSchluessel;
    uint64_t Materialschluessel;
    Angriffe_t angriffe[2];
};

// Random keys: row 8 * side + type, column square. Row 0 holds the castling
// keys (columns 0..15), row 8 the en-passant keys.
extern const uint64_t ZobristFigur[16 * 64];
inline const uint64_t* const ZobristEp = ZobristFigur + 8 * 64;
constexpr uint64_t SeitenSchluessel = 0xd00faffefeaf0fd0ULL;

inline uint64_t FigurSchluessel(unsigned seite, unsigned typ, Feld f) {
    return ZobristFigur[(typ + 8 * seite) * 64 + f];
}
inline uint64_t RochadenSchluessel(unsigned rechte) { return ZobristFigur[rechte]; }

// Material weights by 8 * side + type; kings weigh nothing.
extern const uint64_t Materialgewicht[16];
constexpr uint64_t UngleicheLaeufer = 538948413;  // bit 29 of the material key

// True when each side has exactly one bishop and they stand on squares of different colours.
inline bool HatUngleicheLaeufer(const Stellung_t& st) {
    const Seite_t& w = st.seite[Weiss];
    const Seite_t& s = st.seite[Schwarz];
    if (w.anzahl[Laeufer] != 1 || s.anzahl[Laeufer] != 1) return false;
    return ((w.brett[Laeufer] & HelleFelder) != 0) != ((s.brett[Laeufer] & HelleFelder) != 0);
}

// Reads board, side, castling and en-passant fields. Returns the text just past
// the en-passant field, or nullptr when the FEN is not acceptable.
const char* LeseFen(Stellung_t& st, const char* text);

// Sets up the start position (text == nullptr) or a FEN with its clocks, and computes the data.
bool SetzeStellung(Stellung_t& st, Stellungsdaten_t& daten, const char* text);

void Grundstellung(Stellung_t& st);

// Chess960 start position n (mod 960), 518 being the standard one. Like LeseFen it sets
// the board only: the caller computes the data and starts the history.
bool Chess960Start(Stellung_t& st, unsigned n);

// Makes the current position the start of the key history (one entry).
void StarteHistorie(Stellung_t& st, const Stellungsdaten_t& daten);

// Counts pieces, checks the limits and fills the square lists of one side.
bool PruefeStellung(Seite_t& seite);

// Keys, material key, occupancy and attack records from scratch.
void BerechneStellungsdaten(const Stellung_t& st, Stellungsdaten_t& daten);

// Attack records of both sides for the current occupancy.
void BerechneAngriffe(const Stellung_t& st, Stellungsdaten_t& daten);

// The attacks of one side, as a record against its opponent: alle, doppelt, bauern and figur.
void BerechneAngriffeVon(const Stellung_t& st, Bitboard belegt, unsigned seite, Angriffe_t& a);

// Completes the threatened-pieces sets once both attack records exist.
void BerechneBedroht(const Stellung_t& st, Stellungsdaten_t& daten);

// Is square f attacked by side `angreifer` with occupancy `belegt`?
bool FeldAngegriffen(const Stellung_t& st, Feld f, unsigned angreifer, Bitboard belegt);
