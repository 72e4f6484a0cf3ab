#include "protocol/suchwerkzeuge.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "search/suche.h"
#include "timing/zeitkontrolle.h"

namespace {

// Varied positions: openings, sharp middlegames, endings with and without pawns.
const char* const Benchstellungen[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "rnb2rk1/pp2ppbp/5np1/q2p4/2Pp4/1PN1PN2/P2BBPPP/R2QK2R w KQ - 0 9",
    "rnbqk2r/pp2bpp1/4p2p/2pnP3/8/P1PB1N2/1P3PPP/RNBQK2R w KQkq - 0 8",
    "r1bqkb1r/4pppp/p1p2n2/3p4/4P3/1pN2N2/P1PPQPPP/R1B2RK1 w kq - 0 9",
    "r1bqkbnr/1p3pp1/p1np4/2p5/4PpPp/2NP3P/PPP3B1/R1BQK1NR w KQkq - 0 9",
    "rn1q1rk1/p1p2ppp/1p1ppn2/8/1bPP4/2NBPb2/PP1B1PPP/R2Q1RK1 w - - 0 9",
    "r1bq1rk1/pp3pbp/2np1np1/2p1p3/2BP1B2/2P1PN1P/PP1N1PP1/R2QK2R w KQ e6 0 10",
    "rn1qk2r/pb1p1pbp/4p3/1PpP1p2/4P3/2N5/PP3PPP/R2QKBNR w KQkq - 0 9",
    "r1bqk2r/pp1pppbp/2n3p1/1np1P3/3P4/2N2N2/PPP2PPP/R1BQR1K1 w kq - 0 8",
    "r2qk2r/pbpnbppp/1p1p1n2/8/2Pp4/1PN1PN2/P3BPPP/R1BQ1RK1 w kq - 0 9",
    "rnbqk2r/pp4pp/2pbp3/3p4/3PpB1P/2P1PN2/PP3PP1/R2QKB1R w KQkq - 0 9",
    "r1bqkb1r/pp3ppp/2np4/2pN4/4P3/8/PPP1NPPP/R2QKB1R w KQkq - 0 8",
    "r2qkb1r/pp2pppb/2n2n1p/2p5/3pP3/2NP1NP1/PPP2PBP/R1B1QRK1 w kq - 0 10",
    "rn2kb1r/1pp2ppp/p2pbn1q/8/2BPPp2/2N2N2/PPP1Q1PP/R1B2K1R w kq - 0 9",
    "r1bqkb1r/ppp2p2/2np1n2/4p2p/2B1P1p1/P1NP4/1PPN1PPP/R1BQ1RK1 w kq - 0 9",
    "rn1qk2r/p4ppp/1ppbpn2/3pNb2/2PP1B2/1Q2P3/PP1N1PPP/R3KB1R w KQkq - 0 9",
    "rnbq1rk1/pp3pbp/3pp1p1/2pP3n/2P1P3/2N4P/PP3PPN/R1BQKB1R w KQ - 0 9",
    "2rq1rk1/pb1nbppp/1p2pn2/2pp4/2PP4/1PN1PN2/PB2BPPP/2RQ1RK1 w - - 0 11",
    "r1b2rk1/2q1bppp/p2ppn2/1p6/3BPP2/2NB4/PPP1Q1PP/2KR3R w - - 0 13",
    "2kr3r/ppp2ppp/2n5/2b1p3/4P1b1/2P2N2/PP1N1PPP/R1B1KB1R w KQ - 0 10",
    "r2q1rk1/1b2bppp/p2p1n2/1pn1p3/4P3/1BN1BN2/PPP2PPP/R2QR1K1 w - - 0 12",
    "3r2k1/pp3ppp/2p5/8/3R4/2P5/PP3PPP/6K1 w - - 0 25",
    "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 30",
    "8/5pk1/6p1/7p/7P/6P1/5PK1/8 w - - 0 40",
    "8/8/4k3/3p4/3P4/4K3/8/8 w - - 0 50",
    "8/3k4/8/3KP3/8/8/8/8 w - - 0 60",
    "8/8/1p4k1/1P6/P7/8/6K1/8 w - - 0 45",
    "4r1k1/1p3ppp/p7/3n4/8/1P3B2/P4PPP/3R2K1 w - - 0 28",
    "r4rk1/pp3ppp/2n1b3/q1pp4/8/P1PBP3/1BQ2PPP/R4RK1 w - - 0 14",
    "5rk1/1b3p1p/pp3p2/3n4/8/P1B5/1P3PPP/2R3K1 w - - 0 26",
    "8/8/8/5k2/8/2K5/2Q5/8 w - - 0 70",
    "8/8/8/4k3/8/8/3BNK2/8 w - - 0 70",
    "6k1/8/8/8/8/8/r7/4K2R w K - 0 60",
    "2r3k1/5ppp/p3p3/1p1pP3/3P1P2/P1R3P1/1P5P/6K1 w - - 0 30",
    "r1bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQK2R w KQ - 4 6",
};


int64_t Testzeit() {
    const char* text = std::getenv("KELVARAN_TESTZEIT");
    const long ms = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
    return ms > 0 ? ms : 1000;
}

// The first four FEN fields of an EPD line (or a whole FEN) and where the operations start.
bool LeseEpd(const std::string& zeile, Stellung_t& st, std::string& stellungText, size_t& operationen) {
    size_t pos = 0;
    for (int feld = 0; feld < 4; ++feld) {
        while (pos < zeile.size() && zeile[pos] == ' ') ++pos;
        while (pos < zeile.size() && zeile[pos] != ' ') ++pos;
    }
    stellungText = zeile.substr(0, pos);
    operationen = pos;
    Stellungsdaten_t daten;
    return SetzeStellung(st, daten, stellungText.c_str());
}

// Calls f(position, its text, the whole line, where the operations start) for every
// readable position of an EPD or FEN file.
template <typename F>
void JedeStellung(std::istream& ein, F&& f) {
    std::string zeile;
    while (std::getline(ein, zeile)) {
        Stellung_t st;
        std::string stellungText;
        size_t operationen;
        if (zeile.empty() || !LeseEpd(zeile, st, stellungText, operationen)) continue;
        f(st, stellungText, zeile, operationen);
    }
}

}  // namespace

Werkzeugsuche_t::Werkzeugsuche_t() : suche(std::make_unique<Suche_t>()), optionen(std::make_unique<Optionen_t>(Optionstabelle)) {
    optionen->SetzeOption("setoption name Hash value 16");
    // The tools measure the search: a book in the working directory must not answer for it.
    optionen->SetzeOption("setoption name OwnBook value false");
}

Werkzeugsuche_t::~Werkzeugsuche_t() = default;

Zug_t Werkzeugsuche_t::Suche(const Stellung_t& st, int tiefe, int64_t millisekunden, int matt, int64_t knoten) {
    Starte(st, tiefe, millisekunden, matt, knoten);
    suche->WarteBisUntaetig();
    return ausgabe.besterZug;
}

Zug_t Werkzeugsuche_t::Stoppe() {
    suche->Stop();
    return ausgabe.besterZug;
}

uint64_t Werkzeugsuche_t::Teilungen() const { return suche->Teilungen(); }
uint64_t Werkzeugsuche_t::TbTreffer() const { return suche->TbTreffer(); }

void Werkzeugsuche_t::Starte(const Stellung_t& st, int tiefe, int64_t millisekunden, int matt, int64_t knoten) {
    Stellung_t kopie = st;
    Stellungsdaten_t daten;
    BerechneStellungsdaten(kopie, daten);
    if (kopie.historieAnzahl == 0) StarteHistorie(kopie, daten);
    auto auftrag = std::make_unique<Suchauftrag_t>();
    auftrag->stellung = kopie;
    auftrag->optionen = optionen.get();
    auftrag->ausgabe = &ausgabe;
    auftrag->zeit = &zeit;
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(kopie, daten, liste);
    for (const uint32_t* p = liste; p < ende; ++p)
        if (IstLegal(kopie, static_cast<Zug_t>(*p), daten)) auftrag->wurzelzuege[auftrag->anzahlWurzelzuege++] = *p;
    zeit.setzen(0, 0, 0, tiefe, knoten, matt, millisekunden, false, false);
    ausgabe.besterZug = 0;
    ausgabe.wert = 0;
    suche->Go(*auftrag);
}

uint64_t Werkzeugsuche_t::Knoten() const { return suche->Knoten(); }
void Werkzeugsuche_t::NeuesSpiel() { optionen->SetzeOption("setoption name Clear Hash"); }
void Werkzeugsuche_t::Setze(const char* befehl) { optionen->SetzeOption(befehl); }

int Bench(std::ostream& aus, int tiefe, int threads) {
    Werkzeugsuche_t werkzeug;
    werkzeug.Setze(("setoption name NumberOfProcessors value " + std::to_string(threads)).c_str());
    uint64_t knoten = 0;
    const int64_t start = Millisekunden();
    for (const char* fen : Benchstellungen) {
        Stellung_t st;
        Stellungsdaten_t daten;
        if (!SetzeStellung(st, daten, fen)) continue;
        werkzeug.NeuesSpiel();
        werkzeug.Suche(st, tiefe, 0, 0);
        knoten += werkzeug.Knoten();
    }
    const int64_t ms = std::max<int64_t>(Millisekunden() - start, 1);
    aus << knoten << " nodes " << knoten * 1000 / static_cast<uint64_t>(ms) << " nps" << std::endl;
    return 0;
}

int Testpos(const char* datei, std::ostream& aus) {
    std::ifstream ein(datei);
    if (!ein) {
        aus << "info string cannot open " << datei << std::endl;
        return 0;
    }
    Werkzeugsuche_t werkzeug;
    const int64_t ms = Testzeit();
    int geloest = 0, gesamt = 0;
    JedeStellung(ein, [&](Stellung_t& st, const std::string& stellungText, const std::string& zeile,
                          size_t operationen) {
        const size_t bm = zeile.find(" bm ", operationen > 0 ? operationen - 1 : 0);
        if (bm == std::string::npos) return;
        Stellungsdaten_t daten;
        BerechneStellungsdaten(st, daten);
        // The expected moves, in SAN, up to the semicolon.
        const size_t ende = zeile.find(';', bm);
        std::string liste = zeile.substr(bm + 4, ende == std::string::npos ? std::string::npos : ende - bm - 4);
        Zug_t erwartet[16];
        int anzahl = 0;
        char* kontext = nullptr;
        for (char* wort = strtok_r(liste.data(), " ", &kontext); wort != nullptr && anzahl < 16;
             wort = strtok_r(nullptr, " ", &kontext)) {
            if (const Zug_t z = LeseSanZug(st, wort, daten)) erwartet[anzahl++] = z;
        }
        werkzeug.NeuesSpiel();
        const Zug_t zug = werkzeug.Suche(st, 0, ms, 0);
        bool gefunden = false;
        for (int i = 0; i < anzahl; ++i) gefunden |= erwartet[i] == zug;
        char san[16] = "0000";
        if (zug != 0) ZugSan(st, zug, daten, san);
        ++gesamt;
        geloest += gefunden;
        aus << stellungText << " bm " << san << (gefunden ? "" : " (not found)") << std::endl;
    });
    aus << "solved " << geloest << " of " << gesamt << std::endl;
    return 0;
}

int Csvn(const char* eingabe, const char* ausgabeDatei, std::ostream& aus) {
    std::ifstream ein(eingabe);
    std::ofstream raus(ausgabeDatei);
    if (!ein || !raus) {
        aus << "info string cannot open " << (!ein ? eingabe : ausgabeDatei) << std::endl;
        return 0;
    }
    Werkzeugsuche_t werkzeug;
    const int64_t ms = Testzeit();
    JedeStellung(ein, [&](Stellung_t& st, const std::string& stellungText, const std::string&, size_t) {
        Stellungsdaten_t daten;
        BerechneStellungsdaten(st, daten);
        const Zug_t zug = werkzeug.Suche(st, 0, ms, 0);
        char san[16] = "0000";
        if (zug != 0) ZugSan(st, zug, daten, san);
        raus << stellungText << " bm " << san << std::endl;
    });
    return 0;
}
