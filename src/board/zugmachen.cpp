#include "board/zugmachen.h"

#include "board/zuggenerator.h"

namespace {

constexpr uint8_t RechteDerSeite[2] = {WeissKurz | WeissLang, SchwarzKurz | SchwarzLang};

// Removes the castling right whose rook stands (or stood) on square f.
inline void TurmRechtWeg(Stellung_t& st, unsigned seite, Feld f) {
    const Seite_t& s = st.seite[seite];
    if (f == s.kurzerTurm) st.rochaden &= static_cast<uint8_t>(~(WeissKurz << (2 * seite)));
    if (f == s.langerTurm) st.rochaden &= static_cast<uint8_t>(~(WeissLang << (2 * seite)));
}

inline unsigned FindeSlot(const uint8_t* liste, Feld f) {
    unsigned i = 0;
    while (liste[i] != f) ++i;
    return i;
}

// Takes the opponent's piece off `nach`; keys and material follow.
inline void Schlagen(Stellung_t& st, Feld nach, uint64_t& schluessel, uint64_t& bauernSchluessel,
                     uint64_t& material, Rueckzug_t& r) {
    const unsigned gegner = st.amZug;  // the side to move has already flipped
    Seite_t& g = st.seite[gegner];
    const Bitboard bit = Bit(nach);
    unsigned typ = Bauer;
    while (!(g.brett[typ] & bit)) ++typ;
    const bool ungleichVorher = typ == Laeufer && HatUngleicheLaeufer(st);
    r.geschlagenTyp = typ;
    r.geschlagenBrett = g.brett[typ];
    uint8_t* liste = g.Liste(typ);
    const unsigned slot = FindeSlot(liste, nach);
    r.geschlagenSlot = slot;
    liste[slot] = liste[--g.anzahl[typ]];
    --g.anzahl[0];
    g.brett[typ] ^= bit;
    g.brett[0] ^= bit;
    material -= Materialgewicht[8 * gegner + typ];
    const uint64_t k = FigurSchluessel(gegner, typ, nach);
    schluessel ^= k;
    if (typ == Bauer) bauernSchluessel ^= k;
    if (typ == Laeufer && HatUngleicheLaeufer(st) != ungleichVorher)
        material += ungleichVorher ? 0 - UngleicheLaeufer : UngleicheLaeufer;
    if (typ == Turm) TurmRechtWeg(st, gegner, nach);
}

inline void SchlagZuruecknehmen(Stellung_t& st, const Rueckzug_t& r) {
    Seite_t& g = st.seite[st.amZug ^ 1];
    const unsigned typ = r.geschlagenTyp;
    const Feld nach = Nach(r.zug);
    uint8_t* liste = g.Liste(typ);
    liste[g.anzahl[typ]++] = liste[r.geschlagenSlot];
    liste[r.geschlagenSlot] = static_cast<uint8_t>(nach);
    ++g.anzahl[0];
    g.brett[typ] = r.geschlagenBrett;
    g.brett[0] |= Bit(nach);
}

// ---- taking moves back -------------------------------------------------------

inline void BewegungZurueck(Rueckzug_t& r, unsigned typ) {
    Stellung_t& st = *r.stellung;
    st.amZug ^= 1;
    Seite_t& m = st.seite[st.amZug];
    m.brett[typ] ^= r.zugBits;
    m.brett[0] ^= r.zugBits;
    m.Liste(typ)[r.zugSlot] = static_cast<uint8_t>(Von(r.zug));
    st.ep = r.ep;
    st.rochaden = r.rochaden;
}

void FigurZurueck(Rueckzug_t& r) { BewegungZurueck(r, Art(r.zug)); }

void FigurSchlagZurueck(Rueckzug_t& r) {
    FigurZurueck(r);
    SchlagZuruecknehmen(*r.stellung, r);
}

void UmwandlungZurueck(Rueckzug_t& r) {
    Stellung_t& st = *r.stellung;
    st.amZug ^= 1;
    Seite_t& m = st.seite[st.amZug];
    const unsigned figur = UmwandlungsFigur(r.zug);
    const Feld von = Von(r.zug), nach = Nach(r.zug);
    m.Liste(figur)[--m.anzahl[figur]] = r.verdraengt;  // the new piece is the last of its list
    m.brett[figur] ^= Bit(nach);
    uint8_t* bauern = m.Liste(Bauer);
    bauern[m.anzahl[Bauer]++] = bauern[r.zugSlot];
    bauern[r.zugSlot] = static_cast<uint8_t>(von);
    m.brett[Bauer] ^= Bit(von);
    m.brett[0] ^= r.zugBits;
    st.ep = r.ep;
    st.rochaden = r.rochaden;
}

void UmwandlungSchlagZurueck(Rueckzug_t& r) {
    UmwandlungZurueck(r);
    SchlagZuruecknehmen(*r.stellung, r);
}

void RochadeZurueck(Rueckzug_t& r) {
    Stellung_t& st = *r.stellung;
    st.amZug ^= 1;
    Seite_t& m = st.seite[st.amZug];
    m.brett[Koenig] ^= r.zugBits;
    m.brett[Turm] ^= r.turmBits;
    m.brett[0] ^= r.zugBits ^ r.turmBits;
    m.Liste(Koenig)[0] = static_cast<uint8_t>(Von(r.zug));
    const bool kurz = (Nach(r.zug) & 7) == 6;
    m.Liste(Turm)[r.turmSlot] = kurz ? m.kurzerTurm : m.langerTurm;
    st.ep = r.ep;
    st.rochaden = r.rochaden;
}

void EnPassantZurueck(Rueckzug_t& r) {
    BewegungZurueck(r, Bauer);
    Stellung_t& st = *r.stellung;
    Seite_t& g = st.seite[st.amZug ^ 1];
    const Feld opfer = (Von(r.zug) & 56) | (Nach(r.zug) & 7);
    uint8_t* liste = g.Liste(Bauer);
    liste[g.anzahl[Bauer]++] = liste[r.geschlagenSlot];
    liste[r.geschlagenSlot] = static_cast<uint8_t>(opfer);
    ++g.anzahl[0];
    g.brett[Bauer] |= Bit(opfer);
    g.brett[0] |= Bit(opfer);
}

void NullzugZurueck(Rueckzug_t& r) {
    Stellung_t& st = *r.stellung;
    st.amZug ^= 1;
    st.ep = r.ep;
}

// ---- making moves ------------------------------------------------------------

// Knight, bishop, rook, queen, king and pawn moves (the pawn key is kept by the caller).
template <bool IstBauer>
inline void FigurzugMachen(Stellung_t& st, Zug_t zug, unsigned typ, Stellungsdaten_t& neu,
                           const Stellungsdaten_t& alt, Rueckzug_t& r) {
    const unsigned seite = st.amZug;
    Seite_t& m = st.seite[seite];
    const Feld von = Von(zug), nach = Nach(zug);
    uint8_t* liste = m.Liste(typ);
    const unsigned slot = FindeSlot(liste, von);
    liste[slot] = static_cast<uint8_t>(nach);
    r.zugSlot = slot;
    const Bitboard bits = Bit(von) | Bit(nach);
    m.brett[typ] ^= bits;
    m.brett[0] ^= bits;
    r.zugBits = bits;

    const uint64_t bewegung = FigurSchluessel(seite, typ, von) ^ FigurSchluessel(seite, typ, nach);
    uint64_t schluessel = alt.schluessel ^ bewegung ^ SeitenSchluessel;
    uint64_t bauernSchluessel = alt.bauernSchluessel;
    uint64_t material = alt.Materialschluessel;

    if (st.rochaden) {
        schluessel ^= RochadenSchluessel(st.rochaden);
        if (typ == Koenig) st.rochaden &= static_cast<uint8_t>(~RechteDerSeite[seite]);
        else if (typ == Turm) TurmRechtWeg(st, seite, von);
    }
    if (st.ep) {
        schluessel ^= ZobristEp[st.ep];
        st.ep = 0;
    }
    if constexpr (IstBauer) {
        bauernSchluessel ^= bewegung;
        // A double step leaves an en-passant square only when an enemy pawn could use it.
        if ((von ^ nach) == 16 &&
            (st.seite[seite ^ 1].brett[Bauer] & (((Bit(nach) << 1) & OhneALinie) | ((Bit(nach) >> 1) & OhneHLinie)))) {
            st.ep = static_cast<uint8_t>((von + nach) / 2);
            schluessel ^= ZobristEp[st.ep];
        }
    }
    st.amZug = seite ^ 1;
    if (st.seite[seite ^ 1].brett[0] & Bit(nach)) Schlagen(st, nach, schluessel, bauernSchluessel, material, r);
    if (r.rochaden) schluessel ^= RochadenSchluessel(st.rochaden);
    neu.schluessel = schluessel;
    neu.bauernSchluessel = bauernSchluessel;
    neu.Materialschluessel = material;
    r.zuruecknehmen = r.geschlagenTyp ? FigurSchlagZurueck : FigurZurueck;
}

void UmwandlungMachen(Stellung_t& st, Zug_t zug, Stellungsdaten_t& neu, const Stellungsdaten_t& alt, Rueckzug_t& r) {
    const unsigned seite = st.amZug;
    Seite_t& m = st.seite[seite];
    const Feld von = Von(zug), nach = Nach(zug);
    const unsigned figur = UmwandlungsFigur(zug);
    const bool ungleichVorher = figur == Laeufer && HatUngleicheLaeufer(st);

    uint8_t* bauern = m.Liste(Bauer);
    const unsigned slot = FindeSlot(bauern, von);
    r.zugSlot = slot;
    bauern[slot] = bauern[--m.anzahl[Bauer]];
    m.brett[Bauer] ^= Bit(von);
    uint8_t& neuerSlot = m.Liste(figur)[m.anzahl[figur]++];
    r.verdraengt = neuerSlot;
    neuerSlot = static_cast<uint8_t>(nach);
    m.brett[figur] ^= Bit(nach);
    r.zugBits = Bit(von) | Bit(nach);
    m.brett[0] ^= r.zugBits;

    const uint64_t bauernKey = FigurSchluessel(seite, Bauer, von);
    uint64_t schluessel = alt.schluessel ^ bauernKey ^ SeitenSchluessel ^ FigurSchluessel(seite, figur, nach);
    uint64_t bauernSchluessel = alt.bauernSchluessel ^ bauernKey;
    uint64_t material = alt.Materialschluessel + Materialgewicht[8 * seite + figur] - Materialgewicht[8 * seite + Bauer];
    // A new bishop may change the opposite-bishops term; a captured one is settled by Schlagen.
    if (figur == Laeufer && HatUngleicheLaeufer(st) != ungleichVorher)
        material += ungleichVorher ? 0 - UngleicheLaeufer : UngleicheLaeufer;
    if (st.ep) {
        schluessel ^= ZobristEp[st.ep];
        st.ep = 0;
    }
    st.amZug = seite ^ 1;
    if (st.seite[seite ^ 1].brett[0] & Bit(nach)) {
        schluessel ^= RochadenSchluessel(st.rochaden);
        Schlagen(st, nach, schluessel, bauernSchluessel, material, r);
        schluessel ^= RochadenSchluessel(st.rochaden);
    }
    neu.schluessel = schluessel;
    neu.bauernSchluessel = bauernSchluessel;
    neu.Materialschluessel = material;
    r.zuruecknehmen = r.geschlagenTyp ? UmwandlungSchlagZurueck : UmwandlungZurueck;
}

void RochadeMachen(Stellung_t& st, Zug_t zug, Stellungsdaten_t& neu, const Stellungsdaten_t& alt, Rueckzug_t& r) {
    const unsigned seite = st.amZug;
    Seite_t& m = st.seite[seite];
    const Feld von = Von(zug), nach = Nach(zug);
    uint64_t schluessel = alt.schluessel ^ RochadenSchluessel(st.rochaden) ^ SeitenSchluessel;

    r.zugBits = 0;
    if (von != nach) {
        schluessel ^= FigurSchluessel(seite, Koenig, von) ^ FigurSchluessel(seite, Koenig, nach);
        r.zugBits = Bit(von) | Bit(nach);
        m.Liste(Koenig)[0] = static_cast<uint8_t>(nach);
    }
    const bool kurz = (nach & 7) == 6;
    const Feld turmVon = kurz ? m.kurzerTurm : m.langerTurm;
    const Feld turmNach = kurz ? nach - 1 : nach + 1;  // f1/d1 or f8/d8
    r.turmSlot = FindeSlot(m.Liste(Turm), turmVon);
    m.Liste(Turm)[r.turmSlot] = static_cast<uint8_t>(turmNach);
    r.turmBits = 0;
    if (turmVon != turmNach) {
        schluessel ^= FigurSchluessel(seite, Turm, turmVon) ^ FigurSchluessel(seite, Turm, turmNach);
        r.turmBits = Bit(turmVon) | Bit(turmNach);
    }
    // XOR updates make Chess960 swaps (king onto the rook's square and back) come out right.
    m.brett[Koenig] ^= r.zugBits;
    m.brett[Turm] ^= r.turmBits;
    m.brett[0] ^= r.zugBits ^ r.turmBits;
    st.rochaden &= static_cast<uint8_t>(~RechteDerSeite[seite]);
    schluessel ^= RochadenSchluessel(st.rochaden);
    if (st.ep) {
        schluessel ^= ZobristEp[st.ep];
        st.ep = 0;
    }
    st.amZug = seite ^ 1;
    neu.schluessel = schluessel;
    neu.bauernSchluessel = alt.bauernSchluessel;
    neu.Materialschluessel = alt.Materialschluessel;
    r.zuruecknehmen = RochadeZurueck;
}

void EnPassantMachen(Stellung_t& st, Zug_t zug, Stellungsdaten_t& neu, const Stellungsdaten_t& alt, Rueckzug_t& r) {
    const Zug_t bauernzug = static_cast<Zug_t>((zug & 0x0fff) | (BauernZug << 12));
    FigurzugMachen<true>(st, bauernzug, Bauer, neu, alt, r);
    r.zug = zug;
    const unsigned gegner = st.amZug;
    Seite_t& g = st.seite[gegner];
    const Feld opfer = (Von(zug) & 56) | (Nach(zug) & 7);
    uint8_t* liste = g.Liste(Bauer);
    const unsigned slot = FindeSlot(liste, opfer);
    r.geschlagenSlot = slot;
    liste[slot] = liste[--g.anzahl[Bauer]];
    --g.anzahl[0];
    g.brett[Bauer] ^= Bit(opfer);
    g.brett[0] ^= Bit(opfer);
    const uint64_t k = FigurSchluessel(gegner, Bauer, opfer);
    neu.schluessel ^= k;
    neu.bauernSchluessel ^= k;
    neu.Materialschluessel -= Materialgewicht[8 * gegner + Bauer];
    r.zuruecknehmen = EnPassantZurueck;
}

void NullzugMachen(Stellung_t& st, Stellungsdaten_t& neu, const Stellungsdaten_t& alt, Rueckzug_t& r) {
    uint64_t schluessel = alt.schluessel ^ SeitenSchluessel;
    if (st.ep) {
        schluessel ^= ZobristEp[st.ep];
        st.ep = 0;
    }
    st.amZug ^= 1;
    neu.schluessel = schluessel;
    neu.bauernSchluessel = alt.bauernSchluessel;
    neu.Materialschluessel = alt.Materialschluessel;
    r.zuruecknehmen = NullzugZurueck;
}

// Is the king of the side that just moved attacked? Its own king cannot be the attacker:
// king moves and castling only go to unattacked squares.
inline bool KoenigAngegriffen(const Stellung_t& st, Bitboard belegt) {
    const unsigned gegner = st.amZug;
    const Seite_t& g = st.seite[gegner];
    const Feld k = st.seite[gegner ^ 1].KoenigsFeld();
    return (TurmAngriffe(k, belegt) & (g.brett[Turm] | g.brett[Dame])) ||
           (LaeuferAngriffe(k, belegt) & (g.brett[Laeufer] | g.brett[Dame])) ||
           (SpringerFelder[k] & g.brett[Springer]) || (BauernAngriffe(gegner ^ 1, Bit(k)) & g.brett[Bauer]);
}

}  // namespace

void ZugMachen(Stellung_t& st, Zug_t zug, Stellungsdaten_t& neu, const Stellungsdaten_t& alt, Rueckzug_t& r) {
    r.stellung = &st;
    r.zug = zug;
    r.geschlagenTyp = 0;
    r.ep = st.ep;
    r.rochaden = st.rochaden;
    switch (Art(zug)) {
        case BauernZug: FigurzugMachen<true>(st, zug, Bauer, neu, alt, r); break;
        case Springer:
        case Laeufer:
        case Turm:
        case Dame:
        case Koenig: FigurzugMachen<false>(st, zug, Art(zug), neu, alt, r); break;
        case UmwandlungSpringer:
        case UmwandlungLaeufer:
        case UmwandlungTurm:
        case UmwandlungDame: UmwandlungMachen(st, zug, neu, alt, r); break;
        case Rochade: RochadeMachen(st, zug, neu, alt, r); break;
        case EnPassant: EnPassantMachen(st, zug, neu, alt, r); break;
        default: NullzugMachen(st, neu, alt, r); break;
    }
    neu.belegt = st.seite[Weiss].brett[0] | st.seite[Schwarz].brett[0];
}

bool ZugLegal(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& alt, Stellungsdaten_t& neu, Rueckzug_t& r) {
    ZugMachen(st, zug, neu, alt, r);
    if (KoenigAngegriffen(st, neu.belegt)) {
        r.Zuruecknehmen();
        return false;
    }
    return true;
}

bool ZugMachenLegal(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& alt, Stellungsdaten_t& neu, Rueckzug_t& r) {
    ZugMachen(st, zug, neu, alt, r);
    return AngriffeNachZug(st, neu, r);
}

bool AngriffeNachZug(Stellung_t& st, Stellungsdaten_t& neu, Rueckzug_t& r) {
    const unsigned mover = st.amZug ^ 1;
    BerechneAngriffeVon(st, neu.belegt, st.amZug, neu.angriffe[mover]);
    if (neu.angriffe[mover].alle & st.seite[mover].brett[Koenig]) {
        r.Zuruecknehmen();
        return false;
    }
    BerechneAngriffeVon(st, neu.belegt, mover, neu.angriffe[st.amZug]);
    BerechneBedroht(st, neu);
    return true;
}

bool SpielzugMachen(Stellung_t& st, Zug_t zug, Rueckzug_t& r, Stellungsdaten_t& daten) {
    const Stellungsdaten_t alt = daten;
    if (!ZugMachenLegal(st, zug, alt, daten, r)) {
        daten = alt;
        return false;
    }
    // Pawn moves, promotions and captures reset the fifty-move count; castling does not.
    const bool umkehrbar =
        (r.zuruecknehmen == FigurZurueck && Art(zug) != BauernZug) || r.zuruecknehmen == RochadeZurueck;
    if (!umkehrbar) {
        st.historieAnzahl = 1;
        st.Historie[0] = daten.schluessel;
    } else if (st.historieAnzahl <= 100) {
        st.Historie[st.historieAnzahl++] = daten.schluessel;
    }
    return true;
}

bool SpielEnde(Stellung_t& st, const Stellungsdaten_t& daten, int* ergebnis) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    Stellungsdaten_t neu;
    Rueckzug_t r;
    for (const uint32_t* z = liste; z != ende; ++z) {
        if (ZugLegal(st, static_cast<Zug_t>(*z), daten, neu, r)) {
            r.Zuruecknehmen();
            return false;
        }
    }
    if (ergebnis) *ergebnis = !ImSchach(st, daten) ? 0 : st.amZug == Weiss ? -1 : 1;
    return true;
}

int ZaehleLegaleZuege(Stellung_t& st, const Stellungsdaten_t& daten) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    Stellungsdaten_t neu;
    Rueckzug_t r;
    int n = 0;
    for (const uint32_t* z = liste; z != ende; ++z) {
        if (ZugLegal(st, static_cast<Zug_t>(*z), daten, neu, r)) {
            r.Zuruecknehmen();
            ++n;
        }
    }
    return n;
}

bool IstLegal(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& daten) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    for (const uint32_t* z = liste; z != ende; ++z) {
        if (*z != zug) continue;
        Stellungsdaten_t neu;
        Rueckzug_t r;
        if (!ZugLegal(st, zug, daten, neu, r)) return false;
        r.Zuruecknehmen();
        return true;
    }
    return false;
}

int Materialremis(const Stellung_t& st) {
    const Seite_t& w = st.seite[Weiss];
    const Seite_t& s = st.seite[Schwarz];
    if (w.anzahl[Bauer] || s.anzahl[Bauer]) return 0;
    const unsigned maenner = w.anzahl[0] + s.anzahl[0];
    if (maenner == 3 && (w.anzahl[Springer] + s.anzahl[Springer] + w.anzahl[Laeufer] + s.anzahl[Laeufer]) == 1)
        return 10;
    const unsigned laeufer = w.anzahl[Laeufer] + s.anzahl[Laeufer];
    if (maenner - 2 == laeufer) {
        const Bitboard b = w.brett[Laeufer] | s.brett[Laeufer];
        if (!(b & ~HelleFelder) || !(b & ~DunkleFelder)) return 10;
    }
    return 0;
}

bool WiederholungsRemis(const Stellung_t& st) {
    if (st.historieAnzahl < 2) return false;
    const uint64_t aktuell = st.Historie[st.historieAnzahl - 1];
    int gleich = 0;
    for (uint32_t i = 0; i + 1 < st.historieAnzahl; ++i) gleich += st.Historie[i] == aktuell;
    return gleich >= 2;
}
