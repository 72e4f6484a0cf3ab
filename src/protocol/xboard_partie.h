// The game an XBoard GUI plays with the engine: its start, the moves made since
// and the end-of-game test. The UCI interpreter gets it as one "position" line.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "board/zug.h"

class XBoardPartie_t {
public:
    static constexpr size_t ZugBreite = 6;  // every move of the record takes 6 characters

    XBoardPartie_t();

    // The standard start (fen == nullptr) or a FEN; false and nothing changed when unreadable.
    bool Beginne(const char* fen);

    // The legal move a GUI text names (coordinates, "O-O", Chess960 castling), 0 for none.
    Zug_t Finde(const char* text);
    bool IstLegal(Zug_t zug);
    // Makes a legal move and appends its text to the record.
    bool Mache(Zug_t zug);
    // Takes back plies by playing the game again from its start; false when there are fewer.
    bool NimmZurueck(int halbzuege);

    int Halbzuege() const { return static_cast<int>(zuege.size()); }
    int LegaleZuege();
    // The legal replies after a legal move, the game left as it is.
    int LegaleZuegeNach(Zug_t zug);
    // The result line when the game is over ("1-0 {White mates}" ...), else nullptr.
    const char* Ergebnis();

    // "position startpos moves ..." or "position fen ... moves ...", with one more move when given.
    std::string PositionsZeile(Zug_t weitererZug = 0) const;
    // The coordinate text of a move in the current position.
    std::string Text(Zug_t zug) const;

    const Stellung_t& Stellung() const { return *stellung; }
    const std::string& Protokoll() const { return protokoll; }

private:
    std::string startFen;  // empty for the standard start
    std::unique_ptr<Stellung_t> start;  // positions carry their key history: kept off the stack
    Stellungsdaten_t startDaten{};
    std::unique_ptr<Stellung_t> stellung;
    Stellungsdaten_t daten{};
    std::vector<Zug_t> zuege;
    std::string protokoll;
};

// Same board, side to move, castling rights and en-passant square.
bool GleicheStellung(const Stellung_t& a, const Stellung_t& b);
