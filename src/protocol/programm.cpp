#include "protocol/programm.h"

#include <cctype>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

#include <unistd.h>

#include "bitbase/erklaeren.h"
#include "bitbase/werkzeug.h"
#include "board/tabellen.h"
#include "book/buchbefehl.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/suchwerkzeuge.h"
#include "protocol/uci.h"
#include "protocol/xboard.h"
#include "protocol/xboard_ausgabe.h"
#include "search/endspiel.h"
#include "search/suche.h"
#include "search/suche_zufall.h"
#include "search/zufallsgenerator.h"
#include "timing/zeitkontrolle.h"

namespace {

constexpr std::streamsize PufferGroesse = 40000;

// One input line, or the next 39999 characters of a longer one; false at the end of input.
bool LeseZeile(std::istream& ein, std::vector<char>& puffer) {
    ein.getline(puffer.data(), PufferGroesse);
    if (ein.bad()) return false;
    if (ein.fail()) {
        // A full buffer without a line end: the tail arrives as the next line.
        if (!ein.eof() && ein.gcount() == PufferGroesse - 1) {
            ein.clear();
            return true;
        }
        return false;
    }
    return true;
}

void EntferneLeerAmEnde(char* text) {
    size_t n = std::strlen(text);
    while (n > 0 && std::isspace(static_cast<unsigned char>(text[n - 1]))) text[--n] = '\0';
}

}  // namespace

int Programm(int argc, char** argv, std::istream& ein, std::ostream& aus, std::ostream& fehler) {
    // The tables are read without locks by every thread, so they exist before any of them.
    static std::once_flag tabellenGebaut;
    std::call_once(tabellenGebaut, [] {
        InitTabellen();
        KpkInit();
    });

    // Tool switches come first: they run their tool and end the program.
    if (const int status = BitbaseWerkzeug(argc, argv, aus); status >= 0) return status;
    if (argc == 3 && std::strcmp(argv[1], "--ExplainBitbase") == 0) return ErklaereBitbase(argv[2]);
    if (argc == 3 && std::strcmp(argv[1], "--Testpos") == 0) return Testpos(argv[2], aus);
    if (argc >= 2 && std::strcmp(argv[1], "--book") == 0) return BuchWerkzeug(argc, argv, aus);
    if (argc == 4 && std::strcmp(argv[1], "--CSVN") == 0) return Csvn(argv[2], argv[3], aus);
    if (argc >= 2 && argc <= 4 && (std::strcmp(argv[1], "bench") == 0 || std::strcmp(argv[1], "--bench") == 0)) {
        const int tiefe = argc >= 3 ? std::atoi(argv[2]) : BenchTiefe;
        const int threads = argc >= 4 ? std::atoi(argv[3]) : 1;
        return Bench(aus, tiefe > 0 ? tiefe : BenchTiefe, threads > 0 ? threads : 1);
    }

    // Bad arguments are reported and skipped: they never keep the engine from playing.
    // Each random-player switch replaces the random searcher made by an earlier one.
    std::unique_ptr<Sucher_t> sucher;
    for (int i = 1; i < argc; ++i) {
        const bool zufall = std::strcmp(argv[i], "--Rnd") == 0;
        const bool matt = std::strcmp(argv[i], "--RndMate") == 0;
        if (zufall || matt) {
            Zufall().Saeen(static_cast<uint32_t>(Millisekunden() / 1000 + getpid()));
            sucher.reset();
            sucher.reset(new (std::nothrow) SucheZufall_t(matt));
        } else {
            fehler << "illegal command line argument argv[" << i << "] = \"" << argv[i] << "\"\n";
            fehler.flush();
        }
    }
    // The random players announce no options at all.
    const Option_t* tabelle = sucher != nullptr ? LeereOptionstabelle : Optionstabelle;
    if (sucher == nullptr) sucher.reset(new (std::nothrow) Suche_t());

    std::unique_ptr<Zeitkontrolle_t> zeitkontrolle;
    std::unique_ptr<Ausgabe_t> ausgabe;
    std::unique_ptr<UciInterface_t> uci;
    std::unique_ptr<XBoardInterface_t> xboard;  // in front of `uci` under XBoard
    Eingabe_t* eingabe = nullptr;  // where the lines go once a protocol is chosen
    bool gewaehlt = false;

    std::vector<char> puffer(static_cast<size_t>(PufferGroesse));
    bool beendet = false;
    while (!beendet && LeseZeile(ein, puffer)) {
        char* zeile = puffer.data();
        EntferneLeerAmEnde(zeile);
        const Befehlswort_t befehlswort = ErstesWort(zeile);
        const char* wort = befehlswort.text;
        if (wort[0] == '\0') continue;

        if (gewaehlt) {
            if (eingabe != nullptr) {
                eingabe->befehl(zeile);
                beendet = uci != nullptr && uci->Beendet();
            }
            continue;
        }

        const bool istUci = std::strcmp(wort, "uci") == 0;
        const bool istUciTest = std::strcmp(wort, "ucitest") == 0;
        if (istUci || istUciTest) {
            zeitkontrolle.reset(new (std::nothrow) Zeitkontrolle_t{});
            if (istUci) {
                ausgabe.reset(new (std::nothrow) UciAusgabe_t(tabelle, aus));
            } else {
                ausgabe.reset(new (std::nothrow) UciTestausgabe_t(zeitkontrolle.get(), aus));
            }
            if (ausgabe != nullptr) {
                uci.reset(new (std::nothrow) UciInterface_t(tabelle, zeitkontrolle.get(), ausgabe.get(), sucher.get()));
            }
            eingabe = uci.get();
            gewaehlt = true;
        } else if (std::strcmp(wort, "xboard") == 0) {
            zeitkontrolle.reset(new (std::nothrow) Zeitkontrolle_t{});
            auto* xboardAusgabe = new (std::nothrow) XBoardAusgabe_t(zeitkontrolle.get(), aus);
            ausgabe.reset(xboardAusgabe);
            if (xboardAusgabe != nullptr) {
                uci.reset(new (std::nothrow) UciInterface_t(tabelle, zeitkontrolle.get(), xboardAusgabe, sucher.get()));
                if (uci != nullptr) {
                    xboardAusgabe->optionen = &uci->Optionen();
                    xboard.reset(new (std::nothrow) XBoardInterface_t(uci.get(), &uci->Optionen(), xboardAusgabe));
                    if (xboard != nullptr) xboardAusgabe->xboard = xboard.get();
                }
            }
            eingabe = xboard.get();
            gewaehlt = true;
        } else {
            // The GUI may still choose with a later line.
            fehler << "'uci' or 'xboard' expected\n";
            fehler.flush();
        }
    }

    // Input ran out: the interpreter gets "position startpos" and "quit", as if the GUI
    // had sent them. A search with a limit runs to its end and answers; one that only
    // "stop" ends (infinite or pondering) is stopped first, since no "stop" can come.
    if (!beendet && eingabe != nullptr) {
        if (xboard != nullptr) {
            // The adapter answers a move with a ponder search that another thread starts:
            // waiting for the idle searcher could catch that search. Its "quit" stops it.
            while (sucher != nullptr && sucher->Sucht() && !sucher->EndetNurAufStop())
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            // Silent from here on: a GUI that has gone gets no error line for the
            // "position" that follows.
            xboard->befehl("quit");
        } else if (sucher != nullptr && sucher->EndetNurAufStop()) {
            sucher->Stop();
        }
        eingabe->befehl("position startpos");
        eingabe->befehl("quit");
    }

    // Interpreter first, the objects it refers to after it.
    xboard.reset();
    uci.reset();
    ausgabe.reset();
    sucher.reset();
    zeitkontrolle.reset();
    return 0;
}
