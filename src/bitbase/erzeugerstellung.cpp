#include "bitbase/erzeugerstellung.h"

bool Erzeugersignatur_t::Setze(const char* name) {
    if (!bitbase.SetzeSignatur(name)) return false;
    n = bitbase.anzahlSteine;
    nWeiss = bitbase.anzahlWeiss;
    for (int i = 0; i < n; ++i) {
        typ[i] = bitbase.typ[i];
        farbe[i] = i < nWeiss ? Weiss : Schwarz;
    }
    koenig[Weiss] = 0;
    koenig[Schwarz] = nWeiss;
    mehrdeutig = false;
    for (int g = 0; g < bitbase.gruppen; ++g) mehrdeutig |= !bitbase.HatBauern() && bitbase.gruppenGroesse[g] > 1;
    return true;
}

bool Erzeugersignatur_t::AusIndex(uint64_t index, ErzeugerStellung_t& p) const {
    int8_t ep = -1;
    if (!bitbase.AusIndex(index, p.feld, p.amZug, ep)) return false;
    p.ep = ep;
    return true;
}

bool Erzeugersignatur_t::Angegriffen(const ErzeugerStellung_t& p, int f, int seite, Bitboard belegt, int ohne) const {
    const Bitboard ziel = Bit(static_cast<Feld>(f));
    for (int i = 0; i < n; ++i) {
        if (farbe[i] != seite || i == ohne) continue;
        const int a = p.feld[i];
        // Sliders: on a common line with nothing between (cheaper than the attack sets).
        const bool gerade = (a >> 3) == (f >> 3) || (a & 7) == (f & 7);
        const int dr = (a >> 3) - (f >> 3), dl = (a & 7) - (f & 7);
        const bool schraeg = dr == dl || dr == -dl;
        switch (typ[i]) {
        case Turm:
            if (gerade && a != f && !(Zwischen[a * 64 + f] & belegt)) return true;
            break;
        case Laeufer:
            if (schraeg && a != f && !(Zwischen[a * 64 + f] & belegt)) return true;
            break;
        case Dame:
            if ((gerade || schraeg) && a != f && !(Zwischen[a * 64 + f] & belegt)) return true;
            break;
        default:
            if (Angriffe(typ[i], a, seite, belegt) & ziel) return true;
        }
    }
    return false;
}

bool Erzeugersignatur_t::Zulaessig(const ErzeugerStellung_t& p) const {
    Bitboard belegt = 0;
    for (int i = 0; i < n; ++i) {
        const int f = p.feld[i];
        if (f < 0 || f > 63 || (belegt & Bit(static_cast<Feld>(f)))) return false;
        if (typ[i] == Bauer && ((f >> 3) == 0 || (f >> 3) == 7)) return false;
        belegt |= Bit(static_cast<Feld>(f));
    }
    const int x = p.amZug, y = 1 - x;
    if (Angegriffen(p, p.feld[koenig[y]], x, belegt, -1)) return false;
    if (p.ep < 0) return true;

    // White to move: the square on row 2 behind a black pawn that came from row 1.
    const int epReihe = x == Weiss ? 2 : 5;
    if (p.ep > 63 || (p.ep >> 3) != epReihe) return false;
    const int vorne = x == Weiss ? p.ep + 8 : p.ep - 8;
    const int herkunft = x == Weiss ? p.ep - 8 : p.ep + 8;
    if (belegt & (Bit(static_cast<Feld>(p.ep)) | Bit(static_cast<Feld>(herkunft)))) return false;
    const int s = SteinAuf(p, vorne);
    if (s < 0 || typ[s] != Bauer || farbe[s] != y) return false;
    return BauerDaneben(p, vorne, x);
}

std::string ErzeugerFen(const Erzeugersignatur_t& sig, const ErzeugerStellung_t& p) {
    char brett[64];
    for (char& c : brett) c = 0;
    for (int i = 0; i < sig.n; ++i) {
        if (p.feld[i] < 0 || p.feld[i] > 63) continue;
        const char c = "?PNBRQK"[sig.typ[i] < 7 ? sig.typ[i] : 0];
        brett[p.feld[i]] = sig.farbe[i] == Weiss ? c : static_cast<char>(c - 'A' + 'a');
    }
    std::string fen;
    for (int reihe = 0; reihe < 8; ++reihe) {
        int leer = 0;
        for (int linie = 0; linie < 8; ++linie) {
            const char c = brett[reihe * 8 + linie];
            if (c == 0) {
                ++leer;
                continue;
            }
            if (leer) fen += static_cast<char>('0' + leer);
            leer = 0;
            fen += c;
        }
        if (leer) fen += static_cast<char>('0' + leer);
        if (reihe < 7) fen += '/';
    }
    fen += p.amZug == Weiss ? " w - " : " b - ";
    if (p.ep >= 0) {
        fen += static_cast<char>('a' + (p.ep & 7));
        fen += static_cast<char>('8' - (p.ep >> 3));
    } else {
        fen += '-';
    }
    return fen + " 0 1";
}
