// Making and taking back moves, incremental keys, legality, game history and draw rules.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "brett_hilfe.h"

using namespace brett_test;

namespace {

void ErwarteGleicheAngriffe(const Angriffe_t& a, const Angriffe_t& b, const std::string& wo) {
    EXPECT_EQ(a.alle, b.alle) << wo << " alle";
    EXPECT_EQ(a.doppelt, b.doppelt) << wo << " doppelt";
    EXPECT_EQ(a.bauern, b.bauern) << wo << " bauern";
    EXPECT_EQ(a.bedroht, b.bedroht) << wo << " bedroht";
    for (unsigned t = 0; t < 7; ++t) EXPECT_EQ(a.figur[t], b.figur[t]) << wo << " figur " << t;
}

// The incremental keys of `neu` against a recomputation of the position as it stands.
void ErwarteFrischeSchluessel(const Stellung_t& st, const Stellungsdaten_t& neu, const std::string& wo) {
    Stellungsdaten_t frisch;
    BerechneStellungsdaten(st, frisch);
    const Schluessel k = ReferenzSchluessel(st);
    EXPECT_EQ(frisch.schluessel, k.stellung) << wo;
    EXPECT_EQ(neu.schluessel, k.stellung) << wo << " position key";
    EXPECT_EQ(neu.bauernSchluessel, k.bauern) << wo << " pawn key";
    EXPECT_EQ(neu.Materialschluessel, k.material) << wo << " material key";
    EXPECT_EQ(neu.belegt, st.seite[0].brett[0] | st.seite[1].brett[0]) << wo << " occupancy";
}

bool KoenigAngegriffen(const Stellung_t& st, unsigned seite) {
    const Bitboard belegt = st.seite[0].brett[0] | st.seite[1].brett[0];
    return FeldAngegriffen(st, st.seite[seite].KoenigsFeld(), seite ^ 1, belegt);
}

const std::vector<const char*>& Pruefstellungen() {
    static std::vector<const char*> v = [] {
        std::vector<const char*> w = Partieanfaenge();
        for (const char* f : {
                 "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1",
                 "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1",
                 "r3k2r/1P6/8/8/8/8/6p1/R3K2R w KQkq - 0 1",
                 "r3k2r/1P6/8/8/8/8/6p1/R3K2R b KQkq - 0 1",
                 "4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1",
                 "4k3/8/8/8/3PpP2/8/8/4K3 b - d3 0 1",
                 "6kr/8/8/8/8/8/8/6KR w Kk - 0 1",
                 "2rk3r/pppppppp/8/8/8/8/PPPPPPPP/2RK3R b KQkq - 0 1",
                 "rk4r1/8/8/8/8/8/8/RK4R1 b KQkq - 0 1",
                 "1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 b GBgb - 0 1",
                 "8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1",
                 "4k3/8/8/8/2b5/8/8/2B1K3 w - - 0 1",
                 "2b1k3/1P6/8/8/8/8/8/4K3 w - - 0 1",
                 "2n1k3/1P6/8/8/5b2/8/8/2B1K3 w - - 0 1",
                 "r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4",
             })
            w.push_back(f);
        return w;
    }();
    return v;
}

}  // namespace

TEST(ZugMachen, JederZugWirdExaktZurueckgenommen) {
    for (const char* fen : Pruefstellungen()) {
        auto b = Aufstellen(fen);
        auto vorher = std::make_unique<Stellung_t>();
        std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
        const Stellungsdaten_t altKopie = *b->d;
        for (Zug_t z : Pseudolegal(*b->st, *b->d)) {
            const std::string wo = std::string(fen) + " " + Text(*vorher, z);
            Stellungsdaten_t neu;
            Rueckzug_t r = Muell();
            ZugMachen(*b->st, z, neu, *b->d, r);
            EXPECT_EQ(b->st->amZug, vorher->amZug ^ 1) << wo;
            PruefeKonsistenz(*b->st, wo);
            ErwarteFrischeSchluessel(*b->st, neu, wo);
            r.Zuruecknehmen();
            EXPECT_EQ(Unterschied(*vorher, *b->st), "") << "undo of " << wo;
            EXPECT_EQ(std::memcmp(&altKopie, b->d.get(), sizeof(Stellungsdaten_t)), 0) << wo;
            std::memcpy(b->st.get(), vorher.get(), sizeof(Stellung_t));
        }
    }
}

TEST(ZugMachen, LegalitaetsvariantenStimmenUeberein) {
    for (const char* fen : Pruefstellungen()) {
        auto b = Aufstellen(fen);
        auto vorher = std::make_unique<Stellung_t>();
        std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
        for (Zug_t z : Pseudolegal(*b->st, *b->d)) {
            const std::string wo = std::string(fen) + " " + Text(*vorher, z);
            Stellungsdaten_t neu;
            Rueckzug_t r = Muell();
            ZugMachen(*b->st, z, neu, *b->d, r);
            const bool erwartet = !KoenigAngegriffen(*b->st, vorher->amZug);
            r.Zuruecknehmen();

            Rueckzug_t r2 = Muell();
            const bool schnell = ZugLegal(*b->st, z, *b->d, neu, r2);
            EXPECT_EQ(schnell, erwartet) << "ZugLegal " << wo;
            if (schnell) r2.Zuruecknehmen();
            EXPECT_EQ(Unterschied(*vorher, *b->st), "") << wo;

            Rueckzug_t r3 = Muell();
            const bool voll = ZugMachenLegal(*b->st, z, *b->d, neu, r3);
            EXPECT_EQ(voll, erwartet) << "ZugMachenLegal " << wo;
            if (voll) {
                // The incremental attack records must be those of a fresh computation.
                Stellungsdaten_t frisch;
                BerechneStellungsdaten(*b->st, frisch);
                ErwarteGleicheAngriffe(neu.angriffe[0], frisch.angriffe[0], wo + " record 0");
                ErwarteGleicheAngriffe(neu.angriffe[1], frisch.angriffe[1], wo + " record 1");
                r3.Zuruecknehmen();
            }
            EXPECT_EQ(Unterschied(*vorher, *b->st), "") << wo;
            std::memcpy(b->st.get(), vorher.get(), sizeof(Stellung_t));
        }
    }
}

// Long random games: keys and attack records carried from ply to ply must
// never drift from a recomputation, and undoing the whole game restores the start.
TEST(ZugMachen, ZufallspartienBleibenStimmig) {
    constexpr int Halbzuege = 300;
    uint64_t saat = 1;
    for (const char* fen : Partieanfaenge()) {
        for (int runde = 0; runde < 3; ++runde, ++saat) {
            auto b = Aufstellen(fen);
            auto start = std::make_unique<Stellung_t>();
            std::memcpy(start.get(), b->st.get(), sizeof(Stellung_t));
            std::vector<Stellungsdaten_t> daten(Halbzuege + 1);
            std::vector<Rueckzug_t> rueck(Halbzuege);
            daten[0] = *b->d;
            uint64_t x = saat * 0x9e3779b97f4a7c15ULL;
            int ply = 0;
            for (; ply < Halbzuege; ++ply) {
                const std::vector<Zug_t> zuege = Legal(*b->st, daten[ply]);
                if (zuege.empty()) break;
                x ^= x << 13;
                x ^= x >> 7;
                x ^= x << 17;
                const Zug_t z = zuege[x % zuege.size()];
                const std::string wo = std::string(fen) + " ply " + std::to_string(ply) + " " + Text(*b->st, z);
                rueck[ply] = Muell();
                ASSERT_TRUE(ZugMachenLegal(*b->st, z, daten[ply], daten[ply + 1], rueck[ply])) << wo;
                ErwarteFrischeSchluessel(*b->st, daten[ply + 1], wo);
                Stellungsdaten_t frisch;
                BerechneStellungsdaten(*b->st, frisch);
                ErwarteGleicheAngriffe(daten[ply + 1].angriffe[0], frisch.angriffe[0], wo);
                ErwarteGleicheAngriffe(daten[ply + 1].angriffe[1], frisch.angriffe[1], wo);
                PruefeKonsistenz(*b->st, wo);
                if (::testing::Test::HasFailure()) return;
            }
            while (ply > 0) rueck[--ply].Zuruecknehmen();
            ASSERT_EQ(Unterschied(*start, *b->st), "") << fen << " seed " << saat;
        }
    }
}

TEST(ZugMachen, Rochaderechte) {
    struct Fall {
        const char* fen;
        Zug_t zug;
        uint8_t rechte;
    };
    const char* s = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
    const Fall faelle[] = {
        {s, Z("a1", "a8", Turm), WeissKurz | SchwarzKurz},
        {s, Z("h1", "h8", Turm), WeissLang | SchwarzLang},
        {s, Z("h1", "h4", Turm), WeissLang | SchwarzKurz | SchwarzLang},
        {s, Z("e1", "e2", Koenig), SchwarzKurz | SchwarzLang},
        {s, Z("e1", "g1", Rochade), SchwarzKurz | SchwarzLang},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", Z("e8", "c8", Rochade), WeissKurz | WeissLang},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", Z("a8", "a1", Turm), WeissKurz | SchwarzKurz},
        {"r3k2r/1P6/8/8/8/8/8/R3K2R w KQkq - 0 1", Z("b7", "a8", UmwandlungDame), WeissKurz | WeissLang | SchwarzKurz},
        {"1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1", Z("b1", "a1", Turm),
         WeissKurz | SchwarzKurz | SchwarzLang},
        {"1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1", Z("f1", "g1", Rochade), SchwarzKurz | SchwarzLang},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        Stellungsdaten_t neu;
        Rueckzug_t r = Muell();
        ZugMachen(*b->st, f.zug, neu, *b->d, r);
        EXPECT_EQ(b->st->rochaden, f.rechte) << f.fen << " " << Text(*b->st, f.zug);
        ErwarteFrischeSchluessel(*b->st, neu, f.fen);
    }
}

TEST(ZugMachen, RochadeSetztKoenigUndTurm) {
    struct Fall {
        const char* fen;
        Zug_t zug;
        const char* koenig;
        const char* turm;  // where the castling rook ends up
        Bitboard andereTuerme;
    };
    const Fall faelle[] = {
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", Z("e1", "g1", Rochade), "g1", "f1", Bit(F("a1"))},
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", Z("e1", "c1", Rochade), "c1", "d1", Bit(F("h1"))},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", Z("e8", "g8", Rochade), "g8", "f8", Bit(F("a8"))},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", Z("e8", "c8", Rochade), "c8", "d8", Bit(F("h8"))},
        {"1r3kr1/pppppppp/8/8/8/8/PPPPPPPP/1R3KR1 w GBgb - 0 1", Z("f1", "g1", Rochade), "g1", "f1", Bit(F("b1"))},
        {"2rk3r/pppppppp/8/8/8/8/PPPPPPPP/2RK3R w KQkq - 0 1", Z("d1", "c1", Rochade), "c1", "d1", Bit(F("h1"))},
        {"rk4r1/8/8/8/8/8/8/RK4R1 w KQkq - 0 1", Z("b1", "g1", Rochade), "g1", "f1", Bit(F("a1"))},
        {"6kr/8/8/8/8/8/8/6KR w Kk - 0 1", Z("g1", "g1", Rochade), "g1", "f1", 0},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        const unsigned seite = b->st->amZug;
        Stellungsdaten_t neu;
        Rueckzug_t r = Muell();
        ZugMachen(*b->st, f.zug, neu, *b->d, r);
        const std::string wo = std::string(f.fen) + " " + Text(*b->st, f.zug);
        EXPECT_EQ(b->st->seite[seite].brett[Koenig], Bit(F(f.koenig))) << wo;
        EXPECT_EQ(b->st->seite[seite].brett[Turm], Bit(F(f.turm)) | f.andereTuerme) << wo;
        EXPECT_EQ(b->st->seite[seite].KoenigsFeld(), F(f.koenig)) << wo;
        PruefeKonsistenz(*b->st, wo);
        ErwarteFrischeSchluessel(*b->st, neu, wo);
    }
}

TEST(ZugMachen, DoppelschrittSetztEnPassantNurMitNachbarbauer) {
    // No black pawn beside e4: the key is that of the plain FEN without en passant.
    auto b = Aufstellen(nullptr);
    Stellungsdaten_t neu;
    Rueckzug_t r = Muell();
    ZugMachen(*b->st, Z("e2", "e4", BauernZug), neu, *b->d, r);
    EXPECT_EQ(b->st->ep, 0);
    auto ziel = Aufstellen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    EXPECT_EQ(neu.schluessel, ziel->d->schluessel);

    auto c = Aufstellen("rnbqkbnr/ppp1pppp/8/8/3p4/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
    Rueckzug_t r2 = Muell();
    ZugMachen(*c->st, Z("e2", "e4", BauernZug), neu, *c->d, r2);
    EXPECT_EQ(c->st->ep, F("e3"));
    auto ziel2 = Aufstellen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    EXPECT_EQ(neu.schluessel, ziel2->d->schluessel);

    // A pawn two files away is no neighbour, and neither is one across the board edge.
    struct Fall {
        const char* fen;
        Zug_t zug;
    };
    const Fall faelle[] = {
        {"4k3/8/8/7p/5p2/8/P6P/4K3 w - - 0 1", Z("a2", "a4", BauernZug)},
        {"4k3/8/8/7p/5p2/8/P6P/4K3 w - - 0 1", Z("h2", "h4", BauernZug)},
        {"4k3/8/8/8/8/p7/7P/4K3 w - - 0 1", Z("h2", "h4", BauernZug)},
        {"4k3/7p/P7/8/8/8/8/4K3 b - - 0 1", Z("h7", "h5", BauernZug)},
    };
    for (const Fall& f : faelle) {
        auto x = Aufstellen(f.fen);
        Rueckzug_t rx = Muell();
        ZugMachen(*x->st, f.zug, neu, *x->d, rx);
        EXPECT_EQ(x->st->ep, 0) << f.fen << " " << Text(*x->st, f.zug);
        ErwarteFrischeSchluessel(*x->st, neu, f.fen);
    }
}

TEST(ZugMachen, EnPassantUndUmwandlungImEinzelnen) {
    auto b = Aufstellen("4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1");
    Stellungsdaten_t neu;
    Rueckzug_t r = Muell();
    ZugMachen(*b->st, Z("e5", "d6", EnPassant), neu, *b->d, r);
    EXPECT_EQ(b->st->seite[Schwarz].brett[Bauer], 0u);
    EXPECT_EQ(b->st->seite[Weiss].brett[Bauer], Bit(F("c5")) | Bit(F("d6")));
    EXPECT_EQ(b->st->ep, 0);
    auto ziel = Aufstellen("4k3/8/3P4/2P5/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(neu.schluessel, ziel->d->schluessel);
    EXPECT_EQ(neu.Materialschluessel, ziel->d->Materialschluessel);

    auto u = Aufstellen("2b1k3/1P6/8/8/8/8/8/4K3 w - - 0 1");
    Rueckzug_t r2 = Muell();
    ZugMachen(*u->st, Z("b7", "c8", UmwandlungSpringer), neu, *u->d, r2);
    auto ziel2 = Aufstellen("2N1k3/8/8/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(neu.schluessel, ziel2->d->schluessel);
    EXPECT_EQ(neu.bauernSchluessel, 0u);
    EXPECT_EQ(neu.Materialschluessel, Materialgewicht[Springer]);
}

TEST(ZugMachen, UngleicheLaeuferNachSchlagUndUmwandlung) {
    struct Fall {
        const char* fen;
        Zug_t zug;
        bool vorher, nachher;
    };
    const Fall faelle[] = {
        // promoting onto light c8 against the dark f4 bishop creates the term
        {"2n1k3/1P6/8/8/5b2/8/8/4K3 w - - 0 1", Z("b7", "c8", UmwandlungLaeufer), false, true},
        // a bishop move keeps its colour, and the term
        {"4k3/8/8/8/2b5/8/3B4/4K3 b - - 0 1", Z("c4", "b3", Laeufer), true, true},
        // taking one of the two bishops ends it
        {"3rk3/8/8/8/2b5/8/3B4/4K3 b - - 0 1", Z("d8", "d2", Turm), true, false},
        // taking the light one of two white bishops leaves dark c1 against light c8
        {"2b1k3/8/8/8/8/8/8/2B1KBr1 b - - 0 1", Z("g1", "f1", Turm), false, true},
        // a knight promotion changes nothing about bishops
        {"2n1k3/1P6/8/8/5b2/8/8/2B1K3 w - - 0 1", Z("b7", "c8", UmwandlungSpringer), false, false},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        EXPECT_EQ(HatUngleicheLaeufer(*b->st), f.vorher) << f.fen;
        Stellungsdaten_t neu;
        Rueckzug_t r = Muell();
        ZugMachen(*b->st, f.zug, neu, *b->d, r);
        EXPECT_EQ(HatUngleicheLaeufer(*b->st), f.nachher) << f.fen;
        ErwarteFrischeSchluessel(*b->st, neu, f.fen);
    }
}

TEST(Spielzug, HistorieWaechstBisHundertUndFuenfzigZuegeGreifen) {
    auto b = Aufstellen("4k3/8/8/8/8/8/8/4K1N1 w - - 0 1");
    const Zug_t folge[4] = {Z("g1", "f3", Springer), Z("e8", "d8", Koenig), Z("f3", "g1", Springer),
                            Z("d8", "e8", Koenig)};
    uint64_t letzterSchluessel = b->d->schluessel;
    for (unsigned i = 0; i < 110; ++i) {
        Rueckzug_t r = Muell();
        ASSERT_TRUE(SpielzugMachen(*b->st, folge[i % 4], r, *b->d)) << i;
        EXPECT_NE(b->d->schluessel, letzterSchluessel) << "the position still changes at " << i;
        letzterSchluessel = b->d->schluessel;
        const unsigned erwartet = i + 2 < 101 ? i + 2 : 101;
        ASSERT_EQ(b->st->historieAnzahl, erwartet) << "after " << i + 1 << " moves";
        if (i + 2 <= 101) {
            EXPECT_EQ(b->st->Historie[i + 1], b->d->schluessel);
        }
        EXPECT_EQ(FuenfzigZuegeRemis(*b->st), i + 1 >= 100) << "after " << i + 1 << " moves";
    }
    ErwarteFrischeSchluessel(*b->st, *b->d, "after 110 moves");
}

TEST(Spielzug, UnumkehrbareZuegeSetzenDieHistorieZurueck) {
    struct Fall {
        const char* fen;
        Zug_t zug;
        unsigned anzahl;
    };
    const Fall faelle[] = {
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("a2", "a3", BauernZug), 1},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("a2", "a4", BauernZug), 1},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("h1", "h8", Turm), 1},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("h1", "h7", Turm), 7},
        {"r3k2r/p7/8/8/8/8/P7/R3K2R w KQkq - 5 20", Z("e1", "g1", Rochade), 7},
        {"4k3/1P6/8/8/8/8/8/4K3 w - - 9 40", Z("b7", "b8", UmwandlungDame), 1},
        {"4k3/8/8/2PpP3/8/8/8/4K3 w - d6 9 40", Z("e5", "d6", EnPassant), 1},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        Rueckzug_t r = Muell();
        ASSERT_TRUE(SpielzugMachen(*b->st, f.zug, r, *b->d)) << f.fen;
        EXPECT_EQ(b->st->historieAnzahl, f.anzahl) << f.fen << " " << Text(*b->st, f.zug);
        EXPECT_EQ(b->st->Historie[b->st->historieAnzahl - 1], b->d->schluessel) << f.fen;
        ErwarteFrischeSchluessel(*b->st, *b->d, f.fen);
    }
}

TEST(Spielzug, DreifacheWiederholung) {
    auto b = Aufstellen(nullptr);
    const Zug_t folge[4] = {Z("g1", "f3", Springer), Z("g8", "f6", Springer), Z("f3", "g1", Springer),
                            Z("f6", "g8", Springer)};
    for (unsigned i = 0; i < 8; ++i) {
        EXPECT_FALSE(WiederholungsRemis(*b->st)) << "before move " << i + 1;
        Rueckzug_t r = Muell();
        ASSERT_TRUE(SpielzugMachen(*b->st, folge[i % 4], r, *b->d));
    }
    EXPECT_TRUE(WiederholungsRemis(*b->st)) << "start position for the third time";
    EXPECT_FALSE(FuenfzigZuegeRemis(*b->st));
}

TEST(Spielzug, IllegalerZugAendertNichts) {
    struct Fall {
        const char* fen;
        Zug_t zug;
    };
    const Fall faelle[] = {
        {"4k3/4r3/8/8/8/8/4N3/4K3 w - - 3 30", Z("e2", "c3", Springer)},   // pinned
        {"4k3/8/8/8/8/8/3r4/4K3 w - - 3 30", Z("e1", "e2", Koenig)},      // onto the rook's rank
        {"8/8/8/8/8/3k4/8/4K3 w - - 3 30", Z("e1", "e2", Koenig)},        // next to the other king
        {"4k3/8/8/8/1b6/8/8/4K3 w - - 3 30", Z("e1", "d2", Koenig)},      // along the checking diagonal
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        auto vorher = std::make_unique<Stellung_t>();
        std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
        const uint64_t schluessel = b->d->schluessel;
        Rueckzug_t r = Muell();
        EXPECT_FALSE(SpielzugMachen(*b->st, f.zug, r, *b->d)) << f.fen;
        EXPECT_EQ(Unterschied(*vorher, *b->st), "") << f.fen;
        EXPECT_EQ(b->d->schluessel, schluessel) << f.fen;
        EXPECT_FALSE(IstLegal(*b->st, f.zug, *b->d)) << f.fen;
    }
}

TEST(Legalitaet, IstLegalUndZaehlen) {
    auto start = Aufstellen(nullptr);
    EXPECT_TRUE(IstLegal(*start->st, Z("e2", "e4", BauernZug), *start->d));
    EXPECT_FALSE(IstLegal(*start->st, Z("e2", "e5", BauernZug), *start->d));
    EXPECT_FALSE(IstLegal(*start->st, Z("e2", "e4", Springer), *start->d)) << "wrong kind";
    EXPECT_FALSE(IstLegal(*start->st, Z("e7", "e5", BauernZug), *start->d)) << "not the side to move";
    EXPECT_EQ(ZaehleLegaleZuege(*start->st, *start->d), 20);
    struct Fall {
        const char* fen;
        int zuege;
    };
    const Fall faelle[] = {
        {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 48},
        {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 14},
        {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 6},
        {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 44},
        {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 46},
        {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 0},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        auto vorher = std::make_unique<Stellung_t>();
        std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
        EXPECT_EQ(ZaehleLegaleZuege(*b->st, *b->d), f.zuege) << f.fen;
        EXPECT_EQ(Unterschied(*vorher, *b->st), "") << f.fen;
    }
}

TEST(Spielende, MattUndPatt) {
    struct Fall {
        const char* fen;
        bool ende;
        int ergebnis;
    };
    const Fall faelle[] = {
        {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3", true, -1},
        {"R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", true, +1},
        {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", true, 0},
        {"k7/8/1Q6/8/8/8/8/K7 b - - 0 1", true, 0},
        {"k7/8/1K6/8/8/8/8/7R b - - 0 1", false, 99},
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", false, 99},
        {"8/8/8/8/8/8/5k2/6qK w - - 0 1", true, -1},
        {"8/8/8/8/8/8/5k2/6nK w - - 0 1", false, 99},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        auto vorher = std::make_unique<Stellung_t>();
        std::memcpy(vorher.get(), b->st.get(), sizeof(Stellung_t));
        int ergebnis = 99;
        EXPECT_EQ(SpielEnde(*b->st, *b->d, &ergebnis), f.ende) << f.fen;
        EXPECT_EQ(ergebnis, f.ergebnis) << f.fen;
        EXPECT_EQ(SpielEnde(*b->st, *b->d, nullptr), f.ende) << f.fen;
        EXPECT_EQ(Unterschied(*vorher, *b->st), "") << f.fen;
    }
}

TEST(Materialremis, UngenuegendesMaterial) {
    struct Fall {
        const char* fen;
        int code;
    };
    const Fall faelle[] = {
        {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", 10},
        {"4k3/8/8/8/8/8/8/4KN2 w - - 0 1", 10},
        {"4k3/8/8/8/8/8/8/4KB2 w - - 0 1", 10},
        {"4kn2/8/8/8/8/8/8/4K3 w - - 0 1", 10},
        {"4kb2/8/8/8/8/8/8/4K3 b - - 0 1", 10},
        {"4kb2/8/8/8/8/8/8/4KB2 w - - 0 1", 0},       // f8 dark, f1 light
        {"2b1k3/8/8/8/8/8/8/4KB2 w - - 0 1", 10},     // c8 and f1 both light
        {"4k3/8/8/8/8/8/8/2B1KB2 w - - 0 1", 0},      // c1 dark, f1 light
        {"4k3/8/8/8/8/8/6B1/4KB2 w - - 0 1", 10},     // f1 and g2 both light
        {"2b1k3/8/8/8/8/8/6B1/4KB2 w - - 0 1", 10},   // c8, g2 and f1 all light
        {"2b1kb2/8/8/8/8/8/6B1/4KB2 w - - 0 1", 0},   // f8 dark among light ones
        {"4k3/8/8/8/8/8/8/2B1K1B1 w - - 0 1", 10},    // c1 and g1 both dark
        {"4k3/8/8/8/8/8/8/4KNN1 w - - 0 1", 0},
        {"4kn2/8/8/8/8/8/8/4KN2 w - - 0 1", 0},
        {"4kn2/8/8/8/8/8/8/4KB2 w - - 0 1", 0},
        {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", 0},
        {"4k3/8/8/8/8/8/8/4KR2 w - - 0 1", 0},
        {"4k3/8/8/8/8/8/8/4KQ2 w - - 0 1", 0},
    };
    for (const Fall& f : faelle) {
        auto b = Aufstellen(f.fen);
        EXPECT_EQ(Materialremis(*b->st), f.code) << f.fen;
    }
}
