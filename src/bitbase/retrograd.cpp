#include "bitbase/retrograd.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <new>
#include <system_error>
#include <thread>

#include "bitbase/erzeugerhilfen.h"

namespace {

// One state byte per index. Below 240: the number of moves not yet known to
// lose (children not yet won for the opponent, plus one for any conversion
// that does not lose). "Neu" states wait for their backward pass; the tag
// (0/1) tells this pass's from the next one's.
constexpr uint8_t ZaehlerGrenze = 240;
constexpr uint8_t Egal = 240;
constexpr uint8_t GewonnenNeu[2] = {241, 242};
constexpr uint8_t VerlorenNeu[2] = {243, 244};
constexpr uint8_t Gewonnen = 245;
constexpr uint8_t Verloren = 246;

class Loeser_t {
public:
    Loeser_t(int anzahl, const KindLader_t& lader) : threads(anzahl < 1 ? 1 : anzahl), basen(lader) {}

    bool Loese(const std::string& name, Loesung_t& l, std::string& fehler) {
        if (!sig.Setze(name.c_str())) {
            fehler = "keine Signatur: " + name;
            return false;
        }
        if (!basen.LadeKinder(sig, fehler)) return false;
        const uint64_t n = sig.bitbase.positionen;
        zustand.reset(new (std::nothrow) uint8_t[n]);
        if (!zustand) {
            fehler = "zu wenig Speicher";
            return false;
        }
        Anfang();
        int tag = 0;
        for (;;) {
            ++l.durchlaeufe;
            if (Durchlauf(tag) == 0) break;
            tag ^= 1;
        }
        return Ergebnis(name, l, fehler);
    }

private:
    std::atomic_ref<uint8_t> Zustand(uint64_t i) { return std::atomic_ref<uint8_t>(zustand[i]); }

    // Every legal canonical index: conversions and mates decide at once, the
    // rest counts its distinct children.
    void Anfang() {
        Parallel(sig.bitbase.positionen, threads, [this](uint64_t a, uint64_t e) {
            for (uint64_t i = a; i < e; ++i) {
                ErzeugerStellung_t p;
                if (!sig.AusIndex(i, p) || !sig.Zulaessig(p) || sig.Index(p) != i) {
                    Zustand(i).store(Egal, std::memory_order_relaxed);
                    continue;
                }
                Zustand(i).store(Startwert(p), std::memory_order_relaxed);
            }
        });
    }

    uint8_t Startwert(const ErzeugerStellung_t& p) const {
        uint64_t kinderIndex[MaxNachbarn];
        int nk = 0;
        bool gewinnt = false, rettung = false;
        const int zuege = sig.Zuege(p, [&](const ErzeugerStellung_t& c, int s, int g, int u) {
            if (g >= 0 || u != 0) {
                bool weiss, schwarz;
                Kindwert(basen.Kind(g, u != 0 ? s : -1, u), c, weiss, schwarz);
                const bool gegnerGewinnt = c.amZug == Weiss ? weiss : schwarz;
                const bool gegnerVerliert = c.amZug == Weiss ? schwarz : weiss;
                if (gegnerVerliert) {
                    gewinnt = true;
                    return false;
                }
                rettung |= !gegnerGewinnt;
                return true;
            }
            const uint64_t k = sig.Index(c);
            for (int j = 0; j < nk; ++j)
                if (kinderIndex[j] == k) return true;
            if (nk < MaxNachbarn) kinderIndex[nk++] = k;
            return true;
        });
        if (gewinnt) return GewonnenNeu[0];
        if (zuege == 0) return sig.ImSchach(p) ? VerlorenNeu[0] : 1;  // stalemate: never counted down
        const int offen = nk + (rettung ? 1 : 0);
        return offen == 0 ? VerlorenNeu[0] : static_cast<uint8_t>(std::min(offen, ZaehlerGrenze - 1));
    }

    // Settles the positions tagged `tag` and tells their predecessors; returns
    // how many positions the next pass has to settle.
    uint64_t Durchlauf(int tag) {
        std::atomic<uint64_t> neue{0};
        Parallel(sig.bitbase.positionen, threads, [&](uint64_t a, uint64_t e) {
            uint64_t hier = 0;
            for (uint64_t i = a; i < e; ++i) {
                const uint8_t z = Zustand(i).load(std::memory_order_relaxed);
                if (z == GewonnenNeu[tag]) {
                    Zustand(i).store(Gewonnen, std::memory_order_relaxed);
                    hier += Rueckwaerts(i, true, tag ^ 1);
                } else if (z == VerlorenNeu[tag]) {
                    Zustand(i).store(Verloren, std::memory_order_relaxed);
                    hier += Rueckwaerts(i, false, tag ^ 1);
                }
            }
            neue.fetch_add(hier, std::memory_order_relaxed);
        });
        return neue.load();
    }

    // A won position takes one hope from each predecessor; a lost one wins them all.
    uint64_t Rueckwaerts(uint64_t i, bool gewonnen, int naechsterTag) {
        ErzeugerStellung_t p;
        if (!sig.AusIndex(i, p)) return 0;
        uint64_t vorher[MaxNachbarn];
        int nv = 0;
        sig.Rueckzuege(p, [&](const ErzeugerStellung_t& v) {
            const uint64_t k = sig.Index(v);
            for (int j = 0; j < nv; ++j)
                if (vorher[j] == k) return;
            if (nv < MaxNachbarn) vorher[nv++] = k;
        });
        uint64_t neue = 0;
        for (int j = 0; j < nv; ++j) {
            std::atomic_ref<uint8_t> z = Zustand(vorher[j]);
            uint8_t alt = z.load(std::memory_order_relaxed);
            while (alt < ZaehlerGrenze) {
                const uint8_t neu = !gewonnen ? GewonnenNeu[naechsterTag]
                                    : alt == 1 ? VerlorenNeu[naechsterTag]
                                               : static_cast<uint8_t>(alt - 1);
                if (z.compare_exchange_weak(alt, neu, std::memory_order_relaxed)) {
                    neue += neu >= ZaehlerGrenze;
                    break;
                }
            }
        }
        return neue;
    }

    bool Ergebnis(const std::string& name, Loesung_t& l, std::string& fehler) {
        const uint64_t n = sig.bitbase.positionen;
        if (!l.bits.Setze(n, false) || !l.egal.Setze(n, false)) {
            fehler = "zu wenig Speicher";
            return false;
        }
        std::atomic<uint64_t> legal{0}, weiss{0}, schwarz{0};
        Parallel(n, threads, [&](uint64_t a, uint64_t e) {
            uint64_t zl = 0, zw = 0, zs = 0;
            for (uint64_t i = a; i < e; ++i) {
                const uint8_t z = zustand[i];
                if (z == Egal) {
                    l.egal.worte[i >> 6] |= uint64_t{1} << (i & 63);
                    continue;
                }
                ++zl;
                const bool weissAmZug = sig.SeiteVon(i) == Weiss;
                const bool w = weissAmZug ? z == Gewonnen : z == Verloren;
                const bool s = weissAmZug ? z == Verloren : z == Gewonnen;
                zw += w;
                zs += s;
                if (w) l.bits.worte[i >> 6] |= uint64_t{1} << (i & 63);
            }
            legal += zl;
            weiss += zw;
            schwarz += zs;
        });
        l.legal = legal;
        l.weissGewinnt = weiss;
        l.schwarzGewinnt = schwarz;
        if (sig.mehrdeutig) {
            // The other orders of identical men carry the same bit.
            Parallel(n, threads, [&](uint64_t a, uint64_t e) {
                for (uint64_t i = a; i < e; ++i) {
                    if (zustand[i] == Egal) continue;
                    ErzeugerStellung_t p;
                    sig.AusIndex(i, p);
                    const bool w = l.bits.Bit(i);
                    sig.FuerJedeReihenfolge(p, [&](const ErzeugerStellung_t& q) {
                        const uint64_t j = sig.IndexInReihenfolge(q);
                        if (j != i) SetzeBit(l.bits, l.egal, j, w);
                    });
                }
            });
        }

        char gedreht[BitbaseSteineMax + 1];
        GespiegelteSignatur(name.c_str(), gedreht);
        l.zwilling = gedreht == name ? "" : gedreht;
        if (l.zwilling.empty()) return true;

        // The twin: every position turned upside down with the colours swapped.
        Erzeugersignatur_t zwilling;
        zwilling.Setze(gedreht);
        const Kindreihe_t r = Kindreihe(sig, -1, -1, 0, true);
        const uint64_t m = zwilling.bitbase.positionen;
        if (!l.bitsZwilling.Setze(m, false) || !l.egalZwilling.Setze(m, true)) {
            fehler = "zu wenig Speicher";
            return false;
        }
        Parallel(n, threads, [&](uint64_t a, uint64_t e) {
            for (uint64_t i = a; i < e; ++i) {
                const uint8_t z = zustand[i];
                if (z == Egal) continue;
                ErzeugerStellung_t p, q;
                sig.AusIndex(i, p);
                for (int j = 0; j < sig.n; ++j) q.feld[j] = p.feld[r.quelle[j]] ^ 56;
                q.amZug = 1 - p.amZug;
                q.ep = p.ep >= 0 ? p.ep ^ 56 : -1;
                const bool schwarzGewinnt = p.amZug == Schwarz ? z == Gewonnen : z == Verloren;
                zwilling.FuerJedeReihenfolge(q, [&](const ErzeugerStellung_t& o) {
                    SetzeBit(l.bitsZwilling, l.egalZwilling, zwilling.IndexInReihenfolge(o), schwarzGewinnt);
                });
            }
        });
        return true;
    }

    // Another thread may own the word: atomic updates.
    static void SetzeBit(Bitfeld_t& bits, Bitfeld_t& egal, uint64_t k, bool wert) {
        const uint64_t maske = uint64_t{1} << (k & 63);
        if (wert) std::atomic_ref<uint64_t>(bits.worte[k >> 6]).fetch_or(maske, std::memory_order_relaxed);
        std::atomic_ref<uint64_t>(egal.worte[k >> 6]).fetch_and(~maske, std::memory_order_relaxed);
    }

    int threads;
    Kinderbasen_t basen;
    Erzeugersignatur_t sig;
    std::unique_ptr<uint8_t[]> zustand;
};

}  // namespace

bool Bitfeld_t::Setze(uint64_t n, bool wert) {
    anzahl = n;
    try {
        worte.assign((n + 63) / 64, wert ? ~uint64_t{0} : 0);
    } catch (const std::bad_alloc&) {
        worte.clear();
        return false;
    }
    return true;
}

bool LoeseSignatur(const std::string& name, int threads, const KindLader_t& lader, Loesung_t& loesung,
                   std::string& fehler) {
    auto loeser = std::make_unique<Loeser_t>(threads, lader);
    return loeser->Loese(name, loesung, fehler);
}

std::vector<std::string> Kindsignaturen(const std::string& name) {
    std::vector<std::string> namen;
    Erzeugersignatur_t sig;
    if (!sig.Setze(name.c_str())) return namen;
    FuerJedesKind(sig, [&](int g, int s, int u) {
        const Kindreihe_t r = Kindreihe(sig, g, s, u, false);
        if (r.anzahl == 2) return;
        const std::string k = Name(r);
        if (std::find(namen.begin(), namen.end(), k) == namen.end()) namen.push_back(k);
    });
    return namen;
}

std::string KanonischeSignatur(const std::string& name) {
    Erzeugersignatur_t sig;
    if (!sig.Setze(name.c_str())) return "";
    return Name(Kindreihe(sig, -1, -1, 0, false));
}
