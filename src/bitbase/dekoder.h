// The decoding loop of a compressed block, shared by the decompressor and the
// text dump: the observer hears of every code before its output is written.
#pragma once

#include <cstring>

#include "bitbase/blockformat.h"

// What one code did, for the observer.
struct DekodierSchritt_t {
    enum Art_t { Kopf, Literal, Markiert, KopieA, KopieB, KopieLang, Lauf0b, Nachfolger, Nachfolger4,
                 Dreifach, Wiederholung, Lauf1, Lauf0a } art;
    int pos;           // output position before the code
    const uint8_t* bytes;  // the code's input bytes
    int anzahlBytes;
    int laenge;        // output bytes
    int quelle;        // copy source start
    uint8_t wert;      // byte repeated or marked
};

struct KeinBeobachter_t {
    void operator()(const DekodierSchritt_t&) const {}
    void Fehler(int) const {}
};

template <class Beobachter>
bool Dekodiere(const uint8_t* ein, size_t laenge, uint8_t* aus, size_t& verbraucht, Beobachter&& beob) {
    verbraucht = 0;
    if (laenge < 1) {
        beob.Fehler(0);
        return false;
    }
    const uint8_t kopf = ein[0];
    const uint8_t w0 = LaufByte0(kopf), w1 = LaufByte1(kopf);
    const uint8_t marke = kopf >> 4;
    Nachfolgertabelle_t tab;
    tab.Start(w0, w1);
    beob(DekodierSchritt_t{DekodierSchritt_t::Kopf, 0, ein, 1, 0, 0, 0});

    size_t i = 1;
    int pos = 0;
    auto fehler = [&]() {
        verbraucht = i;
        beob.Fehler(pos);
        return false;
    };
    while (pos < BlockBytes) {
        if (i >= laenge) return fehler();
        const uint8_t* code = ein + i;
        const uint8_t b = ein[i++];
        if ((b >> 4) != marke) {
            beob(DekodierSchritt_t{DekodierSchritt_t::Literal, pos, code, 1, 1, 0, b});
            aus[pos++] = b;
            tab.Neu(b);
            continue;
        }
        const int c = b & 15;
        const int parameter = c == CodeKopieLang || c == CodeWiederholung ? 2 : (c >= CodeWiederholung0 ? 0 : 1);
        if (i + parameter > laenge) return fehler();
        const uint8_t p = parameter > 0 ? ein[i] : 0;
        const uint8_t p2 = parameter > 1 ? ein[i + 1] : 0;
        i += parameter;
        const int n = 1 + parameter;

        int kopieLaenge = 0, abstand = 0;
        int laufLaenge = 0;
        uint8_t laufWert = 0;
        DekodierSchritt_t::Art_t art{};
        switch (c) {
        case CodeMarkeOderKopieA:
            if (p <= 15) {
                const uint8_t wert = static_cast<uint8_t>(marke << 4 | p);
                beob(DekodierSchritt_t{DekodierSchritt_t::Markiert, pos, code, n, 1, 0, wert});
                aus[pos++] = wert;
                tab.Neu(wert);
                continue;
            }
            art = DekodierSchritt_t::KopieA, kopieLaenge = (p >> 4) + 6, abstand = p & 15;
            break;
        case CodeKopieB:
            art = DekodierSchritt_t::KopieB, kopieLaenge = (p >> 6) + 3, abstand = p & 63;
            break;
        case CodeKopieLang:
            art = DekodierSchritt_t::KopieLang, kopieLaenge = p + 4, abstand = p2;
            break;
        case CodeNachfolger:
        case CodeNachfolger4: {
            // All bytes are chosen from the table as it stands before the code.
            uint8_t wahl[8];
            int m = 0;
            if (c == CodeNachfolger4) {
                m = 4;
            } else if (p < 8) {
                art = DekodierSchritt_t::Lauf0b, laufLaenge = p + 19, laufWert = w0;
                break;
            } else {
                while ((p >> (m + 1)) != 0) ++m;
            }
            uint8_t x = tab.vorher;
            for (int k = 0; k < m; ++k) {
                const int platz = c == CodeNachfolger4 ? (p >> (2 * k)) & 3 : (p >> k) & 1;
                x = tab.liste[x][platz];
                wahl[k] = x;
            }
            beob(DekodierSchritt_t{c == CodeNachfolger4 ? DekodierSchritt_t::Nachfolger4 : DekodierSchritt_t::Nachfolger,
                                   pos, code, n, m, 0, p});
            if (pos + m > BlockBytes) return fehler();
            for (int k = 0; k < m; ++k) {
                aus[pos++] = wahl[k];
                tab.Neu(wahl[k]);
            }
            continue;
        }
        case CodeDreifach:
            art = DekodierSchritt_t::Dreifach, laufLaenge = 3, laufWert = p;
            break;
        case CodeWiederholung:
            art = DekodierSchritt_t::Wiederholung, laufLaenge = p + 4, laufWert = p2;
            break;
        case CodeWiederholung1:
            art = DekodierSchritt_t::Lauf1, laufLaenge = p + 3, laufWert = w1;
            break;
        default:
            art = DekodierSchritt_t::Lauf0a, laufLaenge = c - 6, laufWert = w0;
            break;
        }
        if (kopieLaenge > 0) {
            const int quelle = pos - kopieLaenge - abstand;
            beob(DekodierSchritt_t{art, pos, code, n, kopieLaenge, quelle, 0});
            if (quelle < 0 || pos + kopieLaenge > BlockBytes) return fehler();
            for (int k = 0; k < kopieLaenge; ++k) {
                const uint8_t v = aus[quelle + k];
                aus[pos++] = v;
                tab.Neu(v);
            }
        } else {
            beob(DekodierSchritt_t{art, pos, code, n, laufLaenge, 0, laufWert});
            if (pos + laufLaenge > BlockBytes) return fehler();
            std::memset(aus + pos, laufWert, static_cast<size_t>(laufLaenge));
            pos += laufLaenge;
            tab.NeuLauf(laufWert, laufLaenge);
        }
    }
    verbraucht = i;
    return true;
}
