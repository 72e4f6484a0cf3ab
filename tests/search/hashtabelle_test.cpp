// The transposition table: packing, mate scores, replacement, fill and resizing.
#include <gtest/gtest.h>

#include <unistd.h>

#include "search/hashtabelle.h"

namespace {

TtDaten_t Daten(int wert, int tiefe, int32_t schranke = SchrankeExakt, int zug = 0x1234, int nonPv = 3,
                int drohung = 0) {
    TtDaten_t d;
    d.wert = wert;
    d.tiefe = tiefe;
    d.schranke = schranke;
    d.zug = zug;
    d.nonPvPlies = nonPv;
    d.drohung = drohung;
    return d;
}

// Keys sharing their high half share their bucket.
uint64_t Schluessel(uint32_t hoch, uint32_t niedrig) { return (uint64_t{hoch} << 32) | niedrig; }

TEST(Hashtabelle, PackenUndEntpacken) {
    struct Fall {
        TtDaten_t d;
        int plyHin, plyZurueck, erwarteterWert;
    };
    const Fall faelle[] = {
        {Daten(1234, 17, SchrankeUnten, 0xBEEF, 0, DrohungsBit), 3, 3, 1234},
        {Daten(-77, 8191, SchrankeOben, 0, 127), 0, 9, -77},
        // Mate scores travel relative to the node.
        {Daten(499990, 4), 4, 6, 499988},
        {Daten(-499990, 4), 4, 6, -499988},
        {Daten(449999, 4), 4, 6, 449999},  // not a mate score
    };
    for (const Fall& f : faelle) {
        const uint64_t wort = PackeTt(f.d, f.plyHin, 9);
        EXPECT_EQ(wort & 15, 9u);
        EXPECT_EQ(wort & 0x1000, 0u) << "reserved bit";
        const TtDaten_t e = EntpackeTt(wort, f.plyZurueck);
        EXPECT_EQ(e.wert, f.erwarteterWert);
        EXPECT_EQ(e.tiefe, f.d.tiefe);
        EXPECT_EQ(e.schranke, f.d.schranke);
        EXPECT_EQ(e.zug, f.d.zug);
        EXPECT_EQ(e.nonPvPlies, f.d.nonPvPlies);
        EXPECT_EQ(e.drohung, f.d.drohung);
    }
}

TEST(Hashtabelle, ProbeUndErsetzung) {
    Hashtabelle_t t;
    t.resize(1 << 20);
    TtDaten_t aus = Daten(42, 42);
    EXPECT_FALSE(t.probe(Schluessel(7, 1), 0, aus));
    EXPECT_EQ(aus.wert, 42) << "a miss leaves the record alone";

    // Four current entries of equal rank: a fifth key takes the last place of the bucket.
    for (uint32_t i = 1; i <= 4; ++i) t.store(Schluessel(7, i), 0, Daten(static_cast<int>(i), 10));
    t.store(Schluessel(7, 5), 0, Daten(5, 10));
    for (uint32_t i = 1; i <= 3; ++i) EXPECT_TRUE(t.probe(Schluessel(7, i), 0, aus)) << i;
    EXPECT_FALSE(t.probe(Schluessel(7, 4), 0, aus));
    EXPECT_TRUE(t.probe(Schluessel(7, 5), 0, aus));

    // The same key is overwritten even by a shallower result.
    t.store(Schluessel(7, 1), 0, Daten(-9, 2, SchrankeOben));
    ASSERT_TRUE(t.probe(Schluessel(7, 1), 0, aus));
    EXPECT_EQ(aus.wert, -9);
    EXPECT_EQ(aus.tiefe, 2);

    // Among current entries the shallowest goes, before a deep one.
    t.store(Schluessel(7, 2), 0, Daten(2, 1));
    t.store(Schluessel(7, 6), 0, Daten(6, 30));
    EXPECT_FALSE(t.probe(Schluessel(7, 2), 0, aus));

    // An entry of an earlier search is replaced first, even when it is deep; a hit
    // makes an old entry current again.
    t.nextGeneration();
    ASSERT_TRUE(t.probe(Schluessel(7, 3), 0, aus));
    t.store(Schluessel(7, 7), 0, Daten(7, 0, SchrankeOben));
    EXPECT_TRUE(t.probe(Schluessel(7, 7), 0, aus));
    EXPECT_TRUE(t.probe(Schluessel(7, 3), 0, aus));
    EXPECT_FALSE(t.probe(Schluessel(7, 1), 0, aus)) << "the first stale entry was the one replaced";
}

TEST(Hashtabelle, FuellungUndGroesse) {
    Hashtabelle_t klein;
    klein.resize(100);  // the 1600-byte minimum: 96 bucket starts
    EXPECT_EQ(klein.Indexbereich(), 96u);
    EXPECT_EQ(klein.hashfull(), 0);
    for (uint32_t i = 0; i < 2000; ++i) klein.store(Schluessel(i * 2654435761u, i), 0, Daten(1, 1));
    EXPECT_EQ(klein.hashfull(), 1000);
    klein.nextGeneration();
    EXPECT_EQ(klein.hashfull(), 0);

    Hashtabelle_t t;
    t.resize(1 << 20);  // "Hash" 1: 65532 bucket starts, sampled
    EXPECT_EQ(t.Indexbereich(), 65532u);
    for (uint32_t i = 0; i < 40000; ++i) t.store(Schluessel(i * 2654435761u, i), 0, Daten(1, 1));
    const int voll = t.hashfull();
    EXPECT_GT(voll, 300);
    EXPECT_LT(voll, 700);

    // The same size again keeps everything; clearing empties the table.
    TtDaten_t aus;
    t.resize(1 << 20);
    EXPECT_TRUE(t.probe(Schluessel(2654435761u, 1), 0, aus));
    t.clear();
    EXPECT_FALSE(t.probe(Schluessel(2654435761u, 1), 0, aus));
}

TEST(Hashtabelle, NieMehrAlsDieMaschineHaelt) {
    // Beyond the limit the table shrinks by sixteenths: it ends at the first size that fits.
    constexpr uint64_t Mb = 1 << 20;
    Hashtabelle_t t;
    t.resize(100 * Mb, 10 * Mb);
    ASSERT_TRUE(t.Vorhanden());
    const uint64_t bytes = (t.Indexbereich() + 4) * 16;
    EXPECT_LE(bytes, 10 * Mb);
    EXPECT_GT(bytes, 10 * Mb - 10 * Mb / 16);
    TtDaten_t aus;
    t.store(Schluessel(5, 5), 0, Daten(5, 5));
    EXPECT_TRUE(t.probe(Schluessel(5, 5), 0, aus));
    // Below the limit the request is granted whole; a limit too small for any table leaves none.
    t.resize(3 * Mb, 10 * Mb);
    EXPECT_EQ(t.Indexbereich(), 3 * Mb / 16 - 4);
    t.resize(1 * Mb, 10000);
    EXPECT_FALSE(t.Vorhanden());

    // This machine's limit lies below its memory and leaves at least half of it.
    const uint64_t physisch = static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGE_SIZE));
    EXPECT_LT(SpeicherObergrenze(), physisch);
    EXPECT_GE(SpeicherObergrenze(), physisch / 2);
}

}  // namespace
