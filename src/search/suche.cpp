// The recursive search below the root and the capture search beneath it.
#include "search/suche.h"

#include <algorithm>
#ifdef KELVARAN_NETZ_PRUEFEN
#include <cstdio>
#include <cstdlib>
#include <cstring>
#endif

#include "bitbase/werkzeug.h"
#include "board/zuggenerator.h"
#include "search/endspiel.h"
#include "search/material.h"
#include "search/suchparameter.h"
#include "timing/zeitkontrolle.h"

namespace {

namespace P = Suchparameter;
using P::Steinwert;
using zugwahl::FigurAuf;

constexpr int NullzugReduktion(int tiefe) {
    return P::NullzugR + P::NullzugStufe * (tiefe >= P::NullzugStufe1) + P::NullzugStufe * (tiefe >= P::NullzugStufe2);
}

inline bool IstMatt(int wert) { return wert >= MattGrenze || wert < -MattGrenze + 1; }

// A pawn arriving on the seventh rank (or the second, for Black) is one step from queening.
inline bool BauerVorUmwandlung(uint32_t zug) {
    const unsigned reihe = ReiheVon(Nach(zug));
    return Art(zug) == BauernZug && (reihe == 7 || reihe == 2);
}

}  // namespace

bool Suche_t::Gestoppt() {
    if (Abbruch()) return true;
    // The clock is read every 1024 nodes: well under a millisecond apart.
    if ((knoten & 1023) == 0 && UhrAbgelaufen()) {
        stop.store(true, std::memory_order_relaxed);
        return true;
    }
    return false;
}

bool Suche_t::UhrAbgelaufen() {
    return zeitPruefen && !ponder.load(std::memory_order_relaxed) && zeit != nullptr &&
           zeit->sofortStoppen(static_cast<int64_t>(knoten));
}

// Draw by the rules of the game: fifty reversible moves, or a position that stood on
// the board twice before (threefold). A single repetition inside the line is found by
// the caller.
bool Suche_t::Remis() const {
    const uint32_t c = stellung.historieAnzahl - 1;
    if (c - fuenfzigBasis >= 100) return true;
    const uint64_t schluessel = stellung.Historie[c];
    int gleich = 0;
    for (int64_t k = static_cast<int64_t>(c) - 4; k >= static_cast<int64_t>(letzteIrreversibel); k -= 2)
        gleich += stellung.Historie[k] == schluessel;
    return gleich >= 2;
}

int Suche_t::StatischeBewertung(Suchrahmen_t* r) {
    Endspielergebnis_t e;
    if (stellung.seite[Weiss].anzahl[0] + stellung.seite[Schwarz].anzahl[0] < 7) e = Endspielwissen(stellung);
    if (e.modus == EndspielErsetzen) return e.wert;
    NetzNachziehen(r);
#ifdef KELVARAN_NETZ_PRUEFEN
    // Checking builds compare the layers with a rebuild from the board, at every 8th
    // node: often enough to catch a wrong update, cheap enough for the slow builds.
    if ((knoten & 7) == 0) {
        Akkumulator_t frisch;
        NetzAufbauen(*haupt->netz, stellung, frisch);
        if (std::memcmp(&frisch, &r->akku, sizeof frisch) != 0) {
            std::fprintf(stderr, "network layers out of step at ply %d\n", r->ply);
            std::abort();
        }
    }
#endif
    int wert = Bewerte(stellung, r->daten, *bauerncache, *materialcache,
                       NetzWert(*haupt->netz, r->akku, stellung.amZug));
    if (e.modus == EndspielAddieren) wert += e.wert;
    return wert;
}

bool Suche_t::BitbaseAbfrage(bool nurImCache, int& ergebnis) {
    if (bitbaseCache->Groesse() == 0 || stellung.rochaden != 0) return false;
    const int maenner = stellung.seite[Weiss].anzahl[0] + stellung.seite[Schwarz].anzahl[0];
    if (maenner > 6 || maenner > haupt->gemeinsamerCache->MaxSteine()) return false;
    BitbaseSteine_t steine;
    BitbaseSteineVon(stellung, steine);
    return bitbaseCache->Abfrage(steine.weissTypen, steine.schwarzTypen, steine.weissFelder, steine.schwarzFelder,
                                 static_cast<int>(stellung.amZug), stellung.ep, nurImCache, ergebnis);
}

void Suche_t::NetzNachziehen(Suchrahmen_t* r) {
    if (r->akkuBereit) return;
    // The root and the node a searcher joined always hold theirs.
    Suchrahmen_t* p = r - 1;
    while (!p->akkuBereit) --p;
    for (++p; p <= r; ++p) {
        NetzAnwenden(*haupt->netz, (p - 1)->akku, p->aenderung, p->akku);
        p->akkuBereit = true;
    }
}

void Suche_t::MacheZug(Suchrahmen_t* kind, uint32_t zug, Sicherung_t& s) {
    s.irreversibel = letzteIrreversibel;
    s.fuenfzig = fuenfzigBasis;
    kind->geschlagen = GeschlagenerTyp(kind->rueck, zug);
    kind->aenderung = NetzAenderungVon(kind->rueck, zug, stellung.amZug ^ 1);
    kind->akkuBereit = false;
    Schiebe(kind->daten.schluessel);
    // Captures, pawn moves and lost castling rights can never be undone: no
    // repetition reaches behind them. Only captures and pawn moves restart the
    // fifty-move count.
    const bool zaehlerNull = kind->geschlagen || Art(zug) == BauernZug || (Art(zug) >= UmwandlungSpringer && Art(zug) != Rochade);
    if (zaehlerNull) fuenfzigBasis = stellung.historieAnzahl - 1;
    if (zaehlerNull || stellung.rochaden != kind->rueck.rochaden) letzteIrreversibel = stellung.historieAnzahl - 1;
}

void Suche_t::NimmZurueck(Suchrahmen_t* kind, const Sicherung_t& s) {
    kind->rueck.Zuruecknehmen();
    Hole();
    letzteIrreversibel = s.irreversibel;
    fuenfzigBasis = s.fuenfzig;
}

int Suche_t::Suche(int alpha, int beta, Suchrahmen_t* r, int tiefe, int nonPv) {
    Suchrahmen_t* const vor = r - 1;
    r->ply = vor->ply + 1;
    r->besterZug = 0;
    if (r->ply >= MaxPly) return 0;

    const uint32_t vorzug = vor->zug;
    const bool echterVorzug = Art(vorzug) != Nullzug;
    if (echterVorzug) {
        // One repetition inside the search line is a draw.
        if (!r->geschlagen && Art(vorzug) != BauernZug && r->ply >= 5) {
            const uint32_t c = stellung.historieAnzahl - 1;
            const uint64_t schluessel = stellung.Historie[c];
            const int64_t grenze = std::max(letzteIrreversibel, wurzelIndex);
            for (int64_t k = static_cast<int64_t>(c) - 4; k >= grenze; k -= 2)
                if (stellung.Historie[k] == schluessel) return 0;
        }
        if (Remis()) return 0;
    }

    if (tiefe < 0) return Ruhesuche(alpha, beta, r, -1, echterVorzug);

    // Table: cut-offs only at null-window nodes; an open window is always searched.
    r->drohung = false;
    r->wertVersatz = 0;
    r->bitbaseGefunden = false;
    const uint64_t schluessel = r->daten.schluessel;
    if (tt->probe(schluessel, r->ply, r->tt)) {
        const TtDaten_t& t = r->tt;
        if (t.tiefe >= tiefe && alpha + 1 == beta &&
            ((t.schranke != SchrankeOben && t.wert >= beta) || (t.schranke == SchrankeOben && t.wert <= alpha) ||
             t.schranke == SchrankeExakt)) {
            r->besterZug = static_cast<Zug_t>(t.zug);
            return t.wert;
        }
        r->drohung = t.drohung != 0;
    } else {
        r->tt = TtDaten_t{};
    }

    if (Gestoppt()) return 0;

    // Bitbases: probed where the material or the castling rights just changed, or
    // below a node that had a verdict (whose children must keep it).
    if (stellung.rochaden == 0) {
        const int schwelle = nonPv >= 2 ? 12 : 4 * nonPv + 4;
        int ergebnis;
        if (tiefe >= schwelle && (vor->bitbaseGefunden || r->geschlagen || Art(vorzug) == Rochade) &&
            BitbaseAbfrage(tiefe < schwelle + 6, ergebnis)) {
            r->bitbaseGefunden = true;
            r->bitbaseErgebnis = ergebnis;
            const int wirGewinnen = stellung.amZug == Weiss ? ergebnis : -ergebnis;
            if (vor->bitbaseGefunden && vor->bitbaseErgebnis != ergebnis) return wirGewinnen * MattGrenze;
            if (!(vor->bitbaseGefunden && vor->bitbaseErgebnis == ergebnis)) {
                if (wirGewinnen < 0 && alpha >= -MattGrenze + 1) return alpha;
                if (wirGewinnen > 0 && beta < MattGrenze) return beta;
                if (wirGewinnen == 0 && !(alpha < 1 && beta >= 0)) return 0;
                // A known result steers the search: won lines score above, lost below.
                r->wertVersatz = wirGewinnen * P::BitbaseVersatz;
            }
        }
    }

    const unsigned wir = stellung.amZug;
    const unsigned sie = wir ^ 1;
    const bool imSchach = ImSchach(stellung, r->daten);
    const bool nullErlaubt = tiefe >= 2 && !imSchach && !r->drohung;

    r->eval = P::ImSchachOhneBewertung && imSchach ? 0 : StatischeBewertung(r);
    const int eval = r->eval;
    r->zuegeGemacht = r->schlaegeGemacht = r->kinderGesucht = 0;
    r->drohFelder = r->drohAngreifer = 0;

    Suchrahmen_t* const kind = r + 1;
    Sicherung_t sicherung;

    if (nullErlaubt) {
        bool versuchen;
        if (echterVorzug) {
            // Passing is only sound when the side has men to move that are not
            // themselves hanging; a lone safe knight does not count.
            const Seite_t& s = stellung.seite[wir];
            const Bitboard bedroht = r->daten.angriffe[wir].alle & s.brett[0] & ~s.brett[Bauer] & ~s.brett[Koenig];
            const int n = s.anzahl[0] - s.anzahl[Bauer] - 1;
            const int c = static_cast<int>(Bitzahl(bedroht));
            const int springer = static_cast<int>(Bitzahl(s.brett[Springer] & ~bedroht));
            versuchen = eval > beta && n - c > 0 && (springer != 1 || n - c > 1);
        } else {
            // A second null move in a row is allowed, a third is not.
            versuchen = Art((r - 2)->zug) != Nullzug;
        }
        if (versuchen) {
            r->zug = 0;
            ZugMachen(stellung, 0, kind->daten, r->daten, kind->rueck);
            kind->daten.angriffe[0] = r->daten.angriffe[0];
            kind->daten.angriffe[1] = r->daten.angriffe[1];
            kind->geschlagen = 0;
            kind->aenderung = NetzAenderung_t{};
            kind->akkuBereit = false;
            sicherung.irreversibel = letzteIrreversibel;
            sicherung.fuenfzig = fuenfzigBasis;
            Schiebe(kind->daten.schluessel);
            letzteIrreversibel = stellung.historieAnzahl - 1;
            int wert = -Suche(-beta, -alpha, kind, tiefe - NullzugReduktion(tiefe), nonPv + 1);
            NimmZurueck(kind, sicherung);
            if (Abbruch()) return 0;
            // Below an open window the null move never cuts: the line must be searched.
            if (wert >= beta && nonPv > 0) return P::NullzugMattAlsBeta && wert >= MattGrenze ? beta : wert;
            if (wert < -MattGrenze && alpha >= -MattGrenze + 1) r->drohung = true;
            if (kind->besterZug) {
                r->drohFelder = Bit(Nach(kind->besterZug));
                r->drohAngreifer = Bit(Von(kind->besterZug));
            }
        }
    }

    r->aktuell = r->liste;
    r->ende = ErzeugeZuege(stellung, r->daten, r->liste);
    r->stufe = StufeHashzug;
    int best = r->ply - Matt;
    int a = alpha;
    int b = beta;
    int32_t schranke = SchrankeOben;
    bool beschnitten = false;

    if (tiefe >= P::VorpruefungTiefe)
        Vorpruefung(r, beta, tiefe);
    else if (!imSchach && r->tt.zug == 0)
        ErstenZugRaten(r);

    const Knotenlage_t lage{imSchach, eval, r->daten.angriffe[sie].alle, r->daten.angriffe[wir].alle};
    // Idle searchers may take over the moves once the first has been searched.
    bool teilen = pool != nullptr && tiefe >= 4;
    const uint64_t knotenVorErstem = knoten;
    uint32_t zug;
    while ((zug = NaechsterZug(r, stellung, historie)) != 0) {
        if (Abbruch()) break;
        r->zug = static_cast<Zug_t>(zug);
        if (!ZugMachenLegal(stellung, static_cast<Zug_t>(zug), r->daten, kind->daten, kind->rueck)) continue;
        const unsigned geschlagen = GeschlagenerTyp(kind->rueck, zug);
        ++r->zuegeGemacht;
        if (geschlagen) ++r->schlaegeGemacht;
        const Zugzaehler_t z{r->zuegeGemacht, r->schlaegeGemacht, r->kinderGesucht == 0,
                             zug == r->killer[0] || zug == r->killer[1]};
        const int wert = ZugSuchen(r, zug, lage, z, a, b, beta, tiefe, nonPv);
        if (Abbruch()) break;
        if (wert == Beschnitten) {
            beschnitten = true;
            continue;
        }
        ++r->kinderGesucht;

        if (wert > best) {
            best = wert;
            r->besterZug = static_cast<Zug_t>(zug);
            if (wert > a) {
                a = wert;
                if (wert >= beta) {
                    schranke = SchrankeUnten;
                    zugwahl::NachSchnitt(r, zug, geschlagen != 0, z.gemacht, tiefe, historie);
                    break;
                }
                schranke = SchrankeExakt;
            }
        }
        b = a + 1;
        if (teilen) {
            // A first move that cost almost nothing hints at a node that will cut soon.
            if (r->zuegeGemacht == 1 && knoten - knotenVorErstem < P::TeilungMindestKnoten)
                teilen = false;
            else if (Teilen(r, lage, a, beta, best, schranke, beschnitten, tiefe, nonPv))
                break;
        }
    }

    if (r->kinderGesucht == 0 && !imSchach && !Abbruch()) {
        // No legal move is stalemate; every legal move pruned leaves the static score.
        return beschnitten ? eval : 0;
    }
    if (beschnitten && eval > best) {
        best = eval;
        r->besterZug = 0;
    }
    if (Abbruch()) return best;

    TtDaten_t d;
    d.wert = best;
    d.tiefe = tiefe;
    d.nonPvPlies = nonPv;
    d.schranke = schranke;
    d.zug = r->besterZug;
    d.drohung = r->drohung ? DrohungsBit : 0;
    tt->store(schluessel, r->ply, d);
    return best;
}

int Suche_t::ZugSuchen(Suchrahmen_t* r, uint32_t zug, const Knotenlage_t& lage, const Zugzaehler_t& z, int a, int b,
                       int beta, int tiefe, int nonPv) {
    Suchrahmen_t* const kind = r + 1;
    Sicherung_t sicherung;
    MacheZug(kind, zug, sicherung);
    const unsigned geschlagen = kind->geschlagen;
    ++knoten;
    const bool gibtSchach = ImSchach(stellung, kind->daten);

    // Extensions, in half plies.
    int e = 0;
    if (lage.imSchach && (Art(zug) == Koenig || geschlagen || (Bit(Nach(zug)) & lage.unsereAngriffe))) e = 1;
    if (gibtSchach) e = 1;
    if (geschlagen >= Springer && geschlagen <= Dame && r->geschlagen) {
        if (e == 0 && geschlagen == Dame && r->geschlagen == Dame) e = 1;
        const Seite_t& w = stellung.seite[Weiss];
        const Seite_t& s = stellung.seite[Schwarz];
        if (w.anzahl[0] == w.anzahl[Bauer] + 1 && s.anzahl[0] == s.anzahl[Bauer] + 1) e += (tiefe + 4) / 4;
    }

    // Futility: a quiet move cannot lift a hopeless static score above alpha.
    const int eval = lage.eval;
    if (e == 0 && !(P::ImSchachOhneBewertung && lage.imSchach) && Art(zug) < UmwandlungSpringer &&
        !BauerVorUmwandlung(zug) && tiefe < P::FutilitaetTiefe && !geschlagen && a >= -MattGrenze + 1 &&
        b < MattGrenze && !(eval == 0 && z.erstesKind) &&
        ((tiefe < 2 && eval + P::FutilitaetMargeFlach < a) || eval + P::FutilitaetMarge < a)) {
        NimmZurueck(kind, sicherung);
        return Beschnitten;
    }

    // Late-move reductions.
    int red = 0;
    const bool verschont = P::ReduktionSchontSchachUndSonderzuege &&
                           (lage.imSchach || gibtSchach || Art(zug) >= UmwandlungSpringer);
    // Killers and moves that touch the null move's threat keep their depth.
    if (tiefe >= 2 && z.gemacht >= 2 && !verschont && !z.killer && !(Bit(Von(zug)) & r->drohFelder) &&
        !(Bit(Nach(zug)) & r->drohAngreifer)) {
        bool reduzieren = true;
        if (geschlagen) {
            // Only a capture that looks bad: a more valuable man takes a guarded one.
            reduzieren = !r->geschlagen && (Bit(Nach(zug)) & lage.ihreAngriffe) &&
                         Steinwert[Art(zug) <= Koenig ? Art(zug) : Bauer] > Steinwert[geschlagen];
        }
        if (reduzieren) {
            int n = z.gemacht + z.schlaege + (z.schlaege >= 3 ? 3 : 0) + (nonPv > 4) + 2 * (r->geschlagen != 0) +
                    (nonPv & 1);
            red = 2;
            if (n > P::ReduktionZaehlerMittel) red = std::max(((tiefe + 6) / 8) * 2, 2);
            if (n > P::ReduktionZaehlerStark) red = std::max(tiefe * 5 / 16, red);
        }
    }

    int wert = -Suche(-b, -a, kind, tiefe + e - red - 2, a + 1 < b ? 0 : nonPv + 1);
    if (wert > a && (red > 0 || (b < beta && wert < beta)) && !Abbruch())
        wert = -Suche(-beta, -a, kind, tiefe + e - 2, a + 1 < beta ? 0 : nonPv + 1);
    NimmZurueck(kind, sicherung);
    if (!IstMatt(wert)) wert += r->wertVersatz;
    return wert;
}

int Suche_t::Ruhesuche(int alpha, int beta, Suchrahmen_t* r, int qtiefe, bool remisGeprueft) {
    Suchrahmen_t* const vor = r - 1;
    r->ply = vor->ply + 1;
    r->besterZug = 0;
    if (r->ply >= MaxPly) return 0;
    if (r->ply > selTiefe) selTiefe = r->ply;
    if (Gestoppt()) return 0;

    const unsigned wir = stellung.amZug;
    const unsigned sie = wir ^ 1;
    const bool imSchach = ImSchach(stellung, r->daten);
    int standPat;
    if (!imSchach) {
        if (!remisGeprueft && Art(vor->zug) != Nullzug && Remis()) return 0;
        standPat = StatischeBewertung(r);
    } else {
        const uint32_t c = stellung.historieAnzahl - 1;
        if (r->ply >= 4 && c >= 4 && c - 4 >= letzteIrreversibel &&
            stellung.Historie[c - 4] == stellung.Historie[c])
            return 0;
        if (!remisGeprueft && Remis()) return 0;
        standPat = r->ply - Matt;
    }
    if (standPat > alpha) {
        if (standPat >= beta) return standPat;
        alpha = standPat;
    }
    int best = standPat;

    r->aktuell = r->liste;
    r->tt.zug = 0;
    if constexpr (P::RuhesucheLoeschtKiller) r->killer[0] = r->killer[1] = 0;
    if (imSchach) {
        r->ende = ErzeugeZuege(stellung, r->daten, r->liste);
    } else {
        // Only victims whose capture could lift the score to alpha, with a margin
        // that narrows as the capture sequence grows longer.
        const Seite_t& gegner = stellung.seite[sie];
        const Bitboard gedeckt = r->daten.angriffe[wir].alle;  // squares their men defend
        int marge = P::RuheMarge + P::RuheMargeJeStufe * qtiefe;
        if (gegner.anzahl[0] - gegner.anzahl[Bauer] - 1 == 1) marge += P::RuheMargeEinzelfigur;
        Bitboard opfer = 0;
        for (unsigned t = Bauer; t <= Dame; ++t) {
            const int ueberschuss = standPat + MaterialGewinn(t, gegner.anzahl[t]) + marge - alpha;
            if (ueberschuss <= 0) continue;
            opfer |= gegner.brett[t] & (ueberschuss > P::RuheGedecktUeber ? ~Bitboard{0} : ~gedeckt);
            if (t == Bauer) opfer |= gegner.brett[Bauer] & 0x00ff00000000ff00ULL;
            if (Art(vor->zug) != Nullzug && (gegner.brett[t] & Bit(Nach(vor->zug)))) opfer |= Bit(Nach(vor->zug));
        }
        const bool umwandlungen = qtiefe == -1 && standPat + P::RuheUmwandlungMarge > alpha;
        r->ende = ErzeugeSchlagzuege(stellung, r->daten, opfer, umwandlungen, r->liste);
    }
    r->stufe = StufeHashGegeben;

    Suchrahmen_t* const kind = r + 1;
    Sicherung_t sicherung;
    const Bitboard gedeckt = r->daten.angriffe[wir].alle;
    uint32_t zug;
    while ((zug = NaechsterZug(r, stellung, historie)) != 0) {
        if (Abbruch()) break;
        r->zug = static_cast<Zug_t>(zug);
        if (!ZugMachenLegal(stellung, static_cast<Zug_t>(zug), r->daten, kind->daten, kind->rueck)) continue;
        const unsigned opfer = kind->rueck.geschlagenTyp;
        if (!(P::SchachVerlustschlaegeSuchen && imSchach) && opfer && Art(zug) <= Koenig && (Bit(Nach(zug)) & gedeckt) &&
            Steinwert[Art(zug)] > Steinwert[opfer] && !ImSchach(stellung, kind->daten)) {
            // A losing capture: a dearer man takes a guarded one, and it gives no check.
            kind->rueck.Zuruecknehmen();
            continue;
        }
        MacheZug(kind, zug, sicherung);
        ++knoten;
        const int wert = -Ruhesuche(-beta, -alpha, kind, qtiefe - 1);
        NimmZurueck(kind, sicherung);
        if (Abbruch()) break;
        if (wert > best) {
            best = wert;
            r->besterZug = static_cast<Zug_t>(zug);
            if (wert > alpha) {
                alpha = wert;
                if (wert >= beta) break;
            }
        }
    }
    return best;
}

// At great depth: a move whose child the table already knows to fail high for
// us is searched first.
void Suche_t::Vorpruefung(Suchrahmen_t* r, int beta, int tiefe) {
    Suchrahmen_t* const kind = r + 1;
    int kandidatWert = -Matt - 1;
    uint32_t kandidat = 0;
    for (uint32_t* p = r->aktuell; p < r->ende; ++p) {
        if (!ZugLegal(stellung, static_cast<Zug_t>(*p), r->daten, kind->daten, kind->rueck)) continue;
        TtDaten_t t;
        const bool gefunden = tt->probe(kind->daten.schluessel, r->ply + 1, t);
        kind->rueck.Zuruecknehmen();
        if (!gefunden || t.schranke == SchrankeUnten) continue;
        if (-t.wert > beta - 1 && (t.tiefe + 2 >= tiefe || IstMatt(t.wert)) && -t.wert > kandidatWert) {
            kandidatWert = -t.wert;
            kandidat = *p;
        }
    }
    if (kandidat != 0) r->tt.zug = static_cast<int32_t>(kandidat);
}

// Below that depth, without a hash move: the capture or queening that wins the
// most by a plain count (the victim, less the capturer when the victim is guarded)
// goes first, so the cheapest man takes the dearest prize before the sort is paid.
void Suche_t::ErstenZugRaten(Suchrahmen_t* r) {
    const unsigned wir = stellung.amZug;
    const Seite_t& gegner = stellung.seite[wir ^ 1];
    const Bitboard gedeckt = r->daten.angriffe[wir].alle;  // squares the opponent guards
    int bester = 0;
    uint32_t wahl = 0;
    for (const uint32_t* p = r->aktuell; p < r->ende; ++p) {
        const uint32_t zug = *p;
        const unsigned art = Art(zug);
        if (IstUmwandlung(zug) && art != UmwandlungDame) continue;
        int gewinn = art == EnPassant ? Steinwert[Bauer] : Steinwert[FigurAuf(gegner, Nach(zug))];
        if (art == UmwandlungDame) gewinn += Steinwert[Dame] - Steinwert[Bauer];
        if (gewinn == 0) continue;
        if (Bit(Nach(zug)) & gedeckt) gewinn -= Steinwert[art <= Koenig ? art : Bauer];
        if (gewinn > bester) {
            bester = gewinn;
            wahl = zug;
        }
    }
    r->tt.zug = static_cast<int32_t>(wahl);
}
