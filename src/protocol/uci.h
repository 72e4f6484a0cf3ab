// The UCI command interpreter. The XBoard adapter drives it with UCI lines of
// its own making, so everything here holds under XBoard too.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "board/stellung.h"
#include "board/zugmachen.h"
#include "book/buch.h"
#include "protocol/optionen.h"
#include "timing/zeittrainer.h"

class Ausgabe_t;
class Sucher_t;
struct Zeitkontrolle_t;

// A command word: the first white-space delimited word of a line, at most 15 characters.
struct Befehlswort_t {
    char text[16];
    const char* danach;  // the line just past the word
};
Befehlswort_t ErstesWort(const char* zeile);

// One interpreter per protocol.
class Eingabe_t {
public:
    virtual ~Eingabe_t() = default;
    // One input line without its trailing white space.
    virtual void befehl(const char* zeile) = 0;
};

class UciInterface_t : public Eingabe_t {
public:
    // Without a searcher "go" is ignored (used by tests of the other commands).
    UciInterface_t(const Option_t* tabelle, Zeitkontrolle_t* zeitkontrolle, Ausgabe_t* ausgabe,
                   Sucher_t* sucher = nullptr);

    void befehl(const char* zeile) override;

    // Set by "quit"; the input loop of the program ends on it.
    bool Beendet() const { return beenden.load(); }

    Optionen_t& Optionen() { return optionen; }
    const Optionen_t& Optionen() const { return optionen; }
    const Stellung_t& Stellung() const { return stellung; }
    const Stellungsdaten_t& Daten() const { return daten; }
    bool Debug() const { return debug != 0; }

private:
    struct Befehl_t;
    static const Befehl_t Befehle[];

    // Each command gets the whole line and the text just past its word.
    void Debugbefehl(const char* zeile, const char* rest);
    void Isready(const char* zeile, const char* rest);
    void Setoption(const char* zeile, const char* rest);
    void Ucinewgame(const char* zeile, const char* rest);
    void Position(const char* zeile, const char* rest);
    void Go(const char* zeile, const char* rest);
    void Stop(const char* zeile, const char* rest);
    void Ponderhit(const char* zeile, const char* rest);
    void Quit(const char* zeile, const char* rest);
    void Perft(const char* zeile, const char* rest);
    void Buch(const char* zeile, const char* rest);
    void Zeit(const char* zeile, const char* rest);
    void BitbaseAbfrage(const char* zeile, const char* rest);

    // Standard start position as the base of the history.
    void Startstellung();
    // Plays the moves after "moves"; stops at the first illegal one.
    void SpieleZuege(const char* text);
    // The legal root moves, restricted by "searchmoves" or "excludemoves".
    int Wurzelzuege(const char* zeile, uint32_t* zuege);
    void WarteAufSucher();

    Ausgabe_t* ausgabe;
    Optionen_t optionen;
    Zeitkontrolle_t* zeitkontrolle;
    Stellung_t stellung;  // carries the key history of the game
    Stellungsdaten_t daten;
    Stellung_t basis;     // the position the moves of "position" start from
    Rueckzug_t rueckzug[2];
    uint8_t rueckzugIndex = 0;
    Sucher_t* sucher;
    uint8_t debug = 0;
    uint8_t zweiterModus = 0;  // no UCI command sets it
    std::atomic<bool> beenden{false};
    std::unique_ptr<Zeittrainer_t> zeittrainer;  // made by the first "time" command that needs it
    std::unique_ptr<Buch_t> buch;                // made by the first "book" command that needs it
};
