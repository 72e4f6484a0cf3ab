// The move picker's sort: one key per move, computed once, insertion-sorted.
#include "search/zugwahl.h"

namespace zugwahl {

namespace {

constexpr uint64_t B(int bit) { return uint64_t{1} << bit; }

// The history part of every key: coarse steps of 128, lifted so it never goes negative.
inline uint64_t Historieanteil(const Historie_t& historie, unsigned art, Feld nach) {
    return static_cast<uint64_t>((historie.Wert(art, nach) & ~127) + 65664) * 512;
}

// The general key. Captures above everything quiet; among them recaptures and
// victims left unguarded; quiet moves to squares the opponent does not attack, king
// moves towards the opponent's pawns, and the killers.
inline uint64_t AllgemeinerSchluessel(const Suchrahmen_t* r, uint32_t zug, unsigned opfer, Bitboard gedeckt,
                                      Bitboard bauernNachbarn, Feld vorziel, const Historie_t& historie) {
    const unsigned art = Art(zug);
    const Feld nach = Nach(zug);
    uint64_t s = Historieanteil(historie, art, nach) + Umwandlungsbonus[art];
    if (opfer) {
        s += B(27);
        if constexpr (Suchparameter::SchlagzuegeNachOpferwert)
            s += static_cast<uint64_t>(Suchparameter::Steinwert[opfer]) << 22;
        if (nach == vorziel) s += B(19);
        if (!(Bit(nach) & gedeckt)) s += B(21);
    } else if (!(Bit(nach) & gedeckt)) {
        s += B(20);
    }
    if (art == EnPassant) s += B(24);
    if (!Suchparameter::SchlagzuegeNachOpferwert || !opfer) {
        if (art == Koenig && (Bit(nach) & bauernNachbarn)) s += B(18);
        if (zug == r->killer[0])
            s += B(21);
        else if (zug == r->killer[1])
            s += 3 * B(19);
    }
    return s;
}

// Pawn endings: the history, queening, and how far the captured pawn had come.
inline uint64_t BauernendspielSchluessel(uint32_t zug, unsigned opfer, unsigned amZug, const Historie_t& historie) {
    const unsigned art = Art(zug);
    const Feld nach = Nach(zug);
    uint64_t s = Historieanteil(historie, art, nach) + Umwandlungsbonus[art];
    if (opfer) {
        const Feld feld = art == EnPassant ? static_cast<Feld>(amZug == Weiss ? nach + 8 : nach - 8) : nach;
        const unsigned reihe = amZug == Weiss ? 9 - ReiheVon(feld) : ReiheVon(feld);  // seen from its owner
        s += static_cast<uint64_t>(reihe) << 24;
    }
    return s;
}

}  // namespace

void Sortieren(Suchrahmen_t* r, const Stellung_t& st, const Historie_t& historie) {
    const unsigned wir = st.amZug;
    const Seite_t& gegner = st.seite[wir ^ 1];
    const Bitboard gedeckt = r->daten.angriffe[wir].alle;  // squares the opponent attacks
    const uint32_t vorzug = (r - 1)->zug;
    const Feld vorziel = Art(vorzug) != Nullzug ? Nach(vorzug) : 64;
    const bool bauernendspiel = !Suchparameter::BauernendspielAllgemeinSortieren && Bauernendspiel(st);
    Bitboard bauernNachbarn = 0;
    for (Bitboard b = gegner.brett[Bauer]; b;) bauernNachbarn |= KoenigFelder[NimmFeld(b)];

    int n = 0;
    for (uint32_t* p = r->aktuell; p < r->ende; ++p) {
        const uint32_t zug = *p;
        const unsigned opfer = Art(zug) == EnPassant ? Bauer : FigurAuf(gegner, Nach(zug));
        const uint64_t schluessel =
            bauernendspiel ? BauernendspielSchluessel(zug, opfer, wir, historie)
                           : AllgemeinerSchluessel(r, zug, opfer, gedeckt, bauernNachbarn, vorziel, historie);
        // Equal keys: the smaller move word first.
        const uint64_t eintrag = (schluessel << 16) | (0xffff - zug);
        // Insertion sort, highest first: the lists are short.
        int i = n++;
        while (i > 0 && r->sortierschluessel[i - 1] < eintrag) {
            r->sortierschluessel[i] = r->sortierschluessel[i - 1];
            --i;
        }
        r->sortierschluessel[i] = eintrag;
    }
    r->sortiertAnzahl = n;
    r->sortiertIndex = 0;
    r->aktuell = r->ende;
}

}  // namespace zugwahl
