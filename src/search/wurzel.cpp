// The root of a "go": the table, the root moves, iterative deepening with an
// aspiration window, the reports while thinking, and the best move.
#include <algorithm>
#include <chrono>
#include <thread>

#include "board/zuggenerator.h"
#include "book/buchzug.h"
#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "search/suche.h"
#include "search/suchparameter.h"
#include "timing/zeitkontrolle.h"

namespace {

namespace P = Suchparameter;

constexpr uint64_t Megabyte = 1024 * 1024;

// Exact scores first, the higher first; then the deeper search, more nodes, the smaller move.
bool WurzelVor(const Wurzelzug_t& x, const Wurzelzug_t& y) {
    const bool ex = x.schranke == SchrankeExakt, ey = y.schranke == SchrankeExakt;
    if (ex != ey) return ex;
    if (ex && x.wert != y.wert) return x.wert > y.wert;
    if (x.tiefe != y.tiefe) return x.tiefe > y.tiefe;
    if (x.knoten != y.knoten) return x.knoten > y.knoten;
    return x.zug < y.zug;
}

}  // namespace

Suche_t::Suche_t()
    : rahmen(std::make_unique<Suchrahmen_t[]>(AnzahlRahmen)),
      bauerncache(std::make_unique<Bauerncache_t>()),
      materialcache(std::make_unique<Materialcache_t>()),
      gemeinsamerCache(std::make_unique<BitbaseCache_t>(0)),
      bitbaseCache(std::make_unique<BitbaseCache_t>(0, gemeinsamerCache.get())) {
    tabelle.resize(hashMb * Megabyte);
    Starten();
}

Suche_t::~Suche_t() {
    if (haupt != this) {
        // A further searcher sleeps on its offer semaphore, not on the start one.
        terminieren.store(true, std::memory_order_relaxed);
        pool->Abmelden(this);
        angebotSemaphor.release();
    }
    Herunterfahren();
    weitere.clear();
}

void Suche_t::Uebernehmen() {
    Optionen_t* o = auftrag->optionen;
    unendlich = auftrag->unendlich;
    if (o == nullptr) return;
    hashLoeschen = o->ClearHashNehmen();
    const int hash = o->Index("Hash");
    if (hash >= 0) hashMb = o->Zahl(hash);
    multiPv = std::max(1, o->Zahl(o->Index("MultiPV")));
    multiPvMarge = o->Zahl(o->Index("MultiPV_Score")) * 10;
    logName = o->Text(o->Index("TimeLogfile"));
    const int threads = o->Index("NumberOfProcessors");
    if (threads >= 0) SetzeThreads(o->Zahl(threads));
    const int mb = o->Index("BitbaseCache");
    const int pfad = o->Index("BitbasePath");
    if (mb >= 0) bitbaseMb = static_cast<uint64_t>(std::max(0, o->Zahl(mb)));
    bool neuerPfad = false;
    if (pfad >= 0) {
        neuerPfad = o->Text(pfad) != bitbasePfad;
        bitbasePfad = o->Text(pfad);
    }
    RichteBitbasesEin(neuerPfad);
    const int netzOption = o->Index("EvalFile");
    if (netzOption >= 0 && o->Text(netzOption) != netzDatei) LadeNetz(o->Text(netzOption));

    // The book is read here, on the caller's thread, like the options.
    buchzug = 0;
    if (!unendlich) {
        Stellungsdaten_t daten;
        BerechneStellungsdaten(auftrag->stellung, daten);
        if (!BuchZug(auftrag->stellung, daten, *o, buchzug, buchInfo, auftrag->wurzelzuege,
                     auftrag->anzahlWurzelzuege))
            buchzug = 0;
    }
}

// Sizes every thread's bitbase cache and the shared one from the option and the
// thread count. The threads are idle here: the caches are theirs to touch.
void Suche_t::RichteBitbasesEin(bool neuerPfad) {
    const BitbaseCacheGroessen_t g = BitbaseCacheGroessen(bitbaseMb, Threads());
    if (neuerPfad) {
        // Blocks of the old files go, and missing files are looked for afresh.
        gemeinsamerCache->SetzeGroesse(0);
        bitbaseCache->SetzeGroesse(0);
        for (auto& w : weitere) w->bitbaseCache->SetzeGroesse(0);
    }
    gemeinsamerCache->SetzePfad(bitbasePfad);
    gemeinsamerCache->SetzeGroesse(g.gemeinsam);
    bitbaseCache->SetzeGroesse(g.jeThread);
    bitbaseCache->SetzeTreffer(0);
    for (auto& w : weitere) {
        w->bitbaseCache->SetzeGroesse(g.jeThread);
        w->bitbaseCache->SetzeTreffer(0);
    }
    tbTrefferWeitere.store(0, std::memory_order_relaxed);
}

void Suche_t::LadeNetz(const std::string& datei) {
    netzDatei = datei;
    geladenesNetz.reset();
    netz = &EingebautesNetz();
    if (datei.empty() || datei == "internal") return;
    std::string fehler;
    geladenesNetz = LadeNetzDatei(datei, fehler);
    const std::string meldung = geladenesNetz ? "info string EvalFile " + datei + " loaded"
                                              : "info string EvalFile " + datei + " refused (" + fehler +
                                                    "): the built-in network stays in use";
    if (geladenesNetz) netz = geladenesNetz.get();
    if (auftrag->ausgabe != nullptr) auftrag->ausgabe->zeile(meldung);
}

void Suche_t::ponderhit() {
    // The search itself notices a limit already used up: with the ponder flag gone its
    // next clock check, at most 1024 nodes away, stops it. So the input thread touches
    // nothing but the flag.
    ponder.store(false, std::memory_order_relaxed);
}

void Suche_t::Bereite(const Stellung_t& st) {
    stellung = st;
    Suchrahmen_t* wurzelRahmen = &rahmen[RahmenVorlauf];
    for (int i = 0; i < RahmenVorlauf; ++i) rahmen[i].zug = MachZug(0, 0, BauernZug);  // "a real move"
    wurzelRahmen->ply = 0;
    rahmen[RahmenVorlauf - 1].ply = -1;
    BerechneStellungsdaten(stellung, wurzelRahmen->daten);
    // The game stops recording keys after a hundred reversible plies; the root's own key
    // must still stand last.
    if (stellung.historieAnzahl == 0) StarteHistorie(stellung, wurzelRahmen->daten);
    if (stellung.Historie[stellung.historieAnzahl - 1] != wurzelRahmen->daten.schluessel)
        stellung.Historie[stellung.historieAnzahl++] = wurzelRahmen->daten.schluessel;
    wurzelIndex = stellung.historieAnzahl - 1;
    letzteIrreversibel = fuenfzigBasis = 0;
    wurzelRahmen->geschlagen = 0;
    NetzAufbauen(*netz, stellung, wurzelRahmen->akku);
    wurzelRahmen->akkuBereit = true;
    for (int i = 0; i < AnzahlRahmen; ++i) rahmen[i].killer[0] = rahmen[i].killer[1] = 0;
    selTiefe = 0;
}

void Suche_t::SortiereWurzel(int anzahl) { std::stable_sort(wurzel, wurzel + anzahl, WurzelVor); }

// The line from the root move on, read back from the table. It is played as a game,
// so it ends where the game would: at a repetition or the fifty-move rule.
int Suche_t::Hauptvariante(uint32_t erster, Zug_t* zuege, int max) {
    Stellung_t& st = *pvStellung;
    st = stellung;
    st.historieAnzahl = wurzelIndex + 1;
    Stellungsdaten_t daten;
    BerechneStellungsdaten(st, daten);
    Rueckzug_t r;
    int n = 0;
    uint32_t zug = erster;
    uint64_t gesehen[64];
    while (n < max && n < 64 && zug != 0) {
        // A key collision or a torn entry may name any move word: only a legal one is made.
        if (!IstLegal(st, static_cast<Zug_t>(zug), daten) || !SpielzugMachen(st, static_cast<Zug_t>(zug), r, daten))
            break;
        zuege[n++] = static_cast<Zug_t>(zug);
        bool wiederholt = WiederholungsRemis(st) || FuenfzigZuegeRemis(st);
        for (int i = 0; i + 1 < n; ++i) wiederholt |= gesehen[i] == daten.schluessel;
        gesehen[n - 1] = daten.schluessel;
        if (wiederholt) break;
        TtDaten_t t;
        if (!tabelle.probe(daten.schluessel, n, t)) break;
        zug = static_cast<uint32_t>(t.zug);
    }
    return n;
}

void Suche_t::MeldeVariante(uint32_t zug, int wert, int alpha, int beta, int tiefenindex, bool unterdruecken) {
    if (ausgabe == nullptr) return;
    Zug_t pv[64];
    const int n = Hauptvariante(zug, pv, 64);
    ausgabe->variante(stellung, pv, n, wert, alpha, beta, tiefenindex, std::max(selTiefe, tiefenindex + 1),
                      zeit != nullptr ? zeit->verstrichen() : 0, knoten, tabelle.hashfull(), static_cast<int64_t>(TbTreffer()), unterdruecken);
}

int Suche_t::Wurzelsuche(int tiefe, int vorher) {
    Suchrahmen_t* const r = &rahmen[RahmenVorlauf];
    Suchrahmen_t* const kind = r + 1;
    r->ply = 0;
    selTiefe = 0;
    const bool jedeZeile = ausgabe != nullptr && ausgabe->zweitesFlag != 0;

    // A deep enough exact entry answers the whole iteration.
    TtDaten_t t;
    if (multiPv == 1 && tabelle.probe(r->daten.schluessel, 0, t) && t.tiefe >= tiefe && t.schranke == SchrankeExakt) {
        for (int i = 0; i < anzahlWurzel; ++i) {
            if (wurzel[i].zug != static_cast<uint32_t>(t.zug)) continue;
            wurzel[i].tiefe = tiefe;
            wurzel[i].schranke = SchrankeExakt;
            wurzel[i].wert = t.wert;
            std::rotate(wurzel, wurzel + i, wurzel + i + 1);
            if (t.tiefe < tiefe + 2 || anzahlWurzel == 1)
                MeldeVariante(wurzel[0].zug, t.wert, -Matt, Matt, tiefe / 2, false);
            return t.wert;
        }
    }

    r->eval = P::ImSchachOhneBewertung && ImSchach(stellung, r->daten) ? 0 : StatischeBewertung(r);
    // The root's bitbase verdict: the children compare theirs with it.
    int ergebnis = 0;
    r->bitbaseGefunden = BitbaseAbfrage(false, ergebnis);
    r->bitbaseErgebnis = ergebnis;
    r->wertVersatz = 0;

    int alpha = -Matt, beta = Matt;
    if (tiefe >= 3 && multiPv == 1) {
        alpha = vorher - P::Aspiration;
        beta = vorher + P::Aspiration;
    }
    int delta = P::Aspiration;
    int best = -Matt;
    int besterIndex = -1;
    Sicherung_t sicherung;

    for (int j = 0; j < anzahlWurzel && !stop.load(std::memory_order_relaxed); ++j) {
        const uint32_t zug = wurzel[j].zug;
        const int64_t ms = zeit != nullptr ? zeit->verstrichen() : 0;
        if ((ms > 4000 || jedeZeile) && ausgabe != nullptr)
            ausgabe->aktuellerZug(stellung, static_cast<Zug_t>(zug), j + 1, tabelle.hashfull());

        const uint64_t knotenVorher = knoten;
        r->zug = static_cast<Zug_t>(zug);
        if (!ZugMachenLegal(stellung, static_cast<Zug_t>(zug), r->daten, kind->daten, kind->rueck)) continue;
        MacheZug(kind, zug, sicherung);
        ++knoten;
        const int e = ImSchach(stellung, kind->daten) ? 1 : 0;
        int red = 0;
        if (j >= multiPv && !kind->geschlagen && Art(zug) < UmwandlungSpringer && e == 0 &&
            !(Art(zug) == BauernZug && (ReiheVon(Nach(zug)) == 7 || ReiheVon(Nach(zug)) == 2)))
            red = 2;

        int wert;
        for (;;) {
            wert = -Suche(-beta, -alpha, kind, tiefe + e - red - 2, alpha + 1 == beta ? 1 : 0);
            if (stop.load(std::memory_order_relaxed)) break;
            if (multiPv == 1) {
                if (wert <= alpha && besterIndex < 0) {
                    alpha = std::max(wert - delta, best);
                } else if (wert >= beta) {
                    beta = std::min(wert + delta, Matt);
                } else {
                    break;
                }
                red = 0;
                delta += delta * P::AspirationWachstum / 1024;
            } else {
                if (wert < beta || beta >= Matt) break;
                beta = Matt;
                red = 0;
            }
        }
        NimmZurueck(kind, sicherung);
        if (stop.load(std::memory_order_relaxed)) break;

        Wurzelzug_t& w = wurzel[j];
        w.wert = wert;
        w.tiefe = tiefe;
        w.schranke = SchrankeOben;
        w.knoten = knoten - knotenVorher;

        if (wert > best) {
            if (P::WurzelUeberholtNichtExakt && multiPv == 1 && besterIndex >= 0)
                wurzel[besterIndex].schranke = SchrankeOben;
            best = wert;
            besterIndex = j;
            w.schranke = SchrankeExakt;
            const int64_t jetzt = zeit != nullptr ? zeit->verstrichen() : 0;
            bool leise = (tiefe < 3 && jetzt < 1000) ||
                         (tiefe >= 3 && j == 0 && std::abs(wert - vorher) <= 100 && zug == vorherigerZug && jetzt < 1001);
            if (jedeZeile || wert >= MattGrenze || wert < -MattGrenze + 1) leise = false;
            // Also with several lines: time, nodes and the XBoard thinking come from here.
            MeldeVariante(zug, wert, alpha, beta, tiefe / 2, leise);
        }

        if (wert > alpha) {
            if (multiPv == 1) {
                alpha = wert;
                beta = alpha + 1;
            } else {
                w.schranke = SchrankeExakt;
                SortiereWurzel(j + 1);
                int position = 0;
                while (wurzel[position].zug != zug) ++position;
                if (position < multiPv) {
                    if (j + 1 >= multiPv) alpha = wurzel[multiPv - 1].wert;
                    if (multiPvMarge > 0) alpha = std::max(alpha, wurzel[0].wert - multiPvMarge);
                    // Every further move is first tried against the last line kept.
                    beta = alpha + 1;
                }
                besterIndex = 0;
            }
        }

        if (zeitPruefen && !ponder.load(std::memory_order_relaxed) && zeit != nullptr &&
            zeit->sofortStoppen(static_cast<int64_t>(knoten))) {
            // (Several lines re-sort the moves searched so far: find this one again.)
            for (int k = 0; k <= j; ++k)
                if (wurzel[k].zug == zug) wurzel[k].schranke = SchrankeUnten;
            stop.store(true, std::memory_order_relaxed);
            break;
        }
    }
    return best;
}

void Suche_t::suchen() {
    const Suchauftrag_t& a = *auftrag;
    ausgabe = a.ausgabe;
    zeit = a.zeit;
    Bereite(a.stellung);
    int maenner = stellung.seite[Weiss].anzahl[0] + stellung.seite[Schwarz].anzahl[0];
    eroeffnung = maenner > 30;

    // "Clear Hash" starts afresh: the table and the move-ordering history.
    if (hashLoeschen) {
        tabelle.clear();
        historie.Leeren();
    }
    hashLoeschen = false;
    tabelle.resize(static_cast<uint64_t>(hashMb) * Megabyte);

    // A book move is played at once; while pondering it waits like a search would.
    if (buchzug != 0) {
        eroeffnung = true;
        besterZug = buchzug;
        if (ausgabe != nullptr) ausgabe->zeile(buchInfo);
        WarteWaehrendPonder();
        if (ausgabe != nullptr) ausgabe->bestzug(stellung, buchzug, 0);
        return;
    }

    anzahlWurzel = a.anzahlWurzelzuege;
    // A position whose side not to move stands in check cannot arise in a game: its
    // king could be taken. Nothing is searched there, the answer is "no move".
    const unsigned gegner = stellung.amZug ^ 1;
    if (rahmen[RahmenVorlauf].daten.angriffe[gegner].alle & stellung.seite[gegner].brett[Koenig]) anzahlWurzel = 0;
    for (int i = 0; i < anzahlWurzel; ++i) wurzel[i] = Wurzelzug_t{a.wurzelzuege[i], 0, 0, SchrankeOben, 0};
    knoten = 0;
    teilungen.store(0, std::memory_order_relaxed);
    tabelle.nextGeneration();
    historie.NeueSuche();
    // The further searchers start from the same move ordering (they are idle now).
    for (auto& w : weitere) w->historie = historie;
    // The hard limit holds from the first node on; the variant lets the first iteration
    // (one ply and the captures) run to its end, so a clock already run out still gets
    // a searched move.
    zeitPruefen = !P::ErsteIterationOhneGrenze && !unendlich;
    zeitlog.oeffnen(logName);

    Zeitwert_t zeitwert;
    vorherigerWert = 0;
    vorherigerZug = 0;
    besterZug = 0;
    besterWert = -Matt;
    double unruhe = 0.0, antwortUnruhe = 0.0;
    int vorvorherigerWert = 0;
    uint64_t knotenVorIteration = 0;
    Zug_t vorherigeAntwort = 0;

    for (int i = 0; anzahlWurzel > 0; ++i) {
        if (i >= 1) {
            const bool pondern = ponder.load(std::memory_order_relaxed);
            if (anzahlWurzel < 2 && !unendlich && !pondern) break;
            const bool weiter = zeit == nullptr || zeit->weiterIterieren(static_cast<int64_t>(knoten), i, zeitwert.x());
            if (!weiter && !pondern) break;
            const int s = wurzel[0].wert;
            if (s + i - 2 > Matt || s - i + 2 < -Matt) break;
            if (2 * i + 1 >= 2 * MaxPly) break;
        }
        Wurzelsuche(2 * i + 1, vorherigerWert);
        zeitPruefen = !unendlich;
        SortiereWurzel(anzahlWurzel);
        if (stop.load(std::memory_order_relaxed)) break;

        const int64_t ms = zeit != nullptr ? zeit->verstrichen() : 0;
        if (i >= 1 && (ms > 2000 || unendlich || (ausgabe != nullptr && ausgabe->zweitesFlag)) && ausgabe != nullptr)
            ausgabe->statistik(i, selTiefe, ms, knoten, tabelle.hashfull(), static_cast<int64_t>(TbTreffer()));
        if (multiPv > 1 && ausgabe != nullptr) {
            for (int k = 0; k < std::min(multiPv, anzahlWurzel); ++k) {
                if (wurzel[k].schranke != SchrankeExakt) break;
                if (multiPvMarge > 0 && wurzel[k].wert < wurzel[0].wert - multiPvMarge) break;
                Zug_t pv[64];
                const int n = Hauptvariante(wurzel[k].zug, pv, 64);
                ausgabe->multiPv(stellung, pv, n, k + 1, wurzel[k].wert, i);
            }
        }

        // What the time network weighs before the next iteration.
        Zug_t pv[3];
        const int n = Hauptvariante(wurzel[0].zug, pv, 2);
        const bool gewechselt = i >= 2 && wurzel[0].zug != vorherigerZug;
        unruhe = unruhe / 2 + (gewechselt ? 1.0 : 0.0);
        // The first line with a reply has nothing to change from.
        const bool antwortGewechselt = vorherigeAntwort != 0 && n >= 2 && pv[1] != vorherigeAntwort;
        antwortUnruhe = antwortUnruhe / 2 + (antwortGewechselt ? 1.0 : 0.0);
        Iterationsdaten_t d;
        d.start = zeit != nullptr ? zeit->start : 0;
        d.tiefenindex = i;
        d.verstrichen = ms;
        d.ziel = zeit != nullptr ? zeit->ziel : 0;
        d.knoten = static_cast<int64_t>(knoten);
        d.knotenIteration = static_cast<int64_t>(knoten - knotenVorIteration);
        d.knotenBesterZug = static_cast<int64_t>(wurzel[0].knoten);
        d.wertung = wurzel[0].wert;
        d.vorherigeWertung = vorherigerWert;
        d.vorvorherigeWertung = vorvorherigerWert;
        d.besterZug = wurzel[0].zug;
        d.besterZugGewechselt = gewechselt;
        d.unruhe = unruhe;
        d.antwortGewechselt = antwortGewechselt;
        d.antwortUnruhe = antwortUnruhe;
        d.wurzelzuege = anzahlWurzel;
        d.taktisch = IstTaktisch(wurzel[0].zug);
        d.bedrohteSteine = static_cast<int32_t>(
            Bitzahl(rahmen[RahmenVorlauf].daten.angriffe[stellung.amZug ^ 1].bedroht));
        d.eroeffnung = eroeffnung;
        zeitwert.nachIteration(zeitnetz.bewerten(ZeitEingaben(d)), gewechselt);
        zeitlog.schreiben(d);

        knotenVorIteration = knoten;
        vorherigeAntwort = n >= 2 ? pv[1] : 0;
        vorvorherigerWert = vorherigerWert;
        vorherigerWert = wurzel[0].wert;
        vorherigerZug = static_cast<Zug_t>(wurzel[0].zug);
    }

    // No answer before the GUI ends pondering or an infinite search.
    WarteWaehrendPonder();
    while (unendlich && !stop.load(std::memory_order_relaxed))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));

    Zug_t pv[3] = {0, 0, 0};
    if (anzahlWurzel > 0) {
        Hauptvariante(wurzel[0].zug, pv, 2);
        if (pv[0] == 0) pv[0] = static_cast<Zug_t>(wurzel[0].zug);
        besterZug = pv[0];
        besterWert = wurzel[0].wert;
    }
    if (ausgabe != nullptr) ausgabe->bestzug(stellung, pv[0], pv[1]);
}

bool Suche_t::IstTaktisch(uint32_t zug) {
    Suchrahmen_t* const r = &rahmen[RahmenVorlauf];
    if (Art(zug) >= UmwandlungSpringer) return true;
    if (stellung.seite[stellung.amZug ^ 1].brett[0] & Bit(Nach(zug))) return true;
    Suchrahmen_t* const kind = r + 1;
    if (!ZugMachenLegal(stellung, static_cast<Zug_t>(zug), r->daten, kind->daten, kind->rueck)) return false;
    const bool schach = ImSchach(stellung, kind->daten);
    kind->rueck.Zuruecknehmen();
    return schach;
}
