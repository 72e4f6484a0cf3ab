#include "protocol/uci.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include "board/perft.h"
#include "board/zug.h"
#include "protocol/ausgabe.h"

namespace {

bool IstLeer(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

const char* UeberspringeLeer(const char* p) {
    while (*p != '\0' && IstLeer(*p)) ++p;
    return p;
}

constexpr int MaxWortLaenge = 15;

}  // namespace

struct UciInterface_t::Befehl_t {
    const char* wort;
    void (UciInterface_t::*ausfuehren)(const char* zeile, const char* rest);
};

// Compared whole and case-sensitively, in this order. A new command is one row.
const UciInterface_t::Befehl_t UciInterface_t::Befehle[] = {
    {"debug", &UciInterface_t::Debugbefehl},
    {"isready", &UciInterface_t::Isready},
    {"setoption", &UciInterface_t::Setoption},
    {"ucinewgame", &UciInterface_t::Ucinewgame},
    {"position", &UciInterface_t::Position},
    // "go", "stop" and "ponderhit" arrive with the searcher.
    {"quit", &UciInterface_t::Quit},
    {"perft", &UciInterface_t::Perft},
    // "book" and "time" arrive with the book and the time network.
    {nullptr, nullptr},
};

UciInterface_t::UciInterface_t(const Option_t* tabelle, Zeitkontrolle_t* zk, Ausgabe_t* a)
    : ausgabe(a), optionen(tabelle), zeitkontrolle(zk), stellung{}, daten{}, basis{}, rueckzug{} {
    Startstellung();
}

void UciInterface_t::befehl(const char* zeile) {
    if (zeile == nullptr) return;
    const char* p = UeberspringeLeer(zeile);
    char wort[MaxWortLaenge + 1];
    int n = 0;
    while (n < MaxWortLaenge && p[n] != '\0' && !IstLeer(p[n])) {
        wort[n] = p[n];
        ++n;
    }
    wort[n] = '\0';
    if (n == 0) return;
    // Unknown words get no reply at all; "uci" after the protocol choice is one of them.
    for (const Befehl_t* b = Befehle; b->wort != nullptr; ++b) {
        if (std::strcmp(b->wort, wort) == 0) {
            (this->*(b->ausfuehren))(zeile, p + n);
            return;
        }
    }
}

void UciInterface_t::Startstellung() {
    SetzeStellung(stellung, daten, nullptr);
    basis = stellung;
}

void UciInterface_t::Debugbefehl(const char* zeile, const char*) {
    debug = std::strstr(zeile, "on") != nullptr ? 1 : 0;
}

void UciInterface_t::Isready(const char*, const char*) {
    // Answered at once, also while a search runs.
    if (ausgabe != nullptr) ausgabe->zeile("readyok");
}

void UciInterface_t::Setoption(const char* zeile, const char*) {
    // Silent either way: a GUI gets no reply to setoption.
    optionen.SetzeOption(zeile);
}

void UciInterface_t::Ucinewgame(const char*, const char*) {
    // Deliberately nothing: the next "position" sets everything up.
}

void UciInterface_t::Position(const char*, const char* rest) {
    // (Once the searcher exists: wait here until it is idle.)
    rueckzugIndex = 0;
    const char* p = UeberspringeLeer(rest);

    if (std::strncmp(p, "startpos", 8) == 0) {
        Startstellung();
    } else if (std::strncmp(p, "Chess960", 8) == 0) {
        unsigned nummer = 0;
        if (std::sscanf(p, "Chess960 %u", &nummer) != 1) {
            if (ausgabe != nullptr) ausgabe->fehler("'position Chess960' without number", nullptr);
            return;
        }
        if (!Chess960Start(stellung, nummer)) {
            Startstellung();
        } else {
            BerechneStellungsdaten(stellung, daten);
            StarteHistorie(stellung, daten);
            basis = stellung;
        }
    } else {
        const char* fen = std::strstr(p, "fen");
        if (fen == nullptr) {
            if (ausgabe != nullptr) ausgabe->fehler("'position' without 'startpos' and without 'fen'", nullptr);
            return;
        }
        fen = UeberspringeLeer(fen + 3);
        if (!SetzeStellung(stellung, daten, fen)) {
            // A half-read record is of no use: fall back to the start position.
            Startstellung();
            if (ausgabe != nullptr) ausgabe->fehler("position: Illegal FEN string: ", fen);
            return;
        }
        basis = stellung;
    }

    const char* zuege = std::strstr(p, "moves");
    if (zuege != nullptr) SpieleZuege(zuege + 5);
}

void UciInterface_t::SpieleZuege(const char* text) {
    const char* p = text;
    for (;;) {
        p = UeberspringeLeer(p);
        if (*p == '\0') return;

        // Four characters, or five with a promotion letter; "O-O" and "O-O-O" as they stand.
        char zugText[6] = "     ";
        for (int i = 0; i < 5 && p[i] != '\0' && !IstLeer(p[i]); ++i) zugText[i] = p[i];
        zugText[std::isalpha(static_cast<unsigned char>(zugText[4])) ? 5 : 4] = '\0';
        if (std::strncmp(zugText, "O-O", 3) == 0 && std::strcmp(zugText, "O-O-O") != 0) zugText[3] = '\0';
        for (size_t n = std::strlen(zugText); n > 0 && zugText[n - 1] == ' '; --n) zugText[n - 1] = '\0';

        const Zug_t zug = LeseKoordinatenZug(stellung, zugText);
        bool gemacht = false;
        if (zug != 0 && IstLegal(stellung, zug, daten)) {
            Rueckzug_t& r = rueckzug[rueckzugIndex];
            r.ep = stellung.ep;
            r.rochaden = stellung.rochaden;
            gemacht = SpielzugMachen(stellung, zug, r, daten);
        }
        if (!gemacht) {
            // The moves before this one stay made.
            if (ausgabe != nullptr) ausgabe->fehler("position: illegal move: ", zugText);
            return;
        }
        rueckzugIndex ^= 1;
        while (*p != '\0' && !IstLeer(*p)) ++p;
    }
}

void UciInterface_t::Quit(const char*, const char*) {
    // Silence first: not even the "bestmove" of a stopped search may follow "quit".
    if (ausgabe != nullptr) ausgabe->schweigen = true;
    beenden = true;
    // (Once the searcher exists: stop it, clear its ponder state and wait until it is idle.)
}

void UciInterface_t::Perft(const char*, const char* rest) {
    PerftBefehl(stellung, rest, [this](const std::string& text) {
        std::string zeile = text;
        QuetscheLeerzeichen(zeile);
        if (ausgabe != nullptr) ausgabe->zeile(zeile);
    });
}
