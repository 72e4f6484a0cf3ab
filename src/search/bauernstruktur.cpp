// Pawn structure and king shelter: everything here depends on the pawns alone
// (the shelter also on one king square), so the pawn cache keeps it.
#include <bit>

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
int32_t BauernSeite(const Stellung_t& st, Bauerneintrag_t& e) {
    constexpr unsigned g = s ^ 1;
    const Bitboard eigene = st.seite[s].brett[Bauer];
    const Bitboard gegner = st.seite[g].brett[Bauer];
    const Bitboard gegnerAngriffe = BauernAngriffe(g, gegner);
    int32_t wert = 0;
    Bitboard frei = 0;
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
        wert += S(G::FeldMg[Bauer][h], G::FeldEg[Bauer][h]);

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
            frei |= Bit(f);
            const unsigned linie = LinieVon(f);
            wert += G::Freibauer[reihe] + G::FreibauerLinie[linie < 4 ? linie : 7 - linie];
        }
    }
    e.freibauern[s] = frei;
    // What the pawns attack now or after advancing: squares no enemy pawn will ever chase a piece from.
    e.spanne[s] = BauernAngriffe(s, eigene | Vorne(s, eigene));
    unsigned offen = 0;
    for (unsigned l = 0; l < 8; ++l)
        if (!(eigene & LinienMaske(l))) offen |= 1u << l;
    e.offeneLinien[s] = static_cast<uint8_t>(offen);
    return wert;
}

inline Feld HoechstesFeld(Bitboard x) { return static_cast<Feld>(63 - std::countl_zero(x)); }

}  // namespace

void BerechneBauern(const Stellung_t& st, Bauerneintrag_t& e) {
    e.wert = BauernSeite<Weiss>(st, e) - BauernSeite<Schwarz>(st, e);
    e.schildSchluessel[Weiss] = e.schildSchluessel[Schwarz] = 0xffff;  // no shelter yet
    e.schild[Weiss] = e.schild[Schwarz] = 0;
}

int Koenigsschild(const Stellung_t& st, unsigned seite, Feld koenig) {
    // Pawns behind the king neither shield nor storm it.
    const Bitboard vorOderNeben = ReihenMaske(ReiheVon(koenig)) | Vorne(seite, ReihenMaske(ReiheVon(koenig)));
    const Bitboard eigene = st.seite[seite].brett[Bauer] & vorOderNeben;
    const Bitboard gegner = st.seite[seite ^ 1].brett[Bauer] & vorOderNeben;
    // Kings on the edge files are judged by the three files next to the edge.
    unsigned mitte = LinieVon(koenig);
    mitte = mitte < 1 ? 1 : mitte > 6 ? 6 : mitte;
    int wert = 0;
    for (unsigned l = mitte - 1; l <= mitte + 1; ++l) {
        const Bitboard e = eigene & LinienMaske(l);
        const Bitboard g = gegner & LinienMaske(l);
        // The pawn nearest the king: the lowest rank seen from the king's side.
        const unsigned re = e ? RelativeReihe(seite, seite == Weiss ? HoechstesFeld(e) : NiedrigstesFeld(e)) : 0;
        const unsigned rg = g ? RelativeReihe(seite, seite == Weiss ? HoechstesFeld(g) : NiedrigstesFeld(g)) : 0;
        wert += G::Schildbauer[l < 4 ? l : 7 - l][re];
        if (rg) wert += (re && re + 1 == rg) ? G::SturmBlockiert[rg] : G::SturmFrei[rg];
        else if (!re) wert += G::OffeneLinieAmKoenig;
    }
    return wert;
}
