#include "bitbase/erklaeren.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

#include "bitbase/dekoder.h"
#include "bitbase/index.h"

namespace {

[[gnu::format(printf, 2, 3)]] void Zeile(std::string& text, const char* format, ...) {
    char puffer[256];
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(puffer, sizeof puffer, format, args);
    va_end(args);
    if (n > 0) text.append(puffer, static_cast<size_t>(n < static_cast<int>(sizeof puffer) ? n : sizeof puffer - 1));
}

struct Erklaerer_t {
    std::string& text;
    uint8_t w0 = 0, w1 = 0;

    void operator()(const DekodierSchritt_t& s) {
        using A = DekodierSchritt_t;
        const uint8_t* b = s.bytes;
        switch (s.art) {
        case A::Kopf: {
            const uint8_t m = b[0] & 0xF0;
            w0 = LaufByte0(b[0]), w1 = LaufByte1(b[0]);
            Zeile(text, "   0: %02x       Markierung %02x..%02x; Wdh0=0x%02x, Wdh1=0x%02x\n", b[0] & 0xF1, m, m + 15, w0, w1);
            break;
        }
        case A::Literal: Zeile(text, "%4d: %02x\n", s.pos, b[0]); break;
        case A::Markiert: Zeile(text, "%4d: %02x %02x    Markiertes Zeichen 0x%02x\n", s.pos, b[0], b[1], s.wert); break;
        case A::KopieA:
            Zeile(text, "%4d: %02x %02x    kurze Kopie (a): %d Zeichen ab Position %d\n", s.pos, b[0], b[1], s.laenge, s.quelle);
            break;
        case A::KopieB:
            Zeile(text, "%4d: %02x %02x    kurze Kopie (b): %d Zeichen ab Position %d\n", s.pos, b[0], b[1], s.laenge, s.quelle);
            break;
        case A::KopieLang:
            Zeile(text, "%4d: %02x %02x %02x lange Kopie: %d Zeichen ab Position %d\n", s.pos, b[0], b[1], b[2], s.laenge,
                  s.quelle);
            break;
        case A::Lauf0b:
            Zeile(text, "%4d: %02x %02x    Wiederholung 0b (0x%02x), L\xC3\xA4nge %d\n", s.pos, b[0], b[1], w0, s.laenge);
            break;
        case A::Nachfolger:
            Zeile(text, "%4d: %02x %02x    letzte/vorletzte Nachfolger (0x%02x), L\xC3\xA4nge %d\n", s.pos, b[0], b[1], b[1],
                  s.laenge);
            break;
        case A::Nachfolger4: Zeile(text, "%4d: %02x %02x    letzte 4 Nachfolger\n", s.pos, b[0], b[1]); break;
        case A::Dreifach:
            Zeile(text, "%4d: %02x %02x    genau 3 Zeichen Wiederholung (0x%02x)\n", s.pos, b[0], b[1], s.wert);
            break;
        case A::Wiederholung:
            Zeile(text, "%4d: %02x %02x %02x Wiederholung (0x%02x), L\xC3\xA4nge %d\n", s.pos, b[0], b[1], b[2], s.wert,
                  s.laenge);
            break;
        case A::Lauf1:
            Zeile(text, "%4d: %02x %02x    Wiederholung 1 (0x%02x), L\xC3\xA4nge %d\n", s.pos, b[0], b[1], w1, s.laenge);
            break;
        case A::Lauf0a:
            Zeile(text, "%4d: %02x       Wiederholung 0a (0x%02x), L\xC3\xA4nge %d\n", s.pos, b[0], w0, s.laenge);
            break;
        }
    }
    void Fehler(int pos) { Zeile(text, "%4d: Fehler\n", pos); }
};

}  // namespace

bool BlockErklaeren(const uint8_t* eingabe, size_t laenge, std::string& text) {
    uint8_t ausgabe[BlockBytes];
    size_t verbraucht = 0;
    if (!Dekodiere(eingabe, laenge, ausgabe, verbraucht, Erklaerer_t{text})) return false;
    Zeile(text, "%4d: komprimiert zu %d Bytes\n", BlockBytes, static_cast<int>(verbraucht));
    return true;
}

int ErklaereBitbase(const char* stamm) {
    const size_t stammLaenge = std::strlen(stamm);
    if (stammLaenge + 4 > 1023) return 0;
    const std::string kbb = std::string(stamm) + ".kbb", txt = std::string(stamm) + ".txt";
    const char* name = std::strrchr(stamm, '/');
    name = name != nullptr ? name + 1 : stamm;
    std::FILE* ein = std::fopen(kbb.c_str(), "rb");
    if (ein == nullptr) return 0;
    std::FILE* aus = std::fopen(txt.c_str(), "w");
    if (aus == nullptr) {
        std::fclose(ein);
        return 0;
    }

    // The index as far as the file holds it.
    const uint64_t indexBytes = AnzahlPositionen(name) / 8 * IndexEintragBytes / BlockBytes;
    std::vector<uint8_t> index(indexBytes);
    const size_t gelesen = std::fread(index.data(), 1, index.size(), ein);
    const size_t eintraege = gelesen / IndexEintragBytes;

    std::string text = "#################\n###   Index   ###\n#################\n\n";
    int64_t hoechster = -1;
    for (size_t k = 0; k < eintraege; ++k) {
        const uint8_t* e = &index[k * IndexEintragBytes];
        Zeile(text, "%8ld: %02x %02x %02x %02x %02x ", static_cast<long>(k), e[0], e[1], e[2], e[3], e[4]);
        if (IstFuellEintrag(e)) {
            // Any other fill byte prints nothing more.
            if (e[0] == 0x00) text += "00 .. 00\n";
            if (e[0] == 0xFF) text += "ff .. ff\n";
            continue;
        }
        Zeile(text, "Position %02x%02x%02x%02x ", e[3], e[2], e[1], e[0]);
        if (e[4] == 0) {
            text += "512";
        } else if (e[4] >= 125) {
            Zeile(text, "%d..%d", 3 * e[4] - 250, 3 * e[4] - 248);
        } else {
            Zeile(text, "%d", e[4]);
        }
        text += " Bytes";
        const int64_t offset = EintragOffset(e);
        if (offset <= hoechster) text += " Wiederholung";
        if (offset > hoechster) hoechster = offset;
        text += '\n';
    }
    std::fwrite(text.data(), 1, text.size(), aus);

    hoechster = -1;
    for (size_t k = 0; k < eintraege; ++k) {
        const uint8_t* e = &index[k * IndexEintragBytes];
        const int64_t offset = EintragOffset(e);
        if (IstFuellEintrag(e) || offset <= hoechster) continue;
        hoechster = offset;
        text.clear();
        Zeile(text, "\n##########################\n###   Block %-8ld   ###\n##########################\n\n",
              static_cast<long>(k));
        if (e[4] == 0) {
            text += "unkomprimierte Daten\n";
        } else {
            uint8_t daten[3 * 255 - 248];
            const size_t n = static_cast<size_t>(LeseLaenge(e[4]));
            if (std::fseek(ein, static_cast<long>(offset), SEEK_SET) == 0 && std::fread(daten, 1, n, ein) == n) {
                BlockErklaeren(daten, n, text);
            } else {
                Zeile(text, "%4d: Fehler\n", 0);
            }
        }
        std::fwrite(text.data(), 1, text.size(), aus);
    }
    std::fclose(aus);
    std::fclose(ein);
    return 0;
}
