// The self-play data generator on tiny runs: the file depends on the seed alone,
// not on the thread count or interruptions; every record is a quiet position; bad
// orders and files are refused without touching the data.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "../test_dateien.h"

#include "board/zuggenerator.h"
#include "netz/datensatz.h"
#include "netz/generator.h"

namespace {

// A scratch directory with an opening file of two positions and a line that is none.
struct Ordner_t : test_dateien::Verzeichnis_t {
    Ordner_t() {
        std::ofstream(pfad / "start.epd") << "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - bm e4;\n"
                                          << "not a position\n"
                                          << "r3k2r/pp3ppp/8/8/8/8/PP3PPP/R3K2R w KQkq - 0 1\n";
    }
};

using test_dateien::Lies;

Generatorauftrag_t Auftrag(const Ordner_t& o, const char* datei, uint64_t spiele, int threads, uint64_t saat = 3) {
    Generatorauftrag_t a;
    a.datei = o / datei;
    a.eroeffnungen = {o / "start.epd"};
    a.spiele = spiele;
    a.knoten = 200;
    a.threads = threads;
    a.saat = saat;
    a.zufallsPlies = 3;
    a.hashMb = 1;
    return a;
}

int Erzeuge(const Generatorauftrag_t& a, std::string* bericht = nullptr) {
    std::ostringstream aus;
    const int status = ErzeugeDaten(a, aus);
    if (bericht) *bericht = aus.str();
    return status;
}

TEST(NetzGenerator, GleicheDatenUnabhaengigVonThreadsUndUnterbrechung) {
    Ordner_t o;
    ASSERT_EQ(Erzeuge(Auftrag(o, "a.bin", 4, 2)), 0);
    // In steps, on one thread, with junk from an interrupted write after the first.
    ASSERT_EQ(Erzeuge(Auftrag(o, "b.bin", 1, 1)), 0);
    std::ofstream(o / "b.bin", std::ios::binary | std::ios::app) << "half a record";
    std::string bericht;
    ASSERT_EQ(Erzeuge(Auftrag(o, "b.bin", 4, 1), &bericht), 0);
    EXPECT_NE(bericht.find("info string games 4 positions "), std::string::npos) << bericht;
    const std::string a = Lies(o / "a.bin");
    ASSERT_EQ(a, Lies(o / "b.bin"));
    ASSERT_EQ(a.size() % sizeof(Datensatz_t), 0u);
    EXPECT_NE(Lies(o / "a.bin.stand").find("spiele 4\nstellungen " + std::to_string(a.size() / 32)), std::string::npos);
    // Another seed, other games.
    ASSERT_EQ(Erzeuge(Auftrag(o, "c.bin", 4, 2, 4)), 0);
    EXPECT_NE(a, Lies(o / "c.bin"));

    // Every record is a legal position not in check, with a bounded score and a result.
    std::vector<Datensatz_t> saetze(a.size() / sizeof(Datensatz_t));
    std::memcpy(saetze.data(), a.data(), a.size());
    ASSERT_GT(saetze.size(), 40u);
    int ergebnisse[3] = {};
    for (const Datensatz_t& d : saetze) {
        auto st = std::make_unique<Stellung_t>();
        Stellungsdaten_t daten;
        ASSERT_TRUE(Entpacke(d, *st, daten));
        EXPECT_FALSE(ImSchach(*st, daten));
        EXPECT_LE(std::abs(d.wert), DatensatzWertGrenze);
        ++ergebnisse[d.ergebnis + 1];
        // Packing the unpacked position gives the record back.
        const Datensatz_t wieder = Packe(*st, d.wert, d.ergebnis, d.ply);
        EXPECT_EQ(std::memcmp(&wieder, &d, sizeof d), 0);
    }
    // A won game's positions are wins for one side and losses for the other.
    EXPECT_EQ(ergebnisse[0] > 0, ergebnisse[2] > 0);
}

TEST(NetzGenerator, Verweigert) {
    Ordner_t o;
    ASSERT_EQ(Erzeuge(Auftrag(o, "a.bin", 1, 1)), 0);
    const std::string vorher = Lies(o / "a.bin");
    std::string bericht;
    // Resuming with other settings would mix two kinds of games.
    EXPECT_EQ(Erzeuge(Auftrag(o, "a.bin", 2, 1, 99), &bericht), 1);
    EXPECT_NE(bericht.find("resume with the same settings"), std::string::npos) << bericht;
    EXPECT_EQ(Lies(o / "a.bin"), vorher);
    // A data file shorter than its progress file says.
    std::ofstream(o / "a.bin", std::ios::binary | std::ios::trunc) << "x";
    EXPECT_EQ(Erzeuge(Auftrag(o, "a.bin", 2, 1), &bericht), 1);
    EXPECT_NE(bericht.find("shorter than its progress file"), std::string::npos) << bericht;

    Generatorauftrag_t a = Auftrag(o, "b.bin", 1, 1);
    a.eroeffnungen = {o / "missing.epd"};
    EXPECT_EQ(Erzeuge(a, &bericht), 1);
    EXPECT_NE(bericht.find("cannot read"), std::string::npos);
    std::ofstream(o / "leer.epd") << "nothing here\n";
    a.eroeffnungen = {o / "leer.epd"};
    EXPECT_EQ(Erzeuge(a, &bericht), 1);
    EXPECT_NE(bericht.find("no opening positions"), std::string::npos);
    std::ofstream(o / "b.bin.stand") << "kelvaran-daten 7\n";
    EXPECT_EQ(Erzeuge(Auftrag(o, "b.bin", 1, 1), &bericht), 1);
    EXPECT_NE(bericht.find("unreadable progress file"), std::string::npos);
}

TEST(NetzGenerator, DatensatzVerweigertUnsinn) {
    auto st = std::make_unique<Stellung_t>();
    Stellungsdaten_t daten;
    Datensatz_t d{};
    EXPECT_FALSE(Entpacke(d, *st, daten));  // no kings
    d.belegt = Bit(0) | Bit(4) | Bit(60);   // a8, e8, e1, a nibble each in that order
    d.figuren[0] = 0xe2;                    // a8 White knight, e8 Black king
    d.figuren[1] = 0x06;                    // e1 White king
    EXPECT_TRUE(Entpacke(d, *st, daten));
    d.figuren[1] = 0x0e;  // two Black kings
    EXPECT_FALSE(Entpacke(d, *st, daten));
    d.figuren[1] = 0x06;
    d.figuren[0] = 0xe1;  // a pawn on the eighth rank
    EXPECT_FALSE(Entpacke(d, *st, daten));
    d.figuren[0] = 0xe7;  // no such type
    EXPECT_FALSE(Entpacke(d, *st, daten));
    d.figuren[0] = 0xe2;
    d.ergebnis = 2;
    EXPECT_FALSE(Entpacke(d, *st, daten));
}

}  // namespace
