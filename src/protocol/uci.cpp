#include "protocol/uci.h"

#include <cctype>
#include <cstdint>
#include <memory>
#include <cstdio>
#include <cstring>
#include <string>

#include "bitbase/werkzeug.h"
#include "board/perft.h"
#include "board/zug.h"
#include "board/zuggenerator.h"
#include "book/buchbefehl.h"
#include "search/sucher.h"
#include "timing/zeitkontrolle.h"
#include "protocol/ausgabe.h"

namespace {

bool IstLeer(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

const char* UeberspringeLeer(const char* p) {
    while (*p != '\0' && IstLeer(*p)) ++p;
    return p;
}

}  // namespace

Befehlswort_t ErstesWort(const char* zeile) {
    Befehlswort_t wort{};
    const char* p = UeberspringeLeer(zeile);
    size_t n = 0;
    while (n + 1 < sizeof wort.text && p[n] != '\0' && !IstLeer(p[n])) {
        wort.text[n] = p[n];
        ++n;
    }
    wort.danach = p + n;
    return wort;
}

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
    {"go", &UciInterface_t::Go},
    {"stop", &UciInterface_t::Stop},
    {"ponderhit", &UciInterface_t::Ponderhit},
    {"quit", &UciInterface_t::Quit},
    {"perft", &UciInterface_t::Perft},
    {"book", &UciInterface_t::Buch},
    {"time", &UciInterface_t::Zeit},
    {"bitbase", &UciInterface_t::BitbaseAbfrage},
    {nullptr, nullptr},
};

UciInterface_t::UciInterface_t(const Option_t* tabelle, Zeitkontrolle_t* zk, Ausgabe_t* a, Sucher_t* s)
    : ausgabe(a), optionen(tabelle), zeitkontrolle(zk), stellung{}, daten{}, basis{}, rueckzug{}, sucher(s) {
    Startstellung();
}

void UciInterface_t::befehl(const char* zeile) {
    if (zeile == nullptr) return;
    const Befehlswort_t wort = ErstesWort(zeile);
    if (wort.text[0] == '\0') return;
    // Unknown words get no reply at all; "uci" after the protocol choice is one of them.
    for (const Befehl_t* b = Befehle; b->wort != nullptr; ++b) {
        if (std::strcmp(b->wort, wort.text) == 0) {
            (this->*(b->ausfuehren))(zeile, wort.danach);
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

void UciInterface_t::WarteAufSucher() {
    if (sucher != nullptr) sucher->WarteBisUntaetig();
}

void UciInterface_t::Position(const char*, const char* rest) {
    WarteAufSucher();
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

namespace {

// The number after a keyword found anywhere in the line: white space, an optional
// minus and digits; 0 when the keyword or the digits are missing.
int64_t ZahlNach(const char* zeile, const char* wort) {
    const char* p = std::strstr(zeile, wort);
    if (p == nullptr) return 0;
    p = UeberspringeLeer(p + std::strlen(wort));
    const bool negativ = *p == '-';
    if (negativ) ++p;
    int64_t wert = 0;
    for (; *p >= '0' && *p <= '9'; ++p) {
        if (wert > (INT64_MAX - 9) / 10) break;  // absurd numbers saturate instead of overflowing
        wert = wert * 10 + (*p - '0');
    }
    return negativ ? -wert : wert;
}

int ZahlNach32(const char* zeile, const char* wort) {
    const int64_t wert = ZahlNach(zeile, wort);
    return static_cast<int>(wert < INT32_MIN ? INT32_MIN : wert > INT32_MAX ? INT32_MAX : wert);
}

}  // namespace

int UciInterface_t::Wurzelzuege(const char* zeile, uint32_t* zuege) {
    Zugliste_t alle;
    const uint32_t* ende = ErzeugeZuege(stellung, daten, alle);
    int n = 0;
    for (const uint32_t* z = alle; z != ende; ++z)
        if (IstLegal(stellung, static_cast<Zug_t>(*z), daten)) zuege[n++] = *z;

    const char* liste = std::strstr(zeile, "searchmoves");
    const bool einschraenken = liste != nullptr;
    if (!einschraenken) liste = std::strstr(zeile, "excludemoves");
    if (liste == nullptr) return n;
    liste += einschraenken ? 11 : 12;

    // Mark the moves named, then keep the marked ones (searchmoves) or the others.
    bool genannt[MaxZuege] = {};
    int gefunden = 0;
    for (const char* p = UeberspringeLeer(liste); *p != '\0'; p = UeberspringeLeer(p)) {
        char text[8] = {};
        for (int i = 0; i < 7 && p[i] != '\0' && !IstLeer(p[i]); ++i) text[i] = p[i];
        while (*p != '\0' && !IstLeer(*p)) ++p;
        const Zug_t zug = LeseKoordinatenZug(stellung, text);
        int i = 0;
        while (i < n && zuege[i] != zug) ++i;
        if (zug == 0 || i == n) {
            if (ausgabe != nullptr) ausgabe->fehler("go: illegal move: ", text);
            continue;
        }
        gefunden += !genannt[i];
        genannt[i] = true;
    }
    // Nothing left to search is no restriction: the GUI still gets a move.
    if (einschraenken && gefunden == 0) return n;
    if (!einschraenken && gefunden == n) return n;
    int behalten = 0;
    for (int i = 0; i < n; ++i)
        if (genannt[i] == einschraenken) zuege[behalten++] = zuege[i];
    return behalten;
}

void UciInterface_t::Go(const char* zeile, const char*) {
    if (sucher == nullptr) return;
    const bool weiss = stellung.amZug == Weiss;
    const int64_t zeit = ZahlNach(zeile, weiss ? "wtime" : "btime");
    const int64_t inkrement = ZahlNach(zeile, weiss ? "winc" : "binc");
    const int zuegeBisKontrolle = ZahlNach32(zeile, "movestogo");
    const int tiefe = ZahlNach32(zeile, "depth");
    const int matt = ZahlNach32(zeile, "mate");
    const int64_t knoten = ZahlNach(zeile, "nodes");
    const int64_t zugzeit = ZahlNach(zeile, "movetime");
    const bool unendlich = std::strstr(zeile, "infinite") != nullptr;

    WarteAufSucher();
    if (zeitkontrolle != nullptr)
        zeitkontrolle->setzen(zeit, inkrement, zuegeBisKontrolle, tiefe, knoten, matt, zugzeit, unendlich, false);

    auto auftrag = std::make_unique<Suchauftrag_t>();
    auftrag->stellung = stellung;
    auftrag->optionen = &optionen;
    unsigned flags = 0;
    if (std::strstr(zeile, "ponder") != nullptr) flags |= StartPonder;
    if (zweiterModus) flags |= StartZweiterModus;
    if (debug) flags |= StartDebug;
    auftrag->flags = flags;
    auftrag->unendlich = unendlich;
    auftrag->zeit = zeitkontrolle;
    auftrag->ausgabe = ausgabe;
    auftrag->anzahlWurzelzuege = Wurzelzuege(zeile, auftrag->wurzelzuege);
    sucher->Go(*auftrag);
}

void UciInterface_t::Stop(const char*, const char*) {
    if (sucher != nullptr) sucher->Stop();
}

void UciInterface_t::Ponderhit(const char*, const char*) {
    if (sucher != nullptr) sucher->ponderhit();
}

void UciInterface_t::Quit(const char*, const char*) {
    // Silence first: not even the "bestmove" of a stopped search may follow "quit".
    if (ausgabe != nullptr) ausgabe->schweigen = true;
    beenden = true;
    if (sucher != nullptr) sucher->Stop();
}

void UciInterface_t::Perft(const char*, const char* rest) {
    PerftBefehl(stellung, rest, [this](const std::string& text) {
        std::string zeile = text;
        QuetscheLeerzeichen(zeile);
        if (ausgabe != nullptr) ausgabe->zeile(zeile);
    });
}

void UciInterface_t::Zeit(const char*, const char* rest) {
    // Not squeezed: the file names in the messages stay exactly as given.
    ZeitBefehl(zeittrainer, rest, [this](const std::string& text) {
        if (ausgabe != nullptr) ausgabe->zeile(text);
    });
}

void UciInterface_t::Buch(const char*, const char* rest) {
    BuchBefehl(buch, rest, [this](const std::string& text) {
        if (ausgabe != nullptr) ausgabe->zeile(text);
    });
}

void UciInterface_t::BitbaseAbfrage(const char*, const char* rest) {
    BitbaseBefehl(
        rest, optionen, [this](const std::string& text) { if (ausgabe != nullptr) ausgabe->zeile(text); },
        [this](const char* meldung, const char* argument) { if (ausgabe != nullptr) ausgabe->fehler(meldung, argument); });
}
