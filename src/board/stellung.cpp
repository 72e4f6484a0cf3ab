#include "board/stellung.h"

#include <cctype>
#include <cstdio>
#include <cstring>

const uint64_t Materialgewicht[16] = {
    0, 1076067832ULL, 9667865260ULL, 106304558597ULL, 1169305066222ULL, 12862355903076ULL, 0, 0,
    0, 128623535903995ULL, 1157611799874648ULL, 12733729778113718ULL, 140071027544024676ULL,
    1540781302972320579ULL, 0, 0,
};

namespace {

constexpr char FigurenBuchstaben[] = " PNBRQK";

const char* UeberspringeLeer(const char* p) {
    while (*p && std::isspace(static_cast<unsigned char>(*p))) ++p;
    return p;
}

void VereinigeFiguren(Seite_t& s) {
    s.brett[0] = s.brett[1] | s.brett[2] | s.brett[3] | s.brett[4] | s.brett[5] | s.brett[6];
}

Feld Grundreihe(unsigned seite) { return seite == Weiss ? 56 : 0; }

// File of the side's king on its home rank, or -1.
int KoenigsLinie(const Stellung_t& st, unsigned seite) {
    const Bitboard k = st.seite[seite].brett[Koenig] & (Bitboard{0xff} << Grundreihe(seite));
    return k ? static_cast<int>(LinieVon(NiedrigstesFeld(k))) : -1;
}

bool TurmAufGrundreihe(const Stellung_t& st, unsigned seite, int linie) {
    return st.seite[seite].brett[Turm] & Bit(Grundreihe(seite) + static_cast<Feld>(linie));
}

// Files that may hold the castling rook of one wing: own rooks on the home rank
// beyond the king, narrowed to one file when the FEN named it.
unsigned Kandidaten(const Stellung_t& st, unsigned seite, bool kurz, int eingeengt) {
    const int k = KoenigsLinie(st, seite);
    if (k < 0) return 0;
    unsigned linien = 0;
    for (int l = 0; l < 8; ++l) {
        if ((kurz ? l > k : l < k) && TurmAufGrundreihe(st, seite, l) && (eingeengt < 0 || eingeengt == l))
            linien |= 1u << l;
    }
    return linien;
}

}  // namespace

bool PruefeStellung(Seite_t& seite) {
    static constexpr unsigned Grenze[7] = {16, 8, 10, 10, 10, 9, 1};
    seite.anzahl[0] = static_cast<uint8_t>(Bitzahl(seite.brett[0]));
    if (seite.anzahl[0] > Grenze[0]) return false;
    for (unsigned t = Bauer; t <= Koenig; ++t) {
        const unsigned n = Bitzahl(seite.brett[t]);
        if (n > Grenze[t]) return false;
        seite.anzahl[t] = static_cast<uint8_t>(n);
        Bitboard b = seite.brett[t];
        uint8_t* liste = seite.Liste(t);
        for (unsigned i = 0; b; ++i) liste[i] = static_cast<uint8_t>(NimmFeld(b));
    }
    return seite.anzahl[Koenig] == 1;
}

const char* LeseFen(Stellung_t& st, const char* text) {
    std::memset(st.seite, 0, sizeof st.seite);
    st.amZug = Weiss;
    st.ep = 0;
    st.rochaden = 0;
    st.chess960 = 0;
    st.dateibuchstaben = 0;
    st.seite[Weiss].langerTurm = 56;
    st.seite[Weiss].kurzerTurm = 63;
    st.seite[Schwarz].langerTurm = 0;
    st.seite[Schwarz].kurzerTurm = 7;
    if (!text) return nullptr;

    // Board, rank 8 first.
    const char* p = UeberspringeLeer(text);
    int reihe = 8, linie = 0, striche = 0;
    for (; *p && !std::isspace(static_cast<unsigned char>(*p)); ++p) {
        const char c = *p;
        if (c < 32 || c > 'r') return nullptr;
        if (c == '/') {
            if (linie != 8 || ++striche > 8) return nullptr;
            --reihe;
            linie = 0;
        } else if (c >= '1' && c <= '8') {
            linie += c - '0';
            if (linie > 8) return nullptr;
        } else {
            const char* f = std::strchr(FigurenBuchstaben + 1, std::toupper(static_cast<unsigned char>(c)));
            if (!f || linie >= 8 || reihe < 1) return nullptr;
            const unsigned seite = std::isupper(static_cast<unsigned char>(c)) ? Weiss : Schwarz;
            const auto typ = static_cast<unsigned>(f - FigurenBuchstaben);
            st.seite[seite].brett[typ] |= Bit(FeldAus(static_cast<unsigned>(linie), static_cast<unsigned>(reihe)));
            ++linie;
        }
    }

    for (Seite_t& s : st.seite) VereinigeFiguren(s);

    // Side to move.
    p = UeberspringeLeer(p);
    if (*p == 'w' || *p == 'W') st.amZug = Weiss;
    else if (*p == 'b' || *p == 'B') st.amZug = Schwarz;
    else return nullptr;
    p = UeberspringeLeer(p + 1);

    // Castling: KQkq, file letters after K/Q narrowing the rook, or Shredder file letters.
    int eingeengt[2][2] = {{-1, -1}, {-1, -1}};  // [side][0 short, 1 long]
    if (*p == '\0') return nullptr;  // no castling field, nor en passant
    if (*p == '-') {
        ++p;
    } else {
        char vorher = 0;
        for (; *p && !std::isspace(static_cast<unsigned char>(*p)); ++p) {
            const char c = *p;
            const char klein = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            if (c == 'K' || c == 'Q' || c == 'k' || c == 'q') {
                const unsigned seite = c == 'K' || c == 'Q' ? Weiss : Schwarz;
                const bool kurz = c == 'K' || c == 'k';
                st.rochaden |= static_cast<uint8_t>((kurz ? 1 : 2) << (2 * seite));
                st.dateibuchstaben = 0;
                vorher = c;
            } else if (klein >= 'a' && klein <= 'h') {
                const int l = klein - 'a';
                if (vorher) {
                    const unsigned seite = vorher == 'K' || vorher == 'Q' ? Weiss : Schwarz;
                    eingeengt[seite][vorher == 'K' || vorher == 'k' ? 0 : 1] = l;
                    st.chess960 = 1;
                } else {
                    const unsigned seite = std::isupper(static_cast<unsigned char>(c)) ? Weiss : Schwarz;
                    const int k = KoenigsLinie(st, seite);
                    if (k < 0 || !TurmAufGrundreihe(st, seite, l)) return nullptr;
                    const bool kurz = l > k;
                    st.rochaden |= static_cast<uint8_t>((kurz ? 1 : 2) << (2 * seite));
                    eingeengt[seite][kurz ? 0 : 1] = l;
                    st.chess960 = 1;
                    st.dateibuchstaben = 1;
                }
                vorher = 0;
            } else {
                return nullptr;
            }
        }
    }

    const bool weissRechte = st.rochaden & (WeissKurz | WeissLang);
    const bool schwarzRechte = st.rochaden & (SchwarzKurz | SchwarzLang);
    if (weissRechte && schwarzRechte) {
        const int kw = KoenigsLinie(st, Weiss), ks = KoenigsLinie(st, Schwarz);
        if (kw < 0 || kw != ks) return nullptr;
    }

    // The rook of each wing: the outermost file that is a candidate for every side holding that right.
    for (int fluegel = 0; fluegel < 2; ++fluegel) {
        const bool kurz = fluegel == 0;
        unsigned gemeinsam = 0xff;
        bool recht = false;
        for (unsigned seite = Weiss; seite <= Schwarz; ++seite) {
            if (!(st.rochaden & ((kurz ? 1 : 2) << (2 * seite)))) continue;
            const unsigned k = Kandidaten(st, seite, kurz, eingeengt[seite][fluegel]);
            if (!k) return nullptr;
            gemeinsam &= k;
            recht = true;
        }
        if (!recht) continue;
        if (!gemeinsam) return nullptr;
        int l = kurz ? 7 : 0;
        while (!(gemeinsam & (1u << l))) l += kurz ? -1 : 1;
        for (unsigned seite = Weiss; seite <= Schwarz; ++seite) {
            const auto feld = static_cast<uint8_t>(Grundreihe(seite) + static_cast<Feld>(l));
            (kurz ? st.seite[seite].kurzerTurm : st.seite[seite].langerTurm) = feld;
        }
    }
    if (LinieVon(st.seite[Weiss].kurzerTurm) != 7 || LinieVon(st.seite[Weiss].langerTurm) != 0 ||
        (weissRechte && !(st.seite[Weiss].brett[Koenig] & Bit(60))) ||
        (schwarzRechte && !(st.seite[Schwarz].brett[Koenig] & Bit(4))))
        st.chess960 = 1;

    // En passant, kept only when a pawn of the side to move can really take there.
    p = UeberspringeLeer(p);
    if (*p == '-') {
        ++p;
    } else {
        // A missing field fails like a malformed one.
        const char l = static_cast<char>(std::tolower(static_cast<unsigned char>(*p)));
        if (l < 'a' || l > 'h' || p[1] != (st.amZug == Weiss ? '6' : '3')) return nullptr;
        const Feld ep = FeldAus(static_cast<unsigned>(l - 'a'), st.amZug == Weiss ? 6u : 3u);
        const Feld bauer = st.amZug == Weiss ? ep + 8 : ep - 8;  // the pawn that made the double step
        const unsigned gegner = st.amZug ^ 1;
        const Bitboard alle = st.seite[Weiss].brett[0] | st.seite[Schwarz].brett[0];
        if ((BauernAngriffe(gegner, Bit(ep)) & st.seite[st.amZug].brett[Bauer]) &&
            (st.seite[gegner].brett[Bauer] & Bit(bauer)) && !(alle & Bit(ep)))
            st.ep = static_cast<uint8_t>(ep);
        p += 2;
    }

    for (Seite_t& s : st.seite)
        if (!PruefeStellung(s)) return nullptr;
    return p;
}

void Grundstellung(Stellung_t& st) {
    std::memset(st.seite, 0, sizeof st.seite);
    st.amZug = Weiss;
    st.ep = 0;
    st.rochaden = WeissKurz | WeissLang | SchwarzKurz | SchwarzLang;
    st.chess960 = 0;
    st.dateibuchstaben = 0;
    static constexpr unsigned Grundreihe8[8] = {Turm, Springer, Laeufer, Dame, Koenig, Laeufer, Springer, Turm};
    for (Feld l = 0; l < 8; ++l) {
        st.seite[Schwarz].brett[Grundreihe8[l]] |= Bit(l);
        st.seite[Schwarz].brett[Bauer] |= Bit(8 + l);
        st.seite[Weiss].brett[Bauer] |= Bit(48 + l);
        st.seite[Weiss].brett[Grundreihe8[l]] |= Bit(56 + l);
    }
    st.seite[Weiss].langerTurm = 56;
    st.seite[Weiss].kurzerTurm = 63;
    st.seite[Schwarz].langerTurm = 0;
    st.seite[Schwarz].kurzerTurm = 7;
    for (Seite_t& s : st.seite) {
        VereinigeFiguren(s);
        PruefeStellung(s);
    }
}

void StarteHistorie(Stellung_t& st, const Stellungsdaten_t& daten) {
    st.historieAnzahl = 1;
    st.Historie[0] = daten.schluessel;
}

bool SetzeStellung(Stellung_t& st, Stellungsdaten_t& daten, const char* text) {
    if (!text) {
        Grundstellung(st);
        BerechneStellungsdaten(st, daten);
        StarteHistorie(st, daten);
        return true;
    }
    const char* rest = LeseFen(st, text);
    if (!rest) return false;
    int halbzuege = 0, zugnummer = 0;
    std::sscanf(rest, "%d %d", &halbzuege, &zugnummer);
    BerechneStellungsdaten(st, daten);
    if (halbzuege < 0 || halbzuege > 99) {
        StarteHistorie(st, daten);
    } else {
        st.historieAnzahl = static_cast<uint32_t>(halbzuege + 1);
        for (int i = 0; i < halbzuege; ++i) st.Historie[i] = 0;
        st.Historie[halbzuege] = daten.schluessel;
    }
    return true;
}

bool Chess960Start(Stellung_t& st, unsigned n) {
    n %= 960;
    char reihe[9] = "........";
    auto setze = [&](unsigned freiesFeld, char figur) {  // on the k-th empty file from the a-side
        for (int i = 0; i < 8; ++i) {
            if (reihe[i] == '.' && freiesFeld-- == 0) {
                reihe[i] = figur;
                return;
            }
        }
    };
    reihe[2 * (n % 4) + 1] = 'b';
    n /= 4;
    reihe[2 * (n % 4)] = 'b';
    n /= 4;
    setze(n % 6, 'q');
    n /= 6;
    static constexpr unsigned Springer[10][2] = {{0, 1}, {0, 2}, {0, 3}, {0, 4}, {1, 2},
                                                 {1, 3}, {1, 4}, {2, 3}, {2, 4}, {3, 4}};
    setze(Springer[n][1], 'n');  // the higher one first, so the lower index still counts the same files
    setze(Springer[n][0], 'n');
    setze(0, 'r');
    setze(0, 'k');
    setze(0, 'r');
    char fen[96];
    char weiss[9];
    for (int i = 0; i < 8; ++i) weiss[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(reihe[i])));
    weiss[8] = 0;
    std::snprintf(fen, sizeof fen, "%s/pppppppp/8/8/8/8/PPPPPPPP/%s w KQkq - 0 1", reihe, weiss);
    return LeseFen(st, fen) != nullptr;
}

bool FeldAngegriffen(const Stellung_t& st, Feld f, unsigned angreifer, Bitboard belegt) {
    const Seite_t& a = st.seite[angreifer];
    return (TurmAngriffe(f, belegt) & (a.brett[Turm] | a.brett[Dame])) ||
           (LaeuferAngriffe(f, belegt) & (a.brett[Laeufer] | a.brett[Dame])) ||
           (SpringerFelder[f] & a.brett[Springer]) || (KoenigFelder[f] & a.brett[Koenig]) ||
           (BauernAngriffe(angreifer ^ 1, Bit(f)) & a.brett[Bauer]);
}

void BerechneAngriffeVon(const Stellung_t& st, Bitboard belegt, unsigned seite, Angriffe_t& a) {
    const Seite_t& s = st.seite[seite];
    const Bitboard bauern = s.brett[Bauer];
    const Bitboard links = seite == Weiss ? (bauern >> 9) & OhneHLinie : (bauern << 7) & OhneHLinie;
    const Bitboard rechts = seite == Weiss ? (bauern >> 7) & OhneALinie : (bauern << 9) & OhneALinie;
    Bitboard alle = links | rechts;
    Bitboard doppelt = links & rechts;
    a.bauern = alle;
    a.figur[Leer] = 0;
    a.figur[Bauer] = alle;
    auto dazu = [&](unsigned typ, Bitboard x) {
        a.figur[typ] |= x;
        doppelt |= alle & x;
        alle |= x;
    };
    for (unsigned t = Springer; t <= Koenig; ++t) a.figur[t] = 0;
    const uint8_t* liste = s.Liste(Springer);
    for (unsigned i = 0; i < s.anzahl[Springer]; ++i) dazu(Springer, SpringerFelder[liste[i]]);
    liste = s.Liste(Laeufer);
    for (unsigned i = 0; i < s.anzahl[Laeufer]; ++i) dazu(Laeufer, LaeuferAngriffe(liste[i], belegt));
    liste = s.Liste(Turm);
    for (unsigned i = 0; i < s.anzahl[Turm]; ++i) dazu(Turm, TurmAngriffe(liste[i], belegt));
    liste = s.Liste(Dame);
    for (unsigned i = 0; i < s.anzahl[Dame]; ++i) dazu(Dame, DameAngriffe(liste[i], belegt));
    dazu(Koenig, KoenigFelder[s.KoenigsFeld()]);
    a.alle = alle;
    a.doppelt = doppelt;
    a.bedroht = 0;
}

void BerechneBedroht(const Stellung_t& st, Stellungsdaten_t& daten) {
    // A piece is under threat when a cheaper piece attacks it, or when it is attacked and undefended.
    for (unsigned seite = Weiss; seite <= Schwarz; ++seite) {
        const Seite_t& s = st.seite[seite];
        const Angriffe_t& gegen = daten.angriffe[seite];
        const Angriffe_t& schutz = daten.angriffe[seite ^ 1];
        const Bitboard leichte = gegen.figur[Springer] | gegen.figur[Laeufer];
        const Bitboard figuren = s.brett[0] & ~s.brett[Koenig];
        daten.angriffe[seite].bedroht =
            ((figuren & ~s.brett[Bauer]) & gegen.bauern) |
            ((s.brett[Turm] | s.brett[Dame]) & leichte) | (s.brett[Dame] & gegen.figur[Turm]) |
            (figuren & gegen.alle & ~schutz.alle);
    }
}

void BerechneAngriffe(const Stellung_t& st, Stellungsdaten_t& daten) {
    BerechneAngriffeVon(st, daten.belegt, Schwarz, daten.angriffe[Weiss]);
    BerechneAngriffeVon(st, daten.belegt, Weiss, daten.angriffe[Schwarz]);
    BerechneBedroht(st, daten);
}

void BerechneStellungsdaten(const Stellung_t& st, Stellungsdaten_t& daten) {
    daten.belegt = st.seite[Weiss].brett[0] | st.seite[Schwarz].brett[0];
    uint64_t bauern = 0, schluessel = 0, material = 0;
    for (unsigned seite = Weiss; seite <= Schwarz; ++seite) {
        const Seite_t& s = st.seite[seite];
        for (unsigned t = Bauer; t <= Koenig; ++t) {
            Bitboard b = s.brett[t];
            while (b) {
                const uint64_t k = FigurSchluessel(seite, t, NimmFeld(b));
                (t == Bauer ? bauern : schluessel) ^= k;
            }
            material += s.anzahl[t] * Materialgewicht[8 * seite + t];
        }
    }
    if (HatUngleicheLaeufer(st)) material += UngleicheLaeufer;
    schluessel ^= bauern ^ RochadenSchluessel(st.rochaden) ^ ZobristEp[st.ep];
    if (st.amZug == Schwarz) schluessel ^= SeitenSchluessel;
    daten.schluessel = schluessel;
    daten.bauernSchluessel = bauern;
    daten.Materialschluessel = material;
    BerechneAngriffe(st, daten);
}
