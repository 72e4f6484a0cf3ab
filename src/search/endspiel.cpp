// Endgame rules for positions of fewer than 7 men.
//
// Each rule scores from the view of the side it is named for ("stark") and
// turns the value to the side to move's view at the end, so that a position and
// its colour mirror always get the same answer. Wins score between about 3000
// and 11000 with terms that lead the winning side on; the pawnless rule gives
// queen against king about 10000, so a won pawn ending scores below the
// position after its promotion and the search is not afraid to promote.
#include "search/endspiel.h"

#include <algorithm>
#include <cstdlib>

#include "search/material.h"

namespace {

// Centralisation of a king: 40 per step away from the edge, on both axes.
constexpr int KoenigsZentrum[64] = {
    0,   40,  80,  120, 120, 80,  40,  0,    //
    40,  80,  120, 160, 160, 120, 80,  40,   //
    80,  120, 160, 200, 200, 160, 120, 80,   //
    120, 160, 200, 240, 240, 200, 160, 120,  //
    120, 160, 200, 240, 240, 200, 160, 120,  //
    80,  120, 160, 200, 200, 160, 120, 80,   //
    40,  80,  120, 160, 160, 120, 80,  40,   //
    0,   40,  80,  120, 120, 80,  40,  0,
};

// The furthest rank a defending pawn may have reached, per file, for two knights
// blockading it to win (the Troitzky line), counted from the pawn's own side.
constexpr unsigned TroitzkyReihe[8] = {4, 6, 5, 4, 4, 5, 6, 4};

int LinienAbstand(Feld a, Feld b) { return std::abs(static_cast<int>(LinieVon(a)) - static_cast<int>(LinieVon(b))); }
int ReihenAbstand(Feld a, Feld b) { return std::abs(static_cast<int>(ReiheVon(a)) - static_cast<int>(ReiheVon(b))); }
int Abstand(Feld a, Feld b) { return std::max(LinienAbstand(a, b), ReihenAbstand(a, b)); }
int Manhattan(Feld a, Feld b) { return LinienAbstand(a, b) + ReihenAbstand(a, b); }

// Closeness of the two kings: 1 at best (two squares apart on a line), -16 from corner to corner.
int Naehe(Feld a, Feld b) {
    const int l = LinienAbstand(a, b), r = ReihenAbstand(a, b);
    return 5 - 2 * std::max(l, r) - std::min(l, r);
}

// Rank 1..8 as the side sees it (its pawns advance towards 8).
int RelativeReihe(unsigned seite, Feld f) {
    return seite == Weiss ? static_cast<int>(ReiheVon(f)) : 9 - static_cast<int>(ReiheVon(f));
}
Feld UmwandlungsFeld(unsigned seite, Feld bauer) { return FeldAus(LinieVon(bauer), seite == Weiss ? 8 : 1); }
Feld VorDemBauern(unsigned seite, Feld bauer) { return seite == Weiss ? bauer - 8 : bauer + 8; }
bool Hell(Feld f) { return (HelleFelder & Bit(f)) != 0; }

// Exact composition of one side, minors counted together; the king is implied.
bool Ist(const Seite_t& s, int bauern, int leicht, int tuerme, int damen) {
    return s.anzahl[Bauer] == bauern && s.anzahl[Springer] + s.anzahl[Laeufer] == leicht &&
           s.anzahl[Turm] == tuerme && s.anzahl[Dame] == damen;
}
int Leichte(const Seite_t& s) { return s.anzahl[Springer] + s.anzahl[Laeufer]; }

// A value in favour of `seite`, turned to the side to move's view.
Endspielergebnis_t Fuer(const Stellung_t& st, unsigned seite, int modus, int wert) {
    return {modus, st.amZug == seite ? wert : -wert};
}
constexpr Endspielergebnis_t Keins{};

// The pawn side holds pieces against more pieces and no pawn (KRPKRm, KmPKmm, KmPKR).
// Without a pawn the stronger side rarely wins, and the pawn gives counterplay:
// half the surplus goes back to the pawn side. A pawn on its seventh is a race
// the evaluation and the search judge better.
Endspielergebnis_t BauerGegenFiguren(const Stellung_t& st, unsigned bauernSeite) {
    const Seite_t& b = st.seite[bauernSeite];
    const Seite_t& f = st.seite[bauernSeite ^ 1];
    const Feld bauer = b.Liste(Bauer)[0];
    const int reihe = RelativeReihe(bauernSeite, bauer);
    const int ueberschuss = MaterialSumme(f) - MaterialSumme(b);
    if (reihe >= 7 || ueberschuss <= 0) return Keins;
    int wert = ueberschuss / 2;
    const Feld k = f.KoenigsFeld();
    const bool blockiert = LinieVon(k) == LinieVon(bauer) && RelativeReihe(bauernSeite, k) > reihe;
    if (!blockiert) wert += 100 * (reihe - 2);
    return Fuer(st, bauernSeite, EndspielAddieren, wert);
}

// KRPKR: the defending king on the pawn's path (Philidor) holds; otherwise the
// chances grow with the pawn's rank and with the attacking king nearer the
// queening square than the defending one (Lucena).
Endspielergebnis_t TurmBauerGegenTurm(const Stellung_t& st, unsigned stark) {
    const Feld bauer = st.seite[stark].Liste(Bauer)[0];
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    const Feld q = UmwandlungsFeld(stark, bauer);
    const int reihe = RelativeReihe(stark, bauer);
    if (LinienAbstand(kW, bauer) <= 1 && RelativeReihe(stark, kW) > reihe)
        return Fuer(st, stark, EndspielErsetzen, 150 + 30 * (reihe - 2));
    const int wert = 1200 + 300 * (reihe - 2) + 100 * (Abstand(kW, q) - Abstand(kS, q));
    return Fuer(st, stark, EndspielErsetzen, std::max(wert, 300));
}

// KPKNN, the knights being `stark`: they win only against a pawn blockaded by a
// knight no further than the Troitzky line. An unblockaded pawn on its sixth or
// seventh may run; that is left to the search.
Endspielergebnis_t BauerGegenZweiSpringer(const Stellung_t& st, unsigned stark) {
    const unsigned schwach = stark ^ 1;
    const Feld bauer = st.seite[schwach].Liste(Bauer)[0];
    const int reihe = RelativeReihe(schwach, bauer);
    const bool blockiert = (st.seite[stark].brett[Springer] & Bit(VorDemBauern(schwach, bauer))) != 0;
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[schwach].KoenigsFeld();
    if (blockiert && reihe <= static_cast<int>(TroitzkyReihe[LinieVon(bauer)]))
        return Fuer(st, stark, EndspielErsetzen, 2500 + KoenigsZentrum[kS] - KoenigsZentrum[kW] + 10 * Naehe(kS, kW));
    if (!blockiert && reihe >= 6) return Keins;
    return Fuer(st, stark, EndspielErsetzen, 200);
}

// KmPKm: with the defending king on the pawn's path, or bishops of opposite
// colours, the extra pawn does not win. Otherwise the evaluation decides.
Endspielergebnis_t LeichtBauerGegenLeicht(const Stellung_t& st, unsigned stark) {
    const Feld bauer = st.seite[stark].Liste(Bauer)[0];
    const Feld kW = st.seite[stark ^ 1].KoenigsFeld();
    const int reihe = RelativeReihe(stark, bauer);
    const bool davor = LinieVon(kW) == LinieVon(bauer) && RelativeReihe(stark, kW) > reihe;
    if (!davor && !HatUngleicheLaeufer(st)) return Keins;
    return Fuer(st, stark, EndspielErsetzen, 100 + 20 * (reihe - 2));
}

// KRmKR: drawn as a rule; the defender on the edge is where the wins are.
Endspielergebnis_t TurmLeichtGegenTurm(const Stellung_t& st, unsigned stark) {
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    return Fuer(st, stark, EndspielErsetzen, 300 + (KoenigsZentrum[kS] - KoenigsZentrum[kW]) / 2 + 2 * Naehe(kS, kW));
}

// KBBKN: won with bishops of both colours, drawn with two of one colour.
Endspielergebnis_t ZweiLaeuferGegenSpringer(const Stellung_t& st, unsigned stark) {
    const Bitboard l = st.seite[stark].brett[Laeufer];
    if (!(l & HelleFelder) || !(l & DunkleFelder)) return Fuer(st, stark, EndspielErsetzen, 100);
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    const Feld springer = st.seite[stark ^ 1].Liste(Springer)[0];
    return Fuer(st, stark, EndspielErsetzen,
                3000 + KoenigsZentrum[kS] - KoenigsZentrum[kW] + 10 * Naehe(kS, kW) + 20 * Abstand(springer, kW));
}

// KQmKQ: the extra minor wins only now and then; perpetual check is never far.
Endspielergebnis_t DameLeichtGegenDame(const Stellung_t& st, unsigned stark) {
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    return Fuer(st, stark, EndspielErsetzen, 400 + (KoenigsZentrum[kS] - KoenigsZentrum[kW]) / 2);
}

// KRKm: drawn as a rule, with a small edge for the rook. A knight away from its
// king gets cut off; a bishop's king belongs in the corner its bishop does not cover.
Endspielergebnis_t TurmGegenLeichtfigur(const Stellung_t& st, unsigned stark) {
    const Seite_t& w = st.seite[stark ^ 1];
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = w.KoenigsFeld();
    int wert = 200 + (KoenigsZentrum[kS] - KoenigsZentrum[kW]) / 2 + 2 * Naehe(kS, kW);
    if (w.anzahl[Springer]) {
        wert += 60 * (Abstand(w.Liste(Springer)[0], kW) - 1);
    } else {
        const bool hell = Hell(w.Liste(Laeufer)[0]);
        const Feld ecken[2] = {hell ? 0u : 7u, hell ? 63u : 56u};  // corners of the bishop's colour
        if (Abstand(kW, ecken[0]) <= 1 || Abstand(kW, ecken[1]) <= 1) wert += 150;
    }
    return Fuer(st, stark, EndspielErsetzen, wert);
}

// KQKR: won. Drive the king to the edge, bring the kings together; a rook away
// from its king is the one the queen forks.
Endspielergebnis_t DameGegenTurm(const Stellung_t& st, unsigned stark) {
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    const Feld turm = st.seite[stark ^ 1].Liste(Turm)[0];
    return Fuer(st, stark, EndspielErsetzen,
                6000 + KoenigsZentrum[kS] - KoenigsZentrum[kW] + 10 * Naehe(kS, kW) + 20 * Abstand(turm, kW));
}

// KNNK: no forced mate. +1 for the knights keeps the search from calling it a plain draw.
Endspielergebnis_t ZweiSpringer(const Stellung_t& st, unsigned stark) { return Fuer(st, stark, EndspielErsetzen, 1); }

// KBNK: mate only in a corner of the bishop's colour, so the bare king is
// driven there (Manhattan distance to the nearer one) with the kings close.
Endspielergebnis_t LaeuferSpringer(const Stellung_t& st, unsigned stark) {
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    const bool hell = Hell(st.seite[stark].Liste(Laeufer)[0]);
    const int ecke =
        hell ? std::min(Manhattan(kW, 0), Manhattan(kW, 63)) : std::min(Manhattan(kW, 7), Manhattan(kW, 56));
    return Fuer(st, stark, EndspielErsetzen, 7000 + 100 * (14 - ecke) + 20 * (7 - Abstand(kS, kW)));
}

// KBPK: a rook pawn whose queening square the bishop does not cover is a draw
// once the defending king holds the corner; anything else is won.
Endspielergebnis_t LaeuferBauer(const Stellung_t& st, unsigned stark) {
    const Feld bauer = st.seite[stark].Liste(Bauer)[0];
    const Feld q = UmwandlungsFeld(stark, bauer);
    const Feld kS = st.seite[stark].KoenigsFeld(), kW = st.seite[stark ^ 1].KoenigsFeld();
    const bool randbauer = LinieVon(bauer) == 0 || LinieVon(bauer) == 7;
    if (randbauer && Hell(st.seite[stark].Liste(Laeufer)[0]) != Hell(q) && Abstand(kW, q) <= 1)
        return Fuer(st, stark, EndspielErsetzen, 0);
    const int reihe = RelativeReihe(stark, bauer);
    return Fuer(st, stark, EndspielErsetzen, 8000 + 600 * (reihe - 2) + 20 * (7 - Abstand(kS, q)));
}

// KPK from the table, in White's orientation for the table's sake.
Endspielergebnis_t KoenigBauer(const Stellung_t& st, unsigned stark) {
    const Feld spiegel = stark == Weiss ? 0 : 56;
    const Feld bauer = st.seite[stark].Liste(Bauer)[0] ^ spiegel;
    const Feld kS = st.seite[stark].KoenigsFeld() ^ spiegel, kW = st.seite[stark ^ 1].KoenigsFeld() ^ spiegel;
    const uint8_t w = KpkProbe(bauer, kS, kW, st.amZug == stark);
    if (w == KpkIllegal) return Keins;
    if (w == KpkNichtGewonnen) return {EndspielErsetzen, 0};
    // Each step of the pawn outweighs the longest king manoeuvre (38 plies).
    return Fuer(st, stark, EndspielErsetzen, 6000 + 600 * (static_cast<int>(ReiheVon(bauer)) - 2) - 10 * w);
}

// Six men: one pawn and pieces against more pieces. The counts fix the whole
// material: KRP against KR and a minor, or KP and a minor against two minors.
Endspielergebnis_t SechsSteine(const Stellung_t& st) {
    for (unsigned b = Weiss; b <= Schwarz; ++b) {
        const Seite_t& p = st.seite[b];
        const Seite_t& f = st.seite[b ^ 1];
        if ((Ist(p, 1, 0, 1, 0) && Ist(f, 0, 1, 1, 0)) || (Ist(p, 1, 1, 0, 0) && Ist(f, 0, 2, 0, 0))) {
            const Endspielergebnis_t e = BauerGegenFiguren(st, b);
            if (e.modus != EndspielKeins) return e;
        }
    }
    return Keins;
}

// Five men: the pawn side White first, then Black, then the pawnless endings.
Endspielergebnis_t FuenfSteine(const Stellung_t& st) {
    for (unsigned b = Weiss; b <= Schwarz; ++b) {
        const Seite_t& p = st.seite[b];
        const Seite_t& f = st.seite[b ^ 1];
        if (Ist(p, 1, 0, 1, 0) && Ist(f, 0, 0, 1, 0)) return TurmBauerGegenTurm(st, b);
        if (Ist(p, 1, 1, 0, 0) && Ist(f, 0, 0, 1, 0)) return BauerGegenFiguren(st, b);
        if (Ist(p, 1, 0, 0, 0) && f.anzahl[Springer] == 2 && Ist(f, 0, 2, 0, 0))
            return BauerGegenZweiSpringer(st, b ^ 1);
        if (Ist(p, 1, 1, 0, 0) && Ist(f, 0, 1, 0, 0)) return LeichtBauerGegenLeicht(st, b);
    }
    for (unsigned s = Weiss; s <= Schwarz; ++s) {
        const Seite_t& a = st.seite[s];
        const Seite_t& v = st.seite[s ^ 1];
        if (Ist(a, 0, 1, 1, 0) && Ist(v, 0, 0, 1, 0)) return TurmLeichtGegenTurm(st, s);
        if (a.anzahl[Laeufer] == 2 && Ist(a, 0, 2, 0, 0) && v.anzahl[Springer] == 1 && Ist(v, 0, 1, 0, 0))
            return ZweiLaeuferGegenSpringer(st, s);
        if (Ist(a, 0, 1, 0, 1) && Ist(v, 0, 0, 0, 1)) return DameLeichtGegenDame(st, s);
    }
    return Keins;
}

// Four men, two against two.
Endspielergebnis_t ZweiGegenZwei(const Stellung_t& st) {
    const Seite_t& w = st.seite[Weiss];
    const Seite_t& s = st.seite[Schwarz];
    if (w.anzahl[Bauer] == s.anzahl[Bauer] && Leichte(w) == Leichte(s) && w.anzahl[Turm] == s.anzahl[Turm] &&
        w.anzahl[Dame] == s.anzahl[Dame])
        return {EndspielErsetzen, 0};
    for (unsigned f = Weiss; f <= Schwarz; ++f) {
        const Seite_t& a = st.seite[f];
        const Seite_t& v = st.seite[f ^ 1];
        if (Ist(a, 0, 0, 1, 0) && Ist(v, 0, 1, 0, 0)) return TurmGegenLeichtfigur(st, f);
        if (Ist(a, 0, 0, 0, 1) && Ist(v, 0, 0, 1, 0)) return DameGegenTurm(st, f);
    }
    return Keins;
}

// Four men, three against one.
Endspielergebnis_t DreiGegenEins(const Stellung_t& st) {
    for (unsigned f = Weiss; f <= Schwarz; ++f) {
        const Seite_t& a = st.seite[f];
        if (a.anzahl[0] != 3) continue;
        if (a.anzahl[Springer] == 2) return ZweiSpringer(st, f);
        if (a.anzahl[Laeufer] == 1 && a.anzahl[Springer] == 1) return LaeuferSpringer(st, f);
        if (a.anzahl[Laeufer] == 1 && a.anzahl[Bauer] == 1) return LaeuferBauer(st, f);
        // Two bishops of one colour (after an underpromotion) cannot mate.
        const Bitboard l = a.brett[Laeufer];
        if (a.anzahl[Laeufer] == 2 && (!(l & HelleFelder) || !(l & DunkleFelder))) return {EndspielErsetzen, 0};
    }
    return Keins;
}

Endspielergebnis_t DreiSteine(const Stellung_t& st) {
    for (unsigned f = Weiss; f <= Schwarz; ++f) {
        const Seite_t& a = st.seite[f];
        if (a.anzahl[0] != 2) continue;
        if (a.anzahl[Bauer] == 1) return KoenigBauer(st, f);
        if (Leichte(a) == 1) return {EndspielErsetzen, 0};
    }
    return Keins;
}

}  // namespace

// Below 3436 the side ahead (a minor against nothing, or less) rarely mates, so
// only the excess over a pawn counts, halved. -3436 exactly gets the halving
// too; no pawnless material differs by 3436, all values being multiples of 50.
Endspielergebnis_t BauernlosesEndspiel(const Stellung_t& st) {
    const int d = MaterialSumme(st.seite[Weiss]) - MaterialSumme(st.seite[Schwarz]);
    int wert = 0;
    if (d >= 3436) wert = d + 200;
    else if (d > 0) wert = std::max(0, (d - 1000) / 2);
    else if (d < -3436) wert = d - 200;
    else if (d < 0) wert = std::min(0, (d + 1000) / 2);
    if (d != 0) {
        const unsigned vorn = d > 0 ? Weiss : Schwarz;
        const Feld kV = st.seite[vorn].KoenigsFeld(), kH = st.seite[vorn ^ 1].KoenigsFeld();
        const int lage = KoenigsZentrum[kV] - KoenigsZentrum[kH] + 2 * Naehe(kV, kH);
        wert += vorn == Weiss ? lage : -lage;
    }
    return {EndspielErsetzen, st.amZug == Weiss ? wert : -wert};
}

// By the number of men: the dedicated rules first; a rule that answers nothing
// leaves pawnless positions to the material rule and the rest to the evaluation.
Endspielergebnis_t Endspielwissen(const Stellung_t& st) {
    const Seite_t& w = st.seite[Weiss];
    const Seite_t& s = st.seite[Schwarz];
    const int steine = w.anzahl[0] + s.anzahl[0];
    if (steine >= 7) return Keins;

    Endspielergebnis_t e = Keins;
    if (steine == 6) e = SechsSteine(st);
    else if (steine == 5) e = FuenfSteine(st);
    else if (steine == 4) e = w.anzahl[0] == s.anzahl[0] ? ZweiGegenZwei(st) : DreiGegenEins(st);
    else if (steine == 3) e = DreiSteine(st);
    if (e.modus != EndspielKeins) return e;

    if (w.anzahl[Bauer] || s.anzahl[Bauer]) return Keins;
    return BauernlosesEndspiel(st);
}
