// The retrograde generator: moves and un-moves agree, the small bitbases agree
// with the rules and with the KPK table of the endgame knowledge, and the
// files give back exactly the generated bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "bitbase/erzeugerstellung.h"
#include "bitbase/retrograd.h"
#include "bitbase/schreiber.h"
#include "erzeugung_hilfe.h"
#include "search/endspiel.h"

namespace {

KindLader_t Lader(const std::string& verzeichnis) {
    return [verzeichnis](const std::string& name, uint64_t positionen, std::vector<uint8_t>& bits) {
        return LeseBitbase(BitbaseDatei(verzeichnis, name), positionen, bits);
    };
}

std::vector<uint8_t> Datei(const std::string& name) {
    std::vector<uint8_t> bits;
    EXPECT_TRUE(LeseBitbase(BitbaseDatei(erzeugung_test::KleineBitbasen(), name), AnzahlPositionen(name.c_str()), bits))
        << name;
    return bits;
}

bool BitVon(const std::vector<uint8_t>& bits, uint64_t i) { return (bits[i >> 3] >> (i & 7)) & 1; }

// A random legal position of the signature, en passant included where one fits.
ErzeugerStellung_t Zufaellig(const Erzeugersignatur_t& sig, std::mt19937& rng) {
    for (;;) {
        ErzeugerStellung_t p;
        if (sig.AusIndex(rng() % sig.bitbase.positionen, p) && sig.Zulaessig(p)) return p;
    }
}

TEST(BitbaseGenerator, ZuegeUndRueckzuegePassenZusammen) {
    std::mt19937 rng(4711);
    for (const char* name : {"KBKB", "KTKB", "KBBK", "KTTK", "KDKT", "KSKB"}) {
        Erzeugersignatur_t sig;
        ASSERT_TRUE(sig.Setze(name));
        int epGesehen = 0;
        for (int n = 0; n < 3000; ++n) {
            const ErzeugerStellung_t p = Zufaellig(sig, rng);
            epGesehen += p.ep >= 0;
            const uint64_t ip = sig.Index(p);
            // Every child without conversion lists p among its predecessors ...
            sig.Zuege(p, [&](const ErzeugerStellung_t& c, int, int g, int u) {
                if (g >= 0 || u != 0) return true;
                EXPECT_TRUE(sig.Zulaessig(c)) << name << " " << ErzeugerFen(sig, c);
                bool gefunden = false;
                sig.Rueckzuege(c, [&](const ErzeugerStellung_t& v) { gefunden |= sig.Index(v) == ip; });
                EXPECT_TRUE(gefunden) << name << " " << ErzeugerFen(sig, p) << " -> " << ErzeugerFen(sig, c);
                return true;
            });
            // ... and every predecessor reaches p by a move.
            sig.Rueckzuege(p, [&](const ErzeugerStellung_t& v) {
                bool gefunden = false;
                sig.Zuege(v, [&](const ErzeugerStellung_t& c, int, int g, int u) {
                    gefunden |= g < 0 && u == 0 && sig.Index(c) == ip;
                    return true;
                });
                EXPECT_TRUE(gefunden) << name << " " << ErzeugerFen(sig, v) << " -> " << ErzeugerFen(sig, p);
            });
        }
        if (std::string(name) == "KBKB") {
            EXPECT_GT(epGesehen, 0);
        }
    }
}

TEST(BitbaseGenerator, KindsignaturenUndSchreibweise) {
    std::vector<std::string> kinder = Kindsignaturen("KTBKT");
    std::sort(kinder.begin(), kinder.end());
    std::vector<std::string> soll = {"KBKT", "KTKT", "KTBK", "KDTKT", "KTTKT", "KTLKT", "KTSKT",
                                     "KDTK", "KTTK", "KTLK", "KTSK"};
    std::sort(soll.begin(), soll.end());
    EXPECT_EQ(kinder, soll);
    EXPECT_TRUE(Kindsignaturen("KDK").empty());  // only the bare kings
    EXPECT_EQ(KanonischeSignatur("KBTKT"), "KTBKT");
    EXPECT_EQ(KanonischeSignatur("KSDKBL"), "KDSKLB");
    EXPECT_EQ(KanonischeSignatur("KXK"), "");
}

// Every legal KPK position, both sides to move: the bitbase and the endgame table agree.
TEST(BitbaseGenerator, KpkWieDieEndspieltabelle) {
    const std::vector<uint8_t> kbk = Datei("KBK"), kkb = Datei("KKB");
    Erzeugersignatur_t sig, zwilling;
    ASSERT_TRUE(sig.Setze("KBK"));
    ASSERT_TRUE(zwilling.Setze("KKB"));
    uint64_t geprueft = 0, gewonnen = 0;
    for (uint64_t i = 0; i < sig.bitbase.positionen; ++i) {
        ErzeugerStellung_t p;
        if (!sig.AusIndex(i, p) || !sig.Zulaessig(p) || sig.Index(p) != i) continue;
        const uint8_t tabelle = KpkProbe(static_cast<Feld>(p.feld[1]), static_cast<Feld>(p.feld[0]),
                                         static_cast<Feld>(p.feld[2]), p.amZug == Weiss);
        ASSERT_NE(tabelle, KpkIllegal) << ErzeugerFen(sig, p);
        const bool sollGewonnen = tabelle < KpkNichtGewonnen;
        ASSERT_EQ(BitVon(kbk, i), sollGewonnen) << ErzeugerFen(sig, p);
        // The lone king never wins: its file is empty wherever it matters.
        const ErzeugerStellung_t q{{p.feld[2] ^ 56, p.feld[0] ^ 56, p.feld[1] ^ 56}, 1 - p.amZug, -1};
        ASSERT_FALSE(BitVon(kkb, zwilling.Index(q)));
        ++geprueft;
        gewonnen += sollGewonnen;
    }
    EXPECT_EQ(geprueft, 165676u);
    EXPECT_GT(gewonnen, geprueft / 2);
}

TEST(BitbaseGenerator, RegelpruefungDerKleinenBitbasen) {
    for (const char* name : {"KK", "KDK", "KTK", "KBK"}) {
        Pruefbericht_t bericht;
        std::string fehler;
        ASSERT_TRUE(PruefeSignatur(name, 2, Lader(erzeugung_test::KleineBitbasen()), bericht, fehler)) << fehler;
        EXPECT_EQ(bericht.fehler, 0u) << name << " " << bericht.beispiel;
        EXPECT_GT(bericht.geprueft, 0u);
    }
    // A flipped bit of a legal position is found.
    Erzeugersignatur_t kdk;
    ASSERT_TRUE(kdk.Setze("KDK"));
    uint64_t falsch = 5000;
    for (ErzeugerStellung_t p; !kdk.AusIndex(falsch, p) || !kdk.Zulaessig(p) || kdk.Index(p) != falsch;) ++falsch;
    erzeugung_test::Verzeichnis_t kaputt("kaputt");
    for (const char* name : {"KDK", "KKD"}) {
        std::vector<uint8_t> bits = Datei(name);
        if (std::string(name) == "KDK") bits[falsch >> 3] ^= static_cast<uint8_t>(1 << (falsch & 7));
        ASSERT_TRUE(SchreibeBitbase(BitbaseDatei(kaputt.pfad, name), bits.data(), nullptr, 81920));
    }
    Pruefbericht_t bericht;
    std::string fehler;
    ASSERT_TRUE(PruefeSignatur("KDK", 1, Lader(kaputt.pfad), bericht, fehler)) << fehler;
    EXPECT_GT(bericht.fehler, 0u);
    EXPECT_FALSE(bericht.beispiel.empty());
    // Missing smaller files are reported, not guessed.
    Loesung_t l;
    EXPECT_FALSE(LoeseSignatur("KDKT", 1, Lader(kaputt.pfad), l, fehler));
    EXPECT_NE(fehler.find("fehlt"), std::string::npos) << fehler;
}

// The files decode to the generator's bits wherever a bit matters; the twin
// covers exactly the legal positions of its own signature.
TEST(BitbaseGenerator, DateienGebenDieBitsWieder) {
    for (const char* name : {"KTK", "KBK"}) {
        Loesung_t l;
        std::string fehler;
        ASSERT_TRUE(LoeseSignatur(name, 2, Lader(erzeugung_test::KleineBitbasen()), l, fehler)) << fehler;
        const std::vector<uint8_t> datei = Datei(name), zwilling = Datei(l.zwilling);
        for (uint64_t i = 0; i < l.bits.anzahl; ++i) {
            if (l.egal.Bit(i)) continue;
            ASSERT_EQ(BitVon(datei, i), l.bits.Bit(i)) << name << " " << i;
        }
        Erzeugersignatur_t z;
        ASSERT_TRUE(z.Setze(l.zwilling.c_str()));
        uint64_t legal = 0, belegt = 0;
        for (uint64_t i = 0; i < l.bitsZwilling.anzahl; ++i) {
            ErzeugerStellung_t p;
            const bool istLegal = z.AusIndex(i, p) && z.Zulaessig(p) && z.Index(p) == i;
            legal += istLegal;
            belegt += !l.egalZwilling.Bit(i);
            if (!l.egalZwilling.Bit(i)) {
                ASSERT_EQ(BitVon(zwilling, i), l.bitsZwilling.Bit(i));
            }
        }
        EXPECT_EQ(legal, l.legal) << name;
        EXPECT_EQ(belegt, legal) << name;
    }
}

}  // namespace
