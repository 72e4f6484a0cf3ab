// Whole files: the writer's layout (fill blocks, shared blocks, padding, the
// temporary name) and the reader's round trip and refusals.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "bitbase/blockformat.h"
#include "bitbase/schreiber.h"
#include "bitbase_hilfe.h"

namespace {

using bitbase_test::Bytes;
using bitbase_test::LeseDatei;
using bitbase_test::SchreibeDatei;
using bitbase_test::TestVerzeichnis;

// Blocks of assorted kinds: fill, noise, sparse, patterned.
Bytes Gemischt(uint64_t positionen, std::mt19937& z) {
    Bytes b((positionen + 7) / 8);
    std::uniform_int_distribution<int> byte(0, 255);
    for (size_t i = 0; i < b.size(); ++i) {
        switch ((i / 512) % 5) {
        case 0: b[i] = 0; break;
        case 1: b[i] = static_cast<uint8_t>(byte(z)); break;
        case 2: b[i] = byte(z) < 10 ? 0x10 : 0xFF; break;
        case 3: b[i] = static_cast<uint8_t>((i % 8) * 33); break;
        default: b[i] = (i % 64 < 8) ? 0xFF : static_cast<uint8_t>(i / 64); break;
        }
    }
    return b;
}

void ErwarteGleich(const Bytes& bits, const Bytes* egal, const Bytes& zurueck, uint64_t positionen) {
    ASSERT_EQ(zurueck.size(), bits.size());
    for (uint64_t i = 0; i < positionen; ++i) {
        const int bit = (bits[i >> 3] >> (i & 7)) & 1, gelesen = (zurueck[i >> 3] >> (i & 7)) & 1;
        if (egal != nullptr && (((*egal)[i >> 3] >> (i & 7)) & 1)) continue;
        ASSERT_EQ(bit, gelesen) << "position " << i;
    }
}

// Every stored block can be read in full, and the file is no longer than needed.
void PruefeAufbau(const Bytes& datei, uint64_t bloecke) {
    uint64_t hoechster = 0, ende = bloecke * 5, lesEnde = 0;
    for (uint64_t k = 0; k < bloecke; ++k) {
        const uint8_t* e = &datei[k * 5];
        if (IstFuellEintrag(e)) continue;
        const uint64_t o = EintragOffset(e);
        EXPECT_GE(o, bloecke * 5);
        if (o > hoechster) {
            // Data in block order: a new block starts where the last one ended.
            EXPECT_EQ(o, ende) << "block " << k;
            hoechster = o;
            const int l = e[4];
            ende = o + static_cast<uint64_t>(l == 0 ? 512 : (l <= 124 ? l : 3 * l - 250));
        }
        lesEnde = std::max(lesEnde, o + static_cast<uint64_t>(LeseLaenge(e[4])));
    }
    EXPECT_EQ(datei.size(), std::max(ende, lesEnde));
}

TEST(SchreibeBitbase, RundreiseMitUndOhneMaske) {
    TestVerzeichnis dir;
    std::mt19937 z(11);
    for (uint64_t positionen : {81920ull, 4096ull, 5000ull, 4101ull, 7ull, 20 * 4096ull + 9}) {
        const Bytes bits = Gemischt(positionen, z);
        Bytes egal(bits.size());
        for (auto& x : egal) x = static_cast<uint8_t>(z() & z() & z());
        const std::string name = dir / "KDK.kbb";
        for (const Bytes* maske : {static_cast<const Bytes*>(nullptr), static_cast<const Bytes*>(&egal)}) {
            uint64_t groesse = 0;
            ASSERT_TRUE(SchreibeBitbase(name, bits.data(), maske ? maske->data() : nullptr, positionen, &groesse));
            const Bytes datei = LeseDatei(name);
            EXPECT_EQ(groesse, datei.size());
            PruefeAufbau(datei, (positionen + 4095) / 4096);
            Bytes zurueck;
            ASSERT_TRUE(LeseBitbase(name, positionen, zurueck));
            ErwarteGleich(bits, maske, zurueck, positionen);
            EXPECT_FALSE(std::filesystem::exists(name + ".tmp"));
        }
    }
}

TEST(SchreibeBitbase, FuellungUndGeteilteBloecke) {
    TestVerzeichnis dir;
    const std::string name = dir / "KTK.kbb";
    // All zero: twenty fill entries and nothing else.
    Bytes bits(10240, 0x00);
    uint64_t groesse = 0;
    ASSERT_TRUE(SchreibeBitbase(name, bits.data(), nullptr, 81920, &groesse));
    EXPECT_EQ(groesse, 100u);
    Bytes datei = LeseDatei(name);
    for (int k = 0; k < 20; ++k) EXPECT_EQ(Bytes(&datei[k * 5], &datei[k * 5 + 4]), (Bytes{0x00, 0xFF, 0xFF, 0xFF}));

    // Blocks A B A B ... and an all-ones block: A and B stored once each.
    std::mt19937 z(5);
    Bytes a(512), b(512);
    for (int i = 0; i < 512; ++i) a[i] = static_cast<uint8_t>(z()), b[i] = static_cast<uint8_t>(i % 8 == 0 ? z() : 0);
    for (int k = 0; k < 20; ++k) std::copy((k % 2 ? b : a).begin(), (k % 2 ? b : a).end(), bits.begin() + k * 512);
    std::fill(bits.begin() + 19 * 512, bits.end(), 0xFF);
    // Block 2 differs from A only in bits that do not matter: it shares A too.
    Bytes egal(10240, 0);
    bits[2 * 512 + 17] ^= 0x24;
    egal[2 * 512 + 17] = 0x24;
    ASSERT_TRUE(SchreibeBitbase(name, bits.data(), egal.data(), 81920, &groesse));
    datei = LeseDatei(name);
    PruefeAufbau(datei, 20);
    const uint32_t offsetA = EintragOffset(&datei[0]), offsetB = EintragOffset(&datei[5]);
    EXPECT_EQ(offsetA, 100u);
    EXPECT_EQ(datei[4], 0) << "noise is stored raw";
    EXPECT_EQ(offsetB, 612u);
    for (int k = 0; k < 19; ++k) EXPECT_EQ(EintragOffset(&datei[k * 5]), k % 2 ? offsetB : offsetA) << k;
    EXPECT_EQ(Bytes(&datei[95], &datei[99]), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_LT(groesse, 100u + 512 + 200);
    Bytes zurueck;
    ASSERT_TRUE(LeseBitbase(name, 81920, zurueck));
    ErwarteGleich(bits, &egal, zurueck, 81920);
}

TEST(SchreibeBitbase, PolsterFuerDieLeselaenge) {
    // Over 124 compressed bytes the reader takes 3L-248 bytes: a last block of
    // such a length is followed by up to two bytes of padding.
    TestVerzeichnis dir;
    const std::string name = dir / "KDK.kbb";
    std::mt19937 z(9);
    int gesehen = 0;
    for (int versuch = 0; versuch < 60 && gesehen < 3; ++versuch) {
        Bytes bits(512);
        const int literale = 100 + versuch * 3;
        for (int i = 0; i < 512; ++i) bits[i] = i < literale ? static_cast<uint8_t>(0x20 + z() % 0x50) : 0;
        uint64_t groesse = 0;
        ASSERT_TRUE(SchreibeBitbase(name, bits.data(), nullptr, 4096, &groesse));
        const Bytes datei = LeseDatei(name);
        PruefeAufbau(datei, 1);
        if (datei[4] >= 125 && (datei.size() - 5) % 3 != 2) ++gesehen;  // not 3L-248 long by itself
        Bytes zurueck;
        ASSERT_TRUE(LeseBitbase(name, 4096, zurueck));
        EXPECT_EQ(zurueck, bits);
    }
    EXPECT_GE(gesehen, 1);
}

TEST(LeseBitbase, KaputteDateien) {
    TestVerzeichnis dir;
    const std::string name = dir / "KDK.kbb";
    std::mt19937 z(2);
    const Bytes bits = Gemischt(81920, z);
    ASSERT_TRUE(SchreibeBitbase(name, bits.data(), nullptr, 81920));
    const Bytes heil = LeseDatei(name);
    Bytes zurueck;
    EXPECT_FALSE(LeseBitbase(dir / "fehlt.kbb", 81920, zurueck));

    // Cut anywhere: in the index, in the data, one byte short.
    for (size_t laenge : {size_t{0}, size_t{57}, size_t{100}, heil.size() / 2, heil.size() - 1}) {
        SchreibeDatei(name, Bytes(heil.begin(), heil.begin() + static_cast<std::ptrdiff_t>(laenge)));
        EXPECT_FALSE(LeseBitbase(name, 81920, zurueck)) << laenge;
    }
    // A compressed block whose first code copies from before byte 0.
    bitbase_test::Bitbasedatei kaputt(20);
    kaputt.Daten(3, {0x70, 0x71, 0x05, 0, 0, 0}, 6);
    SchreibeDatei(name, kaputt.Alles());
    EXPECT_FALSE(LeseBitbase(name, 81920, zurueck));
    // An offset past the end.
    kaputt.Verweis(3, 5000, 0);
    SchreibeDatei(name, kaputt.Alles());
    EXPECT_FALSE(LeseBitbase(name, 81920, zurueck));
}

TEST(SchreibeBitbase, Schreibfehler) {
    const Bytes bits(512, 0x33);
    EXPECT_FALSE(SchreibeBitbase("/nicht/vorhanden/KDK.kbb", bits.data(), nullptr, 4096));
    TestVerzeichnis dir;
    // The target is a directory: the rename fails and the temporary file goes.
    std::filesystem::create_directories(dir / "KDK.kbb/x");
    EXPECT_FALSE(SchreibeBitbase(dir / "KDK.kbb", bits.data(), nullptr, 4096));
    EXPECT_FALSE(std::filesystem::exists(dir / "KDK.kbb.tmp"));
}

}  // namespace
