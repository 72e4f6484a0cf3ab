// The bitbase generator's view of one signature: positions as square lists
// (men in name order), their index, the legal moves forward and the moves that
// could have led to them (un-moves). With at most six men, plain loops over
// the men and the attack tables beat the engine's full position record.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "bitbase/index.h"
#include "board/tabellen.h"

struct ErzeugerStellung_t {
    int32_t feld[BitbaseSteineMax];
    int32_t amZug;  // 0 White, 1 Black
    int32_t ep;     // square a pawn may capture on, -1 for none
};

class Erzeugersignatur_t {
public:
    Bitbase_t bitbase;  // the descriptor: name, anchor, groups, number of positions
    int n = 0;
    int nWeiss = 0;
    int typ[BitbaseSteineMax] = {};
    int farbe[BitbaseSteineMax] = {};
    int koenig[2] = {};  // slots of the two kings
    // Without pawns the first man off the diagonal decides the reflection, so
    // identical men listed the other way round may give another index.
    bool mehrdeutig = false;

    bool Setze(const char* name);

    // Index of a position with its men in this order; the en-passant square is
    // mirrored with the pawns when they are.
    uint64_t IndexInReihenfolge(const ErzeugerStellung_t& p) const {
        int ep = p.ep;
        if (ep >= 0 && bitbase.HatBauern() && (p.feld[bitbase.Ankerstein] & 7) >= 4) ep ^= 7;
        return bitbase.Index(p.feld, p.amZug, ep);
    }
    // The position's own index: the smallest over the orders of identical men.
    uint64_t Index(const ErzeugerStellung_t& p) const {
        if (!mehrdeutig) return IndexInReihenfolge(p);
        uint64_t kleinster = ~uint64_t{0};
        FuerJedeReihenfolge(p, [&](const ErzeugerStellung_t& q) {
            const uint64_t i = IndexInReihenfolge(q);
            if (i < kleinster) kleinster = i;
        });
        return kleinster;
    }
    // f(q) for the orders of identical men that can matter (just p when none can).
    template <class F>
    void FuerJedeReihenfolge(const ErzeugerStellung_t& p, F&& f) const;
    // A position with this index; false when the number encodes none.
    bool AusIndex(uint64_t index, ErzeugerStellung_t& p) const;
    // Side to move of an index (its lowest bit of the first field).
    int SeiteVon(uint64_t index) const {
        return static_cast<int>((index / (bitbase.positionen / (bitbase.HatBauern() ? 64 : 20))) & 1);
    }

    // A position the game can hold: distinct squares, no pawn on a first or last
    // row, the side not to move not in check, and an en-passant square only
    // behind a pawn that has just made a double step beside an enemy pawn.
    bool Zulaessig(const ErzeugerStellung_t& p) const;

    Bitboard Belegt(const ErzeugerStellung_t& p) const {
        Bitboard b = 0;
        for (int i = 0; i < n; ++i) b |= Bit(static_cast<Feld>(p.feld[i]));
        return b;
    }
    // Does side `seite` attack square f? `ohne` is a man taken off the board (or -1).
    bool Angegriffen(const ErzeugerStellung_t& p, int f, int seite, Bitboard belegt, int ohne) const;
    bool ImSchach(const ErzeugerStellung_t& p) const {
        return Angegriffen(p, p.feld[koenig[p.amZug]], 1 - p.amZug, Belegt(p), -1);
    }
    // The man on square f, or -1.
    int SteinAuf(const ErzeugerStellung_t& p, int f) const {
        for (int i = 0; i < n; ++i)
            if (p.feld[i] == f) return i;
        return -1;
    }

    // Every legal move: f(child, moved man, captured man or -1, promotion type or 0). The
    // child holds the moved man's new square; a captured man's square is stale.
    // f returns false to stop. Returns the number of moves visited.
    template <class F>
    int Zuege(const ErzeugerStellung_t& p, F&& f) const;

    // Every legal position with the other side to move from which a legal move
    // without capture or promotion leads to p; the same position may come twice.
    template <class F>
    void Rueckzuege(const ErzeugerStellung_t& p, F&& f) const;

private:
    Bitboard Angriffe(int t, int f, int seite, Bitboard belegt) const {
        switch (t) {
        case Springer: return SpringerFelder[f];
        case Laeufer: return LaeuferAngriffe(static_cast<Feld>(f), belegt);
        case Turm: return TurmAngriffe(static_cast<Feld>(f), belegt);
        case Dame: return DameAngriffe(static_cast<Feld>(f), belegt);
        case Koenig: return KoenigFelder[f];
        default: return BauernAngriffe(static_cast<unsigned>(seite), Bit(static_cast<Feld>(f)));
        }
    }
    // A pawn of `seite` stands beside square f on its row.
    bool BauerDaneben(const ErzeugerStellung_t& p, int f, int seite) const {
        for (int i = 0; i < n; ++i) {
            if (typ[i] != Bauer || farbe[i] != seite || (p.feld[i] >> 3) != (f >> 3)) continue;
            const int d = p.feld[i] - f;
            if (d == 1 || d == -1) return true;
        }
        return false;
    }
    template <class F>
    void Vorgaenger(ErzeugerStellung_t v, F& f) const;
};

template <class F>
void Erzeugersignatur_t::FuerJedeReihenfolge(const ErzeugerStellung_t& p, F&& f) const {
    const int a = p.feld[0];
    const int m = ((a & 7) >= 4 ? 7 : 0) | ((a >> 3) >= 4 ? 56 : 0);
    if (!mehrdeutig || ((a ^ m) >> 3) != ((a ^ m) & 7)) {
        f(p);  // the anchor off the diagonal decides alone
        return;
    }
    // At most two groups of identical men fit beside the kings of six men.
    int start[2] = {}, groesse[2] = {}, gruppen = 0;
    for (int g = 0; g < bitbase.gruppen && g < BitbaseSteineMax; ++g) {
        const int k = bitbase.gruppenGroesse[g];
        if (k < 2 || k > 4 || gruppen == 2) continue;
        start[gruppen] = bitbase.gruppenStart[g];
        groesse[gruppen++] = k;
    }
    ErzeugerStellung_t q = p;
    int ordnung[2][4] = {{0, 1, 2, 3}, {0, 1, 2, 3}};
    auto setze = [&](int g) {
        for (int j = 0; j < groesse[g]; ++j) q.feld[start[g] + j] = p.feld[start[g] + ordnung[g][j]];
    };
    do {
        setze(0);
        do {
            setze(1);
            f(static_cast<const ErzeugerStellung_t&>(q));
        } while (std::next_permutation(ordnung[1], ordnung[1] + groesse[1]));
    } while (std::next_permutation(ordnung[0], ordnung[0] + groesse[0]));
}

template <class F>
int Erzeugersignatur_t::Zuege(const ErzeugerStellung_t& p, F&& f) const {
    const int x = p.amZug, y = 1 - x;
    const Bitboard belegt = Belegt(p);
    Bitboard eigene = 0;
    for (int i = 0; i < n; ++i)
        if (farbe[i] == x) eigene |= Bit(static_cast<Feld>(p.feld[i]));
    const int koenigsFeld = p.feld[koenig[x]];
    int anzahl = 0;

    // Makes the move, tests the own king and hands the child on.
    auto versuche = [&](int s, int nach, int geschlagen, int umwandlung, int epNeu) {
        ErzeugerStellung_t kind = p;
        kind.feld[s] = nach;
        kind.amZug = y;
        kind.ep = epNeu;
        Bitboard b = (belegt ^ Bit(static_cast<Feld>(p.feld[s]))) | Bit(static_cast<Feld>(nach));
        if (geschlagen >= 0 && p.feld[geschlagen] != nach) b ^= Bit(static_cast<Feld>(p.feld[geschlagen]));
        const int k = s == koenig[x] ? nach : koenigsFeld;
        if (Angegriffen(kind, k, y, b, geschlagen)) return true;
        ++anzahl;
        return f(static_cast<const ErzeugerStellung_t&>(kind), s, geschlagen, umwandlung);
    };

    for (int s = 0; s < n; ++s) {
        if (farbe[s] != x) continue;
        const int von = p.feld[s];
        if (typ[s] != Bauer) {
            Bitboard ziele = Angriffe(typ[s], von, x, belegt) & ~eigene;
            while (ziele) {
                const int nach = static_cast<int>(NimmFeld(ziele));
                if (!versuche(s, nach, SteinAuf(p, nach), 0, -1)) return anzahl;
            }
            continue;
        }
        const int schritt = x == Weiss ? -8 : 8;
        const int letzteReihe = x == Weiss ? 0 : 7;
        const int nach = von + schritt;
        if (!(belegt & Bit(static_cast<Feld>(nach)))) {
            if ((nach >> 3) == letzteReihe) {
                for (int u = Dame; u >= static_cast<int>(Springer); --u)
                    if (!versuche(s, nach, -1, u, -1)) return anzahl;
            } else {
                if (!versuche(s, nach, -1, 0, -1)) return anzahl;
                const int doppel = nach + schritt;
                if ((von >> 3) == (x == Weiss ? 6 : 1) && !(belegt & Bit(static_cast<Feld>(doppel)))) {
                    const int ep = BauerDaneben(p, doppel, y) ? nach : -1;
                    if (!versuche(s, doppel, -1, 0, ep)) return anzahl;
                }
            }
        }
        Bitboard schlaege = BauernAngriffe(static_cast<unsigned>(x), Bit(static_cast<Feld>(von))) & belegt & ~eigene;
        while (schlaege) {
            const int ziel = static_cast<int>(NimmFeld(schlaege));
            const int opfer = SteinAuf(p, ziel);
            if ((ziel >> 3) == letzteReihe) {
                for (int u = Dame; u >= static_cast<int>(Springer); --u)
                    if (!versuche(s, ziel, opfer, u, -1)) return anzahl;
            } else if (!versuche(s, ziel, opfer, 0, -1)) {
                return anzahl;
            }
        }
        if (p.ep >= 0 && (BauernAngriffe(static_cast<unsigned>(x), Bit(static_cast<Feld>(von))) & Bit(static_cast<Feld>(p.ep)))) {
            const int opfer = SteinAuf(p, p.ep - schritt);
            if (opfer >= 0 && !versuche(s, p.ep, opfer, 0, -1)) return anzahl;
        }
    }
    return anzahl;
}

template <class F>
void Erzeugersignatur_t::Vorgaenger(ErzeugerStellung_t v, F& f) const {
    const int y = v.amZug, x = 1 - y;  // y moves next in v; x has just moved before
    v.ep = -1;
    if (Zulaessig(v)) f(static_cast<const ErzeugerStellung_t&>(v));
    // The same placement right after a double step of x beside a pawn of y.
    for (int i = 0; i < n; ++i) {
        if (typ[i] != Bauer || farbe[i] != x || (v.feld[i] >> 3) != (x == Weiss ? 4 : 3)) continue;
        v.ep = x == Weiss ? v.feld[i] + 8 : v.feld[i] - 8;
        if (Zulaessig(v)) f(static_cast<const ErzeugerStellung_t&>(v));
    }
}

template <class F>
void Erzeugersignatur_t::Rueckzuege(const ErzeugerStellung_t& p, F&& f) const {
    const int x = p.amZug, y = 1 - x;  // y made the last move
    const Bitboard belegt = Belegt(p);
    ErzeugerStellung_t v = p;
    v.amZug = y;

    if (p.ep >= 0) {
        // Only the double step itself leads here.
        const int vorne = x == Weiss ? p.ep + 8 : p.ep - 8;
        const int s = SteinAuf(p, vorne);
        if (s < 0) return;
        v.feld[s] = x == Weiss ? p.ep - 8 : p.ep + 8;
        Vorgaenger(v, f);
        return;
    }
    for (int s = 0; s < n; ++s) {
        if (farbe[s] != y) continue;
        const int auf = p.feld[s];
        if (typ[s] != Bauer) {
            Bitboard herkunft = Angriffe(typ[s], auf, y, belegt) & ~belegt;
            while (herkunft) {
                v.feld[s] = static_cast<int>(NimmFeld(herkunft));
                Vorgaenger(v, f);
            }
            v.feld[s] = auf;
            continue;
        }
        const int zurueck = y == Weiss ? 8 : -8;
        const int von = auf + zurueck;
        const int grundreihe = y == Weiss ? 7 : 0;
        if ((von >> 3) != grundreihe && !(belegt & Bit(static_cast<Feld>(von)))) {
            v.feld[s] = von;
            Vorgaenger(v, f);
            // A double step beside a pawn of x would have left an en-passant square.
            const int doppel = von + zurueck;
            if ((auf >> 3) == (y == Weiss ? 4 : 3) && !(belegt & Bit(static_cast<Feld>(doppel))) &&
                !BauerDaneben(p, auf, x)) {
                v.feld[s] = doppel;
                Vorgaenger(v, f);
            }
        }
        v.feld[s] = auf;
    }
}

// The position as FEN (no castling, clocks 0 1), for messages and tests.
std::string ErzeugerFen(const Erzeugersignatur_t& sig, const ErzeugerStellung_t& p);
