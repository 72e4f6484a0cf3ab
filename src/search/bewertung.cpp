#include "search/bewertung.h"

#include "search/gewichte.h"

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
// Ranks 4-6 of each side, where a minor can stand as an outpost.
constexpr Bitboard VorpostenReihen[2] = {ReihenMaske(4) | ReihenMaske(5) | ReihenMaske(6),
                                         ReihenMaske(3) | ReihenMaske(4) | ReihenMaske(5)};
// Files c-f on each side's ranks 2-4: the squares space is counted on.
constexpr Bitboard LinienCbisF = LinienMaske(2) | LinienMaske(3) | LinienMaske(4) | LinienMaske(5);
constexpr Bitboard Raumzone[2] = {
    LinienCbisF & (ReihenMaske(2) | ReihenMaske(3) | ReihenMaske(4)),
    LinienCbisF & (ReihenMaske(7) | ReihenMaske(6) | ReihenMaske(5)),
};
constexpr Bitboard Damenfluegel = LinienMaske(0) | LinienMaske(1) | LinienMaske(2) | LinienMaske(3);
constexpr Bitboard Koenigsfluegel = ~Damenfluegel;
// The files around a king, by its file, and each side's own half and a rank more.
constexpr Bitboard Koenigsflanke[8] = {
    Damenfluegel & ~LinienMaske(3), Damenfluegel, Damenfluegel, LinienCbisF,
    LinienCbisF, Koenigsfluegel, Koenigsfluegel, Koenigsfluegel & ~LinienMaske(4),
};
constexpr Bitboard Lager[2] = {ReihenMaske(1) | ReihenMaske(2) | ReihenMaske(3) | ReihenMaske(4) | ReihenMaske(5),
                               ReihenMaske(8) | ReihenMaske(7) | ReihenMaske(6) | ReihenMaske(5) | ReihenMaske(4)};
constexpr Bitboard Zentrum = (LinienMaske(3) | LinienMaske(4)) & (ReihenMaske(4) | ReihenMaske(5));
// The two corner-to-corner diagonals, the only ones through two centre squares.
constexpr Bitboard LangeDiagonalen = 0x8040201008040201ULL | 0x0102040810204080ULL;

// Squares at exactly distance d from a square, d = 0..7: the nearest man in a few steps.
struct Ringe_t {
    Bitboard ring[64][8];
};
constexpr Ringe_t BaueRinge() {
    Ringe_t r{};
    for (Feld a = 0; a < 64; ++a)
        for (Feld b = 0; b < 64; ++b) {
            const int dl = static_cast<int>(LinieVon(a)) - static_cast<int>(LinieVon(b));
            const int dr = static_cast<int>(a >> 3) - static_cast<int>(b >> 3);
            const int l = dl < 0 ? -dl : dl, h = dr < 0 ? -dr : dr;
            r.ring[a][l > h ? l : h] |= Bit(b);
        }
    return r;
}
constexpr Ringe_t Ringe = BaueRinge();

inline int Min(int a, int b) { return a < b ? a : b; }
inline int Max(int a, int b) { return a > b ? a : b; }

inline int32_t Feldwert(unsigned typ, unsigned seite, Feld f) {
    if (seite == Schwarz) f ^= 56;
    const unsigned l = LinieVon(f);
    const unsigned h = (f >> 3) * 4 + (l < 4 ? l : 7 - l);
    return S(G::FeldMg[typ][h], G::FeldEg[typ][h]);
}

// Sum of a table by piece type over the enemy men on the squares of x.
inline int32_t NachTyp(const Seite_t& sie, Bitboard x, const int32_t* tabelle) {
    int32_t w = 0;
    for (unsigned t = Bauer; t <= Dame; ++t)
        if (x & sie.brett[t]) w += tabelle[t] * static_cast<int>(Bitzahl(x & sie.brett[t]));
    return w;
}

// Men standing alone between square `ziel` and an enemy slider aimed at it along
// its kind of line: pinned, or ready to uncover an attack.
inline Bitboard Sperrer(Feld ziel, Bitboard gerade, Bitboard schraeg, Bitboard belegt) {
    Bitboard fessler = ((Strahlen[ziel][0] | Strahlen[ziel][1]) & gerade) |
                       ((Strahlen[ziel][2] | Strahlen[ziel][3]) & schraeg);
    Bitboard sperrer = 0;
    while (fessler) {
        const Bitboard dazwischen = Zwischen[ziel * 64 + NimmFeld(fessler)] & belegt;
        if (dazwischen && !(dazwischen & (dazwischen - 1))) sperrer |= dazwischen;
    }
    return sperrer;
}

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
    for (unsigned s = Weiss; s <= Schwarz; ++s) {
        e.passerFaktor[s] = static_cast<int8_t>(Min(Phase(st.seite[s ^ 1]), 127));
        e.skalierung[s] = static_cast<uint8_t>(Skalierung(st, s));
    }
}

// ---- Pieces ----------------------------------------------------------------------

// What one side's pieces do to the enemy king's zone.
struct Koenigsangriff_t {
    int anzahl = 0;   // pieces reaching the zone
    int gewicht = 0;  // their weights by type
    int treffer = 0;  // attacks on the squares next to the king
};

// The king, its neighbours and the squares two steps ahead of it.
inline Bitboard Koenigszone(unsigned seite, Feld k) {
    const Bitboard z = KoenigFelder[k] | Bit(k);
    return z | EinVor(seite, z);
}

// The terms below are forced inline: each build of the evaluation (see the end
// of the file) must count bits its own way, not call a shared generic copy.

// Piece terms of side s in its own view: squares, mobility, outposts, files,
// threats; and its attacks on the enemy king's zone for the king-safety term.
template <unsigned s>
[[gnu::always_inline]] inline int32_t Figurenterme(const Stellung_t& st, const Stellungsdaten_t& d,
                                                  const Bauerneintrag_t& be, Koenigsangriff_t& ka) {
    constexpr unsigned g = s ^ 1;
    const Seite_t& wir = st.seite[s];
    const Seite_t& sie = st.seite[g];
    const Angriffe_t& unsere = d.angriffe[g];  // made by s
    const Angriffe_t& ihre = d.angriffe[s];    // made by the opponent
    // Mobility counts the squares a piece could use: not those of the own king and queen,
    // of own pawns that are blocked or still at home, nor squares enemy pawns guard.
    const Bitboard blockiert = wir.brett[Bauer] & EinZurueck(s, d.belegt);
    const Bitboard zuHause = wir.brett[Bauer] & (RelativeReihenMaske(s, 2) | RelativeReihenMaske(s, 3));
    const Bitboard bereich = ~(wir.brett[Koenig] | wir.brett[Dame] | blockiert | zuHause | ihre.bauern);
    const Feld gk = sie.KoenigsFeld();
    const Bitboard zone = Koenigszone(g, gk);
    const Bitboard ring = KoenigFelder[gk];
    const Bitboard vorposten = VorpostenReihen[s] & ~be.spanne[g] & unsere.bauern;
    // Minors developed behind an own pawn; on the back rank it would only reward not moving the pawn.
    const Bitboard hinterBauern = EinZurueck(s, wir.brett[Bauer]) & ~RelativeReihenMaske(s, 1);
    const Feld k = wir.KoenigsFeld();
    const Bitboard bauernAlle = wir.brett[Bauer] | sie.brett[Bauer];
    const Bitboard damen = wir.brett[Dame] | sie.brett[Dame];
    int32_t w = 0;
    if (!(bauernAlle & Koenigsflanke[LinieVon(k)])) w += G::BauernloseFlanke;

    auto zaehle = [&](unsigned typ, Bitboard a) {
        if (a & zone) {
            ++ka.anzahl;
            ka.gewicht += G::Angreifer[typ];
            ka.treffer += static_cast<int>(Bitzahl(a & ring));
        }
    };

    const uint8_t* liste = wir.Liste(Springer);
    for (unsigned i = 0; i < wir.anzahl[Springer]; ++i) {
        const Feld f = liste[i];
        const Bitboard a = SpringerFelder[f];
        w += Feldwert(Springer, s, f) + G::SpringerMobilitaet[Bitzahl(a & bereich)];
        zaehle(Springer, a);
        if (vorposten & Bit(f)) w += G::SpringerVorposten;
        else if (a & vorposten & ~wir.brett[0]) w += G::SpringerVorpostenErreichbar;
        if (hinterBauern & Bit(f)) w += G::LeichtHinterBauer;
        w += G::KoenigsAbstand[Springer] * static_cast<int>(Abstand(f, k));
    }

    liste = wir.Liste(Laeufer);
    for (unsigned i = 0; i < wir.anzahl[Laeufer]; ++i) {
        const Feld f = liste[i];
        const Bitboard a = LaeuferAngriffe(f, d.belegt ^ wir.brett[Dame]);  // through the own queen
        w += Feldwert(Laeufer, s, f) + G::LaeuferMobilitaet[Bitzahl(a & bereich)];
        zaehle(Laeufer, a);
        if (vorposten & Bit(f)) w += G::LaeuferVorposten;
        if (hinterBauern & Bit(f)) w += G::LeichtHinterBauer;
        const Bitboard farbe = (Bit(f) & HelleFelder) ? HelleFelder : DunkleFelder;
        w += G::LaeuferBauernFarbe * static_cast<int>(Bitzahl(wir.brett[Bauer] & farbe)) +
             G::LaeuferBlockierteBauern * static_cast<int>(Bitzahl(blockiert & farbe));
        w += G::KoenigsAbstand[Laeufer] * static_cast<int>(Abstand(f, k));
        if (Bit(f) & LangeDiagonalen) {
            const Bitboard mitte = LaeuferAngriffe(f, bauernAlle) & Zentrum;
            if (mitte & (mitte - 1)) w += G::LaeuferLangeDiagonale;
        }
    }

    liste = wir.Liste(Turm);
    for (unsigned i = 0; i < wir.anzahl[Turm]; ++i) {
        const Feld f = liste[i];
        const Bitboard a = TurmAngriffe(f, d.belegt ^ wir.brett[Turm] ^ wir.brett[Dame]);  // through own heavies
        const unsigned mob = Bitzahl(a & bereich);
        w += Feldwert(Turm, s, f) + G::TurmMobilitaet[mob];
        zaehle(Turm, a);
        const unsigned linie = 1u << LinieVon(f);
        if (be.offeneLinien[s] & linie) {
            w += (be.offeneLinien[g] & linie) ? G::TurmOffeneLinie : G::TurmHalboffeneLinie;
        } else if (mob <= 3) {
            // Shut in on the king's wing by the own king, which can no longer castle there.
            const bool kurz = LinieVon(f) > LinieVon(k);
            const unsigned recht = (kurz ? WeissKurz : WeissLang) << (2 * s);
            if (RelativeReihe(s, k) == 1 && (LinieVon(k) < 4) != kurz && !(st.rochaden & recht))
                w += G::TurmEingesperrt;
        }
        // Behind a passer, own or enemy, the rook gains scope as the pawn advances.
        if (a & ((be.freibauern[s] & Vorne(s, Bit(f))) | (be.freibauern[g] & Hinten(s, Bit(f)))))
            w += G::TurmHinterFreibauer;
        if (LinienMaske(LinieVon(f)) & damen) w += G::TurmAufDamenlinie;
        if (RelativeReihe(s, f) == 7 &&
            (RelativeReihe(s, gk) == 8 || (sie.brett[Bauer] & RelativeReihenMaske(s, 7))))
            w += G::TurmSiebteReihe;
    }

    liste = wir.Liste(Dame);
    for (unsigned i = 0; i < wir.anzahl[Dame]; ++i) {
        const Feld f = liste[i];
        const Bitboard a = DameAngriffe(f, d.belegt);
        w += Feldwert(Dame, s, f) + G::DameMobilitaet[Bitzahl(a & bereich)];
        zaehle(Dame, a);
        // Deep in the enemy camp where no pawn can ever chase it.
        if (RelativeReihe(s, f) >= 5 && !(Bit(f) & be.spanne[g])) w += G::DameEindringen;
        // A lesser slider behind a single man: a pin or a discovered attack on the queen.
        if (Sperrer(f, sie.brett[Turm], sie.brett[Laeufer], d.belegt)) w += G::DameSchwach;
    }

    w += Feldwert(Koenig, s, k);

    // Threats against the opponent's men.
    const Bitboard ihreFiguren = sie.brett[0] & ~sie.brett[Bauer] & ~sie.brett[Koenig];
    const Bitboard stark = ihre.bauern | (ihre.doppelt & ~unsere.doppelt);
    const Bitboard verteidigt = ihreFiguren & stark;
    const Bitboard schwach = sie.brett[0] & ~sie.brett[Koenig] & ~stark & unsere.alle;
    if (verteidigt | schwach) {
        const Bitboard leichte = unsere.figur[Springer] | unsere.figur[Laeufer];
        w += NachTyp(sie, (verteidigt | schwach) & leichte, G::DrohungLeicht);
        w += NachTyp(sie, schwach & unsere.figur[Turm], G::DrohungTurm);
        if (schwach & unsere.figur[Koenig]) w += G::DrohungKoenig;
        const Bitboard haengend = schwach & (~ihre.alle | (ihreFiguren & unsere.doppelt));
        w += G::Haengend * static_cast<int>(Bitzahl(haengend));
        // Strong threats: hanging men, and men attacked by cheaper ones.
        const Bitboard schwere = sie.brett[Turm] | sie.brett[Dame];
        const Bitboard drohungen = haengend | (ihreFiguren & unsere.bauern) |
                                   (schwere & (unsere.figur[Springer] | unsere.figur[Laeufer])) |
                                   (sie.brett[Dame] & unsere.figur[Turm]);
        if (drohungen) w += G::Drohungszahl[st.amZug == s][(drohungen & (drohungen - 1)) ? 2 : 1];
    }
    // Safe squares from which a knight, bishop or rook would attack the queen next move.
    if (sie.anzahl[Dame] == 1) {
        const Feld q = sie.Liste(Dame)[0];
        const Bitboard sicher = ~wir.brett[0] & ~ihre.bauern & (~ihre.alle | unsere.doppelt);
        w += G::SpringerAufDame * static_cast<int>(Bitzahl(SpringerFelder[q] & unsere.figur[Springer] & sicher));
        const Bitboard linien = (LaeuferAngriffe(q, d.belegt) & unsere.figur[Laeufer]) |
                                (TurmAngriffe(q, d.belegt) & unsere.figur[Turm]);
        w += G::LaeuferTurmAufDame * static_cast<int>(Bitzahl(linien & sicher & ~sie.brett[0]));
    }
    // Contested squares the opponent does not hold firmly: room taken from his pieces.
    const Bitboard eingeschraenkt = unsere.alle & ihre.alle & ~ihre.bauern & ~(ihre.doppelt & ~unsere.doppelt);
    w += G::Eingeschraenkt * static_cast<int>(Bitzahl(eingeschraenkt));
    // Own men pinned to the own king: they guard nothing and may not move off the line.
    const Bitboard gefesselt =
        Sperrer(k, sie.brett[Turm] | sie.brett[Dame], sie.brett[Laeufer] | sie.brett[Dame], d.belegt);
    if (gefesselt & wir.brett[0]) w += NachTyp(wir, gefesselt & wir.brett[0], G::Gefesselt);
    const Bitboard sichereBauern = wir.brett[Bauer] & (~ihre.alle | unsere.alle);
    w += G::DrohungSichererBauer * static_cast<int>(Bitzahl(BauernAngriffe(s, sichereBauern) & ihreFiguren));
    // Pawn pushes that would attack a piece from a safe square.
    Bitboard vorstoss = EinVor(s, wir.brett[Bauer]) & ~d.belegt;
    vorstoss |= EinVor(s, vorstoss & RelativeReihenMaske(s, 3)) & ~d.belegt;
    vorstoss &= ~ihre.bauern & (unsere.alle | ~ihre.alle);
    w += G::DrohungBauernvorstoss * static_cast<int>(Bitzahl(BauernAngriffe(s, vorstoss) & ihreFiguren));
    return w;
}

// ---- Board control ------------------------------------------------------------------

template <unsigned s>
[[gnu::always_inline]] inline int32_t Kontrolle(const Stellung_t& st, const Stellungsdaten_t& d) {
    const Seite_t& wir = st.seite[s];
    const Angriffe_t& unsere = d.angriffe[s ^ 1];
    const Angriffe_t& ihre = d.angriffe[s];
    const Bitboard bauern = wir.brett[Bauer];
    const Bitboard sicher = Raumzone[s] & ~bauern & ~ihre.bauern;
    const Bitboard hinter =
        s == Weiss ? bauern << 8 | bauern << 16 | bauern << 24 : bauern >> 8 | bauern >> 16 | bauern >> 24;
    const int raum = static_cast<int>(Bitzahl(sicher) + Bitzahl(sicher & hinter & ~ihre.alle));
    const int figuren = wir.anzahl[0] - wir.anzahl[Bauer] - 1;
    return S(raum * figuren * figuren * G::RaumFaktor / 8, 0) +
           G::ZentrumKontrolle * static_cast<int>(Bitzahl(unsere.alle & Zentrum)) +
           G::ZentrumDoppelt * static_cast<int>(Bitzahl(unsere.doppelt & Zentrum));
}

// ---- King safety ----------------------------------------------------------------------

template <unsigned s>
int Schild(const Stellung_t& st, Bauerneintrag_t& be) {
    const Feld k = st.seite[s].KoenigsFeld();
    const unsigned rechte = (st.rochaden >> (2 * s)) & 3;
    const auto schluessel = static_cast<uint16_t>(k | rechte << 6);
    if (be.schildSchluessel[s] == schluessel) return be.schild[s];
    int w = Koenigsschild(st, s, k);
    // With castling rights still in hand, the better shelter counts.
    if (rechte & 1) w = Max(w, Koenigsschild(st, s, s == Weiss ? 62 : 6));
    if (rechte & 2) w = Max(w, Koenigsschild(st, s, s == Weiss ? 58 : 2));
    be.schildSchluessel[s] = schluessel;
    be.schild[s] = static_cast<int16_t>(w);
    return w;
}

// Safety of side s's king, mg, its own view: shelter minus the danger of the attack.
template <unsigned s>
[[gnu::always_inline]] inline int Koenigssicherheit(const Stellung_t& st, const Stellungsdaten_t& d,
                                                   Bauerneintrag_t& be, const Koenigsangriff_t& ka) {
    constexpr unsigned g = s ^ 1;
    int w = Schild<s>(st, be);
    const Feld k = st.seite[s].KoenigsFeld();
    const Angriffe_t& ihre = d.angriffe[s];  // made by the attacker
    // Pressure on the king's wing of the board in the defender's half, whether or not it reaches the zone.
    const Bitboard flanke = Koenigsflanke[LinieVon(k)] & Lager[s];
    w += G::FlankenAngriff * static_cast<int>(Bitzahl(ihre.alle & flanke) + Bitzahl(ihre.doppelt & flanke));
    if (ka.anzahl < 2) return w;  // one attacker alone does not break through
    const Angriffe_t& unsere = d.angriffe[g];  // made by the defender
    // Attacked squares defended at most once, and then only by the king or queen.
    const Bitboard schwach =
        ihre.alle & ~unsere.doppelt & (~unsere.alle | unsere.figur[Koenig] | unsere.figur[Dame]);
    const Bitboard sicher = ~st.seite[g].brett[0] & (~unsere.alle | (schwach & ihre.doppelt));
    const Bitboard turmLinien = TurmAngriffe(k, d.belegt);
    const Bitboard laeuferLinien = LaeuferAngriffe(k, d.belegt);
    int index = ka.gewicht + G::ZonenTreffer * ka.treffer +
                G::SchwachImRing * static_cast<int>(Bitzahl(KoenigFelder[k] & schwach));
    if (SpringerFelder[k] & ihre.figur[Springer] & sicher) index += G::SicheresSchach[Springer];
    if (laeuferLinien & ihre.figur[Laeufer] & sicher) index += G::SicheresSchach[Laeufer];
    if (turmLinien & ihre.figur[Turm] & sicher) index += G::SicheresSchach[Turm];
    if ((turmLinien | laeuferLinien) & ihre.figur[Dame] & sicher) index += G::SicheresSchach[Dame];
    if (!st.seite[g].anzahl[Dame]) index -= G::OhneDame;
    if (unsere.figur[Springer] & (KoenigFelder[k] | Bit(k))) index -= G::SpringerVerteidiger;
    if (index > 0) w -= G::Koenigsgefahr[Min(index, 63)];
    return w;
}

// ---- Passed pawns and the endgame -----------------------------------------------------

// Side s's passer and king terms in its own view, added to mg and eg.
template <unsigned s>
[[gnu::always_inline]] inline void Freibauern(const Stellung_t& st, const Stellungsdaten_t& d,
                                             const Bauerneintrag_t& be, int faktor, int& mg, int& eg) {
    constexpr unsigned g = s ^ 1;
    const Feld ek = st.seite[s].KoenigsFeld(), gk = st.seite[g].KoenigsFeld();
    const Angriffe_t& unsere = d.angriffe[g];
    const Angriffe_t& ihre = d.angriffe[s];
    const Bitboard gesperrt = ihre.alle | st.seite[g].brett[0];
    int m = 0, e = 0, unaufhaltbar = 0;
    for (Bitboard b = be.freibauern[s]; b;) {
        const Feld f = NimmFeld(b);
        const unsigned reihe = RelativeReihe(s, f);
        const Feld stopp = Vor(s, f);
        if (faktor == 0 && !(Bauernmasken.vorne[s][f] & st.seite[s].brett[0])) {
            // Against the bare king: the rule of the square.
            const int zuege = Min(8 - static_cast<int>(reihe), 5);
            const Feld ziel = s == Weiss ? LinieVon(f) : LinieVon(f) + 56;
            const int abstand = static_cast<int>(Abstand(gk, ziel)) - (st.amZug == g);
            if (abstand > zuege) unaufhaltbar = Max(unaufhaltbar, G::Unaufhaltbar - G::UnaufhaltbarJeZug * zuege);
        }
        const int stufe = G::FreibauerStufe[reihe];
        if (!stufe) continue;
        e += (Min(static_cast<int>(Abstand(gk, stopp)), 5) * G::PasserKoenigGegner -
              Min(static_cast<int>(Abstand(ek, stopp)), 5) * G::PasserKoenigEigen) * stufe;
        if (!(d.belegt & Bit(stopp))) {
            const Bitboard unsicher = Bauernmasken.vorne[s][f] & gesperrt;
            int32_t k = !unsicher ? G::FreierPfad : !(unsicher & Bit(stopp)) ? G::StoppSicher : 0;
            if (unsere.alle & Bit(stopp)) k += G::StoppGedeckt;
            m += MgWert(k) * stufe;
            e += EgWert(k) * stufe;
        }
    }
    const int skala = G::PasserSkala[Min(faktor, 12)];
    mg += m * skala / 64;
    eg += e * skala / 64 + unaufhaltbar;
    // The king near the pawns, where the endgame is decided.
    const Bitboard alleBauern = st.seite[Weiss].brett[Bauer] | st.seite[Schwarz].brett[Bauer];
    if (alleBauern) {
        int naechster = 1;
        while (!(Ringe.ring[ek][naechster] & alleBauern)) ++naechster;
        eg += G::KoenigBauernAbstand * naechster;
    }
}

// ---- Winning chances --------------------------------------------------------------------

// Correction of the endgame half `eg` (White's view): its sign times
// max(complexity, -|eg|), so an edge can fade to nothing but never flip.
[[gnu::always_inline]] inline int Komplexitaet(const Stellung_t& st, const Bauerneintrag_t& be, int eg) {
    if (eg == 0) return 0;
    const Seite_t& w = st.seite[Weiss];
    const Seite_t& s = st.seite[Schwarz];
    const Bitboard bauern = w.brett[Bauer] | s.brett[Bauer];
    const Feld wk = w.KoenigsFeld(), sk = s.KoenigsFeld();
    const int linien = static_cast<int>(LinieVon(wk)) - static_cast<int>(LinieVon(sk));
    const int reihen = static_cast<int>(wk >> 3) - static_cast<int>(sk >> 3);
    const int umgehung = (linien < 0 ? -linien : linien) - (reihen < 0 ? -reihen : reihen);
    const bool beideFluegel = (bauern & Damenfluegel) && (bauern & Koenigsfluegel);
    const bool nurBauern = w.anzahl[0] == w.anzahl[Bauer] + 1 && s.anzahl[0] == s.anzahl[Bauer] + 1;
    const int c = G::KomplexFreibauer * static_cast<int>(Bitzahl(be.freibauern[Weiss] | be.freibauern[Schwarz])) +
                  G::KomplexBauer * static_cast<int>(Bitzahl(bauern)) + G::KomplexUmgehung * umgehung +
                  G::KomplexBeideFluegel * beideFluegel + G::KomplexBauernendspiel * nurBauern + G::KomplexBasis;
    return eg > 0 ? Max(c, -eg) : -Max(c, eg);
}

// ---- Final scaling -------------------------------------------------------------------

int Skaliere(const Stellung_t& st, int r, const Materialeintrag_t& me) {
    if (r == 0) return 0;
    const unsigned stark = r > 0 ? Weiss : Schwarz;
    int faktor = me.skalierung[stark];
    const Seite_t& x = st.seite[stark];
    const Bitboard bauern = x.brett[Bauer];
    // Only rook pawns, at most a bishop that cannot cover the corner, the defender's king there: a fortress.
    if (bauern && x.anzahl[0] == x.anzahl[Bauer] + 1 + x.anzahl[Laeufer] && x.anzahl[Laeufer] <= 1 &&
        (!(bauern & ~LinieA) || !(bauern & ~LinieH))) {
        const Feld ecke = (stark == Weiss ? 0 : 56) + ((bauern & LinieA) ? 0 : 7);
        const Bitboard farbe = (Bit(ecke) & HelleFelder) ? HelleFelder : DunkleFelder;
        if (!(x.brett[Laeufer] & farbe) && Abstand(st.seite[stark ^ 1].KoenigsFeld(), ecke) <= 1) faktor = 0;
    }
    return faktor == 64 ? r : r * faktor / 64;
}

// The evaluation proper; Bewerte below picks the build of it for the CPU.
[[gnu::always_inline]] inline int BewerteKern(const Stellung_t& st, const Stellungsdaten_t& daten,
                                              Bauerncache_t& bauern, Materialcache_t& material) {
    // 1: material and phase.
    const uint64_t mschluessel = daten.Materialschluessel ^ MaterialSalz;
    Materialeintrag_t& me = material.e[(daten.Materialschluessel * 0x9e3779b97f4a7c15ULL) >> 52];
    static_assert(Materialcache_t::Eintraege == 1 << 12, "index width");
    if (me.schluessel != mschluessel) {
        BerechneMaterial(st, me);
        me.schluessel = mschluessel;
    }
    // 2: pawn structure.
    const uint64_t bschluessel = daten.bauernSchluessel ^ BauernSalz;
    Bauerneintrag_t& be = bauern.e[daten.bauernSchluessel & (Bauerncache_t::Eintraege - 1)];
    if (be.schluessel != bschluessel) {
        BerechneBauern(st, be);
        be.schluessel = bschluessel;
    }
    // 3: pieces, the same routine for either side.
    Koenigsangriff_t gegenWeiss, gegenSchwarz;
    int32_t summe = me.material + be.wert;
    summe -= Figurenterme<Schwarz>(st, daten, be, gegenWeiss);
    summe += Figurenterme<Weiss>(st, daten, be, gegenSchwarz);
    // 4: board control.
    summe += Kontrolle<Weiss>(st, daten) - Kontrolle<Schwarz>(st, daten);
    // 5: king safety, middlegame only.
    if (me.mgGewicht > 0) {
        const int ks = Koenigssicherheit<Weiss>(st, daten, be, gegenWeiss) -
                       Koenigssicherheit<Schwarz>(st, daten, be, gegenSchwarz);
        summe += S(ks, 0);
    }
    // 6: passed pawns and the endgame.
    if (me.egGewicht > 0) {
        int mgW = 0, egW = 0, mgS = 0, egS = 0;
        Freibauern<Weiss>(st, daten, be, me.passerFaktor[Weiss], mgW, egW);
        Freibauern<Schwarz>(st, daten, be, me.passerFaktor[Schwarz], mgS, egS);
        summe += S(mgW - mgS, egW - egS);
        summe += Komplexitaet(st, be, EgWert(summe));
    }
    // 7: tempo.
    summe += (1 - 2 * static_cast<int>(st.amZug)) * G::Tempo;
    // 8: blend by phase.
    int r = (MgWert(summe) * me.mgGewicht + EgWert(summe) * me.egGewicht) / 256 + me.wert;
    // 9: drawish material, then the side to move's view.
    r = Skaliere(st, r, me) * (st.amZug == Weiss ? 1 : -1);
    // 10.
#ifdef KELVARAN_TUNER
    return r;  // the tuner's finite differences need the unrounded score
#else
    return Quantisiere(r);
#endif
}

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__POPCNT__)
#define KELVARAN_POPCNT_WEICHE 1
// The generic x86-64 build counts bits in software, much of the evaluation's
// work; a second copy of it uses the instruction where the CPU has one (the
// compiler turns the counting idiom into it).
[[gnu::target("popcnt"), gnu::flatten]] int BewerteMitPopcnt(const Stellung_t& st, const Stellungsdaten_t& daten,
                                                            Bauerncache_t& bauern, Materialcache_t& material) {
    return BewerteKern(st, daten, bauern, material);
}
#endif

}  // namespace

int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern, Materialcache_t& material) {
#ifdef KELVARAN_POPCNT_WEICHE
    if (__builtin_cpu_supports("popcnt")) return BewerteMitPopcnt(st, daten, bauern, material);
#endif
    return BewerteKern(st, daten, bauern, material);
}
