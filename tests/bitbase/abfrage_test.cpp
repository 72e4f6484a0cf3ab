// The position probe: the first file answers "White wins", the colour-flipped
// file "Black wins", the cache counts its hits.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>

#include "bitbase/bitbasecache.h"
#include "bitbase/werkzeug.h"
#include "erzeugung_hilfe.h"
#include "search/endspiel.h"

namespace {

struct Probe_t {
    bool gefunden;
    int ergebnis;
};

Probe_t Probe(BitbaseCache_t& cache, const char* fen) {
    auto st = std::make_unique<Stellung_t>();
    Stellungsdaten_t daten{};
    EXPECT_TRUE(SetzeStellung(*st, daten, fen)) << fen;
    BitbaseSteine_t s;
    BitbaseSteineVon(*st, s);
    int ergebnis = 99;
    const bool gefunden = cache.Abfrage(s.weissTypen, s.schwarzTypen, s.weissFelder, s.schwarzFelder,
                                        static_cast<int>(st->amZug), st->ep, false, ergebnis);
    return {gefunden, ergebnis};
}

BitbaseCache_t& Cache() {
    static BitbaseCache_t cache(1 << 20);
    cache.SetzePfad(erzeugung_test::KleineBitbasen());
    return cache;
}

TEST(BitbaseAbfrage, BekannteStellungen) {
    const struct {
        const char* fen;
        int ergebnis;
    } faelle[] = {
        {"8/8/8/8/8/8/1Q6/k1K5 b - - 0 1", 1},       // mated
        {"k7/2Q5/1K6/8/8/8/8/8 b - - 0 1", 0},       // stalemate
        {"8/8/8/8/8/2k5/1Q6/7K b - - 0 1", 0},       // the queen falls
        {"8/8/8/8/8/2k5/1Q6/7K w - - 0 1", 1},
        {"7K/8/8/8/8/8/1q6/k7 w - - 0 1", -1},       // Black's queen
        {"4k3/8/4K3/4P3/8/8/8/8 b - - 0 1", 1},      // king in front on the sixth rank
        {"k7/8/K7/P7/8/8/8/8 w - - 0 1", 0},         // rook's pawn, king in the corner
        {"8/8/8/8/4p3/4k3/8/4K3 w - - 0 1", -1},     // Black's pawn, the same picture
        {"8/8/8/8/8/8/r7/K1k5 w - - 0 1", 0},        // the rook falls
        {"8/8/8/8/8/8/r7/K1k5 b - - 0 1", -1},
        {"8/8/8/8/3K4/8/3k4/6B1 w - - 0 1", 0},      // a bishop cannot win
    };
    for (const auto& f : faelle) {
        const Probe_t p = Probe(Cache(), f.fen);
        EXPECT_TRUE(p.gefunden) << f.fen;
        EXPECT_EQ(p.ergebnis, f.ergebnis) << f.fen;
    }
}

TEST(BitbaseAbfrage, KpkWieDieEndspieltabelle) {
    std::mt19937 rng(99);
    int geprueft = 0;
    while (geprueft < 3000) {
        const int bauer = 8 + static_cast<int>(rng() % 48), a = static_cast<int>(rng() % 64),
                  v = static_cast<int>(rng() % 64);
        const bool angreiferZieht = rng() & 1;
        const uint8_t soll = KpkProbe(static_cast<Feld>(bauer), static_cast<Feld>(a), static_cast<Feld>(v), angreiferZieht);
        if (soll == KpkIllegal) continue;
        ++geprueft;
        const int erwartet = soll < KpkNichtGewonnen ? 1 : 0;
        // White's pawn, and the same picture turned upside down for Black.
        const int wt[] = {6, 1, 0}, st[] = {6, 0};
        const int wf[] = {a, bauer, 0}, sf[] = {v, 0};
        int ergebnis = 99;
        ASSERT_TRUE(Cache().Abfrage(wt, st, wf, sf, angreiferZieht ? 0 : 1, 0, false, ergebnis));
        EXPECT_EQ(ergebnis, erwartet);
        const int sf2[] = {a ^ 56, bauer ^ 56, 0}, wf2[] = {v ^ 56, 0};
        ASSERT_TRUE(Cache().Abfrage(st, wt, wf2, sf2, angreiferZieht ? 1 : 0, 0, false, ergebnis));
        EXPECT_EQ(ergebnis, -erwartet);
    }
}

TEST(BitbaseAbfrage, OhneSpeicherOderDateiNichts) {
    BitbaseCache_t leer(0);
    leer.SetzePfad(erzeugung_test::KleineBitbasen());
    EXPECT_FALSE(Probe(leer, "8/8/8/8/8/8/1Q6/k1K5 b - - 0 1").gefunden);
    EXPECT_EQ(leer.Treffer(), 0u);

    // Hits count found results; a first bit of 1 never needs the flipped file.
    erzeugung_test::Verzeichnis_t nurKdk("nurkdk");
    std::filesystem::copy_file(BitbaseDatei(erzeugung_test::KleineBitbasen(), "KDK"), BitbaseDatei(nurKdk.pfad, "KDK"));
    BitbaseCache_t cache(1 << 20);
    cache.SetzePfad(nurKdk.pfad);
    const Probe_t gewonnen = Probe(cache, "8/8/8/8/8/2k5/1Q6/7K w - - 0 1");
    EXPECT_TRUE(gewonnen.gefunden);
    EXPECT_EQ(gewonnen.ergebnis, 1);
    EXPECT_EQ(cache.Treffer(), 1u);
    // Bit 0 asks KKD, which is missing here.
    EXPECT_FALSE(Probe(cache, "8/8/8/8/8/2k5/1Q6/7K b - - 0 1").gefunden);
    EXPECT_EQ(cache.Treffer(), 1u);
    // Too many men or no signature: nothing.
    EXPECT_FALSE(Probe(cache, "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1").gefunden);
}

}  // namespace
