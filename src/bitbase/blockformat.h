// One block of a bitbase file: 512 bytes (4096 positions), stored as a fill byte,
// raw, or compressed. The compressed form is a header byte and a stream of
// literals and codes; the codes copy earlier output, repeat bytes, or pick
// bytes from a table of recently seen successors, which suits bitbases because
// the same row patterns come back again and again.
//
// Header: bit 0 polarity (run bytes W0/W1 = 00/FF, or FF/00 when set),
// bits 4-7 the marker nibble M. A byte whose high nibble is M starts a code;
// its low nibble selects it (see Code_t).
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int BlockBytes = 512;
constexpr int BlockPositionen = BlockBytes * 8;
constexpr int IndexEintragBytes = 5;

// Low nibbles of the code bytes.
enum Code_t : uint8_t {
    CodeMarkeOderKopieA = 0,  // p <= 15: the byte M·16+p; else copy of (p>>4)+6 from back (p&15)
    CodeKopieB = 1,           // copy of (p>>6)+3, distance p&63
    CodeKopieLang = 2,        // copy of p1+4, distance p2
    CodeNachfolger = 3,       // p < 8: p+19 bytes W0; else log2(p) successors, slot 0/1 per bit
    CodeNachfolger4 = 4,      // 4 successors, two bits of slot each
    CodeDreifach = 5,         // 3 copies of p
    CodeWiederholung = 6,     // p1+4 copies of p2
    CodeWiederholung1 = 7,    // p+3 bytes W1
    CodeWiederholung0 = 8,    // 8..15: c-6 bytes W0
};

// A copy's source starts at pos - length - distance: it always lies wholly
// before the output it produces.

// The decoder's model of recent successors: for every byte the four bytes that
// followed it most recently, most recent first, and the byte written last.
struct Nachfolgertabelle_t {
    uint8_t liste[256][4];
    uint8_t vorher;

    void Start(uint8_t w0, uint8_t w1) {
        for (int x = 0; x < 256; ++x) {
            liste[x][0] = static_cast<uint8_t>(x);
            liste[x][1] = w1;
            liste[x][2] = w0 ^ 0x01;
            liste[x][3] = w0 ^ 0x80;
        }
        // No list starts with a byte twice.
        liste[0x00][0] = w0 ^ 0x81;
        liste[0xFF][0] = w0 ^ 0x81;
        liste[w0 ^ 0x01][2] = w0 ^ 0x03;
        liste[w0 ^ 0x80][3] = w0 ^ 0xC0;
        vorher = w0;
    }

    // Move to front within the four places of the previous byte's list.
    void Neu(uint8_t b) {
        uint8_t* l = liste[vorher];
        if (l[0] != b) {
            if (l[1] != b) {
                if (l[2] != b) l[3] = l[2];
                l[2] = l[1];
            }
            l[1] = l[0];
            l[0] = b;
        }
        vorher = b;
    }

    // A run of n >= 1 bytes b: the last two updates say it all.
    void NeuLauf(uint8_t b, int n) {
        Neu(b);
        if (n > 1) Neu(b);
    }
};

inline uint8_t LaufByte0(uint8_t kopf) { return (kopf & 1) ? 0xFF : 0x00; }
inline uint8_t LaufByte1(uint8_t kopf) { return (kopf & 1) ? 0x00 : 0xFF; }

// Decodes one compressed block of `laenge` input bytes into 512 output bytes.
// False when a copy reaches before byte 0, output would pass byte 512, or the
// input ends first. `verbraucht` (optional) receives the input bytes used.
bool BlockEntpacken(const uint8_t* eingabe, size_t laenge, uint8_t* ausgabe, size_t* verbraucht = nullptr);

// ---- Index entries ----

// Bytes 1-3 all FF: the whole block is byte 0.
inline bool IstFuellEintrag(const uint8_t* e) { return e[1] == 0xFF && e[2] == 0xFF && e[3] == 0xFF; }
inline uint32_t EintragOffset(const uint8_t* e) {
    return uint32_t{e[0]} | uint32_t{e[1]} << 8 | uint32_t{e[2]} << 16 | uint32_t{e[3]} << 24;
}
// Bytes the reader takes from the offset for length code L: 512 raw, L up to
// 124 exactly, beyond that 3L-248 (the stored data is 3L-250..3L-248 long).
inline int LeseLaenge(int l) { return l == 0 ? BlockBytes : (l >= 125 ? 3 * l - 248 : l); }
// Length code of `n` stored compressed bytes (1..517).
inline int LaengenCode(int n) { return n <= 124 ? n : (n + 248 + 2) / 3; }
