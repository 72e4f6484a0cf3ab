// Helpers of the generator and its check: the signatures one conversion away
// with the mapping of the men, their values from loaded bits, and a simple
// parallel loop over index ranges.
#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "bitbase/erzeugerstellung.h"
#include "bitbase/retrograd.h"

constexpr int MaxNachbarn = 512;  // moves or un-moves of one position, with room to spare

// A signature reached by one capture and/or promotion, with the mapping of the men.
struct Kind_t {
    bool remis = true;  // bare kings
    Erzeugersignatur_t sig, sigGedreht;
    int quelle[BitbaseSteineMax] = {}, quelleGedreht[BitbaseSteineMax] = {};
    const uint8_t* bits = nullptr;
    const uint8_t* bitsGedreht = nullptr;
};

inline bool LeseBit(const uint8_t* bits, uint64_t i) { return (bits[i >> 3] >> (i & 7)) & 1; }

// Men of a child: the parent's men without the captured one, a promoted pawn
// changed, each side ordered king first and then by falling value.
struct Kindreihe_t {
    int anzahl = 0;
    int quelle[BitbaseSteineMax] = {};
    int typ[BitbaseSteineMax] = {};
    int farbe[BitbaseSteineMax] = {};
};

inline Kindreihe_t Kindreihe(const Erzeugersignatur_t& sig, int geschlagen, int umgewandelt, int neuerTyp, bool gedreht) {
    Kindreihe_t r;
    for (int runde = 0; runde < 2; ++runde) {
        const int seite = gedreht ? 1 - runde : runde;
        int start = r.anzahl;
        for (int i = 0; i < sig.n; ++i) {
            if (sig.farbe[i] != seite || i == geschlagen) continue;
            r.quelle[r.anzahl] = i;
            r.typ[r.anzahl] = i == umgewandelt ? neuerTyp : sig.typ[i];
            r.farbe[r.anzahl++] = seite;
        }
        // By falling type, stable: the king stays first, identical men keep their order.
        // An insertion sort: a handful of men, and no library sort the compiler can't bound.
        for (int j = start + 1; j < r.anzahl; ++j)
            for (int k = j; k > start && r.typ[k - 1] < r.typ[k]; --k) {
                std::swap(r.quelle[k - 1], r.quelle[k]);
                std::swap(r.typ[k - 1], r.typ[k]);
            }
    }
    return r;
}

inline std::string Name(const Kindreihe_t& r) {
    std::string name;
    for (int j = 0; j < r.anzahl; ++j) name += Steinbuchstaben[r.typ[j]];
    return name;
}

template <class F>
void FuerJedesKind(const Erzeugersignatur_t& sig, F&& f) {
    for (int g = -1; g < sig.n; ++g) {
        if (g >= 0 && sig.typ[g] == Koenig) continue;
        for (int s = -1; s < sig.n; ++s) {
            if (s >= 0 && (sig.typ[s] != Bauer || s == g || (g >= 0 && sig.farbe[g] == sig.farbe[s]))) continue;
            if (g < 0 && s < 0) continue;
            const int hoechster = s >= 0 ? static_cast<int>(Dame) : 0;
            const int niedrigster = s >= 0 ? static_cast<int>(Springer) : 0;
            for (int u = hoechster; u >= niedrigster; --u) f(g, s, u);
        }
    }
}

// Runs arbeit(begin, end) over [0, anzahl) in pieces on `threads` threads.
template <class F>
void Parallel(uint64_t anzahl, int threads, F&& arbeit) {
    constexpr uint64_t Stueck = uint64_t{1} << 14;  // a multiple of 64: words are never shared
    std::atomic<uint64_t> naechster{0};
    auto lauf = [&] {
        for (;;) {
            const uint64_t a = naechster.fetch_add(Stueck, std::memory_order_relaxed);
            if (a >= anzahl) return;
            arbeit(a, std::min(anzahl, a + Stueck));
        }
    };
    std::vector<std::thread> helfer;
    for (int i = 1; i < threads; ++i) {
        try {
            helfer.emplace_back(lauf);
        } catch (const std::system_error&) {
            break;  // fewer threads, same result
        }
    }
    lauf();
    for (std::thread& t : helfer) t.join();
}

// Does White win in position c (men in the slots of the signature the mapping
// starts from), does Black? Looks both files of the signature up.
inline void Kindwert(const Kind_t& k, const ErzeugerStellung_t& c, bool& weiss, bool& schwarz) {
    if (k.remis) {
        weiss = schwarz = false;
        return;
    }
    ErzeugerStellung_t q;
    q.ep = c.ep;
    q.amZug = c.amZug;
    for (int j = 0; j < k.sig.n; ++j) q.feld[j] = c.feld[k.quelle[j]];
    weiss = LeseBit(k.bits, k.sig.Index(q));
    q.amZug = 1 - c.amZug;
    q.ep = c.ep >= 0 ? c.ep ^ 56 : -1;
    for (int j = 0; j < k.sig.n; ++j) q.feld[j] = c.feld[k.quelleGedreht[j]] ^ 56;
    schwarz = LeseBit(k.bitsGedreht, k.sigGedreht.Index(q));
}

// The loaded files of the signatures one conversion away, and the mapping of
// the men for every capture and promotion (kinder[captured + 1][promoted + 1][new type]).
class Kinderbasen_t {
public:
    explicit Kinderbasen_t(const KindLader_t& l) : lader(l) {}

    bool LadeKinder(const Erzeugersignatur_t& sig, std::string& fehler) {
        bool ok = true;
        FuerJedesKind(sig, [&](int g, int s, int u) {
            kinder[((g + 1) * 8 + (s + 1)) * 8 + u] = Baue(sig, g, s, u, ok, fehler);
        });
        return ok;
    }
    // The signature itself in the same form, for looking up its own files.
    std::unique_ptr<Kind_t> Selbst(const Erzeugersignatur_t& sig, bool& ok, std::string& fehler) {
        return Baue(sig, -1, -1, 0, ok, fehler, true);
    }
    const Kind_t& Kind(int geschlagen, int umgewandelt, int typ) const {
        return *kinder[((geschlagen + 1) * 8 + (umgewandelt + 1)) * 8 + typ];
    }

private:
    // Bare kings are a draw without a file, except when they are asked for themselves.
    std::unique_ptr<Kind_t> Baue(const Erzeugersignatur_t& sig, int g, int s, int u, bool& ok, std::string& fehler,
                                 bool selbst = false) {
        auto kind = std::make_unique<Kind_t>();
        const Kindreihe_t r = Kindreihe(sig, g, s, u, false);
        const Kindreihe_t rg = Kindreihe(sig, g, s, u, true);
        const std::string name = Name(r), nameGedreht = Name(rg);
        // Whole rows: the entries past the men are never read.
        std::copy(std::begin(r.quelle), std::end(r.quelle), kind->quelle);
        std::copy(std::begin(rg.quelle), std::end(rg.quelle), kind->quelleGedreht);
        kind->remis = r.anzahl == 2 && !selbst;
        if (!kind->remis) {
            kind->sig.Setze(name.c_str());
            kind->sigGedreht.Setze(nameGedreht.c_str());
            kind->bits = Lade(name, kind->sig.bitbase.positionen, fehler);
            kind->bitsGedreht = Lade(nameGedreht, kind->sigGedreht.bitbase.positionen, fehler);
            if (kind->bits == nullptr || kind->bitsGedreht == nullptr) ok = false;
        }
        return kind;
    }

    const uint8_t* Lade(const std::string& name, uint64_t positionen, std::string& fehler) {
        auto it = geladen.find(name);
        if (it != geladen.end()) return it->second.data();
        std::vector<uint8_t> bits;
        if (!lader(name, positionen, bits) || bits.size() < (positionen + 7) / 8) {
            fehler = "Bitbase " + name + " fehlt oder ist fehlerhaft";
            return nullptr;
        }
        return geladen.emplace(name, std::move(bits)).first->second.data();
    }

    const KindLader_t& lader;
    std::unique_ptr<Kind_t> kinder[8 * 8 * 8];
    std::map<std::string, std::vector<uint8_t>> geladen;
};
