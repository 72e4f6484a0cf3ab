#include "bitbase/index.h"

#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr uint64_t GleichesFeld = 0x7E0;  // pair code of two men on one square (an absent man)
constexpr uint64_t PaarCodes = 2048;

// Pair codes back to their squares: code = s1 (s1 - 1) / 2 + s0 with s0 < s1.
struct PaarFelder_t {
    uint8_t s0, s1;
};
constexpr std::array<PaarFelder_t, GleichesFeld> PaarTabelle = [] {
    std::array<PaarFelder_t, GleichesFeld> t{};
    for (int s1 = 1; s1 < 64; ++s1)
        for (int s0 = 0; s0 < s1; ++s0)
            t[static_cast<size_t>(s1 * (s1 - 1) / 2 + s0)] = {static_cast<uint8_t>(s0), static_cast<uint8_t>(s1)};
    return t;
}();

// The ten squares of the triangle a8-d8-d5 (row <= file <= 3) by anchor code / 2.
struct Dreieck_t {
    uint8_t reihe, linie;
};
constexpr std::array<Dreieck_t, 10> DreieckFelder = [] {
    std::array<Dreieck_t, 10> t{};
    for (int a = 0; a < 4; ++a)
        for (int b = a; b < 4; ++b) t[static_cast<size_t>(((7 - a) * a + 2 * b) / 2)] = {static_cast<uint8_t>(a), static_cast<uint8_t>(b)};
    return t;
}();

int TypVon(char c) {
    const char* p = std::strchr(Steinbuchstaben + 1, c);
    return c != '\0' && p != nullptr ? static_cast<int>(p - Steinbuchstaben) : 0;
}

constexpr int Reihe(int f) { return f >> 3; }
constexpr int Linie(int f) { return f & 7; }
constexpr int Diagonal(int f) { return (Linie(f) << 3) | Reihe(f); }  // reflection in a8-h1

}  // namespace

uint64_t Paarcode(uint64_t index, const int* felder, int k) {
    int s[4] = {};
    for (int i = 0; i < k; ++i) s[i] = felder[i];
    auto tausche = [&s](int x, int y) {
        if (s[x] > s[y]) std::swap(s[x], s[y]);
    };
    tausche(0, 1);
    if (k >= 3) tausche(0, 2);
    if (k == 4) {
        tausche(0, 3);
        tausche(1, 3);
    }
    if (k >= 3) tausche(1, 2);
    for (int p = 0; p + 1 < k; p += 2) {
        const int s0 = s[p], s1 = s[p + 1];
        const uint64_t code = s0 != s1 ? static_cast<uint64_t>(s1 * (s1 - 1) / 2 + s0) : GleichesFeld;
        index = index * PaarCodes + code;
    }
    if (k & 1) index = index * 64 + static_cast<uint64_t>(s[k - 1]);
    return index;
}

bool Bitbase_t::SetzeSignatur(const char* name) {
    *this = Bitbase_t{};
    if (name == nullptr || name[0] != 'K') return false;
    int n = 0, koenige = 0, zweiterKoenig = 0;
    for (; name[n] != '\0'; ++n) {
        if (n >= BitbaseSteineMax) return false;
        const int t = TypVon(name[n]);
        if (t == 0) return false;
        if (t == 6 && ++koenige == 2) zweiterKoenig = n;
    }
    if (koenige != 2) return false;

    std::memcpy(Signaturname, name, static_cast<size_t>(n));
    Signaturname[n] = '\0';
    namensLaenge = anzahlSteine = n;
    anzahlWeiss = zweiterKoenig;
    anzahlSchwarz = n - zweiterKoenig;
    for (int i = 0; i < n; ++i) typ[i] = TypVon(name[i]);

    // Runs of pawns: the first is White's if White has any, a second Black's.
    int laufStart[2] = {-1, -1}, laufLaenge[2] = {0, 0}, laeufe = 0;
    for (int i = 0; i < n && laeufe < 2;) {
        if (name[i] != 'B') {
            ++i;
            continue;
        }
        int j = i;
        while (j < n && name[j] == 'B') ++j;
        laufStart[laeufe] = i;
        laufLaenge[laeufe] = j - i;
        ++laeufe;
        i = j;
    }
    if (laeufe > 0) {
        // An even first run passes the anchor to an odd second one: then no pair loses a man.
        const bool zweiter = laeufe == 2 && laufLaenge[0] % 2 == 0 && laufLaenge[1] % 2 == 1;
        Ankerstein = laufStart[zweiter ? 1 : 0];
    }

    // Groups of identical neighbours; the anchor stands apart from its group.
    const int anker = HatBauern() ? Ankerstein : 0;
    int h = 0;
    for (int i = 0; i < n;) {
        if (i == anker) {
            ++i;
            continue;
        }
        int j = i + 1;
        if (typ[i] != 6)
            while (j < n && j != anker && name[j] == name[i]) ++j;
        if (j - i > 1) {
            for (int m = i; m < j; ++m) paar[m] = true;
            h += (j - i) / 2;
        }
        gruppenStart[gruppen] = static_cast<int8_t>(i);
        gruppenGroesse[gruppen++] = static_cast<int8_t>(j - i);
        i = j;
    }
    const uint64_t basis = uint64_t{1} << (6 * (n - 1));
    positionen = (basis * (HatBauern() ? 64 : 20)) >> h;
    return true;
}

bool Bitbase_t::SetzeSteine(const int* weissTypen, const int* schwarzTypen, const int* weissFelder,
                            const int* schwarzFelder, int seiteAmZug, int ep) {
    char name[BitbaseSteineMax + 1] = {};
    int felder[BitbaseSteineMax] = {};
    int n = 0;
    for (int seite = 0; seite < 2; ++seite) {
        const int* typen = seite == 0 ? weissTypen : schwarzTypen;
        const int* liste = seite == 0 ? weissFelder : schwarzFelder;
        for (int i = 0; typen[i] != 0; ++i) {
            if (n == BitbaseSteineMax || typen[i] < 1 || typen[i] > 6 || (i == 0) != (typen[i] == 6)) {
                *this = Bitbase_t{};
                return false;
            }
            if (liste[i] < 0 || liste[i] > 63) {
                *this = Bitbase_t{};
                return false;
            }
            name[n] = Steinbuchstaben[typen[i]];
            felder[n++] = liste[i];
        }
    }
    if (!SetzeSignatur(name)) return false;
    for (int i = 0; i < n; ++i) feld[i] = felder[i];
    amZug = seiteAmZug != 0 ? 1 : 0;
    epFeld = static_cast<int8_t>(ep >= 1 && ep <= 63 ? ep : -1);
    if (epFeld >= 0 && HatBauern() && Linie(feld[Ankerstein]) >= 4) epFeld = static_cast<int8_t>(epFeld ^ 7);
    return true;
}

uint64_t Bitbase_t::Index(const int32_t* felder, int seite, int ep) const {
    const int n = anzahlSteine;
    const bool bauern = HatBauern();
    int f[BitbaseSteineMax] = {};
    for (int i = 0; i < n; ++i) {
        f[i] = felder[i];
        if (typ[i] < AbwesendTyp) [[likely]] continue;
        // Absent men stand where they change nothing: on the anchor, or a pawn on its first row.
        if (bauern && Signaturname[i] == 'B') f[i] = i < anzahlWeiss ? 56 : 0;
        else f[i] = felder[0];
    }

    uint64_t index;
    if (!bauern) {
        const int m = (Linie(f[0]) >= 4 ? 7 : 0) | (Reihe(f[0]) >= 4 ? 56 : 0);
        for (int i = 0; i < n; ++i) f[i] ^= m;
        bool diagonal = Reihe(f[0]) > Linie(f[0]);
        if (Reihe(f[0]) == Linie(f[0])) {
            for (int i = 1; i < n; ++i) {
                if (Reihe(f[i]) != Linie(f[i])) {
                    diagonal = Reihe(f[i]) > Linie(f[i]);
                    break;
                }
            }
        }
        const int a = Reihe(f[0]) < Linie(f[0]) ? Reihe(f[0]) : Linie(f[0]);
        const int b = Reihe(f[0]) < Linie(f[0]) ? Linie(f[0]) : Reihe(f[0]);
        if (diagonal)
            for (int i = 1; i < n; ++i) f[i] = Diagonal(f[i]);
        index = static_cast<uint64_t>((7 - a) * a + 2 * b + seite);
    } else {
        const int anker = Ankerstein;
        if (Linie(f[anker]) >= 4)
            for (int i = 0; i < n; ++i) f[i] ^= 7;
        // A pawn that may capture en passant is written on a row no pawn can stand on.
        for (int i = 0; i < n && ep >= 0; ++i) {
            if (Signaturname[i] != 'B') continue;
            const bool weiss = i < anzahlWeiss;
            if (Reihe(f[i]) != (weiss ? 3 : 4)) continue;
            const int vor = weiss ? f[i] - 8 : f[i] + 8;
            if (vor - 1 == ep && Linie(f[i]) != 0) f[i] = (weiss ? 56 : 0) | Linie(f[i]);
            else if (vor + 1 == ep && Linie(f[i]) != 7) f[i] = (weiss ? 0 : 56) | Linie(f[i]);
        }
        index = static_cast<uint64_t>((f[anker] & 56) | 2 * Linie(f[anker]) | seite);
    }

    for (int g = 0; g < gruppen; ++g) {
        const int i = gruppenStart[g];
        if (gruppenGroesse[g] == 1) index = index * 64 + static_cast<uint64_t>(f[i]);
        else index = Paarcode(index, f + i, gruppenGroesse[g]);
    }
    return index;
}

bool Bitbase_t::AusIndex(uint64_t index, int32_t* felder, int32_t& seite, int8_t& ep) const {
    const int n = anzahlSteine;
    if (n < 2 || index >= positionen) return false;
    uint64_t rest = index;
    for (int g = gruppen - 1; g >= 0; --g) {
        const int s = gruppenStart[g], k = gruppenGroesse[g];
        if (k & 1) {
            felder[s + k - 1] = static_cast<int32_t>(rest % 64);
            rest /= 64;
        }
        for (int p = k / 2 - 1; p >= 0; --p) {
            const uint64_t code = rest % PaarCodes;
            rest /= PaarCodes;
            if (code >= GleichesFeld) return false;
            felder[s + 2 * p] = PaarTabelle[code].s0;
            felder[s + 2 * p + 1] = PaarTabelle[code].s1;
        }
    }
    seite = static_cast<int32_t>(rest & 1);
    ep = -1;
    if (!HatBauern()) {
        if (rest >= 20) return false;
        const Dreieck_t d = DreieckFelder[rest >> 1];
        felder[0] = d.reihe * 8 + d.linie;
        return true;
    }
    if (rest >= 64) return false;
    felder[Ankerstein] = static_cast<int32_t>((rest & 56) | ((rest >> 1) & 3));

    // Pawns on the rows no pawn stands on carry the en-passant square.
    for (int i = 0; i < n; ++i) {
        if (Signaturname[i] != 'B') continue;
        const int r = Reihe(felder[i]);
        if (r != 0 && r != 7) continue;
        const bool weiss = i < anzahlWeiss;
        const int l = Linie(felder[i]);
        const int echt = (weiss ? 3 : 4) * 8 + l;
        const int vor = weiss ? echt - 8 : echt + 8;
        const bool links = r == (weiss ? 7 : 0);
        if (links ? l == 0 : l == 7) return false;
        const int e = links ? vor - 1 : vor + 1;
        if ((ep >= 0 && ep != e) || seite != (weiss ? 0 : 1)) return false;
        ep = static_cast<int8_t>(e);
        felder[i] = echt;
    }
    return true;
}

uint64_t AnzahlPositionen(const char* signaturname) {
    Bitbase_t b;
    return b.SetzeSignatur(signaturname) ? b.positionen : 0;
}

void GespiegelteSignatur(const char* name, char* ziel) {
    const size_t n = std::strlen(name);
    size_t k = 1;
    while (k < n && name[k] != 'K') ++k;
    std::memcpy(ziel, name + k, n - k);
    std::memcpy(ziel + (n - k), name, k);
    ziel[n] = '\0';
}
