// The XBoard adapter: lets the engine play under GUIs that speak XBoard/CECP
// version 2. It keeps the game and the GUI's clock and turns each XBoard command
// into UCI lines for the interpreter behind it, lines for the GUI or error reports.
// When a search ends, the output object hands the move back (on the search
// thread, under the adapter's lock): the adapter offers draws, updates the game,
// announces results, resigns and starts pondering.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "protocol/uci.h"
#include "protocol/xboard_partie.h"
#include "protocol/xboard_queue.h"
#include "protocol/xboard_remis.h"
#include "protocol/xboard_zeit.h"

class Optionen_t;
class XBoardAusgabe_t;

// "Kelvaran.ini" in the directory of the running program.
std::string EinstellungsdateiNebenProgramm();

class XBoardInterface_t : public Eingabe_t {
public:
    // What the engine's searcher is doing for the adapter.
    enum class Suchart_t : uint8_t { Keine, Zug, Ponder, Analyse };

    XBoardInterface_t(Eingabe_t* uci, Optionen_t* optionen, XBoardAusgabe_t* ausgabe,
                      std::string einstellungsdatei = EinstellungsdateiNebenProgramm());
    ~XBoardInterface_t() override;

    void befehl(const char* zeile) override;

    // The output's best-move slot, on the search thread, holding Sperre():
    // is this the move the GUI waits for; the draw offer before the move is printed;
    // and the game after it.
    std::mutex& Sperre() { return sperre; }
    bool ErwartetZug(const Stellung_t& st, Zug_t zug);
    void Remisangebot();
    void ZugGespielt(Zug_t zug, Zug_t ponder);

    const XBoardPartie_t& Partie() const { return partie; }
    const XBoardZeit_t& Zeit() const { return zeit; }

private:
    struct Befehl_t;
    static const Befehl_t Befehle[];

    // Each command gets the whole line and the text just past its word.
    void Xboard(const char* zeile, const char* rest);
    void Protover(const char* zeile, const char* rest);
    void Ignorieren(const char* zeile, const char* rest);
    void Neu(const char* zeile, const char* rest);
    void Variante(const char* zeile, const char* rest);
    void Beenden(const char* zeile, const char* rest);
    void Force(const char* zeile, const char* rest);
    void Go(const char* zeile, const char* rest);
    void Playother(const char* zeile, const char* rest);
    void Level(const char* zeile, const char* rest);
    void St(const char* zeile, const char* rest);
    void Sd(const char* zeile, const char* rest);
    void Uhr(const char* zeile, const char* rest);
    void Gegneruhr(const char* zeile, const char* rest);
    void Usermove(const char* zeile, const char* rest);
    void ZiehSofort(const char* zeile, const char* rest);
    void Ping(const char* zeile, const char* rest);
    void Remis(const char* zeile, const char* rest);
    void Ergebnis(const char* zeile, const char* rest);
    void Setboard(const char* zeile, const char* rest);
    void Hinweis(const char* zeile, const char* rest);
    void Buch(const char* zeile, const char* rest);
    void Undo(const char* zeile, const char* rest);
    void Remove(const char* zeile, const char* rest);
    void Hard(const char* zeile, const char* rest);
    void Easy(const char* zeile, const char* rest);
    void Post(const char* zeile, const char* rest);
    void Nopost(const char* zeile, const char* rest);
    void Analyze(const char* zeile, const char* rest);
    void Name(const char* zeile, const char* rest);
    void Exit(const char* zeile, const char* rest);
    void Status(const char* zeile, const char* rest);
    void Speicher(const char* zeile, const char* rest);
    void Kerne(const char* zeile, const char* rest);

    // The NoOutput bracket around "stop": the stopped search prints no move.
    void LeiseStoppen();
    // Leaves nothing running that the GUI does not expect: stops silently, forgets the
    // ponder move and the hint, and answers held-back pings.
    void Anhalten();
    void StarteZugsuche();
    void StartePonder(Zug_t ponder);
    void StarteAnalyse();
    void LiesEinstellungen();
    // The engine's moves so far, counting the ponder move of a ponder search.
    int GespielteZuege(bool ponder) const { return (partie.Halbzuege() + (ponder ? 1 : 0)) / 2; }

    Optionen_t* optionen;
    XBoardAusgabe_t* ausgabe;
    std::string einstellungsdatei;

    std::mutex sperre;  // the game and everything below
    XBoardPartie_t partie;
    XBoardZeit_t zeit;
    XBoardRemis_t remis;
    unsigned engineSeite = Schwarz;
    bool force = false;
    bool ponderErlaubt = false;  // "hard" / "easy"
    bool analyseModus = false;
    Suchart_t suche = Suchart_t::Keine;
    Zug_t ponderZug = 0;
    std::string erwarteteAntwort;  // the reply the last search expects, for "hint"
    std::vector<std::string> gehaltenePings;  // answered after the move that ends a ponder search
    long protokollVersion = 1;
    bool beendet = false;  // after "quit" nothing more is read, whatever the option table allows
    int64_t suchstart = 0;  // when the engine's clock started running for this move

    XboardUciQueue_t queue;  // last: its delivery thread ends before anything it delivers to
};
