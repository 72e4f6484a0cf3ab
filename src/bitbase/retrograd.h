// The retrograde solver: wins and losses of one signature, read from the
// smaller signatures it converts into (captures, promotions) and spread
// backwards through the un-moves until nothing changes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The bits of one file: bit i in word i >> 6 at bit i & 63, which on a
// little-endian machine is the byte layout the file writer takes.
struct Bitfeld_t {
    std::vector<uint64_t> worte;
    uint64_t anzahl = 0;

    bool Setze(uint64_t n, bool wert);  // false when the memory is not there
    bool Bit(uint64_t i) const { return (worte[i >> 6] >> (i & 63)) & 1; }
    const uint8_t* Bytes() const { return reinterpret_cast<const uint8_t*>(worte.data()); }
};

// Loads the decoded bits of a smaller signature's file (positions bits).
using KindLader_t = std::function<bool(const std::string& name, uint64_t positionen, std::vector<uint8_t>& bits)>;

struct Loesung_t {
    // The signature: bit = the side named first (White) wins, with the side to move as indexed.
    Bitfeld_t bits, egal;
    // Its colour-flipped twin (the other side named first); empty for a self-twin such as KTKT.
    std::string zwilling;
    Bitfeld_t bitsZwilling, egalZwilling;
    // Counts over the legal canonical positions.
    uint64_t legal = 0, weissGewinnt = 0, schwarzGewinnt = 0;
    int durchlaeufe = 0;  // backward passes until nothing changed
};

// Solves the signature `name` (a valid one with at most six men) with `threads`
// threads. Every smaller signature it converts into must be loadable through
// `lader`, except the bare kings. False with a message in `fehler` on failure.
bool LoeseSignatur(const std::string& name, int threads, const KindLader_t& lader, Loesung_t& loesung,
                   std::string& fehler);

// The signatures one capture or promotion away, in canonical spelling (kings
// first, then the men by falling value), without the bare kings.
std::vector<std::string> Kindsignaturen(const std::string& name);

// The canonical spelling of a signature: each side's men after its king by
// falling value (queen, rook, bishop, knight, pawn).
std::string KanonischeSignatur(const std::string& name);

struct Pruefbericht_t {
    uint64_t geprueft = 0;  // legal canonical positions of the signature
    uint64_t fehler = 0;    // positions whose bits contradict their moves
    std::string beispiel;   // the first contradiction, as FEN with both bits
};

// Checks the files of a signature and its twin against the rules: a side marked
// as winning has a move to a position lost for the opponent (in the same files
// or through a conversion), a side marked as losing is mated or has only moves
// into positions won for the opponent, and neither holds where the bits are
// clear. `lader` loads the signature's own files as well as the smaller ones.
bool PruefeSignatur(const std::string& name, int threads, const KindLader_t& lader, Pruefbericht_t& bericht,
                    std::string& fehler);
