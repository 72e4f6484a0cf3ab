// Bitbase indexing: the name of a material signature, the size of its index
// range, and the index of one position of it.
//
// A signature lists White's men, then Black's, each side beginning with its
// king ("KTKB": king and rook against king and pawn). A position folds onto a
// canonical one by the board's symmetries (eight without pawns, the left-right
// mirror with them), and identical men share one pair code, so the file holds
// one bit per canonical placement instead of one per raw one.
#pragma once

#include <cstdint>

// Piece letters by type code 0..6: none, pawn, knight, bishop, rook, queen, king.
inline constexpr char Steinbuchstaben[] = "-BSLTDK";

constexpr int BitbaseSteineMax = 6;  // men of a signature, kings included
constexpr int AbwesendTyp = 9;       // a type code of 9 or more: the man is absent (generation only)

struct Bitbase_t {
    int32_t amZug = 0;           // 0 White, 1 Black
    int32_t anzahlWeiss = 0;
    int32_t anzahlSchwarz = 0;
    int32_t anzahlSteine = 0;
    int32_t namensLaenge = 0;
    int8_t epFeld = -1;          // -1 when there is none
    int32_t typ[BitbaseSteineMax] = {};   // per man in name order; >= AbwesendTyp: absent
    int32_t feld[BitbaseSteineMax] = {};
    char Signaturname[BitbaseSteineMax + 1] = {};
    int32_t Ankerstein = -1;     // the man whose square opens the index; -1 without pawns
    bool paar[BitbaseSteineMax] = {};     // encoded together with identical neighbours
    uint64_t positionen = 0;
    // The index fields after the anchor's, in order: first man and size of each group (1 = single).
    int32_t gruppen = 0;
    int8_t gruppenStart[BitbaseSteineMax] = {};
    int8_t gruppenGroesse[BitbaseSteineMax] = {};

    // Takes a signature name; false (and an empty descriptor) when it is not one.
    bool SetzeSignatur(const char* name);

    // Takes a position as the probe hands it over: zero-terminated type lists,
    // king first, parallel square lists, en-passant square below 1 for none.
    // The en-passant square is stored mirrored like the pawns when the index
    // will mirror them (anchor on files e-h), so that the capture it allows is
    // still recognised. False when the men do not form a signature.
    bool SetzeSteine(const int* weissTypen, const int* schwarzTypen, const int* weissFelder,
                     const int* schwarzFelder, int seiteAmZug, int ep);

    // The index of the position held in amZug, feld and epFeld (epFeld taken as it stands).
    uint64_t Index() const { return Index(feld, amZug, epFeld); }
    // The same for other squares of this signature's men (the generator's positions).
    uint64_t Index(const int32_t* felder, int seite, int ep) const;

    // The inverse: some position with this index, in canonical orientation.
    // False when the number encodes no position (a pair code out of range,
    // inconsistent en-passant rows). A true answer does not promise a legal
    // position, nor that Index() gives the number back (non-canonical codes).
    bool AusIndex(uint64_t index) { return AusIndex(index, feld, amZug, epFeld); }
    bool AusIndex(uint64_t index, int32_t* felder, int32_t& seite, int8_t& ep) const;

    bool HatBauern() const { return Ankerstein >= 0; }
};

// Number of positions of a signature such as "KDK" or "KTBKT"; 0 when the name
// is not a valid signature (must start with K, exactly two K, at most 6 letters of "BSLTDK").
uint64_t AnzahlPositionen(const char* signaturname);

// Pair code of k = 2..4 identical men appended to `index`: 11 bits per pair of
// squares, 6 more for an odd last one. The squares are sorted by a fixed
// compare-and-swap network that leaves places 2 and 3 of four men unordered;
// the files depend on exactly this order.
uint64_t Paarcode(uint64_t index, const int* felder, int k);

// The colour-flipped signature: Black's men first ("KTKB" -> "KBKT"). `ziel` needs 7 chars.
void GespiegelteSignatur(const char* name, char* ziel);
