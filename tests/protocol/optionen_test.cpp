// The option set and the "setoption" line.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "protocol/optionen.h"

namespace {

struct Setoption_t {
    std::string zeile;
    bool gelesen;
    const char* name;
    std::string text;  // the value afterwards; spins print their number
};

// Each line goes to a fresh set, so a refused line must leave the default.
TEST(Optionen, Setoption) {
    const Setoption_t faelle[] = {
        {"setoption name MultiPV value 50", true, "MultiPV", "10"},
        {"setoption name MultiPV value 0", true, "MultiPV", "1"},
        {"setoption name Hash value 99999999999", true, "Hash", "32000"},
        {"setoption name Hash value +64MB", true, "Hash", "64"},
        {"setoption name MultiPV_Score value lots", true, "MultiPV_Score", "0"},
        {"setoption \t name   Hash  \t value    128", true, "Hash", "128"},
        {"setoption name Hash value", false, "Hash", "3"},
        {"setoption name Hash 64", false, "Hash", "3"},
        {" setoption name Hash value 64", false, "Hash", "3"},
        {"setoption Hash value 64", false, "Hash", "3"},
        {"setoption name hash value 64", false, "Hash", "3"},
        // The longest name that is a prefix wins, and the value may follow it directly.
        {"setoption name MultiPV_Score value 7", true, "MultiPV_Score", "7"},
        {"setoption name MultiPVvalue 3", true, "MultiPV", "3"},
        {"setoption name UCI_Chess960 value TRUE", false, "UCI_Chess960", "false"},
        {"setoption name UCI_Chess960 value true", true, "UCI_Chess960", "true"},
        {"setoption name UCI_Chess960 value falsely", true, "UCI_Chess960", "false"},
        {"setoption name UCI_Opponent value GM 2800 computer Some Engine", true, "UCI_Opponent",
         "GM 2800 computer Some Engine"},
        {"setoption name TimeLogfile value " + std::string(300, 'x'), true, "TimeLogfile", std::string(256, 'x')},
        // Rows the GUI is not told about are settable all the same.
        {"setoption name BitbasePath value /data/bit bases", true, "BitbasePath", "/data/bit bases"},
        {"setoption name Resign value", false, "Resign", "700"},
        {"setoption name Resign value 5", true, "Resign", "400"},
        {"setoption name NoOutput value true", true, "NoOutput", "true"},
    };
    for (const Setoption_t& f : faelle) {
        Optionen_t o(Optionstabelle);
        EXPECT_EQ(o.SetzeOption(f.zeile.c_str()), f.gelesen) << f.zeile;
        const int i = o.Index(f.name);
        EXPECT_EQ(o.Text(i), f.text) << f.zeile;
        EXPECT_TRUE(o.Tabelle()[i].typ == OptionString || o.Zahl(i) == (f.text == "true" ? 1 : std::atoi(f.text.c_str())))
            << f.zeile;
    }
}

TEST(Optionen, ClearHashIstEinmalig) {
    Optionen_t o(Optionstabelle);
    EXPECT_FALSE(o.ClearHashNehmen());
    EXPECT_TRUE(o.SetzeOption("setoption name Clear Hash"));
    EXPECT_TRUE(o.ClearHashNehmen());
    EXPECT_FALSE(o.ClearHashNehmen());
    EXPECT_STREQ(o.Text(o.Index("Clear Hash")), "false");
    // A button has no value: whatever follows its name presses it too.
    EXPECT_TRUE(o.SetzeOption("setoption name Clear Hash value false"));
    EXPECT_TRUE(o.ClearHashNehmen());
}

TEST(Optionen, ZufallsspielerKennenKeineOption) {
    Optionen_t leer(LeereOptionstabelle);
    EXPECT_EQ(leer.Resign(), 450000);
    EXPECT_FALSE(leer.SetzeOption("setoption name Hash value 64"));
}

// No row of the engine is a combo yet; the value is the index of the choice.
TEST(Optionen, Kombo) {
    const Option_t tabelle[] = {{OptionCombo, 1, "Stil", "normal", 0, 0, "solide var normal var riskant"},
                                {0, 0, nullptr, nullptr, 0, 0, nullptr}};
    Optionen_t o(tabelle);
    EXPECT_TRUE(o.SetzeOption("setoption name Stil value riskant  "));
    EXPECT_STREQ(o.Text(0), "riskant");
    EXPECT_FALSE(o.SetzeOption("setoption name Stil value wild"));
    EXPECT_EQ(o.Zahl(0), 2);
}

}  // namespace
