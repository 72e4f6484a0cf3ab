// Greedy parser over every code of the block format. At each position it tries
// runs, copies, successor codes and a literal, each matched against the target
// under the don't-care mask, and takes the one that covers most output per
// stored byte. Free bits are thereby settled by whatever the chosen code
// writes, which is what makes masked bitbases small.
#include "bitbase/kompressor.h"

#include <cstring>

namespace {

constexpr int Rand = 16;  // padding after the block for 8-byte loads

inline uint64_t Lade8(const uint8_t* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    return w;
}

struct Option_t {
    enum Art_t { Literal, Kopie, Lauf, Folge } art = Literal;
    int deckt = 0;       // output bytes
    int kosten = 1000;   // stored bytes
    uint8_t code[3] = {0, 0, 0};
    int abstand = 0;     // copy: source = pos - abstand
    uint8_t wert = 0;    // run or literal byte
    uint8_t folge[8] = {};  // successor bytes
};

// More output per stored byte wins; on equal ratio the longer one.
inline bool Besser(const Option_t& a, const Option_t& b) {
    const int links = a.deckt * b.kosten, rechts = b.deckt * a.kosten;
    return links > rechts || (links == rechts && a.deckt > b.deckt);
}

class Packer_t {
public:
    Packer_t(const uint8_t* bits, const uint8_t* egal) {
        std::memcpy(ziel, bits, BlockBytes);
        std::memset(ziel + BlockBytes, 0, Rand);
        if (egal != nullptr) {
            for (int i = 0; i < BlockBytes; ++i) frei[i] = static_cast<uint8_t>(~egal[i]);
        } else {
            std::memset(frei, 0xFF, BlockBytes);
        }
        std::memset(frei + BlockBytes, 0xFF, Rand);
    }

    // Bytes of the stream, or -1 when it reaches `grenze`.
    int Packe(uint8_t kopf, uint8_t* code, int grenze);

    uint8_t aus[BlockBytes + Rand] = {};
    int literalNibbles[16] = {};

private:
    // frei: 1 bits must be matched (the inverse of the don't-care mask).
    uint8_t ziel[BlockBytes + Rand];
    uint8_t frei[BlockBytes + Rand];
    Nachfolgertabelle_t tab;
    uint8_t marke = 0, w0 = 0, w1 = 0xFF;

    bool Passt(int pos, uint8_t v) const { return ((v ^ ziel[pos]) & frei[pos]) == 0; }

    int LaufLaenge(int pos, uint8_t v, int grenze) const {
        const uint64_t muster = 0x0101010101010101ull * v;
        int k = 0;
        while (k + 8 <= grenze) {
            const uint64_t w = (muster ^ Lade8(ziel + pos + k)) & Lade8(frei + pos + k);
            if (w != 0) return k + __builtin_ctzll(w) / 8;
            k += 8;
        }
        while (k < grenze && Passt(pos + k, v)) ++k;
        return k;
    }

    // Source at pos - abstand; grenze <= abstand, so the source is all written.
    int KopieLaenge(int pos, int abstand, int grenze) const {
        const uint8_t* q = aus + pos - abstand;
        int k = 0;
        while (k + 8 <= grenze) {
            const uint64_t w = (Lade8(q + k) ^ Lade8(ziel + pos + k)) & Lade8(frei + pos + k);
            if (w != 0) return k + __builtin_ctzll(w) / 8;
            k += 8;
        }
        while (k < grenze && Passt(pos + k, q[k])) ++k;
        return k;
    }

    void Laeufe(int pos, Option_t& best) const;
    void Kopien(int pos, Option_t& best) const;
    void Folgen(int pos, Option_t& best) const;
    void Literal(int pos, Option_t& best) const;
    void Anwenden(int& pos, const Option_t& o);
    Option_t BesteOption(int pos);

    void Melde(const Option_t& o, Option_t& best) const {
        if (Besser(o, best)) best = o;
    }
};

void Packer_t::Laeufe(int pos, Option_t& best) const {
    const int rest = BlockBytes - pos;
    uint8_t kandidaten[5] = {w0, w1, static_cast<uint8_t>(ziel[pos] & frei[pos]),
                             static_cast<uint8_t>(ziel[pos] | ~frei[pos]), pos > 0 ? aus[pos - 1] : w0};
    for (int i = 0; i < 5; ++i) {
        const uint8_t v = kandidaten[i];
        bool schonGesehen = false;
        for (int j = 0; j < i; ++j) schonGesehen |= kandidaten[j] == v;
        if (schonGesehen) continue;
        const int n = LaufLaenge(pos, v, rest > 259 ? 259 : rest);
        if (n < 2) continue;
        Option_t o;
        o.art = Option_t::Lauf;
        o.wert = v;
        auto pruefe = [&](int deckt, int kosten, uint8_t c0, uint8_t c1, uint8_t c2) {
            o.deckt = deckt, o.kosten = kosten, o.code[0] = c0, o.code[1] = c1, o.code[2] = c2;
            Melde(o, best);
        };
        const uint8_t m = static_cast<uint8_t>(marke << 4);
        if (v == w0) {
            const int a = n > 9 ? 9 : n;
            pruefe(a, 1, static_cast<uint8_t>(m | (a + 6)), 0, 0);
            if (n >= 19) {
                const int b = n > 26 ? 26 : n;
                pruefe(b, 2, m | CodeNachfolger, static_cast<uint8_t>(b - 19), 0);
            }
        }
        if (v == w1 && n >= 3) pruefe(n > 258 ? 258 : n, 2, m | CodeWiederholung1, static_cast<uint8_t>((n > 258 ? 258 : n) - 3), 0);
        if (n >= 3) pruefe(3, 2, m | CodeDreifach, v, 0);
        if (n >= 4) pruefe(n, 3, m | CodeWiederholung, static_cast<uint8_t>(n - 4), v);
    }
}

void Packer_t::Kopien(int pos, Option_t& best) const {
    const int rest = BlockBytes - pos;
    const int weiteste = pos < 514 ? pos : 514;
    const uint8_t m = static_cast<uint8_t>(marke << 4);
    for (int abstand = 1; abstand <= weiteste; ++abstand) {
        if (!Passt(pos, aus[pos - abstand])) continue;
        int grenze = abstand < rest ? abstand : rest;
        if (grenze > 259) grenze = 259;
        if (grenze < 3) continue;
        const int n = KopieLaenge(pos, abstand, grenze);
        if (n < 3) continue;
        Option_t o;
        o.art = Option_t::Kopie;
        o.abstand = abstand;
        // The longest length each code allows; a longer copy leaves a shorter gap.
        int l = n > 6 ? 6 : n;
        if (abstand - l <= 63) {
            o.deckt = l, o.kosten = 2;
            o.code[0] = m | CodeKopieB, o.code[1] = static_cast<uint8_t>((l - 3) << 6 | (abstand - l));
            Melde(o, best);
        }
        l = n > 21 ? 21 : n;
        if (l >= 7 && abstand - l <= 15) {
            o.deckt = l, o.kosten = 2;
            o.code[0] = m | CodeMarkeOderKopieA, o.code[1] = static_cast<uint8_t>((l - 6) << 4 | (abstand - l));
            Melde(o, best);
        }
        if (n >= 4 && abstand - n <= 255) {
            o.deckt = n, o.kosten = 3;
            o.code[0] = m | CodeKopieLang, o.code[1] = static_cast<uint8_t>(n - 4);
            o.code[2] = static_cast<uint8_t>(abstand - n);
            Melde(o, best);
        }
    }
}

void Packer_t::Folgen(int pos, Option_t& best) const {
    const int rest = BlockBytes - pos;
    const uint8_t m = static_cast<uint8_t>(marke << 4);
    // Slot 0 or 1 per byte, up to seven bytes: the longest chain that fits.
    {
        int besteN = 0, besteBits = 0;
        uint8_t weg[8], besterWeg[8];
        auto suche = [&](auto& selbst, int k, uint8_t x, int bits) -> void {
            if (k > besteN) {
                besteN = k, besteBits = bits;
                std::memcpy(besterWeg, weg, 8);
            }
            if (k == 7 || k == rest || besteN == 7) return;
            for (int s = 0; s < 2; ++s) {
                const uint8_t b = tab.liste[x][s];
                if (!Passt(pos + k, b)) continue;
                weg[k] = b;
                selbst(selbst, k + 1, b, bits | s << k);
            }
        };
        suche(suche, 0, tab.vorher, 0);
        if (besteN >= 3) {
            Option_t o;
            o.art = Option_t::Folge;
            o.deckt = besteN, o.kosten = 2;
            o.code[0] = m | CodeNachfolger, o.code[1] = static_cast<uint8_t>(1 << besteN | besteBits);
            std::memcpy(o.folge, besterWeg, 8);
            Melde(o, best);
        }
    }
    if (rest >= 4) {
        uint8_t weg[4];
        int gefunden = -1;
        auto suche = [&](auto& selbst, int k, uint8_t x, int bits) -> void {
            if (k == 4) {
                gefunden = bits;
                return;
            }
            for (int s = 0; s < 4 && gefunden < 0; ++s) {
                const uint8_t b = tab.liste[x][s];
                if (!Passt(pos + k, b)) continue;
                weg[k] = b;
                selbst(selbst, k + 1, b, bits | s << (2 * k));
            }
        };
        suche(suche, 0, tab.vorher, 0);
        if (gefunden >= 0) {
            Option_t o;
            o.art = Option_t::Folge;
            o.deckt = 4, o.kosten = 2;
            o.code[0] = m | CodeNachfolger4, o.code[1] = static_cast<uint8_t>(gefunden);
            std::memcpy(o.folge, weg, 4);
            Melde(o, best);
        }
    }
}

void Packer_t::Literal(int pos, Option_t& best) const {
    // Free bits: rather a byte the model or the row above already knows, and
    // rather one that needs no marking.
    const uint8_t* l = tab.liste[tab.vorher];
    const uint8_t festeBits = ziel[pos] & frei[pos];
    const uint8_t kandidaten[6] = {
        l[0], pos >= 8 ? aus[pos - 8] : w0, pos > 0 ? aus[pos - 1] : w0, l[1],
        static_cast<uint8_t>(festeBits | (w0 & ~frei[pos])), static_cast<uint8_t>(festeBits | (w1 & ~frei[pos]))};
    int wahl = -1;
    for (int i = 0; i < 6; ++i) {
        if (!Passt(pos, kandidaten[i])) continue;
        if ((kandidaten[i] >> 4) != marke) {
            wahl = i;
            break;
        }
        if (wahl < 0) wahl = i;
    }
    Option_t o;
    o.art = Option_t::Literal;
    o.deckt = 1;
    o.wert = kandidaten[wahl];  // the last two always fit
    if ((o.wert >> 4) != marke) {
        o.kosten = 1, o.code[0] = o.wert;
    } else {
        o.kosten = 2, o.code[0] = static_cast<uint8_t>(marke << 4 | CodeMarkeOderKopieA), o.code[1] = o.wert & 15;
    }
    Melde(o, best);
}

void Packer_t::Anwenden(int& pos, const Option_t& o) {
    switch (o.art) {
    case Option_t::Literal:
        aus[pos++] = o.wert;
        tab.Neu(o.wert);
        break;
    case Option_t::Kopie:
        for (int k = 0; k < o.deckt; ++k) {
            aus[pos] = aus[pos - o.abstand];
            tab.Neu(aus[pos++]);
        }
        break;
    case Option_t::Lauf:
        std::memset(aus + pos, o.wert, static_cast<size_t>(o.deckt));
        pos += o.deckt;
        tab.NeuLauf(o.wert, o.deckt);
        break;
    case Option_t::Folge:
        for (int k = 0; k < o.deckt; ++k) {
            aus[pos++] = o.folge[k];
            tab.Neu(o.folge[k]);
        }
        break;
    }
}

int Packer_t::Packe(uint8_t kopf, uint8_t* code, int grenze) {
    marke = kopf >> 4;
    w0 = LaufByte0(kopf), w1 = LaufByte1(kopf);
    tab.Start(w0, w1);
    std::memset(literalNibbles, 0, sizeof literalNibbles);
    int n = 0;
    code[n++] = kopf;
    int pos = 0;
    while (pos < BlockBytes) {
        const Option_t best = BesteOption(pos);
        for (int k = 0; k < best.kosten; ++k) code[n + k] = best.code[k];
        n += best.kosten;
        if (n >= grenze) return -1;
        if (best.art == Option_t::Literal) ++literalNibbles[best.wert >> 4];
        Anwenden(pos, best);
    }
    return n;
}

Option_t Packer_t::BesteOption(int pos) {
    Option_t best;
    best.deckt = 0;
    Literal(pos, best);
    Laeufe(pos, best);
    if (best.deckt < 64) Folgen(pos, best);
    if (best.deckt < 64) Kopien(pos, best);
    return best;
}

// The marker nibble least often seen in the bytes that matter.
uint8_t SeltensteNibble(const int* zaehler) {
    int beste = 0;
    for (int i = 1; i < 16; ++i)
        if (zaehler[i] < zaehler[beste]) beste = i;
    return static_cast<uint8_t>(beste);
}

}  // namespace

int BlockKomprimieren(const uint8_t* bits, const uint8_t* egal, uint8_t kopf, uint8_t* code, int grenze,
                      uint8_t* inhalt) {
    Packer_t packer(bits, egal);
    const int n = packer.Packe(kopf, code, grenze);
    if (n >= 0) std::memcpy(inhalt, packer.aus, BlockBytes);
    return n;
}

void BlockPacken(const uint8_t* bits, const uint8_t* egal, GepackterBlock_t& ergebnis) {
    // Fill blocks: every bit that matters is 0, or every one is 1.
    bool alle0 = true, alle1 = true;
    int nibbles[16] = {};
    for (int i = 0; i < BlockBytes; ++i) {
        const uint8_t zaehlt = egal != nullptr ? static_cast<uint8_t>(~egal[i]) : 0xFF;
        alle0 &= (bits[i] & zaehlt) == 0;
        alle1 &= (bits[i] | static_cast<uint8_t>(~zaehlt)) == 0xFF;
        if (zaehlt != 0) ++nibbles[bits[i] >> 4];
    }
    if (alle0 || alle1) {
        ergebnis.art = GepackterBlock_t::Fuellung;
        ergebnis.fuellbyte = alle0 ? 0x00 : 0xFF;
        ergebnis.laenge = 0;
        std::memset(ergebnis.inhalt, ergebnis.fuellbyte, BlockBytes);
        return;
    }

    // Raw unless a compressed stream is shorter.
    ergebnis.art = GepackterBlock_t::Roh;
    ergebnis.laenge = BlockBytes;
    Packer_t packer(bits, egal);
    uint8_t code[BlockBytes + 8];
    const uint8_t erstesMarke = SeltensteNibble(nibbles);
    for (uint8_t polaritaet = 0; polaritaet < 2; ++polaritaet) {
        uint8_t marke = erstesMarke;
        for (int versuch = 0; versuch < 2; ++versuch) {
            const uint8_t kopf = static_cast<uint8_t>(marke << 4 | polaritaet);
            const int n = packer.Packe(kopf, code, ergebnis.laenge);
            if (n >= 0) {
                ergebnis.art = GepackterBlock_t::Komprimiert;
                ergebnis.laenge = n;
                std::memcpy(ergebnis.daten, code, static_cast<size_t>(n));
                std::memcpy(ergebnis.inhalt, packer.aus, BlockBytes);
            }
            // A second try with the nibble the literals of this try used least.
            const uint8_t neu = SeltensteNibble(packer.literalNibbles);
            if (n < 0 || neu == marke || packer.literalNibbles[neu] >= packer.literalNibbles[marke]) break;
            marke = neu;
        }
    }
    if (ergebnis.art == GepackterBlock_t::Roh) {
        std::memcpy(ergebnis.inhalt, bits, BlockBytes);
        std::memcpy(ergebnis.daten, ergebnis.inhalt, BlockBytes);
    }
}
