#include "search/bewertung.h"

#include "search/gewichte.h"
#include "search/netz.h"

namespace {

using namespace Bewertungshilfe;
namespace G = Gewichte;

// Salts for the stored keys: a zeroed slot must not match the bare kings'
// material key or the pawn key of a position without pawns, both 0.
constexpr uint64_t MaterialSalz = 0x6a09e667f3bcc908ULL;
constexpr uint64_t BauernSalz = 0xbb67ae8584caa73bULL;

// Beyond this the 16-bit halves of a packed score would overflow once the other
// terms are added, so such material goes into the plain part instead.
constexpr int PackGrenze = 16000;

constexpr Bitboard LinieH = LinienMaske(7);

inline int Min(int a, int b) { return a < b ? a : b; }
inline int Max(int a, int b) { return a > b ? a : b; }

// ---- Material --------------------------------------------------------------------

int Phase(const Seite_t& s) {
    int p = 0;
    for (unsigned t = Springer; t <= Dame; ++t) p += G::Phaseneinheit[t] * s.anzahl[t];
    return p;
}

int Figurenwert(const Seite_t& s) {
    int w = 0;
    for (unsigned t = Springer; t <= Dame; ++t) w += MgWert(G::Materialwert[t]) * s.anzahl[t];
    return w;
}

// Scale in 64ths when side `s` is ahead: material that wins rarely.
int Skalierung(const Stellung_t& st, unsigned s) {
    const Seite_t& wir = st.seite[s];
    const Seite_t& sie = st.seite[s ^ 1];
    const int wirFig = Figurenwert(wir), sieFig = Figurenwert(sie);
    const int laeufer = MgWert(G::Materialwert[Laeufer]);
    if (wir.anzahl[Bauer] == 0) {
        if (wirFig - sieFig <= laeufer)
            return wirFig < MgWert(G::Materialwert[Turm]) ? G::SkalaOhneBauernRemis
                   : sieFig <= laeufer                    ? G::SkalaOhneBauernGegenLeicht
                                                          : G::SkalaOhneBauernSonst;
        // Two knights cannot force mate.
        if (wirFig == 2 * MgWert(G::Materialwert[Springer]) && wir.anzahl[Springer] == 2 && sie.anzahl[0] == 1)
            return G::SkalaOhneBauernRemis;
    }
    if (HatUngleicheLaeufer(st)) {
        if (wirFig == laeufer && sieFig == laeufer) {
            const int mehr = Max(0, wir.anzahl[Bauer] - sie.anzahl[Bauer]);
            return Min(64, G::SkalaUngleicheLaeuferBasis + G::SkalaUngleicheLaeuferJeBauer * mehr);
        }
        return G::SkalaUngleicheLaeuferFiguren;
    }
    if (wir.anzahl[Bauer] == 1 && wirFig - sieFig <= laeufer) return G::SkalaEinBauer;
    // The fewer pawns the side ahead has left, the harder it is to win.
    return Min(64, G::SkalaBauernBasis + G::SkalaJeBauer * wir.anzahl[Bauer]);
}

// Rarely called: kept out of line so the hot path stays compact.
[[gnu::noinline]] void BerechneMaterial(const Stellung_t& st, Materialeintrag_t& e) {
    int mg = 0, eg = 0, plain = 0, phase = 0;
    for (unsigned s = Weiss; s <= Schwarz; ++s) {
        const Seite_t& x = st.seite[s];
        const int vz = s == Weiss ? 1 : -1;
        int32_t w = 0;  // small enough per side to stay packed
        int m = 0, n = 0;
        for (unsigned t = Bauer; t <= Dame; ++t) {
            m += MgWert(G::Materialwert[t]) * x.anzahl[t];
            n += EgWert(G::Materialwert[t]) * x.anzahl[t];
        }
        if (x.anzahl[Laeufer] >= 2) w += G::Laeuferpaar;
        if (x.anzahl[Turm] >= 2) w += G::TurmRedundanz * (x.anzahl[Turm] - 1);
        if (x.anzahl[Dame] >= 2) w += G::DameRedundanz * (x.anzahl[Dame] - 1);
        mg += vz * (m + MgWert(w));
        eg += vz * (n + EgWert(w));
        const int bauern = x.anzahl[Bauer] - 5;
        plain += vz * bauern * (G::SpringerJeBauer * x.anzahl[Springer] + G::TurmJeBauer * x.anzahl[Turm]);
        phase += Phase(x);
    }
    const int p = Min(phase, G::PhaseVoll);
    e.mgGewicht = static_cast<int16_t>((p * 256 + G::PhaseVoll / 2) / G::PhaseVoll);
    e.egGewicht = static_cast<int16_t>(256 - e.mgGewicht);
    if (mg > -PackGrenze && mg < PackGrenze && eg > -PackGrenze && eg < PackGrenze) {
        e.material = S(mg, eg);
        e.wert = plain;
    } else {
        e.material = 0;
        e.wert = plain + (mg * e.mgGewicht + eg * e.egGewicht) / 256;
    }
    for (unsigned s = Weiss; s <= Schwarz; ++s) e.skalierung[s] = static_cast<uint8_t>(Skalierung(st, s));
}

// ---- Final scaling -------------------------------------------------------------------

// The scale in 64ths when side `stark` is ahead.
int Skalierungsfaktor(const Stellung_t& st, const Materialeintrag_t& me, unsigned stark) {
    const Seite_t& x = st.seite[stark];
    const Bitboard bauern = x.brett[Bauer];
    // Only rook pawns, at most a bishop that cannot cover the corner, the defender's king there: a fortress.
    if (bauern && x.anzahl[0] == x.anzahl[Bauer] + 1 + x.anzahl[Laeufer] && x.anzahl[Laeufer] <= 1 &&
        (!(bauern & ~LinieA) || !(bauern & ~LinieH))) {
        const Feld ecke = (stark == Weiss ? 0 : 56) + ((bauern & LinieA) ? 0 : 7);
        const Bitboard farbe = (Bit(ecke) & HelleFelder) ? HelleFelder : DunkleFelder;
        const Bitboard amEck = KoenigFelder[ecke] | Bit(ecke);
        if (!(x.brett[Laeufer] & farbe) && (amEck & st.seite[stark ^ 1].brett[Koenig])) return 0;
    }
    return me.skalierung[stark];
}

int Skaliere(const Stellung_t& st, int r, const Materialeintrag_t& me) {
    if (r == 0) return 0;
    const int faktor = Skalierungsfaktor(st, me, r > 0 ? Weiss : Schwarz);
    return faktor == 64 ? r : r * faktor / 64;
}

// Steps 1 and 2: the material and pawn records, from their caches.
inline const Materialeintrag_t& MaterialVon(const Stellung_t& st, const Stellungsdaten_t& daten,
                                            Materialcache_t& material) {
    const uint64_t schluessel = daten.Materialschluessel ^ MaterialSalz;
    Materialeintrag_t& me = material.e[(daten.Materialschluessel * 0x9e3779b97f4a7c15ULL) >> 52];
    static_assert(Materialcache_t::Eintraege == 1 << 12, "index width");
    if (me.schluessel != schluessel) {
        BerechneMaterial(st, me);
        me.schluessel = schluessel;
    }
    return me;
}
inline const Bauerneintrag_t& BauernVon(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern) {
    const uint64_t schluessel = daten.bauernSchluessel ^ BauernSalz;
    Bauerneintrag_t& be = bauern.e[daten.bauernSchluessel & (Bauerncache_t::Eintraege - 1)];
    if (be.schluessel != schluessel) {
        BerechneBauern(st, be);
        be.schluessel = schluessel;
    }
    return be;
}

// Steps 3 and 7: material, pawn structure and tempo, White's view; the network adds the rest.
inline int32_t Grundsumme(const Stellung_t& st, const Materialeintrag_t& me, const Bauerneintrag_t& be) {
    return me.material + be.wert + (1 - 2 * static_cast<int>(st.amZug)) * G::Tempo;
}

}  // namespace

int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material,
            int32_t netzWert) {
    const Materialeintrag_t& me = MaterialVon(st, daten, material);
    const Bauerneintrag_t& be = BauernVon(st, daten, bauern);
    const int32_t summe = Grundsumme(st, me, be) + (st.amZug == Weiss ? netzWert : -netzWert);
    // 8: blend by phase.
    int r = (MgWert(summe) * me.mgGewicht + EgWert(summe) * me.egGewicht) / 256 + me.wert;
    // 9: drawish material, then the side to move's view.
    r = Skaliere(st, r, me) * (st.amZug == Weiss ? 1 : -1);
    // 10.
    return Quantisiere(r);
}

int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material) {
    const Bewertungsnetz_t& netz = EingebautesNetz();
    Akkumulator_t akku;
    NetzAufbauen(netz, st, akku);
    return Bewerte(st, daten, bauern, material, NetzWert(netz, akku, st.amZug));
}

Bewertungsrahmen_t BewertungsrahmenVon(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern,
                                       Materialcache_t& material) {
    const Materialeintrag_t& me = MaterialVon(st, daten, material);
    return {Grundsumme(st, me, BauernVon(st, daten, bauern)), me.mgGewicht, me.egGewicht, me.wert,
            {Skalierungsfaktor(st, me, Weiss), Skalierungsfaktor(st, me, Schwarz)}};
}
