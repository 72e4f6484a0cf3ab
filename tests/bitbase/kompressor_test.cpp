// The block compressor: whatever it chooses must decode to the bits that
// matter, and it must find the cheap forms where they exist.
#include <gtest/gtest.h>

#include <random>

#include "bitbase/kompressor.h"
#include "bitbase_hilfe.h"

namespace {

using bitbase_test::Bytes;

// Kinds of block content that occur in bitbases, and some that stress the coder.
Bytes Inhalt(int art, std::mt19937& z) {
    Bytes b(512);
    std::uniform_int_distribution<int> byte(0, 255);
    Bytes zeile(64);
    for (auto& x : zeile) x = static_cast<uint8_t>(byte(z));
    for (int i = 0; i < 512; ++i) {
        switch (art) {
        case 0: b[i] = static_cast<uint8_t>(byte(z)); break;                          // noise
        case 1: b[i] = byte(z) < 12 ? static_cast<uint8_t>(1 << (byte(z) & 7)) : 0; break;  // sparse
        case 2: b[i] = zeile[i % 8]; break;                                            // row pattern
        case 3: b[i] = byte(z) < 20 ? static_cast<uint8_t>(byte(z)) : zeile[i % 64]; break;  // board pattern, noisy
        case 4: b[i] = (i / 37) % 2 ? 0xFF : 0x00; break;                              // runs of both
        case 5: b[i] = static_cast<uint8_t>(i); break;                                 // every marker nibble
        case 6: b[i] = i == 300 ? 0x7F : 0xFF; break;                                  // nearly full
        case 7: b[i] = zeile[(i / 16) % 4] ^ (byte(z) < 8 ? 0x10 : 0); break;           // slow change
        default: b[i] = (i * 7 / 64) % 3 == 0 ? zeile[i % 3] : static_cast<uint8_t>(0xF0 | (i & 15)); break;
        }
    }
    return b;
}

Bytes Maske(int art, std::mt19937& z) {
    Bytes m(512, 0);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 512; ++i) {
        switch (art) {
        case 0: break;
        case 1: m[i] = static_cast<uint8_t>(byte(z) & byte(z)); break;    // a quarter of the bits
        case 2: m[i] = (i % 8 == 3 || i % 64 < 8) ? 0xFF : 0; break;       // whole rows
        case 3: m[i] = static_cast<uint8_t>(~(1 << (i & 7))); break;       // one bit per byte matters
        default: m[i] = 0x81; break;                                       // two files everywhere
        }
    }
    return m;
}

// Checks a packed block against its input; returns the stored size.
int Pruefe(const Bytes& bits, const Bytes& maske, const GepackterBlock_t& p, const std::string& wo) {
    for (int i = 0; i < 512; ++i) {
        EXPECT_EQ((p.inhalt[i] ^ bits[i]) & ~maske[i], 0) << wo << " byte " << i;
        if (((p.inhalt[i] ^ bits[i]) & ~maske[i]) != 0) return 0;
    }
    switch (p.art) {
    case GepackterBlock_t::Fuellung:
        EXPECT_TRUE(p.fuellbyte == 0x00 || p.fuellbyte == 0xFF) << wo;
        EXPECT_EQ(Bytes(p.inhalt, p.inhalt + 512), Bytes(512, p.fuellbyte)) << wo;
        return 0;
    case GepackterBlock_t::Roh:
        EXPECT_EQ(p.laenge, 512) << wo;
        EXPECT_EQ(Bytes(p.daten, p.daten + 512), Bytes(p.inhalt, p.inhalt + 512)) << wo;
        return 512;
    case GepackterBlock_t::Komprimiert: {
        EXPECT_LT(p.laenge, 512) << wo;
        EXPECT_EQ(p.daten[0] & 0x0E, 0) << wo << ": bits 1-3 of the header stay clear";
        Bytes aus(512);
        size_t verbraucht = 0;
        EXPECT_TRUE(BlockEntpacken(p.daten, static_cast<size_t>(p.laenge), aus.data(), &verbraucht)) << wo;
        EXPECT_EQ(verbraucht, static_cast<size_t>(p.laenge)) << wo;
        EXPECT_EQ(aus, Bytes(p.inhalt, p.inhalt + 512)) << wo;
        return p.laenge;
    }
    }
    return 0;
}

TEST(BlockPacken, RundreiseMitUndOhneMaske) {
    std::mt19937 z(20170101);
    GepackterBlock_t p;
    for (int art = 0; art < 9; ++art) {
        for (int maskenArt = 0; maskenArt < 5; ++maskenArt) {
            for (int wiederholung = 0; wiederholung < 3; ++wiederholung) {
                const Bytes bits = Inhalt(art, z), maske = Maske(maskenArt, z);
                const std::string wo = "art " + std::to_string(art) + " maske " + std::to_string(maskenArt);
                BlockPacken(bits.data(), maske.data(), p);
                const int mitMaske = Pruefe(bits, maske, p, wo);
                if (maskenArt == 0) {
                    BlockPacken(bits.data(), nullptr, p);
                    EXPECT_EQ(Pruefe(bits, maske, p, wo + " nullptr"), mitMaske) << "no mask is an empty mask";
                }
            }
        }
    }
}

TEST(BlockPacken, JederKopf) {
    // Every marker nibble with both polarities, on content that uses every nibble.
    std::mt19937 z(7);
    for (int art : {3, 5, 8}) {
        const Bytes bits = Inhalt(art, z), maske = Maske(art == 3 ? 1 : 0, z);
        for (int kopf = 0; kopf < 32; ++kopf) {
            uint8_t code[520], inhalt[512];
            const int n = BlockKomprimieren(bits.data(), maske.data(), static_cast<uint8_t>((kopf >> 1) << 4 | (kopf & 1)), code, 517, inhalt);
            ASSERT_GT(n, 1);
            Bytes aus(512);
            ASSERT_TRUE(BlockEntpacken(code, static_cast<size_t>(n), aus.data())) << kopf;
            EXPECT_EQ(aus, Bytes(inhalt, inhalt + 512)) << kopf;
            for (int i = 0; i < 512; ++i) ASSERT_EQ((inhalt[i] ^ bits[i]) & ~maske[i], 0) << kopf << " " << i;
        }
    }
}

TEST(BlockPacken, FuellungRohUndKlein) {
    GepackterBlock_t p;
    const Bytes null(512, 0x00), voll(512, 0xFF), allesEgal(512, 0xFF);
    BlockPacken(null.data(), nullptr, p);
    EXPECT_EQ(p.art, GepackterBlock_t::Fuellung);
    EXPECT_EQ(p.fuellbyte, 0x00);
    BlockPacken(voll.data(), nullptr, p);
    EXPECT_EQ(p.art, GepackterBlock_t::Fuellung);
    EXPECT_EQ(p.fuellbyte, 0xFF);
    // Free bits make a fill block of anything whose other bits agree.
    std::mt19937 z(3);
    Bytes bits = Inhalt(0, z), maske(512);
    for (int i = 0; i < 512; ++i) maske[i] = static_cast<uint8_t>(~bits[i]);
    BlockPacken(bits.data(), maske.data(), p);
    EXPECT_EQ(p.art, GepackterBlock_t::Fuellung);
    EXPECT_EQ(p.fuellbyte, 0xFF);
    BlockPacken(bits.data(), allesEgal.data(), p);
    EXPECT_EQ(p.art, GepackterBlock_t::Fuellung);

    // Noise stays raw.
    BlockPacken(bits.data(), nullptr, p);
    EXPECT_EQ(p.art, GepackterBlock_t::Roh);

    // An 8-byte row repeated: the row, then copies doubling it (a copy never
    // overlaps its source): 8, 16 with short copies, 32, 64, 128, 256 with long ones.
    bits = Inhalt(2, z);
    BlockPacken(bits.data(), nullptr, p);
    ASSERT_EQ(p.art, GepackterBlock_t::Komprimiert);
    EXPECT_LE(p.laenge, 1 + 8 + 2 * 2 + 4 * 3);
    // Runs of 00 and FF: a handful of run codes.
    bits = Inhalt(4, z);
    BlockPacken(bits.data(), nullptr, p);
    EXPECT_LE(p.laenge, 1 + 14 * 2);

    // Only one bit per byte matters, and it is always 0 but in one byte: the
    // free bits become 0 and the block is a run with one odd byte in it.
    bits = Inhalt(0, z);
    maske = Maske(3, z);
    for (int i = 0; i < 512; ++i) bits[i] = static_cast<uint8_t>(bits[i] & ~(1 << (i & 7)));
    bits[200] |= 1;  // 200 & 7 == 0
    BlockPacken(bits.data(), maske.data(), p);
    ASSERT_EQ(p.art, GepackterBlock_t::Komprimiert);
    EXPECT_LE(p.laenge, 10);
}

}  // namespace
