// The book in memory, its move selection and its file: round trips and every
// kind of bad file.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "book/buch.h"
#include "book/buchaufbau.h"
#include "book/buchdatei.h"
#include "buch_hilfe.h"

namespace {

bool Gleich(const Buchzug_t& a, const Buchzug_t& b) {
    return a.schluessel == b.schluessel && a.zug == b.zug && a.partien == b.partien && a.punkte == b.punkte &&
           a.gewicht == b.gewicht;
}

// Many positions with one to four moves each, some keys close together.
Buch_t Zufallsbuch(int stellungen) {
    std::mt19937_64 zufall(7);
    Buch_t buch;
    for (int i = 0; i < stellungen; ++i) {
        const uint64_t schluessel = i % 10 == 0 ? static_cast<uint64_t>(i) : zufall();
        const int zuege = 1 + static_cast<int>(zufall() % 4);
        for (int z = 0; z < zuege; ++z)
            buch.Hinzufuegen(schluessel, static_cast<Zug_t>(1 + zufall() % 60000), 1 + zufall() % 100,
                             zufall() % 200, zufall() % 1000000);
    }
    return buch;
}

}  // namespace

TEST(Buch, SammeltJeZugUndWaechst) {
    Buch_t buch;
    buch.Hinzufuegen(42, 100, 1, 2, 1000);
    buch.Hinzufuegen(42, 100, 1, 1, 500);
    buch.Hinzufuegen(42, 101, 1, 0, 0);
    buch.Hinzufuegen(43, 100, 1, 2, 1000);
    buch.Hinzufuegen(44, 0, 1, 2, 1000);  // no move: ignored
    EXPECT_EQ(buch.Anzahl(), 3u);
    const Buchzug_t* z = buch.Finde(42, 100);
    ASSERT_NE(z, nullptr);
    EXPECT_EQ(z->partien, 2u);
    EXPECT_EQ(z->punkte, 3u);
    EXPECT_EQ(z->gewicht, 1500u);
    EXPECT_EQ(buch.Finde(42, 102), nullptr);

    // Growing many times over keeps every move; weights saturate at 48 bits.
    for (uint64_t i = 0; i < 20000; ++i) buch.Hinzufuegen(1000 + i, 7, 1, 1, Buch_t::GewichtMax);
    buch.Hinzufuegen(1000, 7, 1, 1, 5);
    EXPECT_EQ(buch.Anzahl(), 20003u);
    EXPECT_EQ(buch.Finde(1000, 7)->gewicht, Buch_t::GewichtMax);
    EXPECT_EQ(buch.Finde(20999, 7)->partien, 1u);
    const std::vector<Buchzug_t> alle = buch.Sortiert();
    for (size_t i = 1; i < alle.size(); ++i) EXPECT_TRUE(VorImBuch(alle[i - 1], alle[i]));
}

TEST(Buch, AuswahlNachSchwelleUndBreite) {
    std::vector<Buchzug_t> zuege;
    const uint64_t gewichte[] = {10, 500, 0, 150, 40, 300};
    for (Zug_t i = 0; i < 6; ++i) zuege.push_back({1, gewichte[i], 1, 1, static_cast<Zug_t>(i + 1)});
    // 3 % of 1000: the moves of weight 10 and 0 fall out; the rest heaviest first.
    std::vector<Buchzug_t> a = Auswahl(zuege, 3.0, 25);
    ASSERT_EQ(a.size(), 4u);
    EXPECT_EQ(a[0].gewicht, 500u);
    EXPECT_EQ(a[3].gewicht, 40u);
    a = Auswahl(zuege, 3.0, 2);
    ASSERT_EQ(a.size(), 2u);
    EXPECT_EQ(a[1].gewicht, 300u);
    EXPECT_EQ(Auswahl(zuege, 15.0, 25).size(), 3u);  // 150 is exactly 15 %: kept
    EXPECT_EQ(Auswahl(zuege, 0.0, 25).size(), 5u);   // a weight of 0 is never played
}

TEST(Buch, GewichtAusErgebnisUndElo) {
    EXPECT_EQ(Zuggewicht(1000, 2, false, 0), 1000u);
    EXPECT_EQ(Zuggewicht(1000, 1, false, 2800), 500u);
    EXPECT_EQ(Zuggewicht(1000, 0, true, 2800), 0u);
    EXPECT_EQ(Zuggewicht(1000, 2, true, 2900), 10000u);
    EXPECT_EQ(Zuggewicht(1000, 2, true, 2100), 100u);
    EXPECT_EQ(Zuggewicht(1000, 2, true, 0), 56u);  // no rating: 2000
    EXPECT_DOUBLE_EQ(EloStaerke(4000), 100.0);
    EXPECT_DOUBLE_EQ(EloStaerke(100), 0.01);
    EXPECT_EQ(WeissHalbpunkte("1-0"), 2);
    EXPECT_EQ(WeissHalbpunkte("0-1"), 0);
    EXPECT_EQ(WeissHalbpunkte("1/2-1/2"), 1);
    EXPECT_EQ(WeissHalbpunkte("*"), 1);
}

TEST(Buchdatei, SchreibenLesenUndSuchen) {
    const Buch_t buch = Zufallsbuch(5000);
    const std::vector<Buchzug_t> alle = buch.Sortiert();
    TempDatei datei(".opn");
    ASSERT_EQ(Buchdatei::Schreiben(datei.name, alle, Buchdatei::FlagGesperrt), Buchdatei::Status::Ok);
    EXPECT_EQ(datei.lesen().size(), Buchdatei::KopfGroesse + alle.size() * Buchdatei::SatzGroesse);

    std::vector<Buchzug_t> gelesen;
    uint16_t flags = 0;
    ASSERT_EQ(Buchdatei::Lesen(datei.name, gelesen, flags), Buchdatei::Status::Ok);
    EXPECT_EQ(flags, Buchdatei::FlagGesperrt);
    ASSERT_EQ(gelesen.size(), alle.size());
    for (size_t i = 0; i < alle.size(); ++i) ASSERT_TRUE(Gleich(gelesen[i], alle[i])) << i;

    // The binary search finds exactly the moves of a key, at both ends of the file too.
    for (size_t i : {size_t{0}, size_t{1}, alle.size() / 2, alle.size() - 1}) {
        std::vector<Buchzug_t> zuege;
        ASSERT_EQ(Buchdatei::Suchen(datei.name, alle[i].schluessel, zuege), Buchdatei::Status::Ok);
        size_t erwartet = 0;
        for (const Buchzug_t& z : alle) erwartet += z.schluessel == alle[i].schluessel;
        EXPECT_EQ(zuege.size(), erwartet);
        for (const Buchzug_t& z : zuege) EXPECT_EQ(z.schluessel, alle[i].schluessel);
    }
    std::vector<Buchzug_t> zuege;
    EXPECT_EQ(Buchdatei::Suchen(datei.name, 5, zuege), Buchdatei::Status::Ok);  // 5 is between 0 and 10
    EXPECT_TRUE(zuege.empty());

    // An empty book is a valid file as well.
    ASSERT_EQ(Buchdatei::Schreiben(datei.name, {}, 0), Buchdatei::Status::Ok);
    EXPECT_EQ(Buchdatei::Lesen(datei.name, gelesen, flags), Buchdatei::Status::Ok);
    EXPECT_TRUE(gelesen.empty());
}

TEST(Buchdatei, SchlechteDateienWerdenAbgewiesen) {
    const std::vector<Buchzug_t> alle = Zufallsbuch(50).Sortiert();
    TempDatei datei(".opn");
    ASSERT_EQ(Buchdatei::Schreiben(datei.name, alle, 0), Buchdatei::Status::Ok);
    const std::string gut = datei.lesen();
    std::vector<Buchzug_t> gelesen, zuege;
    uint16_t flags = 0;
    auto pruefe = [&](const std::string& inhalt, Buchdatei::Status erwartet) {
        datei.schreiben(inhalt);
        EXPECT_EQ(Buchdatei::Lesen(datei.name, gelesen, flags), erwartet);
        if (erwartet != Buchdatei::Status::Pruefsumme && erwartet != Buchdatei::Status::Unsortiert) {
            EXPECT_EQ(Buchdatei::Suchen(datei.name, alle[0].schluessel, zuege), erwartet);
        }
    };
    pruefe(gut.substr(0, gut.size() - 5), Buchdatei::Status::Abgeschnitten);
    pruefe(gut.substr(0, 30), Buchdatei::Status::Fremd);
    pruefe(gut + "x", Buchdatei::Status::Abgeschnitten);
    pruefe("this is no book, only some text that is long enough for a header", Buchdatei::Status::Fremd);
    std::string s = gut;
    s[8] = 2;  // a later version
    pruefe(s, Buchdatei::Status::Fassung);
    s = gut;
    s[16] ^= 1;  // other position keys
    pruefe(s, Buchdatei::Status::Schluessel);
    s = gut;
    s[Buchdatei::KopfGroesse + 20] ^= 1;  // a damaged record
    pruefe(s, Buchdatei::Status::Pruefsumme);
    s = gut;
    s[24] = static_cast<char>(0xff);  // a record count beyond the file
    pruefe(s, Buchdatei::Status::Abgeschnitten);

    std::remove(datei.name.c_str());
    EXPECT_EQ(Buchdatei::Lesen(datei.name, gelesen, flags), Buchdatei::Status::NichtDa);
    EXPECT_EQ(Buchdatei::Suchen(datei.name, 1, zuege), Buchdatei::Status::NichtDa);
}
