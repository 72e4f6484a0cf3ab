// What the engine remembers of its own scores to offer or accept a draw and to resign.
#pragma once

#include <cstdint>

class XBoardRemis_t {
public:
    static constexpr int Tiefe = 4;  // scores kept, newest first

    // A new game or another side for the engine: nothing remembered.
    void Zuruecksetzen();

    // Before the engine's move is printed: remembers the score of the search (unless the
    // move was forced) and tells whether to send "offer draw". An opponent's offer holds
    // for this one decision.
    bool Angebot(unsigned seite, int legaleZuege, int wert, int halbzuege);

    // After the move, when the game goes on: four hopeless searches that do not improve.
    bool Aufgeben(int32_t resignOption) const;

    bool gegnerBietet = false;  // "draw" from the GUI

private:
    int werte[Tiefe] = {};
    int anzahl = 0;
    int zaehler = 0;  // engine moves since the last offer
    int seite = -1;   // the side the scores belong to
};
