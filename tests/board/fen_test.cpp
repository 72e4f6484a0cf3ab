// Position set-up: the FEN reader, the start positions and the keys of a position.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "brett_hilfe.h"

using namespace brett_test;

namespace {

const char* const StartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

void ErwarteGleicheSeite(const Seite_t& a, const Seite_t& b, const std::string& wo) {
    for (unsigned t = 0; t <= Koenig; ++t) {
        EXPECT_EQ(a.brett[t], b.brett[t]) << wo << " board " << t;
        EXPECT_EQ(a.anzahl[t], b.anzahl[t]) << wo << " count " << t;
    }
    for (unsigned t = Bauer; t <= Koenig; ++t)
        for (unsigned i = 0; i < a.anzahl[t]; ++i) EXPECT_EQ(a.Liste(t)[i], b.Liste(t)[i]) << wo << " list " << t;
    EXPECT_EQ(a.langerTurm, b.langerTurm) << wo;
    EXPECT_EQ(a.kurzerTurm, b.kurzerTurm) << wo;
}

void ErwarteGleicheStellung(const Stellung_t& a, const Stellung_t& b) {
    EXPECT_EQ(a.amZug, b.amZug);
    EXPECT_EQ(a.ep, b.ep);
    EXPECT_EQ(a.rochaden, b.rochaden);
    EXPECT_EQ(a.chess960, b.chess960);
    EXPECT_EQ(a.dateibuchstaben, b.dateibuchstaben);
    ErwarteGleicheSeite(a.seite[0], b.seite[0], "white");
    ErwarteGleicheSeite(a.seite[1], b.seite[1], "black");
}

Bitboard Felder(std::initializer_list<const char*> namen) {
    Bitboard b = 0;
    for (const char* n : namen) b |= Bit(F(n));
    return b;
}

bool Gelesen(const char* fen) {
    Brett b;
    return b.Setze(fen);
}

}  // namespace

TEST(Fen, StartFenGleichGrundstellung) {
    Brett fen, grund, ohneText;
    ASSERT_TRUE(fen.Setze(StartFen));
    Grundstellung(*grund.st);
    BerechneStellungsdaten(*grund.st, *grund.d);
    ASSERT_TRUE(ohneText.Setze(nullptr));
    ErwarteGleicheStellung(*fen.st, *grund.st);
    ErwarteGleicheStellung(*fen.st, *ohneText.st);
    EXPECT_EQ(fen.st->chess960, 0);
    EXPECT_EQ(fen.st->dateibuchstaben, 0);
    EXPECT_EQ(fen.st->rochaden, 15);
    EXPECT_EQ(fen.st->ep, 0);
    EXPECT_EQ(fen.d->schluessel, grund.d->schluessel);
    EXPECT_EQ(fen.d->bauernSchluessel, grund.d->bauernSchluessel);
    EXPECT_EQ(fen.d->Materialschluessel, grund.d->Materialschluessel);
    EXPECT_EQ(fen.d->belegt, 0xffff00000000ffffu);
    EXPECT_EQ(ohneText.d->schluessel, fen.d->schluessel);
    EXPECT_EQ(ohneText.st->historieAnzahl, 1u);
    EXPECT_EQ(ohneText.st->Historie[0], fen.d->schluessel);
    EXPECT_EQ(fen.st->historieAnzahl, 1u);
    EXPECT_EQ(fen.st->Historie[0], fen.d->schluessel);

    const Seite_t& w = fen.st->seite[Weiss];
    EXPECT_EQ(w.brett[Turm], Felder({"a1", "h1"}));
    EXPECT_EQ(w.brett[Koenig], Bit(F("e1")));
    EXPECT_EQ(w.langerTurm, F("a1"));
    EXPECT_EQ(w.kurzerTurm, F("h1"));
    EXPECT_EQ(fen.st->seite[Schwarz].langerTurm, F("a8"));
    EXPECT_EQ(fen.st->seite[Schwarz].kurzerTurm, F("h8"));
    EXPECT_EQ(w.anzahl[0], 16);
    EXPECT_EQ(w.anzahl[Bauer], 8);
    EXPECT_EQ(w.KoenigsFeld(), F("e1"));
    PruefeKonsistenz(*fen.st, "start");
}

TEST(Fen, ListenAufsteigendNachDemAufstellen) {
    auto b = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    PruefeKonsistenz(*b->st, "kiwipete");
    for (unsigned s = 0; s < 2; ++s)
        for (unsigned t = Bauer; t <= Koenig; ++t)
            for (unsigned i = 1; i < b->st->seite[s].anzahl[t]; ++i)
                EXPECT_LT(b->st->seite[s].Liste(t)[i - 1], b->st->seite[s].Liste(t)[i]) << s << " " << t;
}

TEST(Fen, SchluesselAusDenZufallszahlen) {
    // Row 8 column 0 stands for "no en-passant square" and must not change a key.
    EXPECT_EQ(ZobristEp[0], 0u);
    // Castling keys are all in use, even the one for "no rights".
    std::set<uint64_t> rochade;
    for (unsigned r = 0; r < 16; ++r) {
        EXPECT_NE(RochadenSchluessel(r), 0u) << r;
        rochade.insert(RochadenSchluessel(r));
    }
    EXPECT_EQ(rochade.size(), 16u);
    std::set<uint64_t> alle(rochade);
    size_t benutzt = 16;
    for (unsigned s = 0; s < 2; ++s)
        for (unsigned t = Bauer; t <= Koenig; ++t)
            for (Feld f = 0; f < 64; ++f, ++benutzt) alle.insert(FigurSchluessel(s, t, f));
    for (Feld f = 16; f < 24; ++f, ++benutzt) alle.insert(ZobristEp[f]);  // rank 6
    for (Feld f = 40; f < 48; ++f, ++benutzt) alle.insert(ZobristEp[f]);  // rank 3
    EXPECT_EQ(alle.size(), benutzt) << "piece, castling and en-passant keys must be distinct";

    for (const char* fen : {StartFen, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1",
                            "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
                            "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
                            "4k3/8/8/8/2b5/8/8/2B1K3 w - - 0 1", "4k3/8/8/8/3b4/8/8/2B1K3 b - - 0 1",
                            "nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1"}) {
        auto b = Aufstellen(fen);
        const Schluessel k = ReferenzSchluessel(*b->st);
        EXPECT_EQ(b->d->schluessel, k.stellung) << fen;
        EXPECT_EQ(b->d->bauernSchluessel, k.bauern) << fen;
        EXPECT_EQ(b->d->Materialschluessel, k.material) << fen;
        EXPECT_EQ(b->d->belegt, b->st->seite[0].brett[0] | b->st->seite[1].brett[0]) << fen;
    }
}

TEST(Fen, UngleicheLaeuferImMaterialschluessel) {
    auto gleich = Aufstellen("4k3/8/8/8/3b4/8/8/2B1K3 w - - 0 1");   // c1 and d4: both dark
    auto ungleich = Aufstellen("4k3/8/8/8/2b5/8/8/2B1K3 w - - 0 1");  // c1 dark, c4 light
    EXPECT_FALSE(HatUngleicheLaeufer(*gleich->st));
    EXPECT_TRUE(HatUngleicheLaeufer(*ungleich->st));
    EXPECT_EQ(ungleich->d->Materialschluessel - gleich->d->Materialschluessel, UngleicheLaeufer);
    EXPECT_EQ(gleich->d->Materialschluessel, Materialgewicht[Laeufer] + Materialgewicht[8 + Laeufer]);
}

TEST(Fen, EnPassantOhneSchlagendenBauernEntfaellt) {
    auto mit = Aufstellen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    auto ohne = Aufstellen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(mit->st->ep, 0);
    EXPECT_EQ(mit->d->schluessel, ohne->d->schluessel);

    auto echt = Aufstellen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
    auto echtOhne = Aufstellen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(echt->st->ep, F("e3"));
    EXPECT_EQ(echt->d->schluessel, echtOhne->d->schluessel ^ ZobristEp[F("e3")]);

    auto weiss = Aufstellen("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3");
    EXPECT_EQ(weiss->st->ep, F("f6"));
    // The rank must fit the side to move: White captures onto rank 6, Black onto rank 3.
    EXPECT_FALSE(Gelesen("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f3 0 3"));
    EXPECT_FALSE(Gelesen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq e6 0 1"));
    EXPECT_FALSE(Gelesen("rnbqkbnr/ppp1pppp/8/8/3pP3/8/PPPP1PPP/RNBQKBNR b KQkq i3 0 1"));
    EXPECT_TRUE(Gelesen("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq F6 0 3"));
}

TEST(Fen, HalbzugzaehlerFuelltDieHistorie) {
    const char* brett = "4k3/8/8/8/8/8/8/4K2R w K - ";
    Brett b;
    ASSERT_TRUE(b.Setze((std::string(brett) + "150 80").c_str()));
    EXPECT_EQ(b.st->historieAnzahl, 1u);
    EXPECT_EQ(b.st->Historie[0], b.d->schluessel);
    ASSERT_TRUE(b.Setze((std::string(brett) + "-1 80").c_str()));
    EXPECT_EQ(b.st->historieAnzahl, 1u);
    ASSERT_TRUE(b.Setze((std::string(brett) + "100 80").c_str()));
    EXPECT_EQ(b.st->historieAnzahl, 1u);

    ASSERT_TRUE(b.Setze((std::string(brett) + "7 30").c_str()));
    ASSERT_EQ(b.st->historieAnzahl, 8u);
    for (unsigned i = 0; i < 7; ++i) EXPECT_EQ(b.st->Historie[i], 0u) << i;
    EXPECT_EQ(b.st->Historie[7], b.d->schluessel);

    ASSERT_TRUE(b.Setze((std::string(brett) + "99 80").c_str()));
    EXPECT_EQ(b.st->historieAnzahl, 100u);
    EXPECT_EQ(b.st->Historie[99], b.d->schluessel);

    // Without the clocks the history is just the position itself.
    ASSERT_TRUE(b.Setze("4k3/8/8/8/8/8/8/4K2R w K -"));
    EXPECT_EQ(b.st->historieAnzahl, 1u);
    EXPECT_EQ(b.st->Historie[0], b.d->schluessel);
}

TEST(Fen, Figurengrenzen) {
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/8/3KK3 w - - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/8/8 w - - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/PPPPPPPP/P3K3 w - - 0 1"));
    EXPECT_TRUE(Gelesen("4k3/8/8/8/8/8/PPPPPPPP/4K3 w - - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/NNN5/NNNNNNNN/4K3 w - - 0 1"));
    EXPECT_TRUE(Gelesen("4k3/8/8/8/8/NN6/NNNNNNNN/4K3 w - - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/QQQQQQQQ/QQ2K3 w - - 0 1"));
    EXPECT_TRUE(Gelesen("4k3/8/8/8/8/8/QQQQQQQQ/Q3K3 w - - 0 1"));
    // Seventeen men in total, although no single type is over its limit.
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/NN6/PPPPPPPP/RNBQKBNR w - - 0 1"));
    EXPECT_FALSE(Gelesen("4kk2/8/8/8/8/8/8/4K3 w - - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/pppppppp/p7/8/8/8/8/4K3 w - - 0 1"));
    // Pawns on the back ranks and the side not to move in check are accepted.
    EXPECT_TRUE(Gelesen("P3k3/8/8/8/8/8/8/p3K3 w - - 0 1"));
    EXPECT_TRUE(Gelesen("4k3/8/8/8/8/8/8/4K2R w - - 0 1"));
}

TEST(Fen, Chess960AusKQ) {
    auto b = Aufstellen("4k3/8/8/8/8/8/8/1R3K1R w KQ - 0 1");
    EXPECT_EQ(b->st->chess960, 1);
    EXPECT_EQ(b->st->dateibuchstaben, 0);
    EXPECT_EQ(b->st->rochaden, WeissKurz | WeissLang);
    EXPECT_EQ(b->st->seite[Weiss].langerTurm, F("b1"));
    EXPECT_EQ(b->st->seite[Weiss].kurzerTurm, F("h1"));

    // Rooks on a and h but the king off e1 is no standard set-up either.
    auto f1 = Aufstellen("4k3/8/8/8/8/8/8/R4K1R w KQ - 0 1");
    EXPECT_EQ(f1->st->chess960, 1);
    auto normal = Aufstellen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    EXPECT_EQ(normal->st->chess960, 0);
    // Only a side that holds a right matters for the king's file.
    auto nurSchwarz = Aufstellen("r3k2r/8/8/8/8/8/8/R4K1R b kq - 0 1");
    EXPECT_EQ(nurSchwarz->st->chess960, 0);
    EXPECT_EQ(nurSchwarz->st->rochaden, SchwarzKurz | SchwarzLang);
}

TEST(Fen, RochadeVerlangtKoenigeAufEinerLinieUndTuerme) {
    EXPECT_FALSE(Gelesen("r3k2r/8/8/8/8/8/8/R4K1R w KQkq - 0 1"));
    EXPECT_TRUE(Gelesen("r3k2r/8/8/8/8/8/8/R3K2R w Kk - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/8/4K3 w K - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/8/R3K3 w K - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/8/4K2R w Q - 0 1"));
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/7R/4K3 w K - 0 1")) << "the rook must stand on the home rank";
    EXPECT_FALSE(Gelesen("4k3/8/8/8/8/8/8/4K2r w K - 0 1")) << "an enemy rook is no castling rook";
    // Black king on rank 8 is required when both sides castle.
    EXPECT_FALSE(Gelesen("r6r/4k3/8/8/8/8/8/R3K2R w KQkq - 0 1"));
}

TEST(Fen, DateibuchstabenShredderUndXFen) {
    auto shredder = Aufstellen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w HAha - 0 1");
    EXPECT_EQ(shredder->st->rochaden, 15);
    EXPECT_EQ(shredder->st->chess960, 1);
    EXPECT_EQ(shredder->st->dateibuchstaben, 1);
    EXPECT_EQ(shredder->st->seite[Weiss].kurzerTurm, F("h1"));
    EXPECT_EQ(shredder->st->seite[Weiss].langerTurm, F("a1"));
    EXPECT_EQ(shredder->st->seite[Schwarz].kurzerTurm, F("h8"));
    EXPECT_EQ(shredder->st->seite[Schwarz].langerTurm, F("a8"));
    // Same board and rights as KQkq: the key does not depend on how rights were written.
    auto kqkq = Aufstellen(StartFen);
    EXPECT_EQ(shredder->d->schluessel, kqkq->d->schluessel);

    auto gg = Aufstellen("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w Gg - 0 1");
    EXPECT_EQ(gg->st->rochaden, WeissKurz | SchwarzKurz);
    EXPECT_EQ(gg->st->seite[Weiss].kurzerTurm, F("g1"));
    EXPECT_EQ(gg->st->seite[Schwarz].kurzerTurm, F("g8"));
    EXPECT_EQ(gg->st->chess960, 1);
    EXPECT_EQ(gg->st->dateibuchstaben, 1);

    auto gbgb = Aufstellen("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w GBgb - 0 1");
    EXPECT_EQ(gbgb->st->rochaden, 15);
    EXPECT_EQ(gbgb->st->seite[Weiss].langerTurm, F("b1"));
    EXPECT_EQ(gbgb->st->seite[Schwarz].langerTurm, F("b8"));
    auto xfen = Aufstellen("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w KQkq - 0 1");
    EXPECT_EQ(xfen->st->dateibuchstaben, 0);
    EXPECT_EQ(xfen->st->chess960, 1);
    EXPECT_EQ(xfen->st->seite[Weiss].kurzerTurm, F("g1"));
    EXPECT_EQ(xfen->st->seite[Weiss].langerTurm, F("b1"));
    EXPECT_EQ(xfen->d->schluessel, gbgb->d->schluessel);

    // A letter names the rook's file: no rook there, no right.
    EXPECT_FALSE(Gelesen("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w Hh - 0 1"));
    // The king's own file counts as the long side, and there is no rook on it.
    EXPECT_FALSE(Gelesen("nrbbqkrn/pppppppp/8/8/8/8/PPPPPPPP/NRBBQKRN w F - 0 1"));
}

TEST(Fen, Chess960StartNachNummer) {
    Brett standard, grund;
    ASSERT_TRUE(Chess960Start(*standard.st, 518));
    Grundstellung(*grund.st);
    ErwarteGleicheStellung(*standard.st, *grund.st);
    EXPECT_EQ(standard.st->chess960, 0);

    Brett null, neunhundertsechzig;
    ASSERT_TRUE(Chess960Start(*null.st, 0));
    ASSERT_TRUE(Chess960Start(*neunhundertsechzig.st, 960));
    const Seite_t& w = null.st->seite[Weiss];
    EXPECT_EQ(w.brett[Laeufer], Felder({"a1", "b1"}));
    EXPECT_EQ(w.brett[Dame], Felder({"c1"}));
    EXPECT_EQ(w.brett[Springer], Felder({"d1", "e1"}));
    EXPECT_EQ(w.brett[Turm], Felder({"f1", "h1"}));
    EXPECT_EQ(w.brett[Koenig], Felder({"g1"}));
    EXPECT_EQ(null.st->seite[Schwarz].brett[Laeufer], Felder({"a8", "b8"}));
    EXPECT_EQ(null.st->seite[Schwarz].brett[Koenig], Felder({"g8"}));
    EXPECT_EQ(null.st->chess960, 1);
    EXPECT_EQ(null.st->dateibuchstaben, 0);
    EXPECT_EQ(null.st->rochaden, 15);
    EXPECT_EQ(w.langerTurm, F("f1"));
    EXPECT_EQ(w.kurzerTurm, F("h1"));
    EXPECT_EQ(null.st->amZug, Weiss);
    ErwarteGleicheStellung(*null.st, *neunhundertsechzig.st);

    Brett letzte;
    ASSERT_TRUE(Chess960Start(*letzte.st, 959));
    EXPECT_EQ(letzte.st->seite[Weiss].brett[Turm], Felder({"a1", "c1"}));
    EXPECT_EQ(letzte.st->seite[Weiss].brett[Koenig], Felder({"b1"}));
    EXPECT_EQ(letzte.st->seite[Weiss].brett[Springer], Felder({"d1", "e1"}));
    EXPECT_EQ(letzte.st->seite[Weiss].brett[Dame], Felder({"f1"}));
    EXPECT_EQ(letzte.st->seite[Weiss].brett[Laeufer], Felder({"g1", "h1"}));
}

TEST(Fen, SchwarzAmZugAendertNurDenSeitenschluessel) {
    auto w = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    auto s = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1");
    EXPECT_EQ(w->d->schluessel ^ s->d->schluessel, SeitenSchluessel);
    EXPECT_EQ(w->d->bauernSchluessel, s->d->bauernSchluessel);
    EXPECT_EQ(w->d->Materialschluessel, s->d->Materialschluessel);
    EXPECT_EQ(s->st->amZug, Schwarz);
    auto gross = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R B KQkq - 0 1");
    EXPECT_EQ(gross->d->schluessel, s->d->schluessel);
    auto grossW = Aufstellen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R W KQkq - 0 1");
    EXPECT_EQ(grossW->d->schluessel, w->d->schluessel);
}

TEST(Fen, KaputteTexteScheiternOhneAbsturz) {
    for (const char* fen : {
             "",
             "garbage",
             "   ",
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/P w - - 0 1",      // a man below rank 1
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/8/8 w - - 0 1",    // ten ranks
             "rnbqkbnr/ppppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",    // nine files
             "rnbqkbnr/pppp5/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",        // digit runs past h
             "rnbqkbn/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",      // short rank
             "rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",     // digit 9
             "rnbqkbnr/pppppppp/0/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",     // digit 0
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1",     // side
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR",                  // no side
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkx - 0 1",     // castling letter
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e 0 1",     // en passant cut short
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq x6 0 1",    // en passant file
             "rnbqkbnr/pppsppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",      // letter above r
             "rnbqkbnr/ppp~pppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",     // character above r
             "rnbqkbnr/pppapppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",     // no piece letter
             "rnbqkbnr/ppp\x01pppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",  // control character
             "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNr w KQkq - 0 1",     // no white king
             "8/8/8/8/8/8/8/8/8/8/8/8 w - - 0 1",
         }) {
        Brett b;
        EXPECT_FALSE(b.Setze(fen)) << '"' << fen << '"';
        Stellung_t* st = b.st.get();
        EXPECT_EQ(LeseFen(*st, fen), nullptr) << '"' << fen << '"';
    }
}

TEST(Fen, LeseFenEndetHinterDemEnPassantFeld) {
    Brett b;
    const char* fen = "  rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 12 34";
    const char* rest = LeseFen(*b.st, fen);
    ASSERT_NE(rest, nullptr);
    EXPECT_EQ(std::string(rest), " 12 34");
    // The last rank may stop short of the h-file.
    EXPECT_TRUE(Gelesen("4k3/8/8/8/8/8/8/4K w - - 0 1"));
}
