// The move picker: the order in which a node tries its moves.
//
//   stage 0  the hash move (the table's move, or the pre-pass's candidate);
//   stage 3  a recapture on the square of the last move, the cheapest taker first;
//   stage 2  everything left is scored once (Sortierschluessel) and sorted;
//   stage 1  the sorted moves, highest key first.
//
// The picker works on the moves of a frame's list; the position and the history
// are the caller's, so that a searcher joining a split point sorts the owner's list
// on its own copy of the position.
#pragma once

#include <cstdint>
#include <utility>

#include "board/stellung.h"
#include "board/tabellen.h"
#include "board/zug.h"
#include "search/suchparameter.h"
#include "search/suchrahmen.h"

// Which moves of a kind to a square have cut, by (kind AND 7, to-square). The sort
// reads the values through a shift that grows with the largest of them, so its key
// keeps its range however long the table lives.
class Historie_t {
public:
    void Leeren() {
        for (auto& zeile : wert)
            for (int32_t& h : zeile) h = 0;
        shift = 0;
    }
    // A move cut at this depth (half plies).
    void Loben(uint32_t zug, int tiefe) {
        int32_t& h = wert[Art(zug) & 7][Nach(zug)];
        if constexpr (Suchparameter::HistorieFeinUndGealtert) {
            h += (tiefe / 2 + 2) * 32;
            if (h > 60000) Halbieren();
            return;
        }
        h += tiefe / 2 + 2;
        if ((h >> shift) > 0xffff) {
            // Beyond 2^30 the table is halved instead, to stay clear of overflow.
            if (shift < 14)
                ++shift;
            else
                Halbieren();
        }
    }
    // At the start of a search.
    void NeueSuche() {
        if constexpr (Suchparameter::HistorieFeinUndGealtert)
            for (auto& zeile : wert)
                for (int32_t& h : zeile) h /= 4;
    }
    // The value the sort reads: 0 to 65535.
    int32_t Wert(unsigned art, Feld nach) const {
        const int32_t h = wert[art & 7][nach] >> shift;
        return h > 0xffff ? 0xffff : h;
    }

private:
    void Halbieren() {
        for (auto& zeile : wert)
            for (int32_t& h : zeile) h /= 2;
    }
    int32_t wert[8][64]{};
    int32_t shift = 0;
};

namespace zugwahl {

// Ranks of a recapture by kind: the cheapest taker first, queening above all.
constexpr int Rueckschlagrang[13] = {0, 10, 8, 6, 4, 3, 5, 2, 1, 1, 12, 0, 10};

// Fixed bonus of a promotion by kind.
constexpr uint64_t Umwandlungsbonus[13] = {0, 0, 0, 0, 0, 0, 0, uint64_t{1} << 18, 0, 0, uint64_t{1} << 27, 0, 0};

// Only kings and pawns on the board.
inline bool Bauernendspiel(const Stellung_t& st) {
    return st.seite[Weiss].anzahl[0] == st.seite[Weiss].anzahl[Bauer] + 1 &&
           st.seite[Schwarz].anzahl[0] == st.seite[Schwarz].anzahl[Bauer] + 1;
}

// The piece of side `s` on square f, 0 when there is none.
inline unsigned FigurAuf(const Seite_t& s, Feld f) {
    const Bitboard b = Bit(f);
    if (!(s.brett[0] & b)) return 0;
    for (unsigned t = Bauer; t < Koenig; ++t)
        if (s.brett[t] & b) return t;
    return Koenig;
}

// The recapture on the last move's square: the first candidate in list order with
// its rank (a pawn's +1 when it takes from file a-c towards the h-file, else -1),
// replaced only by a later one of a strictly higher rank. nullptr when there is none.
inline uint32_t* Rueckschlag(uint32_t* anfang, uint32_t* ende, Feld ziel, unsigned amZug) {
    uint32_t* wahl = nullptr;
    int besterRang = 0;
    for (uint32_t* p = anfang; p < ende; ++p) {
        if (Nach(*p) != ziel && Art(*p) != EnPassant) continue;
        const int rang = Rueckschlagrang[Art(*p)];
        if (wahl == nullptr) {
            besterRang = rang;
            if (Art(*p) == BauernZug) {
                const bool nachH = Nach(*p) == Von(*p) + (amZug == Weiss ? -7 : 9);
                besterRang += (LinieVon(Von(*p)) <= 2 && nachH) ? 1 : -1;
            }
            wahl = p;
        } else if (rang > besterRang) {
            besterRang = rang;
            wahl = p;
        }
    }
    return wahl;
}

// Scores the moves from r->aktuell to r->ende and sorts them, highest first.
void Sortieren(Suchrahmen_t* r, const Stellung_t& st, const Historie_t& historie);

constexpr Bitboard Ecken = Bit(0) | Bit(7) | Bit(56) | Bit(63);

// After move `zug` cut at a node of this depth with `gemacht` moves counted: the
// killers of the node and the history.
inline void NachSchnitt(Suchrahmen_t* r, uint32_t zug, bool geschlagen, int gemacht, int tiefe, Historie_t& historie) {
    // Killers: not answers on the last move's square (they come as recaptures
    // anyway), not en passant, and not into a corner.
    const uint32_t vorzug = (r - 1)->zug;
    const bool killerArt = Suchparameter::NurRuhigeZuegeMerken ? !geschlagen && Art(zug) < UmwandlungSpringer
                                                              : Art(zug) != EnPassant;
    if (killerArt && Nach(zug) != Nach(vorzug) && zug != r->killer[0] && !(Bit(Nach(zug)) & Ecken)) {
        r->killer[1] = r->killer[0];
        r->killer[0] = static_cast<Zug_t>(zug);
    }
    // A move that cut as the first one was already tried first: nothing to learn.
    if (gemacht > 1 && !(Suchparameter::NurRuhigeZuegeMerken && geschlagen)) historie.Loben(zug, tiefe);
}

}  // namespace zugwahl

// The next move of the frame's list, 0 when none is left.
inline uint32_t NaechsterZug(Suchrahmen_t* r, const Stellung_t& st, const Historie_t& historie) {
    switch (r->stufe) {
        case StufeHashzug: {
            r->stufe = StufeHashGegeben;
            const uint32_t hz = static_cast<uint32_t>(r->tt.zug) & 0xffff;
            if (hz != 0) {
                for (uint32_t* p = r->aktuell; p < r->ende; ++p) {
                    if (*p == hz) {
                        std::swap(*p, *r->aktuell);
                        return *r->aktuell++;
                    }
                }
            }
        }
            [[fallthrough]];
        case StufeHashGegeben: {
            r->stufe = StufeSortieren;
            const uint32_t vorzug = (r - 1)->zug;
            // Only where the side to move attacks the square the opponent just moved to.
            if (Art(vorzug) != Nullzug && (r->daten.angriffe[st.amZug ^ 1].alle & Bit(Nach(vorzug)))) {
                if (uint32_t* wahl = zugwahl::Rueckschlag(r->aktuell, r->ende, Nach(vorzug), st.amZug)) {
                    std::swap(*wahl, *r->aktuell);
                    return *r->aktuell++;
                }
            }
        }
            [[fallthrough]];
        case StufeSortieren:
            zugwahl::Sortieren(r, st, historie);
            r->stufe = StufeSortiert;
            [[fallthrough]];
        case StufeSortiert:
            if (r->sortiertIndex < r->sortiertAnzahl)
                return 0xffff - static_cast<uint32_t>(r->sortierschluessel[r->sortiertIndex++] & 0xffff);
            return 0;
    }
    return 0;
}
