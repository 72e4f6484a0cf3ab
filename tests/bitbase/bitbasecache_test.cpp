// The block cache: sizing, lookups with move to front, eviction by age over the
// chain ends, the search path, and every way a load can fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <random>

#include "bitbase/bitbasecache.h"
#include "bitbase/schreiber.h"
#include "bitbase_hilfe.h"

namespace {

using bitbase_test::Bitbasedatei;
using bitbase_test::Bytes;
using bitbase_test::SchreibeDatei;
using bitbase_test::TestVerzeichnis;

// A cache whose blocks come from nowhere: byte i of block k of NAME is k + i + name[1],
// and the name "KXK" fails. Counts the loads.
class ZaehlCache_t : public BitbaseCache_t {
public:
    using BitbaseCache_t::BitbaseCache_t;
    int ladungen = 0;
    bool LadeBlock(BitbaseBlock_t& e) override {
        ++ladungen;
        if (std::strcmp(e.name, "KXK") == 0) return false;
        for (int i = 0; i < 512; ++i) e.daten[i] = static_cast<uint8_t>(e.schluessel / 512 + static_cast<uint64_t>(i) + static_cast<uint8_t>(e.name[1]));
        return true;
    }
};

int ErwartetesBit(const char* name, uint64_t index) {
    const uint8_t byte = static_cast<uint8_t>((index >> 12) + ((index >> 3) & 511) + static_cast<uint8_t>(name[1]));
    return (byte >> (index & 7)) & 1;
}

uint64_t Index(uint64_t block, uint64_t rest = 0) { return block * 4096 + rest; }

TEST(BitbaseCache, Groessen) {
    BitbaseCache_t ohne(0);
    EXPECT_EQ(ohne.Groesse(), 0u);
    EXPECT_EQ(ohne.MaxSteine(), 0);
    EXPECT_EQ(ohne.HoleBit("KDK", 0, false), -1);
    EXPECT_EQ(ohne.Blockquelle(), &ohne);

    struct Fall {
        uint64_t groesse, eintraege, buckets;
    };
    // At least 1704 bytes; buckets: the smallest power of two above size / 1136.
    for (const Fall& f : {Fall{1, 3, 2}, Fall{1704, 3, 2}, Fall{1705, 3, 2}, Fall{2272, 4, 4}, Fall{5680, 10, 8},
                          Fall{9087, 15, 8}, Fall{9088, 16, 16}, Fall{1 << 20, 1846, 1024}}) {
        BitbaseCache_t c(f.groesse);
        EXPECT_EQ(c.Groesse(), std::max<uint64_t>(f.groesse, 1704)) << f.groesse;
        EXPECT_EQ(c.Eintraege(), f.eintraege) << f.groesse;
        EXPECT_EQ(c.Buckets(), f.buckets) << f.groesse;
        EXPECT_EQ(c.MaxSteine(), 6) << f.groesse;
    }

    // The same size keeps the blocks; another one discards them and MaxSteine returns to 6.
    ZaehlCache_t c(5680);
    EXPECT_EQ(c.HoleBit("KXK", 0, false), -1);
    EXPECT_EQ(c.MaxSteine(), 6) << "a failed load of an existing source lowers nothing";
    EXPECT_EQ(c.HoleBit("KDK", 5, false), ErwartetesBit("KDK", 5));
    c.SetzeGroesse(5680);
    EXPECT_EQ(c.HoleBit("KDK", 5, true), ErwartetesBit("KDK", 5));
    c.SetzeGroesse(1);
    EXPECT_EQ(c.HoleBit("KDK", 5, true), -1);
    c.SetzeGroesse(1000);  // also 1704
    EXPECT_EQ(c.HoleBit("KDK", 5, false), ErwartetesBit("KDK", 5));
    EXPECT_EQ(c.HoleBit("KDK", 5, true), ErwartetesBit("KDK", 5));
    c.SetzeGroesse(0);
    EXPECT_EQ(c.HoleBit("KDK", 5, false), -1);
    EXPECT_EQ(c.MaxSteine(), 0);
    EXPECT_EQ(c.Groesse(), 0u);
}

TEST(BitbaseCache, TrefferUndBits) {
    ZaehlCache_t c(1 << 16);
    uint64_t letzterBlock = ~0ull;
    for (uint64_t i : {0ull, 1ull, 7ull, 8ull, 4095ull, 4096ull, 81919ull, 123456789ull}) {
        if (i >> 12 != letzterBlock) {
            EXPECT_EQ(c.HoleBit("KDK", i, true), -1) << "only cached blocks with nurImCache";
        }
        letzterBlock = i >> 12;
        EXPECT_EQ(c.HoleBit("KDK", i, false), ErwartetesBit("KDK", i)) << i;
        EXPECT_EQ(c.HoleBit("KDK", i, true), ErwartetesBit("KDK", i)) << i;
        EXPECT_EQ(c.HoleBit("KTK", i, false), ErwartetesBit("KTK", i)) << "names keep blocks apart";
    }
    EXPECT_EQ(c.ladungen, 2 * 4) << "four blocks of each name";
    EXPECT_EQ(c.HoleBit("KDDDDDK", 0, false), -1) << "longer than six letters";
}

TEST(BitbaseCache, ErsterImBucketUndLru) {
    // Three entries, two buckets. For "KDK" the hash parity is the block's
    // (470131 and all letter weights are odd, and K+D+K is even): blocks 0 and 2
    // share bucket 0, blocks 1 and 3 bucket 1.
    for (bool treffer : {false, true}) {
        ZaehlCache_t c(1704);
        EXPECT_EQ(c.HoleBit("KDK", Index(0), false), ErwartetesBit("KDK", Index(0)));
        EXPECT_EQ(c.HoleBit("KDK", Index(2), false), ErwartetesBit("KDK", Index(2)));
        EXPECT_EQ(c.ErsterImBucket("KDK", Index(0))->schluessel, 2u * 512);
        EXPECT_EQ(c.HoleBit("KDK", Index(1), false), ErwartetesBit("KDK", Index(1)));
        if (treffer) {
            // A hit moves block 0 to the front and makes it the youngest.
            EXPECT_EQ(c.HoleBit("KDK", Index(0, 9), true), ErwartetesBit("KDK", Index(0, 9)));
            EXPECT_EQ(c.ErsterImBucket("KDK", Index(0))->schluessel, 0u);
        }
        // Block 3: no free entry; the candidates are the chain ends of bucket 0
        // (block 0 or 2) and of bucket 1 (block 1); the oldest goes.
        EXPECT_EQ(c.HoleBit("KDK", Index(3), false), ErwartetesBit("KDK", Index(3)));
        EXPECT_EQ(c.ladungen, 4);
        EXPECT_EQ(c.ErsterImBucket("KDK", Index(3))->schluessel, 3u * 512);
        const uint64_t weg = treffer ? 2 : 0, bleibt = treffer ? 0 : 2;
        EXPECT_EQ(c.HoleBit("KDK", Index(weg), true), -1) << treffer;
        EXPECT_NE(c.HoleBit("KDK", Index(bleibt), true), -1) << treffer;
        EXPECT_NE(c.HoleBit("KDK", Index(1), true), -1) << treffer;
        EXPECT_NE(c.HoleBit("KDK", Index(3), true), -1) << treffer;
        // A second lookup after a miss finds the block first in its chain.
        EXPECT_EQ(c.HoleBit("KDK", Index(weg), false), ErwartetesBit("KDK", Index(weg)));
        EXPECT_EQ(c.ErsterImBucket("KDK", Index(weg))->schluessel, weg * 512);
    }
}

TEST(BitbaseCache, FehlschlagGibtDenEintragZurueck) {
    ZaehlCache_t c(1704);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(c.HoleBit("KXK", Index(static_cast<uint64_t>(i)), false), -1);
    // The three entries are still free: three blocks load without evicting.
    for (uint64_t k = 0; k < 3; ++k) EXPECT_NE(c.HoleBit("KDK", Index(k), false), -1);
    for (uint64_t k = 0; k < 3; ++k) EXPECT_NE(c.HoleBit("KDK", Index(k), true), -1);
    EXPECT_EQ(c.ladungen, 5 + 3);
}

TEST(BitbaseCache, DateienUndPfad) {
    TestVerzeichnis dir;
    std::filesystem::create_directories(dir / "a");
    std::filesystem::create_directories(dir / "b");
    std::mt19937 z(1);
    Bytes bitsA(10240), bitsB(10240);
    for (size_t i = 0; i < bitsA.size(); ++i) bitsA[i] = static_cast<uint8_t>(z() % 3 ? 0 : z()), bitsB[i] = static_cast<uint8_t>(~bitsA[i]);
    ASSERT_TRUE(SchreibeBitbase(dir / "b/KDK.kbb", bitsB.data(), nullptr, 81920));
    auto bit = [](const Bytes& b, uint64_t i) { return (b[i >> 3] >> (i & 7)) & 1; };

    BitbaseCache_t c(1 << 20);
    EXPECT_EQ(c.Pfad(), ".");
    c.SetzePfad(dir / "a" + ";" + dir / "b");
    for (uint64_t i = 0; i < 81920; i += 997) ASSERT_EQ(c.HoleBit("KDK", i, false), bit(bitsB, i)) << i;
    // The first directory that holds the file wins.
    ASSERT_TRUE(SchreibeBitbase(dir / "a/KDK.kbb", bitsA.data(), nullptr, 81920));
    c.SetzeGroesse(2 << 20);
    c.SetzePfad(dir / "a" + ";" + dir / "b");
    for (uint64_t i = 0; i < 81920; i += 997) ASSERT_EQ(c.HoleBit("KDK", i, false), bit(bitsA, i)) << i;
    // An empty element is the root directory; a trailing one as well.
    c.SetzeGroesse(1 << 20);
    c.SetzePfad(";" + dir / "b;");
    EXPECT_EQ(c.HoleBit("KDK", 4096 * 7 + 5, false), bit(bitsB, 4096 * 7 + 5));
    EXPECT_EQ(c.MaxSteine(), 6);
    // Blocks past the index fail quietly.
    EXPECT_EQ(c.HoleBit("KDK", 4096 * 20, false), -1);
    EXPECT_EQ(c.MaxSteine(), 6);
}

TEST(BitbaseCache, FehlendeDateiSenktMaxSteine) {
    TestVerzeichnis dir;
    BitbaseCache_t gemeinsam(1704);
    gemeinsam.SetzePfad(dir.pfad.string());
    BitbaseCache_t thread(1 << 16, &gemeinsam);
    EXPECT_EQ(thread.Blockquelle(), &gemeinsam);
    EXPECT_EQ(thread.HoleBit("KDDKT", 0, false), -1);
    EXPECT_EQ(gemeinsam.MaxSteine(), 4) << "the source that looked for the file remembers";
    EXPECT_EQ(thread.MaxSteine(), 6);
    EXPECT_EQ(thread.HoleBit("KDKTT", 0, false), -1);
    EXPECT_EQ(gemeinsam.MaxSteine(), 4);
    EXPECT_EQ(thread.HoleBit("KDK", 0, false), -1);
    EXPECT_EQ(gemeinsam.MaxSteine(), 2);
    EXPECT_EQ(thread.HoleBit("KDKTT", 0, false), -1);
    EXPECT_EQ(gemeinsam.MaxSteine(), 2) << "only falls until the next resize";
    // A file that appears later is found at the next miss.
    const Bytes bits(10240, 0xFF);
    ASSERT_TRUE(SchreibeBitbase(dir / "KDK.kbb", bits.data(), nullptr, 81920));
    EXPECT_EQ(thread.HoleBit("KDK", 0, false), 1);
    gemeinsam.SetzeGroesse(4000);
    EXPECT_EQ(gemeinsam.MaxSteine(), 6);
}

TEST(BitbaseCache, LaengenUndKaputteDateien) {
    TestVerzeichnis dir;
    BitbaseCache_t c(1 << 16);
    c.SetzePfad(dir.pfad.string());
    const std::string name = dir / "KDK.kbb";
    // A compressed block: 128 literals 0x01..0x80 and a run to the end, 132 bytes.
    Bytes block = {0xF0};
    for (int i = 1; i <= 128; ++i) block.push_back(static_cast<uint8_t>(i));
    for (int rest = 384; rest > 0; rest -= 259) block.insert(block.end(), {0xF6, static_cast<uint8_t>(std::min(rest, 259) - 4), 0x00});
    ASSERT_EQ(block.size(), 135u);
    auto bit = [](uint64_t i) { return i < 128 * 8 ? ((i / 8 + 1) >> (i & 7)) & 1 : 0; };

    struct Fall {
        const char* was;
        int extra;    // bytes of file after the data, may be negative
        uint8_t l;
        bool ok;
    };
    // 135 bytes: L = 128 reads 3·128 - 248 = 136. L = 125 reads 127: too short.
    // A file ending 1 byte early fails, exactly at 136 works.
    for (const Fall& f : {Fall{"L=128, padded", 1, 128, true}, Fall{"L=128, unpadded", 0, 128, false},
                          Fall{"L=125 reads 127", 0, 125, false}, Fall{"L=124 reads 124", 0, 124, false},
                          Fall{"truncated", -1, 128, false}}) {
        Bitbasedatei d(20);
        Bytes daten = block;
        if (f.extra > 0) daten.insert(daten.end(), static_cast<size_t>(f.extra), 0xEE);
        if (f.extra < 0) daten.pop_back();
        d.Daten(5, daten, f.l);
        SchreibeDatei(name, d.Alles());
        c.SetzeGroesse(c.Groesse() + 1);  // drop the cached blocks
        EXPECT_EQ(c.HoleBit("KDK", Index(5, 9), false), f.ok ? static_cast<int>(bit(9)) : -1) << f.was;
        EXPECT_EQ(c.HoleBit("KDK", Index(4, 9), false), 0) << f.was << ": fill blocks are fine";
    }

    // L = 125 reads exactly 127 bytes, L = 124 exactly 124: a block of that
    // length (padded with literals that are never decoded) at the very end.
    for (int l : {124, 125}) {
        const size_t n = l == 125 ? 127 : 124;
        Bitbasedatei d(20);
        Bytes daten = {0x70, 0x76, 0xFF, 0x11, 0x76, 0xF9, 0x22};
        daten.resize(n, 0x33);
        d.Daten(0, daten, static_cast<uint8_t>(l));
        SchreibeDatei(name, d.Alles());
        c.SetzeGroesse(c.Groesse() + 1);
        EXPECT_EQ(c.HoleBit("KDK", 259 * 8 + 1, false), 1) << l;  // 0x22
        d.daten.pop_back();
        SchreibeDatei(name, d.Alles());
        c.SetzeGroesse(c.Groesse() + 1);
        EXPECT_EQ(c.HoleBit("KDK", 1, false), -1) << l << " one byte short";
    }

    // Fill entry: byte 0 is the block whatever byte 4 holds.
    Bitbasedatei d(20);
    d.Fuellung(2, 0x00, 0x7B);
    d.Fuellung(3, 0xFF, 0x00);
    d.Fuellung(4, 0xA5, 0xFF);
    SchreibeDatei(name, d.Alles());
    c.SetzeGroesse(c.Groesse() + 1);
    for (uint64_t i = 0; i < 4096; i += 7) {
        ASSERT_EQ(c.HoleBit("KDK", Index(2, i), false), 0);
        ASSERT_EQ(c.HoleBit("KDK", Index(3, i), false), 1);
        ASSERT_EQ(c.HoleBit("KDK", Index(4, i), false), (0xA5 >> (i & 7)) & 1);
    }

    // Raw blocks (L = 0), a corrupt block, a truncated index. Failures leave the
    // entries free: with three entries, three good blocks still fit afterwards.
    c.SetzeGroesse(1704);
    Bitbasedatei r(20);
    Bytes roh(512);
    for (int i = 0; i < 512; ++i) roh[i] = static_cast<uint8_t>(i * 7);
    r.Daten(0, roh, 0);
    r.Daten(1, {0x70, 0x12, 0x70, 0x13, 0, 0}, 6);  // copy before byte 0
    r.Daten(2, {0x70, 0x76, 0xFF, 0x11, 0x76, 0xFF, 0x11}, 7);  // past byte 512
    r.Verweis(3, 100000, 0);  // past the end of the file
    r.Verweis(6, 100, 0);  // shares block 0
    SchreibeDatei(name, r.Alles());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(c.HoleBit("KDK", Index(1), false), -1);
        EXPECT_EQ(c.HoleBit("KDK", Index(2), false), -1);
        EXPECT_EQ(c.HoleBit("KDK", Index(3), false), -1);
    }
    EXPECT_EQ(c.HoleBit("KDK", Index(0, 8 * 3 + 2), false), ((3 * 7) >> 2) & 1);
    EXPECT_EQ(c.HoleBit("KDK", Index(6, 8 * 3 + 2), false), ((3 * 7) >> 2) & 1);
    EXPECT_EQ(c.HoleBit("KDK", Index(7), false), 0);
    for (uint64_t k : {0, 6, 7}) EXPECT_NE(c.HoleBit("KDK", Index(k), true), -1) << k;
    SchreibeDatei(name, Bytes(r.index.begin(), r.index.begin() + 12));
    c.SetzeGroesse(1705);
    EXPECT_EQ(c.HoleBit("KDK", Index(0), false), -1);
    EXPECT_EQ(c.HoleBit("KDK", Index(2), false), -1);
    EXPECT_EQ(c.MaxSteine(), 6);
}

TEST(BitbaseCache, GroessenAusDenOptionen) {
    struct Fall {
        uint64_t mb;
        int threads;
        uint64_t gemeinsam, jeThread;
    };
    const uint64_t mb = 1 << 20;
    // per = min(total / (t + 3), total / (10t - 3) + 56800); no more than 32 threads count.
    for (const Fall& f : {Fall{0, 8, 0, 0}, Fall{1, 1, 1704, mb - 1704}, Fall{16, 0, 1704, 16 * mb - 1704},
                          Fall{16, 2, 16 * mb - 2 * (16 * mb / 17 + 56800), 16 * mb / 17 + 56800},
                          Fall{1, 8, mb - 8 * (mb / 77 + 56800), mb / 77 + 56800},
                          Fall{1, 64, mb - 32 * (mb / 35), mb / 35}}) {
        const BitbaseCacheGroessen_t g = BitbaseCacheGroessen(f.mb, f.threads);
        EXPECT_EQ(g.gemeinsam, f.gemeinsam) << f.mb << " " << f.threads;
        EXPECT_EQ(g.jeThread, f.jeThread) << f.mb << " " << f.threads;
    }
}

}  // namespace
