// "--ExplainBitbase": the dump of a small hand-made file, line for line.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "bitbase/erklaeren.h"
#include "bitbase_hilfe.h"
#include "protocol/programm.h"

namespace {

using bitbase_test::Bitbasedatei;
using bitbase_test::Bytes;
using bitbase_test::LeseDatei;
using bitbase_test::SchreibeDatei;
using bitbase_test::TestVerzeichnis;

std::string Text(const Bytes& b) { return std::string(b.begin(), b.end()); }

const Bytes JederCode = {0x70, 0x12, 0x34, 0x70, 0x05, 0x71, 0x00, 0x76, 0x00, 0xAB, 0x70, 0x13, 0x72, 0x00, 0x01,
                         0x75, 0x3C, 0x77, 0x02, 0x7F, 0x78, 0x73, 0x07, 0x76, 0xFF, 0x11, 0x76, 0xB7, 0x22};
const std::string JederCodeText =
    "   0: 70       Markierung 70..7f; Wdh0=0x00, Wdh1=0xff\n"
    "   0: 12\n"
    "   1: 34\n"
    "   2: 70 05    Markiertes Zeichen 0x75\n"
    "   3: 71 00    kurze Kopie (b): 3 Zeichen ab Position 0\n"
    "   6: 76 00 ab Wiederholung (0xab), L\xC3\xA4nge 4\n"
    "  10: 70 13    kurze Kopie (a): 7 Zeichen ab Position 0\n"
    "  17: 72 00 01 lange Kopie: 4 Zeichen ab Position 12\n"
    "  21: 75 3c    genau 3 Zeichen Wiederholung (0x3c)\n"
    "  24: 77 02    Wiederholung 1 (0xff), L\xC3\xA4nge 5\n"
    "  29: 7f       Wiederholung 0a (0x00), L\xC3\xA4nge 9\n"
    "  38: 78       Wiederholung 0a (0x00), L\xC3\xA4nge 2\n"
    "  40: 73 07    Wiederholung 0b (0x00), L\xC3\xA4nge 26\n"
    "  66: 76 ff 11 Wiederholung (0x11), L\xC3\xA4nge 259\n"
    " 325: 76 b7 22 Wiederholung (0x22), L\xC3\xA4nge 187\n"
    " 512: komprimiert zu 29 Bytes\n";

TEST(BlockErklaeren, JederCode) {
    std::string text;
    EXPECT_TRUE(BlockErklaeren(JederCode.data(), JederCode.size(), text));
    EXPECT_EQ(text, JederCodeText);

    // A fault ends the dump with the position of the failing code.
    text.clear();
    const Bytes kaputt = {0x71, 0x12, 0x70, 0x13};
    EXPECT_FALSE(BlockErklaeren(kaputt.data(), kaputt.size(), text));
    EXPECT_EQ(text,
              "   0: 71       Markierung 70..7f; Wdh0=0xff, Wdh1=0x00\n"
              "   0: 12\n"
              "   1: 70 13    kurze Kopie (a): 7 Zeichen ab Position -9\n"
              "   1: Fehler\n");
    text.clear();
    const Bytes kurz = {0x70, 0x12, 0x34};
    EXPECT_FALSE(BlockErklaeren(kurz.data(), kurz.size(), text));
    EXPECT_EQ(text.substr(text.size() - 13), "   2: Fehler\n") << text;
}

// A KDK file (20 blocks): compressed, fill 00 and FF, raw, a repetition, a
// long compressed block with successor codes, an odd fill byte, a corrupt block.
struct Beispiel {
    Bitbasedatei datei{20};
    std::string erwartet;
    Beispiel() {
        datei.Daten(0, JederCode, 29);
        datei.Fuellung(1, 0x00, 0x42);
        datei.Fuellung(2, 0xFF);
        datei.Daten(3, Bytes(512, 0x5A), 0);
        datei.Verweis(4, 100, 29);
        Bytes lang = {0x31, 0x33, 0x0D, 0x34, 0xE4};
        lang.insert(lang.end(), 115, 0x41);
        lang.insert(lang.end(), {0x36, 0xFF, 0x00, 0x36, 0x7F, 0x00, 0x00});  // 126 bytes and one of padding
        datei.Daten(5, lang, 125);
        datei.Fuellung(6, 0xA5);
        datei.Daten(7, {0x70, 0x12, 0x70, 0x13}, 4);

        erwartet = "#################\n###   Index   ###\n#################\n\n";
        erwartet += "       0: 64 00 00 00 1d Position 00000064 29 Bytes\n";
        erwartet += "       1: 00 ff ff ff 42 00 .. 00\n";
        erwartet += "       2: ff ff ff ff 00 ff .. ff\n";
        erwartet += "       3: 81 00 00 00 00 Position 00000081 512 Bytes\n";
        erwartet += "       4: 64 00 00 00 1d Position 00000064 29 Bytes Wiederholung\n";
        erwartet += "       5: 81 02 00 00 7d Position 00000281 125..127 Bytes\n";
        erwartet += "       6: a5 ff ff ff 00 ";  // other fill bytes print nothing more
        erwartet += "       7: 00 03 00 00 04 Position 00000300 4 Bytes\n";
        for (int k = 8; k < 20; ++k) erwartet += (k < 10 ? "       " : "      ") + std::to_string(k) + ": 00 ff ff ff 00 00 .. 00\n";
        auto kopf = [](const char* nummer) {
            return std::string("\n##########################\n###   Block ") + nummer + "   ###\n##########################\n\n";
        };
        erwartet += kopf("0       ") + JederCodeText;
        erwartet += kopf("3       ") + "unkomprimierte Daten\n";
        erwartet += kopf("5       ");
        erwartet += "   0: 31       Markierung 30..3f; Wdh0=0xff, Wdh1=0x00\n";
        erwartet += "   0: 33 0d    letzte/vorletzte Nachfolger (0x0d), L\xC3\xA4nge 3\n";
        erwartet += "   3: 34 e4    letzte 4 Nachfolger\n";
        for (int pos = 7; pos < 122; ++pos) erwartet += (pos < 10 ? "   " : pos < 100 ? "  " : " ") + std::to_string(pos) + ": 41\n";
        erwartet += " 122: 36 ff 00 Wiederholung (0x00), L\xC3\xA4nge 259\n";
        erwartet += " 381: 36 7f 00 Wiederholung (0x00), L\xC3\xA4nge 131\n";
        erwartet += " 512: komprimiert zu 126 Bytes\n";
        erwartet += kopf("7       ");
        erwartet += "   0: 70       Markierung 70..7f; Wdh0=0x00, Wdh1=0xff\n";
        erwartet += "   0: 12\n";
        erwartet += "   1: 70 13    kurze Kopie (a): 7 Zeichen ab Position -9\n";
        erwartet += "   1: Fehler\n";
    }
};

TEST(ErklaereBitbase, KleineDatei) {
    TestVerzeichnis dir;
    Beispiel b;
    SchreibeDatei(dir / "KDK.kbb", b.datei.Alles());
    EXPECT_EQ(ErklaereBitbase((dir / "KDK").c_str()), 0);
    EXPECT_EQ(Text(LeseDatei(dir / "KDK.txt")), b.erwartet);

    // Through the command line.
    std::filesystem::remove(dir / "KDK.txt");
    const std::string stamm = dir / "KDK";
    const char* argv[] = {"kelvaran", "--ExplainBitbase", stamm.c_str(), nullptr};
    std::istringstream ein;
    std::ostringstream aus, fehler;
    EXPECT_EQ(Programm(3, const_cast<char**>(argv), ein, aus, fehler), 0);
    EXPECT_EQ(Text(LeseDatei(dir / "KDK.txt")), b.erwartet);
    EXPECT_EQ(aus.str(), "");
    EXPECT_EQ(fehler.str(), "");
}

TEST(ErklaereBitbase, FehlendeOderKaputteDateien) {
    TestVerzeichnis dir;
    // No file, a name too long, an unwritable dump: nothing is written.
    EXPECT_EQ(ErklaereBitbase((dir / "KTK").c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(dir / "KTK.txt"));
    const std::string lang = dir / std::string(1020, 'K');
    EXPECT_EQ(ErklaereBitbase(lang.c_str()), 0);

    // A file cut inside the index lists the whole entries it has; a block whose
    // data is missing ends in "Fehler".
    Beispiel b;
    Bytes alles = b.datei.Alles();
    SchreibeDatei(dir / "KDK.kbb", Bytes(alles.begin(), alles.begin() + 12));
    EXPECT_EQ(ErklaereBitbase((dir / "KDK").c_str()), 0);
    EXPECT_EQ(Text(LeseDatei(dir / "KDK.txt")),
              "#################\n###   Index   ###\n#################\n\n"
              "       0: 64 00 00 00 1d Position 00000064 29 Bytes\n"
              "       1: 00 ff ff ff 42 00 .. 00\n"
              "\n##########################\n###   Block 0          ###\n##########################\n\n"
              "   0: Fehler\n");
}

}  // namespace
