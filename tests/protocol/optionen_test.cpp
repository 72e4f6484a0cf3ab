// The option set: defaults from the table, the accessors and "setoption".
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "protocol/optionen.h"

namespace {

class OptionenTest : public ::testing::Test {
protected:
    Optionen_t o{Optionstabelle};
    int Idx(const char* name) const { return o.Index(name); }
    int32_t Zahl(const char* name) const { return o.Zahl(o.Index(name)); }
    std::string Text(const char* name) const { return o.Text(o.Index(name)); }
};

TEST_F(OptionenTest, TableHasFifteenRowsInOrder) {
    const char* namen[] = {"Hash",       "Ponder",       "OwnBook",     "Clear Hash",         "MultiPV",
                           "MultiPV_Score", "UCI_Chess960", "BookFile",    "UCI_Opponent",       "BitbaseCache",
                           "BitbasePath", "NumberOfProcessors", "TimeLogfile", "NoOutput", "Resign"};
    ASSERT_EQ(o.Anzahl(), 15);
    for (int i = 0; i < 15; ++i) EXPECT_EQ(Idx(namen[i]), i) << namen[i];
}

TEST_F(OptionenTest, DefaultsComeFromTheTable) {
    EXPECT_EQ(Zahl("Hash"), 3);
    EXPECT_EQ(Text("Hash"), "3");
    EXPECT_TRUE(o.Wahr(Idx("Ponder")));
    EXPECT_TRUE(o.Wahr(Idx("OwnBook")));
    EXPECT_FALSE(o.Wahr(Idx("Clear Hash")));
    EXPECT_EQ(Text("Clear Hash"), "false");
    EXPECT_EQ(Zahl("MultiPV"), 1);
    EXPECT_FALSE(o.Wahr(Idx("UCI_Chess960")));
    EXPECT_EQ(Text("BookFile"), "Kelvaran.opn");
    EXPECT_EQ(Text("UCI_Opponent"), "none none human none");
    EXPECT_EQ(Text("BitbasePath"), ".");
    EXPECT_EQ(Text("TimeLogfile"), "nul:");
    EXPECT_EQ(o.Resign(), 700);
    EXPECT_FALSE(o.NoOutput());
}

TEST_F(OptionenTest, LookupIsExactAndCaseSensitive) {
    EXPECT_EQ(Idx("hash"), -1);
    EXPECT_EQ(Idx("Has"), -1);
    EXPECT_EQ(Idx("Hash "), -1);
    EXPECT_EQ(Idx("Opponent"), -1);
    EXPECT_EQ(o.Zahl(-1), 0);
    EXPECT_STREQ(o.Text(-1), "");
    EXPECT_FALSE(o.Wahr(99));
}

TEST(LeereOptionen, RandomPlayersKnowNoOption) {
    Optionen_t o(LeereOptionstabelle);
    EXPECT_EQ(o.Anzahl(), 0);
    EXPECT_EQ(o.Index("Hash"), -1);
    EXPECT_EQ(o.Resign(), 450000);
    EXPECT_FALSE(o.NoOutput());
    EXPECT_FALSE(o.ClearHashNehmen());
    EXPECT_FALSE(o.SetzeOption("setoption name Hash value 64"));
    EXPECT_FALSE(o.SetzeZahl(0, 1));
}

// ---- setoption: spin

TEST_F(OptionenTest, SpinIsClampedAndPrintedBack) {
    EXPECT_TRUE(o.SetzeOption("setoption name MultiPV value 50"));
    EXPECT_EQ(Zahl("MultiPV"), 10);
    EXPECT_EQ(Text("MultiPV"), "10");
    EXPECT_TRUE(o.SetzeOption("setoption name MultiPV value 0"));
    EXPECT_EQ(Zahl("MultiPV"), 1);
    EXPECT_EQ(Text("MultiPV"), "1");
    EXPECT_TRUE(o.SetzeOption("setoption name Hash value 99999999999"));
    EXPECT_EQ(Zahl("Hash"), 32000);
    EXPECT_TRUE(o.SetzeOption("setoption name Hash value -7"));
    EXPECT_EQ(Zahl("Hash"), 1);
}

TEST_F(OptionenTest, SpinReadsASignedDecimalAndNoDigitsAsZero) {
    EXPECT_TRUE(o.SetzeOption("setoption name Hash value +64MB"));
    EXPECT_EQ(Zahl("Hash"), 64);
    EXPECT_EQ(Text("Hash"), "64");
    EXPECT_TRUE(o.SetzeOption("setoption name MultiPV_Score value lots"));
    EXPECT_EQ(Zahl("MultiPV_Score"), 0);
    EXPECT_EQ(Text("MultiPV_Score"), "0");
}

TEST_F(OptionenTest, ValueWordMustBeFollowedByABlank) {
    EXPECT_FALSE(o.SetzeOption("setoption name Hash value"));
    EXPECT_FALSE(o.SetzeOption("setoption name Hash"));
    EXPECT_FALSE(o.SetzeOption("setoption name Hash 64"));
    EXPECT_EQ(Zahl("Hash"), 3);
    EXPECT_EQ(Text("Hash"), "3");
}

TEST_F(OptionenTest, ExtraWhiteSpaceBetweenTheWordsIsSkipped) {
    EXPECT_TRUE(o.SetzeOption("setoption \t name   Hash  \t value    128"));
    EXPECT_EQ(Zahl("Hash"), 128);
}

TEST_F(OptionenTest, LineMustStartWithTheCommandAndName) {
    EXPECT_FALSE(o.SetzeOption(" setoption name Hash value 64"));
    EXPECT_FALSE(o.SetzeOption("setoptionname Hash value 64"));
    EXPECT_FALSE(o.SetzeOption("setoption nam Hash value 64"));
    EXPECT_FALSE(o.SetzeOption("setoption Hash value 64"));
    EXPECT_FALSE(o.SetzeOption("setoption name"));
    EXPECT_EQ(Zahl("Hash"), 3);
}

// ---- setoption: name matching

TEST_F(OptionenTest, LongestMatchingNameWins) {
    EXPECT_TRUE(o.SetzeOption("setoption name MultiPV_Score value 7"));
    EXPECT_EQ(Zahl("MultiPV_Score"), 7);
    EXPECT_EQ(Zahl("MultiPV"), 1);
    EXPECT_TRUE(o.SetzeOption("setoption name MultiPV value 4"));
    EXPECT_EQ(Zahl("MultiPV"), 4);
    EXPECT_EQ(Zahl("MultiPV_Score"), 7);
}

TEST_F(OptionenTest, NameIsAPrefixSoValueMayFollowDirectly) {
    EXPECT_TRUE(o.SetzeOption("setoption name MultiPVvalue 3"));
    EXPECT_EQ(Zahl("MultiPV"), 3);
}

TEST_F(OptionenTest, NamesAreCaseSensitive) {
    EXPECT_FALSE(o.SetzeOption("setoption name hash value 64"));
    EXPECT_FALSE(o.SetzeOption("setoption name Opponent value Someone"));
    EXPECT_EQ(Zahl("Hash"), 3);
    EXPECT_EQ(Text("UCI_Opponent"), "none none human none");
}

TEST_F(OptionenTest, HiddenRowsAreSettable) {
    EXPECT_TRUE(o.SetzeOption("setoption name Resign value 1000"));
    EXPECT_EQ(o.Resign(), 1000);
    EXPECT_TRUE(o.SetzeOption("setoption name Resign value 5"));
    EXPECT_EQ(o.Resign(), 400);
    EXPECT_TRUE(o.SetzeOption("setoption name NoOutput value true"));
    EXPECT_TRUE(o.NoOutput());
    EXPECT_TRUE(o.SetzeOption("setoption name BitbasePath value /data/bit bases"));
    EXPECT_EQ(Text("BitbasePath"), "/data/bit bases");
    EXPECT_TRUE(o.SetzeOption("setoption name BitbaseCache value 64"));
    EXPECT_EQ(Zahl("BitbaseCache"), 64);
}

// ---- setoption: check, button, string

TEST_F(OptionenTest, CheckTakesOnlyLowerCaseTrueOrFalse) {
    EXPECT_FALSE(o.SetzeOption("setoption name UCI_Chess960 value TRUE"));
    EXPECT_FALSE(o.Wahr(Idx("UCI_Chess960")));
    EXPECT_TRUE(o.SetzeOption("setoption name UCI_Chess960 value true"));
    EXPECT_TRUE(o.Wahr(Idx("UCI_Chess960")));
    EXPECT_EQ(Text("UCI_Chess960"), "true");
    EXPECT_FALSE(o.SetzeOption("setoption name UCI_Chess960 value 0"));
    EXPECT_TRUE(o.Wahr(Idx("UCI_Chess960")));
    EXPECT_TRUE(o.SetzeOption("setoption name UCI_Chess960 value falsely"));
    EXPECT_FALSE(o.Wahr(Idx("UCI_Chess960")));
    EXPECT_EQ(Text("UCI_Chess960"), "false");
}

TEST_F(OptionenTest, ClearHashIsAOneShotLatch) {
    EXPECT_FALSE(o.ClearHashNehmen());
    EXPECT_TRUE(o.SetzeOption("setoption name Clear Hash"));
    EXPECT_TRUE(o.Wahr(Idx("Clear Hash")));
    EXPECT_EQ(Text("Clear Hash"), "true");
    EXPECT_TRUE(o.ClearHashNehmen());
    EXPECT_FALSE(o.ClearHashNehmen());
    EXPECT_EQ(Zahl("Clear Hash"), 0);
    EXPECT_EQ(Text("Clear Hash"), "false");
    // Whatever follows the name of a button is not read.
    EXPECT_TRUE(o.SetzeOption("setoption name Clear Hash value false"));
    EXPECT_TRUE(o.ClearHashNehmen());
}

TEST_F(OptionenTest, StringRunsToTheEndOfTheLine) {
    EXPECT_TRUE(o.SetzeOption("setoption name UCI_Opponent value GM 2800 computer Some Engine"));
    EXPECT_EQ(Text("UCI_Opponent"), "GM 2800 computer Some Engine");
    EXPECT_TRUE(o.SetzeOption("setoption name BookFile value 42.opn"));
    EXPECT_EQ(Text("BookFile"), "42.opn");
    EXPECT_EQ(Zahl("BookFile"), 42);
}

TEST_F(OptionenTest, StringKeepsAtMost256Characters) {
    const std::string lang(300, 'x');
    EXPECT_TRUE(o.SetzeOption(("setoption name TimeLogfile value " + lang).c_str()));
    EXPECT_EQ(Text("TimeLogfile"), std::string(256, 'x'));
}

// ---- setting by number

TEST_F(OptionenTest, SetByNumberClampsSpinsAndPrintsOthers) {
    EXPECT_TRUE(o.SetzeZahl(Idx("Hash"), 256));
    EXPECT_EQ(Text("Hash"), "256");
    EXPECT_TRUE(o.SetzeZahl(Idx("NumberOfProcessors"), 64));
    EXPECT_EQ(Zahl("NumberOfProcessors"), 32);
    EXPECT_EQ(Text("NumberOfProcessors"), "32");
    EXPECT_TRUE(o.SetzeZahl(Idx("UCI_Chess960"), 1));
    EXPECT_TRUE(o.Wahr(Idx("UCI_Chess960")));
    EXPECT_EQ(Text("UCI_Chess960"), "1");
    EXPECT_FALSE(o.SetzeZahl(-1, 5));
    EXPECT_FALSE(o.SetzeZahl(15, 5));
}

// ---- combo (no row of the engine is one, but the set supports it)

const Option_t KomboTabelle[] = {
    {OptionCombo, 1, "Stil", "normal", 0, 0, "solide var normal var riskant"},
    {OptionSpin, 1, "Tiefe", "5", 1, 9, nullptr},
    {0, 0, nullptr, nullptr, 0, 0, nullptr},
};

TEST(KomboOption, DefaultIsItsIndexInTheList) {
    Optionen_t o(KomboTabelle);
    EXPECT_EQ(o.Zahl(0), 1);
    EXPECT_STREQ(o.Text(0), "normal");
}

TEST(KomboOption, SetoptionTakesOnlyAChoice) {
    Optionen_t o(KomboTabelle);
    EXPECT_TRUE(o.SetzeOption("setoption name Stil value riskant  "));
    EXPECT_EQ(o.Zahl(0), 2);
    EXPECT_STREQ(o.Text(0), "riskant");
    EXPECT_FALSE(o.SetzeOption("setoption name Stil value wild"));
    EXPECT_EQ(o.Zahl(0), 2);
}

TEST(KomboOption, SetByNumberPicksTheChoice) {
    Optionen_t o(KomboTabelle);
    EXPECT_TRUE(o.SetzeZahl(0, 0));
    EXPECT_STREQ(o.Text(0), "solide");
    EXPECT_TRUE(o.SetzeZahl(0, 2));
    EXPECT_STREQ(o.Text(0), "riskant");
    EXPECT_FALSE(o.SetzeZahl(0, 3));
    EXPECT_FALSE(o.SetzeZahl(0, -1));
    EXPECT_STREQ(o.Text(0), "riskant");
}

}  // namespace
