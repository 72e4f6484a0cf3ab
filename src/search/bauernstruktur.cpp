// Pawn structure: everything here depends on the pawns alone, so the pawn cache keeps it.
#include "search/bewertung.h"
#include "search/gewichte.h"

namespace {

using namespace Bewertungshilfe;
namespace G = Gewichte;

// Half-board index of a square seen from White.
inline unsigned Halbfeld(Feld f) {
    const unsigned l = LinieVon(f);
    return (f >> 3) * 4 + (l < 4 ? l : 7 - l);
}

// The packed structure score of one side's pawns, that side's view.
template <unsigned s>
int32_t BauernSeite(const Stellung_t& st) {
    constexpr unsigned g = s ^ 1;
    const Bitboard eigene = st.seite[s].brett[Bauer];
    const Bitboard gegner = st.seite[g].brett[Bauer];
    const Bitboard gegnerAngriffe = BauernAngriffe(g, gegner);
    int32_t wert = 0;
    Bitboard b = eigene;
    while (b) {
        const Feld f = NimmFeld(b);
        const unsigned reihe = RelativeReihe(s, f);
        const Bitboard nachbarn = Nachbarlinien(LinieVon(f));
        const Bitboard vorne = Bauernmasken.vorne[s][f];
        const bool gegenueber = (gegner & vorne) != 0;
        const bool doppelt = (eigene & vorne) != 0;
        const Bitboard phalanx = eigene & nachbarn & ReihenMaske(ReiheVon(f));
        const Bitboard stuetzen = eigene & BauernAngriffe(g, Bit(f));  // own pawns that guard f

        const unsigned h = Halbfeld(s == Weiss ? f : f ^ 56);
        wert += S(G::BauerFeldMg[h], G::BauerFeldEg[h]);

        if (!(eigene & nachbarn)) {
            wert += G::Isoliert;
            if (!gegenueber) wert += G::SchwachUngegenueber;
        } else if (!(eigene & Bauernmasken.begleiter[s][f]) &&
                   ((gegnerAngriffe | gegner) & Bit(Vor(s, f)))) {
            // No neighbour can come up to guard it, and it cannot advance safely.
            wert += G::Rueckstaendig;
            if (!gegenueber) wert += G::SchwachUngegenueber;
        }
        if (doppelt) wert += G::Doppelt;
        if ((reihe == 5 || reihe == 6) && (gegner & Bit(Vor(s, f)))) wert += G::BlockierterBauer[reihe - 5];
        if (phalanx | stuetzen)
            wert += G::Verbunden[reihe] * (2 + (phalanx != 0) - gegenueber) +
                    G::Gestuetzt * static_cast<int>(Bitzahl(stuetzen));
        if (!doppelt && !(gegner & Bauernmasken.freiMaske[s][f])) {
            const unsigned linie = LinieVon(f);
            wert += G::Freibauer[reihe] + G::FreibauerLinie[linie < 4 ? linie : 7 - linie];
        }
    }
    return wert;
}

}  // namespace

void BerechneBauern(const Stellung_t& st, Bauerneintrag_t& e) {
    e.wert = BauernSeite<Weiss>(st) - BauernSeite<Schwarz>(st);
}
