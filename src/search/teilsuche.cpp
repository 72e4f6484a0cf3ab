// The parallel search: further searchers, the split-point pool, and the shared
// move loop of a split point.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>

#include "board/zuggenerator.h"
#include "search/suche.h"
#include "timing/zeitkontrolle.h"

void KopiereStellung(Stellung_t& ziel, const Stellung_t& quelle) {
    std::memcpy(static_cast<void*>(&ziel), &quelle, offsetof(Stellung_t, Historie));
    std::memcpy(ziel.Historie, quelle.Historie, quelle.historieAnzahl * sizeof quelle.Historie[0]);
}

// ---------------------------------------------------------------------------
// The pool

Teilungspunkt_t* Teilungspool_t::Nehmen(int tiefe) {
    std::lock_guard<std::mutex> l(sperre);
    // Weigh the active split points against this depth: many nearer the root mean
    // this one is cheap to add; many deeper mean the threads are busy down there.
    int flacher = 0, tiefer = 0, frei = 0;
    Teilungspunkt_t* ersterFreier = nullptr;
    Teilungspunkt_t* wahl = nullptr;
    for (Teilungspunkt_t& p : punkte) {
        if (p.fertig.load(std::memory_order_relaxed)) {
            ++frei;
            if (ersterFreier == nullptr) ersterFreier = &p;
            if (anzahlWartende > 0 || flacher >= 5 || (frei >= 15 && flacher >= 1)) {
                wahl = &p;
                break;
            }
            continue;
        }
        if (p.arbeiter.load(std::memory_order_relaxed) >= MaxArbeiter) continue;
        const int t = p.tiefe.load(std::memory_order_relaxed);
        if (t > tiefe) flacher += 1 + (t - tiefe > 4);
        if (t < tiefe) tiefer += 1 + (tiefe - t > 4);
    }
    if (wahl == nullptr) {
        if (frei == 0) return nullptr;
        if (flacher <= 4 && tiefer >= 2 && (tiefer >= 4 || frei < 5) && (flacher <= tiefer || frei < 10))
            return nullptr;
        wahl = ersterFreier;
    }
    std::lock_guard<std::mutex> s(wahl->sperre);
    wahl->fertig.store(false, std::memory_order_relaxed);
    wahl->abbruch.store(false, std::memory_order_relaxed);
    wahl->erschoepft.store(false, std::memory_order_relaxed);
    wahl->arbeiter.store(0, std::memory_order_relaxed);  // nobody joins before the owner has filled it
    wahl->arbeiterMaske.store(0, std::memory_order_relaxed);
    wahl->tiefe.store(tiefe, std::memory_order_relaxed);
    return wahl;
}

void Teilungspool_t::WeckeAlle(Teilungspunkt_t* sp) {
    std::lock_guard<std::mutex> l(sperre);
    for (int i = 0; i < anzahlWartende; ++i) {
        wartende[i]->angebot.store(sp, std::memory_order_relaxed);
        wartende[i]->angebotSemaphor.release();
    }
    anzahlWartende = 0;
}

bool Teilungspool_t::Anmelden(Suche_t* sucher) {
    std::lock_guard<std::mutex> l(sperre);
    if (sucher->terminieren.load(std::memory_order_relaxed)) return false;
    if (anzahlWartende < MaxSucher) wartende[anzahlWartende++] = sucher;
    return true;
}

void Teilungspool_t::Abmelden(Suche_t* sucher) {
    std::lock_guard<std::mutex> l(sperre);
    sucher->terminieren.store(true, std::memory_order_relaxed);
    for (int i = 0; i < anzahlWartende; ++i) {
        if (wartende[i] != sucher) continue;
        wartende[i] = wartende[--anzahlWartende];
        break;
    }
}

// ---------------------------------------------------------------------------
// Further searchers

Suche_t::Suche_t(Suche_t* h, int nummer)
    : haupt(h),
      id(nummer),
      tt(&h->tabelle),
      stopZeiger(&h->stop),
      pool(h->pool),
      rahmen(std::make_unique<Suchrahmen_t[]>(AnzahlRahmen)),
      bauerncache(std::make_unique<Bauerncache_t>()),
      materialcache(std::make_unique<Materialcache_t>()) {
    bitbaseCache = std::make_unique<BitbaseCache_t>(0, h->gemeinsamerCache.get());
    Starten();
}

void Suche_t::Threadkoerper() {
    if (haupt == this)
        Sucher_t::Threadkoerper();
    else
        DienerKoerper();
}

// An idle searcher joins the split point with the most depth left that still
// has moves and room; false when there is none.
bool Suche_t::SucheArbeit() {
    Teilungspunkt_t* wahl = nullptr;
    int tiefe = -1;
    for (Teilungspunkt_t& q : pool->punkte) {
        if (q.fertig.load(std::memory_order_relaxed) || q.abbruch.load(std::memory_order_relaxed) ||
            q.erschoepft.load(std::memory_order_relaxed))
            continue;
        const int n = q.arbeiter.load(std::memory_order_relaxed);
        const int t = q.tiefe.load(std::memory_order_relaxed);
        if (n > 0 && n < MaxArbeiter && t > tiefe) {
            wahl = &q;
            tiefe = t;
        }
    }
    return wahl != nullptr && Mitarbeiten(wahl);
}

void Suche_t::DienerKoerper() {
    while (!terminieren.load(std::memory_order_relaxed)) {
        if (SucheArbeit()) continue;
        // The terminate flag may have been set since the loop looked at it.
        if (!pool->Anmelden(this)) break;
        // A split point's moves are often gone within a fraction of a millisecond:
        // look for the wake-up a little while before going to sleep on it.
        bool geweckt = false;
        for (int i = 0; i < 20000 && !geweckt; ++i) {
            geweckt = angebotSemaphor.try_acquire();
            if (!geweckt) Verschnaufen();
        }
        if (!geweckt) angebotSemaphor.acquire();
        if (terminieren.load(std::memory_order_relaxed)) break;
        Teilungspunkt_t* sp = angebot.exchange(nullptr, std::memory_order_relaxed);
        if (sp != nullptr && !Mitarbeiten(sp)) SucheArbeit();
    }
}

void Suche_t::SetzeThreads(int anzahl) {
    if (haupt != this) return;
    anzahl = std::clamp(anzahl, 1, MaxSucher);
    while (static_cast<int>(weitere.size()) > anzahl - 1) weitere.pop_back();
    if (anzahl > 1 && eigenerPool == nullptr) eigenerPool = std::make_unique<Teilungspool_t>();
    pool = anzahl > 1 ? eigenerPool.get() : nullptr;
    while (static_cast<int>(weitere.size()) < anzahl - 1)
        weitere.push_back(std::unique_ptr<Suche_t>(new Suche_t(this, static_cast<int>(weitere.size()) + 1)));
}

// ---------------------------------------------------------------------------
// Splitting a node

bool Suche_t::Teilen(Suchrahmen_t* r, const Knotenlage_t& lage, int& a, int beta, int& best, int32_t& schranke,
                     bool& beschnitten, int tiefe, int nonPv) {
    if (Abbruch()) return false;
    Teilungspunkt_t* const sp = pool->Nehmen(tiefe);
    if (sp == nullptr) return false;
    haupt->teilungen.fetch_add(1, std::memory_order_relaxed);
    // The node's hidden layers are complete before anyone may copy its frame: the
    // owner never writes them while the split point lives.
    NetzNachziehen(r);
    Teilungspunkt_t* const eltern = aktuellerTp;
    {
        std::lock_guard<std::mutex> l(sp->sperre);
        sp->rahmen = r;
        sp->eltern = eltern;
        sp->lage = lage;
        sp->alpha = a;
        sp->beta = beta;
        sp->best = best;
        sp->schranke = schranke;
        sp->nonPv = nonPv;
        sp->besterZug = r->besterZug;
        sp->beschnitten = beschnitten;
        sp->zuegeGemacht = r->zuegeGemacht;
        sp->schlaegeGemacht = r->schlaegeGemacht;
        sp->kinderGesucht = r->kinderGesucht;
        sp->knoten = 0;
        sp->selTiefe = 0;
        KopiereStellung(sp->stellung, stellung);
        sp->wurzelIndex = wurzelIndex;
        sp->letzteIrreversibel = letzteIrreversibel;
        sp->fuenfzigBasis = fuenfzigBasis;
        sp->ply.store(r->ply, std::memory_order_relaxed);
        sp->besitzerId.store(id, std::memory_order_relaxed);
        sp->arbeiterMaske.store(1u << id, std::memory_order_relaxed);
        sp->arbeiter.store(1, std::memory_order_relaxed);
    }
    aktuellerTp = sp;
    pool->WeckeAlle(sp);

    Teilsuche(sp, r);
    WarteAufArbeiter(sp);

    {
        std::lock_guard<std::mutex> l(sp->sperre);
        a = sp->alpha;
        best = sp->best;
        schranke = sp->schranke;
        beschnitten = sp->beschnitten;
        r->besterZug = static_cast<Zug_t>(sp->besterZug);
        r->zuegeGemacht = sp->zuegeGemacht;
        r->schlaegeGemacht = sp->schlaegeGemacht;
        r->kinderGesucht = sp->kinderGesucht;
        knoten += sp->knoten;
        selTiefe = std::max(selTiefe, sp->selTiefe);
        sp->fertig.store(true, std::memory_order_relaxed);
    }
    aktuellerTp = eltern;
    return true;
}

void Suche_t::Teilsuche(Teilungspunkt_t* sp, Suchrahmen_t* r) {
    Suchrahmen_t* const kind = r + 1;
    for (;;) {
        uint32_t zug = 0;
        unsigned geschlagen = 0;
        Zugzaehler_t z{};
        int a = 0;
        {
            std::lock_guard<std::mutex> l(sp->sperre);
            if (Abbruch()) return;
            // The owner's move picker gives the moves to everyone; the sort uses
            // the taker's history, on the taker's copy of the same position.
            while ((zug = NaechsterZug(sp->rahmen, stellung, historie)) != 0)
                if (ZugMachenLegal(stellung, static_cast<Zug_t>(zug), r->daten, kind->daten, kind->rueck)) break;
            if (zug == 0) {
                sp->erschoepft.store(true, std::memory_order_relaxed);
                return;
            }
            r->zug = static_cast<Zug_t>(zug);
            geschlagen = GeschlagenerTyp(kind->rueck, zug);
            ++sp->zuegeGemacht;
            if (geschlagen) ++sp->schlaegeGemacht;
            const Suchrahmen_t* const o = sp->rahmen;
            z = Zugzaehler_t{sp->zuegeGemacht, sp->schlaegeGemacht, sp->kinderGesucht == 0,
                             zug == o->killer[0] || zug == o->killer[1]};
            a = sp->alpha;
        }
        const int wert = ZugSuchen(r, zug, sp->lage, z, a, a + 1, sp->beta, sp->tiefe.load(std::memory_order_relaxed),
                                   sp->nonPv);
        // An interrupted search proves nothing; its score is dropped.
        if (Abbruch()) return;

        std::lock_guard<std::mutex> l(sp->sperre);
        if (wert == Beschnitten) {
            sp->beschnitten = true;
            continue;
        }
        ++sp->kinderGesucht;
        if (wert <= sp->best) continue;
        sp->best = wert;
        sp->besterZug = zug;
        if (wert <= sp->alpha) continue;
        sp->alpha = wert;
        if (wert >= sp->beta) {
            sp->schranke = SchrankeUnten;
            zugwahl::NachSchnitt(sp->rahmen, zug, geschlagen != 0, z.gemacht, sp->tiefe.load(std::memory_order_relaxed),
                                 historie);
            sp->abbruch.store(true, std::memory_order_relaxed);  // the others stop at once
            return;
        }
        sp->schranke = SchrankeExakt;
    }
}

bool Suche_t::Mitarbeiten(Teilungspunkt_t* sp, int mindestPly, uint32_t besitzer) {
    Suchrahmen_t* r;
    {
        std::lock_guard<std::mutex> l(sp->sperre);
        const int n = sp->arbeiter.load(std::memory_order_relaxed);
        // Not yet filled (0), its owner gone (also 0), finished, cut, or full; or, for
        // a helping owner, taken meanwhile by a searcher it may not help.
        if (n == 0 || n >= MaxArbeiter || sp->fertig.load(std::memory_order_relaxed) ||
            sp->abbruch.load(std::memory_order_relaxed) || sp->rahmen->ply < mindestPly ||
            !(besitzer & (1u << sp->besitzerId.load(std::memory_order_relaxed))))
            return false;
        sp->arbeiter.store(n + 1, std::memory_order_relaxed);
        sp->arbeiterMaske.fetch_or(1u << id, std::memory_order_relaxed);
        KopiereStellung(stellung, sp->stellung);
        wurzelIndex = sp->wurzelIndex;
        letzteIrreversibel = sp->letzteIrreversibel;
        fuenfzigBasis = sp->fuenfzigBasis;
        // The node's frame, guarded by this lock. The frames above it belong to
        // other split points' owners; nothing below a split point reads them.
        r = &rahmen[RahmenVorlauf + sp->rahmen->ply];
        *r = *sp->rahmen;
    }
    Teilungspunkt_t* const vorher = aktuellerTp;
    const uint64_t knotenVorher = knoten;
    const uint32_t trefferVorher = bitbaseCache->Treffer();
    const int selVorher = selTiefe;
    aktuellerTp = sp;
    selTiefe = 0;
    Teilsuche(sp, r);
    aktuellerTp = vorher;
    {
        std::lock_guard<std::mutex> l(sp->sperre);
        sp->knoten += knoten - knotenVorher;
        sp->selTiefe = std::max(sp->selTiefe, selTiefe);
        if (haupt != this)
            haupt->tbTrefferWeitere.fetch_add(bitbaseCache->Treffer() - trefferVorher, std::memory_order_relaxed);
        // The owner leaves first and waits; the last worker out wakes it.
        const int rest = sp->arbeiter.load(std::memory_order_relaxed) - 1;
        sp->arbeiter.store(rest, std::memory_order_relaxed);
        if (rest == 0) sp->alleFertig.release();
    }
    knoten = knotenVorher;
    selTiefe = selVorher;
    return true;
}

void Suche_t::WarteAufArbeiter(Teilungspunkt_t* sp) {
    {
        std::lock_guard<std::mutex> l(sp->sperre);
        const int rest = sp->arbeiter.load(std::memory_order_relaxed) - 1;
        sp->arbeiter.store(rest, std::memory_order_relaxed);
        if (rest == 0) return;
    }
    const int ply = sp->ply.load(std::memory_order_relaxed);
    // Spin a while first: workers usually finish within microseconds of the owner.
    for (int runde = 0;; ++runde) {
        if (runde < 4000 ? sp->alleFertig.try_acquire() : sp->alleFertig.try_acquire_for(std::chrono::milliseconds(1)))
            break;
        if (runde < 4000) Verschnaufen();
        if (haupt == this && UhrAbgelaufen()) stop.store(true, std::memory_order_relaxed);
        if (Abbruch()) {
            std::lock_guard<std::mutex> l(sp->sperre);
            sp->abbruch.store(true, std::memory_order_relaxed);
            continue;
        }
        // Help a worker at a split point of its own. Its frames must lie below ours,
        // which the node's frame and its children use.
        const uint32_t maske = sp->arbeiterMaske.load(std::memory_order_relaxed);
        for (Teilungspunkt_t& q : pool->punkte) {
            if (&q == sp || q.fertig.load(std::memory_order_relaxed) || q.abbruch.load(std::memory_order_relaxed))
                continue;
            const int besitzerId = q.besitzerId.load(std::memory_order_relaxed);
            if (besitzerId == id || !(maske & (1u << besitzerId)) || q.ply.load(std::memory_order_relaxed) < ply + 1)
                continue;
            if (!Mitarbeiten(&q, ply + 1, maske & ~(1u << id))) continue;
            KopiereStellung(stellung, sp->stellung);
            wurzelIndex = sp->wurzelIndex;
            letzteIrreversibel = sp->letzteIrreversibel;
            fuenfzigBasis = sp->fuenfzigBasis;
            break;
        }
    }
}
