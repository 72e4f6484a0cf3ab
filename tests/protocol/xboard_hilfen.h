// An XBoard session against a recording interpreter: what the GUI sees and
// which UCI lines the adapter makes, line by line. The search thread's part is
// played by the test: it reports a score and a best move through the output object.
#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "../board/brett_hilfe.h"
#include "protocol/optionen.h"
#include "protocol/uci.h"
#include "protocol/xboard.h"
#include "protocol/xboard_ausgabe.h"
#include "protokoll_hilfen.h"

// Records the UCI lines; applies "setoption" so that "NoOutput" and "Resign" work.
class Mitschrift_t : public Eingabe_t {
public:
    explicit Mitschrift_t(Optionen_t& o) : optionen(o) {}
    void befehl(const char* zeile) override {
        zeilen.emplace_back(zeile);
        if (std::strncmp(zeile, "setoption", 9) == 0) optionen.SetzeOption(zeile);
    }
    std::vector<std::string> zeilen;
    Optionen_t& optionen;
};

struct XBoardSitzung_t {
    explicit XBoardSitzung_t(const std::string& ini = "/nicht/da/Kelvaran.ini")
        : optionen(Optionstabelle), ausgabe(nullptr, aus), uci(optionen), xboard(&uci, &optionen, &ausgabe, ini) {
        ausgabe.optionen = &optionen;
        ausgabe.xboard = &xboard;
    }

    // GUI commands, one a line.
    void operator()(const std::string& befehle) {
        for (const std::string& z : Zeilen(befehle)) xboard.befehl(z.c_str());
    }

    // What arrived since the last look.
    std::vector<std::string> Gui() {
        std::vector<std::string> z = Zeilen(aus.str());
        aus.str("");
        return z;
    }
    std::vector<std::string> Uci() {
        // A ponder search is started by the queue's own thread: an ignored command waits for it.
        xboard.befehl("random");
        std::vector<std::string> z = uci.zeilen;
        uci.zeilen.clear();
        return z;
    }

    // The searcher's answer on the game's position: a variation with its score, then the move.
    void Antwort(const char* zug, const char* ponder = nullptr, int wert = 0) {
        auto st = std::make_unique<Stellung_t>(xboard.Partie().Stellung());
        Stellungsdaten_t daten;
        BerechneStellungsdaten(*st, daten);
        Zug_t pv[2] = {LeseKoordinatenZug(*st, zug), 0};
        if (ponder != nullptr) {
            auto nach = std::make_unique<Stellung_t>(*st);
            Stellungsdaten_t d = daten;
            Rueckzug_t r;
            r.ep = nach->ep;
            r.rochaden = nach->rochaden;
            if (SpielzugMachen(*nach, pv[0], r, d)) pv[1] = LeseKoordinatenZug(*nach, ponder);
        }
        ausgabe.variante(*st, pv, pv[1] != 0 ? 2 : 1, wert, -1000000, 1000000, 5, 5, 100, 1000, 0, 0, false);
        ausgabe.bestzug(*st, pv[0], pv[1]);
    }

    Optionen_t optionen;
    std::ostringstream aus;
    XBoardAusgabe_t ausgabe;
    Mitschrift_t uci;
    XBoardInterface_t xboard;
};

// A legal game of the given length that is not over, reproducible from its seed.
inline std::vector<std::string> Zufallspartie(int halbzuege, unsigned saat) {
    std::mt19937 zufall(saat);
    XBoardPartie_t p;
    std::vector<std::string> texte;
    while (static_cast<int>(texte.size()) < halbzuege) {
        auto st = std::make_unique<Stellung_t>(p.Stellung());
        Stellungsdaten_t daten;
        BerechneStellungsdaten(*st, daten);
        std::vector<Zug_t> legal = brett_test::Legal(*st, daten);
        std::shuffle(legal.begin(), legal.end(), zufall);
        bool weiter = false;
        for (Zug_t zug : legal) {
            const std::string text = p.Text(zug);
            p.Mache(zug);
            if (p.Ergebnis() == nullptr) {
                texte.push_back(text);
                weiter = true;
                break;
            }
            p.NimmZurueck(1);
        }
        if (!weiter) break;
    }
    return texte;
}
