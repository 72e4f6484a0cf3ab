// The block decoder on hand-made streams: every code, the successor model and
// the faults that must fail the load.
#include <gtest/gtest.h>

#include "bitbase/blockformat.h"
#include "bitbase_hilfe.h"

namespace {

using bitbase_test::Bytes;

// Decodes, expecting success; the 512 output bytes.
Bytes Entpacke(const Bytes& ein, size_t* verbraucht = nullptr) {
    Bytes aus(512, 0xEE);
    EXPECT_TRUE(BlockEntpacken(ein.data(), ein.size(), aus.data(), verbraucht));
    return aus;
}

// The stream followed by runs that fill the rest with 0x5A, in the header's marker.
Bytes MitRest(Bytes ein, int bisher) {
    const uint8_t wiederholung = static_cast<uint8_t>((ein[0] & 0xF0) | 6);
    for (int rest = 512 - bisher; rest > 0;) {
        if (rest < 4) {
            ein.insert(ein.end(), static_cast<size_t>(rest), 0x5A);
            break;
        }
        const int n = rest > 259 ? 259 : (rest > 255 ? rest - 4 : rest);
        ein.insert(ein.end(), {wiederholung, static_cast<uint8_t>(n - 4), 0x5A});
        rest -= n;
    }
    return ein;
}

void HaengeAn(Bytes& b, std::initializer_list<int> werte) {
    for (int w : werte) b.push_back(static_cast<uint8_t>(w));
}

TEST(BlockEntpacken, JederCode) {
    // Marker 7, polarity 0: W0 = 00, W1 = FF.
    const Bytes ein = {0x70,
                       0x12, 0x34,        // literals
                       0x70, 0x05,        // marked byte 0x75
                       0x71, 0x00,        // copy 3 from 0
                       0x76, 0x00, 0xAB,  // 4 x AB
                       0x70, 0x13,        // copy 7 from 10 - 7 - 3 = 0
                       0x72, 0x00, 0x01,  // copy 4 from 17 - 4 - 1 = 12
                       0x75, 0x3C,        // 3 x 3C
                       0x77, 0x02,        // 5 x W1
                       0x7F, 0x78,        // 9 and 2 x W0
                       0x73, 0x07,        // 26 x W0
                       0x76, 0xFF, 0x11,  // 259 x 11
                       0x76, 0xB7, 0x22,  // 187 x 22
                       0x99};             // never read
    Bytes erwartet = {0x12, 0x34, 0x75, 0x12, 0x34, 0x75, 0xAB, 0xAB, 0xAB, 0xAB};
    const Bytes anfang(erwartet.begin(), erwartet.begin() + 7);
    erwartet.insert(erwartet.end(), anfang.begin(), anfang.end());
    HaengeAn(erwartet, {0x75, 0x12, 0x34, 0x75, 0x3C, 0x3C, 0x3C});
    erwartet.insert(erwartet.end(), 5, 0xFF);
    erwartet.insert(erwartet.end(), 11 + 26, 0x00);
    erwartet.insert(erwartet.end(), 259, 0x11);
    erwartet.insert(erwartet.end(), 187, 0x22);
    ASSERT_EQ(erwartet.size(), 512u);
    size_t verbraucht = 0;
    EXPECT_EQ(Entpacke(ein, &verbraucht), erwartet);
    EXPECT_EQ(verbraucht, ein.size() - 1) << "the decoder stops by itself after 512 bytes";
}

TEST(BlockEntpacken, PolaritaetUndLaeufe) {
    // Polarity 1 swaps the run bytes; code 3 with p < 8 is 19..26 bytes of W0.
    Bytes ein = {0x31, 0x33, 0x07, 0x33, 0x00, 0x37, 0x00, 0x38};
    Bytes aus = Entpacke(MitRest(ein, 26 + 19 + 3 + 2));
    EXPECT_EQ(Bytes(aus.begin(), aus.begin() + 45), Bytes(45, 0xFF));
    EXPECT_EQ(Bytes(aus.begin() + 45, aus.begin() + 48), Bytes(3, 0x00));
    EXPECT_EQ(Bytes(aus.begin() + 48, aus.begin() + 50), Bytes(2, 0xFF));
    EXPECT_EQ(aus[50], 0x5A);
    // Bits 1-3 of the header carry nothing.
    ein[0] = 0x3F;
    EXPECT_EQ(Entpacke(MitRest(ein, 50)), aus);
}

TEST(BlockEntpacken, Nachfolgertabelle) {
    Nachfolgertabelle_t t;
    t.Start(0x00, 0xFF);
    EXPECT_EQ(t.vorher, 0x00);
    auto liste = [&](int x) { return Bytes(t.liste[x], t.liste[x] + 4); };
    EXPECT_EQ(liste(0x00), (Bytes{0x81, 0xFF, 0x01, 0x80}));
    EXPECT_EQ(liste(0xFF), (Bytes{0x81, 0xFF, 0x01, 0x80}));
    EXPECT_EQ(liste(0x01), (Bytes{0x01, 0xFF, 0x03, 0x80}));
    EXPECT_EQ(liste(0x80), (Bytes{0x80, 0xFF, 0x01, 0xC0}));
    EXPECT_EQ(liste(0x42), (Bytes{0x42, 0xFF, 0x01, 0x80}));
    t.Start(0xFF, 0x00);
    EXPECT_EQ(t.vorher, 0xFF);
    EXPECT_EQ(liste(0x00), (Bytes{0x7E, 0x00, 0xFE, 0x7F}));
    EXPECT_EQ(liste(0xFF), (Bytes{0x7E, 0x00, 0xFE, 0x7F}));
    EXPECT_EQ(liste(0xFE), (Bytes{0xFE, 0x00, 0xFC, 0x7F}));
    EXPECT_EQ(liste(0x7F), (Bytes{0x7F, 0x00, 0xFE, 0x3F}));

    // Move to front in four places.
    t.Start(0x00, 0xFF);
    t.vorher = 0x42;  // list (42 FF 01 80)
    t.Neu(0x42);
    EXPECT_EQ(liste(0x42), (Bytes{0x42, 0xFF, 0x01, 0x80})) << "already first";
    t.vorher = 0x42;
    t.Neu(0xFF);
    EXPECT_EQ(liste(0x42), (Bytes{0xFF, 0x42, 0x01, 0x80}));
    t.vorher = 0x42;
    t.Neu(0x01);
    EXPECT_EQ(liste(0x42), (Bytes{0x01, 0xFF, 0x42, 0x80}));
    t.vorher = 0x42;
    t.Neu(0x80);
    EXPECT_EQ(liste(0x42), (Bytes{0x80, 0x01, 0xFF, 0x42}));
    t.vorher = 0x42;
    t.Neu(0x17);
    EXPECT_EQ(liste(0x42), (Bytes{0x17, 0x80, 0x01, 0xFF}));
    EXPECT_EQ(t.vorher, 0x17);
}

TEST(BlockEntpacken, NachfolgerCode3) {
    // Polarity 1: prev = FF; list[FF] = list[00] = (7E 00 FE 7F), list[7E] = (7E 00 FE 7F).
    struct Fall {
        uint8_t p;
        Bytes erwartet;
    };
    const Fall faelle[] = {
        {0x07, Bytes(26, 0xFF)},                             // p < 8: a run of W0
        {0x08, {0x7E, 0x7E, 0x7E}},                          // three successors, slot 0 each
        {0x0D, {0x00, 0x7E, 0x00}},                          // slots 1, 0, 1
        {0xFF, Bytes(7, 0x00)},                              // seven successors, slot 1 each
        {0x9A, {0x7E, 0x00, 0x7E, 0x00, 0x00, 0x7E, 0x7E}},  // slots 0 1 0 1 1 0 0
    };
    for (const Fall& f : faelle) {
        const int n = static_cast<int>(f.erwartet.size());
        const Bytes aus = Entpacke(MitRest({0x71, 0x73, f.p}, n));
        EXPECT_EQ(Bytes(aus.begin(), aus.begin() + n), f.erwartet) << int{f.p};
        EXPECT_EQ(aus[static_cast<size_t>(n)], 0x5A) << int{f.p};
    }
}

TEST(BlockEntpacken, NachfolgerAusDerTabelleVorDemCode) {
    // Literals 05 FF 05 leave list[05] = (FF 05 01 80) and list[FF] = (05 81 FF 01).
    // Code 4 with slots 1,0,0,0 reads every list as it stood before the code:
    // 05 (slot 1 of list[05]), then FF (slot 0 of list[05], not yet updated), 05, FF.
    // Feeding those four leaves list[05] = (FF 05 ..), so code 3 with p = 8 gives 05 FF 05.
    const Bytes aus = Entpacke(MitRest({0x70, 0x05, 0xFF, 0x05, 0x74, 0x01, 0x73, 0x08}, 10));
    EXPECT_EQ(Bytes(aus.begin(), aus.begin() + 11), (Bytes{0x05, 0xFF, 0x05, 0x05, 0xFF, 0x05, 0xFF, 0x05, 0xFF, 0x05, 0x5A}));
}

TEST(BlockEntpacken, ListeVonNullNachLiteralNull) {
    // Polarity 0: list[00] starts (81 FF 01 80) and prev = W0 = 00, so a first
    // literal 00 is fed to that very list and moves to its front: (00 81 FF 01).
    // Code 4 with slots 0,1,2,3 after the literal reads it.
    Bytes aus = Entpacke(MitRest({0x70, 0x00, 0x74, 0xE4}, 5));
    EXPECT_EQ(Bytes(aus.begin(), aus.begin() + 5), (Bytes{0x00, 0x00, 0x81, 0x01, 0x80}));
    aus = Entpacke(MitRest({0x70, 0x00, 0x74, 0x02}, 5));
    EXPECT_EQ(Bytes(aus.begin(), aus.begin() + 5), (Bytes{0x00, 0xFF, 0x81, 0x81, 0x81}));
    // 00 33 00: list[00] = (33 00 81 FF), list[33] = (00 33 FF 01).
    aus = Entpacke(MitRest({0x70, 0x00, 0x33, 0x00, 0x74, 0x00}, 7));
    EXPECT_EQ(Bytes(aus.begin(), aus.begin() + 7), (Bytes{0x00, 0x33, 0x00, 0x33, 0x00, 0x33, 0x00}));
}

TEST(BlockEntpacken, FehlerhafteBloecke) {
    Bytes aus(512);
    auto scheitert = [&](const Bytes& ein) { return !BlockEntpacken(ein.data(), ein.size(), aus.data()); };
    // Copies reaching before byte 0, with each copy code.
    EXPECT_TRUE(scheitert(MitRest({0x70, 0x12, 0x70, 0x13}, 8)));
    EXPECT_TRUE(scheitert(MitRest({0x70, 0x12, 0x34, 0x71, 0x00}, 5)));
    EXPECT_TRUE(scheitert(MitRest({0x70, 0x12, 0x34, 0x35, 0x72, 0x00, 0x00}, 7)));
    EXPECT_FALSE(scheitert(MitRest({0x70, 0x12, 0x34, 0x35, 0x71, 0x00}, 6))) << "from byte 0 is fine";
    // Output past byte 512: 510 bytes, then runs, a copy or successors of more than 2.
    const Bytes bis510 = {0x70, 0x76, 0xFF, 0x11, 0x76, 0xF7, 0x11};
    for (const Bytes& code : {Bytes{0x76, 0x00, 0x11}, Bytes{0x77, 0x00}, Bytes{0x75, 0x01}, Bytes{0x71, 0x00},
                              Bytes{0x74, 0x00}, Bytes{0x73, 0x08}, Bytes{0x7A}, Bytes{0x73, 0x00}}) {
        Bytes ein = bis510;
        ein.insert(ein.end(), code.begin(), code.end());
        EXPECT_TRUE(scheitert(ein)) << int{code[0]};
    }
    Bytes genau = bis510;
    genau.push_back(0x78);
    EXPECT_FALSE(scheitert(genau)) << "exactly 512";
    // Input ending early, also inside a code's parameters.
    EXPECT_TRUE(scheitert({}));
    EXPECT_TRUE(scheitert({0x70, 0x12}));
    EXPECT_TRUE(scheitert({0x70, 0x76, 0xFF}));
}

}  // namespace
