#include "board/zuggenerator.h"

namespace {

constexpr Bitboard Reihe8 = 0x00000000000000ffULL;
constexpr Bitboard Reihe1 = 0xff00000000000000ULL;
constexpr Bitboard Reihe3 = 0x0000ff0000000000ULL;
constexpr Bitboard Reihe6 = 0x0000000000ff0000ULL;

// Pawn geometry of one side: captures toward the a-side (Links) and the h-side (Rechts).
template <unsigned Seite>
struct Bauernrichtung {
    static constexpr int Vor = Seite == Weiss ? -8 : 8;
    static constexpr int Links = Seite == Weiss ? -9 : 7;
    static constexpr int Rechts = Seite == Weiss ? -7 : 9;
    static constexpr Bitboard Umwandlungsreihe = Seite == Weiss ? Reihe8 : Reihe1;
    static constexpr Bitboard Doppelschrittreihe = Seite == Weiss ? Reihe3 : Reihe6;

    static Bitboard Schiebe(Bitboard b, int schritt) { return schritt < 0 ? b >> -schritt : b << schritt; }
    static Bitboard NachLinks(Bitboard p) { return Schiebe(p, Links) & OhneHLinie; }
    static Bitboard NachRechts(Bitboard p) { return Schiebe(p, Rechts) & OhneALinie; }
    static Bitboard NachVorn(Bitboard p) { return Schiebe(p, Vor); }
};

inline uint32_t* Umwandlungen(uint32_t* l, Feld von, Feld nach) {
    l[0] = MachZug(von, nach, UmwandlungDame);
    l[1] = MachZug(von, nach, UmwandlungTurm);
    l[2] = MachZug(von, nach, UmwandlungLaeufer);
    l[3] = MachZug(von, nach, UmwandlungSpringer);
    return l + 4;
}

// Captures onto `ziele` in one direction: promotions first, then the others.
inline uint32_t* Schlaege(uint32_t* l, Bitboard ziele, int schritt, Bitboard umwandlungsreihe) {
    Bitboard u = ziele & umwandlungsreihe;
    while (u) {
        const Feld nach = NimmFeld(u);
        l = Umwandlungen(l, static_cast<Feld>(static_cast<int>(nach) - schritt), nach);
    }
    Bitboard n = ziele & ~umwandlungsreihe;
    while (n) {
        const Feld nach = NimmFeld(n);
        *l++ = MachZug(static_cast<Feld>(static_cast<int>(nach) - schritt), nach, BauernZug);
    }
    return l;
}

// Pawn moves in generation order; `ziele` limits the destinations (everything outside check).
template <unsigned Seite>
uint32_t* Bauernzuege(const Stellung_t& st, Bitboard belegt, Bitboard ziele, uint32_t* l) {
    using R = Bauernrichtung<Seite>;
    const Bitboard bauern = st.seite[Seite].brett[Bauer];
    const Bitboard gegner = st.seite[Seite ^ 1].brett[0] & ziele;

    l = Schlaege(l, R::NachLinks(bauern) & gegner, R::Links, R::Umwandlungsreihe);
    l = Schlaege(l, R::NachRechts(bauern) & gegner, R::Rechts, R::Umwandlungsreihe);

    const Bitboard einfach = R::NachVorn(bauern) & ~belegt;
    Bitboard u = einfach & ziele & R::Umwandlungsreihe;
    while (u) {
        const Feld nach = NimmFeld(u);
        l = Umwandlungen(l, static_cast<Feld>(static_cast<int>(nach) - R::Vor), nach);
    }
    Bitboard d = R::NachVorn(einfach & R::Doppelschrittreihe) & ~belegt & ziele;
    while (d) {
        const Feld nach = NimmFeld(d);
        *l++ = MachZug(static_cast<Feld>(static_cast<int>(nach) - 2 * R::Vor), nach, BauernZug);
    }
    Bitboard e = einfach & ziele & ~R::Umwandlungsreihe;
    while (e) {
        const Feld nach = NimmFeld(e);
        *l++ = MachZug(static_cast<Feld>(static_cast<int>(nach) - R::Vor), nach, BauernZug);
    }
    return l;
}

template <unsigned Seite>
uint32_t* EnPassantZuege(const Stellung_t& st, uint32_t* l) {
    using R = Bauernrichtung<Seite>;
    const Feld ep = st.ep;
    const Bitboard bauern = st.seite[Seite].brett[Bauer];
    if (R::NachLinks(bauern) & Bit(ep)) *l++ = MachZug(static_cast<Feld>(static_cast<int>(ep) - R::Links), ep, EnPassant);
    if (R::NachRechts(bauern) & Bit(ep)) *l++ = MachZug(static_cast<Feld>(static_cast<int>(ep) - R::Rechts), ep, EnPassant);
    return l;
}

template <unsigned Typ>
inline Bitboard Angriffe(Feld f, Bitboard belegt) {
    if constexpr (Typ == Springer) return SpringerFelder[f];
    else if constexpr (Typ == Laeufer) return LaeuferAngriffe(f, belegt);
    else if constexpr (Typ == Turm) return TurmAngriffe(f, belegt);
    else return DameAngriffe(f, belegt);
}

// Moves of every piece of one type (in list order) onto `ziele`; `Art` is the move kind
// (a queen moving only like a bishop or a rook in evasions is generated with those attacks).
template <unsigned Typ, unsigned ArtDesZugs = Typ>
inline uint32_t* Figurenzuege(const Seite_t& s, Bitboard belegt, Bitboard ziele, uint32_t* l) {
    const uint8_t* liste = s.Liste(ArtDesZugs);
    for (unsigned i = 0, n = s.anzahl[ArtDesZugs]; i < n; ++i) {
        const Feld von = liste[i];
        Bitboard z = Angriffe<Typ>(von, belegt) & ziele;
        while (z) *l++ = MachZug(von, NimmFeld(z), ArtDesZugs);
    }
    return l;
}

// Knight, bishop, rook, queen and king moves onto `ziele`; the king only to unattacked squares.
inline uint32_t* Figurenzuege(const Seite_t& s, const Stellungsdaten_t& daten, Bitboard ziele, unsigned seite,
                              uint32_t* l) {
    const Bitboard belegt = daten.belegt;
    l = Figurenzuege<Springer>(s, belegt, ziele, l);
    l = Figurenzuege<Laeufer>(s, belegt, ziele, l);
    l = Figurenzuege<Turm>(s, belegt, ziele, l);
    l = Figurenzuege<Dame>(s, belegt, ziele, l);
    const Feld k = s.KoenigsFeld();
    Bitboard z = KoenigFelder[k] & ziele & ~daten.angriffe[seite].alle;
    while (z) *l++ = MachZug(k, NimmFeld(z), Koenig);
    return l;
}

template <unsigned Seite>
uint32_t* Rochaden(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* l) {
    const Seite_t& s = st.seite[Seite];
    const Feld k = s.KoenigsFeld();
    const Bitboard bedroht = daten.angriffe[Seite].alle;
    const Feld basis = Seite == Weiss ? 0 : 56;  // g1/c1 are 62/58, g8/c8 are 6/2
    struct Fluegel {
        uint8_t recht;
        Feld turm, koenigZiel, turmZiel;
    };
    const Fluegel fluegel[2] = {
        {static_cast<uint8_t>(Seite == Weiss ? WeissKurz : SchwarzKurz), s.kurzerTurm, 62 - basis, 61 - basis},
        {static_cast<uint8_t>(Seite == Weiss ? WeissLang : SchwarzLang), s.langerTurm, 58 - basis, 59 - basis},
    };
    for (const Fluegel& f : fluegel) {
        if (!(st.rochaden & f.recht)) continue;
        // The king may not start on, cross or land on an attacked square; king and
        // rook need their paths empty of everything but themselves.
        const Bitboard weg = Zwischen[k * 64 + f.koenigZiel] | Bit(f.koenigZiel);
        if ((weg | Bit(k)) & bedroht) continue;
        const Bitboard frei = (Zwischen[f.turm * 64 + f.turmZiel] | Bit(f.turmZiel) | weg) & ~Bit(k) & ~Bit(f.turm);
        if (frei & daten.belegt) continue;
        *l++ = MachZug(k, f.koenigZiel, Rochade);
    }
    return l;
}

template <unsigned Seite>
uint32_t* NormaleZuege(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* l) {
    const Seite_t& s = st.seite[Seite];
    const Bitboard belegt = daten.belegt;
    const Bitboard ziele = ~s.brett[0];
    l = Bauernzuege<Seite>(st, belegt, ~Bitboard{0}, l);
    if (st.ep) l = EnPassantZuege<Seite>(st, l);
    l = Figurenzuege(s, daten, ziele, Seite, l);
    if (st.rochaden & (Seite == Weiss ? 3 : 12)) l = Rochaden<Seite>(st, daten, l);
    return l;
}

template <unsigned Seite>
uint32_t* Ausweichzuege(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* l) {
    const Seite_t& s = st.seite[Seite];
    const Seite_t& g = st.seite[Seite ^ 1];
    const Bitboard belegt = daten.belegt;
    const Feld k = s.KoenigsFeld();

    const Bitboard laeuferLinien = g.brett[Laeufer] | g.brett[Dame];
    const Bitboard turmLinien = g.brett[Turm] | g.brett[Dame];
    const Bitboard schachLaeufer = LaeuferAngriffe(k, belegt) & laeuferLinien;
    const Bitboard schachTurm = TurmAngriffe(k, belegt) & turmLinien;
    const Bitboard schach = schachLaeufer | schachTurm | (SpringerFelder[k] & g.brett[Springer]) |
                            (BauernAngriffe(Seite, Bit(k)) & g.brett[Bauer]);

    // The attack record was made with the king in place: a slider's line goes on behind it.
    Bitboard verboten = daten.angriffe[Seite].alle;
    Bitboard slider = schachLaeufer | schachTurm;
    while (slider) {
        const Feld c = NimmFeld(slider);
        verboten |= Linie[c * 64 + k] & ~Bit(c);
    }
    Bitboard z = KoenigFelder[k] & ~s.brett[0] & ~verboten;
    while (z) *l++ = MachZug(k, NimmFeld(z), Koenig);

    if (schach & (schach - 1)) return l;  // double check: only the king can move

    const Feld c = NiedrigstesFeld(schach);
    const Bitboard ziele = Zwischen[c * 64 + k] | Bit(c);
    l = Bauernzuege<Seite>(st, belegt, ziele, l);
    // En passant removes a checking pawn that has just made its double step.
    if (st.ep && (c == (Seite == Weiss ? st.ep + 8u : st.ep - 8u) || (ziele & Bit(st.ep))))
        l = EnPassantZuege<Seite>(st, l);
    l = Figurenzuege<Springer>(s, belegt, ziele, l);
    l = Figurenzuege<Laeufer>(s, belegt, ziele, l);
    l = Figurenzuege<Laeufer, Dame>(s, belegt, ziele, l);
    l = Figurenzuege<Turm>(s, belegt, ziele, l);
    l = Figurenzuege<Turm, Dame>(s, belegt, ziele, l);
    return l;
}

// Captures of the opponent's men on `opfer` (en passant when its pawn is among them),
// and with `umwandlungen` also the quiet pushes that promote to a queen.
template <unsigned Seite>
uint32_t* Schlagzuege(const Stellung_t& st, const Stellungsdaten_t& daten, Bitboard opfer, bool umwandlungen,
                      uint32_t* l) {
    using R = Bauernrichtung<Seite>;
    const Seite_t& s = st.seite[Seite];
    const Bitboard belegt = daten.belegt;
    const Bitboard ziele = opfer & st.seite[Seite ^ 1].brett[0];
    const Bitboard bauern = s.brett[Bauer];
    l = Schlaege(l, R::NachLinks(bauern) & ziele, R::Links, R::Umwandlungsreihe);
    l = Schlaege(l, R::NachRechts(bauern) & ziele, R::Rechts, R::Umwandlungsreihe);
    if (umwandlungen) {
        Bitboard u = R::NachVorn(bauern) & ~belegt & R::Umwandlungsreihe;
        while (u) {
            const Feld nach = NimmFeld(u);
            *l++ = MachZug(static_cast<Feld>(static_cast<int>(nach) - R::Vor), nach, UmwandlungDame);
        }
    }
    if (st.ep && (opfer & Bit(Seite == Weiss ? st.ep + 8u : st.ep - 8u))) l = EnPassantZuege<Seite>(st, l);
    l = Figurenzuege(s, daten, ziele, Seite, l);
    return l;
}

}  // namespace

uint32_t* ErzeugeAusweichzuege(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* liste) {
    return st.amZug == Weiss ? Ausweichzuege<Weiss>(st, daten, liste) : Ausweichzuege<Schwarz>(st, daten, liste);
}

uint32_t* ErzeugeZuege(const Stellung_t& st, const Stellungsdaten_t& daten, uint32_t* liste) {
    if (ImSchach(st, daten)) return ErzeugeAusweichzuege(st, daten, liste);
    return st.amZug == Weiss ? NormaleZuege<Weiss>(st, daten, liste) : NormaleZuege<Schwarz>(st, daten, liste);
}

uint32_t* ErzeugeSchlagzuege(const Stellung_t& st, const Stellungsdaten_t& daten, Bitboard opfer, bool umwandlungen,
                             uint32_t* liste) {
    return st.amZug == Weiss ? Schlagzuege<Weiss>(st, daten, opfer, umwandlungen, liste)
                             : Schlagzuege<Schwarz>(st, daten, opfer, umwandlungen, liste);
}
