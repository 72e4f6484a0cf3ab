// Small helpers shared by the board tests: square names, set-up, move lists.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "board/zug.h"
#include "board/zuggenerator.h"
#include "board/zugmachen.h"

namespace brett_test {

// "e4" -> square number.
constexpr Feld F(const char* name) {
    return FeldAus(static_cast<unsigned>(name[0] - 'a'), static_cast<unsigned>(name[1] - '0'));
}

inline std::string FeldName(Feld f) {
    return {static_cast<char>('a' + LinieVon(f)), static_cast<char>('0' + ReiheVon(f))};
}

inline Zug_t Z(const char* von, const char* nach, unsigned art) { return MachZug(F(von), F(nach), art); }

// Stellung_t carries the whole key history; keep it off the stack.
struct Brett {
    std::unique_ptr<Stellung_t> st = std::make_unique<Stellung_t>();
    std::unique_ptr<Stellungsdaten_t> d = std::make_unique<Stellungsdaten_t>();
    Brett() {
        std::memset(st.get(), 0, sizeof(Stellung_t));
        std::memset(d.get(), 0, sizeof(Stellungsdaten_t));
    }
    bool Setze(const char* fen) { return SetzeStellung(*st, *d, fen); }
};

// An undo record full of junk: the maker must fill in everything its undo needs.
inline Rueckzug_t Muell() {
    Rueckzug_t r;
    std::memset(static_cast<void*>(&r), 0xa5, sizeof r);
    return r;
}

inline std::unique_ptr<Brett> Aufstellen(const char* fen) {
    auto b = std::make_unique<Brett>();
    EXPECT_TRUE(b->Setze(fen)) << fen;
    return b;
}

inline std::string Text(const Stellung_t& st, Zug_t z) {
    char puffer[16] = {};
    ZugText(st, z, puffer);
    return puffer;
}

// Raw generator output, in generation order.
inline std::vector<Zug_t> Pseudolegal(const Stellung_t& st, const Stellungsdaten_t& d) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, d, liste);
    std::vector<Zug_t> v;
    for (const uint32_t* p = liste; p != ende; ++p) v.push_back(static_cast<Zug_t>(*p));
    return v;
}

inline std::vector<Zug_t> Legal(Stellung_t& st, const Stellungsdaten_t& d) {
    std::vector<Zug_t> v;
    for (Zug_t z : Pseudolegal(st, d)) {
        Stellungsdaten_t neu;
        Rueckzug_t r = Muell();
        if (ZugLegal(st, z, d, neu, r)) {
            r.Zuruecknehmen();
            v.push_back(z);
        }
    }
    return v;
}

inline bool Enthaelt(const std::vector<Zug_t>& v, Zug_t z) { return std::find(v.begin(), v.end(), z) != v.end(); }

inline std::string Texte(const Stellung_t& st, const std::vector<Zug_t>& v) {
    std::string s;
    for (Zug_t z : v) s += Text(st, z) + " ";
    return s;
}

// Position key, pawn key and material key recomputed from the bitboards alone.
struct Schluessel {
    uint64_t stellung = 0, bauern = 0, material = 0;
};

inline Schluessel ReferenzSchluessel(const Stellung_t& st) {
    Schluessel k;
    for (unsigned s = 0; s < 2; ++s) {
        for (unsigned t = Bauer; t <= Koenig; ++t) {
            Bitboard b = st.seite[s].brett[t];
            while (b) {
                const Feld f = NimmFeld(b);
                k.stellung ^= ZobristFigur[(8 * s + t) * 64 + f];
                if (t == Bauer) k.bauern ^= ZobristFigur[(8 * s + t) * 64 + f];
            }
            if (t != Koenig) k.material += Materialgewicht[8 * s + t] * static_cast<uint64_t>(Bitzahl(st.seite[s].brett[t]));
        }
    }
    k.stellung ^= ZobristFigur[st.rochaden] ^ ZobristFigur[8 * 64 + st.ep];
    if (st.amZug == Schwarz) k.stellung ^= SeitenSchluessel;
    const Bitboard wl = st.seite[Weiss].brett[Laeufer], sl = st.seite[Schwarz].brett[Laeufer];
    if (Bitzahl(wl) == 1 && Bitzahl(sl) == 1 && ((wl & HelleFelder) != 0) != ((sl & HelleFelder) != 0))
        k.material += UngleicheLaeufer;
    return k;
}

// Bitboards, counts and square lists of both sides tell the same story.
inline void PruefeKonsistenz(const Stellung_t& st, const std::string& wo) {
    EXPECT_EQ(st.seite[0].brett[0] & st.seite[1].brett[0], 0u) << wo;
    for (unsigned s = 0; s < 2; ++s) {
        const Seite_t& x = st.seite[s];
        Bitboard alle = 0;
        for (unsigned t = Bauer; t <= Koenig; ++t) {
            EXPECT_EQ(alle & x.brett[t], 0u) << wo << " side " << s << " type " << t << " overlaps";
            alle |= x.brett[t];
            ASSERT_EQ(x.anzahl[t], Bitzahl(x.brett[t])) << wo << " side " << s << " type " << t;
            Bitboard ausListe = 0;
            for (unsigned i = 0; i < x.anzahl[t]; ++i) ausListe |= Bit(x.Liste(t)[i]);
            EXPECT_EQ(ausListe, x.brett[t]) << wo << " side " << s << " list of type " << t;
        }
        EXPECT_EQ(x.brett[0], alle) << wo << " side " << s;
        EXPECT_EQ(x.anzahl[0], Bitzahl(alle)) << wo << " side " << s;
        EXPECT_EQ(x.anzahl[Koenig], 1u) << wo;
    }
}

// Plays a reproducible random legal game and calls `besuch` on every position
// reached (the start included) with freshly computed data. Stops early at mate or stalemate.
template <class Besuch>
void ZufallsPartie(const char* fen, int halbzuege, uint64_t saat, Besuch besuch) {
    Brett b;
    ASSERT_TRUE(b.Setze(fen)) << fen;
    uint64_t x = saat * 0x9e3779b97f4a7c15ULL + 1;
    for (int i = 0;; ++i) {
        BerechneStellungsdaten(*b.st, *b.d);
        besuch(*b.st, *b.d);
        if (i == halbzuege) return;
        const std::vector<Zug_t> zuege = Legal(*b.st, *b.d);
        if (zuege.empty()) return;
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        Stellungsdaten_t neu;
        Rueckzug_t r = Muell();
        ZugMachen(*b.st, zuege[x % zuege.size()], neu, *b.d, r);
    }
}

// Start positions for random games: standard, tactical and Chess960 ones.
inline const std::vector<const char*>& Partieanfaenge() {
    static const std::vector<const char*> v = {
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
        "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
        "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
        "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
        "nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1",
        "1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1",
        "2rk3r/pppppppp/8/8/8/8/PPPPPPPP/2RK3R w KQkq - 0 1",
        "rk4r1/pp1ppppp/8/2p5/8/8/PPPPPPPP/RK4R1 w KQkq - 0 1",
        "4k3/1P6/8/8/8/8/6p1/4K3 w - - 0 1",
    };
    return v;
}

// Names the first field in which two position records differ ("" when none
// does). Undo is exact to the byte, unused list slots and padding included, so
// that records can be compared and hashed as plain memory.
inline std::string Unterschied(const Stellung_t& a, const Stellung_t& b) {
    std::ostringstream o;
    auto feld = [&o](const char* name, unsigned x, unsigned y) {
        if (x == y) return false;
        o << name << " " << x << " vs " << y;
        return true;
    };
    if (feld("amZug", a.amZug, b.amZug) || feld("ep", a.ep, b.ep) || feld("rochaden", a.rochaden, b.rochaden) ||
        feld("chess960", a.chess960, b.chess960) || feld("dateibuchstaben", a.dateibuchstaben, b.dateibuchstaben))
        return o.str();
    for (unsigned s = 0; s < 2; ++s) {
        const Seite_t &x = a.seite[s], &y = b.seite[s];
        o << "seite[" << s << "].";
        for (unsigned t = 0; t < 7; ++t) {
            if (x.brett[t] != y.brett[t]) {
                o << "brett[" << t << "] " << std::hex << x.brett[t] << " vs " << y.brett[t];
                return o.str();
            }
            o << "anzahl[" << t << "]";
            if (feld("", x.anzahl[t], y.anzahl[t])) return o.str();
            o.str("");
            o << "seite[" << s << "].";
        }
        for (unsigned t = 0; t < 6; ++t)
            for (unsigned i = 0; i < 10; ++i) {
                o << "felder[" << t << "][" << i << (i < x.anzahl[t + 1] ? "]" : "] (unused slot)");
                if (feld("", x.felder[t][i], y.felder[t][i])) return o.str();
                o.str("");
                o << "seite[" << s << "].";
            }
        if (feld("langerTurm", x.langerTurm, y.langerTurm) || feld("kurzerTurm", x.kurzerTurm, y.kurzerTurm))
            return o.str();
        o.str("");
    }
    if (feld("historieAnzahl", a.historieAnzahl, b.historieAnzahl)) return o.str();
    for (int i = 0; i < HistorieKapazitaet; ++i)
        if (a.Historie[i] != b.Historie[i]) {
            o << "Historie[" << i << "]";
            return o.str();
        }
    if (std::memcmp(&a, &b, sizeof(Stellung_t)) != 0) return "padding bytes";
    return "";
}

// Slow attack sets, square by square, as references for the tables.
inline bool AufBrett(int linie, int reihe) { return linie >= 0 && linie < 8 && reihe >= 1 && reihe <= 8; }

// Walks one ray from s in (dl, dr) file/rank steps, stopping after the first occupied square.
inline Bitboard Strahl(Feld s, int dl, int dr, Bitboard belegt) {
    Bitboard b = 0;
    int l = static_cast<int>(LinieVon(s)) + dl, r = static_cast<int>(ReiheVon(s)) + dr;
    while (AufBrett(l, r)) {
        const Feld f = FeldAus(static_cast<unsigned>(l), static_cast<unsigned>(r));
        b |= Bit(f);
        if (belegt & Bit(f)) break;
        l += dl;
        r += dr;
    }
    return b;
}

inline Bitboard LangsameLaeuferAngriffe(Feld s, Bitboard belegt) {
    return Strahl(s, 1, 1, belegt) | Strahl(s, 1, -1, belegt) | Strahl(s, -1, 1, belegt) | Strahl(s, -1, -1, belegt);
}

inline Bitboard LangsameTurmAngriffe(Feld s, Bitboard belegt) {
    return Strahl(s, 1, 0, belegt) | Strahl(s, -1, 0, belegt) | Strahl(s, 0, 1, belegt) | Strahl(s, 0, -1, belegt);
}

inline Bitboard Spruenge(Feld s, const int (*d)[2], int n) {
    Bitboard b = 0;
    for (int i = 0; i < n; ++i) {
        const int l = static_cast<int>(LinieVon(s)) + d[i][0], r = static_cast<int>(ReiheVon(s)) + d[i][1];
        if (AufBrett(l, r)) b |= Bit(FeldAus(static_cast<unsigned>(l), static_cast<unsigned>(r)));
    }
    return b;
}

inline Bitboard LangsameAngriffe(unsigned seite, unsigned typ, Feld s, Bitboard belegt) {
    static const int koenig[8][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
    static const int springer[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
    static const int bauer[2][2][2] = {{{-1, 1}, {1, 1}}, {{-1, -1}, {1, -1}}};
    switch (typ) {
        case Bauer: return Spruenge(s, bauer[seite], 2);
        case Springer: return Spruenge(s, springer, 8);
        case Laeufer: return LangsameLaeuferAngriffe(s, belegt);
        case Turm: return LangsameTurmAngriffe(s, belegt);
        case Dame: return LangsameLaeuferAngriffe(s, belegt) | LangsameTurmAngriffe(s, belegt);
        default: return Spruenge(s, koenig, 8);
    }
}

}  // namespace brett_test
