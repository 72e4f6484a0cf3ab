#include <cctype>
#include <cstring>

#include "board/zug.h"
#include "board/zuggenerator.h"
#include "board/zugmachen.h"

namespace {

bool IstLinie(char c) { return c >= 'a' && c <= 'h'; }
bool IstReihe(char c) { return c >= '1' && c <= '8'; }

char* SchreibeFeld(char* t, Feld f) {
    *t++ = static_cast<char>('a' + LinieVon(f));
    *t++ = static_cast<char>('0' + ReiheVon(f));
    return t;
}

// Piece letters, English and German: bishop B/L, queen D/Q, knight N/S, rook R/T.
unsigned FigurAusBuchstabe(char c) {
    switch (c) {
        case 'N': case 'S': return Springer;
        case 'B': case 'L': return Laeufer;
        case 'R': case 'T': return Turm;
        case 'Q': case 'D': return Dame;
        default: return Leer;
    }
}

bool BeginntMit(const char* text, const char* anfang) {
    return std::strncmp(text, anfang, std::strlen(anfang)) == 0;
}

bool EndetMit(const char* text, size_t n, const char* ende) {
    const size_t m = std::strlen(ende);
    return n >= m && std::strncmp(text + n - m, ende, m) == 0;
}

Zug_t RochadenZug(const Stellung_t& st, bool kurz) {
    const Feld basis = st.amZug == Weiss ? 56 : 0;
    return MachZug(st.seite[st.amZug].KoenigsFeld(), basis + (kurz ? 6 : 2), Rochade);
}

}  // namespace

char* ZugText(const Stellung_t& st, Zug_t zug, char* text) {
    const unsigned art = Art(zug);
    if (art == Nullzug) {
        std::strcpy(text, "0000");
        return text;
    }
    char* t = text;
    if (art == Rochade && st.chess960) {
        const bool kurz = LinieVon(Nach(zug)) == 6;
        if (!st.dateibuchstaben) {
            std::strcpy(text, kurz ? "O-O" : "O-O-O");
            return text;
        }
        // Shredder notation: the king takes its own rook.
        const Seite_t& s = st.seite[Nach(zug) < 8 ? Schwarz : Weiss];
        t = SchreibeFeld(SchreibeFeld(t, Von(zug)), kurz ? s.kurzerTurm : s.langerTurm);
        *t = 0;
        return text;
    }
    t = SchreibeFeld(SchreibeFeld(t, Von(zug)), Nach(zug));
    if (IstUmwandlung(zug)) *t++ = "nbrq"[art - UmwandlungSpringer];
    *t = 0;
    return text;
}

Zug_t LeseKoordinatenZug(const Stellung_t& st, const char* text) {
    while (*text && std::isspace(static_cast<unsigned char>(*text))) ++text;
    if (BeginntMit(text, "O-O-O") || BeginntMit(text, "0-0-0") || BeginntMit(text, "o-o-o"))
        return RochadenZug(st, false);
    if (BeginntMit(text, "O-O") || BeginntMit(text, "0-0") || BeginntMit(text, "o-o")) return RochadenZug(st, true);

    if (!IstLinie(text[0]) || !IstReihe(text[1]) || !IstLinie(text[2]) || !IstReihe(text[3])) return 0;
    const Feld von = FeldAus(static_cast<unsigned>(text[0] - 'a'), static_cast<unsigned>(text[1] - '0'));
    const Feld nach = FeldAus(static_cast<unsigned>(text[2] - 'a'), static_cast<unsigned>(text[3] - '0'));
    const Seite_t& s = st.seite[st.amZug];
    unsigned typ = Bauer;
    while (typ <= Koenig && !(s.brett[typ] & Bit(von))) ++typ;
    if (typ > Koenig) return 0;

    if (typ == Bauer) {
        // German letters are read on purpose: L bishop, D queen, S knight, T rook.
        switch (std::toupper(static_cast<unsigned char>(text[4]))) {
            case 'B': case 'L': return MachZug(von, nach, UmwandlungLaeufer);
            case 'D': case 'Q': return MachZug(von, nach, UmwandlungDame);
            case 'N': case 'S': return MachZug(von, nach, UmwandlungSpringer);
            case 'R': case 'T': return MachZug(von, nach, UmwandlungTurm);
        }
        const bool schlaegt = st.seite[st.amZug ^ 1].brett[0] & Bit(nach);
        return MachZug(von, nach, LinieVon(von) != LinieVon(nach) && !schlaegt ? EnPassant : BauernZug);
    }
    if (typ == Koenig) {
        const Feld basis = st.amZug == Weiss ? 56 : 0;
        const uint8_t kurz = st.amZug == Weiss ? WeissKurz : SchwarzKurz;
        const uint8_t lang = st.amZug == Weiss ? WeissLang : SchwarzLang;
        if (von == basis + 4 && nach == basis + 6 && (st.rochaden & kurz)) return MachZug(von, nach, Rochade);
        if (von == basis + 4 && nach == basis + 2 && (st.rochaden & lang)) return MachZug(von, nach, Rochade);
        // King takes own rook: the Chess960 way of writing castling.
        if (nach == s.langerTurm && (st.rochaden & lang)) return MachZug(von, basis + 2, Rochade);
        if (nach == s.kurzerTurm && (st.rochaden & kurz)) return MachZug(von, basis + 6, Rochade);
    }
    return MachZug(von, nach, typ);
}

Zug_t LeseSanZug(Stellung_t& st, const char* text, const Stellungsdaten_t& daten) {
    while (*text && std::isspace(static_cast<unsigned char>(*text))) ++text;
    char s[64];
    size_t n = std::strlen(text);
    if (n >= sizeof s) return 0;
    std::memcpy(s, text, n + 1);

    // Marks at the end: check, mate, en passant, one annotation.
    bool schach = false, matt = false, epMarke = false, anmerkung = false;
    while (n > 0 && !IstReihe(s[n - 1])) {
        if (s[n - 1] == ' ') {
            --n;
        } else if (EndetMit(s, n, "++") || EndetMit(s, n, "#") || EndetMit(s, n, "+")) {
            if (schach || matt) return 0;
            const bool doppel = EndetMit(s, n, "++");
            (s[n - 1] == '+' && !doppel ? schach : matt) = true;
            n -= doppel ? 2 : 1;
        } else if (EndetMit(s, n, "e. p.") || EndetMit(s, n, "e.p.") || EndetMit(s, n, "ep")) {
            if (epMarke) return 0;
            epMarke = true;
            n -= EndetMit(s, n, "e. p.") ? 5 : EndetMit(s, n, "e.p.") ? 4 : 2;
        } else if (EndetMit(s, n, "!!") || EndetMit(s, n, "!?") || EndetMit(s, n, "?!") || EndetMit(s, n, "??") ||
                   s[n - 1] == '!' || s[n - 1] == '?') {
            // A lone mark takes the character before it along: it is expected after a blank.
            if (anmerkung || n < 2) return 0;
            anmerkung = true;
            n -= 2;
        } else {
            break;
        }
    }
    s[n] = 0;
    if (n < 2 || n > 6) return 0;

    const unsigned seite = st.amZug;
    const Seite_t& eigene = st.seite[seite];
    Zug_t zug = 0;
    if (!std::strcmp(s, "O-O-O") || !std::strcmp(s, "0-0-0") || !std::strcmp(s, "O-O") || !std::strcmp(s, "0-0")) {
        const bool kurz = n == 3;
        if (!(st.rochaden & ((kurz ? WeissKurz : WeissLang) << (2 * seite)))) return 0;
        zug = RochadenZug(st, kurz);
        if (!IstLegal(st, zug, daten)) return 0;
    } else {
        size_t anfang = 0;
        unsigned typ = Bauer;
        if (s[0] == 'K') typ = Koenig;
        else if (FigurAusBuchstabe(s[0]) != Leer) typ = FigurAusBuchstabe(s[0]);
        else if (!IstLinie(s[0])) return 0;
        if (typ != Bauer) anfang = 1;

        size_t ende = n;  // one past the destination
        unsigned art = typ;
        if (const unsigned umwandlung = FigurAusBuchstabe(s[n - 1])) {
            if (typ != Bauer) return 0;
            art = umwandlung + 5;
            ende = n - 1;
            if (ende > 0 && (s[ende - 1] == '=' || s[ende - 1] == '/')) --ende;
        }
        if (ende < anfang + 2 || !IstLinie(s[ende - 2]) || !IstReihe(s[ende - 1])) return 0;
        const Feld nach = FeldAus(static_cast<unsigned>(s[ende - 2] - 'a'), static_cast<unsigned>(s[ende - 1] - '0'));
        size_t rest = ende - 2;  // characters [anfang, rest) qualify the origin

        const bool aufEp = typ == Bauer && st.ep && nach == st.ep;
        const bool schlag = aufEp || (st.seite[seite ^ 1].brett[0] & Bit(nach));
        if (schlag) {
            if (rest == anfang || s[rest - 1] != 'x') return 0;
            --rest;
            if (aufEp) art = EnPassant;
        } else if (rest > anfang && s[rest - 1] == '-') {
            --rest;
        }

        Bitboard kandidaten;
        switch (typ) {
            case Springer: kandidaten = SpringerFelder[nach]; break;
            case Laeufer: kandidaten = LaeuferAngriffe(nach, daten.belegt); break;
            case Turm: kandidaten = TurmAngriffe(nach, daten.belegt); break;
            case Dame: kandidaten = DameAngriffe(nach, daten.belegt); break;
            case Koenig: kandidaten = ~Bitboard{0}; break;
            default:
                if (rest > anfang) kandidaten = ~Bitboard{0};
                else if (schlag) kandidaten = BauernAngriffe(seite ^ 1, Bit(nach));
                else {
                    const int zurueck = seite == Weiss ? 8 : -8;
                    const int eins = static_cast<int>(nach) + zurueck;
                    // No square lies behind the mover's own back rank: no pawn can get there.
                    kandidaten = eins >= 0 && eins < 64 ? Bit(static_cast<Feld>(eins)) & eigene.brett[Bauer] : 0;
                    if (!kandidaten && ReiheVon(nach) == (seite == Weiss ? 4u : 5u))
                        kandidaten = Bit(static_cast<Feld>(eins + zurueck));
                }
        }
        kandidaten &= eigene.brett[typ];
        for (size_t i = anfang; i < rest; ++i) {
            if (IstLinie(s[i])) kandidaten &= 0x0101010101010101ULL << (s[i] - 'a');
            else if (IstReihe(s[i])) kandidaten &= Bitboard{0xff} << (8 * (8 - (s[i] - '0')));
            else return 0;
        }
        // Of several candidates only the legal ones count; exactly one must be left.
        const bool mehrere = kandidaten & (kandidaten - 1);
        Zug_t gefunden = 0;
        while (kandidaten) {
            const Zug_t z = MachZug(NimmFeld(kandidaten), nach, art);
            if (mehrere && !IstLegal(st, z, daten)) continue;
            if (gefunden) return 0;
            gefunden = z;
        }
        if (!gefunden || !IstLegal(st, gefunden, daten)) return 0;
        zug = gefunden;
    }

    if (epMarke && Art(zug) != EnPassant) return 0;
    if (schach || matt) {
        Stellungsdaten_t neu;
        Rueckzug_t r;
        if (!ZugMachenLegal(st, zug, daten, neu, r)) return 0;
        const bool gibtSchach = ImSchach(st, neu);
        const bool gibtMatt = gibtSchach && SpielEnde(st, neu, nullptr);
        r.Zuruecknehmen();
        if (matt ? !gibtMatt : !gibtSchach) return 0;
    }
    return zug;
}

char* ZugSan(Stellung_t& st, Zug_t zug, const Stellungsdaten_t& daten, char* text) {
    char* t = text;
    const unsigned art = Art(zug);
    if (art == Rochade) {
        std::strcpy(t, LinieVon(Nach(zug)) == 6 ? "O-O" : "O-O-O");
        t += std::strlen(t);
    } else {
        const unsigned typ = art <= Koenig ? art : Bauer;
        const bool schlag = art == EnPassant || (st.seite[st.amZug ^ 1].brett[0] & Bit(Nach(zug)));
        if (typ == Bauer) {
            if (schlag) *t++ = static_cast<char>('a' + LinieVon(Von(zug)));
        } else {
            *t++ = " PNBRQK"[typ];
            // Name the origin's file, or rank, or both, when another piece of the type could go there too.
            Zugliste_t liste;
            const uint32_t* ende = ErzeugeZuege(st, daten, liste);
            bool andere = false, gleicheLinie = false, gleicheReihe = false;
            for (const uint32_t* p = liste; p < ende; ++p) {
                if (*p == zug || Art(*p) != art || Nach(*p) != Nach(zug)) continue;
                if (!IstLegal(st, static_cast<Zug_t>(*p), daten)) continue;
                andere = true;
                gleicheLinie |= LinieVon(Von(*p)) == LinieVon(Von(zug));
                gleicheReihe |= ReiheVon(Von(*p)) == ReiheVon(Von(zug));
            }
            if (andere) {
                if (!gleicheLinie) *t++ = static_cast<char>('a' + LinieVon(Von(zug)));
                else if (!gleicheReihe) *t++ = static_cast<char>('0' + ReiheVon(Von(zug)));
                else t = SchreibeFeld(t, Von(zug));
            }
        }
        if (schlag) *t++ = 'x';
        t = SchreibeFeld(t, Nach(zug));
        if (IstUmwandlung(zug)) {
            *t++ = '=';
            *t++ = "NBRQ"[art - UmwandlungSpringer];
        }
    }
    // Check or mate.
    Stellungsdaten_t neu;
    Rueckzug_t r;
    if (ZugMachenLegal(st, zug, daten, neu, r)) {
        if (ImSchach(st, neu)) {
            const bool matt = ZaehleLegaleZuege(st, neu) == 0;
            *t++ = matt ? '#' : '+';
        }
        r.Zuruecknehmen();
    }
    *t = 0;
    return text;
}
