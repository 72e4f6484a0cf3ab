// UCI and XBoard sessions: every input line one command, as the program entry
// would hand it on, with searches tamed so that a run stays short and repeatable.
#include <memory>
#include <ostream>
#include <string>

#include "fuzz_hilfen.h"
#include "fuzz_ziele.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/uci.h"
#include "protocol/xboard.h"
#include "protocol/xboard_ausgabe.h"
#include "search/suche.h"
#include "search/zufallsgenerator.h"
#include "timing/zeitkontrolle.h"

namespace {

constexpr uint32_t Saat = 20170101u;  // book picks repeat from run to run

// Sits in front of the UCI interpreter: tames each line, and waits for every
// search to end, so that the next line meets an idle searcher as a slow GUI would.
class Zaehmer_t : public Eingabe_t {
public:
    Zaehmer_t(UciInterface_t& u, Sucher_t* s) : uci(u), sucher(s) {}
    void befehl(const char* zeile) override {
        const std::string gezaehmt = fuzz::ZaehmeUciZeile(zeile);
        uci.befehl(gezaehmt.c_str());
        if (sucher != nullptr && std::string(ErstesWort(gezaehmt.c_str()).text) == "go") sucher->WarteBisUntaetig();
    }

private:
    UciInterface_t& uci;
    Sucher_t* sucher;
};

bool HatBefehl(const std::vector<std::string>& zeilen, const char* wort) {
    for (const std::string& z : zeilen)
        if (std::string(ErstesWort(z.c_str()).text) == wort) return true;
    return false;
}

}  // namespace

int FuzzUci(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::ImVerzeichnis_t verzeichnis;
    Zufall().Saeen(Saat);
    const std::vector<std::string> zeilen = fuzz::Zeilen(daten, groesse);

    // A searcher costs a table and a thread: only sessions that search get one.
    std::unique_ptr<Suche_t> sucher;
    if (HatBefehl(zeilen, "go")) sucher = std::make_unique<Suche_t>();
    Zeitkontrolle_t zeitkontrolle;
    std::ostream leer(nullptr);
    UciAusgabe_t ausgabe(Optionstabelle, leer);
    UciInterface_t uci(Optionstabelle, &zeitkontrolle, &ausgabe, sucher.get());
    Zaehmer_t zaehmer(uci, sucher.get());
    for (const std::string& z : zeilen) {
        zaehmer.befehl(z.c_str());
        if (uci.Beendet()) return 0;
    }
    // The end of input, as the program entry handles it.
    if (sucher != nullptr) sucher->Stop();
    zaehmer.befehl("position startpos");
    zaehmer.befehl("quit");
    return 0;
}

int FuzzXboard(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::ImVerzeichnis_t verzeichnis;
    Zufall().Saeen(Saat);
    const std::vector<std::string> zeilen = fuzz::Zeilen(daten, groesse);

    auto sucher = std::make_unique<Suche_t>();
    Zeitkontrolle_t zeitkontrolle;
    std::ostream leer(nullptr);
    XBoardAusgabe_t ausgabe(&zeitkontrolle, leer);
    UciInterface_t uci(Optionstabelle, &zeitkontrolle, &ausgabe, sucher.get());
    ausgabe.optionen = &uci.Optionen();
    Zaehmer_t zaehmer(uci, sucher.get());
    XBoardInterface_t xboard(&zaehmer, &uci.Optionen(), &ausgabe, fuzz::Verzeichnis() + "/Kelvaran.ini");
    ausgabe.xboard = &xboard;
    for (const std::string& z : zeilen) {
        // A ponder search would wait for the GUI for ever: pondering stays off.
        xboard.befehl(std::string(ErstesWort(z.c_str()).text) == "hard" ? "easy" : z.c_str());
        if (uci.Beendet()) break;
    }
    if (!uci.Beendet()) {
        sucher->Stop();
        xboard.befehl("quit");
        xboard.befehl("position startpos");
        xboard.befehl("quit");
    }
    // The searcher is idle: no best move can reach the adapter any more.
    sucher->WarteBisUntaetig();
    ausgabe.xboard = nullptr;
    return 0;
}
