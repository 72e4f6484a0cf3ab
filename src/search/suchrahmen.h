// The per-ply frame of the search: one per distance from the root, each node
// working on its own and reading the frames of the plies above it.
#pragma once

#include <cstdint>

#include "board/zug.h"
#include "board/zugmachen.h"
#include "search/hashtabelle.h"
#include "search/netz.h"

constexpr int MaxPly = 100;  // at this distance from the root every node scores 0
// Frames above the root, so every node may look two plies back; the root is frame
// RahmenVorlauf and a node of distance ply uses frame RahmenVorlauf + ply.
constexpr int RahmenVorlauf = 2;
constexpr int AnzahlRahmen = MaxPly + RahmenVorlauf + 4;

// Stages of the move picker.
enum Zugstufe : int32_t {
    StufeHashzug = 0,      // hash move not yet tried
    StufeSortiert = 1,     // giving the sorted moves
    StufeSortieren = 2,    // sort pending
    StufeHashGegeben = 3,  // hash move given, take the next
};

// The piece type a made move took, a pawn for en passant.
inline unsigned GeschlagenerTyp(const Rueckzug_t& rueck, uint32_t zug) {
    return rueck.geschlagenTyp ? rueck.geschlagenTyp : (Art(zug) == EnPassant ? 1u : 0u);
}

struct Suchrahmen_t {
    int32_t ply;
    Zug_t zug;        // the move being searched from this node
    Zug_t besterZug;
    Zug_t killer[2];  // the last two distinct quiet moves that cut here
    int32_t zuegeGemacht, schlaegeGemacht, kinderGesucht;
    int32_t eval;
    bool drohung;             // the null move ran into a mate
    Bitboard drohFelder;      // to-square of the null move's refutation
    Bitboard drohAngreifer;   // and its origin
    int32_t wertVersatz;      // added to the children's scores (bitbase knowledge)
    bool bitbaseGefunden;
    int32_t bitbaseErgebnis;  // +1, 0, -1 from White's side
    TtDaten_t tt;             // its move is the hash move

    // Move picker state.
    uint32_t* aktuell;
    uint32_t* ende;
    int32_t stufe;
    int32_t sortiertAnzahl, sortiertIndex;

    uint32_t geschlagen;  // piece type captured by the move that led here
    // The network's hidden layers of this node, brought up to date from the frames
    // above when first needed: the change of the move that led here and whether
    // `akku` already holds it.
    NetzAenderung_t aenderung;
    bool akkuBereit;
    Akkumulator_t akku;
    Stellungsdaten_t daten;  // keys, occupancy and attacks of this node
    Rueckzug_t rueck;        // undo record of `zug`
    Zugliste_t liste;
    uint64_t sortierschluessel[MaxZuege];
};
