#include "protocol/xboard_partie.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "protocol/ausgabe.h"

namespace {

// A move text as the record keeps it: blanks up to the full width.
std::string Gepolstert(const char* text, size_t breite) {
    std::string s(text, std::min(std::strlen(text), breite));
    s.resize(breite, ' ');
    return s;
}

// The six fields of a FEN: whatever follows them must not reach the "position" line.
std::string SechsFelder(const char* fen) {
    std::string ergebnis;
    const char* p = fen;
    for (int feld = 0; feld < 6; ++feld) {
        while (*p != '\0' && std::isspace(static_cast<unsigned char>(*p))) ++p;
        if (*p == '\0') break;
        const char* anfang = p;
        bool ziffern = true;
        for (; *p != '\0' && !std::isspace(static_cast<unsigned char>(*p)); ++p)
            ziffern = ziffern && std::isdigit(static_cast<unsigned char>(*p));
        if (feld >= 4 && !ziffern) break;  // the two clocks are numbers or absent
        if (!ergebnis.empty()) ergebnis += ' ';
        ergebnis.append(anfang, p);
    }
    return ergebnis;
}

}  // namespace

bool GleicheStellung(const Stellung_t& a, const Stellung_t& b) {
    if (a.amZug != b.amZug || a.ep != b.ep || a.rochaden != b.rochaden) return false;
    for (int s = 0; s < 2; ++s)
        for (int t = 0; t < 7; ++t)
            if (a.seite[s].brett[t] != b.seite[s].brett[t]) return false;
    return true;
}

XBoardPartie_t::XBoardPartie_t() : start(std::make_unique<Stellung_t>()), stellung(std::make_unique<Stellung_t>()) {
    Beginne(nullptr);
}

bool XBoardPartie_t::Beginne(const char* fen) {
    auto neu = std::make_unique<Stellung_t>();
    Stellungsdaten_t neuDaten{};
    if (!SetzeStellung(*neu, neuDaten, fen)) return false;
    // A position the move generator cannot live with (the side not to move in check,
    // pawns on the first or last rank) is as unreadable as a garbled FEN.
    if (fen != nullptr) {
        if ((neuDaten.angriffe[neu->amZug ^ 1].alle & neu->seite[neu->amZug ^ 1].brett[Koenig]) != 0) return false;
        constexpr Bitboard Randreihen = 0xff000000000000ffULL;
        if (((neu->seite[Weiss].brett[Bauer] | neu->seite[Schwarz].brett[Bauer]) & Randreihen) != 0) return false;
    }
    startFen = fen != nullptr ? SechsFelder(fen) : "";
    *start = *neu;
    startDaten = neuDaten;
    *stellung = *neu;
    daten = neuDaten;
    zuege.clear();
    protokoll.clear();
    return true;
}

Zug_t XBoardPartie_t::Finde(const char* text) {
    const std::string gesucht = Gepolstert(text, ZugBreite);
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(*stellung, daten, liste);
    char zugText[8];
    for (const uint32_t* z = liste; z != ende; ++z) {
        const auto zug = static_cast<Zug_t>(*z);
        if (Gepolstert(ZugText(*stellung, zug, zugText), ZugBreite) == gesucht && IstLegal(zug)) return zug;
    }
    // Other spellings of the same move, and nothing more: "O-O" in standard chess, the king
    // taking its rook, capital promotion letters.
    const std::string wort = gesucht.substr(0, gesucht.find(' '));
    const bool rochade = wort == "O-O" || wort == "O-O-O" || wort == "0-0" || wort == "0-0-0";
    const bool koordinaten = wort.size() == 4 || (wort.size() == 5 && std::strchr("nbrqNBRQ", wort[4]) != nullptr);
    if (!rochade && !koordinaten) return 0;
    const Zug_t zug = LeseKoordinatenZug(*stellung, wort.c_str());
    return zug != 0 && IstLegal(zug) ? zug : 0;
}

bool XBoardPartie_t::IstLegal(Zug_t zug) { return zug != 0 && ::IstLegal(*stellung, zug, daten); }

bool XBoardPartie_t::Mache(Zug_t zug) {
    if (!IstLegal(zug)) return false;
    char text[8];
    ZugText(*stellung, zug, text);
    Rueckzug_t r;
    r.ep = stellung->ep;
    r.rochaden = stellung->rochaden;
    if (!SpielzugMachen(*stellung, zug, r, daten)) return false;
    zuege.push_back(zug);
    protokoll += Gepolstert(text, ZugBreite);
    return true;
}

bool XBoardPartie_t::NimmZurueck(int halbzuege) {
    if (halbzuege < 0 || halbzuege > Halbzuege()) return false;
    const std::vector<Zug_t> bleiben(zuege.begin(), zuege.end() - halbzuege);
    *stellung = *start;
    daten = startDaten;
    zuege.clear();
    protokoll.clear();
    for (Zug_t zug : bleiben) Mache(zug);
    return true;
}

int XBoardPartie_t::LegaleZuege() { return ZaehleLegaleZuege(*stellung, daten); }

int XBoardPartie_t::LegaleZuegeNach(Zug_t zug) {
    Stellungsdaten_t neu;
    Rueckzug_t r;
    r.ep = stellung->ep;
    r.rochaden = stellung->rochaden;
    if (!IstLegal(zug) || !ZugMachenLegal(*stellung, zug, daten, neu, r)) return 0;
    const int n = ZaehleLegaleZuege(*stellung, neu);
    r.Zuruecknehmen();
    return n;
}

const char* XBoardPartie_t::Ergebnis() {
    int ergebnis = 0;
    if (SpielEnde(*stellung, daten, &ergebnis)) {
        if (ergebnis > 0) return "1-0 {White mates}";
        if (ergebnis < 0) return "0-1 {Black mates}";
        return "1/2-1/2 {Stalemate}";
    }
    if (FuenfzigZuegeRemis(*stellung)) return "1/2-1/2 {Draw by 50 move rule}";
    if (Materialremis(*stellung) != 0) {
        // A lone minor piece cannot mate at all; bishops all on one colour cannot mate either,
        // however many there are, but the position is dead rather than short of material.
        const unsigned maenner = stellung->seite[Weiss].anzahl[0] + stellung->seite[Schwarz].anzahl[0];
        return maenner <= 3 ? "1/2-1/2 {Insufficient material}" : "1/2-1/2 {Dead position}";
    }
    if (WiederholungsRemis(*stellung)) return "1/2-1/2 {Draw by repetition}";
    return nullptr;
}

std::string XBoardPartie_t::PositionsZeile(Zug_t weitererZug) const {
    std::string zeile = startFen.empty() ? "position startpos" : "position fen " + startFen;
    std::string zugliste = protokoll;
    if (weitererZug != 0) zugliste += Text(weitererZug);
    if (!zugliste.empty()) zeile += " moves " + zugliste;
    QuetscheLeerzeichen(zeile);
    while (!zeile.empty() && zeile.back() == ' ') zeile.pop_back();
    return zeile;
}

std::string XBoardPartie_t::Text(Zug_t zug) const {
    char text[8];
    return ZugText(*stellung, zug, text);
}
